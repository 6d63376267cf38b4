#include "support/NumberText.h"

#include "support/Numeric.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace {

constexpr double LARGEST = std::numeric_limits<double>::max();
constexpr double SMALLEST = std::numeric_limits<double>::denorm_min();

/// Equal to the last bit, and so -0 differs from 0.
::testing::AssertionResult SameBits(double a, double b)
{
    if (std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << std::hexfloat << a << " and " << b;
}

std::string Fixed6(double value)
{
    std::array<char, FIXED6_MAX_LENGTH> text{};
    return {text.data(), FormatFixed6(text.data(), value)};
}

std::string Printed(const char* format, double value)
{
    std::array<char, 400> text{};
    return {text.data(), static_cast<std::size_t>(std::snprintf(text.data(), text.size(), format, value))};
}

/// Doubles of every kind that a drawing may hold: any bits, decimals, ties of the seventh decimal, exact
/// ties.
double RandomDouble(std::mt19937_64& random)
{
    const std::uint64_t bits = random();
    const auto whole = static_cast<double>(bits >> 20);
    switch (random() % 6) {
    case 0:
        return std::isfinite(std::bit_cast<double>(bits)) ? std::bit_cast<double>(bits) : 0.0;
    case 1:
        return whole / 1e6;
    case 2:
        return (std::floor(whole / 1024) * 10 + 5) / -1e7;
    case 3:
        return std::ldexp(std::floor(whole / 1048576) * 2 + 1, -7); // k/128 ends in the 7th decimal, a 5
    case 4:
        return std::ldexp(whole, -static_cast<int>(bits % 80));
    default:
        return whole / std::pow(10.0, static_cast<double>(bits % 23));
    }
}

struct DoubleRow {
    const char* text;
    double value;
};

} // namespace

TEST(NumberText, ReadsDecimalNumbersOnly)
{
    const DoubleRow ROWS[] = {
        {"0", 0.0},
        {"-0", -0.0},
        {" \t12.5", 12.5},
        {"+7", 7},
        {"-.25", -0.25},
        {"3.", 3},
        {"1e3", 1000},
        {"2.5E-3", 0.0025},
        {"1e", 1},
        {"1e+", 1},
        {"4 5", 4},
        {"1.5.5", 1.5},
        {"12,5", 12},
        {"", 0},
        {" ", 0},
        {".", 0},
        {"-", 0},
        {"e5", 0},
        {"+-5", 0},
        {"--5", 0},
        {"\t\n\v\f\r 5", 5},
        {"\x1F"
         "5",
         0},
        {"0x10", 0},
        {"inf", 0},
        {"nan", 0},
        {"-Infinity", 0},
        {"abc", 0},
    };
    for (const DoubleRow& row : ROWS) EXPECT_TRUE(SameBits(ParseDouble(row.text), row.value)) << row.text;
}

TEST(NumberText, OutOfRangeGivesTheNearestFiniteDouble)
{
    const std::string zeros(400, '0');
    const DoubleRow ROWS[] = {
        {"1e309", LARGEST},
        {"-1e309", -LARGEST},
        {"1e99999999999999999999999", LARGEST},
        {"1e-99999999999999999999999", 0.0},
        {"-1e-400", -0.0},
        {"0e999999", 0.0},
        {"1.7976931348623157e308", LARGEST},
        {"1.7976931348623159e308", LARGEST},
        {"4.9406564584124654e-324", SMALLEST},
        {"2e-324", 0.0},
    };
    for (const DoubleRow& row : ROWS) EXPECT_TRUE(SameBits(ParseDouble(row.text), row.value)) << row.text;
    // Long texts of small and ordinary numbers are no overflow.
    EXPECT_EQ(ParseDouble("1" + zeros), LARGEST);
    EXPECT_EQ(ParseDouble("1" + zeros + "e-400"), 1.0);
    EXPECT_EQ(ParseDouble("0." + zeros + "1e401"), 1.0);
    EXPECT_EQ(ParseDouble(zeros + "25"), 25.0);
    EXPECT_EQ(ParseDouble("0." + zeros + "1"), 0.0);
}

TEST(NumberText, RoundsHalfwayCasesToEven)
{
    // 2^53 + 1 lies half way between 2^53 and 2^53 + 2; any digit behind it decides.
    EXPECT_EQ(ParseDouble("9007199254740993"), 9007199254740992.0);
    EXPECT_EQ(ParseDouble("9007199254740993.00000000000000000001"), 9007199254740994.0);
    EXPECT_EQ(ParseDouble("9007199254740995"), 9007199254740996.0);
    // 1 + 2^-53 = 1.00000000000000011102... lies half way between 1 and the next double.
    EXPECT_EQ(ParseDouble("1.000000000000000111"), 1.0);
    EXPECT_EQ(ParseDouble("1.000000000000000112"), 1.0 + std::numeric_limits<double>::epsilon());
}

TEST(NumberText, ReadsWhatTheCLibraryReads)
{
    const char* const FORMATS[] = {"%.17g", "%.16g", "%.15g", "%.6f", "%.0f", "%.19e", "%.30g", "%g"};
    std::mt19937_64 random(20240531);
    for (int i = 0; i < 100000; ++i) {
        const std::string text = Printed(FORMATS[i % 8], RandomDouble(random));
        const double expected = std::clamp(std::strtod(text.c_str(), nullptr), -LARGEST, LARGEST);
        ASSERT_TRUE(SameBits(ParseDouble(text), expected)) << text;
        ASSERT_TRUE(SameBits(ParseAnyDouble(text), expected)) << text;
    }
}

TEST(NumberText, WholeNumbersStopAtTheRangeOfInt)
{
    constexpr int MAX = std::numeric_limits<int>::max();
    constexpr int MIN = std::numeric_limits<int>::min();
    const std::pair<const char*, int> ROWS[] = {
        {"0", 0},
        {"  42", 42},
        {"-17", -17},
        {"+8", 8},
        {"12.9", 12},
        {"007", 7},
        {"2147483647", MAX},
        {"2147483648", MAX},
        {"-2147483648", MIN},
        {"-2147483649", MIN},
        {"99999999999999999999999999", MAX},
        {"", 0},
        {"x1", 0},
        {"- 1", 0},
        {"0x1F", 0},
    };
    for (const auto& [text, value] : ROWS) {
        EXPECT_EQ(ParseInt(text), value) << text;
        EXPECT_EQ(atoi(std::wstring(text, text + std::strlen(text))), value) << text;
    }
}

TEST(NumberText, WideTextsReadLikeNarrowOnes)
{
    EXPECT_EQ(atof(L"\t\r-12.75e1 mm"), -127.5);
    EXPECT_EQ(atof(L"3\x0664"), 3) << "digits of other scripts are no digits";
    EXPECT_EQ(atof(L"\x0133\x0134"), 0) << "characters are not cut to their low byte";
    EXPECT_EQ(atof(std::wstring(L"5\0"
                                L"6",
                                3)),
              5);
    EXPECT_EQ(atof(std::wstring(100000, L' ') + L"2.5" + std::wstring(100000, L'0')), 2.5);
    EXPECT_EQ(atoi(std::wstring(1000, L'9')), std::numeric_limits<int>::max());
}

TEST(NumberText, WritesSixDecimalsAsTheCLibraryDoes)
{
    const double ROWS[] = {0.0,
                           -0.0,
                           0.5,
                           -0.5,
                           1e-6,
                           0.5e-6,
                           1.5e-6,
                           -1e-7,
                           0.9999995,
                           1.9999999,
                           999999.9999996,
                           0.0000005,
                           1e15 + 0.3,
                           4503599627370495.5,
                           9007199254740993.0,
                           1e19,
                           18446744073709551616.0,
                           1e22,
                           123456789012345678.0,
                           LARGEST,
                           -LARGEST,
                           SMALLEST,
                           2.5,
                           1.0 / 3};
    for (const double value : ROWS) EXPECT_EQ(Fixed6(value), Printed("%.6f", value));
    std::mt19937_64 random(7);
    for (int i = 0; i < 200000; ++i) {
        const double value = RandomDouble(random);
        ASSERT_EQ(Fixed6(value), Printed("%.6f", value));
    }
}

TEST(NumberText, WritesNoNumberThatDrawingsCannotHold)
{
    EXPECT_EQ(Fixed6(std::numeric_limits<double>::quiet_NaN()), "0.000000");
    EXPECT_EQ(Fixed6(std::numeric_limits<double>::infinity()), "0.000000");
    EXPECT_EQ(Fixed6(-std::numeric_limits<double>::infinity()), "0.000000");
    EXPECT_EQ(Fixed6(-LARGEST).size(), FIXED6_MAX_LENGTH);
}

TEST(NumberText, WritesWholeNumbers)
{
    for (const long long value :
         {0LL, 7LL, -7LL, 10LL, 99LL, 100LL, 1000LL, 9999LL, 10000LL, -123456789LL,
          std::numeric_limits<long long>::max(), std::numeric_limits<long long>::min()}) {
        std::array<char, INT_MAX_LENGTH> text{};
        EXPECT_EQ(std::string(text.data(), FormatInt(text.data(), value)), std::to_string(value));
    }
}
