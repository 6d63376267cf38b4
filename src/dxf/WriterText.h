#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Wide texts of the model as lines of a DXF file: one byte a character up to U+00FF. Control characters,
/// which could break a line, never reach the file; only the tab does.

/// The most characters of a line that readers take.
inline constexpr std::size_t LONGEST_LINE = 511;

/// A name (of a layer, font, file, ...) on one line: characters above U+00FF and control characters become
/// "_"; cut to LONGEST_LINE. Writes no line end; returns the end of what it wrote.
[[nodiscard]] char* FormatName(char* out, std::wstring_view name);
/// The same at the end of a string.
void AppendName(std::string& line, std::wstring_view name);

/// A text on one line: characters above U+00FF become \U+XXXX (those above U+FFFF two of them, a surrogate
/// pair), line ends and other control characters blanks; cut to LONGEST_LINE, never within such a form.
[[nodiscard]] char* FormatText(char* out, std::wstring_view text);

/// Cuts a prefix of plain characters and a text of any length into pieces of PIECE_LENGTH; the text as in
/// FormatText, but its line ends as "\P". Only a piece that would cut a \U+XXXX or "\P" made here is shorter.
class TextPieces {
public:
    static constexpr std::size_t PIECE_LENGTH = 255;

    TextPieces(std::string_view prefix, std::wstring_view text) : m_Prefix(prefix), m_Text(text) {}
    /// Writes the next piece; returns its end.
    [[nodiscard]] char* Next(char* out);
    /// True once everything has been used up. A piece before that is not empty.
    [[nodiscard]] bool AtEnd() const { return m_Prefix.empty() && m_Place == m_Text.size(); }

private:
    std::string_view m_Prefix;
    std::wstring_view m_Text;
    std::size_t m_Place = 0;
};
