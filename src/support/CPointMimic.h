#pragma once

#include "platform/CPoint.h"
#include "support/Point.h"

#include <limits>

/// A device point made from whatever coordinates come. Doubles are truncated toward zero; what lies beyond
/// the range of int becomes the nearest int, not-a-number the lowest.
struct CPointMimic : CPoint {
    CPointMimic(int px, int py) : CPoint(px, py) {}
    CPointMimic(const CPoint& p) : CPoint(p) {}
    CPointMimic(const GTL::Point2D<int>& p) : CPoint(p.X(), p.Y()) {}
    CPointMimic(const GTL::Point2D<double>& p) : CPoint(ToPixel(p.X()), ToPixel(p.Y())) {}

    static constexpr int ToPixel(double v)
    {
        constexpr int LOWEST = (std::numeric_limits<int>::min)();
        constexpr int HIGHEST = (std::numeric_limits<int>::max)();
        if (!(v > LOWEST)) return LOWEST;
        return v < HIGHEST ? static_cast<int>(v) : HIGHEST;
    }
};
