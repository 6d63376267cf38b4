#pragma once

#include "support/Extents.h"
#include "support/Numeric.h"

#include <cstdint>

namespace GTL {

/// What became of a primitive that was cut to a window.
enum ClipResult : std::int32_t {
    Outside = 1, ///< nothing of it lies in the window
    Clipped = 2, ///< what survives stands in the output, which may be empty
    Inside = 3,  ///< it lies wholly in the window; the output is not filled
};

/// Base of the clippers: points in, points out, against an axis-aligned window in plan. Heights are carried
/// along and never looked at. A clipper is made on the stack for one use; input is never changed, and nothing
/// fails: coordinates that are not numbers lie outside.
template <class P>
class Clipper {
public:
    /// An invalid window holds nothing.
    explicit Clipper(const Extents2D<double>& window)
    {
        // Coordinate by coordinate: a copy as a whole stalls on a window that was written just before, as
        // those of a context are, and costs a sixth of the time of a line.
        if (window.IsValid()) m_Window = {{window.MinX(), window.MinY()}, {window.MaxX(), window.MaxY()}};
    }
    virtual ~Clipper() = default;

    /// Inside (on the border too, within the tolerance of MATH::lequal) or Outside.
    ClipResult Classify(const P& p) const
    {
        const bool inside = m_Window.IsValid() && MATH::lequal(m_Window.MinX(), p.X())
                            && MATH::lequal(m_Window.MinY(), p.Y()) && MATH::gequal(m_Window.MaxX(), p.X())
                            && MATH::gequal(m_Window.MaxY(), p.Y());
        return inside ? Inside : Outside;
    }

    /// What the box of a primitive settles: Outside when it lies wholly beyond one side of the window
    /// (touching is not beyond) or is invalid, Inside when both its corners are; otherwise Clipped, which
    /// settles nothing. Vertices that are not numbers are no part of a box: it cannot settle Inside for them.
    ClipResult ClassifyBox(const Extents3D<double>& box) const
    {
        const Extents2D<double>& window = m_Window;
        if (!window.IsValid() || !box.IsValid()) return Outside;
        if (box.MaxY() < window.MinY() || box.MinX() > window.MaxX() || box.MinY() > window.MaxY()
            || window.MinX() > box.MaxX())
            return Outside;
        const bool inside = MATH::lequal(window.MinX(), box.MinX()) && MATH::lequal(window.MinY(), box.MinY())
                            && MATH::gequal(window.MaxX(), box.MaxX())
                            && MATH::gequal(window.MaxY(), box.MaxY());
        return inside ? Inside : Clipped;
    }

protected:
    Clipper(const Clipper&) = default;
    Clipper& operator=(const Clipper&) = default;
    const Extents2D<double>& Window() const { return m_Window; }

private:
    Extents2D<double> m_Window;
};

} // namespace GTL
