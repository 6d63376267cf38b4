#include "support/LineStyle.h"

#include "support/LineInfo.h"
#include "support/Numeric.h"

#include <array>

namespace {

constexpr std::array<const wchar_t*, 4> NAMES{L"CONTINUOUS", L"DASHED", L"DOT", L"DASHDOT"};

} // namespace

const wchar_t* LineStyleName(int style)
{
    const bool known = style >= 0 && style < static_cast<int>(NAMES.size());
    return NAMES[known ? static_cast<std::size_t>(style) : std::size_t{LineInfo::CONTINUOUS}];
}

int LineStyleOf(const std::wstring& name)
{
    for (std::size_t style = 0; style < NAMES.size(); ++style)
        if (icompareW(name, NAMES[style])) return static_cast<int>(style);
    return LineInfo::DASHED;
}
