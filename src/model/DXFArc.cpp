#include "model/DXFArc.h"

#include "model/DXFWriter.h"

#include <cmath>

using P3 = GTL::Point3D<double>;

DXFArc::DXFArc(const P3& center, double radius, double startAngle, double endAngle,
               const GTL::Vector3D<double>& extrusion)
    : m_Arc(center, radius, Angle(startAngle), Angle(endAngle), extrusion)
{
}

DXFArc::DXFArc(const GTL::Arc<P3>& arc) : m_Arc(arc) {}

void DXFArc::SetCenter(const P3& center)
{
    m_Arc.Center() = center;
    m_Extents.Reset();
}

void DXFArc::SetRadius(double radius)
{
    m_Arc.SetRadius(radius);
    m_Extents.Reset();
}

void DXFArc::SetStartAngle(double degrees)
{
    m_Arc.SetStartAngle(Angle(degrees));
    m_Extents.Reset();
}

void DXFArc::SetEndAngle(double degrees)
{
    m_Arc.SetEndAngle(Angle(degrees));
    m_Extents.Reset();
}

void DXFArc::SetStartPoint(const P3& point)
{
    m_Arc.SetStartAngle(m_Arc.BearingOf(point));
    m_Extents.Reset();
}

void DXFArc::SetEndPoint(const P3& point)
{
    m_Arc.SetEndAngle(m_Arc.BearingOf(point));
    m_Extents.Reset();
}

void DXFArc::SetExtrusion(const GTL::Vector3D<double>& extrusion)
{
    m_Arc.SetNormal(extrusion);
    m_Extents.Reset();
}

DXFArc* DXFArc::Copy() const
{
    return new DXFArc(*this);
}

const wchar_t* DXFArc::Name() const
{
    return L"ARC";
}

void DXFArc::Write(DXFWriter& writer) const
{
    writer.Write(*this);
}

void DXFArc::Transform(const GTL::Transformation<P3>& t)
{
    const P3& center = Center();
    const double r = Radius();
    const P3 lowLeft = t.Apply(P3(center.X() - r, center.Y() - r, 0));
    const P3 highRight = t.Apply(P3(center.X() + r, center.Y() + r, 0));
    const P3 start = t.Apply(StartPoint());
    const P3 end = t.Apply(EndPoint());
    m_Arc.Center() = P3((lowLeft.X() + highRight.X()) / 2, (lowLeft.Y() + highRight.Y()) / 2,
                        (lowLeft.Z() + highRight.Z()) / 2, center.B());
    m_Arc.SetRadius(std::sqrt(2 * lowLeft.Dist2D(highRight, true)) / 4);
    SetStartPoint(start);
    SetEndPoint(end);
}

const GTL::Extents3D<double>& DXFArc::Extents() const
{
    if (!m_Extents.IsValid()) m_Extents = m_Arc.Extents();
    return m_Extents;
}
