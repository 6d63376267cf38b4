#pragma once

#include "platform/Export.h"
#include "support/Point.h"

#include <array>
#include <cstddef>
#include <vector>

/// Cuts flat faces with any number of corners and holes into pieces that a DXF3dFace can hold. The pieces
/// cover the face, do not overlap, turn the same way and use no points but the face's own.
class HALYARD_API FaceCutter {
public:
    using P3 = GTL::Point3D<double>;
    /// Corners in order; not closed by repeating the first.
    using Ring = std::vector<P3>;
    /// A triangle has corners 2 and 3 in one place.
    using Piece = std::array<P3, 4>;

    /// Rings are the outline and then the holes, turning either way, all in one plane and meeting in points
    /// at most. The outline alone, when it is convex and has three or four corners, is one piece. A face
    /// without area has none.
    ///
    /// False when the pieces do not have the area of the face within one part in a thousand million: its
    /// rings cross, or it is not flat. The pieces are then the best that can be had; none when memory
    /// ran out.
    [[nodiscard]] bool Cut(const std::vector<Ring>& rings, std::vector<Piece>& pieces);

private:
    /// A corner in the plane, in a ring that grows by bridges to holes and shrinks by ears.
    struct Node {
        double x, y;
        const P3* point;
        int previous, next;
        bool isReflex;
    };

    bool CutRings(const std::vector<Ring>& rings, std::vector<Piece>& pieces);
    void Project(const std::vector<Ring>& rings);
    int AddRing(const Ring& ring, bool isHole);
    int Append(const P3& point, int after);
    double Turn(int a, int b, int c) const;
    double Area(int first) const;
    bool IsSame(int a, int b) const
    {
        return m_Nodes[Index(a)].x == m_Nodes[Index(b)].x && m_Nodes[Index(a)].y == m_Nodes[Index(b)].y;
    }
    static std::size_t Index(int i) { return static_cast<std::size_t>(i); }
    int Next(int i) const { return m_Nodes[Index(i)].next; }
    int Previous(int i) const { return m_Nodes[Index(i)].previous; }

    void JoinWhereTheyTouch(std::vector<int>& starts);
    void JoinHoles(std::vector<int>& starts);
    int FindBridge(const std::vector<int>& outlines, int hole) const;
    bool LooksInto(int corner, int target) const;
    void Bridge(int corner, int hole);
    int Leftmost(int ring) const;

    bool TakeConvex(int first, std::vector<Piece>& pieces) const;
    void CutEars(int first, std::vector<Piece>& pieces);
    enum STRICTNESS { NOTHING_TOUCHES, NOTHING_INSIDE, ANYTHING };
    bool IsEar(int corner, STRICTNESS strictness) const;
    void Take(int corner, std::vector<Piece>& pieces);
    void MakeGrid(int first);
    std::size_t Column(double x) const;
    std::size_t Row(double y) const;
    void Unlink(int node);
    void Link(int a, int b);
    void SwapNext(int a, int b);
    template <class Do>
    void ForEach(int ring, Do act) const
    {
        int node = ring;
        do {
            act(node);
            node = Next(node);
        } while (node != ring);
    }

    int m_DropAxis = 2; ///< the plane is looked at along this axis
    P3 m_Origin;
    std::vector<Node> m_Nodes;
    double m_CutArea = 0; ///< of the pieces so far
    // Reflex corners by place.
    std::vector<std::vector<int>> m_Cells;
    std::size_t m_Columns = 1;
    double m_MinX = 0, m_MinY = 0, m_CellWidth = 1, m_CellHeight = 1;
};
