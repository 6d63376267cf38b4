#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <span>
#include <string>

#include "platform/Picture.h"

/// The first byte chooses the extension, the rest is the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    constexpr const wchar_t* EXTENSIONS[] = {L"bmp", L"pcx", L"tga", L"gif", L"jpg", L"tif", L"png", L""};
    if (size == 0) return 0;
    std::wstring reason;
    const wchar_t* extension = EXTENSIONS[bytes[0] % std::size(EXTENSIONS)];
    const auto picture = DecodePicture(std::span(bytes + 1, size - 1), extension, &reason);
    if (!picture) {
        if (reason.empty()) std::abort();
        return 0;
    }
    // What a picture promises.
    const auto width = static_cast<std::uint64_t>(picture->width);
    const auto height = static_cast<std::uint64_t>(picture->height);
    if (picture->width < 1 || picture->height < 1 || picture->pixels.size() != width * height) std::abort();
    bool isTransparent = false;
    for (const std::uint32_t pixel : picture->pixels) {
        isTransparent = isTransparent || pixel == Picture::COLOR_KEY;
        if (pixel >> 24 == 0 && pixel != Picture::COLOR_KEY) std::abort();
    }
    if (isTransparent != picture->hasColorKey) std::abort();
    return 0;
}
