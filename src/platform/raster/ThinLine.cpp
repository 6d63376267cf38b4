#include "platform/raster/ThinLine.h"

ThinLine::ThinLine(CPoint from, CPoint to) : m_From(from)
{
    const std::int64_t dx = std::int64_t{to.x} - from.x;
    const std::int64_t dy = std::int64_t{to.y} - from.y;
    m_SignX = dx < 0 ? -1 : 1;
    m_SignY = dy < 0 ? -1 : 1;
    m_IsSteep = std::abs(dy) > std::abs(dx);
    m_Length = m_IsSteep ? std::abs(dy) : std::abs(dx);
    m_Minor = m_IsSteep ? std::abs(dx) : std::abs(dy);
    m_TiesGoOn = (m_IsSteep ? m_SignX : m_SignY) < 0;
}

std::int64_t ThinLine::MinorAt(std::int64_t k) const
{
    // Nearest to minor * k / length, a half going on or staying behind.
    const WideInt twice = WideInt{2} * m_Minor * k + m_Length - (m_TiesGoOn ? 0 : 1);
    return static_cast<std::int64_t>(twice / (2 * m_Length));
}

std::int64_t ThinLine::FirstAt(std::int64_t minor) const
{
    if (minor <= 0) return 0;
    if (minor > m_Minor) return m_Length;
    // 2 * m_Minor * k >= m_Length * (2 * minor - 1), without equality when a half stays behind.
    const WideInt bound = static_cast<WideInt>(m_Length) * (2 * minor - 1);
    const WideInt k = m_TiesGoOn ? (bound + 2 * m_Minor - 1) / (2 * m_Minor) : bound / (2 * m_Minor) + 1;
    return k < m_Length ? static_cast<std::int64_t>(k) : m_Length;
}

ThinLine::Range ThinLine::Within(const CRect& rect) const
{
    if (m_Length == 0 || rect.IsRectEmpty()) return {0, 0};
    // Distances from the start along each axis that lie in the rectangle, both ends included.
    const std::int64_t x0 =
        m_SignX > 0 ? std::int64_t{rect.left} - m_From.x : std::int64_t{m_From.x} - (rect.right - 1);
    const std::int64_t y0 =
        m_SignY > 0 ? std::int64_t{rect.top} - m_From.y : std::int64_t{m_From.y} - (rect.bottom - 1);
    const std::int64_t x1 = x0 + rect.Width() - 1;
    const std::int64_t y1 = y0 + rect.Height() - 1;
    const std::int64_t majorBegin = m_IsSteep ? y0 : x0;
    const std::int64_t majorEnd = (m_IsSteep ? y1 : x1) + 1;
    const std::int64_t minorFirst = m_IsSteep ? x0 : y0;
    const std::int64_t minorLast = m_IsSteep ? x1 : y1;
    if (minorLast < 0 || minorFirst > m_Minor) return {0, 0};
    const std::int64_t begin = std::max({std::int64_t{0}, majorBegin, FirstAt(minorFirst)});
    const std::int64_t end = std::min({m_Length, majorEnd, FirstAt(minorLast + 1)});
    return begin < end ? Range{begin, end} : Range{0, 0};
}

CPoint ThinLine::PixelAt(std::int64_t k) const
{
    const std::int64_t minor = MinorAt(k);
    const std::int64_t dx = m_IsSteep ? minor : k;
    const std::int64_t dy = m_IsSteep ? k : minor;
    return {static_cast<int>(m_From.x + m_SignX * dx), static_cast<int>(m_From.y + m_SignY * dy)};
}

void ThinLine::Draw(const Canvas& canvas, Range range, std::uint32_t color) const
{
    if (range.begin >= range.end) return;
    if (!canvas.region && m_Length <= LineSlope::MAX_LENGTH) return DrawShort(canvas, range, color);
    CPoint p = PixelAt(range.begin);
    // Bresenham's error of the range's first pixel: 2 * minor * k - length - 2 * length * (minor gone).
    const WideInt gone = WideInt{2} * m_Length * MinorAt(range.begin);
    auto error = static_cast<std::int64_t>(WideInt{2} * m_Minor * range.begin - m_Length - gone);
    const std::int64_t threshold = m_TiesGoOn ? 0 : 1;
    for (std::int64_t k = range.begin; k < range.end; ++k) {
        if (!canvas.region || canvas.region->Holds(p)) *canvas.At(p.x, p.y) = color;
        error += 2 * m_Minor;
        const bool steps = error >= threshold;
        if (steps) error -= 2 * m_Length;
        if (m_IsSteep || steps) p.y += m_SignY;
        if (!m_IsSteep || steps) p.x += m_SignX;
    }
}

void ThinLine::DrawShort(const Canvas& canvas, Range range, std::uint32_t color) const
{
    const std::ptrdiff_t alongY = m_SignY * canvas.stride;
    const std::ptrdiff_t major = m_IsSteep ? alongY : m_SignX;
    const std::ptrdiff_t minor = m_IsSteep ? m_SignX : alongY;
    const LineSlope slope(m_Minor, m_Length, m_TiesGoOn);
    // An index, not a pointer: the start may lie outside the bitmap.
    std::ptrdiff_t place = m_From.y * canvas.stride + m_From.x + range.begin * major;
    std::int64_t gone = slope.first + range.begin * slope.step;
    for (std::int64_t k = range.begin; k < range.end; ++k) {
        canvas.pixels[place + (gone >> LineSlope::BITS) * minor] = color;
        place += major;
        gone += slope.step;
    }
}
