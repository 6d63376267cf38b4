#pragma once

#include "support/Extents.h"

#include <limits>
#include <type_traits>

namespace GTL {

/// Maps a box of the plane onto another, each axis by itself: target = (p - source centre) * scale + target
/// centre, scale = target size / source size. With S = double and T = int or double it takes drawing units to
/// device pixels. Whole results are truncated toward zero; what lies beyond the range of int becomes the
/// nearest int, not-a-number the lowest.
template <class S, class T>
class Mapper2D {
public:
    Mapper2D() { Recompute(); }
    Mapper2D(const Mapper2D&) = default;
    Mapper2D& operator=(const Mapper2D&) = default;

    /// A size of zero counts as 1.
    void SetSource(const Point2D<S>& center, S width, S height)
    {
        m_SourceCenter = center;
        m_SourceSize = {width, height};
        Recompute();
    }
    void SetTarget(const Point2D<T>& center, T width, T height)
    {
        m_TargetCenter = center;
        m_TargetSize = {width, height};
        Recompute();
    }
    const Point2D<S>& SourceCenter() const { return m_SourceCenter; }
    const Vector2D<S>& SourceSize() const { return m_SourceSize; }
    const Point2D<T>& TargetCenter() const { return m_TargetCenter; }
    const Vector2D<T>& TargetSize() const { return m_TargetSize; }
    /// Target units a source unit.
    double ScaleX() const { return m_ScaleX; }
    double ScaleY() const { return m_ScaleY; }

    /// Works the scales out anew, after a change of sizes.
    virtual void Recompute()
    {
        for (S* size : {&m_SourceSize.X(), &m_SourceSize.Y()}) *size = *size == S{} ? S(1) : *size;
        for (T* size : {&m_TargetSize.X(), &m_TargetSize.Y()}) *size = *size == T{} ? T(1) : *size;
        m_ScaleX = double(m_TargetSize.X()) / double(m_SourceSize.X());
        m_ScaleY = double(m_TargetSize.Y()) / double(m_SourceSize.Y());
        m_InverseX = double(m_SourceSize.X()) / double(m_TargetSize.X());
        m_InverseY = double(m_SourceSize.Y()) / double(m_TargetSize.Y());
    }
    virtual ~Mapper2D() = default;

    virtual Point2D<T> Map(S x, S y) const { return Map(Point2D<S>(x, y)); }
    virtual Point2D<T> Map(const Point2D<S>& p) const
    {
        return {
            Narrow<T>((double(p.X()) - double(m_SourceCenter.X())) * m_ScaleX + double(m_TargetCenter.X())),
            Narrow<T>((double(p.Y()) - double(m_SourceCenter.Y())) * m_ScaleY + double(m_TargetCenter.Y()))};
    }
    virtual Vector2D<T> MapSize(const Vector2D<S>& size) const { return {MapX(size.X()), MapY(size.Y())}; }
    virtual T MapX(S length) const { return Narrow<T>(double(length) * m_ScaleX); }
    virtual T MapY(S length) const { return Narrow<T>(double(length) * m_ScaleY); }

    virtual Point2D<S> Unmap(T x, T y) const { return Unmap(Point2D<T>(x, y)); }
    virtual Point2D<S> Unmap(const Point2D<T>& p) const
    {
        return {
            Narrow<S>((double(p.X()) - double(m_TargetCenter.X())) * m_InverseX + double(m_SourceCenter.X())),
            Narrow<S>((double(p.Y()) - double(m_TargetCenter.Y())) * m_InverseY
                      + double(m_SourceCenter.Y()))};
    }
    virtual Vector2D<S> UnmapSize(const Vector2D<T>& size) const
    {
        return {UnmapX(size.X()), UnmapY(size.Y())};
    }
    virtual S UnmapX(T length) const { return Narrow<S>(double(length) * m_InverseX); }
    virtual S UnmapY(T length) const { return Narrow<S>(double(length) * m_InverseY); }

private:
    template <class N>
    static N Narrow(double v)
    {
        if constexpr (std::is_integral_v<N>) {
            if (!(v > double((std::numeric_limits<N>::min)()))) return (std::numeric_limits<N>::min)();
            return v < double((std::numeric_limits<N>::max)()) ? N(v) : (std::numeric_limits<N>::max)();
        } else {
            return N(v);
        }
    }

    Point2D<S> m_SourceCenter;
    Vector2D<S> m_SourceSize;
    Point2D<T> m_TargetCenter;
    Vector2D<T> m_TargetSize;
    double m_ScaleX = 1;
    double m_ScaleY = 1;
    double m_InverseX = 1;
    double m_InverseY = 1;
};

} // namespace GTL
