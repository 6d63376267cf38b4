#pragma once

#include "platform/Export.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

/// Decimal numbers in texts of bytes, the same in every locale: what the readers and writers of files use.

/// The whole number at the start of a text, after blanks and tabs, up to the first character that is no
/// digit; out of range gives the nearest int, no number gives 0. The same as atoi of a wide text.
[[nodiscard]] inline int ParseInt(std::string_view text);

/// The decimal number at the start of a text, after blanks and tabs: a sign, digits with or without a point,
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

/// ParseDouble for every form of number, without its short cut for the usual ones.
[[nodiscard]] HALYARD_API double ParseAnyDouble(std::string_view text);

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

/// The first character after blanks and tabs, or end.
[[nodiscard]] inline const char* SkipBlanks(const char* p, const char* end)
{
    while (p != end && (*p == ' ' || *p == '\t')) ++p;
    return p;
}

inline int ParseInt(std::string_view text)
{
    constexpr std::int64_t MAX = std::numeric_limits<int>::max();
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
    if (value > MAX) return negative ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
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
        p = ReadDigits(p, end, digits);
        decimals = p - fraction;
        count += decimals;
    }
    const bool exponent = p != end && (*p == 'e' || *p == 'E');
    if (exponent || count > DIGITS_MAX || digits > EXACT_MAX) return ParseAnyDouble(text);
    const double value = static_cast<double>(digits) / POWERS[static_cast<std::size_t>(decimals)];
    if (count == 0) return 0;
    return negative ? -value : value;
}
