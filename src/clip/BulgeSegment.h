#pragma once

#include "clip/Clipper.h"
#include "support/Polyline.h"

#include <array>
#include <vector>

namespace GTL {

/// The sides of a window, counter-clockwise from below.
enum class Side { BOTTOM = 0, RIGHT = 1, TOP = 2, LEFT = 3, UNKNOWN = 4 };

/// True when a bulge bends the segment between two vertices: it is finite, not 0, and the vertices differ in
/// plan.
inline bool IsBent(const Point3D<double>& from, const Point3D<double>& to)
{
    return from.B() != 0 && std::isfinite(from.B()) && (from.X() != to.X() || from.Y() != to.Y());
}

/// The arc that a bulge puts between two vertices, as the rational quadratic curve
///     P(v) = (A (1-v)^2 + 2 M v (1-v) + B v^2) / ((1-v)^2 + 2 c v (1-v) + v^2),  0 <= v <= 1,
/// with c and s the cosine and sine of half the included angle and M = c (A + B) / 2 + s n / 2, n the chord A
/// to B turned clockwise. It needs neither centre nor radius, so that nearly straight arcs keep their
/// precision.
class BulgeSegment {
public:
    using P = Point3D<double>;

    /// A place where the arc crosses the line of a side.
    struct Crossing {
        double v;
        Side side;
    };
    /// In ascending order of v.
    struct Crossings {
        std::array<Crossing, 8> places;
        std::size_t count = 0;
    };
    /// The places where one coordinate takes a value, 0 < v < 1, ascending; a line that is only touched has
    /// none.
    struct Roots {
        std::array<double, 2> v;
        std::size_t count = 0;
    };

    /// The bulge is that of the first vertex; IsBent must hold.
    BulgeSegment(const P& from, const P& to);

    /// Height runs evenly along the arc; the bulge is 0.
    P PointAt(double v) const;
    /// The middle of a chord between two places of a stretch. It lies off every line that the stretch does
    /// not cross, on the side of the stretch, also when the stretch touches the line: it does so in one place
    /// only.
    Point2D<double> MiddleOfChord(double v0, double v1) const;
    /// Bulge of the stretch between two places.
    double BulgeBetween(double v0, double v1) const;
    Crossings CrossingsWith(const Extents2D<double>& window) const;
    /// A linear function of the place in plan, given by its values at both ends and its change along the
    /// chord turned clockwise: where the arc passes its zero. A value of 0 at an end counts as negative, so
    /// that the zeros of neighbouring segments count once together.
    Roots Zeros(double atFrom, double atTo, double alongNormal) const;
    const Vector2D<double>& Normal() const { return m_Normal; }
    /// Widens a box by the arc's extreme points between its ends.
    void Widen(Extents3D<double>& box) const;

private:
    Point2D<double> PlanAt(double v) const;
    /// Half of the angle swept from the start to a place.
    double HalfSwept(double v) const;

    P m_From;
    P m_To;
    Vector2D<double> m_Chord;
    Vector2D<double> m_Normal; ///< the chord turned clockwise
    double m_Sine;             ///< of half the included angle; negative when the arc turns clockwise
    double m_Cosine;
};

/// Box of the vertices and of the arcs between them, for a ring also of the one from the last vertex to the
/// first.
Extents3D<double> BulgedBox(const Polyline<Point3D<double>>& line, bool ring);

} // namespace GTL
