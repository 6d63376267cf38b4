#include "clip/CircleCrossings.h"

namespace GTL {

CircleCrossings::CircleCrossings(const Extents2D<double>& window, const Point2D<double>& center,
                                 double squaredRadius)
{
    if (!window.IsValid()) return;
    const Given given{window, center, squaredRadius};
    Horizontal(given, window.MaxY());
    Horizontal(given, window.MinY());
    Vertical(given, window.MaxX());
    Vertical(given, window.MinX());
}

void CircleCrossings::Horizontal(const Given& given, double y)
{
    const double d = y - given.center.Y();
    const double squared = given.squaredRadius - d * d;
    if (!(squared > 0)) return;
    const double h = std::sqrt(squared);
    for (const double x : {given.center.X() - h, given.center.X() + h})
        if (x >= given.window.MinX() && x <= given.window.MaxX()) Take(x - given.center.X(), d);
}

void CircleCrossings::Vertical(const Given& given, double x)
{
    const double d = x - given.center.X();
    const double squared = given.squaredRadius - d * d;
    if (!(squared > 0)) return;
    const double h = std::sqrt(squared);
    for (const double y : {given.center.Y() - h, given.center.Y() + h})
        if (y >= given.window.MinY() && y <= given.window.MaxY()) Take(d, y - given.center.Y());
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
