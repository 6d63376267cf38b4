#pragma once

#include "clip/Clipper.h"
#include "support/Line.h"

namespace GTL {

/// Cuts a straight segment.
///
/// The border lines are tried in the order bottom, right, top, left until two output points are known; a
/// start that lies inside is the first of them. A crossing counts when its place along the border lies in
/// minimum <= place < maximum, so that a segment through the upper right corner is not found there on two
/// lines. What follows is meant:
/// - where only one point is known in the end, the second end stays as it is, also when it lies outside: of a
///   segment that touches the window in one counted point, that leaves it through the upper right corner, or
///   that starts beyond the border within the tolerance and leads away;
/// - a segment without a known point is outside, also when it ends in the upper right corner;
/// - a segment from outside that meets the lower left corner is found there twice and shrinks to that point.
template <class P>
class HALYARD_API LineClipper : public Clipper<P> {
public:
    explicit LineClipper(const Extents2D<double>& window) : Clipper<P>(window) {}

    /// The output has the direction of the input. Inside and Outside leave it alone.
    ClipResult Clip(const Line<P>& input, Line<P>& output) const;
};

extern template class HALYARD_API_TEMPLATE LineClipper<Point3D<double>>;

} // namespace GTL
