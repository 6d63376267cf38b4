#include "clip/ArcClipper.h"

#include "clip/CircleCrossings.h"

#include <algorithm>

namespace GTL {
namespace {

/// A place on the sweep: its bearing, and how it is ordered (bearings beyond 360 follow the passage through
/// 0).
struct Entry {
    double order;
    double bearing;

    bool operator<(const Entry& other) const { return order < other.order; }
};

/// True when a bearing lies on the sweep from start to end; equal ends sweep everything.
bool IsOnSweep(double bearing, double start, double end)
{
    if (end > start) return start < bearing && bearing < end;
    if (end < start) return bearing < end || bearing > start;
    return true;
}

/// How many ends of the arc are crossings, to the last bit.
template <class P>
std::size_t EndsAmong(const CircleCrossings& found, const Arc<P>& arc)
{
    std::size_t count = 0;
    for (const Angle& end : {arc.StartAngle(), arc.EndAngle()})
        for (std::size_t i = 0; i < found.Count(); ++i)
            if (Angle(found[i]) == end) {
                ++count;
                break;
            }
    return count;
}

/// Several squares have the radius for their root, and an arc that was cut from a circle had one of them. The
/// one by whose crossings most ends were cut is taken, so that pieces stay what they are.
template <class P>
CircleCrossings CrossingsOf(const Extents2D<double>& window, const Arc<P>& arc)
{
    const double square = arc.Radius() * arc.Radius();
    CircleCrossings best(window, arc.Center(), square);
    for (const double other : {std::nextafter(square, 0), std::nextafter(square, 2 * square)}) {
        if (std::sqrt(other) != arc.Radius()) continue;
        const CircleCrossings found(window, arc.Center(), other);
        if (EndsAmong(found, arc) > EndsAmong(best, arc)) best = found;
    }
    return best;
}

} // namespace

template <class P>
ClipResult ArcClipper<P>::Clip(const Arc<P>& input, std::vector<Arc<P>>& output) const
{
    output.clear();
    const double radius = input.Radius();
    if (!(radius >= SMALLEST_RADIUS) || !this->Window().IsValid()) return Outside;
    const double start = input.StartAngle().Get();
    const double end = input.EndAngle().Get() < Epsilon(360.0) ? 360.0 : input.EndAngle().Get();

    std::array<Entry, 10> entries{{{start, start}}};
    std::size_t count = 1;
    bool startsOnCrossing = false;
    const CircleCrossings found = CrossingsOf(this->Window(), input);
    for (std::size_t i = 0; i < found.Count(); ++i) {
        const double bearing = TrimAngle(found[i]);
        if (bearing == start) startsOnCrossing = true;
        if (IsOnSweep(bearing, start, end))
            entries[count++] = {end <= start && bearing < start ? bearing + 360 : bearing, bearing};
    }
    std::sort(entries.begin() + 1, entries.begin() + static_cast<std::ptrdiff_t>(count));
    entries[count++] = {end + 360, input.EndAngle().Get()};

    const P place = input.StartPoint();
    const bool inside = startsOnCrossing ? EntersAt(this->Window(), input.Center(), place)
                                         : this->Window().Classify(place) == CLS::INSIDE;
    if (count == 2 && inside) output.push_back(input);
    for (std::size_t i = inside ? 1 : 2; i < count && count > 2; i += 2)
        output.push_back(
            Arc<P>(input.Center(), radius, Angle(entries[i - 1].bearing), Angle(entries[i].bearing)));
    return Clipped;
}

template class ArcClipper<Point3D<double>>;

} // namespace GTL
