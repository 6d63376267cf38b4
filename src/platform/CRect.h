#pragma once

#include "platform/CPoint.h"
#include "platform/CSize.h"
#include "platform/VendorClasses.h"

#ifndef HALYARD_VENDOR_CLASSES

/// A rectangle of pixels: left and top belong to it, right and bottom do not.
struct CRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    constexpr CRect() = default;
    constexpr CRect(int l, int t, int r, int b) : left(l), top(t), right(r), bottom(b) {}
    constexpr CRect(const CPoint& topLeft, const CSize& size)
        : left(topLeft.x), top(topLeft.y), right(topLeft.x + size.cx), bottom(topLeft.y + size.cy)
    {
    }

    /// Negative for an inverted rectangle. The differences are the caller's to keep within int.
    constexpr int Width() const { return right - left; }
    constexpr int Height() const { return bottom - top; }
    constexpr CSize Size() const { return {Width(), Height()}; }
    constexpr CPoint TopLeft() const { return {left, top}; }
    constexpr CPoint BottomRight() const { return {right, bottom}; }
    /// No pixel belongs to it: it is empty or inverted.
    constexpr bool IsRectEmpty() const { return right <= left || bottom <= top; }
    constexpr bool PtInRect(const CPoint& p) const
    {
        return p.x >= left && p.x < right && p.y >= top && p.y < bottom;
    }
    constexpr void SetRect(int l, int t, int r, int b) { *this = CRect(l, t, r, b); }
    constexpr void SetRectEmpty() { *this = CRect(); }
    /// All four sides equal.
    constexpr bool EqualRect(const CRect& other) const { return *this == other; }
    /// The common part of two rectangles becomes this one; false, and all zero, when there is none.
    constexpr bool IntersectRect(const CRect& a, const CRect& b)
    {
        *this = CRect(a.left > b.left ? a.left : b.left, a.top > b.top ? a.top : b.top,
                      a.right < b.right ? a.right : b.right, a.bottom < b.bottom ? a.bottom : b.bottom);
        if (!IsRectEmpty()) return true;
        SetRectEmpty();
        return false;
    }

    constexpr bool operator==(const CRect&) const = default;
};

#endif
