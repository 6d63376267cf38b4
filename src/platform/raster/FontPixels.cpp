#include "platform/FontPixels.h"

#include <algorithm>

#include "platform/raster/Wide.h"

namespace {
/// a * b / c to the nearest whole number, halves up; c > 0.
std::int64_t Rounded(std::int64_t a, std::int64_t b, std::int64_t c)
{
    return FloorDiv(WideInt{2} * a * b + c, 2 * c);
}
} // namespace

FontPixels FontPixels::Of(const FontMetrics& metrics, int height)
{
    const std::int64_t em = std::max(metrics.unitsPerEm, 1);
    const std::int64_t cell = std::int64_t{metrics.ascent} + metrics.descent;
    std::int64_t ppem = height < 0 ? -std::int64_t{height} : height;
    if (height > 0 && cell > 0) {
        ppem = Rounded(em, height, cell);
        if (Rounded(cell, ppem, em) > height) --ppem;
    }
    ppem = std::clamp<std::int64_t>(ppem, 1, MAX_PPEM);

    FontPixels pixels;
    pixels.ppem = static_cast<int>(ppem);
    pixels.ascent = ToInt(Rounded(metrics.ascent, ppem, em));
    pixels.descent = ToInt(Rounded(metrics.descent, ppem, em));
    pixels.internalLeading = ToInt(Rounded(cell - em, ppem, em));
    return pixels;
}
