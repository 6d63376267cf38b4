#include "platform/raster/ClipRegion.h"

#include <algorithm>

#include "platform/raster/PolygonFill.h"

ClipRegion::ClipRegion(std::span<const CPoint> devicePoints, int fillMode, const CRect& within)
    : m_Top(within.top)
{
    int lastRow = within.top - 1;
    ScanPolygon(devicePoints, fillMode, within, [&](int y, int left, int right) {
        for (; lastRow < y; ++lastRow) m_RowStarts.push_back(m_Spans.size());
        const bool touchesLast = m_Spans.size() > m_RowStarts.back() && m_Spans.back().right >= left;
        if (touchesLast)
            m_Spans.back().right = std::max(m_Spans.back().right, right);
        else
            m_Spans.push_back({left, right});
    });
    Close();
}

void ClipRegion::Close()
{
    if (m_Spans.empty()) return;
    const int end = m_Top + static_cast<int>(m_RowStarts.size());
    m_RowStarts.push_back(m_Spans.size());
    // Rows above the first span were begun with no span in them.
    const auto first = std::upper_bound(m_RowStarts.begin(), m_RowStarts.end(), std::size_t{0});
    const int top = m_Top + static_cast<int>(first - m_RowStarts.begin()) - 1;
    m_Bounds = {m_Spans[0].left, top, m_Spans[0].right, end};
    for (const Span& span : m_Spans) {
        m_Bounds.left = std::min(m_Bounds.left, span.left);
        m_Bounds.right = std::max(m_Bounds.right, span.right);
    }
    const auto isWhole = [&](const Span& s) {
        return s.left == m_Bounds.left && s.right == m_Bounds.right;
    };
    m_IsRectangle = m_Spans.size() == static_cast<std::size_t>(m_Bounds.Height())
                    && std::all_of(m_Spans.begin(), m_Spans.end(), isWhole);
}

std::span<const ClipRegion::Span> ClipRegion::Row(int y) const
{
    if (y < m_Bounds.top || y >= m_Bounds.bottom) return {};
    const auto row = static_cast<std::size_t>(y - m_Top);
    return {m_Spans.data() + m_RowStarts[row], m_Spans.data() + m_RowStarts[row + 1]};
}

bool ClipRegion::Holds(CPoint p) const
{
    const std::span<const Span> row = Row(p.y);
    const auto next =
        std::upper_bound(row.begin(), row.end(), p.x, [](int x, const Span& span) { return x < span.left; });
    return next != row.begin() && p.x < (next - 1)->right;
}
