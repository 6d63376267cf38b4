#pragma once

#include "support/Vector.h"

namespace GTL {

template <class P>
class Transformation;

/// A point in the plane; in the drawer also a device position (T = int).
template <class T>
class Point2D {
public:
    using Scalar = T;

    constexpr Point2D() = default;
    /// The third value exists for symmetry with points in space and is dropped.
    constexpr Point2D(T x, T y, T /*unused*/ = T{}) : m_X(x), m_Y(y) {}

    constexpr const T& X() const { return m_X; }
    constexpr const T& Y() const { return m_Y; }
    constexpr T& X() { return m_X; }
    constexpr T& Y() { return m_Y; }
    constexpr void X(T x) { m_X = x; }
    constexpr void Y(T y) { m_Y = y; }

    constexpr bool operator==(const Point2D&) const = default;
    constexpr Vector2D<T> operator-(const Point2D& p) const { return {T(m_X - p.m_X), T(m_Y - p.m_Y)}; }
    constexpr Point2D operator+(const Vector2D<T>& v) const { return {T(m_X + v.X()), T(m_Y + v.Y())}; }
    constexpr Point2D operator-(const Vector2D<T>& v) const { return {T(m_X - v.X()), T(m_Y - v.Y())}; }
    constexpr Point2D& operator+=(const Vector2D<T>& v) { return *this = *this + v; }
    constexpr Point2D& operator-=(const Vector2D<T>& v) { return *this = *this - v; }

    /// Distance to another point, or its square.
    double Dist2D(const Point2D& other, bool squared) const
    {
        const double dx = double(other.m_X) - double(m_X);
        const double dy = double(other.m_Y) - double(m_Y);
        return squared ? dx * dx + dy * dy : std::hypot(dx, dy);
    }

    /// Moves the point by an affine map.
    void Transform(const Transformation<Point2D<T>>& t) { *this = t.Apply(*this); }

private:
    T m_X{};
    T m_Y{};
};

/// A point in space with a fourth scalar carried along: for a vertex of a polyline, the DXF bulge of the
/// segment that begins there (tangent of a quarter of its included angle, positive when the arc turns
/// counter-clockwise).
template <class T>
class Point3D {
public:
    using Scalar = T;

    constexpr Point3D() = default;
    constexpr Point3D(T x, T y, T z, T b = T{}) : m_XY(x, y), m_Z(z), m_B(b) {}
    constexpr Point3D(const Point2D<T>& xy, T z, T b) : m_XY(xy), m_Z(z), m_B(b) {}

    constexpr const T& X() const { return m_XY.X(); }
    constexpr const T& Y() const { return m_XY.Y(); }
    constexpr const T& Z() const { return m_Z; }
    constexpr const T& B() const { return m_B; }
    constexpr T& X() { return m_XY.X(); }
    constexpr T& Y() { return m_XY.Y(); }
    constexpr T& Z() { return m_Z; }
    constexpr T& B() { return m_B; }
    constexpr void X(T x) { m_XY.X(x); }
    constexpr void Y(T y) { m_XY.Y(y); }
    constexpr void Z(T z) { m_Z = z; }
    constexpr void B(T b) { m_B = b; }

    /// The plan position, by reference.
    constexpr operator const Point2D<T>&() const { return m_XY; }
    constexpr operator Point2D<T>&() { return m_XY; }

    /// All four components.
    constexpr bool operator==(const Point3D&) const = default;
    constexpr Vector3D<T> operator-(const Point3D& p) const
    {
        return {T(X() - p.X()), T(Y() - p.Y()), T(m_Z - p.m_Z)};
    }
    /// The fourth scalar of a moved point is kept.
    constexpr Point3D operator+(const Vector3D<T>& v) const
    {
        return {T(X() + v.X()), T(Y() + v.Y()), T(m_Z + v.Z()), m_B};
    }
    constexpr Point3D operator-(const Vector3D<T>& v) const
    {
        return {T(X() - v.X()), T(Y() - v.Y()), T(m_Z - v.Z()), m_B};
    }
    constexpr Point3D& operator+=(const Vector3D<T>& v) { return *this = *this + v; }
    constexpr Point3D& operator-=(const Vector3D<T>& v) { return *this = *this - v; }

    /// Distance in plan to another point, or its square.
    double Dist2D(const Point3D& other, bool squared) const { return m_XY.Dist2D(other.m_XY, squared); }

    /// Moves the point by an affine map; the fourth scalar is kept.
    void Transform(const Transformation<Point3D<T>>& t) { *this = t.Apply(*this); }

private:
    Point2D<T> m_XY;
    T m_Z{};
    T m_B{};
};

/// Both coordinates of the plane are finite numbers; heights are not looked at.
inline bool IsFinite(const Point2D<double>& p)
{
    return std::isfinite(p.X()) && std::isfinite(p.Y());
}

} // namespace GTL

/// Distances between points of any kind.
struct Point {
    /// Distance in plan, or its square.
    template <class P>
    static double Dist2D(const P& a, const P& b, bool squared)
    {
        return a.Dist2D(b, squared);
    }
};
