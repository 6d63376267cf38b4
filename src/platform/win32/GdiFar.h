#pragma once

#include <span>

#include "platform/CDC.h"
#include "platform/win32/WindowsApi.h"

/// Lines and areas that reach farther than GDI goes with them: its coordinates end at 2^27 pixels, and it
/// walks dashes and the border of wide lines over their whole length, whether they are seen or not. What
/// reaches so far is cut near what can be seen, to whole units: it lies within one of its place.
class GdiFar {
public:
    /// Whether points reach so far that the pen matters.
    static bool Reach(std::span<const CPoint> points);
    /// Whether GDI is to be spared lines between these points.
    static bool HasToCut(std::span<const CPoint> points, const CPen* pen);

    /// Each draws with what is selected; the pen is the one that was selected here, null for none. Positions
    /// are left as the functions of GDI leave them. Dashes start anew at each segment.
    static void LineTo(HDC hdc, const CPoint& from, const CPoint& to, const CPen* pen);
    static void Polyline(HDC hdc, std::span<const CPoint> points, const CPen* pen);
    static bool Polygon(HDC hdc, std::span<const CPoint> points, const CPen* pen);
};
