#include "support/Messages.h"

#include "platform/ModuleString.h"

#include <algorithm>
#include <array>
#include <string>

namespace {

struct Row {
    int number;
    const wchar_t* text;
};

constexpr Row ROWS[] = {
#define HALYARD_MESSAGE(number, name, text) {number, L"" text},
#include "support/Messages.def"
#undef HALYARD_MESSAGE
};

constexpr bool Ascends(const Row& a, const Row& b)
{
    return a.number < b.number;
}

static_assert(std::is_sorted(std::begin(ROWS), std::end(ROWS), Ascends));

/// The texts as they are shown: those of the module's string table, which may be translated, where there is
/// one.
class Texts {
public:
    Texts()
    {
        for (std::size_t i = 0; i < m_Texts.size(); ++i)
            m_Texts[i] = ModuleString(static_cast<unsigned>(ROWS[i].number)).value_or(ROWS[i].text);
    }

    const wchar_t* operator[](std::ptrdiff_t i) const { return m_Texts[static_cast<std::size_t>(i)].c_str(); }

private:
    std::array<std::wstring, std::size(ROWS)> m_Texts;
};

} // namespace

const wchar_t* MessageText(Message message)
{
    // Never destroyed: static objects of a host may fail to the end.
    static const Texts& s_Texts = *new Texts;
    const Row wanted{static_cast<int>(message), L""};
    const Row* row = std::lower_bound(std::begin(ROWS), std::end(ROWS), wanted, Ascends);
    return row != std::end(ROWS) && row->number == wanted.number ? s_Texts[row - std::begin(ROWS)] : L"";
}
