#pragma once

#include <cstdint>

#include "platform/Picture.h"
#include "platform/picture/ByteSource.h"

/// Why a picture cannot be had, one clause in lower case; null when it can.
using Complaint = const wchar_t*;

/// One decoder a format. Each fills an empty picture. On a complaint the picture is worthless.
Complaint DecodeBmp(ByteSource& source, Picture& picture);
Complaint DecodeGif(ByteSource& source, Picture& picture);
Complaint DecodeJpeg(ByteSource& source, Picture& picture);
Complaint DecodePcx(ByteSource& source, Picture& picture);
Complaint DecodePng(ByteSource& source, Picture& picture);
Complaint DecodeTga(ByteSource& source, Picture& picture);
Complaint DecodeTiff(ByteSource& source, Picture& picture);

namespace Pixels {
constexpr std::uint32_t OPAQUE_BLACK = 0xFF000000;

/// A file may always ask for this many pixels; for more it has to have the bytes.
constexpr std::uint64_t ALWAYS_ALLOWED = std::uint64_t{1} << 20;

/// A picture whose file was cut short is allocated when at least one part in so many is there.
constexpr std::uint64_t TRUNCATION_ALLOWANCE = 8;

constexpr std::uint32_t FromRgb(std::uint32_t red, std::uint32_t green, std::uint32_t blue)
{
    return OPAQUE_BLACK | red << 16 | green << 8 | blue;
}

constexpr std::uint32_t FromRgba(std::uint32_t red, std::uint32_t green, std::uint32_t blue,
                                 std::uint32_t alpha)
{
    return alpha << 24 | red << 16 | green << 8 | blue;
}

/// A sample of 0..`largest` on the scale 0..255, rounded. `largest` is at least 1.
constexpr std::uint32_t Scaled(std::uint64_t sample, std::uint64_t largest)
{
    return static_cast<std::uint32_t>((sample * 255 + largest / 2) / largest);
}

/// a * b, or the largest number when that is more.
std::uint64_t Product(std::uint64_t a, std::uint64_t b);

/// Gives the picture its size, all black. Refuses no pixels, more than Picture::MAX_PIXELS, and more than
/// `backed`, the most that the bytes in the file can stand for, unless they are few.
Complaint Allocate(Picture& picture, std::uint64_t width, std::uint64_t height, std::uint64_t backed);

/// Start of a row, counted from the top.
std::uint32_t* Row(Picture& picture, std::uint64_t row);

/// Applies the colour key of Picture to pixels whose alpha means something.
void KeyOutTransparent(Picture& picture);

/// The same for formats whose writers often leave the alpha bytes 0: an alpha of 0 everywhere means opaque.
void KeyOutUnlessAllTransparent(Picture& picture);
} // namespace Pixels
