#pragma once

#include "model/DXFLineBase.h"
#include "support/Line.h"

/// A straight segment.
class HALYARD_API DXFLine : public DXFLineBase {
public:
    DXFLine() = default;
    DXFLine(const GTL::Point3D<double>& start, const GTL::Point3D<double>& end) : m_Line(start, end) {}

    const GTL::Point3D<double>& Start() const { return m_Line.Start(); }
    const GTL::Point3D<double>& End() const { return m_Line.End(); }
    const GTL::Line<GTL::Point3D<double>>& GetLine() const { return m_Line; }
    void Set(const GTL::Point3D<double>& start, const GTL::Point3D<double>& end);
    void SetStart(const GTL::Point3D<double>& start);
    void SetEnd(const GTL::Point3D<double>& end);

    DXFLine* Copy() const override;
    const wchar_t* Name() const override;
    void Write(DXFWriter& writer) const override;
    void Transform(const GTL::Transformation<GTL::Point3D<double>>& t) override;
    const GTL::Extents3D<double>& Extents() const override;
    bool Clip(DXFClipContext& context) override;

private:
    GTL::Line<GTL::Point3D<double>> m_Line;
    mutable GTL::Extents3D<double> m_Extents;
};
