#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "platform/CRect.h"

/// A set of pixels, as spans by rows.
class ClipRegion {
public:
    /// Pixels left <= x < right.
    struct Span {
        int left;
        int right;
    };

    /// The pixels inside a polygon by the rule of PolygonFill, within a rectangle. Throws std::bad_alloc.
    ClipRegion(std::span<const CPoint> devicePoints, int fillMode, const CRect& within);

    /// Every pixel of the set lies in it; empty when there is none.
    const CRect& Bounds() const { return m_Bounds; }
    /// The set is all of Bounds().
    bool IsRectangle() const { return m_IsRectangle; }
    /// Spans of a row from left to right, none touching the next; none outside the bounds.
    std::span<const Span> Row(int y) const;
    bool Holds(CPoint p) const;

private:
    void Close();

    CRect m_Bounds;
    int m_Top = 0;
    bool m_IsRectangle = true;
    std::vector<std::size_t> m_RowStarts;
    std::vector<Span> m_Spans;
};
