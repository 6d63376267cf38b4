#include "model/DXFCircle.h"

#include "model/DXFWriter.h"

#include <algorithm>
#include <limits>

using P3 = GTL::Point3D<double>;

namespace {

/// Single precision: the conversion of a number beyond its range is undefined, so it is brought to the
/// border.
double SquareInSinglePrecision(double value)
{
    constexpr double BORDER = std::numeric_limits<float>::max();
    const float single = static_cast<float>(std::clamp(value, -BORDER, BORDER));
    const float square = single * single;
    return square;
}

} // namespace

DXFCircle::DXFCircle(const P3& center, double radius, const GTL::Vector3D<double>& extrusion)
    : m_Circle(center, radius * radius), m_Extrusion(extrusion)
{
}

DXFCircle::DXFCircle(const GTL::Circle<P3>& circle) : m_Circle(circle) {}

void DXFCircle::SetCenter(const P3& center)
{
    m_Circle.Center() = center;
    m_Extents.Reset();
}

void DXFCircle::SetRadius(double radius)
{
    m_Circle.SetSquaredRadius(SquareInSinglePrecision(radius));
    m_Extents.Reset();
}

void DXFCircle::SetExtrusion(const GTL::Vector3D<double>& extrusion)
{
    m_Extrusion = extrusion;
    m_Extents.Reset();
}

DXFCircle* DXFCircle::Copy() const
{
    return new DXFCircle(*this);
}

const wchar_t* DXFCircle::Name() const
{
    return L"CIRCLE";
}

void DXFCircle::Write(DXFWriter& writer) const
{
    writer.Write(*this);
}

void DXFCircle::Transform(const GTL::Transformation<P3>& t)
{
    const P3& center = m_Circle.Center();
    const double r = Radius();
    const P3 lowLeft = t.Apply(P3(center.X() - r, center.Y() - r, 0));
    const P3 highRight = t.Apply(P3(center.X() + r, center.Y() + r, 0));
    const P3 lowRight = t.Apply(P3(center.X() + r, center.Y() - r, 0));
    m_Circle.Center() = P3((lowLeft.X() + highRight.X()) / 2, (lowLeft.Y() + highRight.Y()) / 2,
                           (lowLeft.Z() + highRight.Z()) / 2, center.B());
    m_Circle.SetSquaredRadius(lowLeft.Dist2D(lowRight, true) / 4);
    m_Extents.Reset();
}

const GTL::Extents3D<double>& DXFCircle::Extents() const
{
    if (m_Extents.IsValid()) return m_Extents;
    const double r = Radius();
    m_Extents.Update(Center().X() - r, Center().Y() - r, 0);
    m_Extents.Update(Center().X() + r, Center().Y() + r, 0);
    return m_Extents;
}
