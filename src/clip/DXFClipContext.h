#pragma once

#include "support/Extents.h"

class DXFLayer;

/// What a drawing is cut down to. Built and owned by the caller; not for two threads at once.
struct DXFClipContext {
    /// The window in drawing units, its border included. A window whose maximum lies below its minimum, or
    /// with a bound that is not a number, holds nothing.
    double xmin = 0;
    double ymin = 0;
    double xmax = 0;
    double ymax = 0;
    /// Takes the extra pieces of an entity that falls into several; not owned. A layer that clips itself puts
    /// itself here and null afterwards. While it is null, extra pieces are dropped.
    DXFLayer* layer = nullptr;

    /// The window as a box; invalid when it holds nothing.
    operator GTL::Extents2D<double>() const
    {
        return xmin <= xmax && ymin <= ymax ? GTL::Extents2D<double>({xmin, ymin}, {xmax, ymax})
                                            : GTL::Extents2D<double>();
    }
};
