#include <algorithm>
#include <limits>

#include "platform/picture/Decoders.h"

std::uint64_t Pixels::Product(std::uint64_t a, std::uint64_t b)
{
    constexpr std::uint64_t LARGEST = std::numeric_limits<std::uint64_t>::max();
    return b != 0 && a > LARGEST / b ? LARGEST : a * b;
}

Complaint Pixels::Allocate(Picture& picture, std::uint64_t width, std::uint64_t height, std::uint64_t backed)
{
    if (width == 0 || height == 0) return L"the picture has no pixels";
    const std::uint64_t count = Product(width, height);
    if (count > Picture::MAX_PIXELS) return L"the picture is too large";
    if (count > ALWAYS_ALLOWED && count > backed) return L"the file is too short for the size of the picture";
    picture.width = static_cast<int>(width);
    picture.height = static_cast<int>(height);
    picture.pixels.assign(static_cast<std::size_t>(count), OPAQUE_BLACK);
    return nullptr;
}

std::uint32_t* Pixels::Row(Picture& picture, std::uint64_t row)
{
    return picture.pixels.data() + row * static_cast<std::uint64_t>(picture.width);
}

void Pixels::KeyOutTransparent(Picture& picture)
{
    constexpr std::uint32_t ALPHA = 0xFF000000;
    constexpr std::uint32_t RED = 0x00FF0000;
    for (std::uint32_t& pixel : picture.pixels) {
        if ((pixel & ALPHA) == 0) {
            pixel = Picture::COLOR_KEY;
            picture.hasColorKey = true;
        } else if ((pixel & ~ALPHA) == Picture::COLOR_KEY) {
            pixel |= RED;
        }
    }
}

void Pixels::KeyOutUnlessAllTransparent(Picture& picture)
{
    const bool hasAlpha = std::any_of(picture.pixels.begin(), picture.pixels.end(),
                                      [](std::uint32_t pixel) { return pixel >> 24 != 0; });
    if (hasAlpha) return KeyOutTransparent(picture);
    for (std::uint32_t& pixel : picture.pixels) pixel |= OPAQUE_BLACK;
}
