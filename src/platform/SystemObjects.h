#pragma once

#include <cstdint>
#include <memory>

class CBrush;
class CPen;

/// What a font is made of, in the words of LOGFONT.
struct FontWish {
    int height;
    int width;
    int escapement;
    int orientation;
    int weight;
    bool italic;
    bool underline;
    bool strikeOut;
    int charset;
    int outPrecision;
    int clipPrecision;
    int quality;
    int pitch;
    const wchar_t* faceName; ///< As FindFont takes it.
};

/// What the system draws with, made from the descriptions that pens, brushes and fonts are: handles of GDI,
/// which live as long as anyone holds them; null where the device is software. Each is false when the system
/// has no room for one more.
struct SystemObjects {
    [[nodiscard]] static bool MakePen(const CPen& pen, std::shared_ptr<void>& handle);
    [[nodiscard]] static bool MakeBrush(const CBrush& brush, std::shared_ptr<void>& handle);
    [[nodiscard]] static bool MakeFont(const FontWish& wish, std::shared_ptr<void>& handle);
    /// Zeroed pixels that the handle owns, width * height of them, rows from top to bottom.
    [[nodiscard]] static bool MakeBitmap(int width, int height, std::shared_ptr<void>& handle,
                                         std::uint32_t*& pixels);
};
