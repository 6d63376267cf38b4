#pragma once

#include "support/Extents.h"

#include <cmath>

namespace GTL {

/// A circle parallel to the XY plane, kept as its centre and the square of its radius.
template <class P>
class Circle {
public:
    Circle() = default;
    Circle(const P& center, double squaredRadius) : m_Center(center), m_SquaredRadius(squaredRadius) {}

    const P& Center() const { return m_Center; }
    P& Center() { return m_Center; }
    double SquaredRadius() const { return m_SquaredRadius; }
    void SetSquaredRadius(double squaredRadius) { m_SquaredRadius = squaredRadius; }
    /// Square root of the stored square.
    double Radius() const { return std::sqrt(m_SquaredRadius); }

    /// INSIDE when the squared plan distance from the centre is at most the squared radius.
    CLS::CLASSIFICATION Classify(const P& p) const
    {
        return m_Center.Dist2D(p, true) <= m_SquaredRadius ? CLS::INSIDE : CLS::OUTSIDE;
    }

    bool operator==(const Circle&) const = default;

private:
    P m_Center;
    double m_SquaredRadius = 0;
};

} // namespace GTL
