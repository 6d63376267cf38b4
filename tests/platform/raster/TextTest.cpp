#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "platform/FontPixels.h"
#include "platform/raster/GlyphSource.h"
#include "platform/raster/SlowRaster.h"

namespace {
/// A bitmap of 200 x 200, white, and a context with a font of it.
struct Sheet {
    static constexpr int SIZE = 200;

    explicit Sheet(int height = 16, int escapement = 0, bool isUnderlined = false)
    {
        EXPECT_TRUE(bitmap.CreateBitmap(SIZE, SIZE));
        dc.SelectObject(&bitmap);
        dc.FillSolidRect(CRect(0, 0, SIZE, SIZE), 0xFFFFFF);
        dc.SetBkMode(TRANSPARENT);
        EXPECT_TRUE(font.CreateFontW(height, 0, escapement, 0, FW_NORMAL, false, isUnderlined, false,
                                     ANSI_CHARSET, OUT_TT_ONLY_PRECIS, CLIP_LH_ANGLES, ANTIALIASED_QUALITY,
                                     DEFAULT_PITCH, L"Liberation Sans"));
        dc.SelectObject(&font);
    }
    void Out(int x, int y, unsigned align, const std::wstring& text)
    {
        dc.SetTextAlign(align);
        EXPECT_TRUE(dc.TextOutW(x, y, text.c_str(), static_cast<int>(text.size())));
    }
    CSize Extent(const std::wstring& text) const
    {
        return dc.GetTextExtent(text.c_str(), static_cast<int>(text.size()));
    }
    SlowRaster::Image Pixels() const { return {bitmap.Pixels(), bitmap.Pixels() + SIZE * SIZE}; }
    int Darkness(int x, int y) const { return 255 - static_cast<int>(bitmap.Row(y)[x] & 0xFF); }
    /// Rows and columns that are not white.
    CRect Ink() const
    {
        CRect ink(SIZE, SIZE, 0, 0);
        for (int y = 0; y < SIZE; ++y)
            for (int x = 0; x < SIZE; ++x)
                if (Darkness(x, y) > 0)
                    ink = CRect(std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
                                std::max(ink.bottom, y + 1));
        return ink;
    }

    CBitmap bitmap;
    CDC dc;
    CFont font;
};
} // namespace

TEST(FontPixels, FollowTheRuleOfCellHeights)
{
    // Liberation Sans: E = 2048, A = 1854, D = 434, A + D = 2288.
    const FontMetrics metrics{2048, 1854, 434, 1409};
    const struct {
        int height, ppem, ascent, descent, leading;
    } rows[] = {
        {16, 14, 13, 3, 2},    // 14.32; 12.67, 2.97, 1.64
        {14, 12, 11, 3, 1},    // 12.53 gives 13, whose cell is 14.52: one less; 10.86, 2.54, 1.41
        {-16, 16, 14, 3, 2},   // 14.48, 3.39, 1.875
        {100, 89, 81, 19, 10}, // 89.51 gives 90, whose cell is 100.55: one less; 80.57, 18.86, 10.43
        {1, 1, 1, 0, 0},       // 0.895; 0.905, 0.21, 0.12
    };
    for (const auto& row : rows) {
        const FontPixels pixels = FontPixels::Of(metrics, row.height);
        EXPECT_EQ(pixels.ppem, row.ppem) << row.height;
        EXPECT_EQ(pixels.ascent, row.ascent) << row.height;
        EXPECT_EQ(pixels.descent, row.descent) << row.height;
        EXPECT_EQ(pixels.internalLeading, row.leading) << row.height;
    }
}

TEST(TextExtent, IsTheSumOfRoundedAdvances)
{
    // Advances of Liberation Sans at 14 of 2048: digits 1139 * 14 / 2048 = 7.79, "i" 455 -> 3.11, "M" 1706
    // -> 11.66, blank 569 -> 3.89.
    const Sheet sheet(16);
    EXPECT_EQ(sheet.Extent(L"0123456789"), CSize(80, 16));
    EXPECT_EQ(sheet.Extent(L"Mi i"), CSize(12 + 3 + 4 + 3, 16));
    EXPECT_EQ(sheet.Extent(L""), CSize());
    EXPECT_EQ(sheet.dc.GetTextExtent(nullptr, 5), CSize());
}

TEST(TextExtent, UnderAScaleIsMeasuredInPixelsThenScaled)
{
    Sheet sheet(8);
    sheet.dc.SetMapMode(MM_ISOTROPIC);
    sheet.dc.SetWindowExt(100, 100);
    sheet.dc.SetViewportExt(200, 200);
    // Height 8 is 16 pixels, so that ten digits take 80 pixels as above: 40 units.
    EXPECT_EQ(sheet.Extent(L"0123456789"), CSize(40, 8));
}

TEST(TextExtent, UnderAScaleIsOfTheHeightWithoutItsFraction)
{
    Sheet sheet(9);
    sheet.dc.SetMapMode(MM_ISOTROPIC);
    sheet.dc.SetWindowExt(100, 100);
    sheet.dc.SetViewportExt(175, 175);
    // 15.75 pixels count as 15: 13 an em, whose digits are 1139 * 13 / 2048 = 7.23 wide. 70 pixels are 40
    // units. (16 pixels would be 14 an em, with digits of 7.79: 80 pixels, 46 units.)
    EXPECT_EQ(sheet.Extent(L"0123456789").cx, 40);
}

TEST(Text, AlignmentMovesItByItsExtent)
{
    const std::wstring text = L"Hg 12";
    Sheet reference;
    const CSize size = reference.Extent(text);
    reference.Out(80, 90, TA_LEFT | TA_TOP, text);
    ASSERT_LT(reference.Ink().left, reference.Ink().right);
    const struct {
        unsigned align;
        int x, y;
    } rows[] = {{TA_RIGHT | TA_TOP, size.cx, 0},
                {TA_CENTER | TA_BOTTOM, size.cx / 2, 16},
                {TA_LEFT | TA_BASELINE, 0, 13}, // ascent of cell height 16
                {TA_RIGHT | TA_BOTTOM, size.cx, 16}};
    for (const auto& row : rows) {
        Sheet sheet;
        sheet.Out(80 + row.x, 90 + row.y, row.align, text);
        EXPECT_EQ(sheet.Pixels(), reference.Pixels()) << row.align;
    }
}

TEST(Text, StandsOnItsBaseLineAsTallAsItsCapitals)
{
    // "H" of 1409 units at 90 pixels an em: 61.9 pixels above the base line.
    Sheet sheet(100);
    sheet.Out(50, 150, TA_BASELINE, L"H");
    EXPECT_NEAR(sheet.Ink().top, 150 - 62, 1);
    EXPECT_EQ(sheet.Ink().bottom, 150);
}

TEST(Text, TurnedByAQuarterIsTheLevelTextTurned)
{
    Sheet level(20), turned(20, 900);
    level.Out(100, 100, TA_BASELINE, L"Fg7");
    turned.Out(100, 100, TA_BASELINE, L"Fg7");
    // Counter-clockwise on the screen: a pixel whose area begins dx right of and dy below the point goes dx
    // up.
    for (int dy = -40; dy < 40; ++dy)
        for (int dx = -40; dx < 40; ++dx)
            ASSERT_NEAR(level.Darkness(100 + dx, 100 + dy), turned.Darkness(100 + dy, 99 - dx), 32)
                << dx << ',' << dy;
}

TEST(Text, TurnedRunsAlongItsDirection)
{
    for (int escapement = 150; escapement < 3600; escapement += 300) {
        Sheet turned(24, escapement);
        turned.Out(100, 100, TA_BASELINE, L"EEEE");
        const bool goesRight = escapement < 900 || escapement > 2700, goesUp = escapement < 1800;
        EXPECT_EQ(turned.Ink().right - 100 > 100 - turned.Ink().left, goesRight) << escapement;
        EXPECT_EQ(100 - turned.Ink().top > turned.Ink().bottom - 100, goesUp) << escapement;
    }
}

TEST(Text, StaysUprightWhereYGoesUpAndTurnsTheOtherWay)
{
    for (const int escapement : {0, 300, 900}) {
        Sheet up(20, escapement), down(20, -escapement);
        up.dc.SetMapMode(MM_ISOTROPIC);
        up.dc.SetWindowExt(200, 200);
        up.dc.SetViewportExt(200, -200);
        up.dc.SetViewportOrg(0, 200);
        up.Out(90, 110, TA_BOTTOM | TA_CENTER, L"Fg7");
        down.Out(90, 90, TA_BOTTOM | TA_CENTER, L"Fg7");
        EXPECT_EQ(up.Pixels(), down.Pixels()) << escapement;
    }
}

TEST(Text, UnderlineSpansTheAdvances)
{
    Sheet plain, underlined(16, 0, true);
    const std::wstring text = L"    "; // blanks, so that the line is all there is
    plain.Out(50, 50, TA_BASELINE, text);
    underlined.Out(50, 50, TA_BASELINE, text);
    EXPECT_EQ(plain.Ink(), CRect(Sheet::SIZE, Sheet::SIZE, 0, 0));
    const CRect line = underlined.Ink();
    EXPECT_EQ(line.left, 50);
    EXPECT_EQ(line.right, 50 + underlined.Extent(text).cx);
    EXPECT_EQ(line.Height(), 1);
    EXPECT_GE(line.top, 50);
}

TEST(Text, InOpaqueModeFillsItsCell)
{
    Sheet sheet;
    sheet.dc.SetBkMode(OPAQUE);
    sheet.dc.SetBkColor(0x0000FF); // red
    sheet.Out(50, 60, TA_LEFT | TA_TOP, L"   ");
    const int width = sheet.Extent(L"   ").cx;
    EXPECT_EQ(sheet.Ink(), CRect(50, 60, 50 + width, 76));
    EXPECT_EQ(sheet.bitmap.Row(60)[50], 0xFF0000U);
}

TEST(Text, AtThePositionMovesItOn)
{
    Sheet twice, whole;
    twice.dc.MoveTo(40, 50);
    twice.Out(0, 0, TA_UPDATECP, L"AB");
    twice.Out(0, 0, TA_UPDATECP, L"CD");
    whole.Out(40, 50, TA_LEFT, L"ABCD");
    EXPECT_EQ(twice.Pixels(), whole.Pixels());
    EXPECT_EQ(twice.dc.GetCurrentPosition(), CPoint(40 + whole.Extent(L"ABCD").cx, 50));
}

TEST(Text, LargerThanTheImagesKeptHasTheSameShape)
{
    // Black share of an "H" in its own box, by images (500) and by outlines (above the limit).
    const auto share = [](int height) {
        CBitmap bitmap;
        EXPECT_TRUE(bitmap.CreateBitmap(2 * height, 2 * height));
        Sheet sheet(-height);
        sheet.dc.SelectObject(&bitmap);
        sheet.dc.FillSolidRect(CRect(0, 0, 2 * height, 2 * height), 0xFFFFFF);
        sheet.dc.SetTextAlign(TA_BASELINE);
        sheet.dc.TextOutW(height / 2, height, L"\u00C4g", 2);
        double sum = 0;
        for (int i = 0; i < 4 * height * height; ++i)
            sum += 255 - static_cast<int>(bitmap.Pixels()[i] & 0xFF);
        return sum / 255 / height / height;
    };
    EXPECT_NEAR(share(GlyphSource::MAX_IMAGE_PPEM + 60), share(GlyphSource::MAX_IMAGE_PPEM - 60), 0.003);
}

TEST(Text, OfAnySizeAnywhereEndsInTime)
{
    for (const int height : {2147483647, -2147483647 - 1, 100000}) {
        Sheet sheet(height, 333);
        sheet.Out(-2147483647 - 1, 2147483647, TA_CENTER, L"Text");
        sheet.Out(100, 100, TA_CENTER | TA_BASELINE, std::wstring(1000, L'W'));
        EXPECT_GT(sheet.Extent(L"W").cx, 0) << height;
    }
}

TEST(Text, BeyondTheRangeOfPixelsDrawsNothing)
{
    Sheet sheet(40);
    const SlowRaster::Image blank = sheet.Pixels();
    for (const int y : {-2147483647 - 1, 2147483647})
        for (const unsigned align : {TA_TOP, TA_BASELINE, TA_BOTTOM}) sheet.Out(20, y, align, L"'_\"g");
    EXPECT_EQ(sheet.Pixels(), blank);
}
