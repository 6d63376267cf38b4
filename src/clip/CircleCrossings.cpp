#include "clip/CircleCrossings.h"

namespace GTL {

CircleCrossings::CircleCrossings(const Extents2D<double>& window, const Point2D<double>& center,
                                 double squaredRadius)
    : m_Window(window), m_Center(center), m_SquaredRadius(squaredRadius)
{
    if (!window.IsValid()) return;
    Horizontal(window.MaxY());
    Horizontal(window.MinY());
    Vertical(window.MaxX());
    Vertical(window.MinX());
}

void CircleCrossings::Horizontal(double y)
{
    const double d = y - m_Center.Y();
    const double squared = m_SquaredRadius - d * d;
    if (!(squared > 0)) return;
    const double h = std::sqrt(squared);
    for (const double x : {m_Center.X() - h, m_Center.X() + h})
        if (x >= m_Window.MinX() && x <= m_Window.MaxX()) Take(x - m_Center.X(), d);
}

void CircleCrossings::Vertical(double x)
{
    const double d = x - m_Center.X();
    const double squared = m_SquaredRadius - d * d;
    if (!(squared > 0)) return;
    const double h = std::sqrt(squared);
    for (const double y : {m_Center.Y() - h, m_Center.Y() + h})
        if (y >= m_Window.MinY() && y <= m_Window.MaxY()) Take(d, y - m_Center.Y());
}

void CircleCrossings::Take(double dx, double dy)
{
    m_Bearings[m_Count++] = std::atan2(dx, dy) / MATH::DTR;
}

bool EntersAt(const Extents2D<double>& window, const Point2D<double>& center, const Point2D<double>& place)
{
    struct Side {
        double distance;
        bool enters;
    };
    const Side sides[] = {
        {std::abs(window.MinX() - place.X()), place.Y() >= center.Y()},
        {std::abs(window.MaxX() - place.X()), place.Y() <= center.Y()},
        {std::abs(window.MinY() - place.Y()), place.X() <= center.X()},
        {std::abs(window.MaxY() - place.Y()), place.X() >= center.X()},
    };
    const Side* nearest = sides;
    for (const Side& side : sides)
        if (side.distance < nearest->distance) nearest = &side;
    return nearest->enters;
}

} // namespace GTL
