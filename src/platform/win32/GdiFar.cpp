#include "platform/win32/GdiFar.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "platform/win32/GdiContext.h"

namespace {
/// Up to this, in units, solid lines of one pixel are GDI's matter.
constexpr int FAR_AWAY = 1 << 26;
/// What is cut goes on for so many units beyond what can be seen.
constexpr double MARGIN = 1 << 14;
/// All patterns of dashed thin lines are as long as this, or go into it.
constexpr double THIN_PERIOD = 24;

bool IsBeyond(std::span<const CPoint> points, int limit)
{
    return std::any_of(points.begin(), points.end(), [limit](const CPoint& p) {
        return p.x > limit || p.x < -limit - 1 || p.y > limit || p.y < -limit - 1;
    });
}

bool IsThinSolid(const CPen* pen)
{
    if (!pen) return true;
    const bool isSolid = pen->Style() == PS_SOLID || pen->Style() == PS_INSIDEFRAME;
    return !pen->IsGeometric() && isSolid && pen->Width() <= 1;
}

/// Length after which dashes repeat, 0 for none; of thin ones along the longer axis, of others along the
/// line.
double PeriodOf(const CPen* pen)
{
    if (!pen || pen->Style() == PS_SOLID || pen->Style() == PS_INSIDEFRAME) return 0;
    if (!pen->IsGeometric()) return THIN_PERIOD;
    const std::span<const int> pattern = pen->Pattern();
    return std::accumulate(pattern.begin(), pattern.end(), 0.0) * (pattern.size() % 2 == 0 ? 1 : 2);
}

/// A part of a line, in fractions of its length.
struct Part {
    double begin = 0;
    double end = 1;

    void Cut(double start, double delta, double low, double high)
    {
        if (delta == 0) {
            if (start < low || start > high) end = -1;
            return;
        }
        const double a = (low - start) / delta;
        const double b = (high - start) / delta;
        begin = std::max(begin, std::min(a, b));
        end = std::min(end, std::max(a, b));
    }
};

CPoint Between(const CPoint& from, const CPoint& to, double fraction)
{
    const auto at = [fraction](int a, int b) {
        return static_cast<int>(std::lround(a + (static_cast<double>(b) - a) * fraction));
    };
    return {at(from.x, to.x), at(from.y, to.y)};
}

void DrawCut(HDC hdc, const CPoint& from, const CPoint& to, const CPen* pen)
{
    RECT seen = {};
    if (::GetClipBox(hdc, &seen) <= NULLREGION) return;
    const auto [left, right] = std::minmax(seen.left, seen.right);
    const auto [top, bottom] = std::minmax(seen.top, seen.bottom);
    const double dx = static_cast<double>(to.x) - from.x;
    const double dy = static_cast<double>(to.y) - from.y;
    const double margin = MARGIN + (pen ? pen->Width() : 0);
    Part part;
    part.Cut(from.x, dx, left - margin, right + margin);
    part.Cut(from.y, dy, top - margin, bottom + margin);
    if (part.begin >= part.end) return;
    const double period = PeriodOf(pen);
    const double length =
        pen && pen->IsGeometric() ? std::hypot(dx, dy) : std::max(std::fabs(dx), std::fabs(dy));
    if (period > 0) part.begin = std::floor(part.begin * length / period) * period / length;
    const CPoint start = Between(from, to, part.begin);
    const CPoint end = Between(from, to, part.end);
    ::MoveToEx(hdc, start.x, start.y, nullptr);
    ::LineTo(hdc, end.x, end.y);
}

/// Within what GDI maps without going over the range of int.
CPoint WithinReach(const CPoint& p)
{
    constexpr int REACH = 1 << 30;
    return {std::clamp(p.x, -REACH, REACH), std::clamp(p.y, -REACH, REACH)};
}
} // namespace

bool GdiFar::Reach(std::span<const CPoint> points)
{
    return IsBeyond(points, CDC::EXACT_REACH);
}

bool GdiFar::HasToCut(std::span<const CPoint> points, const CPen* pen)
{
    return IsBeyond(points, IsThinSolid(pen) ? FAR_AWAY : CDC::EXACT_REACH);
}

void GdiFar::LineTo(HDC hdc, const CPoint& from, const CPoint& to, const CPen* pen)
{
    DrawCut(hdc, from, to, pen);
    ::MoveToEx(hdc, to.x, to.y, nullptr);
}

void GdiFar::Polyline(HDC hdc, std::span<const CPoint> points, const CPen* pen)
{
    const POINT position = GdiValue::Ask(::GetCurrentPositionEx, hdc);
    for (std::size_t i = 1; i < points.size(); ++i) DrawCut(hdc, points[i - 1], points[i], pen);
    ::MoveToEx(hdc, position.x, position.y, nullptr);
}

bool GdiFar::Polygon(HDC hdc, std::span<const CPoint> points, const CPen* pen)
{
    std::vector<CPoint> ring(points.size());
    std::transform(points.begin(), points.end(), ring.begin(), WithinReach);
    if (!GdiDrawing::FillVisible(hdc, ring)) return false;
    ring.assign(points.begin(), points.end());
    ring.push_back(points.front());
    Polyline(hdc, ring, pen);
    return true;
}
