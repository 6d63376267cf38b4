#pragma once

#include "clip/Clipper.h"
#include "support/Arc.h"

#include <vector>

namespace GTL {

/// Cuts an arc. Its crossings with the border split the sweep into stretches that are inside and outside in
/// turn; where the arc starts decides about the first (the nearest side of the window when it starts on a
/// crossing).
///
/// An end angle of 0 counts as 360. Equal ends are a full turn; all crossings of the circle count then, one
/// at the common end too, so that a full turn whose end is itself a crossing has an empty first stretch.
template <class P>
class HALYARD_API ArcClipper : public Clipper<P> {
public:
    explicit ArcClipper(const Extents2D<double>& window) : Clipper<P>(window) {}

    /// Outside for a radius below 1e-5, otherwise always Clipped: an arc that lies in the window comes back
    /// as one piece equal to itself, one outside as no piece. Other pieces have the arc's centre and radius
    /// and the normal (0, 0, 1).
    ClipResult Clip(const Arc<P>& input, std::vector<Arc<P>>& output) const;
};

extern template class HALYARD_API_TEMPLATE ArcClipper<Point3D<double>>;

} // namespace GTL
