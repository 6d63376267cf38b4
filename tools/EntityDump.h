#pragma once

#include "JsonWriter.h"
#include "model/DXF.h"
#include "model/DXFWriter.h"

#include <string_view>

class DXFLineBase;
class TextEntity;

/// Writes each entity that it is handed as one line of JSON.
class EntityDump : public DXFWriter {
public:
    /// Names what holds the entities that follow.
    void SetPlace(const std::wstring& layer, const std::wstring* block);

    JsonWriter& Json() { return m_Json; }

    void Write(const DXFInsert& insert) override;
    void Write(const DXF3dFace& face) override;
    void Write(const DXFImage& image) override;
    void Write(const DXFMText& text) override;
    void Write(const DXFText& text) override;
    void Write(const DXFArc& arc) override;
    void Write(const DXFCircle& circle) override;
    void Write(const DXFPolygon& polygon) override;
    void Write(const DXFPolyline& polyline) override;
    void Write(const DXFSolid& solid) override;
    void Write(const DXFPoint& point) override;
    void Write(const DXFLine& line) override;

private:
    void Begin(std::string_view kind, const DXFEntity& entity);
    void BeginLine(std::string_view kind, const DXFLineBase& entity);
    void End() { m_Json.Raw("}\n"); }
    void Name(std::string_view name);
    template <class T>
    void Field(std::string_view name, const T& value);
    void Value(double value) { m_Json.Number(value); }
    void Value(float value) { m_Json.Number(value); }
    void Value(int value) { m_Json.Number(value); }
    void Value(bool value) { m_Json.Bool(value); }
    void Value(const std::wstring& text) { m_Json.String(text); }
    void Value(const GTL::Point2D<double>& point);
    void Value(const GTL::Point3D<double>& point) { Triple(point.X(), point.Y(), point.Z()); }
    void Value(const GTL::Vector3D<double>& vector) { Triple(vector.X(), vector.Y(), vector.Z()); }
    void Triple(double x, double y, double z);
    template <class Corners>
    void WriteCorners(const Corners& corners);
    void WriteVertices(const DXFPolyline& polyline);
    void WriteText(std::string_view kind, const TextEntity& text);

    JsonWriter m_Json;
    std::string m_Place; ///< the fields "layer" and "block" of the entities at hand
};

/// "#rrggbb" of a device colour word.
std::string ColorText(unsigned long color);
