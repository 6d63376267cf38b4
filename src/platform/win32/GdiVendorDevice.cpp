// What drawing needs beyond the vendor's device classes, over their handles.
#include "platform/DeviceOperations.h"

#ifdef HALYARD_VENDOR_CLASSES

#include "platform/win32/GdiDrawing.h"

bool DeviceOperations::CreateGeometricPen(CPen& pen, int style, int width, unsigned long color,
                                          const int* pattern, int count)
{
    pen.DeleteObject();
    const HPEN made = GdiDrawing::GeometricPen(style, width, color, pattern, count);
    return made && pen.Attach(made);
}

bool DeviceOperations::SetClipPolygon(CDC& dc, const CPoint* points, int count)
{
    return GdiDrawing::SetClipPolygon(dc.GetSafeHdc(), points, count);
}

void DeviceOperations::ResetClip(CDC& dc)
{
    ::SelectClipRgn(dc.GetSafeHdc(), nullptr);
}

bool DeviceOperations::DrawPicture(CDC& dc, const Picture& picture, const CPoint& upperLeft,
                                   const CPoint& upperRight, const CPoint& lowerLeft, bool hasTransparency)
{
    return GdiDrawing::DrawPicture(dc.GetSafeHdc(), picture, upperLeft, upperRight, lowerLeft,
                                   hasTransparency);
}

namespace {
BITMAP DescriptionOf(const CBitmap& bitmap)
{
    BITMAP description = {};
    const HGDIOBJ handle = bitmap.GetSafeHandle();
    if (!handle || ::GetObjectW(handle, sizeof description, &description) == 0) return {};
    return description;
}
} // namespace

CSize DeviceOperations::SizeOf(const CBitmap& bitmap)
{
    const BITMAP description = DescriptionOf(bitmap);
    return {static_cast<int>(description.bmWidth), static_cast<int>(description.bmHeight)};
}

PixelRows DeviceOperations::PixelsOf(const CBitmap& bitmap)
{
    constexpr WORD BITS = 32;
    const BITMAP description = DescriptionOf(bitmap);
    if (description.bmBitsPixel != BITS || !description.bmBits) return {};
    ::GdiFlush();
    return {static_cast<const std::uint32_t*>(description.bmBits), static_cast<int>(description.bmWidth),
            static_cast<int>(description.bmHeight)};
}

#endif
