#pragma once

#include "platform/CPen.h"

/// A pen made by the line attributes of a drawing.
class HALYARD_API DxfPen : public CPen {
public:
    /// Style as LineInfo::LINESTYLE, width in pixels, colour word 0x00BBGGRR. A width below 2 or style 0
    /// makes a plain pen, solid for an unknown style; otherwise a geometric one whose dashes grow with the
    /// width w: dashed 7w on, 5w off; dotted w, 5w; dash-dotted 7w, 5w, w, 5w. An unknown style has no
    /// pattern then, and the pen cannot be made. False, and no pen, on failure.
    [[nodiscard]] bool CreateDxfPen(int style, int width, unsigned long color);
};
