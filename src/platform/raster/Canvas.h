#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/CRect.h"
#include "platform/raster/ClipRegion.h"

/// The pixels that an operation may touch. Coordinates are device pixels.
struct Canvas {
    std::uint32_t* pixels = nullptr;
    std::ptrdiff_t stride = 0;          ///< Pixels from a row to the next.
    CRect clip;                         ///< Inside the bitmap; empty when nothing can be drawn.
    const ClipRegion* region = nullptr; ///< Further limits within `clip`; null when there are none.

    std::uint32_t* At(int x, int y) const { return pixels + y * stride + x; }
    bool Holds(CPoint p) const { return clip.PtInRect(p) && (!region || region->Holds(p)); }

    /// The span left <= x < right of a row, clipped, as the parts that may be touched: visit(left, right).
    template <class Visit>
    void ForSpan(int y, int left, int right, Visit visit) const
    {
        left = std::max(left, clip.left);
        right = std::min(right, clip.right);
        if (left >= right || y < clip.top || y >= clip.bottom) return;
        if (!region) return visit(left, right);
        for (const ClipRegion::Span& span : region->Row(y)) {
            const int from = std::max(left, span.left);
            const int to = std::min(right, span.right);
            if (from < to) visit(from, to);
        }
    }

    void FillSpan(int y, int left, int right, std::uint32_t color) const
    {
        ForSpan(y, left, right, [&](int from, int to) { std::fill(At(from, y), At(to, y), color); });
    }
};

/// A pixel 0x00RRGGBB of a colour word 0x00BBGGRR.
constexpr std::uint32_t PixelOf(unsigned long color)
{
    const auto c = static_cast<std::uint32_t>(color);
    return (c & 0xFF) << 16 | (c & 0xFF00) | (c >> 16 & 0xFF);
}

/// The colour word of a pixel.
constexpr unsigned long ColorOf(std::uint32_t pixel)
{
    return PixelOf(pixel);
}
