#pragma once

#include "clip/Clipper.h"
#include "support/Polygon.h"

#include <vector>

namespace GTL {

/// Cuts a closed ring of straight and arc segments to what its area has in common with the window.
///
/// Pieces are closed lists that do not repeat their first vertex, one for each part into which the cut
/// separates the area, running the way the ring runs; each starts where the ring comes in. Arcs are cut at
/// their true crossings. Where the border of the window becomes part of an outline, only its corners are
/// added, at the height of the plane that fits the ring. A ring that meets the window only along its border
/// is outside; a window that lies within the ring is the piece. A ring that crosses itself gives outlines
/// with the same winding number as the ring around every place of the window, except that a window which it
/// winds around without crossing it is one piece. Vertices with coordinates that are not finite are passed
/// over.
template <class P>
class HALYARD_API PolygonClipper : public Clipper<P> {
public:
    explicit PolygonClipper(const Extents2D<double>& window) : Clipper<P>(window) {}

    /// Replaces the output, except for Inside, which leaves it empty.
    ClipResult Clip(const Polyline<P>& ring, std::vector<Polyline<P>>& output) const;
};

extern template class HALYARD_API_TEMPLATE PolygonClipper<Point3D<double>>;
extern template class HALYARD_API_TEMPLATE PolygonClipper<Point2D<double>>;

} // namespace GTL
