#pragma once

#include "platform/Export.h"
#include "platform/Font.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The text that an MTEXT shows, without its inline codes. Line breaks ("\P", "\N", "\X", "^J", line feeds)
/// are line feeds, non-breaking blanks ("\~") are U+00A0, stacked numbers ("\S1/2;", "\S1#2;", "\S1^2;")
/// stand as "1/2", symbols are those of PlainText, "\M+nXXXX" is "?". Changes of font, height, width, slant,
/// spacing, alignment, colour and paragraph go with their values up to ";", or up to the end of the text
/// without one; over-, under- and struck-out lines and the braces of groups go. Of any other escape the
/// character after the backslash is shown. Control characters are left out, tabs are blanks.
[[nodiscard]] HALYARD_API std::wstring PlainMText(std::wstring_view text);

/// The text that a TEXT shows: "%%c", "%%d" and "%%p" are the signs of diameter, degree and plus-minus, "%%%"
/// a percent sign, "%%nnn" the character of that decimal number, "\U+XXXX" that of that hexadecimal number (a
/// pair of surrogates is one); the switches "%%u", "%%o" and "%%k" are left out. Letters in either case.
[[nodiscard]] HALYARD_API std::wstring PlainText(std::wstring_view text);

/// A text broken into lines.
struct BrokenText {
    std::vector<std::wstring> lines; ///< At least one.
    std::int64_t width = 0;          ///< Of the widest line, in font units.
};

/// Breaks a plain text at line feeds, and at blanks where a line would be wider than the limit (font units;
/// not finite: no limit). Blanks at the end of a line go; a word wider than the limit has a line of its own;
/// U+00A0 does not break and is shown as a blank. Takes time in proportion to the text's length.
[[nodiscard]] HALYARD_API BrokenText BreakLines(const std::wstring& plain, const FontFace& face,
                                                double limit);
