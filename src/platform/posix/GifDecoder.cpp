#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <vector>

#include <gif_lib.h>

#include "platform/picture/Decoders.h"

namespace {
constexpr int NOT_TRANSPARENT = -1;

int ReadBytes(GifFileType* file, GifByteType* bytes, int count)
{
    auto* in = static_cast<ByteReader*>(file->UserData);
    return static_cast<int>(in->Read(bytes, static_cast<std::size_t>(std::max(count, 0))));
}

struct GifEnd {
    void operator()(GifFileType* file) const { DGifCloseFile(file, nullptr); }
};
using Gif = std::unique_ptr<GifFileType, GifEnd>;

/// Reads one extension; a graphic control block tells which colour of the next image is transparent.
bool ReadExtension(GifFileType* gif, int& transparent)
{
    int code = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(gif, &code, &block) == GIF_ERROR) return false;
    while (block) {
        constexpr int CONTROL_BLOCK_SIZE = 4;
        if (code == GRAPHICS_EXT_FUNC_CODE && block[0] >= CONTROL_BLOCK_SIZE)
            transparent = (block[1] & 1) != 0 ? block[4] : NOT_TRANSPARENT;
        if (DGifGetExtensionNext(gif, &block) == GIF_ERROR) return false;
    }
    return true;
}

/// Goes to the first image. False when there is none.
bool FindImage(GifFileType* gif, int& transparent)
{
    for (;;) {
        GifRecordType record = UNDEFINED_RECORD_TYPE;
        if (DGifGetRecordType(gif, &record) == GIF_ERROR || record == TERMINATE_RECORD_TYPE) return false;
        if (record == IMAGE_DESC_RECORD_TYPE) return DGifGetImageDesc(gif) != GIF_ERROR;
        if (record == EXTENSION_RECORD_TYPE && !ReadExtension(gif, transparent)) return false;
    }
}

/// All 256 colours, grey when the file brings none.
std::vector<std::uint32_t> Palette(const GifFileType& gif, int transparent)
{
    const ColorMapObject* map = gif.Image.ColorMap ? gif.Image.ColorMap : gif.SColorMap;
    std::vector<std::uint32_t> palette(256, Pixels::OPAQUE_BLACK);
    for (std::uint32_t i = 0; i < palette.size(); ++i) {
        if (!map)
            palette[i] = Pixels::FromRgb(i, i, i);
        else if (static_cast<int>(i) < map->ColorCount)
            palette[i] = Pixels::FromRgb(map->Colors[i].Red, map->Colors[i].Green, map->Colors[i].Blue);
    }
    if (transparent != NOT_TRANSPARENT) palette[static_cast<std::size_t>(transparent)] = Picture::COLOR_KEY;
    return palette;
}

/// The rows of an image in the order of the file.
std::vector<std::size_t> RowOrder(std::size_t height, bool isInterlaced)
{
    struct Pass {
        std::size_t first, step;
    };
    constexpr Pass INTERLACED[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
    constexpr Pass PLAIN[] = {{0, 1}};
    std::vector<std::size_t> order;
    order.reserve(height);
    for (const Pass& pass : isInterlaced ? std::span<const Pass>(INTERLACED) : std::span<const Pass>(PLAIN)) {
        for (std::size_t y = pass.first; y < height; y += pass.step) order.push_back(y);
    }
    return order;
}

struct Frame {
    std::size_t left, top, width, height;
    bool isInterlaced;
};

/// Where the image lies on the screen; GIF's numbers have 16 bits.
Frame FrameOf(const GifImageDesc& image)
{
    const auto size = [](GifWord word) {
        return static_cast<std::size_t>(std::max(word, 0));
    };
    return {size(image.Left), size(image.Top), size(image.Width), size(image.Height), image.Interlace};
}

/// The screen without a frame is transparent; what is missing in the frame is black.
void ReadFrame(GifFileType* gif, const Frame& frame, int transparent, Picture& picture)
{
    const std::vector<std::uint32_t> palette = Palette(*gif, transparent);
    std::fill(picture.pixels.begin(), picture.pixels.end(), Picture::COLOR_KEY);
    for (std::size_t y = 0; y < frame.height; ++y)
        std::fill_n(Pixels::Row(picture, frame.top + y) + frame.left, frame.width, Pixels::OPAQUE_BLACK);

    std::vector<GifPixelType> line(frame.width);
    for (const std::size_t y : RowOrder(frame.height, frame.isInterlaced)) {
        if (DGifGetLine(gif, line.data(), static_cast<int>(line.size())) == GIF_ERROR) return;
        std::uint32_t* pixels = Pixels::Row(picture, frame.top + y) + frame.left;
        std::transform(line.begin(), line.end(), pixels, [&palette](GifPixelType i) { return palette[i]; });
    }
}
} // namespace

Complaint DecodeGif(ByteSource& source, Picture& picture)
{
    // The longest string of the 4096 in the table stands in 12 bits.
    constexpr std::uint64_t MOST_PIXELS_A_BYTE = 4096 * 8 / 12 + 1;
    ByteReader in(source);
    const Gif gif(DGifOpen(&in, ReadBytes, nullptr));
    if (!gif) return L"not a GIF file";
    int transparent = NOT_TRANSPARENT;
    if (!FindImage(gif.get(), transparent)) return L"the GIF file holds no picture";
    const Frame frame = FrameOf(gif->Image);
    if (frame.width == 0 || frame.height == 0) return L"the picture has no pixels";

    // A frame that does not fit makes the screen larger.
    const std::size_t width = std::max(frame.left + frame.width, static_cast<std::size_t>(gif->SWidth));
    const std::size_t height = std::max(frame.top + frame.height, static_cast<std::size_t>(gif->SHeight));
    const std::uint64_t backed = Pixels::Product(source.Size(), MOST_PIXELS_A_BYTE);
    if (const Complaint complaint = Pixels::Allocate(picture, width, height, backed)) return complaint;
    ReadFrame(gif.get(), frame, transparent, picture);
    Pixels::KeyOutTransparent(picture);
    return nullptr;
}
