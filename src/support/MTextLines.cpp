#include "support/MTextLines.h"

#include "platform/Utf8.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace {

constexpr wchar_t NON_BREAKING_BLANK = 0xA0;
constexpr char32_t DEGREE_SIGN = 0xB0;
constexpr char32_t PLUS_MINUS_SIGN = 0xB1;
constexpr char32_t DIAMETER_SIGN = 0xD8;
constexpr char32_t REPLACEMENT_CHARACTER = 0xFFFD;

wchar_t LowerAscii(wchar_t c)
{
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

/// Reads a text with inline codes from its start to its end. Every member that reads a code starts behind
/// what named it and moves on or stays; the loops that call them move on by at least one character.
class InlineCodes {
public:
    explicit InlineCodes(std::wstring_view text) : m_Text(text) { m_Plain.reserve(text.size()); }

    std::wstring ReadMText();
    std::wstring ReadText();

private:
    /// What the character after a backslash means.
    struct Escape {
        const wchar_t* characters;
        void (InlineCodes::*read)(wchar_t character);
    };
    static const Escape ESCAPES[];

    bool AtEnd() const { return m_At == m_Text.size(); }
    bool NextIs(wchar_t c) const { return !AtEnd() && m_Text[m_At] == c; }

    void ReadEscape();
    void Drop(wchar_t) {}
    void DropWithValue(wchar_t);
    void BreakLine(wchar_t) { m_Plain += L'\n'; }
    void PutHardBlank(wchar_t) { m_Plain += NON_BREAKING_BLANK; }
    void PutUnicode(wchar_t letter);
    void PutMultiByte(wchar_t letter);
    void PutStack(wchar_t);
    void PutStackCharacter(std::wstring& part);

    bool ReadPercentCode();
    bool ReadPercentNumber();
    void ReadCaret();
    std::optional<char32_t> ReadDigits(std::size_t count, char32_t base);
    std::optional<char32_t> ReadUnicode();
    void PutPlain(wchar_t c);
    void PutCodePoint(char32_t c);

    std::wstring_view m_Text;
    std::size_t m_At = 0;
    std::wstring m_Plain;
};

const InlineCodes::Escape InlineCodes::ESCAPES[] = {
    {L"LlOoKk", &InlineCodes::Drop},    {L"ACcFfHpQTW", &InlineCodes::DropWithValue},
    {L"PNX", &InlineCodes::BreakLine},  {L"~", &InlineCodes::PutHardBlank},
    {L"S", &InlineCodes::PutStack},     {L"U", &InlineCodes::PutUnicode},
    {L"M", &InlineCodes::PutMultiByte},
};

std::wstring InlineCodes::ReadMText()
{
    while (!AtEnd()) {
        const wchar_t c = m_Text[m_At++];
        if (c == L'\\')
            ReadEscape();
        else if (c == L'^')
            ReadCaret();
        else if (c == L'\n')
            m_Plain += c;
        else if (c != L'{' && c != L'}' && !(c == L'%' && ReadPercentCode()))
            PutPlain(c);
    }
    return std::move(m_Plain);
}

std::wstring InlineCodes::ReadText()
{
    while (!AtEnd()) {
        const wchar_t c = m_Text[m_At++];
        if (c == L'%' && ReadPercentCode()) continue;
        const std::optional<char32_t> unicode = c == L'\\' ? ReadUnicode() : std::nullopt;
        if (unicode)
            PutCodePoint(*unicode);
        else
            m_Plain += c;
    }
    return std::move(m_Plain);
}

void InlineCodes::ReadEscape()
{
    if (AtEnd()) return;
    const wchar_t c = m_Text[m_At++];
    for (const Escape& escape : ESCAPES)
        if (std::wstring_view(escape.characters).find(c) != std::wstring_view::npos)
            return (this->*escape.read)(c);
    PutPlain(c);
}

void InlineCodes::DropWithValue(wchar_t)
{
    const std::size_t end = m_Text.find(L';', m_At);
    m_At = end == std::wstring_view::npos ? m_Text.size() : end + 1;
}

/// Hexadecimal or decimal digits, exactly so many; none of them is taken when there are fewer.
std::optional<char32_t> InlineCodes::ReadDigits(std::size_t count, char32_t base)
{
    if (m_Text.size() - m_At < count) return std::nullopt;
    char32_t value = 0;
    for (const wchar_t c : m_Text.substr(m_At, count)) {
        const wchar_t lower = LowerAscii(c);
        char32_t digit = base;
        if (lower >= L'0' && lower <= L'9') digit = static_cast<char32_t>(lower - L'0');
        if (lower >= L'a' && lower <= L'f') digit = static_cast<char32_t>(lower - L'a') + 10;
        if (digit >= base) return std::nullopt;
        value = value * base + digit;
    }
    m_At += count;
    return value;
}

/// "U+XXXX" after a backslash, the second half of a surrogate pair included; nothing is taken when it is not
/// one.
std::optional<char32_t> InlineCodes::ReadUnicode()
{
    constexpr std::wstring_view MARK = L"U+";
    constexpr std::size_t DIGITS = 4;
    const std::size_t start = m_At;
    if (m_Text.substr(m_At, MARK.size()) != MARK) return std::nullopt;
    m_At += MARK.size();
    std::optional<char32_t> c = ReadDigits(DIGITS, 16);
    if (!c) {
        m_At = start;
        return c;
    }
    if (!IsHighSurrogate(*c)) return IsLowSurrogate(*c) ? REPLACEMENT_CHARACTER : c;

    const std::size_t behindFirst = m_At;
    if (m_Text.substr(m_At, 1 + MARK.size()) == L"\\U+") {
        m_At += 1 + MARK.size();
        const std::optional<char32_t> low = ReadDigits(DIGITS, 16);
        if (low && IsLowSurrogate(*low)) return 0x10000 + ((*c - 0xD800) << 10) + (*low - 0xDC00);
        m_At = behindFirst;
    }
    return REPLACEMENT_CHARACTER;
}

void InlineCodes::PutUnicode(wchar_t letter)
{
    --m_At;
    if (const std::optional<char32_t> c = ReadUnicode()) return PutCodePoint(*c);
    ++m_At;
    PutPlain(letter);
}

/// "+nXXXX" after "\M": a character of a code page, which only its maker could name.
void InlineCodes::PutMultiByte(wchar_t letter)
{
    const std::size_t start = m_At;
    if (NextIs(L'+')) {
        ++m_At;
        if (ReadDigits(1, 10) && ReadDigits(4, 16)) return PutPlain(L'?');
    }
    m_At = start;
    PutPlain(letter);
}

/// "%%" and a letter, a percent sign or three digits; m_At stands behind the first percent sign. False, and
/// nothing taken, when it is none of them.
bool InlineCodes::ReadPercentCode()
{
    if (!NextIs(L'%') || m_At + 1 == m_Text.size()) return false;
    const wchar_t letter = LowerAscii(m_Text[m_At + 1]);
    if (letter >= L'0' && letter <= L'9') return ReadPercentNumber();
    switch (letter) {
    case L'c':
        PutCodePoint(DIAMETER_SIGN);
        break;
    case L'd':
        PutCodePoint(DEGREE_SIGN);
        break;
    case L'p':
        PutCodePoint(PLUS_MINUS_SIGN);
        break;
    case L'%':
        m_Plain += L'%';
        break;
    case L'u':
    case L'o':
    case L'k':
        break;
    default:
        return false;
    }
    m_At += 2;
    return true;
}

bool InlineCodes::ReadPercentNumber()
{
    ++m_At;
    if (const std::optional<char32_t> c = ReadDigits(3, 10)) {
        PutCodePoint(*c);
        return true;
    }
    --m_At;
    return false;
}

/// "^J" is a line feed, "^I" a tab, "^M" nothing, "^ " a caret, and so is any other caret.
void InlineCodes::ReadCaret()
{
    const wchar_t c = AtEnd() ? L'\0' : m_Text[m_At];
    if (c == L'J')
        m_Plain += L'\n';
    else if (c == L'I')
        m_Plain += L' ';
    else if (c != L'M')
        m_Plain += L'^';
    if (c == L'J' || c == L'I' || c == L'M' || c == L' ') ++m_At;
}

/// "numerator/denominator;", the two separated by "/", "#" or "^" (in files "^ ").
void InlineCodes::PutStack(wchar_t)
{
    std::wstring outside = std::move(m_Plain);
    std::wstring parts[2];
    std::size_t part = 0;
    while (!AtEnd() && m_Text[m_At] != L';') {
        const wchar_t c = m_Text[m_At];
        m_Plain.clear();
        if (part == 0 && (c == L'/' || c == L'#' || c == L'^')) {
            part = 1;
            ++m_At;
            if (c == L'^' && NextIs(L' ')) ++m_At;
        } else {
            PutStackCharacter(parts[part]);
        }
    }
    if (!AtEnd()) ++m_At;
    m_Plain = std::move(outside);
    m_Plain += parts[0];
    if (!parts[0].empty() && !parts[1].empty()) m_Plain += L'/';
    m_Plain += parts[1];
}

/// One character of a stack: plain, by a percent code or escaped.
void InlineCodes::PutStackCharacter(std::wstring& part)
{
    const wchar_t c = m_Text[m_At++];
    if (c != L'\\') {
        if (c != L'{' && c != L'}' && !(c == L'%' && ReadPercentCode())) PutPlain(c);
    } else if (const std::optional<char32_t> unicode = ReadUnicode()) {
        PutCodePoint(*unicode);
    } else if (!AtEnd()) {
        const wchar_t escaped = m_Text[m_At++];
        if (escaped == L'~')
            PutHardBlank(escaped);
        else
            PutPlain(escaped);
        if (escaped == L'^' && NextIs(L' ')) ++m_At;
    }
    part += m_Plain;
}

void InlineCodes::PutPlain(wchar_t c)
{
    if (c == L'\t') c = L' ';
    if (static_cast<char32_t>(c) >= U' ') m_Plain += c;
}

void InlineCodes::PutCodePoint(char32_t c)
{
    if (c < U' ') return;
    if (c < 0x10000 || sizeof(wchar_t) > 2) {
        m_Plain += static_cast<wchar_t>(c);
        return;
    }
    m_Plain += static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
    m_Plain += static_cast<wchar_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
}

/// Breaks the paragraphs of a text: the text as it is shown, and the text that says where it may break.
class LineBreaker {
public:
    LineBreaker(std::wstring_view breaks, std::wstring_view shown, const FontFace& face, double limit)
        : m_Breaks(breaks), m_Shown(shown), m_Face(face), m_Limit(limit)
    {
    }

    BrokenText Break();

private:
    void BreakParagraph(std::size_t start, std::size_t end);
    void AddLine(std::size_t start, std::size_t end, std::int64_t width);
    std::int64_t Width(std::size_t start, std::size_t end) const
    {
        return m_Face.Width(m_Shown.substr(start, end - start));
    }

    std::wstring_view m_Breaks;
    std::wstring_view m_Shown;
    const FontFace& m_Face;
    double m_Limit;
    BrokenText m_Broken;
};

BrokenText LineBreaker::Break()
{
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = std::min(m_Breaks.find(L'\n', start), m_Breaks.size());
        BreakParagraph(start, end);
        if (end == m_Breaks.size()) return std::move(m_Broken);
        start = end + 1;
    }
}

/// A line grows by a gap of blanks and a word at a time.
void LineBreaker::BreakParagraph(std::size_t start, std::size_t end)
{
    const std::wstring_view paragraph = m_Breaks.substr(0, end);
    std::size_t lineStart = start;
    std::size_t lineEnd = start;
    std::int64_t width = 0;
    for (;;) {
        const std::size_t word = paragraph.find_first_not_of(L' ', lineEnd);
        if (word == std::wstring_view::npos) break;
        const std::size_t wordEnd = std::min(paragraph.find(L' ', word), end);
        const std::int64_t gapWidth = Width(lineEnd, word);
        const std::int64_t wordWidth = Width(word, wordEnd);
        if (lineEnd > lineStart && static_cast<double>(width + gapWidth + wordWidth) > m_Limit) {
            AddLine(lineStart, lineEnd, width);
            lineStart = word;
            width = wordWidth;
        } else {
            width += gapWidth + wordWidth;
        }
        lineEnd = wordEnd;
    }
    AddLine(lineStart, lineEnd, width);
}

void LineBreaker::AddLine(std::size_t start, std::size_t end, std::int64_t width)
{
    m_Broken.lines.emplace_back(m_Shown.substr(start, end - start));
    m_Broken.width = std::max(m_Broken.width, width);
}

} // namespace

std::wstring PlainMText(std::wstring_view text)
{
    return InlineCodes(text).ReadMText();
}

std::wstring PlainText(std::wstring_view text)
{
    return InlineCodes(text).ReadText();
}

BrokenText BreakLines(const std::wstring& plain, const FontFace& face, double limit)
{
    std::wstring shown = plain;
    std::replace(shown.begin(), shown.end(), NON_BREAKING_BLANK, L' ');
    const double finiteLimit = std::isfinite(limit) ? limit : std::numeric_limits<double>::infinity();
    return LineBreaker(plain, shown, face, finiteLimit).Break();
}
