#include "dxf/DXFFile.h"

#include "dxf/FixedGroup.h"
#include "dxf/WriterText.h"
#include "model/DXF3dFace.h"
#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFImage.h"
#include "model/DXFLine.h"
#include "model/DXFMText.h"
#include "model/DXFPoint.h"
#include "model/DXFPolygon.h"
#include "model/DXFSolid.h"
#include "model/DXFText.h"

#include <array>

// Each of these writes what follows an entity's common header.

namespace {

/// Half a pixel: a clip rectangle runs along the outer edges of its corner pixels.
constexpr double HALF_PIXEL = 0.5;

/// The group 6 of a line style; any other than 1, 2 and 3 is continuous.
std::string_view LineTypeGroup(int style)
{
    static constexpr std::string_view GROUPS[] = {"6\r\nCONTINUOUS\r\n", "6\r\nDASHED\r\n", "6\r\nDOT\r\n",
                                                  "6\r\nDASHDOT\r\n"};
    return GROUPS[style >= 1 && style <= 3 ? style : 0];
}

} // namespace

void DXFFile::WriteLineData(const DXFLineBase& entity)
{
    WriteReal(39, static_cast<double>(entity.Width()));
    WriteGroups(LineTypeGroup(entity.Style()));
}

void DXFFile::WriteNormal(const GTL::Vector3D<double>& normal)
{
    if (normal == GTL::Vector3D<double>(0, 0, 1) || normal == GTL::Vector3D<double>(0, 0, 0)) return;
    WriteReal(210, normal.X());
    WriteReal(220, normal.Y());
    WriteReal(230, normal.Z());
}

void DXFFile::Write(const DXFLine& line)
{
    WriteGroups("100\r\nAcDbEntity\r\n100\r\nAcDbLine\r\n");
    WriteLineData(line);
    WritePoint(line.Start(), 0);
    WritePoint(line.End(), 1);
}

void DXFFile::Write(const DXFPoint& point)
{
    WriteGroups("100\r\nAcDbEntity\r\n100\r\nAcDbPoint\r\n");
    WritePoint(point.Point(), 0);
}

void DXFFile::Write(const DXFSolid& solid)
{
    WriteGroups("100\r\nAcDbEntity\r\n100\r\nAcDbTrace\r\n");
    for (int corner = 0; corner < 4; ++corner) WritePoint(solid[corner], corner);
}

void DXFFile::Write(const DXF3dFace& face)
{
    WriteGroups("100\r\nAcDbEntity\r\n100\r\nAcDbFace\r\n");
    for (int corner = 0; corner < 4; ++corner) WritePoint(face[corner], corner);
}

void DXFFile::Write(const DXFCircle& circle)
{
    WriteGroups("100\r\nAcDbEntity\r\n100\r\nAcDbCircle\r\n");
    WriteLineData(circle);
    WritePoint(circle.Center(), 0);
    WriteFloat(circle.Radius(), 0);
    WriteNormal(circle.Extrusion());
}

/// Bearings clockwise from +y become angles counter-clockwise from +x, so start and end change places.
void DXFFile::Write(const DXFArc& arc)
{
    WriteGroups("100\r\nAcDbEntity\r\n100\r\nAcDbCircle\r\n");
    WriteLineData(arc);
    WritePoint(arc.Center(), 0);
    WriteFloat(arc.Radius(), 0);
    WriteGroups("100\r\nAcDbArc\r\n");
    WriteAngle(TrimAngle(90 - arc.EndAngle()), 0);
    WriteAngle(TrimAngle(90 - arc.StartAngle()), 1);
    WriteNormal(arc.Extrusion());
}

void DXFFile::WriteVertex(const P3& vertex, std::string_view head, bool withZ)
{
    WriteGroups("0\r\nVERTEX\r\n");
    WriteHandle();
    WriteGroups(head);
    WriteGroups(m_CurrentLayer);
    WriteGroups("100\r\nAcDbVertex\r\n100\r\nAcDb2dVertex\r\n");
    WriteReal(10, vertex.X());
    WriteReal(20, vertex.Y());
    if (withZ) WriteReal(30, vertex.Z());
    if (vertex.B() != 0) WriteReal(42, vertex.B());
}

void DXFFile::WriteVertices(const DXFPolyline& polyline, std::string_view head, bool withZ)
{
    WriteFloat(static_cast<double>(polyline.Width()), 0);
    WriteFloat(static_cast<double>(polyline.Width()), 1);
    WriteGroups(LineTypeGroup(polyline.Style()));
    for (const P3& vertex : polyline.GetPoly().Vertices()) WriteVertex(vertex, head, withZ);
    WriteGroups("0\r\nSEQEND\r\n");
    WriteHandle();
    WriteGroups("100\r\nAcDbEntity\r\n");
    WriteGroups(m_CurrentLayer);
}

void DXFFile::Write(const DXFPolyline& polyline)
{
    WriteGroups("100\r\nAcDbEntity\r\n100\r\nAcDb2dPolyline\r\n66\r\n1\r\n10\r\n0.0\r\n20\r\n0.0\r\n");
    WriteReal(30, polyline.GetElevation());
    WriteGroups("70\r\n0\r\n");
    WriteVertices(polyline, "100\r\nAcDbEntity\r\n", !polyline.GetLWPolyLine());
}

void DXFFile::Write(const DXFPolygon& polygon)
{
    WriteGroups("100\r\nAcDbEntity\r\n6\r\nCONTINUOUS\r\n100\r\nAcDb2dPolyline\r\n66\r\n1\r\n"
                "10\r\n0.0\r\n20\r\n0.0\r\n30\r\n0.0\r\n70\r\n1\r\n");
    WriteVertices(polygon, "62\r\n0\r\n100\r\nAcDbEntity\r\n", true);
}

/// The name of the style that the table gives to a font. Texts that follow one another mostly have one font.
void DXFFile::WriteStyleName(const std::wstring& font)
{
    if (m_StyleName.empty() || font != m_StyleFont) {
        m_StyleFont = font;
        m_StyleName = "7\r\n";
        AppendName(m_StyleName, MakeSafeName(font));
        m_StyleName += "\r\n";
    }
    WriteGroups(m_StyleName);
}

void DXFFile::Write(const DXFText& text)
{
    const TextInfo& info = text.GetTextInfo();
    WriteGroups("100\r\nAcDbEntity\r\n100\r\nAcDbText\r\n");
    WritePoint(text.Position(), 0);
    WriteFloat(static_cast<double>(info.Size()), 0);
    WriteText(1, text.Text());
    WriteAngle((-info.Rotation()).Get(), 0);
    WriteStyleName(info.Font());
    WriteInt(info.AcadHJust(), 2);
    WritePoint(text.Position(), 1);
    WriteGroups("100\r\nAcDbText\r\n");
    WriteInt(info.AcadVJust(), 3);
}

void DXFFile::Write(const DXFMText& text)
{
    const TextInfo& info = text.GetTextInfo();
    WriteGroups("100\r\nAcDbEntity\r\n100\r\nAcDbMText\r\n");
    WritePoint(text.Position(), 0);
    WriteFloat(static_cast<double>(info.Size()), 0);
    WriteFloat(static_cast<double>(info.RectWidth()), 1);
    const Angle direction = -info.Rotation();
    WritePoint(P3(direction.Cos(), direction.Sin(), 0), 1);
    WriteInt(info.AcadAttachmentPoint(), 1);
    WriteInt(1, 2);
    WriteContent(text);

    // A comment that saves readers the measuring.
    const GTL::Extents3D<double>& box = text.Extents();
    WriteGroups(box.IsValid() ? "999\r\nYES\r\n" : "999\r\nNO\r\n");
    if (!box.IsValid()) return;
    WritePoint(box.MinPnt(), 7);
    WritePoint(box.MaxPnt(), 8);
}

/// Behind a formatting prefix for font, bold, italic and underlined; code 3 for every piece but the last,
/// code 1 for that.
void DXFFile::WriteContent(const DXFMText& text)
{
    const TextInfo& info = text.GetTextInfo();
    m_Prefix = "\\f";
    AppendName(m_Prefix, info.Font());
    m_Prefix += info.Style() & TextInfo::BOLD ? "|b1" : "|b0";
    m_Prefix += info.Style() & TextInfo::ITALIC ? "|i1" : "|i0";
    m_Prefix += info.Style() & TextInfo::UNDERLINE ? "|c0|p34;\\L" : "|c0|p34;";
    TextPieces pieces(m_Prefix, text.Text());
    do {
        char piece[TextPieces::PIECE_LENGTH];
        const std::string_view written(piece, static_cast<std::size_t>(pieces.Next(piece) - piece));
        WriteGroups(pieces.AtEnd() ? "1\r\n" : "3\r\n");
        WriteGroups(written);
        WriteGroups("\r\n");
    } while (!pieces.AtEnd());
}

void DXFFile::Write(const DXFImage& image)
{
    const int handle = TakeHandle();
    WriteHandle(5, handle);
    WriteGroups("100\r\nAcDbEntity\r\n");
    if (image.LayerName().empty())
        WriteGroups(m_CurrentLayer);
    else
        WriteLayerName(image.LayerName());
    WriteGroups("100\r\nAcDbRasterImage\r\n90\r\n0\r\n");
    const P3* const places[] = {&image.InsertPoint(), &image.UVector(), &image.VVector()};
    for (int index = 0; index < 3; ++index) {
        WriteReal(10 + index, places[index]->X());
        WriteReal(20 + index, places[index]->Y());
        WriteGroups(std::array{FixedGroup{30 + index, "0.0"}});
    }
    WriteReal(13, image.Width());
    WriteReal(23, image.Height());
    WriteName(340, image.DefinitionHandle());
    WriteGroups("70\r\n7\r\n280\r\n0\r\n281\r\n50\r\n282\r\n50\r\n283\r\n0\r\n");
    WriteName(360, image.ReactorHandle());
    WriteClipBoundary(image);
    QueueReactor(image, handle);
}

/// A rectangle without both corners is that of the whole picture.
void DXFFile::WriteClipBoundary(const DXFImage& image)
{
    const std::vector<GTL::Point2D<double>>& boundary = image.ClipBoundary();
    if (image.ClipType() == DXFImage::CLIP_RECTANGLE) {
        const bool whole = boundary.size() < 2;
        const GTL::Point2D<double> first = whole ? GTL::Point2D<double>(0, 0) : boundary[0];
        const GTL::Point2D<double> second =
            whole ? GTL::Point2D<double>(image.Width() - 1, image.Height() - 1) : boundary[1];
        WriteGroups("71\r\n1\r\n91\r\n2\r\n");
        WriteReal(14, first.X() - HALF_PIXEL);
        WriteReal(24, first.Y() - HALF_PIXEL);
        WriteReal(14, second.X() + HALF_PIXEL);
        WriteReal(24, second.Y() + HALF_PIXEL);
        return;
    }
    WriteGroups("71\r\n2\r\n");
    WriteInteger(91, boundary.empty() ? 0 : static_cast<long long>(boundary.size()) + 1);
    // Rows count from the top, and the ring closes by its last corner, which comes first too.
    for (std::size_t i = 0; !boundary.empty() && i <= boundary.size(); ++i) {
        const GTL::Point2D<double>& corner = i == 0 ? boundary.back() : boundary[i - 1];
        WriteReal(14, corner.X());
        WriteReal(24, image.Height() - corner.Y());
    }
}
