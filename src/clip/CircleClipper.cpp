#include "clip/CircleClipper.h"

#include "clip/CircleCrossings.h"

#include <algorithm>

namespace GTL {

template <class P>
ClipResult CircleClipper<P>::Clip(const Circle<P>& input, std::vector<Arc<P>>& output) const
{
    output.clear();
    const double radius = input.Radius();
    if (!(radius >= SMALLEST_RADIUS)) return Outside;
    const CircleCrossings found(this->Window(), input.Center(), input.SquaredRadius());
    if (found.Count() < 2) return this->Classify(input.Center());

    std::array<double, 8> entries{};
    for (std::size_t i = 0; i < found.Count(); ++i) entries[i] = found[i];
    for (std::size_t i = 1; i + 1 < found.Count(); ++i)
        std::swap(entries[i], *std::min_element(&entries[i], &entries[0] + found.Count()));

    const Arc<P> whole(input.Center(), radius, Angle(), Angle());
    const bool enters = EntersAt(this->Window(), input.Center(), whole.PointAt(Angle(entries[0])));
    for (std::size_t i = enters ? 1 : 2; i < found.Count(); i += 2)
        output.push_back(Arc<P>(input.Center(), radius, Angle(entries[i - 1]), Angle(entries[i])));
    return Clipped;
}

template class CircleClipper<Point3D<double>>;

} // namespace GTL
