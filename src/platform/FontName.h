#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

/// What a font name as drawings carry it asks for.
struct FontName {
    std::wstring family; ///< Without marks, file suffix and blanks around it; may be empty.
    bool isBold = false;
    bool isItalic = false;
};

/// Takes a font name apart: "ARIAL|B1|I0|C0|P34", "arial.ttf", "txt.shx", "Standard". The family ends before
/// the first "|" and loses one suffix of a font file (.ttf .ttc .otf .otc .shx .pfb .pfa .fon, any case);
/// "|b1" and
/// "|i1" after it, any case, mean bold and italic.
[[nodiscard]] HALYARD_API FontName ParseFontName(std::wstring_view name);
