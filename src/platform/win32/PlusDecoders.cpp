#include <algorithm>
#include <cstdint>

#include "platform/picture/Decoders.h"
#include "platform/win32/PictureHeaders.h"
#include "platform/win32/PlusSession.h"
#include "platform/win32/SourceStream.h"

namespace {
namespace Flat = Gdiplus::DllExports;

struct Size {
    UINT width = 0;
    UINT height = 0;
};

bool Measure(Gdiplus::GpBitmap* bitmap, Size& size)
{
    return Flat::GdipGetImageWidth(bitmap, &size.width) == Gdiplus::Ok
           && Flat::GdipGetImageHeight(bitmap, &size.height) == Gdiplus::Ok;
}

/// Copies a bitmap's pixels to a place in the picture; what lies beyond the picture is left out.
bool CopyPixels(Gdiplus::GpBitmap* bitmap, const Size& size, std::uint64_t left, std::uint64_t top,
                Picture& picture)
{
    const auto columns = static_cast<std::uint64_t>(picture.width);
    const auto rows = static_cast<std::uint64_t>(picture.height);
    if (left >= columns || top >= rows) return false;
    const Gdiplus::Rect part(0, 0, static_cast<INT>(std::min<std::uint64_t>(size.width, columns - left)),
                             static_cast<INT>(std::min<std::uint64_t>(size.height, rows - top)));

    Gdiplus::BitmapData target = {};
    target.Width = static_cast<UINT>(part.Width);
    target.Height = static_cast<UINT>(part.Height);
    target.Stride = picture.width * 4;
    target.PixelFormat = PixelFormat32bppARGB;
    target.Scan0 = Pixels::Row(picture, top) + left;
    constexpr UINT INTO_OURS = Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeUserInputBuf;
    if (Flat::GdipBitmapLockBits(bitmap, &part, INTO_OURS, PixelFormat32bppARGB, &target) != Gdiplus::Ok)
        return false;
    return Flat::GdipBitmapUnlockBits(bitmap, &target) == Gdiplus::Ok;
}

/// Puts what was decoded into the picture: all of it, or the frame of a GIF alone, whose screen then shows
/// nothing around it.
bool Place(Gdiplus::GpBitmap* bitmap, const PictureHeader& header, Picture& picture)
{
    Size size;
    if (!Measure(bitmap, size)) return false;
    const bool isFrame = size.width == header.frameWidth && size.height == header.frameHeight;
    if (!isFrame) return CopyPixels(bitmap, size, 0, 0, picture);
    std::fill(picture.pixels.begin(), picture.pixels.end(), Picture::COLOR_KEY);
    return CopyPixels(bitmap, size, header.frameLeft, header.frameTop, picture);
}

/// Decodes the first picture of a file whose header is known.
Complaint DecodeInto(ByteSource& source, const PictureHeader& header, Complaint damaged, Picture& picture)
{
    const PlusSession session;
    if (!session.IsOpen()) return L"the system's decoder cannot be started";
    SourceStream stream(source);
    PlusBitmap bitmap;
    if (Flat::GdipCreateBitmapFromStream(&stream, bitmap.Slot()) != Gdiplus::Ok) return damaged;
    return Place(bitmap.Get(), header, picture) ? nullptr : damaged;
}

Complaint Decode(ByteSource& source, const PictureHeader& header, Complaint damaged, Picture& picture)
{
    if (header.complaint) return header.complaint;
    if (const Complaint complaint = Pixels::Allocate(picture, header.width, header.height, header.backed))
        return complaint;
    if (const Complaint complaint = DecodeInto(source, header, damaged, picture)) return complaint;
    Pixels::KeyOutTransparent(picture);
    return nullptr;
}
} // namespace

Complaint DecodeGif(ByteSource& source, Picture& picture)
{
    const PictureHeader header = ReadGifHeader(source);
    return Decode(source, header, L"the GIF file is damaged", picture);
}

Complaint DecodeJpeg(ByteSource& source, Picture& picture)
{
    // Each pass of a progressive file costs the whole picture, however few bytes it has. Encoders make about
    // ten; the largest pictures may have a few more, small ones plenty.
    constexpr std::uint64_t MOST_PIXELS_SCANNED = std::uint64_t{1} << 31;
    PictureHeader header = ReadJpegHeader(source);
    const std::uint64_t pixels = std::max<std::uint64_t>(header.width * header.height, 1);
    const auto mostScans = static_cast<int>(std::clamp<std::uint64_t>(MOST_PIXELS_SCANNED / pixels, 16, 100));
    if (!header.complaint && header.scans > mostScans) return L"a kind of JPEG that is not supported";
    return Decode(source, header, L"not a JPEG file, or a damaged one", picture);
}

Complaint DecodePng(ByteSource& source, Picture& picture)
{
    return Decode(source, ReadPngHeader(source), L"not a PNG file, or a damaged one", picture);
}

Complaint DecodeTiff(ByteSource& source, Picture& picture)
{
    const PictureHeader header = ReadTiffHeader(source);
    picture.isGeoReferenced = header.hasGeoKeys;
    return Decode(source, header, L"a kind of TIFF that is not supported", picture);
}
