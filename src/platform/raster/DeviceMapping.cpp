#include "platform/DeviceMapping.h"

#include <cmath>

#include "platform/raster/Wide.h"

namespace {
/// Nearest whole number, halves up; beyond the range of int the nearest int.
int Rounded(double v)
{
    constexpr double LOWEST = -2147483648.0;
    constexpr double HIGHEST = 2147483647.0;
    const double whole = std::floor(v + 0.5);
    if (!(whole > LOWEST)) return ToInt(static_cast<std::int64_t>(LOWEST));
    return whole < HIGHEST ? static_cast<int>(whole) : ToInt(static_cast<std::int64_t>(HIGHEST));
}

/// An extent shrunk by a factor, not to nothing.
int Shrunk(int extent, double factor)
{
    const int shrunk = Rounded(extent * factor);
    if (shrunk != 0) return shrunk;
    return extent < 0 ? -1 : 1;
}
} // namespace

bool DeviceMapping::SetMode(int mode)
{
    constexpr CSize TENTHS_OF_MM_IN_AN_INCH{254, 254};
    constexpr CSize PIXELS_IN_AN_INCH{96, -96};
    if (mode != MM_TEXT && mode != MM_ISOTROPIC && mode != MM_ANISOTROPIC) return false;
    if (mode == m_Mode) return true;
    m_Mode = mode;
    if (mode == MM_TEXT) m_WindowExt = m_ViewportExt = {1, 1};
    if (mode == MM_ISOTROPIC) {
        m_WindowExt = TENTHS_OF_MM_IN_AN_INCH;
        m_ViewportExt = PIXELS_IN_AN_INCH;
    }
    Update();
    return true;
}

void DeviceMapping::SetWindowOrg(CPoint origin)
{
    m_WindowOrg = origin;
    Update();
}

void DeviceMapping::SetViewportOrg(CPoint origin)
{
    m_ViewportOrg = origin;
    Update();
}

bool DeviceMapping::SetWindowExt(CSize extent)
{
    if (extent.cx == 0 || extent.cy == 0) return false;
    if (m_Mode == MM_TEXT) return true;
    m_WindowExt = extent;
    KeepAspect();
    return true;
}

bool DeviceMapping::SetViewportExt(CSize extent)
{
    if (extent.cx == 0 || extent.cy == 0) return false;
    if (m_Mode == MM_TEXT) return true;
    m_ViewportExt = extent;
    KeepAspect();
    return true;
}

void DeviceMapping::KeepAspect()
{
    const double x = std::fabs(static_cast<double>(m_ViewportExt.cx) / m_WindowExt.cx);
    const double y = std::fabs(static_cast<double>(m_ViewportExt.cy) / m_WindowExt.cy);
    if (m_Mode == MM_ISOTROPIC && x > y) m_ViewportExt.cx = Shrunk(m_ViewportExt.cx, y / x);
    if (m_Mode == MM_ISOTROPIC && y > x) m_ViewportExt.cy = Shrunk(m_ViewportExt.cy, x / y);
    Update();
}

void DeviceMapping::Update()
{
    const auto isUnit = [](int to, int from) {
        return to == from || std::int64_t{to} == -std::int64_t{from};
    };
    m_HasUnitScale = isUnit(m_ViewportExt.cx, m_WindowExt.cx) && isUnit(m_ViewportExt.cy, m_WindowExt.cy);
    m_SignX = (m_ViewportExt.cx < 0) == (m_WindowExt.cx < 0) ? 1 : -1;
    m_SignY = (m_ViewportExt.cy < 0) == (m_WindowExt.cy < 0) ? 1 : -1;
    m_ShiftX = m_ViewportOrg.x - std::int64_t{m_SignX} * m_WindowOrg.x;
    m_ShiftY = m_ViewportOrg.y - std::int64_t{m_SignY} * m_WindowOrg.y;
    if (m_HasUnitScale) return;
    m_X = Axis::Of(m_WindowOrg.x, m_WindowExt.cx, m_ViewportOrg.x, m_ViewportExt.cx);
    m_Y = Axis::Of(m_WindowOrg.y, m_WindowExt.cy, m_ViewportOrg.y, m_ViewportExt.cy);
    // The way back is that of the inverse matrix in the same precision: each scale over the determinant.
    const double determinant = static_cast<double>(m_X.scale * m_Y.scale);
    m_BackX.scale = static_cast<float>(static_cast<double>(m_Y.scale) / determinant);
    m_BackY.scale = static_cast<float>(static_cast<double>(m_X.scale) / determinant);
    m_BackX.shift = -m_X.shift * m_BackX.scale;
    m_BackY.shift = -m_Y.shift * m_BackY.scale;
}

int DeviceMapping::Axis::Map(int v) const
{
    return Rounded(static_cast<double>(v) * static_cast<double>(scale) + static_cast<double>(shift));
}

DeviceMapping::Axis DeviceMapping::Axis::Of(int windowOrg, int windowExt, int viewportOrg, int viewportExt)
{
    const double exact = static_cast<double>(viewportExt) / windowExt;
    return {static_cast<float>(exact), static_cast<float>(viewportOrg - exact * windowOrg)};
}

CPoint DeviceMapping::ToLogical(CPoint p) const
{
    if (!m_HasUnitScale) return {m_BackX.Map(p.x), m_BackY.Map(p.y)};
    return {Saturate(m_SignX * (p.x - m_ShiftX)), Saturate(m_SignY * (p.y - m_ShiftY))};
}

double DeviceMapping::ScaleX() const
{
    return m_HasUnitScale ? 1 : std::fabs(static_cast<double>(m_X.scale));
}

double DeviceMapping::ScaleY() const
{
    return m_HasUnitScale ? 1 : std::fabs(static_cast<double>(m_Y.scale));
}

bool DeviceMapping::IsMirrored() const
{
    return m_SignX * m_SignY < 0;
}
