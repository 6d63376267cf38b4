#pragma once

#include "model/DXFEntity.h"

/// A point.
class HALYARD_API DXFPoint : public DXFEntity {
public:
    DXFPoint() = default;
    DXFPoint(double x, double y, double z) : m_Point(x, y, z) {}
    explicit DXFPoint(const GTL::Point3D<double>& point) : m_Point(point) {}

    const GTL::Point3D<double>& Point() const { return m_Point; }
    void SetPoint(const GTL::Point3D<double>& point);
    double X() const { return m_Point.X(); }
    double Y() const { return m_Point.Y(); }
    double Z() const { return m_Point.Z(); }
    void X(double x);
    void Y(double y);
    void Z(double z);

    DXFPoint* Copy() const override;
    const wchar_t* Name() const override;
    void Write(DXFWriter& writer) const override;
    void Transform(const GTL::Transformation<GTL::Point3D<double>>& t) override;
    const GTL::Extents3D<double>& Extents() const override;
    bool Clip(DXFClipContext& context) override;

private:
    GTL::Point3D<double> m_Point;
    mutable GTL::Extents3D<double> m_Extents;
};
