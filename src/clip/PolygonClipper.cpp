#include "clip/PolygonClipper.h"

#include "clip/BulgeSegment.h"
#include "clip/OutlineCut.h"

#include <type_traits>

namespace GTL {

template <class P>
ClipResult PolygonClipper<P>::Clip(const Polyline<P>& ring, std::vector<Polyline<P>>& output) const
{
    output.clear();
    if constexpr (std::is_same_v<P, Point3D<double>>) {
        const ClipResult whole = this->ClassifyBox(BulgedBox(ring, true));
        if (whole == Outside || (whole == Inside && ring.IsFinite())) return whole;
        return CutOutline(this->Window(), ring.Vertices(), output);
    } else {
        Polyline<Point3D<double>> raised;
        raised.Reserve(ring.NumPoints());
        for (const P& p : ring.Vertices()) raised.PushBack(Point3D<double>(p, 0, 0));
        std::vector<Polyline<Point3D<double>>> pieces;
        const ClipResult result = PolygonClipper<Point3D<double>>(this->Window()).Clip(raised, pieces);
        for (const Polyline<Point3D<double>>& piece : pieces)
            output.emplace_back(std::vector<P>(piece.Vertices().begin(), piece.Vertices().end()));
        return result;
    }
}

template class PolygonClipper<Point3D<double>>;
template class PolygonClipper<Point2D<double>>;

} // namespace GTL
