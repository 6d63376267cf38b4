#include "clip/Winding.h"

#include <algorithm>

namespace GTL {
namespace {

using P3 = Point3D<double>;

/// Coordinates seen from a place on a side: forward counter-clockwise along the side, out of the window.
class SideFrame {
public:
    SideFrame(const Extents2D<double>& window, Side side, double along) : m_Side(side)
    {
        switch (side) {
        case Side::BOTTOM:
            m_Place = {along, window.MinY()};
            break;
        case Side::RIGHT:
            m_Place = {window.MaxX(), along};
            break;
        case Side::TOP:
            m_Place = {-along, window.MaxY()};
            break;
        default:
            m_Place = {window.MinX(), -along};
            break;
        }
    }

    double Forward(const P3& p) const { return Turned(AlongX() ? p.X() - m_Place.X() : p.Y() - m_Place.Y()); }
    double Out(const Point2D<double>& p) const
    {
        return Outwards(AlongX() ? p.Y() - m_Place.Y() : p.X() - m_Place.X());
    }
    double Forward(const Vector2D<double>& v) const { return Turned(AlongX() ? v.X() : v.Y()); }
    double Out(const Vector2D<double>& v) const { return Outwards(AlongX() ? v.Y() : v.X()); }

private:
    double Turned(double along) const
    {
        return m_Side == Side::BOTTOM || m_Side == Side::RIGHT ? along : -along;
    }
    double Outwards(double across) const
    {
        return m_Side == Side::TOP || m_Side == Side::RIGHT ? across : -across;
    }
    bool AlongX() const { return m_Side == Side::BOTTOM || m_Side == Side::TOP; }

    Side m_Side;
    Point2D<double> m_Place;
};

/// Whether the straight segment that passes the ray's line meets the ray itself.
bool MeetsRay(double forwardA, double outA, double forwardB, double outB)
{
    if (outA >= 0 && outB >= 0) return true;
    if (outA < 0 && outB < 0) return false;
    const double at = forwardA / (forwardA - forwardB);
    return outA + at * (outB - outA) >= 0;
}

/// Whether an arc lies beyond the line of the side where it passes the ray's line. The stretch between two
/// crossings with the line decides, not the place itself: the arc may touch the border there.
bool IsBeyond(const SideFrame& frame, const BulgeSegment& arc, const P3& a, const P3& b, double v)
{
    const BulgeSegment::Roots crossings = arc.Zeros(frame.Out(a), frame.Out(b), frame.Out(arc.Normal()));
    double from = 0;
    double to = 1;
    for (std::size_t i = 0; i < crossings.count; ++i) {
        if (crossings.v[i] < v) from = crossings.v[i];
        if (crossings.v[i] > v) to = std::min(to, crossings.v[i]);
    }
    return frame.Out(arc.MiddleOfChord(from, to)) >= 0;
}

} // namespace

int WindingInsideBorder(const std::vector<P3>& ring, const Extents2D<double>& window, Side side, double along)
{
    const SideFrame frame(window, side, along);
    int winding = 0;
    double forwardA = frame.Forward(ring.back());
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const P3& a = ring[i == 0 ? ring.size() - 1 : i - 1];
        const P3& b = ring[i];
        const double forwardB = frame.Forward(b);
        const bool passes = (forwardA <= 0) != (forwardB <= 0);
        if (a.B() != 0 && IsBent(a, b)) {
            const BulgeSegment arc(a, b);
            const BulgeSegment::Roots roots = arc.Zeros(forwardA, forwardB, frame.Forward(arc.Normal()));
            int turn = forwardA <= 0 ? 1 : -1;
            for (std::size_t k = 0; k < roots.count; ++k) {
                if (IsBeyond(frame, arc, a, b, roots.v[k])) winding += turn;
                turn = -turn;
            }
        } else if (passes && MeetsRay(forwardA, frame.Out(a), forwardB, frame.Out(b))) {
            winding += forwardA <= 0 ? 1 : -1;
        }
        forwardA = forwardB;
    }
    return winding;
}

} // namespace GTL
