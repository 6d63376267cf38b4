#include "render/WinDXFDrawer.h"

#include "clip/LineClipper.h"
#include "clip/PolygonClipper.h"
#include "model/DXF.h"
#include "model/DXF3dFace.h"
#include "model/DXFLine.h"
#include "model/DXFPoint.h"
#include "model/DXFSolid.h"
#include "render/FarLine.h"
#include "support/CPointMimic.h"
#include "support/GDISelector.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using P2 = GTL::Point2D<double>;
using P3 = GTL::Point3D<double>;
using Window = GTL::Extents2D<double>;

/// Squared distance of two colours, red, green and blue as axes, below which one does not show on the other.
constexpr int CLOSE_COLORS = 60 * 60;
constexpr unsigned long BLACK = 0;
constexpr unsigned long WHITE = 0xFFFFFF;

/// Saturated so that its negative is an int too.
int Length(int from, int to)
{
    constexpr std::int64_t MOST = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(std::int64_t{to} - from, -MOST, MOST));
}

/// A box and as much again on each of its sides.
Window Around(const Window& box)
{
    const double dx = box.ExtentX();
    const double dy = box.ExtentY();
    return {{box.MinX() - dx, box.MinY() - dy}, {box.MaxX() + dx, box.MaxY() + dy}};
}

/// Moves an end whose coordinate lies beyond a bound to the bound; the line knows the other coordinate there.
template <class OtherAt>
void CutEnd(double& end, double& other, double low, double high, const OtherAt& otherAt)
{
    const double bound = std::clamp(end, low, high);
    if (bound == end) return;
    other = otherAt(bound);
    end = bound;
}

bool AreBeyond(double a, double b, double low, double high)
{
    return (a < low && b < low) || (a > high && b > high);
}

/// Cuts a segment to a window. False when nothing of it is left.
bool CutTo(const Window& window, P2& from, P2& to)
{
    if (AreBeyond(from.X(), to.X(), window.MinX(), window.MaxX())) return false;
    const FarLine line(from, to);
    for (P2* end : {&from, &to})
        CutEnd(end->X(), end->Y(), window.MinX(), window.MaxX(), [&](double x) { return line.YAt(x); });
    if (AreBeyond(from.Y(), to.Y(), window.MinY(), window.MaxY())) return false;
    for (P2* end : {&from, &to})
        CutEnd(end->Y(), end->X(), window.MinY(), window.MaxY(), [&](double y) { return line.XAt(y); });
    return true;
}

} // namespace

WinDXFDrawer::~WinDXFDrawer()
{
    DeselectPen();
}

ErrorString WinDXFDrawer::Init(CDC* dc, const Window& extents, const CRect& rect)
{
    DeselectPen();
    m_DC = dc ? dc : &m_Nowhere;
    m_View = extents;
    m_Rect = rect;
    if (!InitMapper(extents)) return ErrorString(Message::DrawerMapperFailed);
    if (!InitDC(dc, rect)) return ErrorString(Message::DrawerContextFailed);
    m_Visible = Window(extents.MinPnt(), extents.MaxPnt());
    m_Around = Around(m_Visible);
    if (m_Option.openGaps) m_DC->SetBkMode(TRANSPARENT);
    return true;
}

bool WinDXFDrawer::InitMapper(const Window& extents)
{
    const double width = extents.IsValid() ? extents.ExtentX() : 0;
    const double height = extents.IsValid() ? extents.ExtentY() : 0;
    const auto middle = [](int a, int b) {
        return static_cast<int>((std::int64_t{a} + b) / 2);
    };
    const int x = middle(m_Rect.left, m_Rect.right);
    const int y = middle(m_Rect.top, m_Rect.bottom);
    const int w = Length(m_Rect.left, m_Rect.right);
    const int h = Length(m_Rect.top, m_Rect.bottom);
    m_PixelMapper.SetSource(extents.Center(), width, height);
    m_PixelMapper.SetTarget({x, y}, w, h);
    m_Mapper.SetSource(extents.Center(), width, height);
    m_Mapper.SetTarget({static_cast<double>(x), static_cast<double>(y)}, w, h);
    return true;
}

bool WinDXFDrawer::InitDC(CDC* dc, const CRect& rect)
{
    if (!dc) return false;
    const int w = Length(rect.left, rect.right);
    const int h = Length(rect.top, rect.bottom);
    dc->SetMapMode(MM_ISOTROPIC);
    const CSize before = dc->SetWindowExt(w, h);
    if (before.cx == 0 || before.cy == 0) return false;
    dc->SetWindowOrg(w / 2, h / 2);
    dc->SetViewportOrg(w / 2, h / 2);
    dc->SetViewportExt(w, -h);
    return true;
}

P3 WinDXFDrawer::DeviceToLogic(const CPoint& pixel) const
{
    CPoint p = pixel;
    m_DC->DPtoLP(&p);
    const P2 place = m_Mapper.Unmap(p.x, p.y);
    return {place.X(), place.Y(), 0};
}

CPoint WinDXFDrawer::LogicToDevice(const P3& point) const
{
    CPoint p = ToPixel(point);
    m_DC->LPtoDP(&p);
    return p;
}

CPoint WinDXFDrawer::ToPixel(const P2& point) const
{
    return CPointMimic(m_Mapper.Map(point));
}

void WinDXFDrawer::Draw(const DXF& document, const std::atomic<bool>& keepGoing)
{
    const bool boxesDiffer = m_Option.composeInserts || m_Option.extrusions;
    for (std::size_t i = 0; i < document.NumLayers() && keepGoing; ++i) {
        const DXFLayer& layer = *document[i];
        if (!layer.IsVisible()) continue;
        if (!MissesView(layer.Extents()) || (boxesDiffer && !MissesView(m_Boxes.Of(layer))))
            Draw(layer, keepGoing);
    }
}

void WinDXFDrawer::Draw(const DXFLayer& layer, const std::atomic<bool>& keepGoing)
{
    m_Layer = &layer;
    m_KeepGoing = &keepGoing;
    for (std::size_t i = 0; i < layer.NumEntities() && keepGoing; ++i) layer[i]->Write(*this);
    m_KeepGoing = nullptr;
    m_Layer = nullptr;
}

/// A coordinate that is no number misses nothing: what has it is looked at.
bool WinDXFDrawer::MissesView(const GTL::Extents3D<double>& box) const
{
    return !box.IsValid() || box.MinX() > m_Visible.MaxX() || box.MaxX() < m_Visible.MinX()
           || box.MinY() > m_Visible.MaxY() || box.MaxY() < m_Visible.MinY();
}

unsigned long WinDXFDrawer::Shown(unsigned long color)
{
    if (m_Option.composeInserts && color == DXFLayer::COLOR_OF_INSERT) color = m_Look.color;
    return m_Option.background ? SwapIfTooClose(color) : color;
}

unsigned long WinDXFDrawer::SwapIfTooClose(unsigned long color) const
{
    const unsigned long background = *m_Option.background;
    if (SquaredDistance(color, background) >= CLOSE_COLORS) return color;
    return SquaredDistance(background, BLACK) < SquaredDistance(background, WHITE) ? WHITE : BLACK;
}

bool WinDXFDrawer::CreatePen(const DXFLineBase& entity)
{
    const Look look{entity.Color(), entity.Style(), entity.Width()};
    if (m_IsPenOfLook && look == m_PenLook && m_Path.empty()) return true;
    int style = look.style;
    float width = look.width;
    if (m_Option.composeInserts && style == DXFLayer::STYLE_OF_INSERT) style = m_Look.style;
    if (m_Option.composeInserts && width == DXFLayer::WIDTH_OF_INSERT) width = m_Look.width;
    if (m_Option.openGaps && (style < LineInfo::CONTINUOUS || style > LineInfo::DASHDOT))
        style = LineInfo::CONTINUOUS;
    if (m_Option.thinDefaultWidth && width == LineInfo().Width()) width = 0;
    int pixels = std::isfinite(width) ? std::max(m_PixelMapper.MapX(static_cast<double>(width)), 0) : 0;
    if (m_Option.widestLine > 0) pixels = std::min(pixels, m_Option.widestLine);
    m_IsPenOfLook = CreatePen(style, pixels, Shown(look.color));
    m_PenLook = look;
    return m_IsPenOfLook;
}

bool WinDXFDrawer::CreatePen(int style, int width, unsigned long color)
{
    m_IsPenOfLook = false;
    if (m_HasPen && style == m_PenStyle && width == m_PenWidth && color == m_PenColor) return true;
    DeselectPen();
    m_Pen.DeleteObject();
    if (!m_Pen.CreateDxfPen(style, width, color)) return false;
    m_PenStyle = style;
    m_PenWidth = width;
    m_PenColor = color;
    m_PenBefore = m_DC->SelectObject(&m_Pen);
    m_HasPen = true;
    return true;
}

void WinDXFDrawer::DeselectPen()
{
    if (m_HasPen) m_DC->SelectObject(m_PenBefore);
    m_HasPen = false;
    m_IsPenOfLook = false;
}

void WinDXFDrawer::Write(const DXFPoint& point)
{
    if (m_IsTransforming) return DrawTransformed(point);
    const P2& place = point.Point();
    if (m_Visible.Classify(place) != GTL::CLS::INSIDE) return;
    m_DC->SetPixel(ToPixel(place), Shown(point.Color()));
}

void WinDXFDrawer::Write(const DXFLine& line)
{
    if (m_IsTransforming) return DrawTransformed(line);
    CreatePen(line);
    // What is inside needs no clipper to say so, and most lines are.
    if (m_Visible.Classify(line.Start()) == GTL::CLS::INSIDE
        && m_Visible.Classify(line.End()) == GTL::CLS::INSIDE)
        return DrawLine(line.Start(), line.End());
    if (m_Option.visibleParts) return DrawVisibleLine(line.Start(), line.End());
    GTL::Line<P3> cut;
    switch (GTL::LineClipper<P3>(m_Visible).Clip(line.GetLine(), cut)) {
    case GTL::Inside:
        return DrawLine(line.Start(), line.End());
    case GTL::Clipped:
        if (IsFinite(cut.Start()) && IsFinite(cut.End())) DrawLine(cut.Start(), cut.End());
        return;
    case GTL::Outside:
        return;
    }
}

void WinDXFDrawer::DrawLine(const P3& from, const P3& to)
{
    m_DC->MoveTo(CPointMimic(m_PixelMapper.Map(from)));
    m_DC->LineTo(CPointMimic(m_PixelMapper.Map(to)));
}

/// Cut well outside of the view, where a cut shows neither as an end nor by a change of the pixels' steps.
void WinDXFDrawer::DrawVisibleLine(P2 from, P2 to)
{
    if (!IsFinite(from) || !IsFinite(to)) return;
    const auto [left, right] = std::minmax(from.X(), to.X());
    const auto [low, high] = std::minmax(from.Y(), to.Y());
    const double dx = m_Mapper.UnmapX(m_PenWidth + 1.0);
    const double dy = m_Mapper.UnmapY(m_PenWidth + 1.0);
    if (left > m_Visible.MaxX() + dx || right < m_Visible.MinX() - dx || low > m_Visible.MaxY() + dy
        || high < m_Visible.MinY() - dy)
        return;
    const bool isFar =
        left < m_Around.MinX() || right > m_Around.MaxX() || low < m_Around.MinY() || high > m_Around.MaxY();
    if (isFar && !CutTo(m_Around, from, to)) return;
    m_DC->MoveTo(CPointMimic(m_PixelMapper.Map(from)));
    m_DC->LineTo(CPointMimic(m_PixelMapper.Map(to)));
}

void WinDXFDrawer::Write(const DXF3dFace& face)
{
    DXFSolid solid;
    solid[0] = face[0];
    solid[1] = face[1];
    solid[2] = face[3];
    solid[3] = face[2];
    solid.SetColor(face.Color());
    Write(solid);
}

void WinDXFDrawer::Write(const DXFSolid& solid)
{
    if (m_IsTransforming) return DrawTransformed(solid);
    CPen pen(PS_SOLID, 1, Shown(solid.Color()));
    CBrush brush(Shown(solid.Color()));
    const GDISelector selectPen(m_DC, &pen);
    const GDISelector selectBrush(m_DC, &brush);
    DrawTriangle(solid[0], solid[1], solid[2]);
    if (!(solid[2] == solid[3])) DrawTriangle(solid[3], solid[1], solid[2]);
}

void WinDXFDrawer::DrawTriangle(const P3& a, const P3& b, const P3& c)
{
    const GTL::Clipper<P3> clipper(m_Visible);
    if (clipper.Classify(a) == GTL::Inside && clipper.Classify(b) == GTL::Inside
        && clipper.Classify(c) == GTL::Inside) {
        const CPoint corners[] = {ToPixel(a), ToPixel(b), ToPixel(c)};
        m_DC->Polygon(corners, 3);
        return;
    }
    GTL::Polyline<P3> ring;
    for (const P3& corner : {a, b, c}) ring.PushBack(P3(corner.X(), corner.Y(), corner.Z()));
    m_Pieces.clear();
    GTL::PolygonClipper<P3>(m_Visible).Clip(ring, m_Pieces);
    for (const GTL::Polyline<P3>& piece : m_Pieces) FillPiece(piece.Vertices());
}

void WinDXFDrawer::FillPiece(const std::vector<P3>& corners)
{
    m_Points.clear();
    for (const P3& corner : corners) m_Points.push_back(ToPixel(corner));
    m_DC->Polygon(m_Points.data(), static_cast<int>(m_Points.size()));
}
