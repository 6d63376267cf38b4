#pragma once

#include "support/Point.h"

/// A number as the sum of two doubles that do not overlap: 106 bits.
struct Twofold {
    double high = 0;
    double low = 0;
};

/// The straight line through two points, for places that lie very much nearer than the points do: twice the
/// bits of a double keep what the coordinates say of them. Finite coordinates of any size.
class FarLine {
public:
    FarLine(const GTL::Point2D<double>& a, const GTL::Point2D<double>& b);

    /// The other coordinate of the place with this one, which lies between those of the points. They differ
    /// in the given coordinate.
    double YAt(double x) const;
    double XAt(double y) const;

private:
    int m_Exponent; ///< of two: all is kept in units of this power, so that products stay within range
    Twofold m_Dx;   ///< from the first point to the second
    Twofold m_Dy;
    Twofold m_Determinant; ///< x dy - y dx for every place (x, y) of the line
};
