#pragma once

#include "support/Numeric.h"

#include <cmath>

/// An angle in degrees, always held within one turn: 0 <= Get() < 360. Which way it turns is for its user to
/// say; a rotation about an axis by a positive angle is counter-clockwise seen from the tip of that axis.
class Angle {
public:
    Angle() = default;
    Angle(double degrees) : m_Degrees(TrimAngle(degrees)) {}

    /// Degrees, 0 <= a < 360.
    double Get() const { return m_Degrees; }

    /// Exact at the quarter turns.
    double Sin() const { return Quarter() ? QuarterSine(m_Degrees) : std::sin(m_Degrees * D_TO_R); }
    double Cos() const
    {
        return Quarter() ? QuarterSine(TrimAngle(m_Degrees + 90)) : std::cos(m_Degrees * D_TO_R);
    }

    Angle operator-() const { return Angle(-m_Degrees); }
    Angle operator+(const Angle& a) const { return Angle(m_Degrees + a.m_Degrees); }
    Angle operator-(const Angle& a) const { return Angle(m_Degrees - a.m_Degrees); }
    Angle& operator+=(const Angle& a) { return *this = *this + a; }
    bool operator==(const Angle& a) const { return m_Degrees == a.m_Degrees; }
    bool operator>(const Angle& a) const { return m_Degrees > a.m_Degrees; }

private:
    bool Quarter() const { return m_Degrees == 0 || m_Degrees == 90 || m_Degrees == 180 || m_Degrees == 270; }
    static double QuarterSine(double degrees) { return degrees == 90 ? 1.0 : degrees == 270 ? -1.0 : 0.0; }

    double m_Degrees = 0;
};
