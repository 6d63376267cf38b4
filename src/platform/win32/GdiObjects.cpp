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
    const std::span<const int> pattern = pen.Pattern();
    return GdiDrawing::GeometricPen(pen.Style(), pen.Width(), pen.Color(), pattern.data(),
                                    static_cast<int>(pattern.size()));
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
    const auto bitmap = std::make_shared<GdiBitmap>();
    bitmap->handle = GdiDrawing::MakeBitmap(width, height, pixels);
    handle = bitmap;
    return bitmap->handle && pixels;
}

std::uint32_t* CBitmap::Finished() const
{
    ::GdiFlush();
    return m_Pixels;
}
