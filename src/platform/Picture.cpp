#include "platform/Picture.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <string>

#include "platform/FilePath.h"
#include "platform/InputFile.h"
#include "platform/picture/ByteSource.h"
#include "platform/picture/Decoders.h"

namespace {
using Decoder = Complaint (*)(ByteSource&, Picture&);

struct ExtensionRow {
    std::wstring_view extension;
    Decoder decoder;
};

constexpr ExtensionRow EXTENSIONS[] = {
    {L"bmp", DecodeBmp},  {L"jpg", DecodeJpeg}, {L"jpeg", DecodeJpeg},
    {L"gif", DecodeGif},  {L"pcx", DecodePcx},  {L"tiff", DecodeTiff},
    {L"tif", DecodeTiff}, {L"tga", DecodeTga},  {L"png", DecodePng},
};

/// First bytes that show a format. PCX has no better ones: its maker, a version and the run-length coding.
struct SignatureRow {
    std::string_view bytes;
    Decoder decoder;
};

using namespace std::string_view_literals;
constexpr SignatureRow SIGNATURES[] = {
    {"\x89PNG\r\n\x1A\n"sv, DecodePng},
    {"\xFF\xD8\xFF"sv, DecodeJpeg},
    {"GIF8"sv, DecodeGif},
    {"II*\0"sv, DecodeTiff},
    {"MM\0*"sv, DecodeTiff},
    {"II+\0"sv, DecodeTiff},
    {"MM\0+"sv, DecodeTiff},
    {"BM"sv, DecodeBmp},
    {"\x0A\x00\x01"sv, DecodePcx},
    {"\x0A\x02\x01"sv, DecodePcx},
    {"\x0A\x03\x01"sv, DecodePcx},
    {"\x0A\x04\x01"sv, DecodePcx},
    {"\x0A\x05\x01"sv, DecodePcx},
};

/// TGA has no first bytes of its own; files of its second version end in this.
constexpr std::string_view TGA_END = "TRUEVISION-XFILE.\0"sv;

Decoder DecoderByBytes(ByteSource& source)
{
    constexpr std::size_t LONGEST_SIGNATURE = 8;
    char first[LONGEST_SIGNATURE] = {};
    const std::string_view start(first, source.ReadAt(0, first, sizeof first));
    for (const SignatureRow& row : SIGNATURES) {
        if (start.starts_with(row.bytes)) return row.decoder;
    }
    char last[TGA_END.size()] = {};
    if (source.Size() < sizeof last) return nullptr;
    const std::string_view end(last, source.ReadAt(source.Size() - sizeof last, last, sizeof last));
    return end == TGA_END ? DecodeTga : nullptr;
}

Decoder FindDecoder(ByteSource& source, std::wstring_view extension)
{
    for (const ExtensionRow& row : EXTENSIONS) {
        if (FilePath::SameText(row.extension, extension)) return row.decoder;
    }
    return DecoderByBytes(source);
}

Complaint Decode(ByteSource& source, std::wstring_view extension, Picture& picture)
{
    const Decoder decoder = FindDecoder(source, extension);
    return decoder ? decoder(source, picture) : L"not a picture of a known format";
}

std::shared_ptr<const Picture> Decoded(ByteSource& source, std::wstring_view extension, std::wstring* reason)
{
    Complaint complaint = nullptr;
    try {
        auto picture = std::make_shared<Picture>();
        complaint = Decode(source, extension, *picture);
        if (!complaint) return picture;
    } catch (const std::bad_alloc&) {
        complaint = L"not enough memory";
    }
    if (reason) *reason = complaint;
    return nullptr;
}
} // namespace

std::shared_ptr<const Picture> LoadPicture(const std::wstring& fileName, std::wstring* reason)
{
    InputFile file;
    if (!file.Open(fileName)) {
        if (reason) *reason = file.Reason();
        return nullptr;
    }
    FileSource source(file);
    return Decoded(source, FilePath::Extension(fileName), reason);
}

std::shared_ptr<const Picture> DecodePicture(std::span<const std::uint8_t> bytes, std::wstring_view extension,
                                             std::wstring* reason)
{
    MemorySource source(bytes);
    return Decoded(source, extension, reason);
}
