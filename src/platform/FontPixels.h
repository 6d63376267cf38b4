#pragma once

#include <cstdint>

#include "platform/Export.h"
#include "platform/Font.h"

/// Vertical measures of a face at a size, in device pixels. With A and D the ascent and descent, E the units
/// of the em, R(x) = floor(x + 1/2): ascent R(A * ppem / E), descent R(D * ppem / E), internal leading R((A +
/// D - E) * ppem / E).
struct HALYARD_API FontPixels {
    int ppem = 1; ///< Pixels an em, at least 1.
    int ascent = 0;
    int descent = 0;
    int internalLeading = 0;

    /// Height of the cell.
    int Height() const { return ascent + descent; }

    /// The size for a font height in pixels. Above 0 it is the height of the cell: ppem is
    /// R(E * height / (A + D)), and one less when R((A + D) * ppem / E) is above the height. Below 0 it is
    /// -ppem. A height whose ppem is beyond MAX_PPEM gives that.
    static FontPixels Of(const FontMetrics& metrics, int height);

    static constexpr int MAX_PPEM = 1 << 24;
};
