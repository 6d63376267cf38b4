#include "platform/raster/PolygonFill.h"

#include <cstdlib>

namespace {
std::int64_t Product(std::int64_t a, std::int64_t b, std::int64_t divisor, std::int64_t& rest)
{
    constexpr std::int64_t SMALL = 1 << 30;
    if (std::abs(a) < SMALL && std::abs(b) < SMALL) {
        const std::int64_t whole = a * b / divisor;
        rest = a * b % divisor;
        if (rest >= 0) return whole;
        rest += divisor;
        return whole - 1;
    }
    const WideInt product = static_cast<WideInt>(a) * b;
    const std::int64_t quotient = FloorDiv(product, divisor);
    rest = static_cast<std::int64_t>(product - static_cast<WideInt>(quotient) * divisor);
    return quotient;
}
} // namespace

PolygonScan::PolygonScan(std::span<const CPoint> points, int fillMode, const CRect& within,
                         std::pmr::memory_resource* memory)
    : m_FillMode(fillMode), m_Within(within), m_Edges(memory), m_Active(memory), m_Columns(memory)
{
    m_Edges.reserve(points.size());
    CPoint from = points.back();
    for (const CPoint& to : points) {
        Add(from, to);
        from = to;
    }
    std::sort(m_Edges.begin(), m_Edges.end(),
              [](const PolygonEdge& a, const PolygonEdge& b) { return a.top < b.top; });
    m_Active.reserve(m_Edges.size());
}

void PolygonScan::Add(CPoint from, CPoint to)
{
    const int winding = from.y < to.y ? 1 : -1;
    if (from.y > to.y) std::swap(from, to);
    const int top = std::max(from.y, m_Within.top);
    const int bottom = std::min(to.y, m_Within.bottom);
    if (top >= bottom) return;

    PolygonEdge edge{};
    edge.top = top;
    edge.bottom = bottom;
    edge.winding = winding;
    edge.height = std::int64_t{to.y} - from.y;
    const std::int64_t dx = std::int64_t{to.x} - from.x;
    edge.stepX = Product(dx, 1, edge.height, edge.stepError);
    edge.x = from.x + Product(dx, std::int64_t{top} - from.y, edge.height, edge.error);
    m_Edges.push_back(edge);
}

void PolygonScan::EnterRow(int y)
{
    std::erase_if(m_Active, [y](const PolygonEdge& edge) { return edge.bottom <= y; });
    for (; m_NextEdge < m_Edges.size() && m_Edges[m_NextEdge].top <= y; ++m_NextEdge)
        m_Active.push_back(m_Edges[m_NextEdge]);
}

void PolygonScan::SortActive()
{
    for (std::size_t i = 1; i < m_Active.size(); ++i) {
        if (m_Active[i - 1].Column() <= m_Active[i].Column()) continue;
        const PolygonEdge moved = m_Active[i];
        std::size_t place = i;
        for (; place > 0 && m_Active[place - 1].Column() > moved.Column(); --place)
            m_Active[place] = m_Active[place - 1];
        m_Active[place] = moved;
    }
}

void PolygonScan::CountColumns()
{
    m_Columns.assign(static_cast<std::size_t>(m_Within.Width()) + 1, 0);
    for (const PolygonEdge& edge : m_Active) {
        const auto column = static_cast<std::size_t>(Clamp(edge.Column()) - m_Within.left);
        m_Columns[column] += m_FillMode == WINDING ? edge.winding : 1;
    }
}
