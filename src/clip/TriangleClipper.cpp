#include "clip/TriangleClipper.h"

#include "clip/PolygonClipper.h"

namespace GTL {

template <class P>
ClipResult TriangleClipper<P>::Clip(const std::array<P, 3>& corners, std::vector<P>& output) const
{
    output.clear();
    if (this->Classify(corners[0]) == Inside && this->Classify(corners[1]) == Inside
        && this->Classify(corners[2]) == Inside)
        return Inside;
    Polyline<P> ring;
    for (const P& corner : corners) ring.PushBack(P(corner.X(), corner.Y(), corner.Z()));
    std::vector<Polyline<P>> pieces;
    const ClipResult result = PolygonClipper<P>(this->Window()).Clip(ring, pieces);
    if (result == Clipped) output = pieces.front().Vertices();
    return result;
}

template class TriangleClipper<Point3D<double>>;

} // namespace GTL
