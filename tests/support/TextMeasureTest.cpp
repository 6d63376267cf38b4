#include "support/TextHeightFactComp.h"
#include "support/TextRectComp.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

// Liberation Sans, from the tables of the font's file, in units of 1/2048 em (versions 1.x and 2.x agree):
// OS/2 usWinAscent 1854, usWinDescent 434, sCapHeight 1409; hmtx advances H 1479, A 1366, i 455, x 1024,
// blank 569, digits 1139, degree sign 819, capital O with stroke 1593. Bold: A 1479, i 569, x 1139.
// Liberation Mono: all advances 1229, sCapHeight 1349, 1705 + 615.
namespace {

constexpr double CAP_HEIGHT = 1409;
constexpr double CELL_HEIGHT = 1854 + 434;
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

TextInfo Sans(float size)
{
    TextInfo info;
    info.SetFont(L"Liberation Sans");
    info.SetSize(size);
    return info;
}

bool IsInstalled()
{
    return TextHeightFactComp::Face(Sans(1)).File().find(L"LiberationSans-Regular") != std::wstring::npos;
}

class TextMeasure : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!IsInstalled()) GTEST_SKIP() << "the Liberation fonts are not installed";
    }

    TextRectComp m_Measure;
};

} // namespace

TEST_F(TextMeasure, AHeightFactorIsCellOverCapital)
{
    EXPECT_DOUBLE_EQ(TextHeightFactComp::Get()(Sans(5)), CELL_HEIGHT / CAP_HEIGHT);
    TextInfo mono = Sans(1);
    mono.SetFont(L"Liberation Mono");
    EXPECT_DOUBLE_EQ(TextHeightFactComp::Get()(mono), (1705.0 + 615) / 1349);
}

TEST_F(TextMeasure, ALineIsAsWideAsItsAdvancesAtTheHeightOfACapital)
{
    const auto box = m_Measure(Sans(2.5F), L"HiA x");
    EXPECT_NEAR(box.Width(), (1479 + 455 + 1366 + 569 + 1024) * 2.5 / CAP_HEIGHT, 1e-9);
    EXPECT_NEAR(box.Height(), CELL_HEIGHT * 2.5 / CAP_HEIGHT, 1e-9);
    EXPECT_NEAR(m_Measure.GetTextHeight(), CELL_HEIGHT * 2.5 / CAP_HEIGHT, 1e-9);
    EXPECT_EQ(m_Measure.GetNumberOfSubStrings(), 1);
    EXPECT_EQ(box[0], (GTL::Point2D<double>(0, 0)));
}

TEST_F(TextMeasure, SymbolsTakeTheirOwnRoom)
{
    EXPECT_NEAR(m_Measure(Sans(1409), L"%%c1%%u5%%d").Width(), 1593 + 1139 + 1139 + 819, 1e-6);
    EXPECT_EQ(m_Measure.GetSubString(0), L"\xD8"
                                         L"15\xB0");
}

TEST_F(TextMeasure, BoldComesFromTheStyleOrTheMarksOfTheName)
{
    TextInfo styled = Sans(1409);
    styled.SetStyle(static_cast<TextInfo::STYLE>(TextInfo::BOLD | TextInfo::UNDERLINE));
    EXPECT_NEAR(m_Measure(styled, L"Aix").Width(), 1479 + 569 + 1139, 1e-6);
    TextInfo marked = Sans(1409);
    marked.SetFont(L"LIBERATION SANS|B1|I0|C0|P34");
    EXPECT_NEAR(m_Measure(marked, L"Aix").Width(), 1479 + 569 + 1139, 1e-6);
}

TEST_F(TextMeasure, MultiLineTextBreaksAtItsRectangleWidth)
{
    // At this size a font unit is a drawing unit: "xx xx" takes 4 * 1024 + 569 = 4665 of them.
    TextInfo info = Sans(1409);
    info.SetRectWidth(4664);
    info.SetMultiLine(true);
    const auto box = m_Measure(info, L"xx xx\\P\\C1;x");
    ASSERT_EQ(m_Measure.GetNumberOfSubStrings(), 3);
    EXPECT_EQ(m_Measure.GetSubString(0), L"xx");
    EXPECT_EQ(m_Measure.GetSubString(2), L"x");
    EXPECT_EQ(m_Measure.GetSubString(3), L"");
    EXPECT_EQ(m_Measure.GetSubString(-1), L"");
    EXPECT_NEAR(box.Width(), 2048, 1e-9);
    EXPECT_NEAR(box.Height(), 3 * CELL_HEIGHT, 1e-9);

    m_Measure(info, L"xx xx\\Px", 4665);
    EXPECT_EQ(m_Measure.GetNumberOfSubStrings(), 2);
    m_Measure(info, L"xx xx\\Px", 0);
    EXPECT_EQ(m_Measure.GetNumberOfSubStrings(), 2) << "no width is no limit";
    info.SetMultiLine(false);
    EXPECT_GT(m_Measure(info, L"xx xx\\Px").Width(), 4665) << "a single line shows its backslash";
    EXPECT_EQ(m_Measure.GetNumberOfSubStrings(), 1);
}

TEST_F(TextMeasure, ATextFitsIntoItsOwnWidthInSinglePrecision)
{
    for (int i = 1; i < 500; ++i) {
        TextInfo info = Sans(0.1F * static_cast<float>(i));
        info.SetMultiLine(true);
        info.SetRectWidth(static_cast<float>(m_Measure(info, L"room 104 fire door", 0).Width()));
        m_Measure(info, L"room 104 fire door");
        ASSERT_EQ(m_Measure.GetNumberOfSubStrings(), 1) << info.Size();
    }
}

TEST_F(TextMeasure, TurnsClockwiseAboutItsBottomLeftCorner)
{
    TextInfo info = Sans(1409);
    info.SetRotation(90);
    const auto box = m_Measure(info, L"x");
    EXPECT_EQ(box[0], (GTL::Point2D<double>(0, 0)));
    EXPECT_NEAR(box[1].X(), 0, 1e-9);
    EXPECT_NEAR(box[1].Y(), -1024, 1e-9);
    EXPECT_NEAR(box[3].X(), CELL_HEIGHT, 1e-9);
}

TEST_F(TextMeasure, HostileNumbersMeasureAsNothing)
{
    constexpr float INF = std::numeric_limits<float>::infinity();
    for (const float size : {0.0F, INF, -INF, std::numeric_limits<float>::quiet_NaN()}) {
        TextInfo info = Sans(size);
        info.SetRotation(NOT_A_NUMBER);
        for (const double width : {0.0, -1.0, 5.0, NOT_A_NUMBER, std::numeric_limits<double>::infinity()}) {
            const auto box = m_Measure(info, L"x x", width);
            EXPECT_EQ(box.Width(), 0);
            EXPECT_EQ(box.Height(), 0);
            EXPECT_EQ(m_Measure.GetNumberOfSubStrings(), 1);
        }
    }
    const auto huge = m_Measure(Sans(std::numeric_limits<float>::max()), L"xxx", 1e300);
    EXPECT_TRUE(std::isfinite(huge.Width()) && std::isfinite(huge[2].Y()));
    EXPECT_NEAR(m_Measure(Sans(-1409), L"x").Width(), 1024, 1e-9)
        << "a negative size is as high as a positive one";
}
