#pragma once

#include "model/DXFLineBase.h"
#include "support/Circle.h"

/// A circle. It keeps the square of its radius.
class HALYARD_API DXFCircle : public DXFLineBase {
public:
    DXFCircle() = default;
    /// The radius is squared in double precision.
    DXFCircle(const GTL::Point3D<double>& center, double radius,
              const GTL::Vector3D<double>& extrusion = {0, 0, 1});
    explicit DXFCircle(const GTL::Circle<GTL::Point3D<double>>& circle);

    const GTL::Circle<GTL::Point3D<double>>& GetCircle() const { return m_Circle; }
    const GTL::Point3D<double>& Center() const { return m_Circle.Center(); }
    void SetCenter(const GTL::Point3D<double>& center);
    /// Square root of the stored square.
    double Radius() const { return m_Circle.Radius(); }
    /// The radius is squared in single precision before it is stored, so that files compare equal.
    void SetRadius(double radius);
    const GTL::Vector3D<double>& Extrusion() const { return m_Extrusion; }
    void SetExtrusion(const GTL::Vector3D<double>& extrusion);

    DXFCircle* Copy() const override;
    const wchar_t* Name() const override;
    void Write(DXFWriter& writer) const override;
    /// The image of the circle's square decides the new centre and radius; z is dropped.
    void Transform(const GTL::Transformation<GTL::Point3D<double>>& t) override;
    /// Lies at z = 0 whatever the centre's z.
    const GTL::Extents3D<double>& Extents() const override;
    bool Clip(DXFClipContext& context) override;

private:
    GTL::Circle<GTL::Point3D<double>> m_Circle;
    GTL::Vector3D<double> m_Extrusion{0, 0, 1};
    mutable GTL::Extents3D<double> m_Extents;
};
