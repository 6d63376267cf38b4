#pragma once

#include "support/Arc.h"

#include <cmath>
#include <optional>
#include <vector>

namespace GTL {

/// The arc that a bulge puts in place of the straight segment from one vertex to the next, or none for a
/// straight one (bulge 0 or not finite, both ends in one place, or a circle beyond the range of doubles). A
/// bulge is the tangent of a quarter of the included angle, positive when the arc turns counter-clockwise
/// from start to end; the centre follows from the chord: with k = (b - 1/b) / 2 it is ((P1 + P2) + k (dy,
/// -dx)) / 2, dx and dy from P1 to P2.
template <class P>
std::optional<Arc<P>> BulgeArc(const P& from, const P& to, double bulge)
{
    using T = typename P::Scalar;
    const double dx = to.X() - from.X();
    const double dy = to.Y() - from.Y();
    if (bulge == 0 || !std::isfinite(bulge) || (dx == 0 && dy == 0)) return std::nullopt;
    const double k = (bulge - 1 / bulge) / 2;
    const P center(T((from.X() + to.X() + k * dy) / 2), T((from.Y() + to.Y() - k * dx) / 2), from.Z());
    const double radius = center.Dist2D(from, false);
    if (!std::isfinite(radius)) return std::nullopt;
    Arc<P> arc(center, radius, Angle(), Angle());
    const Angle atFrom = arc.BearingOf(from);
    const Angle atTo = arc.BearingOf(to);
    arc.SetStartAngle(bulge < 0 ? atFrom : atTo);
    arc.SetEndAngle(bulge < 0 ? atTo : atFrom);
    return arc;
}

/// A list of vertices with a running box of the vertices themselves (bulges not counted). Removing or
/// replacing a vertex makes the box anew; adding one widens it.
template <class P>
class Polyline {
public:
    using T = typename P::Scalar;

    Polyline() = default;
    explicit Polyline(std::vector<P> vertices) : m_Vertices(std::move(vertices)) { RemakeBox(); }

    std::size_t NumPoints() const { return m_Vertices.size(); }
    bool IsEmpty() const { return m_Vertices.empty(); }
    /// Index not checked.
    const P& operator[](std::size_t index) const { return m_Vertices[index]; }
    const std::vector<P>& Vertices() const { return m_Vertices; }
    const P& Front() const { return m_Vertices.front(); }
    const P& Back() const { return m_Vertices.back(); }

    void Reserve(std::size_t count) { m_Vertices.reserve(count); }
    void PushBack(const P& p)
    {
        m_Vertices.push_back(p);
        Notice(p);
    }
    void PushFront(const P& p) { Insert(0, p); }
    /// Before the vertex at index; an index past the end appends.
    void Insert(std::size_t index, const P& p)
    {
        const std::size_t place = index < m_Vertices.size() ? index : m_Vertices.size();
        m_Vertices.insert(m_Vertices.begin() + static_cast<std::ptrdiff_t>(place), p);
        Notice(p);
    }
    /// Replaces a vertex; an index past the end changes nothing.
    void Set(std::size_t index, const P& p)
    {
        if (index >= m_Vertices.size()) return;
        m_Vertices[index] = p;
        RemakeBox();
    }
    void Clear()
    {
        m_Vertices.clear();
        RemakeBox();
    }
    void Transform(const Transformation<P>& t)
    {
        for (P& p : m_Vertices) p = t.Apply(p);
        RemakeBox();
    }

    /// Box of the vertices.
    const Extents3D<T>& VertexBox() const { return m_Box; }
    /// False when every vertex has the bulge 0.
    bool HasBulges() const { return m_HasBulges; }
    /// True when both coordinates in plan of every vertex are finite numbers.
    bool IsFinite() const { return m_IsFinite; }

    bool operator==(const Polyline& other) const { return m_Vertices == other.m_Vertices; }

private:
    void RemakeBox()
    {
        m_Box.Reset();
        m_HasBulges = false;
        m_IsFinite = true;
        for (const P& p : m_Vertices) Notice(p);
    }
    void Notice(const P& p)
    {
        m_IsFinite = m_IsFinite && std::isfinite(double(p.X())) && std::isfinite(double(p.Y()));
        if constexpr (requires { p.Z(); }) {
            m_Box.Update(p);
            m_HasBulges = m_HasBulges || p.B() != 0;
        } else {
            m_Box.Update(p.X(), p.Y(), T{});
        }
    }

    std::vector<P> m_Vertices;
    Extents3D<T> m_Box;
    bool m_HasBulges = false;
    bool m_IsFinite = true;
};

} // namespace GTL
