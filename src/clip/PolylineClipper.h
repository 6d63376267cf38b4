#pragma once

#include "clip/Clipper.h"
#include "support/Polyline.h"

#include <vector>

namespace GTL {

/// Cuts an open chain of straight and arc segments into the runs of it that lie in the window, the border
/// included, in their order. Ends that are cut get the place on the border, the height between the ends of
/// their segment; an arc is cut at its true crossings, and what is left of it keeps its own bulge. A chain
/// that only touches the window in single points is outside. Vertices with coordinates that are not numbers
/// end a run.
template <class P>
class HALYARD_API PolylineClipper : public Clipper<P> {
public:
    explicit PolylineClipper(const Extents2D<double>& window) : Clipper<P>(window) {}

    /// Replaces the output, except for Inside, which leaves it empty.
    ClipResult Clip(const Polyline<P>& input, std::vector<Polyline<P>>& output) const;
};

extern template class HALYARD_API_TEMPLATE PolylineClipper<Point3D<double>>;

} // namespace GTL
