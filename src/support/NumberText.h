#pragma once

#include "platform/Export.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

/// Decimal numbers in texts of bytes, the same in every locale: what the readers and writers of files use.

/// The whole number at the start of a text, after white space, up to the first character that is no
/// digit; out of range gives the nearest int, no number gives 0. The same as atoi of a wide text.
[[nodiscard]] inline int ParseInt(std::string_view text);

/// The decimal number at the start of a text, after white space: a sign, digits with or without a point,
/// an exponent after "e" or "E". Correctly rounded; a magnitude that is too large gives the largest finite
/// double, one that is too small gives 0; no number gives 0. The same as atof of a wide text.
[[nodiscard]] inline double ParseDouble(std::string_view text);

/// The most bytes that FormatFixed6 writes: sign, 309 digits, point, 6 digits.
inline constexpr std::size_t FIXED6_MAX_LENGTH = 317;
/// The most bytes that FormatInt writes.
inline constexpr std::size_t INT_MAX_LENGTH = 20;

/// Writes what printf("%.6f") writes in the "C" locale for a finite double; NaN and infinities give
/// "0.000000". Returns the end of what it wrote, at most FIXED6_MAX_LENGTH bytes; no closing null.
[[nodiscard]] HALYARD_API char* FormatFixed6(char* out, double value);

/// Writes a whole number in decimal. Returns the end of what it wrote, at most INT_MAX_LENGTH bytes; no
/// closing null.
[[nodiscard]] HALYARD_API char* FormatInt(char* out, long long value);

/// ParseDouble for every form of number, without its short cuts for the usual ones.
[[nodiscard]] HALYARD_API double ParseAnyDouble(std::string_view text);

/// whole / 10^power correctly rounded, for a power of 0 to 19.
[[nodiscard]] HALYARD_API double DivideByPowerOfTen(std::uint64_t whole, std::size_t power);

/// Reads the digits at p, adding them to the value (modulo 2^64); returns the first character that is no
/// digit, or end.
[[nodiscard]] inline const char* ReadDigits(const char* p, const char* end, std::uint64_t& value)
{
    for (; p != end; ++p) {
        const unsigned digit = static_cast<unsigned char>(*p) - unsigned{'0'};
        if (digit > 9) break;
        value = value * 10 + digit;
    }
    return p;
}

/// ReadDigits for many digits: eight at a time where the machine stores the lowest byte first.
[[nodiscard]] inline const char* ReadManyDigits(const char* p, const char* end, std::uint64_t& value)
{
    if constexpr (std::endian::native == std::endian::little) {
        for (; end - p >= 8; p += 8) {
            std::uint64_t bytes = 0;
            std::memcpy(&bytes, p, sizeof bytes);
            // A byte is a digit when its high half is 3, also after 6 is added.
            constexpr std::uint64_t HIGH_HALVES = 0xF0F0F0F0F0F0F0F0U;
            constexpr std::uint64_t ZEROS = 0x3030303030303030U;
            if ((bytes & HIGH_HALVES) != ZEROS || ((bytes + 0x0606060606060606U) & HIGH_HALVES) != ZEROS)
                break;
            // Neighbours are joined to numbers of two, four and eight digits, the first digit weighing most.
            bytes -= ZEROS;
            bytes = (bytes * 10 + (bytes >> 8)) & 0x00FF00FF00FF00FFU;
            bytes = (bytes * 100 + (bytes >> 16)) & 0x0000FFFF0000FFFFU;
            bytes = (bytes * 10000 + (bytes >> 32)) & 0x00000000FFFFFFFFU;
            value = value * 100000000 + bytes;
        }
    }
    return ReadDigits(p, end, value);
}

/// The first character after white space (blank, tab, line feed, vertical tab, form feed, return), or end.
[[nodiscard]] inline const char* SkipBlanks(const char* p, const char* end)
{
    while (p != end && (*p == ' ' || (*p >= '\t' && *p <= '\r'))) ++p;
    return p;
}

inline int ParseInt(std::string_view text)
{
    constexpr std::int64_t MAX = (std::numeric_limits<int>::max)();
    const char* const end = text.data() + text.size();
    const char* p = SkipBlanks(text.data(), end);
    const bool negative = p != end && *p == '-';
    if (p != end && (*p == '-' || *p == '+')) ++p;
    std::int64_t value = 0;
    for (; p != end; ++p) {
        const unsigned digit = static_cast<unsigned char>(*p) - unsigned{'0'};
        if (digit > 9) break;
        if (value <= MAX) value = value * 10 + digit;
    }
    if (value > MAX) return negative ? (std::numeric_limits<int>::min)() : (std::numeric_limits<int>::max)();
    return static_cast<int>(negative ? -value : value);
}

inline double ParseDouble(std::string_view text)
{
    // A whole number up to 2^53 and a power of ten up to 10^22 are exact doubles, and the quotient of two
    // doubles is correctly rounded.
    static constexpr std::array<double, 20> POWERS{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,
                                                   1e7,  1e8,  1e9,  1e10, 1e11, 1e12, 1e13,
                                                   1e14, 1e15, 1e16, 1e17, 1e18, 1e19};
    constexpr std::uint64_t EXACT_MAX = std::uint64_t{1} << 53;
    constexpr std::ptrdiff_t DIGITS_MAX = 19; // so many digits never exceed 64 bits

    const char* const end = text.data() + text.size();
    const char* p = SkipBlanks(text.data(), end);
    const bool negative = p != end && *p == '-';
    if (p != end && (*p == '-' || *p == '+')) ++p;

    std::uint64_t digits = 0;
    const char* const first = p;
    p = ReadDigits(p, end, digits);
    std::ptrdiff_t count = p - first;
    std::ptrdiff_t decimals = 0;
    if (p != end && *p == '.') {
        const char* const fraction = ++p;
        p = ReadManyDigits(p, end, digits);
        decimals = p - fraction;
        count += decimals;
    }
    const bool hasExponent = p != end && (*p == 'e' || *p == 'E');
    if (hasExponent || count > DIGITS_MAX) return ParseAnyDouble(text);
    if (count == 0) return 0;
    const auto power = static_cast<std::size_t>(decimals);
    const double value =
        digits <= EXACT_MAX ? static_cast<double>(digits) / POWERS[power] : DivideByPowerOfTen(digits, power);
    return negative ? -value : value;
}
