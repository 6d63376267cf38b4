#include "clip/Winding.h"

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
    double Out(const P3& p) const
    {
        const double out = AlongX() ? p.Y() - m_Place.Y() : p.X() - m_Place.X();
        return m_Side == Side::TOP || m_Side == Side::RIGHT ? out : -out;
    }
    double Forward(const Vector2D<double>& v) const { return Turned(AlongX() ? v.X() : v.Y()); }

private:
    double Turned(double along) const
    {
        return m_Side == Side::BOTTOM || m_Side == Side::RIGHT ? along : -along;
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
                if (frame.Out(arc.PointAt(roots.v[k])) >= 0) winding += turn;
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
