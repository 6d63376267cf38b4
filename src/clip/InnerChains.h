#pragma once

#include "clip/SegmentCut.h"

#include <vector>

namespace GTL {

/// A place on the border of a window, ordered counter-clockwise from the lower left corner. A corner belongs
/// to the side that begins there.
struct BorderPlace {
    Side side = Side::BOTTOM;
    double along = 0; ///< ascending counter-clockwise: x, y, -x or -y
    double slant =
        0; ///< -1 to 1: how far the outline there leans counter-clockwise into the window; settles ties
};

/// Part of a ring between two places on the border, truly inside everywhere else.
struct InnerChain {
    std::size_t begin = 0; ///< first of its points
    std::size_t end = 0;   ///< past its last
    BorderPlace entry;
    BorderPlace exit;
};

/// The parts of a closed ring that lie truly inside a window. What runs along the border is no part of them.
class InnerChains {
public:
    using P = Point3D<double>;

    /// Vertices must be finite.
    InnerChains(const Extents2D<double>& window, const std::vector<P>& ring);

    /// True when the ring never leaves the window; there are no chains then.
    bool RingIsInside() const { return m_RingIsInside; }
    const std::vector<InnerChain>& Chains() const { return m_Chains; }
    const std::vector<P>& Points() const { return m_Points; }

private:
    void Straight(const P& a, SegmentCut::Code codeA, const P& b, SegmentCut::Code codeB);
    void Bent(const P& a, SegmentCut::Code codeA, const P& b, SegmentCut::Code codeB);
    void Enter(const P& p, const Vector2D<double>& inward);
    void Leave(const P& p, const Vector2D<double>& inward);
    void JoinEnds();
    BorderPlace PlaceOf(const P& p, const Vector2D<double>& inward) const;

    const Extents2D<double>& m_Window;
    SegmentCut m_Cut;
    std::vector<P> m_Points;
    std::vector<InnerChain> m_Chains;
    bool m_RingIsInside = false;
};

} // namespace GTL
