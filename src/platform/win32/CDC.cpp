#include "platform/CDC.h"

#include <algorithm>
#include <utility>

#include "platform/win32/GdiContext.h"

namespace {
constexpr unsigned long COLOR_BITS = 0xFFFFFF;

CPoint PointOf(const POINT& p)
{
    return {static_cast<int>(p.x), static_cast<int>(p.y)};
}

CSize SizeOf(const SIZE& size)
{
    return {static_cast<int>(size.cx), static_cast<int>(size.cy)};
}

/// What a function that asks a context for a point or a size gives; zeros when it fails.
template <class Value>
Value Ask(BOOL(WINAPI* ask)(HDC, Value*), HDC hdc)
{
    Value value = {};
    return ask(hdc, &value) ? value : Value{};
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

bool CDC::DeleteDC()
{
    return CDC::CreateCompatibleDC(nullptr);
}

CPen* CDC::SelectObject(CPen* pen)
{
    return std::exchange(m_Pen, pen);
}

CBrush* CDC::SelectObject(CBrush* brush)
{
    return std::exchange(m_Brush, brush);
}

CFont* CDC::SelectObject(CFont* font)
{
    return std::exchange(m_Font, font);
}

CBitmap* CDC::SelectObject(CBitmap* bitmap)
{
    const CSize before = m_Bitmap ? CSize(m_Bitmap->Width(), m_Bitmap->Height()) : CSize();
    if (!bitmap || before != CSize(bitmap->Width(), bitmap->Height())) CDC::ResetClip();
    return std::exchange(m_Bitmap, bitmap);
}

int CDC::SetMapMode(int mode)
{
    return ::SetMapMode(System::Of(*this).hdc, mode);
}

CPoint CDC::SetWindowOrg(int x, int y)
{
    POINT before = {};
    ::SetWindowOrgEx(System::Of(*this).hdc, x, y, &before);
    return PointOf(before);
}

CPoint CDC::SetViewportOrg(int x, int y)
{
    POINT before = {};
    ::SetViewportOrgEx(System::Of(*this).hdc, x, y, &before);
    return PointOf(before);
}

CSize CDC::SetWindowExt(int cx, int cy)
{
    SIZE before = {};
    return ::SetWindowExtEx(System::Of(*this).hdc, cx, cy, &before) ? SizeOf(before) : CSize();
}

CSize CDC::SetViewportExt(int cx, int cy)
{
    SIZE before = {};
    return ::SetViewportExtEx(System::Of(*this).hdc, cx, cy, &before) ? SizeOf(before) : CSize();
}

int CDC::GetMapMode() const
{
    return ::GetMapMode(System::Of(*this).hdc);
}

CPoint CDC::GetWindowOrg() const
{
    return PointOf(Ask(::GetWindowOrgEx, System::Of(*this).hdc));
}

CPoint CDC::GetViewportOrg() const
{
    return PointOf(Ask(::GetViewportOrgEx, System::Of(*this).hdc));
}

CSize CDC::GetWindowExt() const
{
    return SizeOf(Ask(::GetWindowExtEx, System::Of(*this).hdc));
}

CSize CDC::GetViewportExt() const
{
    return SizeOf(Ask(::GetViewportExtEx, System::Of(*this).hdc));
}

void CDC::DPtoLP(CPoint* points, int count) const
{
    if (count > 0) ::DPtoLP(System::Of(*this).hdc, PointsOf(points), count);
}

void CDC::LPtoDP(CPoint* points, int count) const
{
    if (count > 0) ::LPtoDP(System::Of(*this).hdc, PointsOf(points), count);
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
    return PointOf(Ask(::GetCurrentPositionEx, System::Of(*this).hdc));
}

void CDC::ResetClip()
{
    if (m_System) ::SelectClipRgn(m_System->hdc, nullptr);
}

CPoint CDC::MoveTo(int x, int y)
{
    POINT before = {};
    ::MoveToEx(System::Of(*this).hdc, x, y, &before);
    return PointOf(before);
}

bool CDC::LineTo(int x, int y)
{
    return ::LineTo(System::Drawable(*this), x, y) != FALSE;
}

bool CDC::Polyline(const CPoint* points, int count)
{
    return count >= 2 && ::Polyline(System::Drawable(*this), PointsOf(points), count) != FALSE;
}

bool CDC::Polygon(const CPoint* points, int count)
{
    return count >= 2 && ::Polygon(System::Drawable(*this), PointsOf(points), count) != FALSE;
}

unsigned long CDC::SetPixel(int x, int y, unsigned long color)
{
    const HDC hdc = System::Drawable(*this);
    return m_System->HasSurface() ? ::SetPixel(hdc, x, y, color & COLOR_BITS) : CLR_INVALID;
}

unsigned long CDC::GetPixel(int x, int y) const
{
    const HDC hdc = System::Drawable(*this);
    return m_System->HasSurface() ? ::GetPixel(hdc, x, y) : CLR_INVALID;
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
    return SizeOf(size);
}

bool CDC::TextOutW(int x, int y, const wchar_t* text, int length)
{
    const bool isEmpty = !text || length < 0;
    return ::TextOutW(System::Drawable(*this), x, y, isEmpty ? L"" : text, isEmpty ? 0 : length) != FALSE;
}
