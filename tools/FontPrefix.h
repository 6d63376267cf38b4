#pragma once

#include <optional>
#include <string>

/// The formatting that the DXF writer puts before the text of every MTEXT, and that comes back as part of the
/// text:
/// "\f", the font, "|b0|i0|c0|p34;" (b1 for bold, i1 for italic).
struct FontPrefix {
    std::wstring font;
    bool bold = false;
    bool italic = false;
};

/// Takes such a prefix off the text; none, and the text as it was, when it does not begin with one. Earlier
/// writes may have left several, one before the other; the last one governs the text, so all are taken and
/// that one is returned.
std::optional<FontPrefix> TakeFontPrefix(std::wstring& text);

/// The family of a font's name as an MTEXT carries it: the part before the marks ("ARIAL|B0|I0").
std::wstring FontFamily(const std::wstring& font);
