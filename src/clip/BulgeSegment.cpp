#include "clip/BulgeSegment.h"

#include <algorithm>

namespace GTL {

BulgeSegment::BulgeSegment(const P& from, const P& to)
    : m_From(from),
      m_To(to),
      m_Chord(to.X() - from.X(), to.Y() - from.Y()),
      m_Normal(m_Chord.Y(), -m_Chord.X())
{
    // With b the tangent of a quarter of the included angle: c = (1 - b^2) / (1 + b^2), s = 2b / (1 + b^2).
    // The inverse of a large b gives the same values without overflow.
    const double b = from.B();
    const bool large = std::abs(b) > 1;
    const double ratio = large ? 1 / b : b;
    const double square = ratio * ratio;
    m_Sine = 2 * ratio / (1 + square);
    m_Cosine = (large ? square - 1 : 1 - square) / (1 + square);
}

double BulgeSegment::HalfSwept(double v) const
{
    return std::atan2(v * std::abs(m_Sine), (1 - v) + v * m_Cosine);
}

Point2D<double> BulgeSegment::PlanAt(double v) const
{
    const double middle = v * (1 - v);
    const double weight = (1 - v) * (1 - v) + 2 * middle * m_Cosine + v * v;
    const double along = (middle * m_Cosine + v * v) / weight;
    const double across = middle * m_Sine / weight;
    return {m_From.X() + along * m_Chord.X() + across * m_Normal.X(),
            m_From.Y() + along * m_Chord.Y() + across * m_Normal.Y()};
}

BulgeSegment::P BulgeSegment::PointAt(double v) const
{
    const double swept = HalfSwept(v) / HalfSwept(1);
    return {PlanAt(v), m_From.Z() + swept * (m_To.Z() - m_From.Z()), 0};
}

Point2D<double> BulgeSegment::MiddleOfChord(double v0, double v1) const
{
    const Point2D<double> p = PlanAt(v0 + (v1 - v0) / 3);
    const Point2D<double> q = PlanAt(v1 - (v1 - v0) / 3);
    return {p.X() / 2 + q.X() / 2, p.Y() / 2 + q.Y() / 2};
}

double BulgeSegment::BulgeBetween(double v0, double v1) const
{
    return std::copysign(std::tan((HalfSwept(v1) - HalfSwept(v0)) / 2), m_From.B());
}

BulgeSegment::Roots BulgeSegment::Zeros(double atFrom, double atTo, double alongNormal) const
{
    // p0 (1-v)^2 + 2 p1 v (1-v) + p2 v^2 = 0, brought to a scale on which nothing overflows.
    double p0 = atFrom;
    double p1 = m_Cosine * (atFrom / 2 + atTo / 2) + m_Sine * (alongNormal / 2);
    double p2 = atTo;
    const double scale = std::max({std::abs(p0), std::abs(p1), std::abs(p2)});
    Roots roots;
    if (!(scale > 0) || std::isinf(scale)) return roots;
    p0 /= scale;
    p1 /= scale;
    p2 /= scale;
    const double discriminant = p1 * p1 - p0 * p2;
    if (discriminant > 0) {
        const double q = -(p1 + std::copysign(std::sqrt(discriminant), p1));
        // The ratios v : (1-v) of the roots are q : p2 and p0 : q; those above 0 lie on the arc.
        if (q * p2 > 0) roots.v[roots.count++] = q / (q + p2);
        if (q * p0 > 0) roots.v[roots.count++] = p0 / (p0 + q);
    }
    // An end on the zero, also one in which the arc touches it, counts when what is next to it is positive.
    if (p0 == 0 && (p1 > 0 || (p1 == 0 && p2 > 0))) roots.v[roots.count++] = 0;
    if (p2 == 0 && (p1 > 0 || (p1 == 0 && p0 > 0))) roots.v[roots.count++] = 1;
    if (roots.count == 2 && roots.v[0] > roots.v[1]) std::swap(roots.v[0], roots.v[1]);
    return roots;
}

BulgeSegment::Crossings BulgeSegment::CrossingsWith(const Extents2D<double>& window) const
{
    Crossings found;
    const auto take = [&found](const Roots& roots, Side side) {
        for (std::size_t i = 0; i < roots.count; ++i) found.places[found.count++] = {roots.v[i], side};
    };
    const auto meetX = [this](double x) {
        return Zeros(m_From.X() - x, m_To.X() - x, m_Normal.X());
    };
    const auto meetY = [this](double y) {
        return Zeros(m_From.Y() - y, m_To.Y() - y, m_Normal.Y());
    };
    take(meetY(window.MinY()), Side::BOTTOM);
    take(meetX(window.MaxX()), Side::RIGHT);
    take(meetY(window.MaxY()), Side::TOP);
    take(meetX(window.MinX()), Side::LEFT);
    std::stable_sort(found.places.begin(), found.places.begin() + static_cast<std::ptrdiff_t>(found.count),
                     [](const Crossing& a, const Crossing& b) { return a.v < b.v; });
    return found;
}

void BulgeSegment::Widen(Extents3D<double>& box) const
{
    const double half = HalfSwept(1);
    const double turn = std::copysign(1.0, m_From.B());
    const double chordAngle = std::atan2(m_Chord.Y(), m_Chord.X());
    for (int quarter = 0; quarter < 4; ++quarter) {
        // After sweeping 2h the direction of travel is that of the chord turned by 2h - half.
        double swept = std::fmod(half + turn * (quarter * (MATH::TWOPI / 4) - chordAngle), MATH::TWOPI);
        if (swept < 0) swept += MATH::TWOPI;
        if (!(swept > 0 && swept < 2 * half)) continue;
        const double h = swept / 2;
        const double length = std::sin(h) / std::abs(m_Sine);
        const double along = length * std::cos(h - half);
        const double across = length * turn * std::sin(half - h);
        box.Update(m_From.X() + along * m_Chord.X() + across * m_Normal.X(),
                   m_From.Y() + along * m_Chord.Y() + across * m_Normal.Y(), m_From.Z());
    }
}

Extents3D<double> BulgedBox(const Polyline<Point3D<double>>& line, bool ring)
{
    Extents3D<double> box = line.VertexBox();
    if (!line.HasBulges()) return box;
    const std::vector<Point3D<double>>& vertices = line.Vertices();
    for (std::size_t i = 1; i < vertices.size(); ++i)
        if (IsBent(vertices[i - 1], vertices[i])) BulgeSegment(vertices[i - 1], vertices[i]).Widen(box);
    if (ring && IsBent(vertices.back(), vertices.front()))
        BulgeSegment(vertices.back(), vertices.front()).Widen(box);
    return box;
}

} // namespace GTL
