#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <vector>

#include "platform/picture/Decoders.h"

// BMP as the Windows SDK describes it (BITMAPFILEHEADER, BITMAPCOREHEADER, BITMAPINFOHEADER, V4, V5) and the
// headers of OS/2.

namespace {
constexpr std::uint64_t FILE_HEADER_SIZE = 14;
constexpr std::uint32_t CORE_HEADER_SIZE = 12;
constexpr std::uint32_t SMALLEST_OS2_HEADER_SIZE = 16;
constexpr std::uint32_t INFO_HEADER_SIZE = 40;
constexpr std::uint32_t LARGEST_HEADER_SIZE = 1 << 16;

enum COMPRESSION : std::uint32_t { RGB = 0, RLE8 = 1, RLE4 = 2, BITFIELDS = 3, ALPHA_BITFIELDS = 6 };

/// One channel of a pixel of 16 or 32 bits.
class Channel {
public:
    Channel() = default;
    explicit Channel(std::uint32_t mask)
        : m_Mask(mask), m_Shift(mask == 0 ? 0 : std::countr_zero(mask)), m_Largest(mask >> m_Shift)
    {
        for (std::uint32_t i = 0; i < m_Table.size() && i <= m_Largest && mask != 0; ++i)
            m_Table[i] = static_cast<std::uint8_t>(Pixels::Scaled(i, m_Largest));
    }

    bool IsPresent() const { return m_Mask != 0; }

    std::uint32_t Of(std::uint32_t pixel) const
    {
        const std::uint32_t sample = (pixel & m_Mask) >> m_Shift;
        return sample < m_Table.size() ? m_Table[sample] : Pixels::Scaled(sample, m_Largest);
    }

private:
    std::uint32_t m_Mask = 0;
    int m_Shift = 0;
    std::uint32_t m_Largest = 0;
    std::array<std::uint8_t, 256> m_Table{};
};

class BmpDecoder {
public:
    BmpDecoder(ByteSource& source, Picture& picture) : m_In(source), m_Picture(picture) {}

    Complaint Decode();

private:
    Complaint ReadHeader();
    void ReadMasks();
    void ReadPalette();
    Complaint ReadRows();
    Complaint ReadRuns();
    bool ReadRun(std::uint64_t& x, std::uint64_t& y, unsigned count);
    bool ReadEscape(std::uint64_t& x, std::uint64_t& y, unsigned code);
    void ReadLiterals(std::uint64_t& x, std::uint64_t y, unsigned count);
    void Put(std::uint64_t x, std::uint64_t y, unsigned index);
    void ConvertRow(const std::uint8_t* bytes, std::uint32_t* pixels) const;
    void ConvertIndices(const std::uint8_t* bytes, std::uint32_t* pixels) const;
    void ConvertMasked(const std::uint8_t* bytes, std::uint32_t* pixels) const;

    std::uint64_t RowFromTop(std::uint64_t row) const { return m_IsTopDown ? row : m_Height - 1 - row; }
    bool IsCompressed() const { return m_Compression == RLE8 || m_Compression == RLE4; }
    bool HasMasks() const { return m_Compression == BITFIELDS || m_Compression == ALPHA_BITFIELDS; }

    ByteReader m_In;
    Picture& m_Picture;
    std::uint64_t m_PixelStart = 0;
    std::uint32_t m_HeaderSize = 0;
    std::uint64_t m_Width = 0;
    std::uint64_t m_Height = 0;
    bool m_IsTopDown = false;
    unsigned m_Bits = 0;
    std::uint32_t m_Compression = RGB;
    std::uint32_t m_ColorsUsed = 0;
    Channel m_Red, m_Green, m_Blue, m_Alpha;
    std::array<std::uint32_t, 256> m_Palette{};
};

Complaint BmpDecoder::Decode()
{
    if (const Complaint complaint = ReadHeader()) return complaint;
    ReadMasks();
    if (m_Bits <= 8) ReadPalette();
    if (m_In.HasEnded()) return L"the file ends in its header";
    // A start inside the headers is nobody's: the pixels follow what was read.
    m_In.Seek(std::max(m_PixelStart, m_In.Tell()));
    return IsCompressed() ? ReadRuns() : ReadRows();
}

Complaint BmpDecoder::ReadHeader()
{
    if (m_In.U8() != 'B' || m_In.U8() != 'M') return L"not a BMP file";
    m_In.Seek(10);
    m_PixelStart = m_In.U32();
    m_HeaderSize = m_In.U32();
    const bool isCore = m_HeaderSize == CORE_HEADER_SIZE;
    if (!isCore && (m_HeaderSize < SMALLEST_OS2_HEADER_SIZE || m_HeaderSize > LARGEST_HEADER_SIZE))
        return L"the BMP header is unknown";

    const std::int64_t width = isCore ? m_In.U16() : m_In.S32();
    const std::int64_t height = isCore ? m_In.U16() : m_In.S32();
    m_In.U16(); // planes: always 1
    m_Bits = m_In.U16();
    if (m_HeaderSize >= INFO_HEADER_SIZE) {
        m_Compression = m_In.U32();
        m_In.Seek(FILE_HEADER_SIZE + 32);
        m_ColorsUsed = m_In.U32();
    }
    if (m_In.HasEnded()) return L"the file ends in its header";
    if (width <= 0 || height == 0) return L"the picture has no pixels";
    m_IsTopDown = height < 0;
    m_Width = static_cast<std::uint64_t>(width);
    m_Height = static_cast<std::uint64_t>(m_IsTopDown ? -height : height);

    const bool isKnownDepth = m_Bits <= 32 && std::has_single_bit(m_Bits);
    const bool fits = m_Compression == RGB || (m_Compression == RLE8 && m_Bits == 8)
                      || (m_Compression == RLE4 && m_Bits == 4) || (HasMasks() && m_Bits >= 16);
    if ((!isKnownDepth && m_Bits != 24) || !fits) return L"a kind of BMP that is not supported";
    return nullptr;
}

void BmpDecoder::ReadMasks()
{
    m_In.Seek(FILE_HEADER_SIZE + std::min(m_HeaderSize, INFO_HEADER_SIZE));
    if (!HasMasks()) {
        m_Red = Channel(m_Bits == 16 ? 0x7C00 : 0xFF0000);
        m_Green = Channel(m_Bits == 16 ? 0x03E0 : 0x00FF00);
        m_Blue = Channel(m_Bits == 16 ? 0x001F : 0x0000FF);
    } else {
        constexpr std::uint32_t HEADER_SIZE_WITH_ALPHA_MASK = 56;
        m_Red = Channel(m_In.U32());
        m_Green = Channel(m_In.U32());
        m_Blue = Channel(m_In.U32());
        if (m_Compression == ALPHA_BITFIELDS || m_HeaderSize >= HEADER_SIZE_WITH_ALPHA_MASK)
            m_Alpha = Channel(m_In.U32());
    }
    m_In.Seek(std::max(m_In.Tell(), FILE_HEADER_SIZE + m_HeaderSize));
}

void BmpDecoder::ReadPalette()
{
    const bool isCore = m_HeaderSize == CORE_HEADER_SIZE;
    const std::uint64_t entrySize = isCore ? 3 : 4;
    const std::uint64_t largest = std::uint64_t{1} << m_Bits;
    std::uint64_t count = m_ColorsUsed == 0 ? largest : std::min<std::uint64_t>(m_ColorsUsed, largest);
    // Some writers leave out the colours that they do not use and only the start of the pixels tells.
    if (m_PixelStart > m_In.Tell()) count = std::min(count, (m_PixelStart - m_In.Tell()) / entrySize);

    m_Palette.fill(Pixels::OPAQUE_BLACK);
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint32_t blue = m_In.U8();
        const std::uint32_t green = m_In.U8();
        const std::uint32_t red = m_In.U8();
        if (!isCore) m_In.U8();
        m_Palette[i] = Pixels::FromRgb(red, green, blue);
    }
}

Complaint BmpDecoder::ReadRows()
{
    const std::uint64_t stride = (m_Width * m_Bits + 31) / 32 * 4;
    const std::uint64_t backed = Pixels::Product(m_In.Left() * 8 / m_Bits, Pixels::TRUNCATION_ALLOWANCE);
    if (const Complaint complaint = Pixels::Allocate(m_Picture, m_Width, m_Height, backed)) return complaint;

    std::vector<std::uint8_t> bytes(stride);
    for (std::uint64_t row = 0; row < m_Height; ++row) {
        const std::size_t got = m_In.Read(bytes.data(), bytes.size());
        // The padding of the last row may be missing; a row that is cut short shows what it has.
        if (got == 0) break;
        std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(got), bytes.end(), std::uint8_t{0});
        ConvertRow(bytes.data(), Pixels::Row(m_Picture, RowFromTop(row)));
    }
    if (m_Alpha.IsPresent()) Pixels::KeyOutUnlessAllTransparent(m_Picture);
    return nullptr;
}

void BmpDecoder::ConvertRow(const std::uint8_t* bytes, std::uint32_t* pixels) const
{
    if (m_Bits <= 8) return ConvertIndices(bytes, pixels);
    if (m_Bits != 24) return ConvertMasked(bytes, pixels);
    for (std::uint64_t x = 0; x < m_Width; ++x, bytes += 3)
        pixels[x] = Pixels::FromRgb(bytes[2], bytes[1], bytes[0]);
}

void BmpDecoder::ConvertIndices(const std::uint8_t* bytes, std::uint32_t* pixels) const
{
    const unsigned mask = (1u << m_Bits) - 1;
    for (std::uint64_t x = 0; x < m_Width; ++x) {
        const std::uint64_t bit = x * m_Bits;
        const auto shift = static_cast<unsigned>(8 - m_Bits - (bit & 7));
        pixels[x] = m_Palette[bytes[bit >> 3] >> shift & mask];
    }
}

void BmpDecoder::ConvertMasked(const std::uint8_t* bytes, std::uint32_t* pixels) const
{
    const std::size_t size = m_Bits / 8;
    for (std::uint64_t x = 0; x < m_Width; ++x, bytes += size) {
        std::uint32_t pixel = bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8;
        if (size == 4)
            pixel |= static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
        const std::uint32_t alpha = m_Alpha.IsPresent() ? m_Alpha.Of(pixel) : 255;
        pixels[x] = Pixels::FromRgba(m_Red.Of(pixel), m_Green.Of(pixel), m_Blue.Of(pixel), alpha);
    }
}

/// Run-length coding may end a row or jump ahead at any place, so that a short file can stand for many
/// pixels.
Complaint BmpDecoder::ReadRuns()
{
    constexpr std::uint64_t MOST_PIXELS_A_BYTE = 1024;
    const std::uint64_t backed = Pixels::Product(m_In.Left(), MOST_PIXELS_A_BYTE);
    if (const Complaint complaint = Pixels::Allocate(m_Picture, m_Width, m_Height, backed)) return complaint;
    std::fill(m_Picture.pixels.begin(), m_Picture.pixels.end(), m_Palette[0]);

    std::uint64_t x = 0;
    std::uint64_t y = 0;
    while (y < m_Height && ReadRun(x, y, m_In.U8())) {
    }
    return nullptr;
}

/// Reads what follows a count. False at the end of the picture.
bool BmpDecoder::ReadRun(std::uint64_t& x, std::uint64_t& y, unsigned count)
{
    const unsigned value = m_In.U8();
    if (m_In.HasEnded()) return false;
    if (count == 0) return ReadEscape(x, y, value);
    const unsigned first = m_Bits == 8 ? value : value >> 4;
    const unsigned second = m_Bits == 8 ? value : value & 15;
    for (unsigned i = 0; i < count; ++i) Put(x++, y, (i & 1) == 0 ? first : second);
    return true;
}

bool BmpDecoder::ReadEscape(std::uint64_t& x, std::uint64_t& y, unsigned code)
{
    constexpr unsigned END_OF_ROW = 0;
    constexpr unsigned END_OF_PICTURE = 1;
    constexpr unsigned DELTA = 2;
    switch (code) {
    case END_OF_ROW:
        x = 0;
        ++y;
        return true;
    case END_OF_PICTURE:
        return false;
    case DELTA:
        x += m_In.U8();
        y += m_In.U8();
        return !m_In.HasEnded();
    default:
        ReadLiterals(x, y, code);
        return !m_In.HasEnded();
    }
}

/// Literals fill whole 16-bit words.
void BmpDecoder::ReadLiterals(std::uint64_t& x, std::uint64_t y, unsigned count)
{
    const unsigned bytes = m_Bits == 8 ? count : (count + 1) / 2;
    for (unsigned i = 0; i < bytes; ++i) {
        const unsigned value = m_In.U8();
        if (m_In.HasEnded()) return;
        if (m_Bits == 4) Put(x++, y, value >> 4);
        if (m_Bits == 8 || 2 * i + 1 < count) Put(x++, y, m_Bits == 8 ? value : value & 15);
    }
    if (bytes & 1) m_In.U8();
}

void BmpDecoder::Put(std::uint64_t x, std::uint64_t y, unsigned index)
{
    if (x < m_Width && y < m_Height) Pixels::Row(m_Picture, RowFromTop(y))[x] = m_Palette[index];
}
} // namespace

Complaint DecodeBmp(ByteSource& source, Picture& picture)
{
    return BmpDecoder(source, picture).Decode();
}
