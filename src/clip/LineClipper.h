#pragma once

#include "clip/Clipper.h"
#include "support/Line.h"

namespace GTL {

/// Cuts a straight segment.
///
/// The border lines are tried in the order bottom, right, top, left, until two output points are known; an
/// end that lies inside is the first of them when it is the start. A crossing counts when its place along the
/// border lies in minimum <= place < maximum, so that a segment through the upper right corner is not found
/// there on two lines. What follows from that is meant: a segment that has one end, or none, inside and meets
/// the window in one counted point only keeps its second end as it is, also outside; one that meets the lower
/// left corner is found there twice and shrinks to that point.
template <class P>
class HALYARD_API LineClipper : public Clipper<P> {
public:
    explicit LineClipper(const Extents2D<double>& window) : Clipper<P>(window) {}

    /// The output has the direction of the input. Inside and Outside leave it alone.
    ClipResult Clip(const Line<P>& input, Line<P>& output) const;
};

extern template class LineClipper<Point3D<double>>;

} // namespace GTL
