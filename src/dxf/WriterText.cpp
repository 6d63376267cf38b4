#include "dxf/WriterText.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace {

constexpr std::uint32_t LARGEST_BYTE = 0xFF;
constexpr std::uint32_t LARGEST_CHARACTER = 0x10FFFF;
constexpr std::uint32_t REPLACEMENT = 0xFFFD;
constexpr std::size_t ESCAPE_LENGTH = 7;

std::uint32_t UnitAt(std::wstring_view text, std::size_t place)
{
    return static_cast<std::make_unsigned_t<wchar_t>>(text[place]);
}

bool IsPlain(std::uint32_t c)
{
    return (c >= ' ' && c <= LARGEST_BYTE) || c == '\t';
}

/// The character at a place, surrogate pairs joined whatever the size of wchar_t; moves the place behind it.
std::uint32_t NextCharacter(std::wstring_view text, std::size_t& place)
{
    const std::uint32_t c = UnitAt(text, place++);
    if (c < 0xD800 || c > 0xDBFF || place == text.size()) return c > LARGEST_CHARACTER ? REPLACEMENT : c;
    const std::uint32_t low = UnitAt(text, place);
    if (low < 0xDC00 || low > 0xDFFF) return c;
    ++place;
    return 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
}

/// Of at most two escapes: what one character needs.
struct Form {
    char bytes[2 * ESCAPE_LENGTH];
    std::size_t length = 0;

    void Append(std::string_view text)
    {
        std::memcpy(bytes + length, text.data(), text.size());
        length += text.size();
    }
    void AppendEscape(std::uint32_t unit)
    {
        static constexpr char DIGITS[] = "0123456789ABCDEF";
        const char digits[] = {DIGITS[unit >> 12 & 0xF], DIGITS[unit >> 8 & 0xF], DIGITS[unit >> 4 & 0xF],
                               DIGITS[unit & 0xF]};
        Append("\\U+");
        Append({digits, sizeof digits});
    }
};

/// What stands for the character at a place; moves the place behind it.
Form NextForm(std::wstring_view text, std::size_t& place, std::string_view lineEnd)
{
    Form form;
    const std::uint32_t c = NextCharacter(text, place);
    if (IsPlain(c)) {
        const char byte = static_cast<char>(c);
        form.Append({&byte, 1});
    } else if (c == '\n') {
        form.Append(lineEnd);
    } else if (c == '\r' && place != text.size() && text[place] == L'\n') {
        ++place;
        form.Append(lineEnd);
    } else if (c <= LARGEST_BYTE) {
        form.Append(" ");
    } else if (c <= 0xFFFF) {
        form.AppendEscape(c);
    } else {
        form.AppendEscape(0xD800 + ((c - 0x10000) >> 10));
        form.AppendEscape(0xDC00 + (c & 0x3FF));
    }
    return form;
}

/// Writes the text from a place on while whole forms fit into the limit; leaves the place behind the last
/// one.
char* FormatPiece(char* out, std::wstring_view text, std::size_t& place, std::size_t limit,
                  std::string_view lineEnd)
{
    char* const end = out + limit;
    while (place != text.size() && out != end) {
        const std::uint32_t c = UnitAt(text, place);
        if (IsPlain(c)) {
            *out++ = static_cast<char>(c);
            ++place;
            continue;
        }
        std::size_t behind = place;
        const Form form = NextForm(text, behind, lineEnd);
        if (form.length > static_cast<std::size_t>(end - out)) break;
        std::memcpy(out, form.bytes, form.length);
        out += form.length;
        place = behind;
    }
    return out;
}

} // namespace

char* FormatName(char* out, std::wstring_view name)
{
    char* const end = out + LONGEST_LINE;
    for (std::size_t place = 0; place != name.size() && out != end;) {
        const std::uint32_t c = NextCharacter(name, place);
        *out++ = IsPlain(c) && c != '\t' ? static_cast<char>(c) : '_';
    }
    return out;
}

void AppendName(std::string& line, std::wstring_view name)
{
    const std::size_t before = line.size();
    line.resize(before + std::min(name.size(), LONGEST_LINE));
    const char* const end = FormatName(line.data() + before, name);
    line.resize(static_cast<std::size_t>(end - line.data()));
}

char* FormatText(char* out, std::wstring_view text)
{
    std::size_t place = 0;
    return FormatPiece(out, text, place, LONGEST_LINE, " ");
}

char* TextPieces::Next(char* out)
{
    const std::string_view head = m_Prefix.substr(0, PIECE_LENGTH);
    m_Prefix.remove_prefix(head.size());
    head.copy(out, head.size());
    return FormatPiece(out + head.size(), m_Text, m_Place, PIECE_LENGTH - head.size(), "\\P");
}
