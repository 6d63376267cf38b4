#include "EntityDump.h"

#include "model/DXF3dFace.h"
#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFImage.h"
#include "model/DXFInsert.h"
#include "model/DXFLine.h"
#include "model/DXFMText.h"
#include "model/DXFPoint.h"
#include "model/DXFPolygon.h"
#include "model/DXFSolid.h"
#include "model/DXFText.h"
#include "support/LineStyle.h"

namespace {

constexpr int NUM_CORNERS = 4;

std::string Narrow(const wchar_t* ascii)
{
    std::string text;
    for (; *ascii != L'\0'; ++ascii) text += static_cast<char>(*ascii);
    return text;
}

} // namespace

std::string ColorText(unsigned long color)
{
    constexpr char DIGITS[] = "0123456789abcdef";
    const unsigned long rgb = SwapRedBlue(color);
    std::string text = "#";
    for (int shift = 20; shift >= 0; shift -= 4) text += DIGITS[rgb >> shift & 0xF];
    return text;
}

void EntityDump::SetPlace(const std::wstring& layer, const std::wstring* block)
{
    JsonWriter place;
    place.Raw(R"(,"layer":)");
    place.String(layer);
    place.Raw(R"(,"block":)");
    if (block)
        place.String(*block);
    else
        place.Raw("null");
    m_Place = place.Text();
}

void EntityDump::Begin(std::string_view kind, const DXFEntity& entity)
{
    m_Json.Raw(R"({"kind":")");
    m_Json.Raw(kind);
    m_Json.Raw("\"");
    m_Json.Raw(m_Place);
    m_Json.Raw(R"(,"color":")");
    m_Json.Raw(ColorText(entity.Color()));
    m_Json.Raw("\"");
}

void EntityDump::BeginLine(std::string_view kind, const DXFLineBase& entity)
{
    Begin(kind, entity);
    Name("style");
    m_Json.Raw("\"");
    m_Json.Raw(Narrow(LineStyleName(entity.Style())));
    m_Json.Raw("\"");
    Field("width", entity.Width());
}

void EntityDump::Name(std::string_view name)
{
    m_Json.Raw(",\"");
    m_Json.Raw(name);
    m_Json.Raw("\":");
}

template <class T>
void EntityDump::Field(std::string_view name, const T& value)
{
    Name(name);
    Value(value);
}

void EntityDump::Value(const GTL::Point2D<double>& point)
{
    m_Json.Raw("[");
    m_Json.Number(point.X());
    m_Json.Raw(",");
    m_Json.Number(point.Y());
    m_Json.Raw("]");
}

void EntityDump::Triple(double x, double y, double z)
{
    m_Json.Raw("[");
    m_Json.Number(x);
    m_Json.Raw(",");
    m_Json.Number(y);
    m_Json.Raw(",");
    m_Json.Number(z);
    m_Json.Raw("]");
}

template <class Corners>
void EntityDump::WriteCorners(const Corners& corners)
{
    Name("corners");
    for (int i = 0; i < NUM_CORNERS; ++i) {
        m_Json.Raw(i == 0 ? "[" : ",");
        Value(corners[i]);
    }
    m_Json.Raw("]");
    End();
}

void EntityDump::WriteVertices(const DXFPolyline& polyline)
{
    Field("lightweight", polyline.GetLWPolyLine());
    Field("elevation", polyline.GetElevation());
    Name("vertices");
    m_Json.Raw("[");
    for (int i = 0; i < polyline.NumPoints(); ++i) {
        m_Json.Raw(i == 0 ? "[" : ",[");
        for (const double component : {polyline[i].X(), polyline[i].Y(), polyline[i].Z()}) {
            m_Json.Number(component);
            m_Json.Raw(",");
        }
        m_Json.Number(polyline[i].B());
        m_Json.Raw("]");
    }
    m_Json.Raw("]");
    End();
}

void EntityDump::WriteText(std::string_view kind, const TextEntity& text)
{
    const TextInfo& info = text.GetTextInfo();
    Begin(kind, text);
    Field("text", text.Text());
    Field("position", text.Position());
    Field("font", info.Font());
    Field("size", info.Size());
    Field("rotation", info.Rotation().Get());
    Field("justification", static_cast<int>(info.Justification()));
    Field("text_style", static_cast<int>(info.Style()));
    Field("multi_line", info.MultiLine());
    Field("rect_width", info.RectWidth());
    End();
}

void EntityDump::Write(const DXFPoint& point)
{
    Begin("POINT", point);
    Field("point", point.Point());
    End();
}

void EntityDump::Write(const DXFLine& line)
{
    BeginLine("LINE", line);
    Field("start", line.Start());
    Field("end", line.End());
    End();
}

void EntityDump::Write(const DXFSolid& solid)
{
    Begin("SOLID", solid);
    WriteCorners(solid);
}

void EntityDump::Write(const DXF3dFace& face)
{
    Begin("3DFACE", face);
    WriteCorners(face);
}

void EntityDump::Write(const DXFCircle& circle)
{
    BeginLine("CIRCLE", circle);
    Field("center", circle.Center());
    Field("radius", circle.Radius());
    Field("extrusion", circle.Extrusion());
    End();
}

void EntityDump::Write(const DXFArc& arc)
{
    BeginLine("ARC", arc);
    Field("center", arc.Center());
    Field("radius", arc.Radius());
    Field("start_angle", arc.StartAngle());
    Field("end_angle", arc.EndAngle());
    Field("extrusion", arc.Extrusion());
    End();
}

void EntityDump::Write(const DXFPolyline& polyline)
{
    BeginLine("POLYLINE", polyline);
    WriteVertices(polyline);
}

void EntityDump::Write(const DXFPolygon& polygon)
{
    BeginLine("POLYGON", polygon);
    WriteVertices(polygon);
}

void EntityDump::Write(const DXFText& text)
{
    WriteText("TEXT", text);
}

void EntityDump::Write(const DXFMText& text)
{
    WriteText("MTEXT", text);
}

void EntityDump::Write(const DXFInsert& insert)
{
    Begin("INSERT", insert);
    Field("block_name", insert.BlockName());
    Field("insert_point", insert.InsertPoint());
    Field("rotation", insert.Rotation());
    Field("scale", insert.Scale());
    Field("extrusion", insert.Extrusion());
    Field("row_count", insert.GetRowCount());
    Field("column_count", insert.GetColumnCount());
    Field("row_spacing", insert.GetRowSpacing());
    Field("column_spacing", insert.GetColumnSpacing());
    End();
}

void EntityDump::Write(const DXFImage& image)
{
    Begin("IMAGE", image);
    Field("file_name", image.FileName());
    Field("insert_point", image.InsertPoint());
    Field("u_vector", image.UVector());
    Field("v_vector", image.VVector());
    Field("width", image.Width());
    Field("height", image.Height());
    Field("clip_type", static_cast<int>(image.ClipType()));
    Name("clip_boundary");
    m_Json.Raw("[");
    bool first = true;
    for (const GTL::Point2D<double>& corner : image.ClipBoundary()) {
        if (!first) m_Json.Raw(",");
        first = false;
        Value(corner);
    }
    m_Json.Raw("]");
    Field("brightness", image.Brightness());
    Field("contrast", image.Contrast());
    Field("fade", image.Fade());
    End();
}
