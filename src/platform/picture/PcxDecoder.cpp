#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "platform/picture/Decoders.h"

// PCX as the ZSoft technical reference manual, revision 5, describes it.

namespace {
constexpr std::uint64_t HEADER_SIZE = 128;
constexpr std::uint64_t HEADER_PALETTE_START = 16;
constexpr std::uint64_t VGA_PALETTE_SIZE = 768;
constexpr std::uint8_t MANUFACTURER = 10;
constexpr std::uint8_t VGA_PALETTE_MARK = 12;
constexpr std::uint8_t VERSION_WITHOUT_PALETTE = 3;

constexpr std::uint32_t EGA_COLORS[16] = {
    0xFF000000, 0xFF0000AA, 0xFF00AA00, 0xFF00AAAA, 0xFFAA0000, 0xFFAA00AA, 0xFFAA5500, 0xFFAAAAAA,
    0xFF555555, 0xFF5555FF, 0xFF55FF55, 0xFF55FFFF, 0xFFFF5555, 0xFFFF55FF, 0xFFFFFF55, 0xFFFFFFFF,
};

class PcxDecoder {
public:
    PcxDecoder(ByteSource& source, Picture& picture)
        : m_FileSize(source.Size()), m_In(source), m_Picture(picture)
    {
    }

    Complaint Decode();

private:
    Complaint ReadHeader();
    void ReadPalette();
    void ReadColors(std::size_t count);
    void ReadVgaPalette();
    std::uint8_t NextByte();
    void ConvertRow(const std::uint8_t* bytes, std::uint32_t* pixels) const;
    std::uint32_t IndexedPixel(const std::uint8_t* bytes, std::uint64_t x) const;

    bool IsTrueColor() const { return m_Bits == 8 && m_Planes >= 3; }

    std::uint64_t m_FileSize;
    ByteReader m_In;
    Picture& m_Picture;
    unsigned m_Version = 0;
    bool m_IsCompressed = false;
    unsigned m_Bits = 0;
    unsigned m_Planes = 0;
    std::uint64_t m_Width = 0;
    std::uint64_t m_Height = 0;
    std::uint64_t m_PlaneSize = 0; ///< Bytes of one plane of one row.
    std::array<std::uint32_t, 256> m_Palette{};
    unsigned m_RunLeft = 0;
    std::uint8_t m_RunValue = 0;
};

Complaint PcxDecoder::Decode()
{
    if (const Complaint complaint = ReadHeader()) return complaint;
    if (!IsTrueColor()) ReadPalette();

    m_In.Seek(HEADER_SIZE);
    constexpr std::uint64_t LONGEST_RUN = 63;
    const std::uint64_t bytes = m_In.Left() * (m_IsCompressed ? (LONGEST_RUN + 1) / 2 : 1);
    const std::uint64_t pixels = bytes * 8 / (m_Bits * m_Planes);
    const std::uint64_t backed = Pixels::Product(pixels, Pixels::TRUNCATION_ALLOWANCE);
    if (const Complaint complaint = Pixels::Allocate(m_Picture, m_Width, m_Height, backed)) return complaint;

    std::vector<std::uint8_t> row(m_PlaneSize * m_Planes);
    for (std::uint64_t y = 0; y < m_Height; ++y) {
        // A run may go on into the next plane or row.
        std::generate(row.begin(), row.end(), [this] { return NextByte(); });
        if (m_In.HasEnded()) break;
        ConvertRow(row.data(), Pixels::Row(m_Picture, y));
    }
    return nullptr;
}

Complaint PcxDecoder::ReadHeader()
{
    if (m_In.U8() != MANUFACTURER) return L"not a PCX file";
    m_Version = m_In.U8();
    m_IsCompressed = m_In.U8() != 0;
    m_Bits = m_In.U8();
    const int left = m_In.U16();
    const int top = m_In.U16();
    const int right = m_In.U16();
    const int bottom = m_In.U16();
    m_In.Seek(65);
    m_Planes = m_In.U8();
    m_PlaneSize = m_In.U16();
    if (m_FileSize < HEADER_SIZE) return L"the file ends in its header";
    if (right < left || bottom < top) return L"the picture has no pixels";
    m_Width = static_cast<std::uint64_t>(right - left + 1);
    m_Height = static_cast<std::uint64_t>(bottom - top + 1);
    m_PlaneSize = std::max(m_PlaneSize, (m_Width * m_Bits + 7) / 8);

    const bool isIndexed = (m_Bits == 1 && m_Planes >= 1 && m_Planes <= 4) || (m_Bits == 2 && m_Planes == 1)
                           || (m_Bits == 4 && m_Planes == 1) || (m_Bits == 8 && m_Planes == 1);
    if (!isIndexed && !(m_Bits == 8 && (m_Planes == 3 || m_Planes == 4)))
        return L"a kind of PCX that is not supported";
    return nullptr;
}

void PcxDecoder::ReadPalette()
{
    m_Palette.fill(Pixels::OPAQUE_BLACK);
    if (m_Bits == 8) return ReadVgaPalette();
    // With one bit the header's palette is mostly left over from something else.
    if (m_Bits == 1 && m_Planes == 1) {
        m_Palette[1] = 0xFFFFFFFF;
        return;
    }
    std::copy(std::begin(EGA_COLORS), std::end(EGA_COLORS), m_Palette.begin());
    m_In.Seek(HEADER_PALETTE_START);
    if (m_Version != VERSION_WITHOUT_PALETTE) ReadColors(std::size(EGA_COLORS));
}

void PcxDecoder::ReadColors(std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t red = m_In.U8();
        const std::uint32_t green = m_In.U8();
        m_Palette[i] = Pixels::FromRgb(red, green, m_In.U8());
    }
}

/// The 256 colours are the last bytes of the file, behind a mark; without them the samples are grey.
void PcxDecoder::ReadVgaPalette()
{
    for (std::uint32_t i = 0; i < m_Palette.size(); ++i) m_Palette[i] = Pixels::FromRgb(i, i, i);
    if (m_FileSize < HEADER_SIZE + 1 + VGA_PALETTE_SIZE) return;
    m_In.Seek(m_FileSize - VGA_PALETTE_SIZE - 1);
    if (m_In.U8() == VGA_PALETTE_MARK) ReadColors(m_Palette.size());
}

std::uint8_t PcxDecoder::NextByte()
{
    constexpr std::uint8_t RUN_MARK = 0xC0;
    if (!m_IsCompressed) return m_In.U8();
    while (m_RunLeft == 0 && !m_In.HasEnded()) {
        m_RunValue = m_In.U8();
        m_RunLeft = 1;
        if (m_RunValue < RUN_MARK) break;
        m_RunLeft = m_RunValue & ~static_cast<unsigned>(RUN_MARK);
        m_RunValue = m_In.U8();
    }
    m_RunLeft -= m_RunLeft == 0 ? 0 : 1;
    return m_RunValue;
}

void PcxDecoder::ConvertRow(const std::uint8_t* bytes, std::uint32_t* pixels) const
{
    for (std::uint64_t x = 0; x < m_Width; ++x)
        pixels[x] = IsTrueColor()
                        ? Pixels::FromRgb(bytes[x], bytes[m_PlaneSize + x], bytes[2 * m_PlaneSize + x])
                        : IndexedPixel(bytes, x);
}

/// Each plane gives some bits of the index, the first plane the lowest.
std::uint32_t PcxDecoder::IndexedPixel(const std::uint8_t* bytes, std::uint64_t x) const
{
    const std::uint64_t bit = x * m_Bits;
    const auto shift = static_cast<unsigned>(8 - m_Bits - (bit & 7));
    const unsigned mask = (1u << m_Bits) - 1;
    unsigned index = 0;
    for (unsigned plane = 0; plane < m_Planes; ++plane)
        index |= (bytes[plane * m_PlaneSize + (bit >> 3)] >> shift & mask) << plane * m_Bits;
    return m_Palette[index];
}
} // namespace

Complaint DecodePcx(ByteSource& source, Picture& picture)
{
    return PcxDecoder(source, picture).Decode();
}
