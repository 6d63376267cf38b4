#include "platform/picture/PicturePlacement.h"

#include <algorithm>
#include <cstddef>

#include "platform/raster/Wide.h"

namespace {
/// Weights of bilinear interpolation are in 256ths.
constexpr int WEIGHT_BITS = 8;
constexpr int WEIGHT_ONE = 1 << WEIGHT_BITS;

/// Cuts a run of columns down to those with 0 <= start + x * step < size.
void Cut(double start, double step, int size, int& left, int& right)
{
    if (step == 0) {
        if (!(start >= 0 && start < size)) right = left;
        return;
    }
    const double a = -start / step;
    const double b = (size - start) / step;
    // Going left, the end belongs to the run and the beginning does not.
    const int low = step > 0 ? CeilWithin(a, left, right) : AfterWithin(b, left, right);
    const int high = step > 0 ? CeilWithin(b, left, right) : AfterWithin(a, left, right);
    left = low;
    right = high;
}

/// Splits a coordinate between two pixel centres; those at the border go on to the edge.
void Split(double v, int size, int& first, int& second, std::uint32_t& weight)
{
    const double centred = std::clamp(v - 0.5, 0.0, static_cast<double>(size - 1));
    first = static_cast<int>(centred);
    second = std::min(first + 1, size - 1);
    weight = static_cast<std::uint32_t>((centred - first) * WEIGHT_ONE + 0.5);
}
} // namespace

/// Colour and alpha of a place between pixels: the sum of four pixels times their weights, the colours also
/// times their alphas.
struct PicturePlacement::Blend {
    std::uint64_t alpha = 0;
    std::uint64_t red = 0;
    std::uint64_t green = 0;
    std::uint64_t blue = 0;

    void Add(std::uint32_t pixel, std::uint32_t weight, bool hasTransparency)
    {
        const std::uint64_t share = std::uint64_t{hasTransparency ? pixel >> 24 : 255} * weight;
        alpha += share;
        red += share * (pixel >> 16 & 0xFF);
        green += share * (pixel >> 8 & 0xFF);
        blue += share * (pixel & 0xFF);
    }

    /// The sum laid over a pixel.
    std::uint32_t Over(std::uint32_t below) const
    {
        constexpr std::uint64_t WHOLE = 255ULL << (2 * WEIGHT_BITS);
        const std::uint64_t rest = WHOLE - alpha;
        const auto mix = [rest](std::uint64_t sum, std::uint32_t channel) {
            return static_cast<std::uint32_t>((sum + rest * channel + WHOLE / 2) / WHOLE);
        };
        return mix(red, below >> 16 & 0xFF) << 16 | mix(green, below >> 8 & 0xFF) << 8
               | mix(blue, below & 0xFF);
    }
};

PicturePlacement::PicturePlacement(const Picture& picture, CPoint upperLeft, CPoint upperRight,
                                   CPoint lowerLeft)
    : m_Picture(picture), m_X(upperLeft.x), m_Y(upperLeft.y)
{
    const double ux = static_cast<double>(upperRight.x) - m_X;
    const double uy = static_cast<double>(upperRight.y) - m_Y;
    const double vx = static_cast<double>(lowerLeft.x) - m_X;
    const double vy = static_cast<double>(lowerLeft.y) - m_Y;
    const double area = ux * vy - uy * vx;
    m_IsFlat = area == 0;
    if (m_IsFlat) return;
    m_XByX = vy / area * picture.width;
    m_XByY = -vx / area * picture.width;
    m_YByX = -uy / area * picture.height;
    m_YByY = ux / area * picture.height;
}

bool PicturePlacement::IsWhole(const Picture& picture)
{
    const std::size_t count = static_cast<std::size_t>(std::max(picture.width, 0))
                              * static_cast<std::size_t>(std::max(picture.height, 0));
    return count > 0 && picture.pixels.size() >= count;
}

void PicturePlacement::CutRow(int y, int& left, int& right) const
{
    Cut(StartX(y), m_XByX, m_Picture.width, left, right);
    Cut(StartY(y), m_YByX, m_Picture.height, left, right);
}

void PicturePlacement::DrawSpan(std::uint32_t* pixels, int y, int left, int right, bool hasTransparency) const
{
    const double startX = StartX(y);
    const double startY = StartY(y);
    for (int x = left; x < right; ++x) {
        std::uint32_t& pixel = pixels[x - left];
        pixel = Sample(startX + x * m_XByX, startY + x * m_YByX, hasTransparency).Over(pixel);
    }
}

PicturePlacement::Blend PicturePlacement::Sample(double px, double py, bool hasTransparency) const
{
    int x0 = 0, x1 = 0, y0 = 0, y1 = 0;
    std::uint32_t wx = 0, wy = 0;
    Split(px, m_Picture.width, x0, x1, wx);
    Split(py, m_Picture.height, y0, y1, wy);
    const std::uint32_t* upper = m_Picture.pixels.data() + static_cast<std::ptrdiff_t>(y0) * m_Picture.width;
    const std::uint32_t* lower = m_Picture.pixels.data() + static_cast<std::ptrdiff_t>(y1) * m_Picture.width;
    Blend blend;
    blend.Add(upper[x0], (WEIGHT_ONE - wx) * (WEIGHT_ONE - wy), hasTransparency);
    blend.Add(upper[x1], wx * (WEIGHT_ONE - wy), hasTransparency);
    blend.Add(lower[x0], (WEIGHT_ONE - wx) * wy, hasTransparency);
    blend.Add(lower[x1], wx * wy, hasTransparency);
    return blend;
}
