#include "import/FaceCutter.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <map>
#include <utility>

namespace {

constexpr int NONE = -1;
/// Of the areas of a face and of its pieces.
constexpr double AREA_TOLERANCE = 1e-9;

struct Vector {
    double x = 0, y = 0, z = 0;
};

/// Twice the vector area of a ring: the sum over its edges.
Vector RingArea(const FaceCutter::Ring& ring)
{
    Vector sum;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const auto a = ring[i] - ring[0];
        const auto b = ring[i + 1 < ring.size() ? i + 1 : 0] - ring[0];
        const auto part = a.Cross(b);
        sum = {sum.x + part.X(), sum.y + part.Y(), sum.z + part.Z()};
    }
    return sum;
}

} // namespace

bool FaceCutter::Cut(const std::vector<Ring>& rings, std::vector<Piece>& pieces)
try {
    pieces.clear();
    return CutRings(rings, pieces);
} catch (const std::exception&) {
    pieces.clear();
    return false;
}

bool FaceCutter::CutRings(const std::vector<Ring>& rings, std::vector<Piece>& pieces)
{
    m_Nodes.clear();
    m_CutArea = 0;
    if (rings.empty() || rings[0].empty()) return true;
    Project(rings);
    const int outline = AddRing(rings[0], false);
    double area = outline == NONE ? 0 : Area(outline);
    if (!(area > 0)) return area == 0;

    std::vector<int> starts{outline};
    for (std::size_t i = 1; i < rings.size(); ++i) {
        const int hole = AddRing(rings[i], true);
        if (hole == NONE) continue;
        area += Area(hole);
        starts.push_back(hole);
    }
    if (starts.size() == 1 && TakeConvex(outline, pieces)) return true;
    if (starts.size() > 1) {
        JoinWhereTheyTouch(starts);
        JoinHoles(starts);
    }
    for (const int start : starts) CutEars(start, pieces);
    return std::abs(m_CutArea - area) <= AREA_TOLERANCE * area;
}

/// The plane is seen along the axis to which it is least steep.
void FaceCutter::Project(const std::vector<Ring>& rings)
{
    const Vector normal = RingArea(rings[0]);
    const double x = std::abs(normal.x), y = std::abs(normal.y), z = std::abs(normal.z);
    m_DropAxis = z >= x && z >= y ? 2 : y >= x ? 1 : 0;
    m_Origin = rings[0][0];
}

/// Outlines turn counter-clockwise, holes clockwise. Corners that repeat the one before are left out. Returns
/// one of the nodes; NONE for a ring without three corners or without area.
int FaceCutter::AddRing(const Ring& ring, bool isHole)
{
    int last = NONE;
    int first = NONE;
    for (const P3& point : ring) {
        const int node = Append(point, last);
        if (first == NONE) first = node;
        if (last != NONE && IsSame(node, last)) {
            Unlink(node);
            continue;
        }
        last = node;
    }
    while (last != NONE && last != first && IsSame(last, first)) {
        const int before = Previous(last);
        Unlink(last);
        last = before;
    }
    if (first == NONE || Next(Next(first)) == first || Next(first) == first) return NONE;
    const double area = Area(first);
    if (area == 0) return NONE;
    if ((area > 0) != isHole) return first;
    int node = first;
    do {
        std::swap(m_Nodes[Index(node)].previous, m_Nodes[Index(node)].next);
        node = Previous(node);
    } while (node != first);
    return first;
}

/// A node after another one of its ring, or alone.
int FaceCutter::Append(const P3& point, int after)
{
    const auto d = point - m_Origin;
    const double x = m_DropAxis == 0 ? d.Y() : m_DropAxis == 1 ? d.Z() : d.X();
    const double y = m_DropAxis == 0 ? d.Z() : m_DropAxis == 1 ? d.X() : d.Y();
    const int node = static_cast<int>(m_Nodes.size());
    m_Nodes.push_back({x, y, &point, node, node, false});
    if (after == NONE) return node;
    const int next = Next(after);
    m_Nodes[Index(node)].previous = after;
    m_Nodes[Index(node)].next = next;
    m_Nodes[Index(after)].next = node;
    m_Nodes[Index(next)].previous = node;
    return node;
}

void FaceCutter::Unlink(int node)
{
    m_Nodes[Index(Previous(node))].next = Next(node);
    m_Nodes[Index(Next(node))].previous = Previous(node);
}

/// Twice the area of the triangle, positive when it turns counter-clockwise.
double FaceCutter::Turn(int a, int b, int c) const
{
    const Node &p = m_Nodes[Index(a)], &q = m_Nodes[Index(b)], &r = m_Nodes[Index(c)];
    return (q.x - p.x) * (r.y - p.y) - (q.y - p.y) * (r.x - p.x);
}

/// Twice the area of a ring.
double FaceCutter::Area(int first) const
{
    double area = 0;
    for (int node = Next(first); Next(node) != first; node = Next(node))
        area += Turn(first, node, Next(node));
    return area;
}

int FaceCutter::Leftmost(int ring) const
{
    int leftmost = ring;
    for (int node = Next(ring); node != ring; node = Next(node)) {
        const Node &a = m_Nodes[Index(node)], &b = m_Nodes[Index(leftmost)];
        if (a.x < b.x || (a.x == b.x && a.y < b.y)) leftmost = node;
    }
    return leftmost;
}

/// Where a ring passes through a corner of another, within its inner angle, the two go on in each other's
/// place: what lies inside at such a corner is then the inner angles of both, side by side. Rings become one
/// by that, or one falls in two. Leaves one node of each ring.
void FaceCutter::JoinWhereTheyTouch(std::vector<int>& starts)
{
    std::map<std::pair<double, double>, std::vector<int>> atPlace;
    for (const int start : starts) {
        int node = start;
        do {
            const int next = Next(node);
            std::vector<int>& others = atPlace[{m_Nodes[Index(node)].x, m_Nodes[Index(node)].y}];
            const auto holds = [&](int other) {
                return LooksInto(other, Next(node)) && LooksInto(other, Previous(node));
            };
            const auto other =
                start == starts[0] ? others.end() : std::find_if(others.begin(), others.end(), holds);
            if (other != others.end()) SwapNext(node, *other);
            others.push_back(node);
            node = next;
        } while (node != start);
    }
    std::vector<bool> isSeen(m_Nodes.size());
    starts.clear();
    for (const auto& [place, nodes] : atPlace)
        for (const int first : nodes) {
            if (!isSeen[Index(first)]) starts.push_back(first);
            for (int node = first; !isSeen[Index(node)]; node = Next(node)) isSeen[Index(node)] = true;
        }
}

void FaceCutter::SwapNext(int a, int b)
{
    const int afterA = Next(a), afterB = Next(b);
    Link(a, afterB);
    Link(b, afterA);
}

void FaceCutter::Link(int a, int b)
{
    m_Nodes[Index(a)].next = b;
    m_Nodes[Index(b)].previous = a;
}

/// From the left to the right, each hole is bridged to what lies left of it. Leaves the rings that turn as
/// outlines do.
void FaceCutter::JoinHoles(std::vector<int>& starts)
{
    const auto firstHole =
        std::partition(starts.begin(), starts.end(), [this](int ring) { return Area(ring) > 0; });
    std::vector<int> holes(firstHole, starts.end());
    starts.erase(firstHole, starts.end());
    for (int& hole : holes) hole = Leftmost(hole);
    std::sort(holes.begin(), holes.end(), [this](int a, int b) {
        const Node &p = m_Nodes[Index(a)], &q = m_Nodes[Index(b)];
        return p.x != q.x ? p.x < q.x : p.y < q.y;
    });
    for (const int hole : holes) {
        const int corner = FindBridge(starts, hole);
        if (corner != NONE) Bridge(corner, hole);
    }
}

/// The direction from a corner to the target lies within the corner's inner angle.
bool FaceCutter::LooksInto(int corner, int target) const
{
    const int before = Previous(corner), after = Next(corner);
    if (Turn(before, corner, after) >= 0)
        return Turn(corner, target, before) >= 0 && Turn(corner, after, target) >= 0;
    return Turn(corner, target, before) > 0 || Turn(corner, after, target) > 0;
}

/// A corner of the outline that sees the hole's leftmost corner M: on a ray from M to the left the nearest
/// edge is hit in I; its left end P sees M unless reflex corners stand in the triangle M, I, P, and of these
/// the one in the direction nearest to the ray does.
int FaceCutter::FindBridge(const std::vector<int>& outlines, int hole) const
{
    const Node& m = m_Nodes[Index(hole)];
    double hitX = -std::numeric_limits<double>::infinity();
    int found = NONE;
    const auto hit = [&](int node) {
        const Node &a = m_Nodes[Index(node)], &b = m_Nodes[Index(a.next)];
        // What is inside lies right of edges that lead down.
        if (!(a.y >= m.y && m.y >= b.y && a.y != b.y)) return;
        const double x = a.y == m.y ? a.x : b.y == m.y ? b.x : a.x + (m.y - a.y) / (b.y - a.y) * (b.x - a.x);
        if (x > m.x || x <= hitX) return;
        hitX = x;
        found = a.x < b.x ? node : a.next;
    };
    for (const int outline : outlines) ForEach(outline, hit);
    if (found == NONE) return NONE;

    const Node p = m_Nodes[Index(found)];
    const double height = std::abs(p.y - m.y);
    double least = std::numeric_limits<double>::infinity();
    const auto consider = [&](int node) {
        const Node& q = m_Nodes[Index(node)];
        const double rise = std::abs(q.y - m.y);
        if (q.x < p.x || q.x >= m.x || (q.y - m.y) * (p.y - m.y) < 0) return;
        // Between the ray and the line from M to P, and right of the edge from I to P.
        const double slope = rise / (m.x - q.x);
        if (slope > height / (m.x - p.x) || (q.x - p.x) * height < (height - rise) * (hitX - p.x)) return;
        if (slope > least || (slope == least && q.x <= m_Nodes[Index(found)].x) || !LooksInto(node, hole))
            return;
        found = node;
        least = slope;
    };
    for (const int outline : outlines) ForEach(outline, consider);
    return found;
}

/// Leads the ring from the corner round the hole and back: both ends of the bridge come twice.
void FaceCutter::Bridge(int corner, int hole)
{
    const int afterCorner = Next(corner), beforeHole = Previous(hole);
    const int holeAgain = static_cast<int>(m_Nodes.size()), cornerAgain = holeAgain + 1;
    m_Nodes.push_back(m_Nodes[Index(hole)]);
    m_Nodes.push_back(m_Nodes[Index(corner)]);
    Link(corner, hole);
    Link(beforeHole, holeAgain);
    Link(holeAgain, cornerAgain);
    Link(cornerAgain, afterCorner);
}
