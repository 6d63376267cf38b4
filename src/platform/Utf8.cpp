#include "platform/Utf8.h"

#include <cstddef>
#include <cstdint>

namespace {
constexpr char32_t REPLACEMENT = 0xFFFD;
constexpr char32_t LAST_CHARACTER = 0x10FFFF;
constexpr char32_t FIRST_ESCAPE = 0xDC80;
constexpr char32_t LAST_ESCAPE = 0xDCFF;
constexpr char32_t ESCAPE_BASE = 0xDC00;

void AppendUtf8(std::string& out, char32_t c)
{
    const auto tail = [c](int shift) {
        return static_cast<char>(0x80 | (c >> shift & 0x3F));
    };
    if (c < 0x80) {
        out += static_cast<char>(c);
        return;
    }
    if (c < 0x800) {
        out += static_cast<char>(0xC0 | c >> 6);
        out += tail(0);
        return;
    }
    if (c < 0x10000) {
        out += static_cast<char>(0xE0 | c >> 12);
        out += tail(6);
        out += tail(0);
        return;
    }
    out += static_cast<char>(0xF0 | c >> 18);
    out += tail(12);
    out += tail(6);
    out += tail(0);
}

void AppendWide(std::wstring& out, char32_t c)
{
    if (sizeof(wchar_t) == 2 && c > 0xFFFF) {
        out += static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
        out += static_cast<wchar_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        return;
    }
    out += static_cast<wchar_t>(c);
}

/// The well-formed sequences by their first byte: how many bytes follow and the range of the second, which
/// shuts out overlong forms, surrogates and values above U+10FFFF (Unicode Standard, table 3-7).
struct Lead {
    unsigned char first, last;
    unsigned char following;
    unsigned char lowest, highest;
};

constexpr Lead LEADS[] = {
    {0xC2, 0xDF, 1, 0x80, 0xBF}, {0xE0, 0xE0, 2, 0xA0, 0xBF}, {0xE1, 0xEC, 2, 0x80, 0xBF},
    {0xED, 0xED, 2, 0x80, 0x9F}, {0xEE, 0xEF, 2, 0x80, 0xBF}, {0xF0, 0xF0, 3, 0x90, 0xBF},
    {0xF1, 0xF3, 3, 0x80, 0xBF}, {0xF4, 0xF4, 3, 0x80, 0x8F},
};

const Lead* FindLead(unsigned char byte)
{
    for (const Lead& lead : LEADS) {
        if (byte >= lead.first && byte <= lead.last) return &lead;
    }
    return nullptr;
}

/// Decodes the character that begins with a byte above 0x7F. Returns the bytes it takes; 0 when it is not
/// well-formed.
std::size_t DecodeSequence(std::string_view bytes, char32_t& character)
{
    const auto at = [bytes](std::size_t i) {
        return static_cast<unsigned char>(bytes[i]);
    };
    const Lead* lead = FindLead(at(0));
    if (!lead || bytes.size() <= lead->following) return 0;
    if (at(1) < lead->lowest || at(1) > lead->highest) return 0;

    character = at(0) & (0x3Fu >> lead->following);
    for (std::size_t i = 1; i <= lead->following; ++i) {
        if ((at(i) & 0xC0) != 0x80) return 0;
        character = character << 6 | (at(i) & 0x3Fu);
    }
    return std::size_t{lead->following} + 1;
}

/// Decodes the character at the front of a wide text, a pair of surrogates as one. Returns the places it
/// takes.
std::size_t DecodeWide(std::wstring_view text, char32_t& character)
{
    character = static_cast<char32_t>(text[0]);
    if (!IsHighSurrogate(character) || text.size() < 2 || !IsLowSurrogate(static_cast<char32_t>(text[1])))
        return 1;
    character = 0x10000 + ((character - 0xD800) << 10) + (static_cast<char32_t>(text[1]) - 0xDC00);
    return 2;
}
} // namespace

std::string ToUtf8(std::wstring_view text)
{
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        char32_t c = 0;
        text.remove_prefix(DecodeWide(text, c));
        if (c >= FIRST_ESCAPE && c <= LAST_ESCAPE)
            out += static_cast<char>(c - ESCAPE_BASE);
        else if (IsHighSurrogate(c) || IsLowSurrogate(c) || c > LAST_CHARACTER)
            AppendUtf8(out, REPLACEMENT);
        else
            AppendUtf8(out, c);
    }
    return out;
}

std::wstring FromUtf8(std::string_view bytes)
{
    std::wstring out;
    out.reserve(bytes.size());
    while (!bytes.empty()) {
        const auto first = static_cast<unsigned char>(bytes[0]);
        char32_t c = first;
        const std::size_t taken = first < 0x80 ? 1 : DecodeSequence(bytes, c);
        AppendWide(out, taken == 0 ? ESCAPE_BASE + first : c);
        bytes.remove_prefix(taken == 0 ? 1 : taken);
    }
    return out;
}
