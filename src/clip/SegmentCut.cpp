#include "clip/SegmentCut.h"

#include <algorithm>
#include <limits>

namespace GTL {
namespace {

/// Between two bounds; what is not a number comes to the lower one.
double Within(double value, double low, double high)
{
    return value >= low ? std::min(value, high) : low;
}

} // namespace

SegmentCut::SegmentCut(const Extents2D<double>& window, Border border)
    : m_Window(window),
      m_Border(border),
      m_LowX(window.MinX()),
      m_HighX(window.MaxX()),
      m_LowY(window.MinY()),
      m_HighY(window.MaxY())
{
    if (border == Border::EXCLUDED) return;
    m_LowX -= Epsilon(m_LowX);
    m_HighX += Epsilon(m_HighX);
    m_LowY -= Epsilon(m_LowY);
    m_HighY += Epsilon(m_HighY);
}

bool SegmentCut::IsTrulyInside(const Point2D<double>& p) const
{
    return p.X() > m_Window.MinX() && p.X() < m_Window.MaxX() && p.Y() > m_Window.MinY()
           && p.Y() < m_Window.MaxY();
}

bool SegmentCut::Straight(const P& a, Code codeA, const P& b, Code codeB, Stretch& inside) const
{
    if ((codeA & codeB) != 0 || IsNowhere(codeA) || IsNowhere(codeB)) return false;
    const double lines[] = {m_Window.MinY(), m_Window.MaxX(), m_Window.MaxY(), m_Window.MinX()};
    inside = {{0, false, Side::UNKNOWN}, {1, false, Side::UNKNOWN}};
    const auto meet = [&](unsigned side) {
        return side % 2 == 0 ? (lines[side] - a.Y()) / (b.Y() - a.Y())
                             : (lines[side] - a.X()) / (b.X() - a.X());
    };
    for (unsigned side = 0; side < 4; ++side) {
        if ((codeA >> side & 1) == 0) continue;
        const double t = meet(side);
        if (!inside.from.onBorder || t > inside.from.at) inside.from = {t, true, Side(side)};
    }
    for (unsigned side = 0; side < 4; ++side) {
        if ((codeB >> side & 1) == 0) continue;
        const double t = meet(side);
        if (!inside.to.onBorder || t < inside.to.at) inside.to = {t, true, Side(side)};
    }
    inside.from.at = Within(inside.from.at, 0, 1);
    inside.to.at = Within(inside.to.at, 0, 1);
    return codeA == 0 || codeB == 0 || inside.from.at < inside.to.at;
}

bool SegmentCut::HoldsBetween(const BulgeSegment& arc, double v0, double v1) const
{
    if (IsTrulyInside(arc.MiddleOfChord(v0, v1))) return true;
    if (m_Border == Border::EXCLUDED) return false;
    // Within the tolerance only: an arc that merely comes near the border from outside must not count.
    return CodeOf(arc.PointAt(v0 + (v1 - v0) / 2)) == 0 && CodeOf(arc.PointAt(v0)) == 0
           && CodeOf(arc.PointAt(v1)) == 0;
}

SegmentCut::Stretches SegmentCut::Bent(const BulgeSegment& arc, const P& a, const P& b) const
{
    const BulgeSegment::Crossings crossings = arc.CrossingsWith(m_Window);
    Stretches found;
    bool open = false;
    End from{0, !IsTrulyInside(a), Side::UNKNOWN};
    for (std::size_t i = 0; i <= crossings.count; ++i) {
        const End begin = i == 0 ? from : End{crossings.places[i - 1].v, true, crossings.places[i - 1].side};
        const double end = i == crossings.count ? 1 : crossings.places[i].v;
        // An end that is truly inside settles its neighbourhood; rounding cannot.
        const bool inside = (i == 0 && IsTrulyInside(a)) || (i == crossings.count && IsTrulyInside(b))
                            || HoldsBetween(arc, begin.at, end);
        if (inside && !open) from = begin;
        if (!inside && open && (begin.at > from.at || !from.onBorder))
            found.list[found.count++] = {from, begin};
        open = inside;
    }
    if (open && (from.at < 1 || IsTrulyInside(b)))
        found.list[found.count++] = {from, {1, !IsTrulyInside(b), Side::UNKNOWN}};
    return found;
}

SegmentCut::P SegmentCut::PointAt(const P& a, const P& b, const End& end) const
{
    if (!end.onBorder) return end.at == 0 ? a : b;
    const double t = end.at;
    return Settle({a.X() + t * (b.X() - a.X()), a.Y() + t * (b.Y() - a.Y()), a.Z() + t * (b.Z() - a.Z())},
                  end.side);
}

SegmentCut::P SegmentCut::PointAt(const BulgeSegment& arc, const End& end) const
{
    return Settle(arc.PointAt(end.at), end.side);
}

SegmentCut::P SegmentCut::Settle(const P& p, Side side) const
{
    const Extents2D<double>& w = m_Window;
    P settled(Within(p.X(), w.MinX(), w.MaxX()), Within(p.Y(), w.MinY(), w.MaxY()), p.Z());
    if (side == Side::BOTTOM) settled.Y() = w.MinY();
    if (side == Side::RIGHT) settled.X() = w.MaxX();
    if (side == Side::TOP) settled.Y() = w.MaxY();
    if (side == Side::LEFT) settled.X() = w.MinX();
    return settled;
}

} // namespace GTL
