#pragma once

#include "support/Point.h"
#include "support/Transformation.h"

namespace GTL {

/// Where something lies in relation to a box or an outline.
struct CLS {
    enum CLASSIFICATION {
        STRADDLING = 0, ///< partly inside
        INSIDE = 1,     ///< inside, the border included
        OUTSIDE = 2,    ///< wholly outside: not even touching
    };
};

/// Axis-aligned box in the plane: invalid (empty) until the first update. A point with a coordinate that is
/// not a number does not start a box, and such a coordinate does not widen one.
template <class T>
class Extents2D {
public:
    Extents2D() = default;
    Extents2D(const Point2D<T>& a, const Point2D<T>& b)
    {
        Update(a);
        Update(b);
    }

    void Reset() { *this = Extents2D(); }
    bool IsValid() const { return m_Valid; }

    void Update(const Point2D<T>& p)
    {
        if (!m_Valid) {
            if (p != p) return; // not a number
            m_Min = m_Max = p;
            m_Valid = true;
            return;
        }
        if (p.X() < m_Min.X()) m_Min.X() = p.X();
        if (p.X() > m_Max.X()) m_Max.X() = p.X();
        if (p.Y() < m_Min.Y()) m_Min.Y() = p.Y();
        if (p.Y() > m_Max.Y()) m_Max.Y() = p.Y();
    }

    T MinX() const { return m_Min.X(); }
    T MinY() const { return m_Min.Y(); }
    T MaxX() const { return m_Max.X(); }
    T MaxY() const { return m_Max.Y(); }
    const Point2D<T>& MinPnt() const { return m_Min; }
    const Point2D<T>& MaxPnt() const { return m_Max; }
    T ExtentX() const { return m_Max.X() - m_Min.X(); }
    T ExtentY() const { return m_Max.Y() - m_Min.Y(); }
    /// Halves are taken before they are added, so that huge boxes do not overflow.
    Point2D<T> Center() const { return {m_Min.X() / 2 + m_Max.X() / 2, m_Min.Y() / 2 + m_Max.Y() / 2}; }

    bool operator==(const Extents2D&) const = default;

    /// INSIDE (border included) or OUTSIDE; not-a-number is outside, and everything is outside an invalid
    /// box.
    CLS::CLASSIFICATION Classify(const Point2D<T>& p) const
    {
        const bool inside =
            m_Valid && p.X() >= MinX() && p.X() <= MaxX() && p.Y() >= MinY() && p.Y() <= MaxY();
        return inside ? CLS::INSIDE : CLS::OUTSIDE;
    }
    /// Boxes that only touch straddle. An invalid box is outside.
    CLS::CLASSIFICATION Classify(const Extents2D& box) const
    {
        if (!m_Valid || !box.m_Valid) return CLS::OUTSIDE;
        if (box.MinX() > MaxX() || box.MaxX() < MinX() || box.MinY() > MaxY() || box.MaxY() < MinY())
            return CLS::OUTSIDE;
        const bool inside = Classify(box.m_Min) == CLS::INSIDE && Classify(box.m_Max) == CLS::INSIDE;
        return inside ? CLS::INSIDE : CLS::STRADDLING;
    }

private:
    Point2D<T> m_Min;
    Point2D<T> m_Max;
    bool m_Valid = false;
};

/// Axis-aligned box in space: as in the plane. Corners carry a fourth scalar of 0.
template <class T>
class Extents3D {
public:
    Extents3D() = default;

    void Reset() { *this = Extents3D(); }
    bool IsValid() const { return m_Valid; }

    void Update(T x, T y, T z)
    {
        if (!m_Valid) {
            if (x != x || y != y || z != z) return; // not a number
            m_MinX = m_MaxX = x;
            m_MinY = m_MaxY = y;
            m_MinZ = m_MaxZ = z;
            m_Valid = true;
            return;
        }
        Widen(m_MinX, m_MaxX, x);
        Widen(m_MinY, m_MaxY, y);
        Widen(m_MinZ, m_MaxZ, z);
    }
    void Update(const Point3D<T>& p) { Update(p.X(), p.Y(), p.Z()); }
    /// Widens to hold another box; an invalid one changes nothing.
    void Update(const Extents3D& box)
    {
        if (!box.m_Valid) return;
        Update(box.m_MinX, box.m_MinY, box.m_MinZ);
        Update(box.m_MaxX, box.m_MaxY, box.m_MaxZ);
    }

    T MinX() const { return m_MinX; }
    T MinY() const { return m_MinY; }
    T MinZ() const { return m_MinZ; }
    T MaxX() const { return m_MaxX; }
    T MaxY() const { return m_MaxY; }
    T MaxZ() const { return m_MaxZ; }
    Point3D<T> MinPnt() const { return {m_MinX, m_MinY, m_MinZ, T{}}; }
    Point3D<T> MaxPnt() const { return {m_MaxX, m_MaxY, m_MaxZ, T{}}; }

    bool operator==(const Extents3D&) const = default;

    /// The box in plan; invalid when this one is.
    operator Extents2D<T>() const
    {
        return m_Valid ? Extents2D<T>({m_MinX, m_MinY}, {m_MaxX, m_MaxY}) : Extents2D<T>();
    }

    /// Replaces the box by the box of its eight transformed corners; an invalid box stays invalid.
    void Transform(const Transformation<Point3D<T>>& t)
    {
        if (!m_Valid) return;
        Extents3D image;
        for (const T x : {m_MinX, m_MaxX})
            for (const T y : {m_MinY, m_MaxY})
                for (const T z : {m_MinZ, m_MaxZ}) image.Update(t.Apply(Point3D<T>(x, y, z)));
        *this = image;
    }

    /// As in the plane, with z.
    CLS::CLASSIFICATION Classify(const Point3D<T>& p) const
    {
        const bool inside = m_Valid && p.X() >= m_MinX && p.X() <= m_MaxX && p.Y() >= m_MinY
                            && p.Y() <= m_MaxY && p.Z() >= m_MinZ && p.Z() <= m_MaxZ;
        return inside ? CLS::INSIDE : CLS::OUTSIDE;
    }
    CLS::CLASSIFICATION Classify(const Extents3D& box) const
    {
        if (!m_Valid || !box.m_Valid || box.m_MinZ > m_MaxZ || box.m_MaxZ < m_MinZ) return CLS::OUTSIDE;
        const CLS::CLASSIFICATION plan = Extents2D<T>(*this).Classify(Extents2D<T>(box));
        if (plan == CLS::OUTSIDE) return plan;
        const bool inside = plan == CLS::INSIDE && box.m_MinZ >= m_MinZ && box.m_MaxZ <= m_MaxZ;
        return inside ? CLS::INSIDE : CLS::STRADDLING;
    }

private:
    static void Widen(T& low, T& high, T value)
    {
        if (value < low) low = value;
        if (value > high) high = value;
    }

    T m_MinX{}, m_MinY{}, m_MinZ{};
    T m_MaxX{}, m_MaxY{}, m_MaxZ{};
    bool m_Valid = false;
};

} // namespace GTL
