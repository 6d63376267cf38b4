#include "plot/PlotFile.h"

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
#include "plot/PlotBody.h"

namespace {

using PlotRecords::Owned;
using PlotRecords::P2;
using PlotRecords::P3;
using PlotRecords::Viewed;

const std::atomic<bool> ALWAYS{true};

P3 AsPoint(const GTL::Vector3D<double>& v)
{
    return {v.X(), v.Y(), v.Z()};
}

GTL::Vector3D<double> AsVector(const P3& p)
{
    return {p.X(), p.Y(), p.Z()};
}

P3 AsPoint(const std::array<double, 3>& components)
{
    return {components[0], components[1], components[2]};
}

std::array<double, 3> Components(const P3& p)
{
    return {p.X(), p.Y(), p.Z()};
}

PlotRecords::LineData LineDataOf(const DXFLineBase& entity)
{
    LineInfo info;
    info.SetStyle(static_cast<LineInfo::LINESTYLE>(entity.Style()));
    info.SetWidth(entity.Width());
    info.SetColor(entity.Color());
    return {{info.Color()}, info.Style(), info.Width()};
}

LineInfo InfoOf(const PlotRecords::LineData& line)
{
    return LineInfo(static_cast<LineInfo::LINESTYLE>(line.style), line.width, line.color.device);
}

PlotRecords::Text<Viewed> TextOf(const TextEntity& text)
{
    const TextInfo& info = text.GetTextInfo();
    return {{text.Color()}, info.Font(),  info.Justification(), info.Rotation().Get(),
            info.Size(),    info.Style(), text.Position(),      text.Text()};
}

void Give(TextInfo& info, const PlotRecords::Text<Owned>& record)
{
    info.SetColor(record.color.device);
    info.SetFont(record.font);
    info.SetJustification(static_cast<TextInfo::JUSTIFICATION>(record.justification));
    info.SetRotation(Angle(record.rotation));
    info.SetSize(record.size);
    info.SetStyle(static_cast<TextInfo::STYLE>(record.style));
}

void Give(TextEntity& text, const PlotRecords::Text<Owned>& record, const TextInfo& info)
{
    text.SetText(record.text);
    text.SetPosition(record.position);
    text.SetTextInfo(info);
}

template <class Cornered>
PlotRecords::Corners CornersOf(const Cornered& entity)
{
    return {{entity.Color()}, {entity[0], entity[1], entity[2], entity[3]}};
}

} // namespace

/// Kept from one text to the next, so that their strings ask for memory once.
struct PlotFile::TextScratch {
    PlotRecords::MText<Owned> record;
    TextInfo info;
};

PlotFile::PlotFile() : m_KeepGoing(&ALWAYS), m_Scratch(std::make_unique<TextScratch>()) {}

PlotFile::~PlotFile() = default;

void PlotFile::Write(const DXFSolid& solid)
{
    WriteRecord(SOLID, CornersOf(solid));
}

void PlotFile::Write(const DXF3dFace& face)
{
    WriteRecord(FACE, CornersOf(face));
}

template <class Cornered>
bool PlotFile::ReadCorners(Cornered* entity)
{
    PlotRecords::Corners record;
    if (!ReadRecord(record)) return false;
    entity->SetColor(record.color.device);
    for (int i = 0; i < 4; ++i) (*entity)[i] = record.corners[static_cast<std::size_t>(i)];
    return true;
}

void PlotFile::Write(const DXFPoint& point)
{
    WriteRecord(POINT, PlotRecords::Point{{point.Color()}, point.Point()});
}

bool PlotFile::Read(DXFPoint* point)
{
    PlotRecords::Point record;
    if (!ReadRecord(record)) return false;
    point->SetColor(record.color.device);
    point->SetPoint(record.position);
    return true;
}

void PlotFile::Write(const DXFLine& line)
{
    WriteRecord(LINE, PlotRecords::Line{LineDataOf(line), line.Start(), line.End()});
}

bool PlotFile::Read(DXFLine* line)
{
    PlotRecords::Line record;
    if (!ReadRecord(record)) return false;
    line->SetInfo(InfoOf(record.line));
    line->Set(record.start, record.end);
    return true;
}

void PlotFile::Write(const DXFPolyline& polyline)
{
    WriteRecord(POLYLINE,
                PlotRecords::Polyline<Viewed>{LineDataOf(polyline), polyline.GetElevation(),
                                              polyline.GetLWPolyLine(), polyline.GetPoly().Vertices()});
}

bool PlotFile::Read(DXFPolyline* polyline)
{
    PlotRecords::Polyline<Owned> record;
    if (!ReadRecord(record)) return false;
    polyline->SetInfo(InfoOf(record.line));
    polyline->SetElevation(record.elevation);
    polyline->SetLWPolyLine(record.lightweight);
    polyline->SetPoly(GTL::Polyline<P3>(std::move(record.vertices)));
    return true;
}

void PlotFile::Write(const DXFPolygon& polygon)
{
    WriteRecord(POLYGON, PlotRecords::Polygon<Viewed>{LineDataOf(polygon), polygon.GetPoly().Vertices()});
}

bool PlotFile::Read(DXFPolygon* polygon)
{
    PlotRecords::Polygon<Owned> record;
    if (!ReadRecord(record)) return false;
    polygon->SetInfo(InfoOf(record.line));
    polygon->SetPoly(GTL::Polyline<P3>(std::move(record.vertices)));
    return true;
}

void PlotFile::Write(const DXFCircle& circle)
{
    WriteRecord(CIRCLE, PlotRecords::Circle{LineDataOf(circle), circle.Radius(), circle.Center(),
                                            AsPoint(circle.Extrusion())});
}

bool PlotFile::Read(DXFCircle* circle)
{
    PlotRecords::Circle record;
    if (!ReadRecord(record)) return false;
    // Setting the radius would take it to single precision; made with it the circle is the one that was
    // written.
    *circle = DXFCircle(record.center, record.radius, AsVector(record.extrusion));
    circle->SetInfo(InfoOf(record.line));
    return true;
}

void PlotFile::Write(const DXFArc& arc)
{
    WriteRecord(ARC, PlotRecords::Arc{LineDataOf(arc), arc.Radius(), arc.Center(), arc.StartAngle(),
                                      arc.EndAngle(), AsPoint(arc.Extrusion())});
}

bool PlotFile::Read(DXFArc* arc)
{
    PlotRecords::Arc record;
    if (!ReadRecord(record)) return false;
    *arc =
        DXFArc(record.center, record.radius, record.startAngle, record.endAngle, AsVector(record.extrusion));
    arc->SetInfo(InfoOf(record.line));
    return true;
}

void PlotFile::Write(const DXFText& text)
{
    WriteRecord(TEXT, TextOf(text));
}

bool PlotFile::Read(DXFText* text)
{
    PlotRecords::Text<Owned>& record = m_Scratch->record.body;
    if (!ReadRecord(record)) return false;
    TextInfo& info = m_Scratch->info;
    Give(info, record);
    info.SetRectWidth(0);
    info.SetMultiLine(false);
    Give(*text, record, info);
    return true;
}

void PlotFile::Write(const DXFMText& text)
{
    const TextInfo& info = text.GetTextInfo();
    WriteRecord(MTEXT, PlotRecords::MText<Viewed>{TextOf(text), info.RectWidth(), info.MultiLine()});
}

bool PlotFile::Read(DXFMText* text)
{
    PlotRecords::MText<Owned>& record = m_Scratch->record;
    if (!ReadRecord(record)) return false;
    TextInfo& info = m_Scratch->info;
    Give(info, record.body);
    info.SetRectWidth(record.rectWidth);
    info.SetMultiLine(record.multiLine);
    Give(*text, record.body, info);
    return true;
}

void PlotFile::Write(const DXFInsert& insert)
{
    WriteRecord(INSERT, PlotRecords::Insert<Viewed>{insert.BlockName(), insert.InsertPoint(), insert.Scale(),
                                                    insert.Extrusion(), insert.Rotation(),
                                                    insert.GetRowCount(), insert.GetRowSpacing(),
                                                    insert.GetColumnCount(), insert.GetColumnSpacing()});
}

bool PlotFile::Read(DXFInsert* insert)
{
    PlotRecords::Insert<Owned> record;
    if (!ReadRecord(record)) return false;
    insert->SetBlockName(record.block);
    insert->SetInsertPoint(record.point);
    insert->SetScale(record.scale);
    insert->SetExtrusion(record.extrusion);
    insert->SetRotation(record.rotation);
    insert->SetRowCount(record.rows);
    insert->SetRowSpacing(record.rowSpacing);
    insert->SetColumnCount(record.columns);
    insert->SetColumnSpacing(record.columnSpacing);
    // Never a block's own drawing: it holds no blocks, so inserts within blocks resolve in the document too.
    insert->SetDXF(m_Document);
    return true;
}

void PlotFile::Write(const DXFImage& image)
{
    PlotRecords::Image<Viewed> record;
    record.color.device = image.Color();
    record.clipType = image.ClipType();
    record.brightness = image.Brightness();
    record.contrast = image.Contrast();
    record.fade = image.Fade();
    record.file = image.FileName();
    record.layer = image.LayerName();
    record.definitionHandle = image.DefinitionHandle();
    record.reactorHandle = image.ReactorHandle();
    record.u = Components(image.UVector());
    record.v = Components(image.VVector());
    record.boundary = image.ClipBoundary();
    record.x = image.InsertPoint().X();
    record.y = image.InsertPoint().Y();
    record.width = image.Width();
    record.height = image.Height();
    record.z = image.InsertPoint().Z();
    WriteRecord(IMAGE, record);
}

bool PlotFile::Read(DXFImage* image)
{
    PlotRecords::Image<Owned> record;
    if (!ReadRecord(record)) return false;
    image->SetColor(record.color.device);
    image->SetBrightness(record.brightness);
    image->SetContrast(record.contrast);
    image->SetFade(record.fade);
    image->SetLayerName(record.layer);
    image->SetDefinitionHandle(record.definitionHandle);
    image->SetReactorHandle(record.reactorHandle);
    image->SetUVector(AsPoint(record.u));
    image->SetVVector(AsPoint(record.v));
    image->SetInsertPoint(P3(record.x, record.y, record.z));
    image->SetSize(record.width, record.height);
    const bool isPolygon = record.clipType == DXFImage::CLIP_POLYGON;
    image->SetClipBoundary(isPolygon ? DXFImage::CLIP_POLYGON : DXFImage::CLIP_RECTANGLE,
                           std::move(record.boundary));
    LoadPicture(*image, record.file);
    return true;
}

/// Loads each file once. A picture of another height than the record says keeps what a polygon cuts out of
/// it, as counted from its top.
void PlotFile::LoadPicture(DXFImage& image, const std::wstring& file)
{
    image.SetDrawingFolder(m_Folder);
    const auto [known, isNew] = m_Pictures.try_emplace(file, &image);
    const double height = image.Height();
    if (isNew)
        (void)image.SetFileName(file);
    else
        image.ShareFile(*known->second);
    if (image.ClipType() != DXFImage::CLIP_POLYGON || image.Height() == height) return;
    std::vector<P2> boundary = image.ClipBoundary();
    for (P2& corner : boundary) corner.Y(corner.Y() + image.Height() - height);
    image.SetClipBoundary(DXFImage::CLIP_POLYGON, std::move(boundary));
}

/// Nothing of an entity stays that is not whole.
template <class Entity>
bool PlotFile::ReadEntity()
{
    auto entity = std::make_unique<Entity>();
    if (!Read(entity.get())) return false;
    m_Layer->Add(entity.release());
    return true;
}

PlotFile::RecordReader PlotFile::ReaderOf(std::int32_t kind)
{
    /// By kind, from 1.
    static constexpr RecordReader READERS[] = {
        &PlotFile::ReadLayer,
        &PlotFile::ReadEntity<DXFSolid>,
        &PlotFile::ReadEntity<DXFMText>,
        &PlotFile::ReadEntity<DXFLine>,
        &PlotFile::ReadEntity<DXFPolyline>,
        &PlotFile::ReadEntity<DXFPolygon>,
        &PlotFile::ReadEntity<DXFPoint>,
        &PlotFile::ReadEntity<DXFCircle>,
        &PlotFile::ReadEntity<DXFText>,
        &PlotFile::ReadEntity<DXFArc>,
        &PlotFile::ReadEntity<DXFImage>,
        &PlotFile::ReadEntity<DXF3dFace>,
        &PlotFile::ReadEntity<DXFInsert>,
        &PlotFile::ReadBlock,
        &PlotFile::ReadBlockEnd,
    };
    static_assert(std::size(READERS) == BLOCK_END);
    return kind >= LAYER && kind <= BLOCK_END ? READERS[kind - 1] : nullptr;
}
