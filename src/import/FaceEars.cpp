#include "import/FaceCutter.h"

#include <algorithm>
#include <cmath>

// A ring is cut down ear by ear: a corner whose triangle with its neighbours holds no other corner is taken
// off. Only reflex corners can stand in such a triangle; they are found by a grid.

/// A convex outline of three or four corners.
bool FaceCutter::TakeConvex(int first, std::vector<Piece>& pieces) const
{
    std::array<int, 4> corners{first, Next(first), Next(Next(first)), Next(Next(Next(first)))};
    const bool isTriangle = corners[3] == first;
    if (isTriangle) corners[3] = corners[2];
    if (!isTriangle && Next(corners[3]) != first) return false;
    for (std::size_t i = 0; i < 4 && !isTriangle; ++i)
        if (Turn(corners[i], corners[(i + 1) % 4], corners[(i + 2) % 4]) < 0) return false;
    Piece& piece = pieces.emplace_back();
    for (std::size_t i = 0; i < 4; ++i) piece[i] = *m_Nodes[Index(corners[i])].point;
    return true;
}

void FaceCutter::CutEars(int first, std::vector<Piece>& pieces)
{
    MakeGrid(first);
    int corner = first;
    int stop = first;
    int strictness = NOTHING_TOUCHES;
    while (Next(Next(corner)) != corner) {
        if (IsEar(corner, static_cast<STRICTNESS>(strictness))) {
            const int next = Next(corner);
            Take(corner, pieces);
            strictness = NOTHING_TOUCHES;
            // Passing over one corner keeps the pieces from all fanning out from one.
            corner = stop = Next(next);
            continue;
        }
        corner = Next(corner);
        if (corner == stop && strictness < ANYTHING) ++strictness;
    }
}

bool FaceCutter::IsEar(int corner, STRICTNESS strictness) const
{
    const int before = Previous(corner), after = Next(corner);
    const double turn = Turn(before, corner, after);
    if (strictness == ANYTHING || turn == 0) return true;
    if (!(turn > 0)) return false;
    const Node &a = m_Nodes[Index(before)], &b = m_Nodes[Index(corner)], &c = m_Nodes[Index(after)];
    const double minX = std::min({a.x, b.x, c.x}), maxX = std::max({a.x, b.x, c.x});
    const double minY = std::min({a.y, b.y, c.y}), maxY = std::max({a.y, b.y, c.y});
    const auto stands = [&](int node) {
        const Node& n = m_Nodes[Index(node)];
        if (!n.isReflex || n.x < minX || n.x > maxX || n.y < minY || n.y > maxY) return false;
        if (IsSame(node, before) || IsSame(node, corner) || IsSame(node, after)) return false;
        const double least =
            std::min({Turn(before, corner, node), Turn(corner, after, node), Turn(after, before, node)});
        return strictness == NOTHING_TOUCHES ? least >= 0 : least > 0;
    };
    for (std::size_t row = Row(minY); row <= Row(maxY); ++row)
        for (std::size_t column = Column(minX); column <= Column(maxX); ++column) {
            const std::vector<int>& cell = m_Cells[row * m_Columns + column];
            if (std::any_of(cell.begin(), cell.end(), stands)) return false;
        }
    return true;
}

/// Takes a corner off; its triangle is a piece unless it has no area.
void FaceCutter::Take(int corner, std::vector<Piece>& pieces)
{
    const int before = Previous(corner), after = Next(corner);
    const double turn = Turn(before, corner, after);
    if (turn > 0) {
        const P3 &a = *m_Nodes[Index(before)].point, &c = *m_Nodes[Index(after)].point;
        pieces.push_back({a, *m_Nodes[Index(corner)].point, c, c});
    }
    m_CutArea += std::abs(turn);
    Unlink(corner);
    m_Nodes[Index(corner)].isReflex = false;
    for (const int node : {before, after}) {
        Node& n = m_Nodes[Index(node)];
        const bool wasReflex = n.isReflex;
        n.isReflex = Turn(n.previous, node, n.next) < 0;
        // Only where rings touch themselves.
        if (n.isReflex && !wasReflex) m_Cells[Row(n.y) * m_Columns + Column(n.x)].push_back(node);
    }
}

/// About one reflex corner a cell.
void FaceCutter::MakeGrid(int first)
{
    std::vector<int> reflex;
    double maxX = m_MinX = m_Nodes[Index(first)].x, maxY = m_MinY = m_Nodes[Index(first)].y;
    int node = first;
    do {
        Node& n = m_Nodes[Index(node)];
        n.isReflex = Turn(n.previous, node, n.next) < 0;
        if (n.isReflex) reflex.push_back(node);
        m_MinX = std::min(m_MinX, n.x);
        m_MinY = std::min(m_MinY, n.y);
        maxX = std::max(maxX, n.x);
        maxY = std::max(maxY, n.y);
        node = n.next;
    } while (node != first);
    m_Columns =
        std::max<std::size_t>(1, static_cast<std::size_t>(std::sqrt(static_cast<double>(reflex.size()))));
    m_CellWidth = (maxX - m_MinX) / static_cast<double>(m_Columns);
    m_CellHeight = (maxY - m_MinY) / static_cast<double>(m_Columns);
    m_Cells.assign(m_Columns * m_Columns, {});
    for (const int corner : reflex) {
        const Node& n = m_Nodes[Index(corner)];
        m_Cells[Row(n.y) * m_Columns + Column(n.x)].push_back(corner);
    }
}

std::size_t FaceCutter::Column(double x) const
{
    const double column = (x - m_MinX) / m_CellWidth;
    return column > 0 ? std::min(m_Columns - 1, static_cast<std::size_t>(std::min(column, 1e6))) : 0;
}

std::size_t FaceCutter::Row(double y) const
{
    const double row = (y - m_MinY) / m_CellHeight;
    return row > 0 ? std::min(m_Columns - 1, static_cast<std::size_t>(std::min(row, 1e6))) : 0;
}
