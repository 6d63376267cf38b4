#include "model/DXF3dFace.h"

#include "model/DXFWriter.h"

DXF3dFace* DXF3dFace::Copy() const
{
    return new DXF3dFace(*this);
}

const wchar_t* DXF3dFace::Name() const
{
    return L"3DFACE";
}

void DXF3dFace::Write(DXFWriter& writer) const
{
    writer.Write(*this);
}

void DXF3dFace::Transform(const GTL::Transformation<GTL::Point3D<double>>& t)
{
    for (GTL::Point3D<double>& corner : m_Corners) corner.Transform(t);
    m_Extents.Reset();
}

const GTL::Extents3D<double>& DXF3dFace::Extents() const
{
    if (m_Extents.IsValid()) return m_Extents;
    for (const GTL::Point3D<double>& corner : m_Corners) m_Extents.Update(corner);
    return m_Extents;
}
