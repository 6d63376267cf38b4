#include "platform/CDC.h"

#include <algorithm>
#include <new>
#include <span>
#include <utility>

#include "platform/raster/Wide.h"
#include "platform/win32/GdiContext.h"
#include "platform/win32/GdiFar.h"

namespace {
constexpr unsigned long COLOR_BITS = 0xFFFFFF;

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
} // namespace

CDC::CDC() = default;
CDC::~CDC() = default;

bool CDC::Attach(void* hdc)
{
    if (!hdc) return false;
    CDC::CreateCompatibleDC(nullptr);
    m_System = std::make_unique<System>(static_cast<HDC>(hdc));
    return true;
}

void* CDC::Detach()
{
    void* const attached = m_System && m_System->isAttached ? m_System->hdc : nullptr;
    CDC::CreateCompatibleDC(nullptr);
    return attached;
}

void* CDC::GetSafeHdc() const
{
    return System::Drawable(*this);
}

bool CDC::CreateCompatibleDC(CDC* /*other*/)
{
    m_Pen = nullptr;
    m_Brush = nullptr;
    m_Font = nullptr;
    m_Bitmap = nullptr;
    m_System = nullptr;
    return true;
}

CBitmap* CDC::SelectObject(CBitmap* bitmap)
{
    const CSize before = m_Bitmap ? CSize(m_Bitmap->Width(), m_Bitmap->Height()) : CSize();
    if (!bitmap || before != CSize(bitmap->Width(), bitmap->Height())) CDC::ResetClip();
    return std::exchange(m_Bitmap, bitmap);
}

int CDC::SetBkMode(int mode)
{
    return ::SetBkMode(System::Of(*this).hdc, mode);
}

unsigned long CDC::SetBkColor(unsigned long color)
{
    return ::SetBkColor(System::Of(*this).hdc, color & COLOR_BITS);
}

unsigned long CDC::SetTextColor(unsigned long color)
{
    return ::SetTextColor(System::Of(*this).hdc, color & COLOR_BITS);
}

unsigned CDC::SetTextAlign(unsigned align)
{
    return ::SetTextAlign(System::Of(*this).hdc, align);
}

int CDC::SetPolyFillMode(int mode)
{
    return ::SetPolyFillMode(System::Of(*this).hdc, mode);
}

int CDC::GetBkMode() const
{
    return ::GetBkMode(System::Of(*this).hdc);
}

unsigned long CDC::GetBkColor() const
{
    return ::GetBkColor(System::Of(*this).hdc);
}

unsigned long CDC::GetTextColor() const
{
    return ::GetTextColor(System::Of(*this).hdc);
}

unsigned CDC::GetTextAlign() const
{
    return ::GetTextAlign(System::Of(*this).hdc);
}

int CDC::GetPolyFillMode() const
{
    return ::GetPolyFillMode(System::Of(*this).hdc);
}

CPoint CDC::GetCurrentPosition() const
{
    return GdiValue::PointOf(GdiValue::Ask(::GetCurrentPositionEx, System::Of(*this).hdc));
}

void CDC::ResetClip()
{
    if (m_System) ::SelectClipRgn(m_System->hdc, nullptr);
}

CPoint CDC::MoveTo(int x, int y)
{
    System& system = System::Of(*this);
    const CPoint position(x, y);
    POINT before = {};
    ::MoveToEx(system.hdc, x, y, &before);
    system.isPositionFar = GdiFar::Reach({&position, 1});
    return GdiValue::PointOf(before);
}

bool CDC::LineTo(int x, int y)
{
    const HDC hdc = System::Drawable(*this);
    const CPoint to(x, y);
    const bool isEndFar = GdiFar::Reach({&to, 1});
    if (!std::exchange(m_System->isPositionFar, isEndFar) && !isEndFar) return ::LineTo(hdc, x, y) != FALSE;
    const CPoint ends[] = {GetCurrentPosition(), to};
    if (!GdiFar::HasToCut(ends, m_Pen)) return ::LineTo(hdc, x, y) != FALSE;
    GdiFar::LineTo(hdc, ends[0], to, m_Pen);
    return true;
}

bool CDC::Polyline(const CPoint* points, int count)
{
    if (count < 2) return false;
    const HDC hdc = System::Drawable(*this);
    const std::span<const CPoint> path(points, static_cast<std::size_t>(count));
    if (!GdiFar::HasToCut(path, m_Pen)) return ::Polyline(hdc, PointsOf(points), count) != FALSE;
    GdiFar::Polyline(hdc, path, m_Pen);
    return true;
}

bool CDC::Polygon(const CPoint* points, int count)
{
    if (count < 2) return false;
    const HDC hdc = System::Drawable(*this);
    const std::span<const CPoint> ring(points, static_cast<std::size_t>(count));
    if (!GdiFar::Reach(ring)) return ::Polygon(hdc, PointsOf(points), count) != FALSE;
    try {
        return GdiFar::Polygon(hdc, ring, m_Pen);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

unsigned long CDC::SetPixel(int x, int y, unsigned long color)
{
    const HDC hdc = System::Drawable(*this);
    const bool isSeen = m_System->HasSurface() && ::PtVisible(hdc, x, y);
    return isSeen ? ::SetPixel(hdc, x, y, color & COLOR_BITS) : CLR_INVALID;
}

unsigned long CDC::GetPixel(int x, int y) const
{
    const HDC hdc = System::Drawable(*this);
    const bool isSeen = m_System->HasSurface() && ::PtVisible(hdc, x, y);
    return isSeen ? ::GetPixel(hdc, x, y) : CLR_INVALID;
}

void CDC::FillSolidRect(const CRect& rect, unsigned long color)
{
    const HDC hdc = System::Drawable(*this);
    const RECT area = {rect.left, rect.top, rect.right, rect.bottom};
    ::SetBkColor(hdc, color & COLOR_BITS);
    ::ExtTextOutW(hdc, 0, 0, ETO_OPAQUE, &area, nullptr, 0, nullptr);
}

CSize CDC::GetTextExtent(const wchar_t* text, int length) const
{
    const HDC hdc = System::Drawable(*this);
    const bool isEmpty = !text || length < 0;
    SIZE size = {};
    ::GetTextExtentPoint32W(hdc, isEmpty ? L"" : text, isEmpty ? 0 : length, &size);
    return GdiValue::SizeOf(size);
}

bool CDC::TextOutW(int x, int y, const wchar_t* text, int length)
{
    const bool isEmpty = !text || length < 0;
    return ::TextOutW(System::Drawable(*this), x, y, isEmpty ? L"" : text, isEmpty ? 0 : length) != FALSE;
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

bool CDC::SetClipPolygon(const CPoint* points, int count)
{
    return GdiDrawing::SetClipPolygon(System::Drawable(*this), points, count);
}

bool CDC::DrawPicture(const Picture& picture, const CPoint& upperLeft, const CPoint& upperRight,
                      const CPoint& lowerLeft, bool hasTransparency)
{
    return GdiDrawing::DrawPicture(System::Drawable(*this), picture, upperLeft, upperRight, lowerLeft,
                                   hasTransparency);
}
