#pragma once

#include "support/Extents.h"

#include <array>
#include <cstddef>

/// The stretches of an arc that lie in a window, all of them, in the order of the arc. An arc with
/// coordinates or a radius beyond about 1e150 has none.
class VisibleArcs {
public:
    /// Bearings in degrees, clockwise from +y; end > start. A whole circle ends 360 above its start.
    struct Piece {
        double start;
        double end;
    };

    /// From a bearing on clockwise; 0 < sweep <= 360.
    VisibleArcs(const GTL::Extents2D<double>& window, const GTL::Point2D<double>& center, double radius,
                double start, double sweep);

    const Piece* begin() const { return m_Pieces.data(); }
    const Piece* end() const { return m_Pieces.data() + m_Count; }

private:
    void Take(double start, double end);

    std::array<Piece, 10> m_Pieces{}; ///< at most 8 crossings
    std::size_t m_Count = 0;
};
