#include "support/Numeric.h"
#include "support/Angle.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

} // namespace

TEST(Numeric, RoundsHalvesAwayFromZero)
{
    EXPECT_EQ(MATH::round(2.5, 0), 3);
    EXPECT_EQ(MATH::round(-2.5, 0), -3);
    EXPECT_EQ(MATH::round(0.125, 2), 0.13);
    EXPECT_EQ(MATH::round(1.0 / 3, 4), 0.3333);
    EXPECT_EQ(MATH::round(1234.5678, -3), 1235) << "no digits before the point";
    EXPECT_EQ(MATH::round(1e300, 15), 1e300);
    EXPECT_EQ(MATH::round(-INF, 2), -INF);
    EXPECT_TRUE(std::isnan(MATH::round(NOT_A_NUMBER, 2)));
}

TEST(Numeric, AnglesAreTrimmedToOneTurn)
{
    const std::pair<double, double> ROWS[] = {
        {0, 0},
        {360, 0},
        {-90, 270},
        {450, 90},
        {-720, 0},
        {359.5, 359.5},
        {-1e-20, 0},
        {1e300, std::fmod(1e300, 360)},
        {NOT_A_NUMBER, 0},
        {INF, 0},
        {-INF, 0},
    };
    for (const auto& [degrees, trimmed] : ROWS) EXPECT_EQ(TrimAngle(degrees), trimmed) << degrees;
    EXPECT_FALSE(std::signbit(TrimAngle(-0.0)));
    EXPECT_FALSE(std::signbit(TrimAngle(-360)));
}

TEST(Numeric, ComparisonsTolerateTheTenthDigit)
{
    EXPECT_TRUE(MATH::equal(1e6, 1e6 + 5e-5)) << "1e-10 of a million is 1e-4";
    EXPECT_FALSE(MATH::equal(1e6, 1e6 + 5e-4));
    EXPECT_TRUE(MATH::equal(0, 5e-11)) << "absolute below 1";
    EXPECT_TRUE(MATH::gequal(1, 1 + 5e-11));
    EXPECT_TRUE(MATH::lequal(1 + 5e-11, 1));
    EXPECT_FALSE(MATH::less(1, 1 + 5e-11));
    EXPECT_TRUE(MATH::less(1, 1 + 5e-10));
    EXPECT_DOUBLE_EQ(Epsilon(-2000), 2e-7);
    EXPECT_DOUBLE_EQ(MATH::Epsilon(5.0), 5e-10);
}

TEST(Numeric, InfinitiesEqualOnlyThemselvesAndNotANumberNothing)
{
    EXPECT_TRUE(MATH::equal(INF, INF));
    EXPECT_FALSE(MATH::equal(INF, 5));
    EXPECT_TRUE(MATH::less(5, INF));
    EXPECT_FALSE(MATH::equal(INF, -INF));
    EXPECT_FALSE(MATH::equal(NOT_A_NUMBER, NOT_A_NUMBER));
    EXPECT_FALSE(MATH::gequal(NOT_A_NUMBER, 0));
    EXPECT_FALSE(MATH::lequal(NOT_A_NUMBER, 0));
}

TEST(Numeric, CaseIsThatOfAsciiLetters)
{
    EXPECT_TRUE(icompareW(L"Layer_1z", L"LAYER_1Z"));
    EXPECT_TRUE(icompareW(L"", static_cast<const wchar_t*>(nullptr)));
    EXPECT_FALSE(icompareW(L"A", L"AB"));
    EXPECT_FALSE(icompareW(L"[", L"{")) << "neighbours of the letters, 32 apart like them";
    EXPECT_FALSE(icompareW(L"\xE4", L"\xC4"));
    EXPECT_FALSE(icompareW(std::wstring(L"a\0b", 3), std::wstring(L"a\0c", 3)));
}

TEST(Angle, IsExactAtTheQuarterTurns)
{
    const double ROWS[][3] = {{0, 0, 1}, {90, 1, 0}, {180, 0, -1}, {270, -1, 0}, {-90, -1, 0}, {360, 0, 1}};
    for (const auto& [degrees, sine, cosine] : ROWS) {
        EXPECT_EQ(Angle(degrees).Sin(), sine) << degrees;
        EXPECT_EQ(Angle(degrees).Cos(), cosine) << degrees;
    }
    EXPECT_DOUBLE_EQ(Angle(30).Sin(), 0.5);
    EXPECT_DOUBLE_EQ(Angle(-60).Cos(), 0.5);
}

TEST(Angle, StaysWithinOneTurnUnderArithmetic)
{
    EXPECT_EQ((Angle(350) + Angle(20)).Get(), 10);
    EXPECT_EQ((Angle(10) - Angle(20)).Get(), 350);
    EXPECT_EQ((-Angle(90)).Get(), 270);
    EXPECT_EQ((-Angle(0)).Get(), 0);
    EXPECT_TRUE(Angle(-10) > Angle(340));
    EXPECT_TRUE((Angle(300) += 90) == Angle(30));
}
