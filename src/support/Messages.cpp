#include "support/Messages.h"

#include <algorithm>
#include <array>

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

} // namespace

const wchar_t* MessageText(Message message)
{
    const Row wanted{static_cast<int>(message), L""};
    const Row* row = std::lower_bound(std::begin(ROWS), std::end(ROWS), wanted, Ascends);
    return row != std::end(ROWS) && row->number == wanted.number ? row->text : L"";
}
