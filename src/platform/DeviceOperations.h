#pragma once

#include "platform/CBitmap.h"
#include "platform/CDC.h"
#include "platform/CPen.h"
#include "platform/PixelRows.h"

struct Picture;

/// What drawing needs of the device classes beyond what the vendor's have (see VendorClasses): of ours it is
/// the member of the same name, of theirs it is done through their handles.
struct DeviceOperations {
    static bool CreateGeometricPen(CPen& pen, int style, int width, unsigned long color, const int* pattern,
                                   int count);
    static bool SetClipPolygon(CDC& dc, const CPoint* points, int count);
    static void ResetClip(CDC& dc);
    static bool DrawPicture(CDC& dc, const Picture& picture, const CPoint& upperLeft,
                            const CPoint& upperRight, const CPoint& lowerLeft, bool hasTransparency);
    /// In pixels; zeros for a bitmap that holds nothing.
    static CSize SizeOf(const CBitmap& bitmap);
    /// Null for a bitmap without pixels that can be reached: one that holds nothing, or of a device of its
    /// own.
    static PixelRows PixelsOf(const CBitmap& bitmap);
};
