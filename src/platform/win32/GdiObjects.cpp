#include <algorithm>
#include <cstddef>

#include "platform/CBitmap.h"
#include "platform/CBrush.h"
#include "platform/CPen.h"
#include "platform/FontName.h"
#include "platform/SystemObjects.h"
#include "platform/win32/GdiContext.h"

namespace {
HPEN GeometricPen(const CPen& pen)
{
    std::array<DWORD, CPen::MAX_PATTERN> lengths{};
    const std::span<const int> pattern = pen.Pattern();
    std::transform(pattern.begin(), pattern.end(), lengths.begin(),
                   [](int length) { return static_cast<DWORD>(length); });
    const LOGBRUSH brush = {BS_SOLID, pen.Color(), 0};
    const DWORD style = PS_GEOMETRIC | PS_ENDCAP_ROUND | PS_JOIN_ROUND | static_cast<DWORD>(pen.Style());
    return ::ExtCreatePen(style, static_cast<DWORD>(pen.Width()), &brush, static_cast<DWORD>(pattern.size()),
                          pattern.empty() ? nullptr : lengths.data());
}

LOGFONTW LogFontOf(const FontWish& wish)
{
    const FontName name = ParseFontName(wish.faceName);
    LOGFONTW font = {};
    font.lfHeight = wish.height;
    font.lfWidth = wish.width;
    font.lfEscapement = wish.escapement;
    font.lfOrientation = wish.orientation;
    font.lfWeight = name.isBold ? std::max(wish.weight, FW_BOLD) : wish.weight;
    font.lfItalic = wish.italic || name.isItalic;
    font.lfUnderline = wish.underline;
    font.lfStrikeOut = wish.strikeOut;
    font.lfCharSet = static_cast<BYTE>(wish.charset);
    font.lfOutPrecision = static_cast<BYTE>(wish.outPrecision);
    font.lfClipPrecision = static_cast<BYTE>(wish.clipPrecision);
    font.lfQuality = static_cast<BYTE>(wish.quality);
    font.lfPitchAndFamily = static_cast<BYTE>(wish.pitch);
    const std::size_t length = std::min(name.family.find(L'\0'), name.family.size());
    name.family.copy(font.lfFaceName, std::min<std::size_t>(length, LF_FACESIZE - 1));
    return font;
}
} // namespace

bool SystemObjects::MakePen(const CPen& pen, std::shared_ptr<void>& handle)
{
    handle = OwnGdiObject(pen.IsGeometric() ? GeometricPen(pen)
                                            : ::CreatePen(pen.Style(), pen.Width(), pen.Color()));
    return handle != nullptr;
}

bool SystemObjects::MakeBrush(const CBrush& brush, std::shared_ptr<void>& handle)
{
    handle = OwnGdiObject(::CreateSolidBrush(brush.Color()));
    return handle != nullptr;
}

bool SystemObjects::MakeFont(const FontWish& wish, std::shared_ptr<void>& handle)
{
    const LOGFONTW font = LogFontOf(wish);
    handle = OwnGdiObject(::CreateFontIndirectW(&font));
    return handle != nullptr;
}

bool SystemObjects::MakeBitmap(int width, int height, std::shared_ptr<void>& handle, std::uint32_t*& pixels)
{
    BITMAPINFO format = {};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = width;
    format.bmiHeader.biHeight = -height; // rows from top to bottom
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 32;
    format.bmiHeader.biCompression = BI_RGB;
    const auto bitmap = std::make_shared<GdiBitmap>();
    void* bits = nullptr;
    bitmap->handle = ::CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (!bitmap->handle || !bits) return false;
    handle = bitmap;
    pixels = static_cast<std::uint32_t*>(bits);
    return true;
}

std::uint32_t* CBitmap::Finished() const
{
    ::GdiFlush();
    return m_Pixels;
}
