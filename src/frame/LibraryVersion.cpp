#include "frame/LibraryVersion.h"

#include <array>
#include <string_view>

namespace {
constexpr std::string_view MONTHS = "JanFebMarAprMayJunJulAugSepOctNovDec";
constexpr std::size_t MONTH_LENGTH = 3;

/// The compiler's date, "Nov  1 2026", with year, month and day in this order.
constexpr auto Dated(std::string_view date)
{
    const std::size_t month = MONTHS.find(date.substr(0, MONTH_LENGTH)) / MONTH_LENGTH + 1;
    std::array<char, 11> text{};
    for (std::size_t i = 0; i < 4; ++i) text[i] = date[7 + i];
    text[4] = text[7] = '-';
    text[5] = static_cast<char>('0' + month / 10);
    text[6] = static_cast<char>('0' + month % 10);
    text[8] = date[4] == ' ' ? '0' : date[4];
    text[9] = date[5];
    return text;
}

static_assert(std::string_view(Dated("Nov  1 2026").data()) == "2026-11-01");

constexpr auto BUILD_DATE = Dated(__DATE__);
} // namespace

unsigned LibraryVersion::Number()
{
    return HALYARD_VERSION_NUMBER;
}

const char* LibraryVersion::BuildDate()
{
    return BUILD_DATE.data();
}
