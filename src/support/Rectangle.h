#pragma once

#include "support/Angle.h"
#include "support/Point.h"

#include <array>

namespace GTL {

/// A rectangle at any angle. Its nine reference points are numbered: corners 0 bottom-left, 1 bottom-right, 2
/// top-right, 3 top-left; 4 to 7 the middles of the sides 0-1, 1-2, 2-3 and 3-0; 8 the centre.
template <class P>
class Rectangle {
public:
    using T = typename P::Scalar;

    Rectangle() = default;
    /// Upright, with its bottom-left corner at the origin.
    Rectangle(T width, T height) : m_Corners{P{}, P(width, T{}), P(width, height), P(T{}, height)} {}

    /// Corner 0 to 3; the index is not checked.
    const P& operator[](std::size_t corner) const { return m_Corners[corner]; }

    /// Reference point 0 to 8; any other number gives the centre.
    P ReferencePoint(int number) const
    {
        if (number >= 0 && number < 4) return m_Corners[std::size_t(number)];
        if (number >= 4 && number < 8)
            return Middle(m_Corners[std::size_t(number - 4)], m_Corners[std::size_t((number - 3) % 4)]);
        return Middle(m_Corners[0], m_Corners[2]);
    }

    void Translate(T dx, T dy)
    {
        for (P& corner : m_Corners) corner = P(corner.X() + dx, corner.Y() + dy);
    }
    /// Moves the rectangle so that a reference point lies on the target.
    void MoveTo(int number, const P& target)
    {
        const P from = ReferencePoint(number);
        Translate(target.X() - from.X(), target.Y() - from.Y());
    }
    /// Turns it about the origin, clockwise.
    void RotateClockwise(const Angle& a)
    {
        const double s = a.Sin();
        const double c = a.Cos();
        for (P& corner : m_Corners)
            corner = P(T(c * corner.X() + s * corner.Y()), T(c * corner.Y() - s * corner.X()));
    }

    T Width() const { return T(m_Corners[0].Dist2D(m_Corners[1], false)); }
    T Height() const { return T(m_Corners[0].Dist2D(m_Corners[3], false)); }

private:
    static P Middle(const P& a, const P& b) { return P((a.X() + b.X()) / 2, (a.Y() + b.Y()) / 2); }

    std::array<P, 4> m_Corners{};
};

} // namespace GTL
