#include "platform/win32/GdiDrawing.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <vector>

#include "platform/CRect.h"
#include "platform/GdiConstants.h"
#include "platform/picture/PicturePlacement.h"
#include "platform/raster/ClipRegion.h"
#include "platform/raster/Wide.h"

namespace {
constexpr int NO_REGION = 0; // what GDI calls ERROR

/// A region of GDI that is deleted here.
class Region {
public:
    explicit Region(HRGN region) : m_Region(region) {}
    ~Region()
    {
        if (m_Region) ::DeleteObject(m_Region);
    }
    Region(const Region&) = delete;
    Region& operator=(const Region&) = delete;
    HRGN Get() const { return m_Region; }

private:
    HRGN m_Region;
};

/// GDI makes a region row by row, whether the rows can be seen or not.
bool IsFar(const CPoint& p)
{
    constexpr int FAR_AWAY = 1 << 15;
    return p.x < -FAR_AWAY || p.x > FAR_AWAY || p.y < -FAR_AWAY || p.y > FAR_AWAY;
}

/// The part of a region that lies within a rectangle, by the same rule.
HRGN VisibleRegion(const std::vector<CPoint>& corners, int fillMode, const CRect& within)
{
    const ClipRegion spans(corners, fillMode, within);
    std::vector<RECT> rects;
    for (int y = spans.Bounds().top; y < spans.Bounds().bottom; ++y)
        for (const ClipRegion::Span& span : spans.Row(y)) rects.push_back({span.left, y, span.right, y + 1});
    const std::size_t size = rects.size() * sizeof(RECT);
    std::vector<std::uint64_t> room((sizeof(RGNDATAHEADER) + size) / sizeof(std::uint64_t) + 1);
    auto* region = reinterpret_cast<RGNDATA*>(room.data());
    const CRect& bounds = spans.Bounds();
    region->rdh = {sizeof(RGNDATAHEADER),
                   RDH_RECTANGLES,
                   static_cast<DWORD>(rects.size()),
                   static_cast<DWORD>(size),
                   {bounds.left, bounds.top, bounds.right, bounds.bottom}};
    std::copy(rects.begin(), rects.end(), reinterpret_cast<RECT*>(region->Buffer));
    return ::ExtCreateRegion(nullptr, static_cast<DWORD>(sizeof(RGNDATAHEADER) + size), region);
}

/// What of a context can be drawn on, in device pixels; the context is in these.
CRect VisiblePixels(HDC hdc)
{
    RECT box = {};
    const int kind = ::GetClipBox(hdc, &box);
    if (kind == NO_REGION || kind == NULLREGION) return {};
    return {static_cast<int>(box.left), static_cast<int>(box.top), static_cast<int>(box.right),
            static_cast<int>(box.bottom)};
}

/// The box of the pixels that a parallelogram can reach.
CRect BoxOf(const CPoint& upperLeft, const CPoint& upperRight, const CPoint& lowerLeft)
{
    const auto opposite = [](int corner, int a, int b) {
        return ToInt(std::int64_t{a} + b - corner);
    };
    const auto [left, right] = std::minmax<int>(
        {upperLeft.x, upperRight.x, lowerLeft.x, opposite(upperLeft.x, upperRight.x, lowerLeft.x)});
    const auto [top, bottom] = std::minmax<int>(
        {upperLeft.y, upperRight.y, lowerLeft.y, opposite(upperLeft.y, upperRight.y, lowerLeft.y)});
    return {left, top, ToInt(std::int64_t{right} + 1), ToInt(std::int64_t{bottom} + 1)};
}

/// Pixels in memory, and a context that draws on them.
class Piece {
public:
    Piece(int width, int height)
        : m_Bitmap(GdiDrawing::MakeBitmap(width, height, m_Pixels)), m_Context(::CreateCompatibleDC(nullptr))
    {
        if (IsOpen()) m_Before = ::SelectObject(m_Context, m_Bitmap);
    }
    ~Piece()
    {
        if (m_Before) ::SelectObject(m_Context, m_Before);
        if (m_Context) ::DeleteDC(m_Context);
        if (m_Bitmap) ::DeleteObject(m_Bitmap);
    }
    Piece(const Piece&) = delete;
    Piece& operator=(const Piece&) = delete;

    bool IsOpen() const { return m_Bitmap && m_Context; }
    HDC Context() const { return m_Context; }
    std::uint32_t* Pixels() const
    {
        ::GdiFlush();
        return m_Pixels;
    }

private:
    std::uint32_t* m_Pixels = nullptr;
    HBITMAP m_Bitmap;
    HDC m_Context;
    HGDIOBJ m_Before = nullptr;
};
} // namespace

GdiPixelUnits::GdiPixelUnits(HDC hdc) : m_Context(hdc), m_Saved(::SaveDC(hdc))
{
    ::ModifyWorldTransform(hdc, nullptr, MWT_IDENTITY);
    ::SetMapMode(hdc, MM_TEXT);
    ::SetWindowOrgEx(hdc, 0, 0, nullptr);
    ::SetViewportOrgEx(hdc, 0, 0, nullptr);
}

GdiPixelUnits::~GdiPixelUnits()
{
    ::RestoreDC(m_Context, m_Saved);
}

HPEN GdiDrawing::GeometricPen(int style, int width, unsigned long color, const int* pattern, int count)
{
    const std::vector<DWORD> lengths(pattern, pattern + count);
    const LOGBRUSH brush = {BS_SOLID, color, 0};
    const auto line = static_cast<DWORD>(style & PS_STYLE_MASK);
    return ::ExtCreatePen(PS_GEOMETRIC | PS_ENDCAP_ROUND | PS_JOIN_ROUND | line, static_cast<DWORD>(width),
                          &brush, static_cast<DWORD>(count), count > 0 ? lengths.data() : nullptr);
}

HBITMAP GdiDrawing::MakeBitmap(int width, int height, std::uint32_t*& pixels)
{
    BITMAPINFO format = {};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = width;
    format.bmiHeader.biHeight = -height; // rows from top to bottom
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 32;
    format.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    const HBITMAP bitmap = ::CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &bits, nullptr, 0);
    pixels = static_cast<std::uint32_t*>(bits);
    return bitmap;
}

bool GdiDrawing::FillVisible(HDC hdc, const std::vector<CPoint>& points)
{
    std::vector<CPoint> corners = points;
    ::LPtoDP(hdc, PointsOf(corners.data()), static_cast<int>(corners.size()));
    const auto brush = static_cast<HBRUSH>(::GetCurrentObject(hdc, OBJ_BRUSH));
    const GdiPixelUnits units(hdc);
    const Region region(VisibleRegion(corners, ::GetPolyFillMode(hdc), VisiblePixels(hdc)));
    return region.Get() && ::FillRgn(hdc, region.Get(), brush);
}

bool GdiDrawing::SetClipPolygon(HDC hdc, const CPoint* points, int count)
{
    ::SelectClipRgn(hdc, nullptr);
    try {
        std::vector<CPoint> corners(points, points + (count < 3 ? 0 : count));
        ::LPtoDP(hdc, PointsOf(corners.data()), static_cast<int>(corners.size()));
        CRect within;
        {
            const GdiPixelUnits units(hdc);
            within = VisiblePixels(hdc);
        }
        const bool isFar = std::any_of(corners.begin(), corners.end(), IsFar);
        const Region region(corners.empty() ? ::CreateRectRgn(0, 0, 0, 0)
                            : isFar         ? VisibleRegion(corners, ALTERNATE, within)
                                            : ::CreatePolygonRgn(PointsOf(corners.data()), count, ALTERNATE));
        return region.Get() && ::SelectClipRgn(hdc, region.Get()) != NO_REGION;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool GdiDrawing::DrawPicture(HDC hdc, const Picture& picture, const CPoint& upperLeft,
                             const CPoint& upperRight, const CPoint& lowerLeft, bool hasTransparency)
{
    if (!PicturePlacement::IsWhole(picture)) return false;
    CPoint corners[] = {upperLeft, upperRight, lowerLeft};
    ::LPtoDP(hdc, PointsOf(corners), 3);
    const PicturePlacement placement(picture, corners[0], corners[1], corners[2]);
    if (placement.IsFlat()) return false;

    const GdiPixelUnits units(hdc);
    const CRect seen = VisiblePixels(hdc);
    const CRect reached = BoxOf(corners[0], corners[1], corners[2]);
    CRect box;
    if (!box.IntersectRect(seen, reached)) return true;
    const int width = box.Width();
    const int height = box.Height();
    // What lies below is fetched, drawn over, and put back through the clip region.
    const Piece piece(width, height);
    if (!piece.IsOpen()) return false;
    if (!::BitBlt(piece.Context(), 0, 0, width, height, hdc, box.left, box.top, SRCCOPY)) return false;
    std::uint32_t* row = piece.Pixels();
    for (int y = box.top; y < box.bottom; ++y, row += width) {
        int left = box.left;
        int right = box.right;
        placement.CutRow(y, left, right);
        placement.DrawSpan(row + (left - box.left), y, left, right, hasTransparency);
    }
    return ::BitBlt(hdc, box.left, box.top, width, height, piece.Context(), 0, 0, SRCCOPY) != FALSE;
}
