#pragma once

#include <cstdint>
#include <vector>

#include "platform/CPoint.h"
#include "platform/Picture.h"
#include "platform/win32/WindowsApi.h"

/// Points as GDI takes them: the same two words of 32 bits by other names.
static_assert(sizeof(POINT) == sizeof(CPoint) && sizeof(LONG) == sizeof(int));
inline const POINT* PointsOf(const CPoint* points)
{
    return reinterpret_cast<const POINT*>(points);
}
inline POINT* PointsOf(CPoint* points)
{
    return reinterpret_cast<POINT*>(points);
}

/// Puts a context into device pixels, without a map, for its own lifetime.
class GdiPixelUnits {
public:
    explicit GdiPixelUnits(HDC hdc);
    ~GdiPixelUnits();
    GdiPixelUnits(const GdiPixelUnits&) = delete;
    GdiPixelUnits& operator=(const GdiPixelUnits&) = delete;

private:
    HDC m_Context;
    int m_Saved;
};

/// What GDI has no single function for, on any context of its.
struct GdiDrawing {
    /// The pen of CPen::CreateGeometricPen; null when it cannot be made. Lengths are not negative.
    static HPEN GeometricPen(int style, int width, unsigned long color, const int* pattern, int count);
    /// A 32-bit bitmap of zeros, rows from top to bottom; null when there is not the memory.
    static HBITMAP MakeBitmap(int width, int height, std::uint32_t*& pixels);
    /// Fills a polygon with the brush and by the rule that are set, whatever its size. Throws std::bad_alloc.
    static bool FillVisible(HDC hdc, const std::vector<CPoint>& points);
    /// As the functions of CDC.
    static bool SetClipPolygon(HDC hdc, const CPoint* points, int count);
    static bool DrawPicture(HDC hdc, const Picture& picture, const CPoint& upperLeft,
                            const CPoint& upperRight, const CPoint& lowerLeft, bool hasTransparency);
};
