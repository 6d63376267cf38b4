#include "platform/FontName.h"

#include <algorithm>
#include <cstddef>

#include "platform/FilePath.h"

namespace {
constexpr std::wstring_view BLANKS = L" \t\r\n";
constexpr std::wstring_view SUFFIXES[] = {L".ttf", L".ttc", L".otf", L".otc",
                                          L".shx", L".pfb", L".pfa", L".fon"};
constexpr std::size_t SUFFIX_LENGTH = 4;

std::wstring_view Trimmed(std::wstring_view text)
{
    const std::size_t first = text.find_first_not_of(BLANKS);
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

std::wstring_view WithoutSuffix(std::wstring_view text)
{
    if (text.size() < SUFFIX_LENGTH) return text;
    const std::wstring_view end = text.substr(text.size() - SUFFIX_LENGTH);
    const bool isSuffix = std::any_of(std::begin(SUFFIXES), std::end(SUFFIXES),
                                      [end](auto suffix) { return FilePath::SameText(end, suffix); });
    return isSuffix ? text.substr(0, text.size() - SUFFIX_LENGTH) : text;
}
} // namespace

FontName ParseFontName(std::wstring_view name)
{
    std::size_t end = std::min(name.find(L'|'), name.size());
    FontName parsed;
    parsed.family = Trimmed(WithoutSuffix(Trimmed(name.substr(0, end))));
    while (end < name.size()) {
        name.remove_prefix(end + 1);
        end = std::min(name.find(L'|'), name.size());
        const std::wstring_view mark = Trimmed(name.substr(0, end));
        parsed.isBold = parsed.isBold || FilePath::SameText(mark, L"b1");
        parsed.isItalic = parsed.isItalic || FilePath::SameText(mark, L"i1");
    }
    return parsed;
}
