#pragma once

#include "model/DXFLineBase.h"
#include "support/Polyline.h"

/// An open chain of straight and arc segments. The fourth scalar of a vertex is the bulge of the segment that
/// begins there: the tangent of a quarter of its included angle, positive when it turns counter-clockwise.
class HALYARD_API DXFPolyline : public DXFLineBase {
public:
    DXFPolyline() = default;
    explicit DXFPolyline(const GTL::Polyline<GTL::Point3D<double>>& polyline) : m_Polyline(polyline) {}
    explicit DXFPolyline(GTL::Polyline<GTL::Point3D<double>>&& polyline) : m_Polyline(std::move(polyline)) {}

    int NumPoints() const { return static_cast<int>(m_Polyline.NumPoints()); }
    /// Vertex 0 to NumPoints() - 1, not checked.
    const GTL::Point3D<double>& operator[](int index) const
    {
        return m_Polyline[static_cast<std::size_t>(index)];
    }
    const GTL::Polyline<GTL::Point3D<double>>& GetPoly() const { return m_Polyline; }
    /// Replaces all vertices; flags, style and colour stay.
    void SetPoly(GTL::Polyline<GTL::Point3D<double>> polyline);
    /// Before the vertex at index; an index past the end appends, a negative one puts it first.
    void Insert(int index, const GTL::Point3D<double>& point);
    void PushBack(const GTL::Point3D<double>& point);
    /// The vertex (x, y, 0) with bulge 0.
    void PushBack(double x, double y);
    void PushFront(const GTL::Point3D<double>& point);
    void PushFront(double x, double y);
    /// Replaces one vertex; an index that names none changes nothing.
    void Set(int index, const GTL::Point3D<double>& point);
    void Clear();

    /// Marks the polyline as a lightweight one.
    void SetLWPolyLine(bool lightweight) { m_Lightweight = lightweight; }
    bool GetLWPolyLine() const { return m_Lightweight; }
    void SetElevation(double elevation) { m_Elevation = elevation; }
    double GetElevation() const { return m_Elevation; }

    DXFPolyline* Copy() const override;
    const wchar_t* Name() const override;
    void Write(DXFWriter& writer) const override;
    void Transform(const GTL::Transformation<GTL::Point3D<double>>& t) override;
    /// Box of the vertices and of every arc between a vertex and the one after it; a bulge on the last vertex
    /// counts for nothing.
    const GTL::Extents3D<double>& Extents() const override;
    bool Clip(DXFClipContext& context) override;

private:
    GTL::Polyline<GTL::Point3D<double>> m_Polyline;
    double m_Elevation = 0;
    bool m_Lightweight = false;
    mutable GTL::Extents3D<double> m_Extents;
};
