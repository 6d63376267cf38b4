#include "platform/PictureFile.h"

#include "platform/DeviceOperations.h"
#include "platform/FilePath.h"
#include "platform/OutputFile.h"
#include "platform/picture/Encoders.h"

namespace {
struct EncoderRow {
    std::wstring_view extension;
    const wchar_t* (*encode)(const PixelRows&, OutputFile&);
};

constexpr EncoderRow ENCODERS[] = {{L"png", EncodePng}, {L"bmp", EncodeBmp}};

const wchar_t* (*FindEncoder(const std::wstring& extension))(const PixelRows&, OutputFile&)
{
    for (const EncoderRow& row : ENCODERS) {
        if (FilePath::SameText(row.extension, extension)) return row.encode;
    }
    return nullptr;
}

bool Complain(std::wstring* reason, const std::wstring& complaint)
{
    if (reason) *reason = complaint;
    return false;
}
} // namespace

bool SavePicture(const std::wstring& name, const CBitmap& bitmap, std::wstring* reason)
{
    const auto encode = FindEncoder(FilePath::Extension(name));
    if (!encode) return Complain(reason, L"not a picture format that can be written");
    const PixelRows rows = DeviceOperations::PixelsOf(bitmap);
    if (!rows.pixels) return Complain(reason, L"the bitmap is empty");
    OutputFile file;
    if (!file.Open(name)) return Complain(reason, file.Reason());
    if (const wchar_t* complaint = encode(rows, file)) return Complain(reason, complaint);
    return file.Close() || Complain(reason, file.Reason());
}
