#include "JsonWriter.h"

#include "platform/Utf8.h"

#include <charconv>
#include <cmath>

namespace {

/// Longer than any number in its shortest form.
constexpr std::size_t NUMBER_ROOM = 32;

bool IsSurrogate(unsigned long c)
{
    return c >= 0xD800 && c <= 0xDFFF;
}

bool IsPair(unsigned long high, unsigned long low)
{
    return high >= 0xD800 && high <= 0xDBFF && low >= 0xDC00 && low <= 0xDFFF;
}

/// The escape of a character that may not stand in a string as it is, or that would act on a terminal.
void AppendEscape(std::string& text, unsigned long c)
{
    switch (c) {
    case '"':
        text += "\\\"";
        return;
    case '\\':
        text += "\\\\";
        return;
    case '\b':
        text += "\\b";
        return;
    case '\f':
        text += "\\f";
        return;
    case '\n':
        text += "\\n";
        return;
    case '\r':
        text += "\\r";
        return;
    case '\t':
        text += "\\t";
        return;
    default:
        break;
    }
    constexpr char DIGITS[] = "0123456789abcdef";
    text += "\\u00";
    text += DIGITS[c >> 4 & 0xF];
    text += DIGITS[c & 0xF];
}

} // namespace

void JsonWriter::String(std::wstring_view text)
{
    m_Text += '"';
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned long>(text[i]);
        if (c < 0x20 || c == '"' || c == '\\' || (c >= 0x7F && c <= 0x9F)) {
            AppendEscape(m_Text, c);
        } else if (c < 0x7F) {
            m_Text += static_cast<char>(c);
        } else if (!IsSurrogate(c)) {
            m_Text += ToUtf8(text.substr(i, 1));
        } else if (i + 1 < text.size() && IsPair(c, static_cast<unsigned long>(text[i + 1]))) {
            m_Text += ToUtf8(text.substr(i++, 2));
        } else {
            m_Text += "\xEF\xBF\xBD";
        }
    }
    m_Text += '"';
}

template <class T>
void JsonWriter::Shortest(T value)
{
    char digits[NUMBER_ROOM];
    const std::to_chars_result end = std::to_chars(digits, digits + NUMBER_ROOM, value);
    m_Text.append(digits, end.ptr);
}

void JsonWriter::Number(double value)
{
    if (!std::isfinite(value)) return Raw("null");
    Shortest(value);
}

void JsonWriter::Number(float value)
{
    if (!std::isfinite(value)) return Raw("null");
    Shortest(value);
}

void JsonWriter::Number(long long value)
{
    Shortest(value);
}

double ReadsLike(float value)
{
    char digits[NUMBER_ROOM];
    const std::to_chars_result end = std::to_chars(digits, digits + NUMBER_ROOM, value);
    double number = value;
    std::from_chars(digits, end.ptr, number);
    return number;
}
