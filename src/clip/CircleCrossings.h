#pragma once

#include "clip/Clipper.h"

#include <array>

namespace GTL {

/// Where a circle crosses the border of a window: bearings in degrees, clockwise from +y, -180 < a <= 180, in
/// the order in which they are found: top, bottom, right, left; on each the lower coordinate first. A line
/// that the circle only touches gives none; a crossing at a corner is found on both its lines.
class HALYARD_API CircleCrossings {
public:
    CircleCrossings(const Extents2D<double>& window, const Point2D<double>& center, double squaredRadius);

    std::size_t Count() const { return m_Count; }
    /// Index not checked.
    double operator[](std::size_t index) const { return m_Bearings[index]; }

private:
    struct Given {
        const Extents2D<double>& window;
        const Point2D<double>& center;
        double squaredRadius;
    };

    void Horizontal(const Given& given, double y);
    void Vertical(const Given& given, double x);
    void Take(double dx, double dy);

    std::array<double, 8> m_Bearings{};
    std::size_t m_Count = 0;
};

/// Decides for a place on the circle that is a crossing whether the stretch that follows it clockwise counts
/// as inside, by the side of the window that is nearest to the place: left when the place is not below the
/// centre, right when not above, bottom when not to the right, top when not to the left of it.
bool EntersAt(const Extents2D<double>& window, const Point2D<double>& center, const Point2D<double>& place);

/// Circles and arcs with a smaller radius are taken for empty. Drawing units.
inline constexpr double SMALLEST_RADIUS = 1e-5;

} // namespace GTL
