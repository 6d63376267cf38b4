#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "platform/picture/Decoders.h"

// TGA as the Truevision TGA file format specification, version 2.0, describes it.

namespace {
enum KIND {
    INDEXED = 1,
    TRUE_COLOR = 2,
    GREY = 3,
    RUN_LENGTH = 8 ///< Added to one of the above.
};

class TgaDecoder {
public:
    TgaDecoder(ByteSource& source, Picture& picture) : m_In(source), m_Picture(picture) {}

    Complaint Decode();

private:
    Complaint ReadHeader();
    Complaint CheckKind() const;
    void ReadPalette();
    void ReadPixels();
    std::uint32_t ReadPixel();
    std::uint32_t ReadColor(unsigned bits);
    void Arrange();

    bool HasAlpha() const { return m_AttributeBits != 0; }

    ByteReader m_In;
    Picture& m_Picture;
    unsigned m_IdLength = 0;
    bool m_HasPalette = false;
    unsigned m_Kind = 0;
    bool m_IsCompressed = false;
    unsigned m_PaletteStart = 0;
    unsigned m_PaletteLength = 0;
    unsigned m_PaletteBits = 0;
    std::uint64_t m_Width = 0;
    std::uint64_t m_Height = 0;
    unsigned m_Bits = 0;
    unsigned m_AttributeBits = 0;
    bool m_IsTopDown = false;
    bool m_IsRightToLeft = false;
    std::vector<std::uint32_t> m_Palette;
};

bool IsColorDepth(unsigned bits)
{
    return bits == 15 || bits == 16 || bits == 24 || bits == 32;
}

Complaint TgaDecoder::Decode()
{
    if (const Complaint complaint = ReadHeader()) return complaint;
    if (const Complaint complaint = CheckKind()) return complaint;
    m_In.Seek(m_In.Tell() + m_IdLength);
    if (m_HasPalette) ReadPalette();
    if (m_In.HasEnded()) return L"the file ends in its palette";

    constexpr std::uint64_t LONGEST_RUN = 128;
    const std::uint64_t packetSize = (m_Bits + 7) / 8 + (m_IsCompressed ? 1 : 0);
    const std::uint64_t perPacket = m_IsCompressed ? LONGEST_RUN : 1;
    const std::uint64_t backed = m_In.Left() / packetSize * perPacket * Pixels::TRUNCATION_ALLOWANCE;
    if (const Complaint complaint = Pixels::Allocate(m_Picture, m_Width, m_Height, backed)) return complaint;
    ReadPixels();
    Arrange();
    if (HasAlpha()) Pixels::KeyOutUnlessAllTransparent(m_Picture);
    return nullptr;
}

Complaint TgaDecoder::ReadHeader()
{
    m_IdLength = m_In.U8();
    const unsigned paletteKind = m_In.U8();
    const unsigned kind = m_In.U8();
    m_PaletteStart = m_In.U16();
    m_PaletteLength = m_In.U16();
    m_PaletteBits = m_In.U8();
    m_In.U32(); // place on the screen
    m_Width = m_In.U16();
    m_Height = m_In.U16();
    m_Bits = m_In.U8();
    const unsigned descriptor = m_In.U8();
    if (m_In.HasEnded()) return L"the file ends in its header";
    m_HasPalette = paletteKind == 1;
    m_Kind = kind & ~static_cast<unsigned>(RUN_LENGTH);
    m_IsCompressed = (kind & RUN_LENGTH) != 0;
    m_AttributeBits = descriptor & 0x0F;
    m_IsRightToLeft = (descriptor & 0x10) != 0;
    m_IsTopDown = (descriptor & 0x20) != 0;
    return paletteKind > 1 ? L"not a TGA file" : nullptr;
}

Complaint TgaDecoder::CheckKind() const
{
    constexpr Complaint UNKNOWN = L"not a TGA file, or a kind of it that is not supported";
    if (m_HasPalette && !IsColorDepth(m_PaletteBits)) return UNKNOWN;
    switch (m_Kind) {
    case INDEXED:
        return m_HasPalette && (m_Bits == 8 || m_Bits == 16) ? nullptr : UNKNOWN;
    case TRUE_COLOR:
        return IsColorDepth(m_Bits) ? nullptr : UNKNOWN;
    case GREY:
        return m_Bits == 8 || m_Bits == 16 ? nullptr : UNKNOWN;
    default:
        return UNKNOWN;
    }
}

void TgaDecoder::ReadPalette()
{
    const std::uint64_t end = m_In.Tell() + m_PaletteLength * std::uint64_t{(m_PaletteBits + 7) / 8};
    if (m_Kind != INDEXED) return m_In.Seek(end);
    m_Palette.assign(std::size_t{m_PaletteStart} + m_PaletteLength, Pixels::OPAQUE_BLACK);
    std::generate(m_Palette.begin() + m_PaletteStart, m_Palette.end(),
                  [this] { return ReadColor(m_PaletteBits); });
}

/// Pixels in the order of the file; runs go on over the end of a row.
void TgaDecoder::ReadPixels()
{
    std::vector<std::uint32_t>& pixels = m_Picture.pixels;
    std::size_t number = 0;
    while (number < pixels.size()) {
        const unsigned packet = m_IsCompressed ? m_In.U8() : 0;
        const std::size_t end = std::min(pixels.size(), number + (packet & 0x7F) + 1);
        if ((packet & 0x80) != 0) {
            const std::uint32_t pixel = ReadPixel();
            if (m_In.HasEnded()) return;
            std::fill(pixels.data() + number, pixels.data() + end, pixel);
            number = end;
        }
        for (; number < end; ++number) {
            const std::uint32_t pixel = ReadPixel();
            if (m_In.HasEnded()) return;
            pixels[number] = pixel;
        }
    }
}

std::uint32_t TgaDecoder::ReadPixel()
{
    if (m_Kind == TRUE_COLOR) return ReadColor(m_Bits);
    const unsigned low = m_In.U8();
    const unsigned high = m_Bits == 16 ? m_In.U8() : 0;
    if (m_Kind == GREY) return Pixels::FromRgba(low, low, low, m_Bits == 16 && HasAlpha() ? high : 255);
    const std::size_t index = low | high << 8;
    return index < m_Palette.size() ? m_Palette[index] : Pixels::OPAQUE_BLACK;
}

std::uint32_t TgaDecoder::ReadColor(unsigned bits)
{
    constexpr std::uint64_t LARGEST_OF_5_BITS = 31;
    if (bits <= 16) {
        const unsigned color = m_In.U16();
        const bool isOpaque = bits == 15 || !HasAlpha() || (color & 0x8000) != 0;
        return Pixels::FromRgba(Pixels::Scaled(color >> 10 & 31, LARGEST_OF_5_BITS),
                                Pixels::Scaled(color >> 5 & 31, LARGEST_OF_5_BITS),
                                Pixels::Scaled(color & 31, LARGEST_OF_5_BITS), isOpaque ? 255 : 0);
    }
    const std::uint32_t blue = m_In.U8();
    const std::uint32_t green = m_In.U8();
    const std::uint32_t red = m_In.U8();
    const std::uint32_t attribute = bits == 32 ? m_In.U8() : 255;
    return Pixels::FromRgba(red, green, blue, HasAlpha() ? attribute : 255);
}

/// Brings rows and columns that the file counts from the other end into order.
void TgaDecoder::Arrange()
{
    for (std::uint64_t y = 0; !m_IsTopDown && y < m_Height / 2; ++y) {
        std::uint32_t* row = Pixels::Row(m_Picture, y);
        std::swap_ranges(row, row + m_Width, Pixels::Row(m_Picture, m_Height - 1 - y));
    }
    for (std::uint64_t y = 0; m_IsRightToLeft && y < m_Height; ++y) {
        std::uint32_t* row = Pixels::Row(m_Picture, y);
        std::reverse(row, row + m_Width);
    }
}
} // namespace

Complaint DecodeTga(ByteSource& source, Picture& picture)
{
    return TgaDecoder(source, picture).Decode();
}
