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
struct TiffInput {
    ByteSource* source;
    std::uint64_t position;
};

tmsize_t ReadBytes(thandle_t handle, void* bytes, tmsize_t count)
{
    auto* input = static_cast<TiffInput*>(handle);
    if (count < 0) return -1;
    const std::size_t got = input->source->ReadAt(input->position, bytes, static_cast<std::size_t>(count));
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
    const std::uint64_t base = origin == SEEK_CUR   ? input->position
                               : origin == SEEK_END ? input->source->Size()
                                                    : 0;
    input->position = base + offset;
    return input->position;
}

int CloseNothing(thandle_t)
{
    return 0;
}

toff_t SizeOf(thandle_t handle)
{
    return static_cast<TiffInput*>(handle)->source->Size();
}

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
    // "m": never mapped into memory.
    return Tiff(TIFFClientOpenExt("picture", "rm", &input, ReadBytes, WriteBytes, SeekTo, CloseNothing,
                                  SizeOf, nullptr, nullptr, options.get()));
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

bool ReadPixels(TIFF* tiff, Picture& picture)
{
    char message[1024] = {};
    TIFFRGBAImage image = {};
    if (!TIFFRGBAImageBegin(&image, tiff, 0, message)) return false;
    image.req_orientation = ORIENTATION_TOPLEFT;
    // What cannot be read stays black.
    (void)TIFFRGBAImageGet(&image, picture.pixels.data(), image.width, image.height);
    TIFFRGBAImageEnd(&image);
    return true;
}
} // namespace

Complaint DecodeTiff(ByteSource& source, Picture& picture)
{
    // Strips and tiles of the largest picture fit, with eight bytes a pixel; libtiff itself holds blocks that
    // it reads against the size of the file.
    constexpr tmsize_t LARGEST_BLOCK = static_cast<tmsize_t>(Picture::MAX_PIXELS * 8);
    TiffInput input = {&source, 0};
    const Tiff tiff = Open(input, LARGEST_BLOCK);
    if (!tiff) return L"not a TIFF file, or a damaged one";
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &height);
    const std::uint64_t backed = PixelsBacked(tiff.get(), source.Size(), width);
    if (const Complaint complaint = Pixels::Allocate(picture, width, height, backed)) return complaint;
    if (!ReadPixels(tiff.get(), picture)) return L"a kind of TIFF that is not supported";
    picture.isGeoReferenced = HasGeoKeys(tiff.get());
    std::transform(picture.pixels.begin(), picture.pixels.end(), picture.pixels.begin(), Converted);
    Pixels::KeyOutTransparent(picture);
    return nullptr;
}
