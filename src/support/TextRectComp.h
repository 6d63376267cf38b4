#pragma once

#include "platform/Export.h"
#include "platform/Font.h"
#include "support/Rectangle.h"
#include "support/TextInfo.h"

#include <cstdint>
#include <string>
#include <vector>

/// Measures texts from font units, so that a box does not depend on any zoom or device. The size of a text is
/// the height of a capital letter; a line is as high as the font's cell (ascent plus descent), as wide as the
/// sum of the advances of its characters.
class HALYARD_API TextRectComp {
public:
    using Rect = GTL::Rectangle<GTL::Point2D<double>>;

    /// The rectangle of the text in drawing units, turned by the text's rotation, its bottom-left corner at
    /// the origin. A text with the multi-line flag is broken into lines at its rectangle width, any other is
    /// one line.
    Rect operator()(const TextInfo& info, const std::wstring& text);
    /// The text broken into lines that are no wider than width (drawing units; 0 or less for no limit): at
    /// blanks, and always at "\P" and line feeds. A single word wider than that stays whole. Inline
    /// formatting codes take no room.
    Rect operator()(const TextInfo& info, const std::wstring& text, double width);

    /// The lines of the last measurement: plain text, inline codes interpreted or dropped, never shown.
    int GetNumberOfSubStrings() const { return static_cast<int>(m_Lines.size()); }
    /// Index 0 to the number less one; any other gives an empty string.
    const std::wstring& GetSubString(int index) const;
    /// Height of one line of the last measurement, in drawing units.
    double GetTextHeight() const { return m_LineHeight; }

private:
    /// The rectangle of m_Lines, of which the widest has so many font units; sets the line height.
    Rect MakeRect(const TextInfo& info, const FontFace& face, std::int64_t fontUnits);

    std::vector<std::wstring> m_Lines;
    double m_LineHeight = 0;
};
