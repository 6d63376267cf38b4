#pragma once

#include "support/Angle.h"
#include "support/Point.h"

#include <array>

namespace GTL {

/// An affine map of points, composed of steps that apply in the order in which they are added. New: the
/// identity. Held as the upper three rows of a row-major 4 x 4 matrix that multiplies column vectors (x, y,
/// z, 1).
template <class P>
class Transformation {
public:
    using T = typename P::Scalar;
    using Rows = std::array<std::array<double, 4>, 3>;

    Transformation() = default;
    explicit Transformation(const Rows& rows) : m_Rows(rows) {}

    const Rows& GetRows() const { return m_Rows; }

    Transformation& Translate(double dx, double dy, double dz)
    {
        m_Rows[0][3] += dx;
        m_Rows[1][3] += dy;
        m_Rows[2][3] += dz;
        return *this;
    }

    Transformation& Scale(double sx, double sy, double sz)
    {
        ScaleRow(0, sx);
        ScaleRow(1, sy);
        ScaleRow(2, sz);
        return *this;
    }

    /// Rotations by a positive angle are counter-clockwise seen from the tip of the axis (right-hand rule).
    Transformation& RotateX(const Angle& a) { return RotateRows(1, 2, a); }
    Transformation& RotateY(const Angle& a) { return RotateRows(2, 0, a); }
    Transformation& RotateZ(const Angle& a) { return RotateRows(0, 1, a); }

    /// Adds all steps of another map after the steps so far.
    Transformation& Append(const Transformation& next)
    {
        Rows product{};
        for (std::size_t r = 0; r < 3; ++r)
            for (std::size_t c = 0; c < 4; ++c) {
                product[r][c] = c == 3 ? next.m_Rows[r][3] : 0.0;
                for (std::size_t k = 0; k < 3; ++k) product[r][c] += next.m_Rows[r][k] * m_Rows[k][c];
            }
        m_Rows = product;
        return *this;
    }

    /// The image of a point; the fourth scalar of a point in space is kept.
    Point3D<T> Apply(const Point3D<T>& p) const
    {
        return {Row(0, p.X(), p.Y(), p.Z()), Row(1, p.X(), p.Y(), p.Z()), Row(2, p.X(), p.Y(), p.Z()), p.B()};
    }
    Point2D<T> Apply(const Point2D<T>& p) const
    {
        return {Row(0, p.X(), p.Y(), T{}), Row(1, p.X(), p.Y(), T{})};
    }

    /// The image of a difference of points: the linear part alone, no translation.
    Vector3D<T> ApplyLinear(const Vector3D<T>& v) const { return {Linear(0, v), Linear(1, v), Linear(2, v)}; }

    /// Determinant of the linear part in plan; negative for a map that mirrors.
    double Determinant2D() const { return m_Rows[0][0] * m_Rows[1][1] - m_Rows[0][1] * m_Rows[1][0]; }

    bool operator==(const Transformation&) const = default;

private:
    T Row(std::size_t r, T x, T y, T z) const
    {
        const auto& row = m_Rows[r];
        return T(row[0] * x + row[1] * y + row[2] * z + row[3]);
    }
    T Linear(std::size_t r, const Vector3D<T>& v) const
    {
        const auto& row = m_Rows[r];
        return T(row[0] * v.X() + row[1] * v.Y() + row[2] * v.Z());
    }
    void ScaleRow(std::size_t r, double factor)
    {
        for (double& cell : m_Rows[r]) cell *= factor;
    }
    /// Turns the plane of axes i and j, from i towards j.
    Transformation& RotateRows(std::size_t i, std::size_t j, const Angle& a)
    {
        const double s = a.Sin();
        const double c = a.Cos();
        for (std::size_t k = 0; k < 4; ++k) {
            const double vi = m_Rows[i][k];
            const double vj = m_Rows[j][k];
            m_Rows[i][k] = c * vi - s * vj;
            m_Rows[j][k] = s * vi + c * vj;
        }
        return *this;
    }

    Rows m_Rows{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}}};
};

template <class P>
using Transformation3D = Transformation<P>;

} // namespace GTL
