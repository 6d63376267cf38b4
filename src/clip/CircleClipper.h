#pragma once

#include "clip/Clipper.h"
#include "support/Arc.h"
#include "support/Circle.h"

#include <vector>

namespace GTL {

/// Cuts a circle into the arcs of it that lie in the window.
///
/// With fewer than two crossings of the border the centre decides for the whole circle: a window that lies
/// within a circle, centre included, keeps it. Otherwise the crossings are listed: first the one found first
/// (in the order top, bottom, right, left), as it is, then all others in ascending order of their bearings in
/// -180 < a <= 180; stretches from one entry to the next are inside and outside in turn. The stretch from the
/// last entry back to the first is never part of the result. That is meant: a circle that crosses only the
/// upper or only the left side gives nothing.
template <class P>
class HALYARD_API CircleClipper : public Clipper<P> {
public:
    explicit CircleClipper(const Extents2D<double>& window) : Clipper<P>(window) {}

    /// Arcs have the circle's centre and radius and the normal (0, 0, 1). Circles with a radius below 1e-5
    /// are outside.
    ClipResult Clip(const Circle<P>& input, std::vector<Arc<P>>& output) const;
};

extern template class HALYARD_API_TEMPLATE CircleClipper<Point3D<double>>;

} // namespace GTL
