#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <mutex>
#include <vector>

#include <geotiff.h>
#include <tiffio.h>
#include <xtiffio.h>

#include "platform/picture/Decoders.h"

namespace {
/// A file of ordinary size is held in memory as a whole: libtiff takes tiles of odd sizes only from files
/// that it believes to be mapped, and a private copy cannot shrink under it. A larger file is read piece by
/// piece.
struct TiffInput {
    static constexpr std::uint64_t LARGEST_HELD = std::uint64_t{1} << 30;

    explicit TiffInput(ByteSource& whole) : source(whole), size(whole.Size())
    {
        if (size > LARGEST_HELD) return;
        bytes.resize(static_cast<std::size_t>(size));
        bytes.resize(source.ReadAt(0, bytes.data(), bytes.size()));
        size = bytes.size();
    }

    ByteSource& source;
    std::uint64_t size;
    std::uint64_t position = 0;
    std::vector<std::uint8_t> bytes;
};

tmsize_t ReadBytes(thandle_t handle, void* bytes, tmsize_t count)
{
    auto* input = static_cast<TiffInput*>(handle);
    if (count < 0) return -1;
    const std::size_t got = input->source.ReadAt(input->position, bytes, static_cast<std::size_t>(count));
    input->position += got;
    return static_cast<tmsize_t>(got);
}

tmsize_t WriteBytes(thandle_t, void*, tmsize_t)
{
    return -1;
}

toff_t SeekTo(thandle_t handle, toff_t offset, int origin)
{
    auto* input = static_cast<TiffInput*>(handle);
    // An offset from the position or the end may be negative, carried in an unsigned number that wraps
    // around.
    const std::uint64_t base = origin == SEEK_CUR ? input->position : origin == SEEK_END ? input->size : 0;
    input->position = base + offset;
    return input->position;
}

int CloseNothing(thandle_t)
{
    return 0;
}

toff_t SizeOf(thandle_t handle)
{
    return static_cast<TiffInput*>(handle)->size;
}

int Map(thandle_t handle, void** bytes, toff_t* size)
{
    auto* input = static_cast<TiffInput*>(handle);
    *bytes = input->bytes.data();
    *size = input->bytes.size();
    return input->bytes.empty() ? 0 : 1;
}

void Unmap(thandle_t, void*, toff_t) {}

/// Keeps libtiff's messages from the handlers of the process, which are the host's.
int IgnoreMessage(TIFF*, void*, const char*, const char*, va_list)
{
    return 1;
}

void IgnoreGeoMessage(GTIF*, int, const char*, ...) {}

struct TiffEnd {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using Tiff = std::unique_ptr<TIFF, TiffEnd>;

struct OptionsEnd {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

/// Opens for reading, with GeoTIFF's tags known and no allocation above `largestBlock` bytes.
Tiff Open(TiffInput& input, tmsize_t largestBlock)
{
    static std::once_flag s_IsGeoTiffKnown;
    std::call_once(s_IsGeoTiffKnown, XTIFFInitialize);
    const std::unique_ptr<TIFFOpenOptions, OptionsEnd> options(TIFFOpenOptionsAlloc());
    if (!options) return nullptr;
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), IgnoreMessage, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), IgnoreMessage, nullptr);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), largestBlock);
    return Tiff(TIFFClientOpenExt("picture", "r", &input, ReadBytes, WriteBytes, SeekTo, CloseNothing, SizeOf,
                                  Map, Unmap, options.get()));
}

bool HasGeoKeys(TIFF* tiff)
{
    struct GeoEnd {
        void operator()(GTIF* keys) const { GTIFFree(keys); }
    };
    const std::unique_ptr<GTIF, GeoEnd> keys(GTIFNewEx(tiff, IgnoreGeoMessage, nullptr));
    if (!keys) return false;
    int version[3] = {};
    int count = 0;
    GTIFDirectoryInfo(keys.get(), version, &count);
    return count > 0;
}

/// The most pixels that `size` bytes of a compression can stand for.
std::uint64_t PixelsBacked(TIFF* tiff, std::uint64_t size, std::uint64_t width)
{
    struct Row {
        int compression;
        std::uint64_t pixelsPerByte;
    };
    // A sample takes a bit at least; PackBits repeats a byte 128 times in 2, LZW a string of 4096 in 12 bits,
    // deflate 1032 times, JPEG takes some bits a block of 64 samples.
    constexpr Row ROWS[] = {
        {COMPRESSION_NONE, 8 * Pixels::TRUNCATION_ALLOWANCE},
        {COMPRESSION_PACKBITS, 64 * 8 * Pixels::TRUNCATION_ALLOWANCE},
        {COMPRESSION_LZW, 2731 * 8},
        {COMPRESSION_DEFLATE, 1032 * 8},
        {COMPRESSION_ADOBE_DEFLATE, 1032 * 8},
        {COMPRESSION_JPEG, 1024},
        {COMPRESSION_OJPEG, 1024},
    };
    // A row without a change takes one bit in a fax.
    constexpr std::uint64_t ROWS_PER_BYTE = 8;
    // Zstandard's best, a block of 128 KiB in 4 bytes, of 1-bit samples.
    constexpr std::uint64_t OTHERWISE = 32768 * 8;

    std::uint16_t compression = COMPRESSION_NONE;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_COMPRESSION, &compression);
    const bool isFax = compression == COMPRESSION_CCITTFAX3 || compression == COMPRESSION_CCITTFAX4
                       || compression == COMPRESSION_CCITTRLE || compression == COMPRESSION_CCITTRLEW;
    if (isFax) return Pixels::Product(size, ROWS_PER_BYTE * width);
    const auto* row = std::find_if(std::begin(ROWS), std::end(ROWS),
                                   [compression](const Row& r) { return r.compression == compression; });
    return Pixels::Product(size, row == std::end(ROWS) ? OTHERWISE : row->pixelsPerByte);
}

/// libtiff's pixel, red in the lowest byte and the colour multiplied by alpha, as one of ours.
std::uint32_t Converted(std::uint32_t abgr)
{
    const std::uint32_t alpha = TIFFGetA(abgr);
    if (alpha == 0) return Picture::COLOR_KEY;
    const auto divided = [alpha](std::uint32_t sample) {
        return alpha == 255 ? sample : std::min<std::uint32_t>(255, Pixels::Scaled(sample, alpha));
    };
    return Pixels::FromRgba(divided(TIFFGetR(abgr)), divided(TIFFGetG(abgr)), divided(TIFFGetB(abgr)), alpha);
}

/// Reads one strip or tile. False, with nothing changed, when it cannot be read.
bool ReadBlock(TIFFRGBAImage& image, std::uint32_t width, std::uint32_t height, Picture& picture)
{
    std::vector<std::uint32_t> block(std::size_t{width} * height, Pixels::OPAQUE_BLACK);
    if (TIFFRGBAImageGet(&image, block.data(), width, height) == 0) return false;
    const auto top = static_cast<std::uint32_t>(image.row_offset);
    for (std::uint32_t y = 0; y < height; ++y) {
        std::copy_n(block.data() + std::size_t{y} * width, width,
                    Pixels::Row(picture, std::uint64_t{top} + y) + image.col_offset);
    }
    return true;
}

/// Reads one strip or tile after the other, for files whose first one is missing or damaged: libtiff gives up
/// there. False when none can be read.
bool ReadByBlocks(TIFF* tiff, TIFFRGBAImage& image, Picture& picture)
{
    const bool isTiled = TIFFIsTiled(tiff) != 0;
    std::uint32_t width = image.width;
    std::uint32_t height = image.height;
    TIFFGetFieldDefaulted(tiff, isTiled ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP, &height);
    if (isTiled) TIFFGetFieldDefaulted(tiff, TIFFTAG_TILEWIDTH, &width);
    // Turned pictures would need their blocks in another order.
    if (width == 0 || height == 0 || image.orientation != ORIENTATION_TOPLEFT) return false;

    bool isAnyRead = false;
    for (std::uint64_t y = 0; y < image.height; y += height) {
        for (std::uint64_t x = 0; x < image.width; x += width) {
            image.row_offset = static_cast<int>(y);
            image.col_offset = static_cast<int>(x);
            const auto columns = static_cast<std::uint32_t>(std::min<std::uint64_t>(width, image.width - x));
            const auto rows = static_cast<std::uint32_t>(std::min<std::uint64_t>(height, image.height - y));
            isAnyRead |= ReadBlock(image, columns, rows, picture);
        }
    }
    return isAnyRead;
}

Complaint ReadPixels(TIFF* tiff, Picture& picture)
{
    std::uint16_t compression = COMPRESSION_NONE;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_COMPRESSION, &compression);
    if (!TIFFIsCODECConfigured(compression)) return L"a compression of TIFF that is not supported";
    char message[1024] = {};
    TIFFRGBAImage image = {};
    if (!TIFFRGBAImageBegin(&image, tiff, 0, message)) return L"a kind of TIFF that is not supported";
    image.req_orientation = ORIENTATION_TOPLEFT;
    // Strips and tiles that cannot be read stay black, unless all are such.
    const bool isRead = TIFFRGBAImageGet(&image, picture.pixels.data(), image.width, image.height) != 0
                        || ReadByBlocks(tiff, image, picture);
    TIFFRGBAImageEnd(&image);
    return isRead ? nullptr : L"no part of the TIFF file can be read";
}
} // namespace

Complaint DecodeTiff(ByteSource& source, Picture& picture)
{
    // Strips and tiles of the largest picture fit, with eight bytes a pixel; libtiff itself holds blocks that
    // it reads against the size of the file.
    constexpr tmsize_t LARGEST_BLOCK = static_cast<tmsize_t>(Picture::MAX_PIXELS * 8);
    TiffInput input(source);
    const Tiff tiff = Open(input, LARGEST_BLOCK);
    if (!tiff) return L"not a TIFF file, or a damaged one";
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &height);
    const std::uint64_t backed = PixelsBacked(tiff.get(), source.Size(), width);
    if (const Complaint complaint = Pixels::Allocate(picture, width, height, backed)) return complaint;
    if (const Complaint complaint = ReadPixels(tiff.get(), picture)) return complaint;
    picture.isGeoReferenced = HasGeoKeys(tiff.get());
    std::transform(picture.pixels.begin(), picture.pixels.end(), picture.pixels.begin(), Converted);
    Pixels::KeyOutTransparent(picture);
    return nullptr;
}
