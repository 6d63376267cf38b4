#include "platform/Picture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "TestPlaces.h"
#include "platform/PictureBytes.h"
#include "platform/TemporaryFolder.h"
#include "platform/Utf8.h"

namespace {
using Bytes = std::vector<std::uint8_t>;
using Pixels = std::vector<std::uint32_t>;

struct DecodeRow {
    const char* what;
    const wchar_t* extension;
    Bytes file;
    int width;
    Pixels pixels; ///< From the top left.
    /// On Windows the system's decoder is asked, which makes something else of such a file, or nothing.
    bool isLeftToTheSystem = false;

    bool IsOurs() const { return !TestPlaces::IS_WINDOWS || !isLeftToTheSystem; }
};

void ExpectPixels(const DecodeRow& row)
{
    SCOPED_TRACE(row.what);
    if (!row.IsOurs()) return;
    std::wstring reason;
    const auto picture = DecodePicture(row.file, row.extension, &reason);
    ASSERT_NE(picture, nullptr) << ToUtf8(reason);
    EXPECT_EQ(picture->width, row.width);
    EXPECT_EQ(picture->height, int(row.pixels.size()) / row.width);
    EXPECT_EQ(picture->pixels, row.pixels);
}

std::string ReasonOf(const Bytes& file, const wchar_t* extension)
{
    std::wstring reason;
    const auto picture = DecodePicture(file, extension, &reason);
    return picture ? "a picture" : ToUtf8(reason);
}

constexpr std::uint32_t KEY = Picture::COLOR_KEY;

const std::vector<DecodeRow>& BmpRows()
{
    // Rows stand in the file from the bottom, padded to four bytes; colours as blue, green, red.
    static const std::vector<DecodeRow> rows = {
        {"1 bit",
         L"bmp",
         MakeBmp({3, 2, 1, 0, 40, 0, {0x00FF00, 0xFF0000}}, {0x40, 0, 0, 0, 0xA0, 0, 0, 0}),
         3,
         {RED, GREEN, RED, GREEN, RED, GREEN}},
        {"2 bits",
         L"bmp",
         MakeBmp({4, 1, 2, 0, 40, 0, {0, 0xFF0000, 0x00FF00, 0x0000FF}}, {0x1B, 0, 0, 0}),
         4,
         {BLACK, RED, GREEN, BLUE}},
        {"4 bits",
         L"bmp",
         MakeBmp({3, 1, 4, 0, 40, 3, {0x0000FF, 0x00FF00, 0xFF0000}}, {0x21, 0x00, 0, 0}),
         3,
         {RED, GREEN, BLUE}},
        {"8 bits, an index beyond the palette is black",
         L"bmp",
         MakeBmp({2, 1, 8, 0, 40, 2, {0x112233, 0xFFFFFF}}, {1, 2, 0, 0}),
         2,
         {WHITE, BLACK}},
        {"8 bits, rows from the top",
         L"bmp",
         MakeBmp({1, -2, 8, 0, 40, 2, {0xFF0000, 0x0000FF}}, {0, 0, 0, 0, 1, 0, 0, 0}),
         1,
         {RED, BLUE}},
        {"8 bits of OS/2, its palette short",
         L"bmp",
         MakeBmp({1, 2, 8, 0, 12, 0, {0xFF0000, 0x00FF00}}, {0, 0, 0, 0, 1, 0, 0, 0}),
         1,
         {GREEN, RED}},
        {"24 bits", L"bmp", MakeBmp({1, 2, 24}, {0, 0, 255, 0, 255, 0, 0, 0}), 1, {BLUE, RED}},
        {"24 bits of OS/2's second header",
         L"bmp",
         MakeBmp({1, 1, 24, 0, 64}, {3, 2, 1, 0}),
         1,
         {0xFF010203}},
        // 5 bits: 31 -> 255, 1 -> 255 / 31 = 8.2 -> 8, 16 -> 131.6 -> 132. 0x7C00 red, 0x0210 = green 16,
        // blue 16.
        {"16 bits, 5 a colour", L"bmp", MakeBmp({2, 1, 16}, {0x00, 0x7C, 0x10, 0x02}), 2, {RED, 0xFF008484}},
        // 6 bits: 32 -> 129.5 -> 130. 0x0400 = green 32.
        {"16 bits, 5-6-5 by masks",
         L"bmp",
         MakeBmp({2, 1, 16, 3, 40, 0, {}, {0xF800, 0x07E0, 0x001F}}, {0x00, 0xF8, 0x00, 0x04}),
         2,
         {RED, 0xFF008200}},
        {"32 bits, the fourth byte means nothing",
         L"bmp",
         MakeBmp({1, 1, 32}, {3, 2, 1, 0x80}),
         1,
         {0xFF010203}},
        // 10 bits: red 0x3F0 = 1008 -> 251.3, blue 512 -> 127.6.
        {"32 bits, wide masks",
         L"bmp",
         MakeBmp({1, 1, 32, 3, 40, 0, {}, {0x3FF00000, 0x000FFC00, 0x000003FF}}, {0x00, 0x02, 0x00, 0x3F}),
         1,
         {0xFFFB0080}},
        {"32 bits with alpha: key, key colour, half",
         L"bmp",
         MakeBmp({3, 1, 32, 3, 108, 0, {}, {0xFF0000, 0xFF00, 0xFF, 0xFF000000}},
                 {9, 9, 9, 0, 255, 255, 254, 255, 3, 2, 1, 128}),
         3,
         {KEY, WHITE, 0x80010203}},
        {"32 bits with an alpha mask but no alpha",
         L"bmp",
         MakeBmp({1, 1, 32, 3, 108, 0, {}, {0xFF0000, 0xFF00, 0xFF, 0xFF000000}}, {3, 2, 1, 0}),
         1,
         {0xFF010203}},
        // Bottom row: three 1s, then two literals (padded to a word: none needed); end of row. Top row: an
        // odd literal of 3 padded, then a run beyond the edge.
        {"run-length coded, 8 bits",
         L"bmp",
         MakeBmp({5, 2, 8, 1, 40, 3, {0, 0xFF0000, 0x00FF00}},
                 {3, 1, 0, 4, 2, 1, 2, 1, 0, 0, 0, 3, 2, 1, 2, 0, 9, 1, 0, 1}),
         5,
         {GREEN, RED, GREEN, RED, RED, RED, RED, RED, GREEN, RED}},
        // A jump of 1 right and 1 up leaves the first colour; then the data end.
        {"run-length coded, 8 bits, jumping",
         L"bmp",
         MakeBmp({2, 2, 8, 1, 40, 2, {0x0000FF, 0xFF0000}}, {0, 2, 1, 1, 1, 1}),
         2,
         {BLUE, RED, BLUE, BLUE}},
        // A run alternates between the halves of its byte; a literal of 3 fills two bytes.
        {"run-length coded, 4 bits",
         L"bmp",
         MakeBmp({6, 1, 4, 2, 40, 3, {0, 0xFF0000, 0x00FF00}}, {3, 0x12, 0, 3, 0x21, 0x20, 0, 1}),
         6,
         {RED, GREEN, RED, GREEN, RED, GREEN}},
        {"rows missing", L"bmp", MakeBmp({1, 3, 24}, {0, 0, 255, 0, 255}), 1, {BLACK, BLUE, RED}},
    };
    return rows;
}

const std::vector<DecodeRow>& PcxRows()
{
    static const Bytes sixteen = {0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255};
    static const Bytes vgaEnd = [] {
        Bytes end(769, 0);
        end[0] = 12;
        end[1 + 3 * 7] = 255;       // colour 7 red
        end[1 + 3 * 200 + 1] = 255; // colour 200 green
        return end;
    }();
    static const std::vector<DecodeRow> rows = {
        // 0xC2 0x07: two of 7; 200 has the run bits set and takes a run of one.
        {"8 bits with colours at the end",
         L"pcx",
         MakePcx({8, 1, 3, 1, 4}, PictureBytes().U8({0xC2, 7, 0xC1, 200, 0}).Add(vgaEnd).Bytes()),
         3,
         {RED, RED, GREEN}},
        {"8 bits without colours are grey",
         L"pcx",
         MakePcx({8, 1, 2, 1, 2}, {0x10, 0xC1, 0xFF}),
         2,
         {0xFF101010, WHITE}},
        {"24 bits, a run going on into the next plane",
         L"pcx",
         MakePcx({8, 3, 2, 1, 2}, {0xC3, 0xFF, 1, 0, 0}),
         2,
         {0xFFFFFF00, 0xFFFF0100}},
        {"24 bits as they are",
         L"pcx",
         MakePcx({8, 3, 1, 2, 2, 0}, {1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6, 0}),
         1,
         {0xFF010203, 0xFF040506}},
        {"1 bit",
         L"pcx",
         MakePcx({1, 1, 9, 1, 2}, {0x55, 0x80}),
         9,
         {BLACK, WHITE, BLACK, WHITE, BLACK, WHITE, BLACK, WHITE, WHITE}},
        // Bits of planes 0 (red's index 1) and 1: 10.., 01.. -> indices 1, 2, then 0.
        {"4 planes of 1 bit",
         L"pcx",
         MakePcx({1, 4, 3, 1, 2, 1, 5, sixteen}, {0x80, 0, 0x40, 0, 0, 0, 0, 0}),
         3,
         {RED, GREEN, BLACK}},
        {"2 bits", L"pcx", MakePcx({2, 1, 4, 1, 2, 1, 5, sixteen}, {0x1B, 0}), 4, {BLACK, RED, GREEN, BLUE}},
        {"4 bits", L"pcx", MakePcx({4, 1, 3, 1, 2, 1, 5, sixteen}, {0x12, 0x40}), 3, {RED, GREEN, WHITE}},
        {"4 bits of a version without palette",
         L"pcx",
         MakePcx({4, 1, 2, 1, 2, 1, 3}, {0xC1, 0xC6, 0}),
         2,
         {0xFFFF5555, 0xFFAA5500}},
        {"a row missing", L"pcx", MakePcx({8, 3, 1, 2, 2}, {1, 0, 2, 0, 3, 0, 4}), 1, {0xFF010203, BLACK}},
    };
    return rows;
}

const std::vector<DecodeRow>& TgaRows()
{
    static const std::vector<DecodeRow> rows = {
        {"24 bits from the top", L"tga", MakeTga({2, 1, 2}, {0, 0, 255, 255, 0, 0}), 1, {RED, BLUE}},
        {"24 bits from the bottom",
         L"tga",
         MakeTga({2, 1, 2, 24, 0}, {0, 0, 255, 255, 0, 0}),
         1,
         {BLUE, RED}},
        {"24 bits from the right",
         L"tga",
         MakeTga({2, 2, 1, 24, 0x30}, {0, 0, 255, 255, 0, 0}),
         2,
         {BLUE, RED}},
        // 0x7C00 red; 0x0210 green 16 and blue 16 of 31: 131.6 -> 132.
        {"16 bits", L"tga", MakeTga({2, 2, 1, 16}, {0x00, 0x7C, 0x10, 0x82}), 2, {RED, 0xFF008484}},
        {"15 bits", L"tga", MakeTga({2, 1, 1, 15}, {0x1F, 0x80}), 1, {BLUE}},
        {"16 bits, one an attribute",
         L"tga",
         MakeTga({2, 2, 1, 16, 0x21}, {0x00, 0x7C, 0x1F, 0x80}),
         2,
         {KEY, BLUE}},
        {"32 bits: key, key colour, half",
         L"tga",
         MakeTga({2, 3, 1, 32, 0x28}, {9, 9, 9, 0, 255, 255, 254, 255, 3, 2, 1, 128}),
         3,
         {KEY, WHITE, 0x80010203}},
        {"32 bits without attributes", L"tga", MakeTga({2, 1, 1, 32}, {3, 2, 1, 0}), 1, {0xFF010203}},
        {"32 bits, all attributes 0", L"tga", MakeTga({2, 1, 1, 32, 0x28}, {3, 2, 1, 0}), 1, {0xFF010203}},
        {"grey", L"tga", MakeTga({3, 2, 1, 8}, {0, 77}), 2, {BLACK, 0xFF4D4D4D}},
        {"grey with alpha", L"tga", MakeTga({3, 2, 1, 16, 0x28}, {77, 255, 77, 0}), 2, {0xFF4D4D4D, KEY}},
        {"indices from 5 up",
         L"tga",
         MakeTga({1, 3, 1, 8, 0x20, 5, 2, 24}, {0, 0, 255, 0, 255, 0, /*pixels*/ 6, 5, 7}),
         3,
         {GREEN, RED, BLACK}},
        {"indices of 16 bits into colours of 16",
         L"tga",
         MakeTga({1, 2, 1, 16, 0x20, 256, 2, 16}, {0x00, 0x7C, 0x1F, 0x00, /*pixels*/ 1, 1, 0, 1}),
         2,
         {BLUE, RED}},
        // A run of 3 goes on into the next row, then one pixel as it is.
        {"run-length coded, over the end of a row",
         L"tga",
         MakeTga({10, 2, 2}, {0x82, 0, 0, 255, 0x00, 255, 0, 0}),
         2,
         {RED, RED, RED, BLUE}},
        {"run-length coded indices",
         L"tga",
         MakeTga({9, 3, 1, 8, 0x20, 0, 2, 24}, {0, 0, 255, 255, 0, 0, /*pixels*/ 0x81, 1, 0x00, 0}),
         3,
         {BLUE, BLUE, RED}},
        {"run-length coded grey",
         L"tga",
         MakeTga({11, 3, 1, 8}, {0x01, 1, 2, 0xFF, 3}),
         3,
         {0xFF010101, 0xFF020202, 0xFF030303}},
        {"pixels missing", L"tga", MakeTga({2, 1, 2}, {0, 0, 255, 255}), 1, {RED, BLACK}},
    };
    return rows;
}

/// LZW codes of 3 bits, the lowest bit first; a clear code (4) in time keeps them that wide.
Bytes PackedCodes(std::initializer_list<unsigned> codes)
{
    Bytes bytes;
    unsigned bit = 0;
    for (const unsigned code : codes) {
        for (unsigned i = 0; i < 3; ++i, ++bit) {
            if (bit % 8 == 0) bytes.push_back(0);
            bytes.back() = static_cast<std::uint8_t>(bytes.back() | (code >> i & 1) << bit % 8);
        }
    }
    return bytes;
}

/// A GIF of four colours (black, red, green, the key colour) with one frame; colour `transparent` if below 4.
Bytes MakeGif(unsigned screenWidth, unsigned screenHeight, std::initializer_list<unsigned> frame,
              unsigned flags, unsigned transparent, std::initializer_list<unsigned> codes)
{
    PictureBytes file;
    file.Text("GIF89a").U16({screenWidth, screenHeight}).U8({0x81, 0, 0});
    file.U8({0, 0, 0, 255, 0, 0, 0, 255, 0, 254, 255, 255});
    if (transparent < 4) file.U8({0x21, 0xF9, 4, 1, 0, 0, transparent, 0});
    const Bytes packed = PackedCodes(codes);
    file.Text(",").U16({std::data(frame)[0], std::data(frame)[1], std::data(frame)[2], std::data(frame)[3]});
    return file.U8({flags, 2, unsigned(packed.size())}).Add(packed).U8({0, 0x3B}).Bytes();
}

const std::vector<DecodeRow>& GifRows()
{
    static const std::vector<DecodeRow> rows = {
        {"plain",
         L"gif",
         MakeGif(2, 2, {0, 0, 2, 2}, 0, 9, {4, 0, 1, 4, 2, 3, 5}),
         2,
         {BLACK, RED, GREEN, WHITE}},
        {"one colour transparent",
         L"gif",
         MakeGif(3, 1, {0, 0, 3, 1}, 0, 1, {4, 1, 3, 4, 2, 5}),
         3,
         {KEY, WHITE, GREEN}},
        {"a frame inside its screen",
         L"gif",
         MakeGif(3, 2, {1, 1, 2, 1}, 0, 9, {4, 1, 2, 5}),
         3,
         {KEY, KEY, KEY, KEY, RED, GREEN}},
        {"a frame beyond its screen", L"gif", MakeGif(1, 1, {1, 0, 1, 1}, 0, 9, {4, 1, 5}), 2, {KEY, RED}},
        // Five rows interlaced stand in the order 0, 4, 2, 1, 3.
        {"interlaced",
         L"gif",
         MakeGif(1, 5, {0, 0, 1, 5}, 0x40, 9, {4, 0, 1, 4, 2, 3, 4, 1, 5}),
         1,
         {BLACK, WHITE, GREEN, RED, RED}},
        {"data missing", L"gif", MakeGif(1, 3, {0, 0, 1, 3}, 0, 9, {4, 1, 5}), 1, {RED, BLACK, BLACK}, true},
    };
    return rows;
}

/// An uncompressed TIFF of one strip: 8-bit red, green, blue and, with four samples, alpha not multiplied in.
Bytes MakeTiff(unsigned width, unsigned samples, const Bytes& strip, bool hasGeoKeys)
{
    constexpr unsigned SHORT = 3, LONG = 4;
    const unsigned height = unsigned(strip.size()) / width / samples;
    PictureBytes body; // from offset 8 on
    const unsigned bitsAt = 8 + unsigned(strip.size() + 1) / 2 * 2;
    const unsigned keysAt = bitsAt + 8;
    body.Add(strip).Zeros(bitsAt - 8 - strip.size()).U16({8, 8, 8, 8});
    body.U16({1, 1, 0, 1, 1024, 0, 1, 1}); // one key: GTModelType, projected
    struct Entry {
        unsigned tag, type, count, value;
    };
    std::vector<Entry> entries = {
        {256, SHORT, 1, width},   {257, SHORT, 1, height}, {258, SHORT, samples, bitsAt},
        {259, SHORT, 1, 1},       {262, SHORT, 1, 2},      {273, LONG, 1, 8},
        {277, SHORT, 1, samples}, {278, SHORT, 1, height}, {279, LONG, 1, unsigned(strip.size())}};
    if (samples == 4) entries.push_back({338, SHORT, 1, 2});
    if (hasGeoKeys) entries.push_back({34735, SHORT, 8, keysAt});
    PictureBytes file;
    file.Text("II").U16({42}).U32({keysAt + 16}).Add(body.Bytes()).U16({std::uint32_t(entries.size())});
    for (const Entry& entry : entries) file.U16({entry.tag, entry.type}).U32({entry.count, entry.value});
    return file.U32({0}).Bytes();
}

const std::vector<DecodeRow>& TiffRows()
{
    static const std::vector<DecodeRow> rows = {
        {"opaque", L"tif", MakeTiff(2, 3, {255, 0, 0, 254, 255, 255}, false), 2, {RED, WHITE}},
        {"key, key colour, half of white, half of red",
         L"tiff",
         MakeTiff(2, 4, {9, 8, 7, 0, 254, 255, 255, 255, 255, 255, 255, 128, 255, 0, 0, 128}, true),
         2,
         {KEY, WHITE, 0x80FFFFFF, 0x80FF0000}},
    };
    return rows;
}

std::uint32_t Crc32(const Bytes& bytes)
{
    std::uint32_t crc = ~0u;
    for (const std::uint8_t byte : bytes) {
        crc ^= byte;
        for (int i = 0; i < 8; ++i) crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
    }
    return ~crc;
}

Bytes PngChunk(std::string_view name, const Bytes& content)
{
    const Bytes named = PictureBytes().Text(name).Add(content).Bytes();
    return PictureBytes().BigU32(std::uint32_t(content.size())).Add(named).BigU32(Crc32(named)).Bytes();
}

/// A PNG of 8-bit samples; `rows` begin with their filter byte (0). Deflate's stored form needs no
/// compressor.
Bytes MakePng(unsigned width, unsigned height, unsigned colorType, const Bytes& transparency,
              const Bytes& rows)
{
    std::uint32_t a = 1, b = 0; // Adler-32
    for (const std::uint8_t byte : rows) {
        a = (a + byte) % 65521;
        b = (b + a) % 65521;
    }
    const auto length = static_cast<std::uint32_t>(rows.size());
    const Bytes zlib = PictureBytes()
                           .U8({0x78, 0x01, 1})
                           .U16({length, ~length & 0xFFFF})
                           .Add(rows)
                           .BigU32(b << 16 | a)
                           .Bytes();
    PictureBytes file;
    file.U8({0x89}).Text("PNG\r\n\x1A\n");
    file.Add(
        PngChunk("IHDR", PictureBytes().BigU32(width).BigU32(height).U8({8, colorType, 0, 0, 0}).Bytes()));
    if (colorType == 3) file.Add(PngChunk("PLTE", {255, 0, 0, 0, 255, 0}));
    if (!transparency.empty()) file.Add(PngChunk("tRNS", transparency));
    return file.Add(PngChunk("IDAT", zlib)).Add(PngChunk("IEND", {})).Bytes();
}

const std::vector<DecodeRow>& PngRows()
{
    static const std::vector<DecodeRow> rows = {
        {"red, green, blue", L"png", MakePng(1, 2, 2, {}, {0, 255, 0, 0, 0, 1, 2, 3}), 1, {RED, 0xFF010203}},
        {"key, key colour, half",
         L"png",
         MakePng(3, 1, 6, {}, {0, 9, 9, 9, 0, 254, 255, 255, 255, 1, 2, 3, 128}),
         3,
         {KEY, WHITE, 0x80010203}},
        {"grey", L"png", MakePng(2, 1, 0, {}, {0, 77, 255}), 2, {0xFF4D4D4D, WHITE}},
        {"grey, one transparent", L"png", MakePng(2, 1, 0, {0, 77}, {0, 77, 255}), 2, {KEY, WHITE}},
        {"indices, the second transparent", L"png", MakePng(2, 1, 3, {255, 0}, {0, 0, 1}), 2, {RED, KEY}},
    };
    return rows;
}

/// A JPEG of one block of 8 x 8 samples a component, all of the same value. The quantiser is 8, so that a DC
/// of n moves the samples from 128 by n * 8 / 8 = n. The only DC code, "0", says that six bits follow; the
/// only AC code, "0", ends the block: a component is the byte 0nnnnnn0.
Bytes MakeJpeg(std::initializer_list<int> values, bool hasAdobeMarker)
{
    const auto components = static_cast<unsigned>(values.size());
    PictureBytes file;
    file.U8({0xFF, 0xD8});
    if (hasAdobeMarker) file.U8({0xFF, 0xEE, 0, 14}).Text("Adobe").U8({0, 100, 0, 0, 0, 0, 0});
    file.U8({0xFF, 0xDB, 0, 67, 0});
    for (int i = 0; i < 64; ++i) file.U8({8});
    file.U8({0xFF, 0xC0, 0, 8 + 3 * components, 8, 0, 8, 0, 8, components});
    for (unsigned i = 1; i <= components; ++i) file.U8({i, 0x11, 0});
    file.U8({0xFF, 0xC4, 0, 20, 0x00, 1}).Zeros(15).U8({6});
    file.U8({0xFF, 0xC4, 0, 20, 0x10, 1}).Zeros(15).U8({0});
    file.U8({0xFF, 0xDA, 0, 6 + 2 * components, components});
    for (unsigned i = 1; i <= components; ++i) file.U8({i, 0});
    file.U8({0, 63, 0});
    for (const int value : values) {
        const int dc = value - 128; // 32..63 as it is, -63..-32 as its bits less one
        file.U8({static_cast<unsigned>(dc > 0 ? dc : dc + 63) << 1});
    }
    return file.U8({0xFF, 0xD9}).Bytes();
}

const std::vector<DecodeRow>& JpegRows()
{
    const auto all = [](std::uint32_t pixel) {
        return Pixels(64, pixel);
    };
    static const std::vector<DecodeRow> rows = {
        {"grey", L"jpg", MakeJpeg({178}, false), 8, all(0xFFB2B2B2)},
        {"red, green, blue", L"jpeg", MakeJpeg({178, 80, 90}, true), 8, all(0xFFB2505A), true},
        // With Adobe's marker 255 is no ink: red = 178 * 190 / 255 = 132.6, green = 80 * 190 / 255 = 59.6,
        // blue = 90 * 190 / 255 = 67.06.
        {"four inks inverted", L"jpg", MakeJpeg({178, 80, 90, 190}, true), 8, all(0xFF853C43), true},
        // Without, 0 is: red = 77 * 65 / 255 = 19.6, green = 175 * 65 / 255 = 44.6, blue = 165 * 65 / 255
        // = 42.06.
        {"four inks", L"jpg", MakeJpeg({178, 80, 90, 190}, false), 8, all(0xFF142D2A), true},
    };
    return rows;
}

std::vector<DecodeRow> AllRows()
{
    std::vector<DecodeRow> all;
    for (const auto* rows :
         {&BmpRows(), &PcxRows(), &TgaRows(), &GifRows(), &TiffRows(), &PngRows(), &JpegRows()})
        all.insert(all.end(), rows->begin(), rows->end());
    return all;
}
} // namespace

TEST(Picture, BmpGivesThePixelsWorkedOutByHand)
{
    for (const DecodeRow& row : BmpRows()) ExpectPixels(row);
}

TEST(Picture, PcxGivesThePixelsWorkedOutByHand)
{
    for (const DecodeRow& row : PcxRows()) ExpectPixels(row);
}

TEST(Picture, TgaGivesThePixelsWorkedOutByHand)
{
    for (const DecodeRow& row : TgaRows()) ExpectPixels(row);
}

TEST(Picture, GifGivesThePixelsWorkedOutByHand)
{
    for (const DecodeRow& row : GifRows()) ExpectPixels(row);
}

TEST(Picture, TiffGivesThePixelsWorkedOutByHand)
{
    for (const DecodeRow& row : TiffRows()) ExpectPixels(row);
    EXPECT_FALSE(DecodePicture(TiffRows()[0].file, L"tif")->isGeoReferenced);
    EXPECT_TRUE(DecodePicture(TiffRows()[1].file, L"tif")->isGeoReferenced);
}

TEST(Picture, PngGivesThePixelsWorkedOutByHand)
{
    for (const DecodeRow& row : PngRows()) ExpectPixels(row);
}

TEST(Picture, JpegGivesThePixelsWorkedOutByHand)
{
    for (const DecodeRow& row : JpegRows()) ExpectPixels(row);
}

TEST(Picture, HasAColorKeyExactlyWhenAPixelIsTransparent)
{
    for (const DecodeRow& row : AllRows()) {
        if (!row.IsOurs()) continue;
        const bool isTransparent = std::count(row.pixels.begin(), row.pixels.end(), KEY) != 0;
        EXPECT_EQ(DecodePicture(row.file, row.extension)->hasColorKey, isTransparent) << row.what;
    }
}

TEST(Picture, EveryPrefixOfAFileEndsInItsPictureOrInAReason)
{
    for (const DecodeRow& row : AllRows()) {
        SCOPED_TRACE(row.what);
        for (std::size_t length = 0; length < row.file.size(); ++length) {
            std::wstring reason;
            const auto picture = DecodePicture(std::span(row.file).first(length), row.extension, &reason);
            ASSERT_EQ(picture == nullptr, !reason.empty()) << length;
            if (!picture) continue;
            ASSERT_EQ(picture->width, row.width);
            ASSERT_EQ(picture->pixels.size(), row.pixels.size());
        }
    }
}

TEST(Picture, SizesThatTheBytesCannotBackTakeNoMemory)
{
    // 20000 x 10000 pixels of which a few bytes are there.
    const Bytes few(16, 0);
    const std::string tooShort = "the file is too short for the size of the picture";
    EXPECT_EQ(ReasonOf(MakeBmp({20000, 10000, 24}, few), L"bmp"), tooShort);
    EXPECT_EQ(ReasonOf(MakeBmp({20000, 10000, 1, 0, 40, 0, {0, 1}}, few), L"bmp"), tooShort);
    EXPECT_EQ(ReasonOf(MakeBmp({20000, 10000, 8, 1, 40, 0, {0, 1}}, few), L"bmp"), tooShort);
    EXPECT_EQ(ReasonOf(MakeTga({10, 20000, 10000}, few), L"tga"), tooShort);
    EXPECT_EQ(ReasonOf(MakePcx({8, 3, 20000, 10000, 20000}, few), L"pcx"), tooShort);
    EXPECT_EQ(ReasonOf(MakeGif(20000, 10000, {0, 0, 1, 1}, 0, 9, {4, 0, 5}), L"gif"), tooShort);
    EXPECT_EQ(ReasonOf(MakePng(20000, 10000, 2, {}, few), L"png"), tooShort);
    Bytes jpeg = MakeJpeg({178}, false);
    const std::size_t frame = 2 + 69 + 5; // height and width follow the frame's marker, length and depth
    jpeg[frame] = jpeg[frame + 2] = 0x20;
    EXPECT_EQ(ReasonOf(jpeg, L"jpg"), tooShort);

    const std::string tooLarge = "the picture is too large";
    EXPECT_EQ(ReasonOf(MakeBmp({1 << 14, (1 << 14) + 1, 24}, few), L"bmp"), tooLarge);
    EXPECT_EQ(ReasonOf(MakeBmp({0x7FFFFFFF, static_cast<int>(0x80000000), 1, 0, 40, 0, {0, 1}}, few), L"bmp"),
              tooLarge);
    EXPECT_EQ(ReasonOf(MakeTga({2, 65535, 65535}, few), L"tga"), tooLarge);
    EXPECT_EQ(ReasonOf(MakePng(0x7FFFFFFF, 0x7FFFFFFF, 2, {}, few), L"png"), tooLarge);
}

TEST(Picture, WhatIsNoPictureSaysWhy)
{
    const struct {
        const wchar_t* extension;
        Bytes file;
        const char* reason;
    } rows[] = {
        {L"bmp", {'B', 'A', 0, 0}, "not a BMP file"},
        {L"bmp", MakeBmp({0, 5, 24}, {}), "the picture has no pixels"},
        {L"bmp", MakeBmp({-1, 5, 24}, {}), "the picture has no pixels"},
        {L"bmp", MakeBmp({1, 1, 5}, {0, 0, 0, 0}), "a kind of BMP that is not supported"},
        {L"bmp", MakeBmp({1, 1, 24, 1}, {0, 0, 0, 0}), "a kind of BMP that is not supported"},
        {L"bmp", MakeBmp({1, 1, 24, 0, 13}, {0, 0, 0, 0}), "the BMP header is unknown"},
        {L"pcx", Bytes(200, 1), "not a PCX file"},
        {L"pcx", MakePcx({8, 2, 1, 1, 2}, {}), "a kind of PCX that is not supported"},
        {L"pcx", MakePcx({8, 1, 0, 1, 2}, {}), "the picture has no pixels"},
        {L"tga", MakeTga({2, 0, 1}, {}), "the picture has no pixels"},
        {L"tga", MakeTga({7, 1, 1}, {0, 0, 0}), "not a TGA file, or a kind of it that is not supported"},
        {L"gif", {'G', 'I', 'F'}, "not a GIF file"},
        {L"jpg", {0xFF, 0xD8, 0xFF, 0xD9}, "not a JPEG file, or a damaged one"},
        {L"tif", {'I', 'I', 42, 0, 8, 0, 0, 0}, "not a TIFF file, or a damaged one"},
        {L"png", {0x89, 'P', 'N', 'G'}, "not a PNG file, or a damaged one"},
        {L"", {}, "not a picture of a known format"},
        {L"dxf", {'0', '\n'}, "not a picture of a known format"},
    };
    for (const auto& row : rows) EXPECT_EQ(ReasonOf(row.file, row.extension), row.reason);
}

TEST(Picture, TheExtensionDecidesAndAnUnknownOneLeavesItToTheBytes)
{
    const Bytes bmp = MakeBmp({1, 1, 24}, {0, 0, 255, 0});
    EXPECT_EQ(ReasonOf(bmp, L"BmP"), "a picture");
    EXPECT_EQ(ReasonOf(bmp, L"gif"), "not a GIF file");
    for (const auto* rows : {&BmpRows(), &GifRows(), &TiffRows(), &PngRows(), &JpegRows()})
        EXPECT_EQ(ReasonOf(rows->front().file, L"img"), "a picture") << rows->front().what;
    EXPECT_EQ(ReasonOf(PcxRows().front().file, L""), "a picture");
    Bytes tga = TgaRows().front().file;
    EXPECT_EQ(ReasonOf(tga, L""), "not a picture of a known format");
    tga = PictureBytes().Add(tga).U32({0, 0}).Text("TRUEVISION-XFILE.").U8({0}).Bytes();
    EXPECT_EQ(ReasonOf(tga, L""), "a picture");
}

TEST(Picture, IsLoadedFromAFileByItsName)
{
    const TemporaryFolder folder;
    for (const DecodeRow& row : AllRows()) {
        if (!row.IsOurs()) continue;
        const std::string name = "site plan." + ToUtf8(row.extension);
        WriteFile(folder / name, {reinterpret_cast<const char*>(row.file.data()), row.file.size()});
        std::wstring reason;
        const auto picture = LoadPicture(FromUtf8((folder / name).string()), &reason);
        ASSERT_NE(picture, nullptr) << row.what << ": " << ToUtf8(reason);
        EXPECT_EQ(picture->pixels, row.pixels) << row.what;
    }
    std::wstring reason;
    EXPECT_EQ(LoadPicture(FromUtf8((folder / "none.bmp").string()), &reason), nullptr);
    EXPECT_EQ(reason, L"no such file");
    std::filesystem::create_directory(folder / "folder.bmp");
    EXPECT_EQ(LoadPicture(FromUtf8((folder / "folder.bmp").string()), &reason), nullptr);
    EXPECT_EQ(reason, L"is a folder");
}
