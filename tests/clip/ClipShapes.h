#pragma once

#include "support/Polygon.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

/// Random shapes from seeds, and slow plain measures of shapes that know nothing of clipping.
namespace clipshapes {

using P3 = GTL::Point3D<double>;
using Line = GTL::Polyline<P3>;
using Window = GTL::Extents2D<double>;

class Random {
public:
    explicit Random(unsigned seed) : m_Engine(seed) {}
    double Real(double low, double high)
    {
        return low + (high - low) * double(m_Engine()) / double(std::mt19937::max());
    }
    int Whole(int low, int high) { return low + int(m_Engine() % unsigned(high - low + 1)); }
    bool OneIn(int n) { return Whole(1, n) == 1; }

private:
    std::mt19937 m_Engine;
};

/// A ring around (5, 5) that does not cross itself while its bulges are 0; convex when its spread is 0.
inline Line StarRing(Random& random, double spread, double maxBulge)
{
    const int corners = random.Whole(3, 12);
    const double size = random.Real(1, 9);
    const double turn = random.OneIn(2) ? 1 : -1;
    const P3 middle(random.Real(2, 8), random.Real(2, 8), 0);
    Line ring;
    for (int i = 0; i < corners; ++i) {
        const double angle = turn * (i + random.Real(0, 0.5)) * MATH::TWOPI / corners;
        const double radius = size * (1 - spread * random.Real(0, 1));
        ring.PushBack(P3(middle.X() + radius * std::cos(angle), middle.Y() + radius * std::sin(angle), 7,
                         random.Real(-maxBulge, maxBulge)));
    }
    return ring;
}

/// A ring of whole coordinates from 0 to 8: it crosses and touches itself, repeats vertices and runs along
/// whatever has whole coordinates too.
inline Line WildRing(Random& random, double maxBulge)
{
    Line ring;
    const int corners = random.Whole(1, 9);
    for (int i = 0; i < corners; ++i)
        ring.PushBack(P3(random.Whole(0, 8), random.Whole(0, 8), 7,
                         random.OneIn(2) ? 0 : random.Real(-maxBulge, maxBulge)));
    return ring;
}

/// Vertices of a chain, arcs replaced by points of them; for a ring the first one again at the end.
inline std::vector<P3> Flattened(const Line& line, bool ring, int steps = 200)
{
    std::vector<P3> points;
    const std::size_t segments = ring ? line.NumPoints() : line.NumPoints() - 1;
    for (std::size_t i = 0; i < segments; ++i) {
        const P3& a = line[i];
        const P3& b = line[(i + 1) % line.NumPoints()];
        points.push_back(a);
        const auto arc = GTL::BulgeArc(a, b, a.B());
        if (!arc) continue;
        const double from = arc->BearingOf(a).Get();
        const double swept = -4 * std::atan(a.B()) * MATH::RTD; // bearings turn clockwise
        for (int k = 1; k < steps; ++k) {
            P3 p = arc->PointAt(Angle(from + swept * k / steps));
            p.Z(a.Z() + (b.Z() - a.Z()) * k / steps);
            points.push_back(p);
        }
    }
    points.push_back(ring ? line[0] : line.Back());
    return points;
}

/// How often closed points wind around a place, by the angle under which they are seen from there.
inline int WindingAround(const std::vector<P3>& points, double x, double y)
{
    double turned = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const double ax = points[i - 1].X() - x;
        const double ay = points[i - 1].Y() - y;
        const double bx = points[i].X() - x;
        const double by = points[i].Y() - y;
        turned += std::atan2(ax * by - ay * bx, ax * bx + ay * by);
    }
    return int(std::lround(turned / MATH::TWOPI));
}

inline double DistanceTo(const std::vector<P3>& points, double x, double y)
{
    double nearest = INFINITY;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const double dx = points[i].X() - points[i - 1].X();
        const double dy = points[i].Y() - points[i - 1].Y();
        const double along = dx * (x - points[i - 1].X()) + dy * (y - points[i - 1].Y());
        const double t = std::clamp(along / std::max(dx * dx + dy * dy, 1e-300), 0.0, 1.0);
        nearest =
            std::min(nearest, std::hypot(x - points[i - 1].X() - t * dx, y - points[i - 1].Y() - t * dy));
    }
    return nearest;
}

constexpr double LENGTH_STEP = 0.01;

/// Length within a window, by small steps.
inline double LengthWithin(const Line& line, const Window& window)
{
    const std::vector<P3> points = Flattened(line, false);
    double length = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const double whole = points[i].Dist2D(points[i - 1], false);
        const int steps = 1 + int(whole / LENGTH_STEP);
        const GTL::Vector3D<double> step = (points[i] - points[i - 1]) * (1.0 / steps);
        for (int k = 0; k < steps; ++k)
            if (window.Classify(points[i - 1] + step * (k + 0.5)) == GTL::CLS::INSIDE)
                length += whole / steps;
    }
    return length;
}

/// The image in a vertical mirror at x = 0; bulges turn the other way.
inline Line Mirrored(const Line& line)
{
    Line image;
    for (const P3& p : line.Vertices()) image.PushBack(P3(-p.X(), p.Y(), p.Z(), -p.B()));
    return image;
}
inline Window Mirrored(const Window& window)
{
    return {{-window.MaxX(), window.MinY()}, {-window.MinX(), window.MaxY()}};
}

} // namespace clipshapes
