#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/OutputFile.h"

/// The pixels of a bitmap, at least one: 0x00RRGGBB, rows from top to bottom.
struct PixelRows {
    const std::uint32_t* pixels = nullptr;
    int width = 0;
    int height = 0;

    const std::uint32_t* Row(int y) const { return pixels + static_cast<std::ptrdiff_t>(y) * width; }
};

/// One encoder a format. Each writes pixels to an open file; what the file could not
/// take, the file tells. Returns why the picture could not be encoded, one clause in lower case; null when it
/// was.
const wchar_t* EncodePng(const PixelRows& bitmap, OutputFile& file);
const wchar_t* EncodeBmp(const PixelRows& bitmap, OutputFile& file);
