#include "FontPrefix.h"

#include <string_view>

namespace {

/// The marks behind the font's name, from the first "|" to the ";".
constexpr std::wstring_view MARKS = L"|b0|i0|c0|p34;";
constexpr std::size_t BOLD_PLACE = 2;
constexpr std::size_t ITALIC_PLACE = 5;

bool IsMarks(std::wstring_view text)
{
    if (text.size() != MARKS.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isSwitch = i == BOLD_PLACE || i == ITALIC_PLACE;
        if (text[i] != MARKS[i] && !(isSwitch && text[i] == L'1')) return false;
    }
    return true;
}

std::optional<FontPrefix> TakeOne(std::wstring& text)
{
    if (!text.starts_with(L"\\f")) return std::nullopt;
    const std::size_t end = text.find(L';');
    if (end == std::wstring::npos) return std::nullopt;
    const std::wstring_view content = std::wstring_view(text).substr(2, end + 1 - 2);
    if (content.size() < MARKS.size()) return std::nullopt;
    const std::wstring_view marks = content.substr(content.size() - MARKS.size());
    const std::wstring_view font = content.substr(0, content.size() - MARKS.size());
    if (!IsMarks(marks) || font.find(L'\\') != std::wstring_view::npos) return std::nullopt;

    FontPrefix prefix{FontFamily(std::wstring(font)), marks[BOLD_PLACE] == L'1', marks[ITALIC_PLACE] == L'1'};
    text.erase(0, end + 1);
    return prefix;
}

} // namespace

std::optional<FontPrefix> TakeFontPrefix(std::wstring& text)
{
    std::optional<FontPrefix> last;
    while (std::optional<FontPrefix> prefix = TakeOne(text)) last = std::move(prefix);
    return last;
}

std::wstring FontFamily(const std::wstring& font)
{
    return font.substr(0, font.find(L'|'));
}
