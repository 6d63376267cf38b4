#include "model/InsertPlacement.h"

#include "model/DXFBlock.h"

#include <algorithm>
#include <cmath>

namespace {

using Map = InsertPlacement::Map;
using Direction = GTL::Vector3D<double>;

/// Below this, in x and in y of the unit extrusion, the direction counts as close to the z axis.
constexpr double ARBITRARY_AXIS_LIMIT = 1.0 / 64;

Direction Unit(const Direction& v)
{
    return v * (1 / v.Length());
}

/// Dividing by the largest component first keeps the length of tiny and of huge directions exact enough.
bool Normalize(Direction& v)
{
    const double largest = std::max({std::fabs(v.X()), std::fabs(v.Y()), std::fabs(v.Z())});
    if (!(largest > 0) || !std::isfinite(v.X()) || !std::isfinite(v.Y()) || !std::isfinite(v.Z()))
        return false;
    v = Unit({v.X() / largest, v.Y() / largest, v.Z() / largest});
    return true;
}

GTL::Point3D<double> BasePointOf(const DXFInsert& insert)
{
    const DXFBlock* block = insert.Block();
    return block ? block->BasePoint() : GTL::Point3D<double>();
}

/// The first cell has no offset, whatever the spacing holds.
double Offset(int cell, double spacing)
{
    return cell == 0 ? 0.0 : cell * spacing;
}

} // namespace

Map ObjectToWorld(const Direction& extrusion)
{
    Direction n = extrusion;
    if ((n.X() == 0 && n.Y() == 0 && n.Z() > 0) || !Normalize(n)) return {};
    const bool nearZ = std::fabs(n.X()) < ARBITRARY_AXIS_LIMIT && std::fabs(n.Y()) < ARBITRARY_AXIS_LIMIT;
    const Direction x = Unit((nearZ ? Direction(0, 1, 0) : Direction(0, 0, 1)).Cross(n));
    const Direction y = Unit(n.Cross(x));
    return Map(Map::Rows{{{x.X(), y.X(), n.X(), 0}, {x.Y(), y.Y(), n.Y(), 0}, {x.Z(), y.Z(), n.Z(), 0}}});
}

InsertPlacement::InsertPlacement(const DXFInsert& insert) : InsertPlacement(insert, BasePointOf(insert)) {}

InsertPlacement::InsertPlacement(const DXFInsert& insert, const GTL::Point3D<double>& basePoint)
    : m_RowSpacing(insert.GetRowSpacing()),
      m_ColumnSpacing(insert.GetColumnSpacing()),
      m_Rows(std::max(insert.GetRowCount(), 1)),
      m_Columns(std::max(insert.GetColumnCount(), 1))
{
    const GTL::Point3D<double>& scale = insert.Scale();
    const GTL::Point3D<double>& at = insert.InsertPoint();
    const GTL::Point3D<double>& extrusion = insert.Extrusion();
    m_Local.Translate(-basePoint.X(), -basePoint.Y(), -basePoint.Z()).Scale(scale.X(), scale.Y(), scale.Z());
    m_Turned.RotateZ(Angle(insert.Rotation())).Translate(at.X(), at.Y(), at.Z());
    m_Turned.Append(ObjectToWorld({extrusion.X(), extrusion.Y(), extrusion.Z()}));
}

Map InsertPlacement::At(int row, int column) const
{
    Map map = m_Local;
    map.Translate(Offset(column, m_ColumnSpacing), Offset(row, m_RowSpacing), 0);
    return map.Append(m_Turned);
}
