#include "platform/win32/PictureHeaders.h"

#include <algorithm>
#include <cstring>

namespace {
PictureHeader Complaining(Complaint complaint)
{
    PictureHeader header;
    header.complaint = complaint;
    return header;
}

unsigned BigU16(ByteReader& in)
{
    const unsigned high = in.U8();
    return high << 8 | in.U8();
}

std::uint32_t BigU32(ByteReader& in)
{
    const std::uint32_t high = BigU16(in);
    return high << 16 | BigU16(in);
}

bool HasBytes(ByteReader& in, const char* bytes, std::size_t count)
{
    char found[16];
    return in.Read(found, count) == count && std::memcmp(found, bytes, count) == 0;
}

void SkipBytes(ByteReader& in, std::uint64_t count)
{
    in.Seek(in.Tell() + count);
}

/// Numbers of a TIFF file in the order of its bytes.
class TiffNumbers {
public:
    TiffNumbers(ByteReader& in, bool isBigEndian) : m_In(in), m_IsBigEndian(isBigEndian) {}

    std::uint32_t U16() { return m_IsBigEndian ? BigU16(m_In) : m_In.U16(); }
    std::uint32_t U32() { return m_IsBigEndian ? BigU32(m_In) : m_In.U32(); }

private:
    ByteReader& m_In;
    bool m_IsBigEndian;
};

/// The most pixels that `size` bytes of a compression can stand for.
std::uint64_t TiffPixelsBacked(std::uint32_t compression, std::uint64_t size, std::uint64_t width)
{
    struct Row {
        std::uint32_t compression;
        std::uint64_t pixelsPerByte;
    };
    // None, LZW, both kinds of JPEG, both of deflate, PackBits: as many pixels of a bit as their codes can
    // repeat.
    constexpr Row ROWS[] = {
        {1, 8 * Pixels::TRUNCATION_ALLOWANCE},
        {5, 2731 * 8},
        {6, 1024},
        {7, 1024},
        {8, 1032 * 8},
        {32946, 1032 * 8},
        {32773, 64 * 8 * Pixels::TRUNCATION_ALLOWANCE},
    };
    constexpr std::uint64_t OTHERWISE = 32768 * 8;
    // A row of a fax without a change takes one bit.
    constexpr std::uint64_t ROWS_PER_BYTE = 8;
    const bool isFax = (compression >= 2 && compression <= 4) || compression == 32771;
    if (isFax) return Pixels::Product(size, Pixels::Product(ROWS_PER_BYTE, width));
    const auto* row = std::find_if(std::begin(ROWS), std::end(ROWS),
                                   [compression](const Row& r) { return r.compression == compression; });
    return Pixels::Product(size, row == std::end(ROWS) ? OTHERWISE : row->pixelsPerByte);
}

/// Goes to the first image of a GIF, behind its mark. False when there is none.
bool FindGifImage(ByteReader& in)
{
    constexpr unsigned IMAGE = 0x2C;
    constexpr unsigned EXTENSION = 0x21;
    for (unsigned mark = in.U8(); mark == EXTENSION; mark = in.U8()) {
        (void)in.U8();
        for (unsigned size = in.U8(); size != 0; size = in.U8()) SkipBytes(in, size);
        if (in.HasEnded()) return false;
    }
    in.Seek(in.Tell() - 1);
    return in.U8() == IMAGE && !in.HasEnded();
}

/// Goes behind the mark of the next segment of a JPEG and returns it; 0 at the end.
unsigned NextMark(ByteReader& in)
{
    unsigned byte = in.U8();
    for (; !in.HasEnded(); byte = in.U8()) {
        if (byte != 0xFF) continue;
        while (byte == 0xFF && !in.HasEnded()) byte = in.U8();
        if (byte != 0) return byte;
    }
    return 0;
}

bool IsFrameMark(unsigned mark)
{
    return mark >= 0xC0 && mark <= 0xCF && mark != 0xC4 && mark != 0xC8 && mark != 0xCC;
}

/// Passes of a JPEG from here to its end; no more than can matter are counted.
int CountScans(ByteReader& in)
{
    constexpr unsigned SCAN = 0xDA;
    constexpr int ENOUGH = 1000;
    int scans = 0;
    for (unsigned mark = NextMark(in); mark != 0 && scans < ENOUGH; mark = NextMark(in))
        scans += mark == SCAN;
    return scans;
}
} // namespace

PictureHeader ReadGifHeader(ByteSource& source)
{
    // The longest string of the 4096 in the table stands in 12 bits.
    constexpr std::uint64_t MOST_PIXELS_A_BYTE = 4096 * 8 / 12 + 1;
    ByteReader in(source);
    if (!HasBytes(in, "GIF8", 4)) return Complaining(L"not a GIF file");
    SkipBytes(in, 2);
    const std::uint64_t screenWidth = in.U16();
    const std::uint64_t screenHeight = in.U16();
    const unsigned flags = in.U8();
    SkipBytes(in, 2);
    if (source.Size() < in.Tell()) return Complaining(L"not a GIF file");
    constexpr unsigned HAS_COLORS = 0x80;
    const bool hasColors = (flags & HAS_COLORS) != 0;
    if (hasColors) SkipBytes(in, 3u << ((flags & 7) + 1));
    if (!FindGifImage(in)) return Complaining(L"the GIF file holds no picture");

    PictureHeader header;
    header.frameLeft = in.U16();
    header.frameTop = in.U16();
    header.frameWidth = in.U16();
    header.frameHeight = in.U16();
    const bool hasOwnColors = (in.U8() & HAS_COLORS) != 0;
    if (in.HasEnded()) return Complaining(L"the GIF file holds no picture");
    // Not every system's decoder survives a file without colours.
    if (!hasColors && !hasOwnColors) return Complaining(L"a kind of GIF that is not supported");
    if (header.frameWidth == 0 || header.frameHeight == 0) return Complaining(L"the picture has no pixels");
    header.width = std::max(screenWidth, header.frameLeft + header.frameWidth);
    header.height = std::max(screenHeight, header.frameTop + header.frameHeight);
    header.backed = Pixels::Product(source.Size(), MOST_PIXELS_A_BYTE);
    return header;
}

PictureHeader ReadJpegHeader(ByteSource& source)
{
    constexpr std::uint64_t MOST_PIXELS_A_BYTE = 1024;
    constexpr unsigned LOSSLESS = 0xC3;
    constexpr unsigned SCAN = 0xDA;
    constexpr Complaint NOT_JPEG = L"not a JPEG file, or a damaged one";
    ByteReader in(source);
    if (!HasBytes(in, "\xFF\xD8", 2)) return Complaining(NOT_JPEG);
    for (unsigned mark = NextMark(in); mark != 0 && mark != SCAN; mark = NextMark(in)) {
        const unsigned length = BigU16(in);
        if (!IsFrameMark(mark)) {
            SkipBytes(in, std::max(length, 2u) - 2);
            continue;
        }
        const unsigned bits = in.U8();
        PictureHeader header;
        header.height = BigU16(in);
        header.width = BigU16(in);
        if (in.HasEnded()) break;
        if (bits != 8 || mark == LOSSLESS || mark > LOSSLESS + 0x8)
            return Complaining(L"a kind of JPEG that is not supported");
        header.backed = Pixels::Product(source.Size(), MOST_PIXELS_A_BYTE);
        header.scans = CountScans(in);
        return header.scans == 0 ? Complaining(NOT_JPEG) : header;
    }
    return Complaining(NOT_JPEG);
}

PictureHeader ReadPngHeader(ByteSource& source)
{
    // Deflate's best is 1032 to 1, and a byte holds up to eight pixels.
    constexpr std::uint64_t MOST_PIXELS_A_BYTE = 1032 * 8;
    ByteReader in(source);
    PictureHeader header;
    const bool isPng = HasBytes(in, "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR", 16);
    header.width = BigU32(in);
    header.height = BigU32(in);
    header.backed = Pixels::Product(source.Size(), MOST_PIXELS_A_BYTE);
    return isPng && !in.HasEnded() ? header : Complaining(L"not a PNG file, or a damaged one");
}

PictureHeader ReadTiffHeader(ByteSource& source)
{
    constexpr Complaint NOT_TIFF = L"not a TIFF file, or a damaged one";
    enum TAG { WIDTH = 256, HEIGHT = 257, COMPRESSION = 259, GEO_KEYS = 34735 };
    constexpr std::uint32_t SHORT = 3;
    constexpr std::uint32_t GEO_HEADER = 4; // numbers before the first key
    ByteReader in(source);
    const unsigned first = in.U8();
    if (first != in.U8() || (first != 'I' && first != 'M')) return Complaining(NOT_TIFF);
    TiffNumbers numbers(in, first == 'M');
    const std::uint32_t version = numbers.U16();
    if (version == 43) return Complaining(L"a kind of TIFF that is not supported");
    if (version != 42) return Complaining(NOT_TIFF);
    in.Seek(numbers.U32());

    PictureHeader header;
    std::uint32_t compression = 1;
    const std::uint32_t count = numbers.U16();
    for (std::uint32_t i = 0; i < count && !in.HasEnded(); ++i) {
        const std::uint32_t tag = numbers.U16();
        const std::uint32_t type = numbers.U16();
        const std::uint32_t values = numbers.U32();
        const std::uint32_t value = type == SHORT ? numbers.U16() : numbers.U32();
        if (type == SHORT) SkipBytes(in, 2);
        if (tag == WIDTH) header.width = value;
        if (tag == HEIGHT) header.height = value;
        if (tag == COMPRESSION) compression = value;
        if (tag == GEO_KEYS) header.hasGeoKeys = values > GEO_HEADER;
    }
    if (count == 0 || in.HasEnded()) return Complaining(NOT_TIFF);
    header.backed = TiffPixelsBacked(compression, source.Size(), header.width);
    return header;
}
