#include "model/DXFInsert.h"

#include "model/DXF.h"
#include "model/DXFWriter.h"
#include "model/InsertPlacement.h"

#include <cmath>

using P3 = GTL::Point3D<double>;
using Map = GTL::Transformation<P3>;

namespace {

/// The inverse of a map that only turns: its matrix with rows and columns exchanged.
Map Unturned(const Map& turn)
{
    const Map::Rows& rows = turn.GetRows();
    Map::Rows inverse{};
    for (std::size_t r = 0; r < 3; ++r)
        for (std::size_t c = 0; c < 3; ++c) inverse[r][c] = rows[c][r];
    return Map(inverse);
}

} // namespace

DXFInsert::DXFInsert(const std::wstring& blockName, const P3& insertPoint, double rotation)
    : m_InsertPoint(insertPoint), m_BlockName(blockName), m_Rotation(rotation)
{
}

void DXFInsert::SetBlockName(const std::wstring& name)
{
    m_BlockName = name;
    m_Extents.Reset();
}

void DXFInsert::SetInsertPoint(const P3& point)
{
    m_InsertPoint = point;
    m_Extents.Reset();
}

void DXFInsert::SetRotation(double degrees)
{
    m_Rotation = degrees;
    m_Extents.Reset();
}

void DXFInsert::SetScale(const P3& scale)
{
    m_Scale = scale;
    m_Extents.Reset();
}

void DXFInsert::SetExtrusion(const P3& extrusion)
{
    m_Extrusion = extrusion;
    m_Extents.Reset();
}

void DXFInsert::SetDXF(::DXF* document)
{
    m_DXF = document;
    if (document) document->m_ResolvesInserts = true;
    m_Extents.Reset();
}

const DXFBlock* DXFInsert::Block() const
{
    return m_DXF ? m_DXF->GetBlock(m_BlockName) : nullptr;
}

DXFInsert* DXFInsert::Copy() const
{
    return new DXFInsert(*this);
}

const wchar_t* DXFInsert::Name() const
{
    return L"INSERT";
}

void DXFInsert::Write(DXFWriter& writer) const
{
    writer.Write(*this);
}

void DXFInsert::Transform(const Map& t)
{
    const Map toWorld = ObjectToWorld({m_Extrusion.X(), m_Extrusion.Y(), m_Extrusion.Z()});
    const Map inObject = Map(toWorld).Append(t).Append(Unturned(toWorld));
    m_InsertPoint.Transform(inObject);
    const Angle rotation(m_Rotation);
    const GTL::Vector3D<double> x = inObject.ApplyLinear({rotation.Cos(), rotation.Sin(), 0});
    const GTL::Vector3D<double> y = inObject.ApplyLinear({-rotation.Sin(), rotation.Cos(), 0});
    const double side = inObject.Determinant2D() < 0 ? -1 : 1;
    m_Scale = P3(m_Scale.X() * x.Length(), m_Scale.Y() * y.Length() * side,
                 m_Scale.Z() * inObject.ApplyLinear({0, 0, 1}).Length(), m_Scale.B());
    m_ColumnSpacing *= x.Length();
    m_RowSpacing *= y.Length() * side;
    if (x.X() != 0 || x.Y() != 0) m_Rotation = Angle(std::atan2(x.Y(), x.X()) * MATH::RTD).Get();
    m_Extents.Reset();
}

const GTL::Extents3D<double>& DXFInsert::Extents() const
{
    if (m_Extents.IsValid()) return m_Extents;
    const DXFBlock* block = Block();
    m_Extents = ExtentsWith(block, block ? block->Extents() : GTL::Extents3D<double>());
    return m_Extents;
}

GTL::Extents3D<double> DXFInsert::ExtentsWith(const DXFBlock* block, GTL::Extents3D<double> blockBox) const
{
    GTL::Extents3D<double> box;
    box.Update(m_InsertPoint);
    if (!block || !blockBox.IsValid()) return box;
    Map placement;
    placement.Translate(block->BasePoint().X(), block->BasePoint().Y(), block->BasePoint().Z())
        .RotateZ(Angle(m_Rotation))
        .Scale(m_Scale.X(), m_Scale.Y(), m_Scale.Z())
        .Translate(m_InsertPoint.X(), m_InsertPoint.Y(), m_InsertPoint.Z());
    const double planar = std::hypot(m_Extrusion.X(), m_Extrusion.Y());
    if (planar != 0) {
        const double tilt = std::atan2(planar, m_Extrusion.Z());
        const double direction = std::atan2(m_Extrusion.X(), m_Extrusion.Y());
        placement.RotateY(Angle(-tilt / D_TO_R)).RotateX(Angle(direction / D_TO_R));
    }
    blockBox.Transform(placement);
    box.Update(blockBox);
    return box;
}
