#pragma once

#include <cstddef>
#include <cstdint>

/// The pixels of a bitmap, at least one: 0x00RRGGBB, rows from top to bottom. Whoever hands it out keeps the
/// pixels.
struct PixelRows {
    const std::uint32_t* pixels = nullptr;
    int width = 0;
    int height = 0;

    const std::uint32_t* Row(int y) const { return pixels + static_cast<std::ptrdiff_t>(y) * width; }
};
