// Clip regions, copies and pictures.
#include <algorithm>
#include <cstdint>
#include <new>
#include <vector>

#include "platform/CDC.h"
#include "platform/picture/PicturePlacement.h"
#include "platform/raster/ClipRegion.h"
#include "platform/raster/Wide.h"
#include "platform/win32/GdiContext.h"

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
HRGN VisibleRegion(const std::vector<CPoint>& corners, const CRect& within)
{
    const ClipRegion spans(corners, ALTERNATE, within);
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

/// The pixels between two mapped corners.
CRect PixelsBetween(HDC hdc, const CPoint& from, int width, int height)
{
    CPoint corners[] = {from, {ToInt(std::int64_t{from.x} + width), ToInt(std::int64_t{from.y} + height)}};
    ::LPtoDP(hdc, PointsOf(corners), 2);
    const auto [left, right] = std::minmax(corners[0].x, corners[1].x);
    const auto [top, bottom] = std::minmax(corners[0].y, corners[1].y);
    return {left, top, right, bottom};
}

bool HaveOneSize(const CRect& a, const CRect& b)
{
    return std::int64_t{a.right} - a.left == std::int64_t{b.right} - b.left
           && std::int64_t{a.bottom} - a.top == std::int64_t{b.bottom} - b.top;
}

/// The box of the pixels that a parallelogram can reach.
CRect BoxOf(const CPoint& upperLeft, const CPoint& upperRight, const CPoint& lowerLeft)
{
    const auto opposite = [](int corner, int a, int b) {
        return ToInt(std::int64_t{a} + b - corner);
    };
    const auto [left, right] = std::minmax(
        {upperLeft.x, upperRight.x, lowerLeft.x, opposite(upperLeft.x, upperRight.x, lowerLeft.x)});
    const auto [top, bottom] = std::minmax(
        {upperLeft.y, upperRight.y, lowerLeft.y, opposite(upperLeft.y, upperRight.y, lowerLeft.y)});
    return {left, top, ToInt(std::int64_t{right} + 1), ToInt(std::int64_t{bottom} + 1)};
}
} // namespace

bool CDC::SetClipPolygon(const CPoint* points, int count)
{
    const HDC hdc = System::Drawable(*this);
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
                            : isFar         ? VisibleRegion(corners, within)
                                            : ::CreatePolygonRgn(PointsOf(corners.data()), count, ALTERNATE));
        return region.Get() && ::SelectClipRgn(hdc, region.Get()) != NO_REGION;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool CDC::BitBlt(int x, int y, int width, int height, CDC* source, int sourceX, int sourceY,
                 unsigned long operation)
{
    if (operation != SRCCOPY || !source) return false;
    const HDC from = System::Drawable(*source);
    const HDC hdc = System::Drawable(*this);
    if (!source->m_System->HasSurface()) return false;
    if (!HaveOneSize(PixelsBetween(hdc, {x, y}, width, height),
                     PixelsBetween(from, {sourceX, sourceY}, width, height)))
        return false;
    return ::BitBlt(hdc, x, y, width, height, from, sourceX, sourceY, operation) != FALSE;
}

bool CDC::DrawPicture(const Picture& picture, const CPoint& upperLeft, const CPoint& upperRight,
                      const CPoint& lowerLeft, bool hasTransparency)
{
    if (!PicturePlacement::IsWhole(picture)) return false;
    const HDC hdc = System::Drawable(*this);
    CPoint corners[] = {upperLeft, upperRight, lowerLeft};
    ::LPtoDP(hdc, PointsOf(corners), 3);
    const PicturePlacement placement(picture, corners[0], corners[1], corners[2]);
    if (placement.IsFlat()) return false;

    const GdiPixelUnits units(hdc);
    CRect box;
    if (!box.IntersectRect(VisiblePixels(hdc), BoxOf(corners[0], corners[1], corners[2]))) return true;
    // What lies below is fetched, drawn over, and put back through the clip region.
    CBitmap piece;
    if (!piece.CreateBitmap(box.Width(), box.Height())) return false;
    CDC memory;
    memory.SelectObject(&piece);
    const HDC below = System::Drawable(memory);
    if (!::BitBlt(below, 0, 0, box.Width(), box.Height(), hdc, box.left, box.top, SRCCOPY)) return false;
    std::uint32_t* const pixels = piece.Pixels();
    for (int y = box.top; y < box.bottom; ++y) {
        int left = box.left;
        int right = box.right;
        placement.CutRow(y, left, right);
        std::uint32_t* const row = pixels + static_cast<std::ptrdiff_t>(y - box.top) * box.Width();
        placement.DrawSpan(row + (left - box.left), y, left, right, hasTransparency);
    }
    return ::BitBlt(hdc, box.left, box.top, box.Width(), box.Height(), below, 0, 0, SRCCOPY) != FALSE;
}
