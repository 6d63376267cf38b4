#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "platform/raster/SlowRaster.h"

using namespace SlowRaster;

TEST(Lines, HitThePixelsOfTheRuleInAllDirectionsAndFromFarAway)
{
    Paper paper;
    Points points;
    CPen pen(PS_SOLID, 1, INK_COLOR);
    paper.dc.SelectObject(&pen);
    int shown = 0;
    for (int i = 0; i < 6000; ++i) {
        const CPoint a = points.Next(), b = points.Next();
        Image expected = Paper::Blank();
        Line(expected, a, b, INK);
        paper.Clear();
        paper.dc.MoveTo(a);
        paper.dc.LineTo(b);
        ASSERT_EQ(paper.Pixels(), expected) << a.x << ',' << a.y << " to " << b.x << ',' << b.y;
        shown += expected != Paper::Blank() ? 1 : 0;
    }
    EXPECT_GT(shown, 2000);
}

TEST(Lines, ExcludeTheirLastPixelAndRoundHalvesToTheSmallerCoordinate)
{
    // dy / dx = 1/2: the middle pixel has y = 10.5, which is 10 going down and going up.
    Paper paper;
    paper.dc.MoveTo(5, 10);
    paper.dc.LineTo(7, 11);
    paper.dc.MoveTo(15, 11);
    paper.dc.LineTo(17, 10);
    paper.dc.MoveTo(30, 30);
    paper.dc.LineTo(30, 30);
    Image expected = Paper::Blank();
    for (const CPoint p : {CPoint(5, 10), CPoint(6, 10), CPoint(15, 11), CPoint(16, 10)})
        Put(expected, p.x, p.y, 0);
    EXPECT_EQ(paper.Pixels(), expected);
    EXPECT_EQ(paper.dc.GetCurrentPosition(), CPoint(30, 30));
}

TEST(Lines, RoundHalvesTheSameWayHoweverLongAndClipped)
{
    // Slopes whose lines pass half-way between pixels again and again, through (30, 20) in all eight
    // directions.
    constexpr int SLOPES[][2] = {{2, 1}, {4, 3}, {8, 1}, {6, 5}};
    const std::vector<CPoint> triangle = {{1, 2}, {55, 5}, {20, 45}};
    for (int i = 0; i < 4 * 8 * 3; ++i) {
        const int* slope = SLOPES[i % 4];
        const int reach = std::min(i / 32 == 0 ? 3 : i / 32 == 1 ? 20000 : 100000000, CDC::EXACT_REACH / 10);
        const bool isSteep = (i / 4 & 1) != 0;
        const int dx = slope[isSteep ? 1 : 0] * reach * ((i / 8 & 1) != 0 ? -1 : 1);
        const int dy = slope[isSteep ? 0 : 1] * reach * ((i / 16 & 1) != 0 ? -1 : 1);
        Image expected = Paper::Blank();
        Line(expected, {30 - dx, 20 - dy}, {30 + dx, 20 + dy}, 0);
        Paper free, clipped;
        clipped.dc.SetClipPolygon(triangle.data(), 3);
        for (CDC* dc : {&free.dc, &clipped.dc}) {
            dc->MoveTo(30 - dx, 20 - dy);
            dc->LineTo(30 + dx, 20 + dy);
        }
        ASSERT_EQ(free.Pixels(), expected) << i;
        for (int y = 0; y < HEIGHT; ++y)
            for (int x = 0; x < WIDTH; ++x)
                if (!IsInside(triangle, ALTERNATE, x, y)) Put(expected, x, y, PAPER);
        ASSERT_EQ(clipped.Pixels(), expected) << i;
    }
}

namespace {
struct DashRow {
    int style;
    std::vector<int> pattern;
};
const DashRow DASHES[] = {{PS_DASH, {18, 6}}, {PS_DOT, {3, 3}}, {PS_DASHDOT, {9, 6, 3, 6}}};

bool IsOn(const std::vector<int>& pattern, std::int64_t place)
{
    std::int64_t period = 0;
    for (const int length : pattern) period += length;
    place %= period;
    std::size_t i = 0;
    while (place >= pattern[i]) place -= pattern[i++];
    return i % 2 == 0;
}

/// Dashes along points whose pattern runs on, gaps in a colour or not at all.
void DashedLine(Image& image, const std::vector<CPoint>& points, const std::vector<int>& pattern,
                bool hasGaps)
{
    std::int64_t start = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        ForLine(points[i - 1], points[i], [&](std::int64_t k, Exact x, Exact y) {
            const bool isOn = IsOn(pattern, start + k);
            if (isOn || hasGaps) Put(image, x, y, isOn ? INK : FILL);
        });
        start += Length(points[i - 1], points[i]);
    }
}
} // namespace

TEST(Lines, DashesRunOnThroughAPolylineAndGapsAreFilledInOpaqueMode)
{
    Paper paper;
    Points points;
    paper.dc.SetBkColor(FILL_COLOR);
    for (int i = 0; i < 600; ++i) {
        const DashRow& row = DASHES[i % 3];
        CPen pen(row.style, i % 2, INK_COLOR);
        paper.dc.SelectObject(&pen);
        paper.dc.SetBkMode(i % 4 < 2 ? OPAQUE : TRANSPARENT);
        const std::vector<CPoint> path = points.Some(2 + static_cast<std::size_t>(i) % 4);
        Image expected = Paper::Blank();
        DashedLine(expected, path, row.pattern, i % 4 < 2);
        paper.Clear();
        ASSERT_TRUE(paper.dc.Polyline(path.data(), static_cast<int>(path.size())));
        ASSERT_EQ(paper.Pixels(), expected) << i;
        paper.dc.SelectObject(static_cast<CPen*>(nullptr));
    }
}

TEST(Lines, DashesStartAnewAtEachLineTo)
{
    Paper paper;
    CPen pen(PS_DOT, 1, INK_COLOR);
    paper.dc.SelectObject(&pen);
    paper.dc.SetBkMode(TRANSPARENT);
    paper.dc.MoveTo(2, 5);
    paper.dc.LineTo(6, 5);
    paper.dc.LineTo(12, 5);
    // 4 pixels are 3 on and 1 off, then 3 on again.
    Image expected = Paper::Blank();
    for (const int x : {2, 3, 4, 6, 7, 8}) Put(expected, x, 5, INK);
    EXPECT_EQ(paper.Pixels(), expected);
}

TEST(WideLines, OfWidthFourAtRow20CoverRows18To21)
{
    Paper paper;
    CPen pen(PS_DASH, 4, INK_COLOR); // a wide pen of CreatePen is solid
    paper.dc.SelectObject(&pen);
    paper.dc.MoveTo(10, 20);
    paper.dc.LineTo(40, 20);
    for (int y = 0; y < HEIGHT; ++y)
        for (int x = 10; x < 40; ++x) ASSERT_EQ(paper.At(x, y) == INK, y >= 18 && y <= 21) << x << ',' << y;
}

TEST(WideLines, OfWidthOneGrowWithTheScaleAndOfWidthZeroDoNot)
{
    const struct {
        int penWidth, rows;
    } rows[] = {{0, 1}, {1, 4}, {2, 8}};
    for (const auto& row : rows) {
        Paper paper;
        paper.dc.SetMapMode(MM_ISOTROPIC);
        paper.dc.SetWindowExt(10, 10);
        paper.dc.SetViewportExt(40, 40);
        CPen pen(PS_SOLID, row.penWidth, INK_COLOR);
        paper.dc.SelectObject(&pen);
        paper.dc.MoveTo(-10, 5);
        paper.dc.LineTo(30, 5);
        const Image pixels = paper.Pixels();
        int covered = 0;
        for (int y = 0; y < HEIGHT; ++y)
            covered += pixels[static_cast<std::size_t>(y * WIDTH + 30)] == INK ? 1 : 0;
        EXPECT_EQ(covered, row.rows) << row.penWidth;
        paper.dc.SelectObject(static_cast<CPen*>(nullptr));
    }
}

TEST(WideLines, OfAPatternAreCapsulesAlongTheTrueLengthAndRunOn)
{
    // 3-4-5 triangle: 10 on, 10 off from (0, 0) to (30, 40), length 50; dashes 0-10, 20-30, 40-50. Then off
    // for 10 along the row 40, and on for 5 more to the corner, 5 up from it, off to y = 25, on to y = 15.
    Paper paper;
    const int pattern[] = {10, 10};
    CPen pen;
    ASSERT_TRUE(pen.CreateGeometricPen(PS_GEOMETRIC | PS_USERSTYLE, 2, INK_COLOR, pattern, 2));
    paper.dc.SelectObject(&pen);
    const CPoint path[] = {{0, 0}, {30, 40}, {45, 40}, {45, 15}};
    paper.dc.Polyline(path, 4);
    for (const CPoint on :
         {CPoint(3, 4), CPoint(15, 20), CPoint(27, 36), CPoint(43, 40), CPoint(45, 37), CPoint(45, 20)})
        EXPECT_EQ(paper.At(on.x, on.y), INK) << on.x;
    for (const CPoint off : {CPoint(9, 12), CPoint(21, 28), CPoint(35, 40), CPoint(45, 30)})
        EXPECT_EQ(paper.At(off.x, off.y), PAPER) << off.x;
}

TEST(WideLines, WithDashesAcrossTheWholeOfIntShowTheSameAsNearOnes)
{
    // The far start lies a whole number of periods away from the near one.
    const int pattern[] = {5, 5};
    CPen pen;
    ASSERT_TRUE(pen.CreateGeometricPen(PS_GEOMETRIC | PS_USERSTYLE, 3, INK_COLOR, pattern, 2));
    Paper near, far;
    const CPoint nearPath[] = {{-100, 20}, {200, 20}};
    const CPoint farPath[] = {{-2000000000, 20}, {2000000000, 20}};
    near.dc.SelectObject(&pen);
    far.dc.SelectObject(&pen);
    near.dc.Polyline(nearPath, 2);
    far.dc.Polyline(farPath, 2);
    EXPECT_EQ(near.Pixels(), far.Pixels());
    EXPECT_NE(near.Pixels(), Paper::Blank());
}

TEST(Pens, RefuseWhatGdiRefuses)
{
    const int one[] = {3}, zeros[] = {0, 0}, negative[] = {3, -1}, many[17] = {1};
    CPen pen;
    EXPECT_FALSE(pen.CreatePen(7, 1, 0));
    EXPECT_FALSE(pen.CreateGeometricPen(PS_GEOMETRIC | PS_USERSTYLE, 4, 0, nullptr, 0));
    EXPECT_FALSE(pen.CreateGeometricPen(PS_GEOMETRIC | PS_USERSTYLE, 4, 0, zeros, 2));
    EXPECT_FALSE(pen.CreateGeometricPen(PS_GEOMETRIC | PS_USERSTYLE, 4, 0, negative, 2));
    EXPECT_FALSE(pen.CreateGeometricPen(PS_GEOMETRIC | PS_USERSTYLE, 4, 0, many, 17));
    EXPECT_FALSE(pen.CreateGeometricPen(PS_COSMETIC | PS_USERSTYLE, 4, 0, one, 1));
    EXPECT_FALSE(pen.IsCreated());
    EXPECT_TRUE(pen.CreateGeometricPen(PS_GEOMETRIC | PS_USERSTYLE, 4, 0, one, 1));
}
