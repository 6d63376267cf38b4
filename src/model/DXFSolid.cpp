#include "model/DXFSolid.h"

#include "model/DXFWriter.h"

DXFSolid* DXFSolid::Copy() const
{
    return new DXFSolid(*this);
}

const wchar_t* DXFSolid::Name() const
{
    return L"SOLID";
}

void DXFSolid::Write(DXFWriter& writer) const
{
    writer.Write(*this);
}

void DXFSolid::Transform(const GTL::Transformation<GTL::Point3D<double>>& t)
{
    for (GTL::Point3D<double>& corner : m_Corners) corner.Transform(t);
    m_Extents.Reset();
}

const GTL::Extents3D<double>& DXFSolid::Extents() const
{
    if (m_Extents.IsValid()) return m_Extents;
    for (const GTL::Point3D<double>& corner : m_Corners) m_Extents.Update(corner);
    return m_Extents;
}
