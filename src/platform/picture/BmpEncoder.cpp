#include <cstdint>

#include "platform/picture/Encoders.h"

namespace {
void Put(OutputFile& file, std::uint32_t value, int byteCount)
{
    char bytes[4];
    for (int i = 0; i < byteCount; ++i) bytes[i] = static_cast<char>(value >> (8 * i) & 0xFF);
    file.Write(bytes, static_cast<std::size_t>(byteCount));
}

struct Field {
    std::uint32_t value;
    int byteCount;
};
} // namespace

const wchar_t* EncodeBmp(const PixelRows& bitmap, OutputFile& file)
{
    constexpr std::uint32_t HEADERS = 14 + 40;
    constexpr std::uint32_t PIXELS_A_METRE = 3780; // 96 an inch
    const auto width = static_cast<std::uint32_t>(bitmap.width);
    const auto height = static_cast<std::uint32_t>(bitmap.height);
    const std::uint32_t stride = (width * 3 + 3) / 4 * 4;
    const Field header[] = {
        {0x4D42, 2}, // "BM"
        {HEADERS + stride * height, 4},
        {0, 4},
        {HEADERS, 4},
        {40, 4},
        {width, 4},
        {height, 4},
        {1, 2},
        {24, 2}, // planes, bits a pixel
        {0, 4},
        {stride * height, 4},
        {PIXELS_A_METRE, 4},
        {PIXELS_A_METRE, 4},
        {0, 4},
        {0, 4},
    };
    for (const Field& field : header) Put(file, field.value, field.byteCount);
    for (int y = bitmap.height - 1; y >= 0; --y) {
        char* bytes = file.Reserve(stride);
        const std::uint32_t* row = bitmap.Row(y);
        for (int x = 0; x < bitmap.width; ++x) {
            const std::uint32_t pixel = row[x];
            for (int i = 0; i < 3; ++i) *bytes++ = static_cast<char>(pixel >> (8 * i) & 0xFF);
        }
        for (std::uint32_t i = width * 3; i < stride; ++i) *bytes++ = 0;
        file.Commit(stride);
    }
    return nullptr;
}
