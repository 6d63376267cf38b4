#include "platform/CDC.h"

#include <array>
#include <cmath>
#include <cstring>
#include <memory_resource>
#include <new>
#include <utility>
#include <vector>

#include "platform/raster/Canvas.h"
#include "platform/raster/ContextSystem.h"
#include "platform/raster/PolygonFill.h"
#include "platform/raster/Stroke.h"
#include "platform/raster/ThinLine.h"

namespace {
constexpr unsigned long COLOR_BITS = 0xFFFFFF;

/// Dashes of cosmetic pens, in pixels; 0 ends a row.
constexpr std::array<std::array<int, 6>, PS_INSIDEFRAME + 1> DASHES = {{
    {},                 // PS_SOLID
    {18, 6},            // PS_DASH
    {3, 3},             // PS_DOT
    {9, 6, 3, 6},       // PS_DASHDOT
    {9, 3, 3, 3, 3, 3}, // PS_DASHDOTDOT
    {},                 // PS_NULL
    {},                 // PS_INSIDEFRAME
}};

const CPen& PenOf(const CPen* pen)
{
    static const CPen s_First;
    return pen ? *pen : s_First;
}

void AddDash(Stroke& stroke, double length)
{
    stroke.pattern[stroke.patternCount++] = length;
    stroke.period += length;
}

/// Whether round caps close a gap so far that less than half a pixel of it is left: for the radius r of the
/// caps, r - sqrt(r^2 - gap^2 / 4) < 1/2.
bool IsClosedByCaps(double gap, double width)
{
    return gap * gap < 2 * width - 1;
}

/// The lengths of a geometric pen on the device. An odd number of them is taken twice: on and off change
/// places. Without a gap that shows there is no pattern.
void AddPattern(Stroke& stroke, std::span<const int> pattern, double scale)
{
    constexpr double SHORTEST_PERIOD = 1;
    const int rounds = pattern.size() % 2 == 0 ? 1 : 2;
    bool hasGaps = false;
    for (int round = 0; round < rounds; ++round) {
        for (const int length : pattern) {
            const bool isGap = stroke.patternCount % 2 != 0;
            hasGaps = hasGaps || (isGap && !IsClosedByCaps(length * scale, stroke.width));
            AddDash(stroke, length * scale);
        }
    }
    if (!hasGaps || stroke.period < SHORTEST_PERIOD) stroke.patternCount = 0;
}

/// Points of an operation on the device. Throws std::bad_alloc.
class MappedPoints {
public:
    MappedPoints(const DeviceMapping& mapping, const CPoint* points, int count)
    {
        m_Points.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) m_Points.push_back(mapping.ToDevice(points[i]));
    }
    std::span<const CPoint> Span() const { return m_Points; }

private:
    std::array<std::byte, 1024> m_OnStack;
    std::pmr::monotonic_buffer_resource m_Memory{m_OnStack.data(), m_OnStack.size()};
    std::pmr::vector<CPoint> m_Points{&m_Memory};
};

/// The pixels between two mapped corners.
CRect PixelsBetween(CPoint a, CPoint b)
{
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

CPoint Moved(CPoint p, int dx, int dy)
{
    return {ToInt(std::int64_t{p.x} + dx), ToInt(std::int64_t{p.y} + dy)};
}
} // namespace

CDC::CDC() : m_System(std::make_unique<System>()) {}
CDC::~CDC() = default;

bool CDC::CreateCompatibleDC(CDC* /*other*/)
{
    m_Pen = nullptr;
    m_Brush = nullptr;
    m_Font = nullptr;
    m_Bitmap = nullptr;
    *m_System = System();
    return true;
}

CBitmap* CDC::SelectObject(CBitmap* bitmap)
{
    const CSize before = m_Bitmap ? CSize(m_Bitmap->Width(), m_Bitmap->Height()) : CSize();
    if (!bitmap || before != CSize(bitmap->Width(), bitmap->Height())) m_System->clip = nullptr;
    return std::exchange(m_Bitmap, bitmap);
}

int CDC::SetMapMode(int mode)
{
    const int before = m_System->mapping.Mode();
    return m_System->mapping.SetMode(mode) ? before : 0;
}

CPoint CDC::SetWindowOrg(int x, int y)
{
    const CPoint before = m_System->mapping.WindowOrg();
    m_System->mapping.SetWindowOrg({x, y});
    return before;
}

CPoint CDC::SetViewportOrg(int x, int y)
{
    const CPoint before = m_System->mapping.ViewportOrg();
    m_System->mapping.SetViewportOrg({x, y});
    return before;
}

CSize CDC::SetWindowExt(int cx, int cy)
{
    const CSize before = m_System->mapping.WindowExt();
    return m_System->mapping.SetWindowExt({cx, cy}) ? before : CSize();
}

CSize CDC::SetViewportExt(int cx, int cy)
{
    const CSize before = m_System->mapping.ViewportExt();
    return m_System->mapping.SetViewportExt({cx, cy}) ? before : CSize();
}

int CDC::GetMapMode() const
{
    return m_System->mapping.Mode();
}

CPoint CDC::GetWindowOrg() const
{
    return m_System->mapping.WindowOrg();
}

CPoint CDC::GetViewportOrg() const
{
    return m_System->mapping.ViewportOrg();
}

CSize CDC::GetWindowExt() const
{
    return m_System->mapping.WindowExt();
}

CSize CDC::GetViewportExt() const
{
    return m_System->mapping.ViewportExt();
}

void CDC::DPtoLP(CPoint* points, int count) const
{
    for (int i = 0; i < count; ++i) points[i] = m_System->mapping.ToLogical(points[i]);
}

void CDC::LPtoDP(CPoint* points, int count) const
{
    for (int i = 0; i < count; ++i) points[i] = m_System->mapping.ToDevice(points[i]);
}

int CDC::SetBkMode(int mode)
{
    return std::exchange(m_System->bkMode, mode);
}

unsigned long CDC::SetBkColor(unsigned long color)
{
    return std::exchange(m_System->bkColor, color & COLOR_BITS);
}

unsigned long CDC::SetTextColor(unsigned long color)
{
    return std::exchange(m_System->textColor, color & COLOR_BITS);
}

unsigned CDC::SetTextAlign(unsigned align)
{
    return std::exchange(m_System->textAlign, align);
}

int CDC::SetPolyFillMode(int mode)
{
    return std::exchange(m_System->polyFillMode, mode);
}

int CDC::GetBkMode() const
{
    return m_System->bkMode;
}

unsigned long CDC::GetBkColor() const
{
    return m_System->bkColor;
}

unsigned long CDC::GetTextColor() const
{
    return m_System->textColor;
}

unsigned CDC::GetTextAlign() const
{
    return m_System->textAlign;
}

int CDC::GetPolyFillMode() const
{
    return m_System->polyFillMode;
}

CPoint CDC::GetCurrentPosition() const
{
    return m_System->position;
}

Canvas CDC::System::MakeCanvas(CBitmap* bitmap) const
{
    Canvas canvas;
    if (!bitmap || !bitmap->IsCreated()) return canvas;
    canvas.pixels = bitmap->Pixels();
    canvas.stride = bitmap->Width();
    canvas.clip = CRect(0, 0, bitmap->Width(), bitmap->Height());
    if (!clip) return canvas;
    canvas.clip.IntersectRect(canvas.clip, clip->Bounds());
    canvas.region = clip->IsRectangle() ? nullptr : clip.get();
    return canvas;
}

bool CDC::SetClipPolygon(const CPoint* points, int count)
{
    m_System->clip = nullptr;
    const CRect within = m_System->MakeCanvas(m_Bitmap).clip;
    try {
        const MappedPoints mapped(m_System->mapping, points, std::max(count, 0));
        const std::span<const CPoint> corners = count < 3 ? std::span<const CPoint>() : mapped.Span();
        m_System->clip = std::make_shared<const ClipRegion>(corners, ALTERNATE, within);
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

void CDC::ResetClip()
{
    m_System->clip = nullptr;
}

bool CDC::System::DrawsThinSolid(const CPen* pen) const
{
    if (!pen) return true;
    if (pen->IsGeometric() || (pen->Style() != PS_SOLID && pen->Style() != PS_INSIDEFRAME)) return false;
    return WidthOf(*pen) <= 1;
}

int CDC::System::WidthOf(const CPen& pen) const
{
    if (!pen.IsCreated() || pen.Width() == 0) return 1;
    const std::int64_t pixels = std::int64_t{mapping.MapX(pen.Width())} - mapping.MapX(0);
    return std::max(1, ToInt(pixels < 0 ? -pixels : pixels));
}

Stroke CDC::System::MakeStroke(const CPen* pen) const
{
    const CPen& drawn = PenOf(pen);
    Stroke stroke;
    stroke.pixel = PixelOf(drawn.Color());
    stroke.width = drawn.Style() == PS_NULL ? 0 : WidthOf(drawn);
    stroke.isThin = !drawn.IsGeometric() && stroke.width <= 1;
    if (drawn.IsGeometric()) AddPattern(stroke, drawn.Pattern(), mapping.ScaleX());
    if (!stroke.isThin) return stroke;
    for (const int length : DASHES[static_cast<std::size_t>(drawn.Style())])
        if (length > 0) AddDash(stroke, length);
    stroke.hasPaintedGaps = bkMode == OPAQUE;
    stroke.gapPixel = PixelOf(bkColor);
    return stroke;
}

CPoint CDC::MoveTo(int x, int y)
{
    return std::exchange(m_System->position, CPoint(x, y));
}

bool CDC::LineTo(int x, int y)
{
    const CPoint from = m_System->mapping.ToDevice(std::exchange(m_System->position, CPoint(x, y)));
    const CPoint to = m_System->mapping.ToDevice({x, y});
    const Canvas canvas = m_System->MakeCanvas(m_Bitmap);
    if (m_System->DrawsThinSolid(m_Pen)) {
        DrawSolidLine(canvas, from, to, PixelOf(m_Pen ? m_Pen->Color() : 0));
        return true;
    }
    const Stroke stroke = m_System->MakeStroke(m_Pen);
    StrokePath(canvas, stroke, from).LineTo(to);
    return true;
}

bool CDC::Polyline(const CPoint* points, int count)
{
    if (count < 2) return false;
    const Canvas canvas = m_System->MakeCanvas(m_Bitmap);
    CPoint from = m_System->mapping.ToDevice(points[0]);
    if (m_System->DrawsThinSolid(m_Pen)) {
        const std::uint32_t pixel = PixelOf(PenOf(m_Pen).Color());
        for (int i = 1; i < count; ++i) {
            const CPoint to = m_System->mapping.ToDevice(points[i]);
            DrawSolidLine(canvas, from, to, pixel);
            from = to;
        }
        return true;
    }
    const Stroke stroke = m_System->MakeStroke(m_Pen);
    StrokePath path(canvas, stroke, from);
    for (int i = 1; i < count; ++i) path.LineTo(m_System->mapping.ToDevice(points[i]));
    return true;
}

bool CDC::Polygon(const CPoint* points, int count)
{
    if (count < 2) return false;
    const Canvas canvas = m_System->MakeCanvas(m_Bitmap);
    if (canvas.clip.IsRectEmpty()) return true;
    try {
        const MappedPoints mapped(m_System->mapping, points, count);
        const std::uint32_t fill = PixelOf(m_Brush ? m_Brush->Color() : COLOR_BITS);
        ScanPolygon(mapped.Span(), m_System->polyFillMode, canvas.clip,
                    [&](int y, int left, int right) { canvas.FillSpan(y, left, right, fill); });
        const Stroke stroke = m_System->MakeStroke(m_Pen);
        StrokePath outline(canvas, stroke, mapped.Span().front());
        for (const CPoint& p : mapped.Span().subspan(1)) outline.LineTo(p);
        outline.LineTo(mapped.Span().front());
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

unsigned long CDC::SetPixel(int x, int y, unsigned long color)
{
    const Canvas canvas = m_System->MakeCanvas(m_Bitmap);
    const CPoint p = m_System->mapping.ToDevice({x, y});
    if (!canvas.Holds(p)) return CLR_INVALID;
    *canvas.At(p.x, p.y) = PixelOf(color);
    return color & COLOR_BITS;
}

unsigned long CDC::GetPixel(int x, int y) const
{
    const Canvas canvas = m_System->MakeCanvas(m_Bitmap);
    const CPoint p = m_System->mapping.ToDevice({x, y});
    return canvas.Holds(p) ? ColorOf(*canvas.At(p.x, p.y) & 0xFFFFFF) : CLR_INVALID;
}

void CDC::FillSolidRect(const CRect& rect, unsigned long color)
{
    CDC::SetBkColor(color);
    const Canvas canvas = m_System->MakeCanvas(m_Bitmap);
    CRect pixels = PixelsBetween(m_System->mapping.ToDevice(rect.TopLeft()),
                                 m_System->mapping.ToDevice(rect.BottomRight()));
    if (!pixels.IntersectRect(pixels, canvas.clip)) return;
    for (int y = pixels.top; y < pixels.bottom; ++y)
        canvas.FillSpan(y, pixels.left, pixels.right, PixelOf(color));
}

bool CDC::BitBlt(int x, int y, int width, int height, CDC* source, int sourceX, int sourceY,
                 unsigned long operation)
{
    if (operation != SRCCOPY || !source) return false;
    const Canvas from = source->m_System->MakeCanvas(source->m_Bitmap);
    if (!from.pixels) return false;
    const CPoint start(x, y);
    const CPoint sourceStart(sourceX, sourceY);
    const CRect target = PixelsBetween(m_System->mapping.ToDevice(start),
                                       m_System->mapping.ToDevice(Moved(start, width, height)));
    const CRect origin = PixelsBetween(source->m_System->mapping.ToDevice(sourceStart),
                                       source->m_System->mapping.ToDevice(Moved(sourceStart, width, height)));
    const auto widthOf = [](const CRect& r) {
        return std::int64_t{r.right} - r.left;
    };
    const auto heightOf = [](const CRect& r) {
        return std::int64_t{r.bottom} - r.top;
    };
    if (widthOf(target) != widthOf(origin) || heightOf(target) != heightOf(origin)) return false;

    // The source's clip is no matter of a copy; its bitmap is.
    const CRect all(0, 0, source->m_Bitmap->Width(), source->m_Bitmap->Height());
    const std::int64_t dx = std::int64_t{origin.left} - target.left;
    const std::int64_t dy = std::int64_t{origin.top} - target.top;
    const CRect shown(ToInt(all.left - dx), ToInt(all.top - dy), ToInt(all.right - dx),
                      ToInt(all.bottom - dy));
    const Canvas canvas = m_System->MakeCanvas(m_Bitmap);
    CRect pixels;
    if (!pixels.IntersectRect(target, shown) || !pixels.IntersectRect(pixels, canvas.clip)) return true;
    // Within one bitmap, rows are copied so that none is overwritten before it is read.
    const bool goesUp = dy < 0;
    for (int i = 0; i < pixels.Height(); ++i) {
        const int row = goesUp ? pixels.bottom - 1 - i : pixels.top + i;
        const std::uint32_t* sourceRow = from.At(0, static_cast<int>(row + dy)) + dx;
        canvas.ForSpan(row, pixels.left, pixels.right, [&](int left, int right) {
            std::memmove(canvas.At(left, row), sourceRow + left,
                         sizeof(std::uint32_t) * std::size_t(right - left));
        });
    }
    return true;
}
