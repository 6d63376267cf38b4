#include <cstdint>
#include <vector>

#include "platform/picture/Encoders.h"
#include "platform/win32/PlusSession.h"

namespace {
namespace Flat = Gdiplus::DllExports;

/// GDI+'s encoder of PNG, by its published number.
constexpr CLSID PNG_ENCODER = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
constexpr const wchar_t* FAILED_TO_ENCODE = L"the picture could not be encoded";

/// Bytes in memory that the encoder writes to and goes back in.
class MemoryStream {
public:
    MemoryStream()
    {
        if (::CreateStreamOnHGlobal(nullptr, TRUE, &m_Stream) != S_OK) m_Stream = nullptr;
    }
    ~MemoryStream()
    {
        if (m_Stream) m_Stream->Release();
    }
    MemoryStream(const MemoryStream&) = delete;
    MemoryStream& operator=(const MemoryStream&) = delete;

    IStream* Get() const { return m_Stream; }

    bool CopyTo(OutputFile& file) const
    {
        HGLOBAL memory = nullptr;
        STATSTG status = {};
        if (m_Stream->Stat(&status, STATFLAG_NONAME) != S_OK) return false;
        if (::GetHGlobalFromStream(m_Stream, &memory) != S_OK) return false;
        const void* bytes = ::GlobalLock(memory);
        if (!bytes) return false;
        file.Write(bytes, static_cast<std::size_t>(status.cbSize.QuadPart));
        ::GlobalUnlock(memory);
        return true;
    }

private:
    IStream* m_Stream = nullptr;
};
} // namespace

const wchar_t* EncodePng(const PixelRows& bitmap, OutputFile& file)
{
    const PlusSession session;
    if (!session.IsOpen()) return L"the system's encoder cannot be started";
    // GDI+ reads the pixels only, whatever the pointer's type lets it do. Their fourth byte means nothing.
    auto* pixels = reinterpret_cast<BYTE*>(const_cast<std::uint32_t*>(bitmap.pixels));
    PlusBitmap picture;
    if (Flat::GdipCreateBitmapFromScan0(bitmap.width, bitmap.height, bitmap.width * 4, PixelFormat32bppRGB,
                                        pixels, picture.Slot())
        != Gdiplus::Ok)
        return FAILED_TO_ENCODE;
    const MemoryStream stream;
    if (!stream.Get()) return L"not enough memory";
    if (Flat::GdipSaveImageToStream(picture.Get(), stream.Get(), &PNG_ENCODER, nullptr) != Gdiplus::Ok)
        return FAILED_TO_ENCODE;
    return stream.CopyTo(file) ? nullptr : FAILED_TO_ENCODE;
}
