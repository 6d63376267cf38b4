#pragma once

#include "platform/CBitmap.h"
#include "platform/CPoint.h"

#include <cstdint>
#include <cstdlib>

/// The textbook's loop: what a device cannot go below. Both ends lie in the bitmap; the last pixel is left
/// out.
inline void PlainLine(CBitmap& bitmap, CPoint a, CPoint b, std::uint32_t pixel)
{
    const int stride = bitmap.Width();
    const int dx = std::abs(b.x - a.x), dy = std::abs(b.y - a.y);
    const int sx = b.x < a.x ? -1 : 1, sy = b.y < a.y ? -stride : stride;
    const bool isSteep = dy > dx;
    const int n = isSteep ? dy : dx, m2 = 2 * (isSteep ? dx : dy), n2 = 2 * n;
    const int major = isSteep ? sy : sx, minor = isSteep ? sx : sy;
    const int threshold = minor < 0 ? 0 : 1;
    std::uint32_t* p = bitmap.Row(a.y) + a.x;
    int error = -n;
    for (int i = 0; i < n; ++i) {
        *p = pixel;
        p += major;
        error += m2;
        if (error >= threshold) {
            p += minor;
            error -= n2;
        }
    }
}
