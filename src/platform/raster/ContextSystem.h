#pragma once

#include <memory>

#include "platform/CDC.h"
#include "platform/DeviceMapping.h"
#include "platform/raster/Canvas.h"
#include "platform/raster/Stroke.h"

/// What is set in a context of the software device, beside the objects that are selected.
struct CDC::System {
    DeviceMapping mapping;
    CPoint position;
    int bkMode = OPAQUE;
    unsigned long bkColor = 0xFFFFFF;
    unsigned long textColor = 0;
    unsigned textAlign = TA_LEFT | TA_TOP;
    int polyFillMode = ALTERNATE;
    std::shared_ptr<const ClipRegion> clip;

    /// What may be drawn on of a bitmap, which may be null.
    Canvas MakeCanvas(CBitmap* bitmap) const;
    /// What a pen draws; null stands for the first.
    Stroke MakeStroke(const CPen* pen) const;
    bool DrawsThinSolid(const CPen* pen) const;
    /// Whole pixels, at least 1.
    int WidthOf(const CPen& pen) const;
};
