#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <span>
#include <vector>

#include "platform/CRect.h"
#include "platform/GdiConstants.h"
#include "platform/raster/Wide.h"

/// An edge of a polygon on its way down the rows. Its crossing with the row is x + error / height, exactly.
struct PolygonEdge {
    int top;             ///< First row that it crosses.
    int bottom;          ///< First row that it crosses no more.
    int winding;         ///< +1 drawn downwards, -1 upwards.
    std::int64_t x;      ///< Crossing, rounded down.
    std::int64_t error;  ///< 0 <= error < height.
    std::int64_t height; ///< Rows from end to end, clipped or not.
    std::int64_t stepX;  ///< Whole part of the step to the next row, rounded down.
    std::int64_t stepError;

    /// First column at or right of the crossing.
    std::int64_t Column() const { return x + (error > 0 ? 1 : 0); }
    void Step()
    {
        x += stepX;
        error += stepError;
        if (error < height) return;
        error -= height;
        ++x;
    }
};

/// The edges of a polygon that cross rows within a rectangle, and those that cross the current row.
///
/// The rule: a polygon is sampled at the whole coordinates of pixels. Edges cross the rows ymin <= y < ymax;
/// a pixel is inside from the first column at or right of a crossing to the last one left of the next.
class PolygonScan {
public:
    PolygonScan(std::span<const CPoint> points, int fillMode, const CRect& within,
                std::pmr::memory_resource* memory);

    /// Calls visit(y, left, right) for each run of pixels left <= x < right, rows downwards, runs rightwards.
    template <class Visit>
    void Run(Visit visit)
    {
        for (int y = NextEdgeRow(); y < m_Within.bottom;) {
            EnterRow(y);
            const int end = std::min(FirstEnd(), NextEdgeRow());
            if (m_Active.size() == 2)
                VisitPair(y, end, visit);
            else
                VisitMany(y, end, visit);
            y = m_Active.empty() ? NextEdgeRow() : end;
        }
    }

private:
    /// Up to this many crossings are sorted; more are counted by columns, which takes no sorting.
    static constexpr std::size_t FEW_EDGES = 32;

    void Add(CPoint from, CPoint to);
    /// Row in which the next edge begins, the end of the rectangle when none is left.
    int NextEdgeRow() const
    {
        return m_NextEdge < m_Edges.size() ? m_Edges[m_NextEdge].top : m_Within.bottom;
    }
    /// Row in which the first of the active edges has ended.
    int FirstEnd() const
    {
        int end = m_Within.bottom;
        for (const PolygonEdge& edge : m_Active) end = std::min(end, edge.bottom);
        return end;
    }
    /// Drops the active edges that have ended, takes those that begin.
    void EnterRow(int y);
    void SortActive();
    void CountColumns();
    int Clamp(std::int64_t column) const
    {
        return static_cast<int>(std::clamp<std::int64_t>(column, m_Within.left, m_Within.right));
    }
    int Next(int inside, int winding) const { return m_FillMode == WINDING ? inside + winding : inside ^ 1; }

    /// Rows with two edges: what is between them is inside by either rule.
    template <class Visit>
    void VisitPair(int y, int end, Visit& visit)
    {
        PolygonEdge a = m_Active[0];
        PolygonEdge b = m_Active[1];
        for (; y < end; ++y) {
            const std::int64_t left = std::min(a.Column(), b.Column());
            const std::int64_t right = std::max(a.Column(), b.Column());
            if (left < right) {
                const int from = Clamp(left);
                const int to = Clamp(right);
                if (from < to) visit(y, from, to);
            }
            a.Step();
            b.Step();
        }
        m_Active[0] = a;
        m_Active[1] = b;
    }

    template <class Visit>
    void VisitMany(int y, int end, Visit& visit)
    {
        for (; y < end && !m_Active.empty(); ++y) {
            if (m_Active.size() <= FEW_EDGES)
                VisitSorted(y, visit);
            else
                VisitCounted(y, visit);
            for (PolygonEdge& edge : m_Active) edge.Step();
        }
    }

    template <class Visit>
    void VisitSorted(int y, Visit& visit)
    {
        SortActive();
        int inside = 0;
        int left = 0;
        for (const PolygonEdge& edge : m_Active) {
            const int before = inside;
            inside = Next(inside, edge.winding);
            if (before == 0) left = Clamp(edge.Column());
            if (inside != 0) continue;
            const int right = Clamp(edge.Column());
            if (left < right) visit(y, left, right);
        }
    }

    template <class Visit>
    void VisitCounted(int y, Visit& visit)
    {
        CountColumns();
        int inside = 0;
        int left = m_Within.left;
        for (std::size_t i = 0; i < m_Columns.size(); ++i) {
            if (m_Columns[i] == 0) continue;
            const int before = inside;
            inside = m_FillMode == WINDING ? inside + m_Columns[i] : inside ^ (m_Columns[i] & 1);
            const int column = m_Within.left + static_cast<int>(i);
            if (before == 0 && inside != 0) left = column;
            if (before != 0 && inside == 0) visit(y, left, column);
        }
    }

    int m_FillMode;
    CRect m_Within;
    std::size_t m_NextEdge = 0;
    std::pmr::vector<PolygonEdge> m_Edges; ///< By their first rows.
    std::pmr::vector<PolygonEdge> m_Active;
    std::pmr::vector<int>
        m_Columns; ///< Sum of what crosses at each column of the rectangle, its end included.
};

/// Calls visit(y, left, right) for each run of pixels of a polygon within a rectangle (see PolygonScan); the
/// polygon is closed. Time: the edges' rows within the rectangle, and its pixels at most once.
template <class Visit>
void ScanPolygon(std::span<const CPoint> points, int fillMode, const CRect& within, Visit visit)
{
    constexpr std::size_t ENOUGH_FOR_SOME_EDGES = 4096;
    if (points.size() < 2 || within.IsRectEmpty()) return;
    std::array<std::byte, ENOUGH_FOR_SOME_EDGES> onStack;
    std::pmr::monotonic_buffer_resource memory(onStack.data(), onStack.size());
    PolygonScan(points, fillMode, within, &memory).Run(visit);
}
