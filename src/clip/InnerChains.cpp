#include "clip/InnerChains.h"

#include <algorithm>

namespace GTL {
namespace {

/// A ring of many vertices may have few within the window.
constexpr std::size_t LARGEST_RESERVE = 1024;

} // namespace

InnerChains::InnerChains(const Extents2D<double>& window, const std::vector<P>& ring)
    : m_Window(window), m_Cut(window, SegmentCut::Border::EXCLUDED)
{
    m_Points.reserve(std::min(ring.size() + 2, LARGEST_RESERVE));
    const SegmentCut::Code first = m_Cut.CodeOf(ring.front());
    if (first == 0) {
        m_Chains.emplace_back();
        m_Points.push_back(ring.front());
    }
    SegmentCut::Code codeA = first;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const P& a = ring[i];
        const P& b = ring[i + 1 == ring.size() ? 0 : i + 1];
        const SegmentCut::Code codeB = m_Cut.CodeOf(b);
        if (a.B() != 0 && IsBent(a, b))
            Bent(a, codeA, b, codeB);
        else if ((codeA | codeB) == 0)
            m_Points.push_back(b);
        else if ((codeA & codeB) == 0)
            Straight(a, codeA, b, codeB);
        codeA = codeB;
    }
    if (first == 0) JoinEnds();
}

void InnerChains::Straight(const P& a, SegmentCut::Code codeA, const P& b, SegmentCut::Code codeB)
{
    SegmentCut::Stretch inside;
    if (!m_Cut.Straight(a, codeA, b, codeB, inside)) return;
    const Vector2D<double> direction(b.X() / 2 - a.X() / 2, b.Y() / 2 - a.Y() / 2);
    if (codeA != 0) Enter(m_Cut.PointAt(a, b, inside.from), direction);
    if (codeB != 0)
        Leave(m_Cut.PointAt(a, b, inside.to), -direction);
    else
        m_Points.push_back(b);
}

void InnerChains::Bent(const P& a, SegmentCut::Code codeA, const P& b, SegmentCut::Code codeB)
{
    // How an arc leans at the border is seen a little further along it.
    constexpr double FURTHER = 1.0 / 64;
    const BulgeSegment arc(a, b);
    const SegmentCut::Stretches inside = m_Cut.Bent(arc, a, b);
    for (std::size_t i = 0; i < inside.count; ++i) {
        const auto& [from, to] = inside.list[i];
        const double step = (to.at - from.at) * FURTHER;
        if (from.at > 0 || codeA != 0) {
            const P entry = m_Cut.PointAt(arc, from);
            const P further = arc.PointAt(from.at + step);
            Enter(entry, {further.X() - entry.X(), further.Y() - entry.Y()});
        }
        m_Points.back().B(from.at == 0 && to.at == 1 ? a.B() : arc.BulgeBetween(from.at, to.at));
        if (to.at == 1 && codeB == 0) {
            m_Points.push_back(b);
        } else {
            const P exit = m_Cut.PointAt(arc, to);
            const P before = arc.PointAt(to.at - step);
            Leave(exit, {before.X() - exit.X(), before.Y() - exit.Y()});
        }
    }
}

void InnerChains::Enter(const P& p, const Vector2D<double>& inward)
{
    m_Chains.push_back({m_Points.size(), 0, PlaceOf(p, inward), {}});
    m_Points.push_back(p);
}

void InnerChains::Leave(const P& p, const Vector2D<double>& inward)
{
    m_Points.push_back(p);
    m_Chains.back().end = m_Points.size();
    m_Chains.back().exit = PlaceOf(p, inward);
}

void InnerChains::JoinEnds()
{
    if (m_Chains.size() == 1 && m_Chains.front().end == 0) {
        m_RingIsInside = true;
        m_Chains.clear();
        return;
    }
    // The last chain has come back to the vertex with which the first one begins.
    InnerChain& first = m_Chains.front();
    const InnerChain last = m_Chains.back();
    m_Points.pop_back();
    for (std::size_t i = first.begin; i < first.end; ++i) m_Points.push_back(P(m_Points[i]));
    first = {last.begin, m_Points.size(), last.entry, first.exit};
    m_Chains.pop_back();
}

BorderPlace InnerChains::PlaceOf(const P& p, const Vector2D<double>& inward) const
{
    BorderPlace place;
    double forward = 0;
    double depth = 0;
    if (p.Y() == m_Window.MinY() && p.X() < m_Window.MaxX()) {
        place = {Side::BOTTOM, p.X(), 0};
        forward = inward.X();
        depth = inward.Y();
    } else if (p.X() == m_Window.MaxX() && p.Y() < m_Window.MaxY()) {
        place = {Side::RIGHT, p.Y(), 0};
        forward = inward.Y();
        depth = -inward.X();
    } else if (p.Y() == m_Window.MaxY() && p.X() > m_Window.MinX()) {
        place = {Side::TOP, -p.X(), 0};
        forward = -inward.X();
        depth = -inward.Y();
    } else {
        place = {Side::LEFT, -p.Y(), 0};
        forward = -inward.Y();
        depth = inward.X();
    }
    const double size = std::max(std::abs(forward), std::abs(depth));
    if (size > 0 && std::isfinite(size))
        place.slant = forward / size / (std::abs(forward) / size + std::max(depth, 0.0) / size);
    if (!std::isfinite(place.slant)) place.slant = 0;
    return place;
}

} // namespace GTL
