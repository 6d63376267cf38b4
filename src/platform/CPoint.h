#pragma once

#include "platform/CSize.h"
#include "platform/VendorClasses.h"

#ifndef HALYARD_VENDOR_CLASSES

/// A point with whole coordinates: logical units or device pixels, as the operation that takes it says.
struct CPoint {
    int x = 0;
    int y = 0;

    constexpr CPoint() = default;
    constexpr CPoint(int px, int py) : x(px), y(py) {}

    constexpr bool operator==(const CPoint&) const = default;
    /// Moves the point; the sums are the caller's to keep within int.
    constexpr void Offset(int dx, int dy)
    {
        x += dx;
        y += dy;
    }
    constexpr CPoint operator+(const CSize& size) const { return {x + size.cx, y + size.cy}; }
    constexpr CPoint operator-(const CSize& size) const { return {x - size.cx, y - size.cy}; }
    constexpr CSize operator-(const CPoint& p) const { return {x - p.x, y - p.y}; }
};

#endif
