#include "model/DXFPolyline.h"

#include "model/DXFWriter.h"

#include <algorithm>
#include <cmath>

using P3 = GTL::Point3D<double>;

namespace {

/// Box of the arc's compass points between two vertices. The whole arc lies within its sagitta of the chord,
/// and flat arcs of huge radius are cut back to that: their centre alone would be rounded by more than the
/// drawing is wide.
GTL::Extents3D<double> BulgeBox(const P3& from, const P3& to)
{
    GTL::Extents3D<double> box;
    const auto arc = GTL::BulgeArc(from, to, from.B());
    if (!arc) return box;
    const double sagitta = std::abs(from.B()) * from.Dist2D(to, false) / 2;
    const auto [lowX, highX] = std::minmax(from.X(), to.X());
    const auto [lowY, highY] = std::minmax(from.Y(), to.Y());
    for (const double compass : {0.0, 90.0, 180.0, 270.0}) {
        if (!arc->Sweeps(Angle(compass))) continue;
        const P3 p = arc->PointAt(Angle(compass));
        box.Update(std::clamp(p.X(), lowX - sagitta, highX + sagitta),
                   std::clamp(p.Y(), lowY - sagitta, highY + sagitta), p.Z());
    }
    return box;
}

} // namespace

void DXFPolyline::SetPoly(GTL::Polyline<P3> polyline)
{
    m_Polyline = std::move(polyline);
    m_Extents.Reset();
}

void DXFPolyline::Insert(int index, const P3& point)
{
    m_Polyline.Insert(static_cast<std::size_t>(std::max(index, 0)), point);
    m_Extents.Reset();
}

void DXFPolyline::PushBack(const P3& point)
{
    m_Polyline.PushBack(point);
    m_Extents.Reset();
}

void DXFPolyline::PushBack(double x, double y)
{
    PushBack(P3(x, y, 0));
}

void DXFPolyline::PushFront(const P3& point)
{
    m_Polyline.PushFront(point);
    m_Extents.Reset();
}

void DXFPolyline::PushFront(double x, double y)
{
    PushFront(P3(x, y, 0));
}

void DXFPolyline::Set(int index, const P3& point)
{
    if (index < 0) return;
    m_Polyline.Set(static_cast<std::size_t>(index), point);
    m_Extents.Reset();
}

void DXFPolyline::Clear()
{
    m_Polyline.Clear();
    m_Extents.Reset();
}

DXFPolyline* DXFPolyline::Copy() const
{
    return new DXFPolyline(*this);
}

const wchar_t* DXFPolyline::Name() const
{
    return L"POLYLINE";
}

void DXFPolyline::Write(DXFWriter& writer) const
{
    writer.Write(*this);
}

void DXFPolyline::Transform(const GTL::Transformation<P3>& t)
{
    m_Polyline.Transform(t);
    m_Extents.Reset();
}

const GTL::Extents3D<double>& DXFPolyline::Extents() const
{
    if (m_Extents.IsValid()) return m_Extents;
    m_Extents = m_Polyline.VertexBox();
    const std::vector<P3>& vertices = m_Polyline.Vertices();
    for (std::size_t i = 1; i < vertices.size(); ++i)
        if (vertices[i - 1].B() != 0) m_Extents.Update(BulgeBox(vertices[i - 1], vertices[i]));
    return m_Extents;
}
