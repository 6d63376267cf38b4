#include "model/DXFLine.h"

#include "model/DXFWriter.h"

void DXFLine::Set(const GTL::Point3D<double>& start, const GTL::Point3D<double>& end)
{
    m_Line = GTL::Line<GTL::Point3D<double>>(start, end);
    m_Extents.Reset();
}

void DXFLine::SetStart(const GTL::Point3D<double>& start)
{
    m_Line.Start() = start;
    m_Extents.Reset();
}

void DXFLine::SetEnd(const GTL::Point3D<double>& end)
{
    m_Line.End() = end;
    m_Extents.Reset();
}

DXFLine* DXFLine::Copy() const
{
    return new DXFLine(*this);
}

const wchar_t* DXFLine::Name() const
{
    return L"LINE";
}

void DXFLine::Write(DXFWriter& writer) const
{
    writer.Write(*this);
}

void DXFLine::Transform(const GTL::Transformation<GTL::Point3D<double>>& t)
{
    m_Line.Start().Transform(t);
    m_Line.End().Transform(t);
    m_Extents.Reset();
}

const GTL::Extents3D<double>& DXFLine::Extents() const
{
    if (m_Extents.IsValid()) return m_Extents;
    m_Extents.Update(Start());
    m_Extents.Update(End());
    return m_Extents;
}
