#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

/// Puts the bytes of a file together, numbers little-endian.
class PictureBytes {
public:
    PictureBytes& U8(std::initializer_list<unsigned> bytes)
    {
        for (const unsigned byte : bytes) m_Bytes.push_back(static_cast<std::uint8_t>(byte));
        return *this;
    }
    PictureBytes& U16(std::initializer_list<std::uint32_t> words)
    {
        for (const std::uint32_t word : words) U8({word & 255, word >> 8 & 255});
        return *this;
    }
    PictureBytes& U32(std::initializer_list<std::uint32_t> words)
    {
        for (const std::uint32_t word : words) U16({word & 0xFFFF, word >> 16});
        return *this;
    }
    PictureBytes& BigU32(std::uint32_t word)
    {
        return U8({word >> 24, word >> 16 & 255, word >> 8 & 255, word & 255});
    }
    PictureBytes& Text(std::string_view text)
    {
        m_Bytes.insert(m_Bytes.end(), text.begin(), text.end());
        return *this;
    }
    PictureBytes& Zeros(std::size_t count)
    {
        m_Bytes.resize(m_Bytes.size() + count);
        return *this;
    }
    PictureBytes& Add(const std::vector<std::uint8_t>& bytes)
    {
        m_Bytes.insert(m_Bytes.end(), bytes.begin(), bytes.end());
        return *this;
    }

    std::vector<std::uint8_t> Bytes() const { return m_Bytes; }

private:
    std::vector<std::uint8_t> m_Bytes;
};

/// The colours that the rows of the tests are made of, as pixels.
inline constexpr std::uint32_t BLACK = 0xFF000000;
inline constexpr std::uint32_t WHITE = 0xFFFFFFFF;
inline constexpr std::uint32_t RED = 0xFFFF0000;
inline constexpr std::uint32_t GREEN = 0xFF00FF00;
inline constexpr std::uint32_t BLUE = 0xFF0000FF;

struct BmpHeader {
    int width = 0;
    int height = 0;
    unsigned bits = 0;
    unsigned compression = 0;
    unsigned headerSize = 40;
    unsigned colorsUsed = 0;
    std::initializer_list<std::uint32_t> palette = {}; ///< 0x00RRGGBB
    std::initializer_list<std::uint32_t> masks = {};
};

/// A BMP file by the published layout of its headers; `pixels` follow the palette.
inline std::vector<std::uint8_t> MakeBmp(const BmpHeader& h, const std::vector<std::uint8_t>& pixels)
{
    const bool isCore = h.headerSize == 12;
    const std::size_t masksSize = h.headerSize == 40 ? 4 * h.masks.size() : 0;
    const std::size_t start = 14 + h.headerSize + masksSize + h.palette.size() * (isCore ? 3 : 4);
    PictureBytes file;
    file.Text("BM").U32({0, 0, static_cast<std::uint32_t>(start), h.headerSize});
    if (isCore)
        file.U16({static_cast<std::uint32_t>(h.width), static_cast<std::uint32_t>(h.height), 1, h.bits});
    else
        file.U32({static_cast<std::uint32_t>(h.width), static_cast<std::uint32_t>(h.height)})
            .U16({1, h.bits});
    if (h.headerSize >= 40) file.U32({h.compression, 0, 2835, 2835, h.colorsUsed, 0}).U32(h.masks);
    if (h.headerSize > 40) file.Zeros(h.headerSize - 40 - 4 * h.masks.size());
    for (const std::uint32_t color : h.palette) {
        file.U8({color & 255, color >> 8 & 255, color >> 16 & 255});
        if (!isCore) file.U8({0});
    }
    return file.Add(pixels).Bytes();
}

struct TgaHeader {
    unsigned kind = 2;
    unsigned width = 0;
    unsigned height = 0;
    unsigned bits = 24;
    unsigned descriptor = 0x20; ///< Rows from the top.
    unsigned paletteStart = 0;
    unsigned paletteLength = 0;
    unsigned paletteBits = 0;
};

inline std::vector<std::uint8_t> MakeTga(const TgaHeader& h, const std::vector<std::uint8_t>& rest)
{
    PictureBytes file;
    file.U8({0, h.paletteLength != 0 ? 1u : 0u, h.kind}).U16({h.paletteStart, h.paletteLength});
    file.U8({h.paletteBits}).U16({0, 0, h.width, h.height}).U8({h.bits, h.descriptor});
    return file.Add(rest).Bytes();
}

struct PcxHeader {
    unsigned bits = 8;
    unsigned planes = 1;
    unsigned width = 0;
    unsigned height = 0;
    unsigned bytesPerLine = 0;
    unsigned encoding = 1;
    unsigned version = 5;
    std::vector<std::uint8_t> palette = {};
};

inline std::vector<std::uint8_t> MakePcx(const PcxHeader& h, const std::vector<std::uint8_t>& rest)
{
    PictureBytes file;
    // The picture begins at (100, 50) of its page.
    file.U8({10, h.version, h.encoding, h.bits}).U16({100, 50, 99 + h.width, 49 + h.height, 72, 72});
    file.Add(h.palette).Zeros(48 - h.palette.size()).U8({0, h.planes}).U16({h.bytesPerLine, 1});
    return file.Zeros(128 - 70).Add(rest).Bytes();
}
