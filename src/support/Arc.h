#pragma once

#include "support/Angle.h"
#include "support/Extents.h"

namespace GTL {

/// An arc of a circle parallel to the XY plane. Angles are bearings: degrees clockwise from +y, 0 <= a < 360;
/// the point at angle a is centre + r (sin a, cos a). The arc runs from start to end in increasing angle;
/// equal ends are a full turn.
template <class P>
class Arc {
public:
    using T = typename P::Scalar;

    Arc() = default;
    Arc(const P& center, double radius, const Angle& start, const Angle& end,
        const Vector3D<T>& normal = {0, 0, 1})
        : m_Center(center), m_Radius(radius), m_Start(start), m_End(end), m_Normal(normal)
    {
    }

    const P& Center() const { return m_Center; }
    P& Center() { return m_Center; }
    double Radius() const { return m_Radius; }
    void SetRadius(double radius) { m_Radius = radius; }
    const Angle& StartAngle() const { return m_Start; }
    void SetStartAngle(const Angle& a) { m_Start = a; }
    const Angle& EndAngle() const { return m_End; }
    void SetEndAngle(const Angle& a) { m_End = a; }
    const Vector3D<T>& Normal() const { return m_Normal; }
    void SetNormal(const Vector3D<T>& normal) { m_Normal = normal; }

    /// The point at a bearing; it carries the centre's z.
    P PointAt(const Angle& a) const
    {
        return P(T(m_Center.X() + m_Radius * a.Sin()), T(m_Center.Y() + m_Radius * a.Cos()), m_Center.Z());
    }
    P StartPoint() const { return PointAt(m_Start); }
    P EndPoint() const { return PointAt(m_End); }

    /// Bearing of a point seen from the centre, 0 <= a < 360.
    Angle BearingOf(const P& p) const
    {
        return Angle(std::atan2(double(p.X() - m_Center.X()), double(p.Y() - m_Center.Y())) * MATH::RTD);
    }

    /// Degrees that the arc runs through, 0 < sweep <= 360.
    double Sweep() const { return m_Start == m_End ? 360 : (m_End - m_Start).Get(); }

    /// True when a bearing lies strictly inside the sweep. With equal ends every bearing but that of the ends
    /// does.
    bool Sweeps(const Angle& a) const
    {
        if (m_Start == m_End) return !(a == m_Start);
        return m_Start > m_End ? a > m_Start || m_End > a : a > m_Start && m_End > a;
    }

    /// Box of both ends and of the compass points within the sweep.
    Extents3D<T> Extents() const
    {
        Extents3D<T> box;
        box.Update(StartPoint());
        box.Update(EndPoint());
        for (const double compass : {0.0, 90.0, 180.0, 270.0})
            if (Sweeps(Angle(compass))) box.Update(PointAt(Angle(compass)));
        return box;
    }

    bool operator==(const Arc&) const = default;

private:
    P m_Center;
    double m_Radius = 0;
    Angle m_Start;
    Angle m_End;
    Vector3D<T> m_Normal{0, 0, 1};
};

} // namespace GTL
