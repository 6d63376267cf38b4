#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

/// Text between the wide strings inside (UTF-32 or UTF-16, by the size of wchar_t) and UTF-8 outside.
///
/// Any sequence of bytes survives the way in and out: ToUtf8(FromUtf8(bytes)) == bytes. A byte that is no
/// part of well-formed UTF-8 (overlong forms, encoded surrogates and values above U+10FFFF included) becomes
/// the lone surrogate U+DC80..U+DCFF that carries it in its low eight bits, and that surrogate becomes the
/// byte again. So every file name of a system whose names are bytes can be named by a wide string.

/// UTF-8 of a wide string. A surrogate pair is one character, whatever the size of wchar_t. A lone surrogate
/// outside U+DC80..U+DCFF and a value above U+10FFFF become U+FFFD. The result is well-formed exactly when
/// the text holds no lone U+DC80..U+DCFF.
[[nodiscard]] HALYARD_API std::string ToUtf8(std::wstring_view text);

/// Wide string of UTF-8 bytes; never fails (see above).
[[nodiscard]] HALYARD_API std::wstring FromUtf8(std::string_view bytes);

/// The first and the second half of what UTF-16 makes of a character beyond U+FFFF.
inline constexpr bool IsHighSurrogate(char32_t c)
{
    return c >= 0xD800 && c <= 0xDBFF;
}
inline constexpr bool IsLowSurrogate(char32_t c)
{
    return c >= 0xDC00 && c <= 0xDFFF;
}
