#pragma once

#include "support/Point.h"

#include <array>
#include <cmath>

/// A 4 x 4 matrix that multiplies column vectors, for working out by other means where an insert puts a
/// point.
struct InsertMatrix {
    using P = GTL::Point3D<double>;
    using V = std::array<double, 3>;

    std::array<std::array<double, 4>, 4> cell{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};

    static InsertMatrix Move(double x, double y, double z)
    {
        return {{{{1, 0, 0, x}, {0, 1, 0, y}, {0, 0, 1, z}, {0, 0, 0, 1}}}};
    }
    static InsertMatrix Scale(double x, double y, double z)
    {
        return {{{{x, 0, 0, 0}, {0, y, 0, 0}, {0, 0, z, 0}, {0, 0, 0, 1}}}};
    }
    static InsertMatrix Turn(double degrees)
    {
        const double a = degrees / 180 * std::acos(-1.0);
        return {{{{std::cos(a), -std::sin(a), 0, 0},
                  {std::sin(a), std::cos(a), 0, 0},
                  {0, 0, 1, 0},
                  {0, 0, 0, 1}}}};
    }
    /// The arbitrary axis rule: the columns are the object's axes in the world.
    static InsertMatrix Extrude(V n)
    {
        n = Unit(n);
        const bool nearZ = std::abs(n[0]) < 1.0 / 64 && std::abs(n[1]) < 1.0 / 64;
        const V x = Unit(Cross(nearZ ? V{0, 1, 0} : V{0, 0, 1}, n));
        const V y = Unit(Cross(n, x));
        return {{{{x[0], y[0], n[0], 0}, {x[1], y[1], n[1], 0}, {x[2], y[2], n[2], 0}, {0, 0, 0, 1}}}};
    }

    /// The map that applies right first.
    friend InsertMatrix operator*(const InsertMatrix& left, const InsertMatrix& right)
    {
        InsertMatrix product;
        for (std::size_t r = 0; r < 4; ++r)
            for (std::size_t c = 0; c < 4; ++c) {
                product.cell[r][c] = 0;
                for (std::size_t k = 0; k < 4; ++k) product.cell[r][c] += left.cell[r][k] * right.cell[k][c];
            }
        return product;
    }
    P operator()(const P& p) const
    {
        const auto row = [&](std::size_t r) {
            return cell[r][0] * p.X() + cell[r][1] * p.Y() + cell[r][2] * p.Z() + cell[r][3];
        };
        return {row(0), row(1), row(2)};
    }
    /// The most that the map stretches an axis: at least the larger scale divided by the root of 3.
    double LongestColumn() const
    {
        double longest = 0;
        for (std::size_t c = 0; c < 3; ++c)
            longest = std::max(longest, std::hypot(cell[0][c], cell[1][c], cell[2][c]));
        return longest;
    }

    static V Cross(const V& a, const V& b)
    {
        return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    }
    static V Unit(const V& v)
    {
        const double length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
        return {v[0] / length, v[1] / length, v[2] / length};
    }
};
