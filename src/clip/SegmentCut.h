#pragma once

#include "clip/BulgeSegment.h"

namespace GTL {

/// A window as the walk along an outline needs it.
class SegmentCut {
public:
    using P = Point3D<double>;

    /// What a place must be to count as inside.
    enum class Border {
        BELONGS, ///< inside, or beyond the border by no more than the tolerance of MATH::lequal
        EXCLUDED ///< truly inside
    };
    /// Bit 1 << side for each side that a place is beyond (with BELONGS), beyond or on (with EXCLUDED); 0 for
    /// inside.
    using Code = unsigned;
    static constexpr Code NOWHERE = 15; ///< of a place with a coordinate that is not a number

    /// One end of a stretch of a segment.
    struct End {
        double at = 0;             ///< 0 start of the segment to 1 its end
        bool onBorder = false;     ///< it lies on the border of the window
        Side side = Side::UNKNOWN; ///< the side on which it lies, where that is known
    };
    /// What of a segment lies inside.
    struct Stretch {
        End from;
        End to;
    };
    /// In order along the segment. An arc crosses four lines twice each, so that no more than five are
    /// inside.
    struct Stretches {
        std::array<Stretch, 5> list;
        std::size_t count = 0;
    };

    SegmentCut(const Extents2D<double>& window, Border border);

    Code CodeOf(const P& p) const
    {
        // Written so that a coordinate that is not a number sets both bits of its axis.
        return Code(!(p.Y() > m_LowY)) | Code(!(p.X() < m_HighX)) << 1 | Code(!(p.Y() < m_HighY)) << 2
               | Code(!(p.X() > m_LowX)) << 3;
    }
    static bool IsNowhere(Code code) { return (code & 5) == 5 || (code & 10) == 10; }

    /// What of the straight segment a to b is inside; false for nothing. The codes are those of the ends, not
    /// both 0.
    bool Straight(const P& a, Code codeA, const P& b, Code codeB, Stretch& inside) const;
    /// What of an arc is inside.
    Stretches Bent(const BulgeSegment& arc, const P& a, const P& b) const;

    /// The end of a stretch as a point of the window: exactly on its side, and within the window along it.
    /// The bulge is 0.
    P PointAt(const P& a, const P& b, const End& end) const;
    P PointAt(const BulgeSegment& arc, const End& end) const;

private:
    bool IsTrulyInside(const Point2D<double>& p) const;
    /// Whether a stretch that crosses no line of a side lies inside.
    bool HoldsBetween(const BulgeSegment& arc, double v0, double v1) const;
    P Settle(const P& p, Side side) const;

    const Extents2D<double>& m_Window;
    Border m_Border;
    // Places strictly between these bounds are inside.
    double m_LowX;
    double m_HighX;
    double m_LowY;
    double m_HighY;
};

} // namespace GTL
