#pragma once

#include <cstdint>
#include <cstdlib>

#include "platform/raster/Canvas.h"
#include "platform/raster/Wide.h"

/// A line one pixel wide. Its pixels are numbered from 0 at the start to Length() - 1; the end is excluded.
///
/// The rule: along the major axis (the one with the larger extent, x when equal) pixels follow each other by
/// 1 from the start; the other coordinate is the exact one rounded to the nearest, halves to the smaller.
class ThinLine {
public:
    ThinLine(CPoint from, CPoint to);

    /// Number of pixels: max(|dx|, |dy|).
    std::int64_t Length() const { return m_Length; }

    struct Range {
        std::int64_t begin;
        std::int64_t end;
    };
    /// The pixels that lie in a rectangle; they follow each other.
    Range Within(const CRect& rect) const;

    /// Draws the pixels of a range that lies within the canvas's rectangle.
    void Draw(const Canvas& canvas, Range range, std::uint32_t color) const;

private:
    /// How far pixel k has gone along the minor axis.
    std::int64_t MinorAt(std::int64_t k) const;
    /// First pixel that has gone at least that far along the minor axis; Length() when none has.
    std::int64_t FirstAt(std::int64_t minor) const;
    CPoint PixelAt(std::int64_t k) const;
    void DrawShort(const Canvas& canvas, Range range, std::uint32_t color) const;

    CPoint m_From;
    std::int64_t m_Length; ///< Extent of the major axis.
    std::int64_t m_Minor;  ///< Extent of the minor axis.
    bool m_IsSteep;        ///< y is the major axis.
    int m_SignX;
    int m_SignY;
    bool m_TiesGoOn; ///< The minor coordinate decreases, so that a half is rounded onwards.
};

/// Fixed-point steps along a line of at most MAX_LENGTH pixels: pixel k has gone
/// (FIRST + k * step) >> BITS along the minor axis, exactly as the rule of ThinLine has it. The exact value
/// plus a half is a multiple of 1 / (2 * 32768), the error of the step sums up to less than 2^-24, and the
/// start is moved by 2^-20 to the side that decides ties.
struct LineSlope {
    static constexpr int BITS = 40;
    static constexpr std::int64_t MAX_LENGTH = 32768;
    static constexpr std::int64_t HALF = std::int64_t{1} << (BITS - 1);
    static constexpr std::int64_t NUDGE = std::int64_t{1} << (BITS - 20);

    std::int64_t step;
    std::int64_t first;

    LineSlope(std::int64_t minor, std::int64_t length, bool tiesGoOn)
        : step(static_cast<std::int64_t>(static_cast<double>(minor) * (std::int64_t{1} << BITS)
                                         / static_cast<double>(length))),
          first(tiesGoOn ? HALF + NUDGE : HALF - NUDGE)
    {
    }
};

/// Draws a line of one colour. Lines inside the canvas's rectangle take a short way.
inline void DrawSolidLine(const Canvas& canvas, CPoint from, CPoint to, std::uint32_t color)
{
    if (canvas.region || !canvas.clip.PtInRect(from) || !canvas.clip.PtInRect(to)) {
        const ThinLine line(from, to);
        return line.Draw(canvas, line.Within(canvas.clip), color);
    }
    const int dx = to.x - from.x;
    const int dy = to.y - from.y;
    const int width = std::abs(dx);
    const int height = std::abs(dy);
    const bool isSteep = height > width;
    const int length = isSteep ? height : width;
    if (length == 0) return;
    const std::ptrdiff_t alongX = dx < 0 ? -1 : 1;
    const std::ptrdiff_t alongY = dy < 0 ? -canvas.stride : canvas.stride;
    const std::ptrdiff_t major = isSteep ? alongY : alongX;
    const std::ptrdiff_t minor = isSteep ? alongX : alongY;
    const LineSlope slope(isSteep ? width : height, length, isSteep ? dx < 0 : dy < 0);

    std::uint32_t* pixel = canvas.At(from.x, from.y);
    std::int64_t gone = slope.first;
    for (int k = 0; k < length; ++k) {
        pixel[(gone >> LineSlope::BITS) * minor] = color;
        pixel += major;
        gone += slope.step;
    }
}
