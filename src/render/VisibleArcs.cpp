#include "render/VisibleArcs.h"

#include "clip/CircleCrossings.h"
#include "support/Angle.h"

#include <algorithm>
#include <cmath>

namespace {

using Window = GTL::Extents2D<double>;
using P2 = GTL::Point2D<double>;

/// Beyond this, squares overflow.
constexpr double REACH = 1e150;

bool IsWithinReach(const P2& center, double radius)
{
    return std::fabs(center.X()) < REACH && std::fabs(center.Y()) < REACH && std::fabs(radius) < REACH;
}

P2 PointAt(const P2& center, double radius, double bearing)
{
    const Angle angle(bearing);
    return {center.X() + radius * angle.Sin(), center.Y() + radius * angle.Cos()};
}

} // namespace

VisibleArcs::VisibleArcs(const Window& window, const P2& center, double radius, double start, double sweep)
{
    if (!IsWithinReach(center, radius)) return;
    const Window box({center.X() - radius, center.Y() - radius}, {center.X() + radius, center.Y() + radius});
    const GTL::CLS::CLASSIFICATION place = window.Classify(box);
    if (place == GTL::CLS::OUTSIDE) return;
    if (place == GTL::CLS::INSIDE) {
        Take(start, start + sweep);
        return;
    }

    // Where the arc may come in or go out, as degrees from its start.
    std::array<double, 10> bounds{};
    std::size_t count = 1;
    const GTL::CircleCrossings crossings(window, center, radius * radius);
    for (std::size_t i = 0; i < crossings.Count(); ++i) {
        const double turned = TrimAngle(crossings[i] - start);
        if (turned > 0 && turned < sweep) bounds[count++] = turned;
    }
    bounds[count++] = sweep;
    std::sort(bounds.begin(), bounds.begin() + static_cast<std::ptrdiff_t>(count));
    for (std::size_t i = 1; i < count; ++i) {
        const double middle = start + (bounds[i - 1] + bounds[i]) / 2;
        if (window.Classify(PointAt(center, radius, middle)) == GTL::CLS::INSIDE)
            Take(start + bounds[i - 1], start + bounds[i]);
    }
}

/// A stretch that follows on the one before goes on with it.
void VisibleArcs::Take(double start, double end)
{
    if (!(end > start)) return;
    if (m_Count > 0 && m_Pieces[m_Count - 1].end == start)
        m_Pieces[m_Count - 1].end = end;
    else
        m_Pieces[m_Count++] = {start, end};
}
