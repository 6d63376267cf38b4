#include "model/DXFPoint.h"

#include "model/DXFWriter.h"

void DXFPoint::SetPoint(const GTL::Point3D<double>& point)
{
    m_Point = point;
    m_Extents.Reset();
}

void DXFPoint::X(double x)
{
    m_Point.X(x);
    m_Extents.Reset();
}

void DXFPoint::Y(double y)
{
    m_Point.Y(y);
    m_Extents.Reset();
}

void DXFPoint::Z(double z)
{
    m_Point.Z(z);
    m_Extents.Reset();
}

DXFPoint* DXFPoint::Copy() const
{
    return new DXFPoint(*this);
}

const wchar_t* DXFPoint::Name() const
{
    return L"POINT";
}

void DXFPoint::Write(DXFWriter& writer) const
{
    writer.Write(*this);
}

void DXFPoint::Transform(const GTL::Transformation<GTL::Point3D<double>>& t)
{
    m_Point.Transform(t);
    m_Extents.Reset();
}

const GTL::Extents3D<double>& DXFPoint::Extents() const
{
    if (!m_Extents.IsValid()) m_Extents.Update(m_Point);
    return m_Extents;
}
