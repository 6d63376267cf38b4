#pragma once

#include <cstdint>

#include "platform/CPoint.h"
#include "platform/CSize.h"
#include "platform/Export.h"
#include "platform/GdiConstants.h"

/// The map of logical to device coordinates of a context:
/// device = (logical - window origin) * viewport extent / window extent + viewport origin, for each axis,
/// rounded to the nearest pixel, halves up. Results beyond the range of int are the nearest int.
///
/// As with GDI, the map is logical * scale + shift with both held in single precision, unless the extents
/// are equal but for their signs; then it is exact. A device's pixels are square.
class HALYARD_API DeviceMapping {
public:
    int Mode() const { return m_Mode; }
    CPoint WindowOrg() const { return m_WindowOrg; }
    CSize WindowExt() const { return m_WindowExt; }
    CPoint ViewportOrg() const { return m_ViewportOrg; }
    CSize ViewportExt() const { return m_ViewportExt; }

    /// MM_TEXT makes both extents (1, 1). MM_ISOTROPIC begins with tenths of a millimetre at 96 pixels an
    /// inch, y up. MM_ANISOTROPIC keeps the extents. False, and no change, for another mode.
    bool SetMode(int mode);
    void SetWindowOrg(CPoint origin);
    void SetViewportOrg(CPoint origin);
    /// Without effect in MM_TEXT. False, and no change, for an extent of zero. In MM_ISOTROPIC the viewport
    /// extent is shrunk on one axis until both axes have the same scale.
    bool SetWindowExt(CSize extent);
    bool SetViewportExt(CSize extent);

    CPoint ToDevice(CPoint p) const { return {MapX(p.x), MapY(p.y)}; }
    int MapX(int x) const
    {
        return m_HasUnitScale ? Saturate(std::int64_t{m_SignX} * x + m_ShiftX) : m_X.Map(x);
    }
    int MapY(int y) const
    {
        return m_HasUnitScale ? Saturate(std::int64_t{m_SignY} * y + m_ShiftY) : m_Y.Map(y);
    }
    CPoint ToLogical(CPoint p) const;

    /// Device pixels a logical unit, positive.
    double ScaleX() const;
    double ScaleY() const;
    /// The map turns the sense of rotation (y up, or x to the left, but not both).
    bool IsMirrored() const;

private:
    static int Saturate(std::int64_t v)
    {
        constexpr std::int64_t LOWEST = -2147483647LL - 1;
        constexpr std::int64_t HIGHEST = 2147483647LL;
        return static_cast<int>(v < LOWEST ? LOWEST : v > HIGHEST ? HIGHEST : v);
    }
    /// v * scale + shift, rounded.
    struct Axis {
        float scale = 1;
        float shift = 0;

        int Map(int v) const;
        static Axis Of(int windowOrg, int windowExt, int viewportOrg, int viewportExt);
    };

    void KeepAspect();
    void Update();

    int m_Mode = MM_TEXT;
    CPoint m_WindowOrg;
    CPoint m_ViewportOrg;
    CSize m_WindowExt{1, 1};
    CSize m_ViewportExt{1, 1};
    bool m_HasUnitScale = true;
    int m_SignX = 1;
    int m_SignY = 1;
    std::int64_t m_ShiftX = 0;
    std::int64_t m_ShiftY = 0;
    Axis m_X;
    Axis m_Y;
    Axis m_BackX;
    Axis m_BackY;
};
