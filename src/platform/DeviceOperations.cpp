#include "platform/DeviceOperations.h"

#ifndef HALYARD_VENDOR_CLASSES

bool DeviceOperations::CreateGeometricPen(CPen& pen, int style, int width, unsigned long color,
                                          const int* pattern, int count)
{
    return pen.CreateGeometricPen(style, width, color, pattern, count);
}

bool DeviceOperations::SetClipPolygon(CDC& dc, const CPoint* points, int count)
{
    return dc.SetClipPolygon(points, count);
}

void DeviceOperations::ResetClip(CDC& dc)
{
    dc.ResetClip();
}

bool DeviceOperations::DrawPicture(CDC& dc, const Picture& picture, const CPoint& upperLeft,
                                   const CPoint& upperRight, const CPoint& lowerLeft, bool hasTransparency)
{
    return dc.DrawPicture(picture, upperLeft, upperRight, lowerLeft, hasTransparency);
}

CSize DeviceOperations::SizeOf(const CBitmap& bitmap)
{
    return {bitmap.Width(), bitmap.Height()};
}

PixelRows DeviceOperations::PixelsOf(const CBitmap& bitmap)
{
    return {bitmap.Pixels(), bitmap.Width(), bitmap.Height()};
}

#endif
