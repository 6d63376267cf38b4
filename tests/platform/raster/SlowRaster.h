#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include "platform/CDC.h"

/// The rules of pixels, pixel by pixel in exact arithmetic: what the device has to draw.
namespace SlowRaster {
__extension__ using Exact = __int128;

constexpr int WIDTH = 61;
constexpr int HEIGHT = 47;
constexpr std::uint32_t PAPER = 0xFFFFFF;
constexpr std::uint32_t INK = 0x102030;
constexpr std::uint32_t FILL = 0xC08040;
/// The same as device colour words.
constexpr unsigned long INK_COLOR = 0x302010;
constexpr unsigned long FILL_COLOR = 0x4080C0;

using Image = std::vector<std::uint32_t>;

inline Exact Ceil(Exact a, Exact b)
{
    return a >= 0 ? (a + b - 1) / b : -(-a / b);
}

inline void Put(Image& image, Exact x, Exact y, std::uint32_t pixel)
{
    if (x >= 0 && x < WIDTH && y >= 0 && y < HEIGHT) image[static_cast<std::size_t>(y * WIDTH + x)] = pixel;
}

inline std::int64_t Length(CPoint a, CPoint b)
{
    const std::int64_t dx = std::int64_t{b.x} - a.x, dy = std::int64_t{b.y} - a.y;
    return std::max(dx < 0 ? -dx : dx, dy < 0 ? -dy : dy);
}

/// Pixel k of a line, for every k that can show: visit(k, x, y). The minor coordinate is ceil(v - 1/2).
template <class Visit>
void ForLine(CPoint a, CPoint b, Visit visit)
{
    const Exact dx = Exact{b.x} - a.x, dy = Exact{b.y} - a.y, n = Length(a, b);
    const bool isSteep = (dy < 0 ? -dy : dy) > (dx < 0 ? -dx : dx);
    for (int major = 0; n > 0 && major < (isSteep ? HEIGHT : WIDTH); ++major) {
        const Exact k =
            isSteep ? (major - Exact{a.y}) * (dy < 0 ? -1 : 1) : (major - Exact{a.x}) * (dx < 0 ? -1 : 1);
        if (k < 0 || k >= n) continue;
        const Exact minor = Ceil(2 * n * (isSteep ? a.x : a.y) + 2 * (isSteep ? dx : dy) * k - n, 2 * n);
        visit(static_cast<std::int64_t>(k), isSteep ? minor : Exact{major}, isSteep ? Exact{major} : minor);
    }
}

inline void Line(Image& image, CPoint a, CPoint b, std::uint32_t pixel)
{
    ForLine(a, b, [&](std::int64_t, Exact x, Exact y) { Put(image, x, y, pixel); });
}

/// Whether the pixel is inside: the crossings of its row at or left of it, by number or by direction.
inline bool IsInside(const std::vector<CPoint>& polygon, int fillMode, int x, int y)
{
    int crossings = 0, winding = 0;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        CPoint a = polygon[i], b = polygon[(i + 1) % polygon.size()];
        const int direction = a.y < b.y ? 1 : -1;
        if (a.y > b.y) std::swap(a, b);
        if (y < a.y || y >= b.y) continue;
        const Exact height = Exact{b.y} - a.y;
        if (Exact{a.x} * height + (Exact{b.x} - a.x) * (y - Exact{a.y}) > x * height) continue;
        ++crossings;
        winding += direction;
    }
    return fillMode == WINDING ? winding != 0 : crossings % 2 != 0;
}

inline void Polygon(Image& image, const std::vector<CPoint>& polygon, int fillMode, std::uint32_t pixel)
{
    for (int y = 0; y < HEIGHT; ++y)
        for (int x = 0; x < WIDTH; ++x)
            if (IsInside(polygon, fillMode, x, y)) Put(image, x, y, pixel);
}

/// A small context on white paper.
struct Paper {
    Paper()
    {
        EXPECT_TRUE(bitmap.CreateBitmap(WIDTH, HEIGHT));
        dc.SelectObject(&bitmap);
        Clear();
    }
    void Clear() { std::fill_n(bitmap.Pixels(), WIDTH * HEIGHT, PAPER); }
    Image Pixels() const { return Image(bitmap.Pixels(), bitmap.Pixels() + WIDTH * HEIGHT); }
    static Image Blank() { return Image(WIDTH * HEIGHT, PAPER); }
    std::uint32_t At(int x, int y) const { return bitmap.Row(y)[x]; }

    CBitmap bitmap;
    CDC dc;
};

/// Points near and far, also at the ends of what a device draws exactly.
class Points {
public:
    CPoint Next()
    {
        static constexpr int REACHES[] = {30, 30, 200, 5000, 40000, 2000000000};
        const int reach = std::min(REACHES[m_Random() % 6], CDC::EXACT_REACH - WIDTH);
        return {Coordinate(reach, WIDTH), Coordinate(reach, HEIGHT)};
    }
    std::vector<CPoint> Some(std::size_t count)
    {
        std::vector<CPoint> points(count);
        for (CPoint& p : points) p = Next();
        return points;
    }

private:
    int Coordinate(int reach, int size)
    {
        if (m_Random() % 50 == 0) return m_Random() % 2 != 0 ? CDC::EXACT_REACH : -CDC::EXACT_REACH - 1;
        return std::uniform_int_distribution(-reach, reach)(m_Random) + size / 2;
    }
    std::mt19937 m_Random{20260};
};
} // namespace SlowRaster
