// The map of coordinates: GDI's own where the host's context is attached, that of square pixels in memory
// contexts.
#include "platform/win32/GdiContext.h"

void CDC::System::ApplyMap()
{
    const CSize window = map.WindowExt();
    const CSize viewport = map.ViewportExt();
    ::SetMapMode(hdc, map.Mode() == MM_TEXT ? MM_TEXT : MM_ANISOTROPIC);
    ::SetWindowExtEx(hdc, window.cx, window.cy, nullptr);
    ::SetViewportExtEx(hdc, viewport.cx, viewport.cy, nullptr);
    ::SetWindowOrgEx(hdc, map.WindowOrg().x, map.WindowOrg().y, nullptr);
    ::SetViewportOrgEx(hdc, map.ViewportOrg().x, map.ViewportOrg().y, nullptr);
}

int CDC::SetMapMode(int mode)
{
    System& system = System::Of(*this);
    if (system.isAttached) return ::SetMapMode(system.hdc, mode);
    const int before = system.map.Mode();
    if (!system.map.SetMode(mode)) return 0;
    system.ApplyMap();
    return before;
}

CPoint CDC::SetWindowOrg(int x, int y)
{
    System& system = System::Of(*this);
    POINT replaced = {};
    if (system.isAttached)
        return ::SetWindowOrgEx(system.hdc, x, y, &replaced) ? GdiValue::PointOf(replaced) : CPoint();
    const CPoint before = system.map.WindowOrg();
    system.map.SetWindowOrg({x, y});
    system.ApplyMap();
    return before;
}

CPoint CDC::SetViewportOrg(int x, int y)
{
    System& system = System::Of(*this);
    POINT replaced = {};
    if (system.isAttached)
        return ::SetViewportOrgEx(system.hdc, x, y, &replaced) ? GdiValue::PointOf(replaced) : CPoint();
    const CPoint before = system.map.ViewportOrg();
    system.map.SetViewportOrg({x, y});
    system.ApplyMap();
    return before;
}

CSize CDC::SetWindowExt(int cx, int cy)
{
    System& system = System::Of(*this);
    SIZE replaced = {};
    if (system.isAttached)
        return ::SetWindowExtEx(system.hdc, cx, cy, &replaced) ? GdiValue::SizeOf(replaced) : CSize();
    const CSize before = system.map.WindowExt();
    if (!system.map.SetWindowExt({cx, cy})) return {};
    system.ApplyMap();
    return before;
}

CSize CDC::SetViewportExt(int cx, int cy)
{
    System& system = System::Of(*this);
    SIZE replaced = {};
    if (system.isAttached)
        return ::SetViewportExtEx(system.hdc, cx, cy, &replaced) ? GdiValue::SizeOf(replaced) : CSize();
    const CSize before = system.map.ViewportExt();
    if (!system.map.SetViewportExt({cx, cy})) return {};
    system.ApplyMap();
    return before;
}

int CDC::GetMapMode() const
{
    const System& system = System::Of(*this);
    return system.isAttached ? ::GetMapMode(system.hdc) : system.map.Mode();
}

CPoint CDC::GetWindowOrg() const
{
    const System& system = System::Of(*this);
    if (!system.isAttached) return system.map.WindowOrg();
    return GdiValue::PointOf(GdiValue::Ask(::GetWindowOrgEx, system.hdc));
}

CPoint CDC::GetViewportOrg() const
{
    const System& system = System::Of(*this);
    if (!system.isAttached) return system.map.ViewportOrg();
    return GdiValue::PointOf(GdiValue::Ask(::GetViewportOrgEx, system.hdc));
}

CSize CDC::GetWindowExt() const
{
    const System& system = System::Of(*this);
    if (!system.isAttached) return system.map.WindowExt();
    return GdiValue::SizeOf(GdiValue::Ask(::GetWindowExtEx, system.hdc));
}

CSize CDC::GetViewportExt() const
{
    const System& system = System::Of(*this);
    if (!system.isAttached) return system.map.ViewportExt();
    return GdiValue::SizeOf(GdiValue::Ask(::GetViewportExtEx, system.hdc));
}

void CDC::DPtoLP(CPoint* points, int count) const
{
    const System& system = System::Of(*this);
    if (system.isAttached && count > 0) ::DPtoLP(system.hdc, PointsOf(points), count);
    for (int i = 0; !system.isAttached && i < count; ++i) points[i] = system.map.ToLogical(points[i]);
}

void CDC::LPtoDP(CPoint* points, int count) const
{
    const System& system = System::Of(*this);
    if (system.isAttached && count > 0) ::LPtoDP(system.hdc, PointsOf(points), count);
    for (int i = 0; !system.isAttached && i < count; ++i) points[i] = system.map.ToDevice(points[i]);
}
