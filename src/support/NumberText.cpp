#include "support/NumberText.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

__extension__ using UInt128 = unsigned __int128;

constexpr auto POWERS_OF_TEN = [] {
    std::array<std::uint64_t, 20> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
    return powers;
}();

constexpr double MAX_DOUBLE = std::numeric_limits<double>::max();

/// A decimal number as it stands in a text: digits * 10^(exponent - decimals), unless the digits have
/// overflowed.
struct Decimal {
    std::string_view token; ///< Without sign; empty when the text is no number.
    std::uint64_t digits = 0;
    std::ptrdiff_t count = 0;    ///< How many digits.
    std::ptrdiff_t leading = 0;  ///< How many of them are zeros before the first other one.
    std::ptrdiff_t decimals = 0; ///< How many of them follow the point.
    std::int64_t exponent = 0;   ///< As written after "e".
    bool negative = false;
};

/// Exponents beyond this decide over 0 or overflow for every text that fits into memory.
constexpr std::int64_t EXPONENT_LIMIT = std::int64_t{1} << 61;

/// Reads "e", a sign and digits, if they are there.
const char* ReadExponent(const char* p, const char* end, std::int64_t& exponent)
{
    if (p == end || (*p != 'e' && *p != 'E')) return p;
    ++p;
    const bool negative = p != end && *p == '-';
    if (p != end && (*p == '-' || *p == '+')) ++p;
    for (; p != end && *p >= '0' && *p <= '9'; ++p)
        exponent = std::min(exponent * 10 + (*p - '0'), EXPONENT_LIMIT / 10);
    if (negative) exponent = -exponent;
    return p;
}

std::ptrdiff_t CountLeadingZeros(const char* p, const char* end)
{
    std::ptrdiff_t zeros = 0;
    for (; p != end && (*p == '0' || *p == '.'); ++p)
        if (*p == '0') ++zeros;
    return zeros;
}

Decimal ReadDecimal(std::string_view text)
{
    Decimal number;
    const char* const end = text.data() + text.size();
    const char* p = SkipBlanks(text.data(), end);
    number.negative = p != end && *p == '-';
    if (p != end && (*p == '-' || *p == '+')) ++p;

    const char* const first = p;
    p = ReadDigits(p, end, number.digits);
    number.count = p - first;
    if (p != end && *p == '.') {
        const char* const fraction = ++p;
        p = ReadDigits(p, end, number.digits);
        number.decimals = p - fraction;
        number.count += number.decimals;
    }
    number.leading = CountLeadingZeros(first, p);
    if (number.count == 0) return number;
    p = ReadExponent(p, end, number.exponent);
    number.token = {first, static_cast<std::size_t>(p - first)};
    return number;
}

/// For every number: exact, but slower.
double ParseToken(const Decimal& number)
{
    double value = 0;
    const char* const end = number.token.data() + number.token.size();
    const std::from_chars_result result = std::from_chars(number.token.data(), end, value);
    if (result.ec == std::errc() && std::isfinite(value)) return value;
    // Out of range: the place of the first digit that is not 0 tells in which direction.
    const std::int64_t place = number.count - number.leading - number.decimals + number.exponent;
    return place > 0 ? MAX_DOUBLE : 0.0;
}

double Magnitude(const Decimal& number)
{
    constexpr int DIGITS_MAX = 19;
    constexpr std::uint64_t EXACT_MAX = std::uint64_t{1} << 53;
    if (number.count - number.leading > DIGITS_MAX) return ParseToken(number);
    if (number.digits == 0) return 0;
    const std::int64_t power = number.exponent - number.decimals;
    if (power <= 0 && power >= -DIGITS_MAX)
        return DivideByPowerOfTen(number.digits, static_cast<std::size_t>(-power));
    if (power > 0 && power <= 15 && number.digits <= EXACT_MAX) {
        double factor = 1;
        for (std::int64_t i = 0; i < power; ++i) factor *= 10;
        return static_cast<double>(number.digits) * factor;
    }
    return ParseToken(number);
}

constexpr auto DIGIT_PAIRS = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

void WritePair(char* out, std::uint64_t number)
{
    std::memcpy(out, &DIGIT_PAIRS[static_cast<std::size_t>(2 * number)], 2);
}

int CountDigits(std::uint64_t number)
{
    int digits = 1;
    for (; number >= 10000; number /= 10000) digits += 4;
    return digits + (number >= 10) + (number >= 100) + (number >= 1000);
}

char* WriteWhole(char* out, std::uint64_t number)
{
    char* const end = out + CountDigits(number);
    char* p = end;
    for (; number >= 100; number /= 100) WritePair(p -= 2, number % 100);
    if (number >= 10)
        WritePair(p - 2, number);
    else
        p[-1] = static_cast<char>('0' + number);
    return end;
}

char* WriteFixed6(char* out, std::uint64_t whole, std::uint64_t millionths)
{
    out = WriteWhole(out, whole);
    *out = '.';
    WritePair(out + 1, millionths / 10000);
    WritePair(out + 3, millionths / 100 % 100);
    WritePair(out + 5, millionths % 100);
    return out + 7;
}

} // namespace

// Both are shifted to 64 bits and divided to a quotient of 63 or 64 bits. What the division leaves makes its
// last bit odd, so that the rounding to 53 bits sees it.
double DivideByPowerOfTen(std::uint64_t whole, std::size_t power)
{
    if (whole == 0) return 0;
    const int wholeShift = std::countl_zero(whole);
    const int divisorShift = std::countl_zero(POWERS_OF_TEN[power]);
    const std::uint64_t divisor = POWERS_OF_TEN[power] << divisorShift;
    const UInt128 numerator = static_cast<UInt128>(whole << wholeShift) << 63;
    std::uint64_t quotient = static_cast<std::uint64_t>(numerator / divisor);
    if (static_cast<UInt128>(quotient) * divisor != numerator) quotient |= 1;
    const int exponent = divisorShift - wholeShift - 63;
    const auto scale = std::bit_cast<double>(static_cast<std::uint64_t>(1023 + exponent) << 52);
    return static_cast<double>(quotient) * scale;
}

double ParseAnyDouble(std::string_view text)
{
    const Decimal number = ReadDecimal(text);
    if (number.token.empty()) return 0;
    const double magnitude = Magnitude(number);
    return number.negative ? -magnitude : magnitude;
}

char* FormatFixed6(char* out, double value)
{
    constexpr int FRACTION_BITS = 52;
    constexpr int EXPONENT_BIAS = 1023;
    constexpr std::uint64_t MILLION = 1000000;

    const auto bits = std::bit_cast<std::uint64_t>(value);
    const int exponent = static_cast<int>(bits >> FRACTION_BITS & 0x7FF);
    if (exponent == 0x7FF) return WriteFixed6(out, 0, 0);
    if (bits >> 63) *out++ = '-';

    // |value| = mantissa / 2^shift
    const std::uint64_t fraction = bits & ((std::uint64_t{1} << FRACTION_BITS) - 1);
    const std::uint64_t mantissa = exponent ? fraction | std::uint64_t{1} << FRACTION_BITS : fraction;
    const int shift = FRACTION_BITS + EXPONENT_BIAS - std::max(exponent, 1);
    // 53 bits of mantissa and 20 of the million: from here on the product is less than a half.
    if (shift > 53 + 20) return WriteFixed6(out, 0, 0);
    if (shift < -11) // 2^64 and more
        return std::to_chars(out, out + FIXED6_MAX_LENGTH - 1, std::fabs(value), std::chars_format::fixed, 6)
            .ptr;
    if (shift <= 0) return WriteFixed6(out, mantissa << -shift, 0);

    std::uint64_t whole = shift <= FRACTION_BITS ? mantissa >> shift : 0;
    const std::uint64_t rest = shift <= FRACTION_BITS ? mantissa - (whole << shift) : mantissa;
    const UInt128 product = static_cast<UInt128>(rest) * MILLION;
    const UInt128 half = UInt128{1} << (shift - 1);
    auto millionths = static_cast<std::uint64_t>(product >> shift);
    const UInt128 remainder = product - (static_cast<UInt128>(millionths) << shift);
    if (remainder > half || (remainder == half && millionths % 2 == 1)) ++millionths;
    if (millionths == MILLION) {
        millionths = 0;
        ++whole;
    }
    return WriteFixed6(out, whole, millionths);
}

char* FormatInt(char* out, long long value)
{
    auto magnitude = static_cast<unsigned long long>(value);
    if (value < 0) {
        *out++ = '-';
        magnitude = 0 - magnitude;
    }
    return WriteWhole(out, magnitude);
}
