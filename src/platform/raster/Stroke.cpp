#include "platform/raster/Stroke.h"

#include <algorithm>
#include <cmath>

#include "platform/raster/ThinLine.h"

namespace {
/// An interval of x; empty when low > high.
struct Interval {
    double low = 1;
    double high = 0;

    bool IsEmpty() const { return !(low <= high); }
    void Cut(double a, double b)
    {
        low = std::max(low, std::min(a, b));
        high = std::min(high, std::max(a, b));
    }
    void Join(const Interval& other)
    {
        if (other.IsEmpty()) return;
        const bool wasEmpty = IsEmpty();
        low = wasEmpty ? other.low : std::min(low, other.low);
        high = wasEmpty ? other.high : std::max(high, other.high);
    }
};

/// Where a row crosses a disc: rows -radius <= dy < radius from its centre.
Interval DiscRow(double x, double dy, double radius)
{
    if (dy < -radius || dy >= radius) return {};
    const double half = std::sqrt(radius * radius - dy * dy);
    return {x - half, x + half};
}

/// A line's rectangle: `length` along the unit vector (ux, uy) from a start, `radius` to both sides. The
/// columns of a row lie between its two long sides and between its two ends; each bound is linear in the row.
class Bar {
public:
    Bar(double x, double ux, double uy, double length, double radius)
        : m_X(x), m_Ux(ux), m_Uy(uy), m_Length(length), m_Radius(radius)
    {
        if (uy != 0) m_SideStep = ux / uy, m_SideReach = radius / std::fabs(uy);
        if (ux != 0) m_EndStep = -uy / ux, m_EndReach = length / ux;
    }

    /// Where a row crosses it, dy below the start. Level lines hold the rows -radius <= dy < radius.
    Interval Row(double dy) const
    {
        if (m_Uy == 0 && (dy < -m_Radius || dy >= m_Radius)) return {};
        if (m_Ux == 0 && (dy * m_Uy < 0 || dy * m_Uy > m_Length)) return {};
        Interval row{-HUGE_VAL, HUGE_VAL};
        if (m_Uy != 0) row.Cut(m_X + dy * m_SideStep - m_SideReach, m_X + dy * m_SideStep + m_SideReach);
        if (m_Ux != 0) row.Cut(m_X + dy * m_EndStep, m_X + dy * m_EndStep + m_EndReach);
        return row;
    }

private:
    double m_X;
    double m_Ux;
    double m_Uy;
    double m_Length;
    double m_Radius;
    double m_SideStep = 0;
    double m_SideReach = 0;
    double m_EndStep = 0;
    double m_EndReach = 0;
};

/// The part of a line, as fractions of its length, that comes within `margin` of a rectangle; empty when
/// none.
Interval Visible(CPoint from, CPoint to, const CRect& rect, double margin)
{
    Interval part{0, 1};
    const auto cut = [&part](double start, double delta, double low, double high) {
        if (delta != 0)
            part.Cut((low - start) / delta, (high - start) / delta);
        else if (start < low || start > high)
            part = {};
    };
    cut(from.x, static_cast<double>(to.x) - from.x, rect.left - margin, rect.right + margin);
    cut(from.y, static_cast<double>(to.y) - from.y, rect.top - margin, rect.bottom + margin);
    return part;
}
} // namespace

StrokePath::StrokePath(const Canvas& canvas, const Stroke& stroke, CPoint start)
    : m_Canvas(canvas), m_Stroke(stroke), m_At(start)
{
}

void StrokePath::LineTo(CPoint to)
{
    const bool hasDashes = m_Stroke.patternCount > 0;
    if (m_Stroke.width <= 0 || m_Canvas.clip.IsRectEmpty()) return;
    if (m_Stroke.isThin && !hasDashes)
        DrawSolidLine(m_Canvas, m_At, to, m_Stroke.pixel);
    else if (m_Stroke.isThin)
        ThinDashes(to);
    else if (hasDashes)
        WideDashes(to);
    else
        WideLine(to);
    m_At = to;
}

std::size_t StrokePath::PatternAt(double phase, double& left) const
{
    std::size_t i = 0;
    left = m_Stroke.pattern[0] - phase;
    while (left <= 0 && i + 1 < m_Stroke.patternCount) left += m_Stroke.pattern[++i];
    return i;
}

void StrokePath::ThinDashes(CPoint to)
{
    const ThinLine line(m_At, to);
    const ThinLine::Range shown = line.Within(m_Canvas.clip);
    double left = 0;
    std::size_t i = PatternAt(std::fmod(m_Phase + static_cast<double>(shown.begin), m_Stroke.period), left);
    for (std::int64_t k = shown.begin; k < shown.end;) {
        const std::int64_t end = std::min(shown.end, k + static_cast<std::int64_t>(left));
        const bool isDash = i % 2 == 0;
        if (isDash)
            line.Draw(m_Canvas, {k, end}, m_Stroke.pixel);
        else if (m_Stroke.hasPaintedGaps)
            line.Draw(m_Canvas, {k, end}, m_Stroke.gapPixel);
        k = end;
        i = (i + 1) % m_Stroke.patternCount;
        left = m_Stroke.pattern[i];
    }
    m_Phase = std::fmod(m_Phase + static_cast<double>(line.Length()), m_Stroke.period);
}

void StrokePath::WideLine(CPoint to)
{
    Capsule(m_At.x, m_At.y, to.x, to.y);
}

void StrokePath::WideDashes(CPoint to)
{
    const double dx = static_cast<double>(to.x) - m_At.x;
    const double dy = static_cast<double>(to.y) - m_At.y;
    const double length = std::hypot(dx, dy);
    if (length == 0) return;
    const Interval shown = Visible(m_At, to, m_Canvas.clip, m_Stroke.width);
    double at = shown.low * length;
    const double end = shown.IsEmpty() ? at : shown.high * length;
    double left = 0;
    std::size_t i = PatternAt(std::fmod(m_Phase + at, m_Stroke.period), left);
    while (at < end) {
        const double next = std::min(at + left, end);
        const double a = at / length;
        const double b = next / length;
        if (i % 2 == 0) Capsule(m_At.x + a * dx, m_At.y + a * dy, m_At.x + b * dx, m_At.y + b * dy);
        at = next;
        i = (i + 1) % m_Stroke.patternCount;
        left = m_Stroke.pattern[i];
    }
    m_Phase = std::fmod(m_Phase + length, m_Stroke.period);
}

void StrokePath::Capsule(double x0, double y0, double x1, double y1)
{
    const double radius = m_Stroke.width / 2;
    const CRect& clip = m_Canvas.clip;
    if (++m_Pieces == MANY_PIECES) m_Covered.assign(static_cast<std::size_t>(clip.Height()), {0, 0});
    if (std::max(x0, x1) + radius < clip.left || std::min(x0, x1) - radius > clip.right) return;
    const double length = std::hypot(x1 - x0, y1 - y0);
    const Bar bar{x0, length > 0 ? (x1 - x0) / length : 1, length > 0 ? (y1 - y0) / length : 0, length,
                  radius};
    const int top = CeilWithin(std::min(y0, y1) - radius, clip.top, clip.bottom);
    const int bottom = CeilWithin(std::max(y0, y1) + radius, clip.top, clip.bottom);
    for (int y = top; y < bottom; ++y) {
        Interval row = DiscRow(x0, y - y0, radius);
        row.Join(DiscRow(x1, y - y1, radius));
        if (length > 0) row.Join(bar.Row(y - y0));
        if (row.IsEmpty()) continue;
        FillRow(y, CeilWithin(row.low, clip.left, clip.right), CeilWithin(row.high, clip.left, clip.right));
    }
}

void StrokePath::FillRow(int y, int left, int right)
{
    if (left >= right) return;
    if (m_Covered.empty()) return m_Canvas.FillSpan(y, left, right, m_Stroke.pixel);
    Covered& covered = m_Covered[static_cast<std::size_t>(y - m_Canvas.clip.top)];
    if (left >= covered.left && right <= covered.right) return;
    m_Canvas.FillSpan(y, left, right, m_Stroke.pixel);
    const bool touches = left <= covered.right && covered.left <= right;
    if (touches)
        covered = {std::min(left, covered.left), std::max(right, covered.right)};
    else if (right - left > covered.right - covered.left)
        covered = {left, right};
}
