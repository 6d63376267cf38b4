#pragma once

#include "model/DXFLineBase.h"
#include "support/Arc.h"

/// An arc of a circle. Angles are bearings in degrees: clockwise from +y, 0 <= a < 360; the point at angle a
/// is centre + (r sin a, r cos a). The arc runs from start to end in increasing angle; equal ends are a full
/// turn.
class HALYARD_API DXFArc : public DXFLineBase {
public:
    DXFArc() = default;
    DXFArc(const GTL::Point3D<double>& center, double radius, double startAngle, double endAngle,
           const GTL::Vector3D<double>& extrusion = {0, 0, 1});
    explicit DXFArc(const GTL::Arc<GTL::Point3D<double>>& arc);

    const GTL::Arc<GTL::Point3D<double>>& GetArc() const { return m_Arc; }
    const GTL::Point3D<double>& Center() const { return m_Arc.Center(); }
    void SetCenter(const GTL::Point3D<double>& center);
    double Radius() const { return m_Arc.Radius(); }
    void SetRadius(double radius);
    /// Start of the sweep: a bearing in degrees, clockwise from +y, 0 <= a < 360.
    double StartAngle() const { return m_Arc.StartAngle().Get(); }
    void SetStartAngle(double degrees);
    /// End of the sweep, as the start.
    double EndAngle() const { return m_Arc.EndAngle().Get(); }
    void SetEndAngle(double degrees);
    GTL::Point3D<double> StartPoint() const { return m_Arc.StartPoint(); }
    GTL::Point3D<double> EndPoint() const { return m_Arc.EndPoint(); }
    /// Turns the start of the sweep to the bearing of a point; the radius stays.
    void SetStartPoint(const GTL::Point3D<double>& point);
    void SetEndPoint(const GTL::Point3D<double>& point);
    const GTL::Vector3D<double>& Extrusion() const { return m_Arc.Normal(); }
    void SetExtrusion(const GTL::Vector3D<double>& extrusion);

    DXFArc* Copy() const override;
    const wchar_t* Name() const override;
    void Write(DXFWriter& writer) const override;
    /// Maps the circle's square and both end points; start and end never change places, also when the map
    /// mirrors, and the arc's own z is dropped.
    void Transform(const GTL::Transformation<GTL::Point3D<double>>& t) override;
    const GTL::Extents3D<double>& Extents() const override;
    bool Clip(DXFClipContext& context) override;

private:
    GTL::Arc<GTL::Point3D<double>> m_Arc;
    mutable GTL::Extents3D<double> m_Extents;
};
