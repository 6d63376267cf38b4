#pragma once

#include <cmath>

namespace GTL {

/// Difference of two points in the plane, or a direction. A plain value.
template <class T>
class Vector2D {
public:
    constexpr Vector2D() = default;
    constexpr Vector2D(T x, T y) : m_X(x), m_Y(y) {}

    constexpr const T& X() const { return m_X; }
    constexpr const T& Y() const { return m_Y; }
    constexpr T& X() { return m_X; }
    constexpr T& Y() { return m_Y; }
    constexpr void X(T x) { m_X = x; }
    constexpr void Y(T y) { m_Y = y; }

    double Length() const { return std::hypot(double(m_X), double(m_Y)); }

    constexpr bool operator==(const Vector2D&) const = default;
    constexpr Vector2D operator-() const { return {T(-m_X), T(-m_Y)}; }
    constexpr Vector2D operator+(const Vector2D& v) const { return {T(m_X + v.m_X), T(m_Y + v.m_Y)}; }
    constexpr Vector2D operator-(const Vector2D& v) const { return {T(m_X - v.m_X), T(m_Y - v.m_Y)}; }
    constexpr Vector2D operator*(T factor) const { return {T(m_X * factor), T(m_Y * factor)}; }

private:
    T m_X{};
    T m_Y{};
};

/// Difference of two points in space, or a direction such as an extrusion. A plain value.
template <class T>
class Vector3D {
public:
    constexpr Vector3D() = default;
    constexpr Vector3D(T x, T y, T z) : m_X(x), m_Y(y), m_Z(z) {}

    constexpr const T& X() const { return m_X; }
    constexpr const T& Y() const { return m_Y; }
    constexpr const T& Z() const { return m_Z; }
    constexpr T& X() { return m_X; }
    constexpr T& Y() { return m_Y; }
    constexpr T& Z() { return m_Z; }
    constexpr void X(T x) { m_X = x; }
    constexpr void Y(T y) { m_Y = y; }
    constexpr void Z(T z) { m_Z = z; }

    double Length() const { return std::hypot(double(m_X), double(m_Y), double(m_Z)); }

    constexpr bool operator==(const Vector3D&) const = default;
    constexpr Vector3D operator-() const { return {T(-m_X), T(-m_Y), T(-m_Z)}; }
    constexpr Vector3D operator+(const Vector3D& v) const
    {
        return {T(m_X + v.m_X), T(m_Y + v.m_Y), T(m_Z + v.m_Z)};
    }
    constexpr Vector3D operator-(const Vector3D& v) const
    {
        return {T(m_X - v.m_X), T(m_Y - v.m_Y), T(m_Z - v.m_Z)};
    }
    constexpr Vector3D operator*(T factor) const
    {
        return {T(m_X * factor), T(m_Y * factor), T(m_Z * factor)};
    }

    constexpr T Dot(const Vector3D& v) const { return m_X * v.m_X + m_Y * v.m_Y + m_Z * v.m_Z; }
    /// Right-handed cross product.
    constexpr Vector3D Cross(const Vector3D& v) const
    {
        return {m_Y * v.m_Z - m_Z * v.m_Y, m_Z * v.m_X - m_X * v.m_Z, m_X * v.m_Y - m_Y * v.m_X};
    }

private:
    T m_X{};
    T m_Y{};
    T m_Z{};
};

} // namespace GTL
