#include <gtest/gtest.h>

#include "platform/Picture.h"
#include "platform/raster/SlowRaster.h"

using namespace SlowRaster;

namespace {
CPen& NullPen()
{
    static CPen s_Pen(PS_NULL, 1, 0);
    return s_Pen;
}
} // namespace

TEST(Polygons, FillThePixelsOfTheRuleUnderBothFillModes)
{
    Paper paper;
    Points points;
    CBrush brush(FILL_COLOR);
    paper.dc.SelectObject(&brush);
    paper.dc.SelectObject(&NullPen());
    for (int i = 0; i < 1500; ++i) {
        const int mode = i % 2 == 0 ? ALTERNATE : WINDING;
        // From triangles to more crossings of a row than are worth sorting.
        const std::vector<CPoint> polygon =
            points.Some(i % 25 == 0 ? 150 : 3 + static_cast<std::size_t>(i) % 7);
        Image expected = Paper::Blank();
        SlowRaster::Polygon(expected, polygon, mode, FILL);
        paper.Clear();
        paper.dc.SetPolyFillMode(mode);
        ASSERT_TRUE(paper.dc.Polygon(polygon.data(), static_cast<int>(polygon.size())));
        ASSERT_EQ(paper.Pixels(), expected) << i;
    }
}

TEST(Polygons, HaveAClosedOutlineOverTheirFill)
{
    Paper paper;
    Points points;
    CBrush brush(FILL_COLOR);
    CPen pen(PS_SOLID, 1, INK_COLOR);
    paper.dc.SelectObject(&brush);
    paper.dc.SelectObject(&pen);
    for (int i = 0; i < 300; ++i) {
        const std::vector<CPoint> polygon = points.Some(4);
        Image expected = Paper::Blank();
        SlowRaster::Polygon(expected, polygon, ALTERNATE, FILL);
        for (std::size_t k = 0; k < 4; ++k) Line(expected, polygon[k], polygon[(k + 1) % 4], INK);
        paper.Clear();
        paper.dc.Polygon(polygon.data(), 4);
        ASSERT_EQ(paper.Pixels(), expected) << i;
    }
}

TEST(Clip, LetsEveryOperationThroughInsideThePolygonOnly)
{
    Points points;
    CBrush brush(FILL_COLOR);
    CPen thin(PS_SOLID, 1, INK_COLOR), dashed(PS_DASHDOT, 1, INK_COLOR), wide(PS_SOLID, 7, INK_COLOR);
    for (int i = 0; i < 200; ++i) {
        Paper free, clipped;
        std::vector<CPoint> clip = points.Some(5);
        if (i % 4 == 0) clip = {{10, 8}, {40, 8}, {40, 30}, {10, 30}};
        const std::vector<CPoint> path = points.Some(4);
        clipped.dc.SetClipPolygon(clip.data(), static_cast<int>(clip.size()));
        for (Paper* paper : {&free, &clipped}) {
            paper->dc.SelectObject(&brush);
            for (CPen* pen : {&thin, &dashed, &wide}) {
                paper->dc.SelectObject(pen);
                paper->dc.Polyline(path.data(), 4);
            }
            paper->dc.SelectObject(&NullPen());
            paper->dc.Polygon(path.data(), 3);
            paper->dc.TextOutW(3, 12, L"Clip", 4);
            paper->dc.FillSolidRect(CRect(0, 40, WIDTH, 43), FILL_COLOR);
            paper->dc.SetPixel(20, 20, INK_COLOR);
        }
        Image expected = free.Pixels();
        for (int y = 0; y < HEIGHT; ++y)
            for (int x = 0; x < WIDTH; ++x)
                if (!IsInside(clip, ALTERNATE, x, y)) Put(expected, x, y, PAPER);
        ASSERT_EQ(clipped.Pixels(), expected) << i;
    }
}

TEST(Clip, OfNoAreaLetsNothingThroughUntilItIsReset)
{
    Paper paper;
    const CPoint flat[] = {{3, 3}, {30, 3}};
    paper.dc.SetClipPolygon(flat, 2);
    EXPECT_EQ(paper.dc.SetPixel(5, 3, INK_COLOR), CLR_INVALID);
    paper.dc.FillSolidRect(CRect(0, 0, WIDTH, HEIGHT), INK_COLOR);
    EXPECT_EQ(paper.Pixels(), Paper::Blank());
    paper.dc.ResetClip();
    EXPECT_EQ(paper.dc.SetPixel(5, 3, INK_COLOR), INK_COLOR);
    EXPECT_EQ(paper.dc.GetPixel(5, 3), INK_COLOR);
}

TEST(Copies, MoveRectanglesAlsoOntoThemselvesAndPastTheBorder)
{
    for (const CPoint move : {CPoint(0, 0), CPoint(5, 3), CPoint(-5, 3), CPoint(5, -3), CPoint(-5, -3),
                              CPoint(70, 0), CPoint(2000000000, -2000000000)}) {
        Paper paper;
        std::mt19937 random(7);
        for (int i = 0; i < WIDTH * HEIGHT; ++i) paper.bitmap.Pixels()[i] = random() & 0xFFFFFF;
        const Image before = paper.Pixels();
        ASSERT_TRUE(paper.dc.BitBlt(10 + move.x, 9 + move.y, 40, 30, &paper.dc, 10, 9, SRCCOPY));
        Image expected = before;
        for (int y = 9; y < 39; ++y)
            for (int x = 10; x < 50; ++x)
                Put(expected, Exact{x} + move.x, Exact{y} + move.y,
                    before[static_cast<std::size_t>(y * WIDTH + x)]);
        ASSERT_EQ(paper.Pixels(), expected) << move.x << ',' << move.y;
    }
}

namespace {
/// Pixels that all differ.
Picture Colors(int width, int height)
{
    Picture picture;
    picture.width = width;
    picture.height = height;
    for (int i = 0; i < width * height; ++i)
        picture.pixels.push_back(0xFF000000U | static_cast<std::uint32_t>(i) * 0x050301U);
    return picture;
}
} // namespace

TEST(Pictures, PlacedPixelOnPixelAreCopiedAlsoMirroredAndTurned)
{
    const Picture picture = Colors(12, 9);
    struct Row {
        CPoint upperLeft, upperRight, lowerLeft;
        CPoint (*placeOf)(int x, int y);
    };
    const Row rows[] = {
        {{5, 6},
         {17, 6},
         {5, 15},
         [](int x, int y) {
             return CPoint(5 + x, 6 + y);
         }},
        {{5, 15},
         {17, 15},
         {5, 6},
         [](int x, int y) {
             return CPoint(5 + x, 14 - y);
         }},
        {{17, 6},
         {5, 6},
         {17, 15},
         [](int x, int y) {
             return CPoint(16 - x, 6 + y);
         }},
        {{5, 6},
         {5, 18},
         {14, 6},
         [](int x, int y) {
             return CPoint(5 + y, 6 + x);
         }},
    };
    for (const Row& row : rows) {
        Paper paper;
        Image expected = Paper::Blank();
        for (int y = 0; y < 9; ++y)
            for (int x = 0; x < 12; ++x)
                Put(expected, row.placeOf(x, y).x, row.placeOf(x, y).y,
                    picture.pixels[static_cast<std::size_t>(y * 12 + x)] & 0xFFFFFF);
        ASSERT_TRUE(paper.dc.DrawPicture(picture, row.upperLeft, row.upperRight, row.lowerLeft, true));
        EXPECT_EQ(paper.Pixels(), expected);
    }
}

TEST(Pictures, AreBilinearBetweenTheCentresOfPixels)
{
    // Black and white stretched from 2 to 4 columns: centres at 0.25, 0.75, 1.25, 1.75 of the source, which
    // are 0, 1/4, 3/4 and 1 of the way from the black centre at 0.5 to the white one at 1.5.
    Picture picture = Colors(2, 1);
    picture.pixels = {0xFF000000, 0xFFFFFFFF};
    Paper paper;
    paper.dc.DrawPicture(picture, {10, 10}, {14, 10}, {10, 12}, false);
    const double shares[] = {0, 0.25, 0.75, 1};
    for (int i = 0; i < 4; ++i) EXPECT_NEAR(paper.At(10 + i, 11) & 0xFF, 255 * shares[i], 1) << i;
    EXPECT_EQ(paper.At(14, 11), PAPER);
}

TEST(Pictures, LeaveOutTheColourKeyAndRefuseAFlatPlace)
{
    Picture picture = Colors(2, 2);
    picture.pixels = {0xFF112233, Picture::COLOR_KEY, Picture::COLOR_KEY, 0xFF445566};
    Paper keyed, opaque;
    keyed.dc.DrawPicture(picture, {0, 0}, {2, 0}, {0, 2}, true);
    EXPECT_EQ(keyed.At(0, 0), 0x112233U);
    EXPECT_EQ(keyed.At(1, 0), PAPER);
    opaque.dc.DrawPicture(picture, {0, 0}, {2, 0}, {0, 2}, false);
    EXPECT_EQ(opaque.At(1, 0), Picture::COLOR_KEY);
    EXPECT_FALSE(keyed.dc.DrawPicture(picture, {0, 0}, {5, 5}, {9, 9}, true));
}

TEST(Pictures, TurnedFillTheirParallelogramAndNothingElse)
{
    Picture picture = Colors(3, 3);
    for (std::uint32_t& pixel : picture.pixels) pixel = 0xFF000000U | INK;
    Points points;
    for (int i = 0; i < 200; ++i) {
        Paper paper;
        const CPoint a = points.Next(), b = points.Next(), c = points.Next();
        const Exact ux = Exact{b.x} - a.x, uy = Exact{b.y} - a.y, vx = Exact{c.x} - a.x,
                    vy = Exact{c.y} - a.y;
        const Exact area = ux * vy - uy * vx;
        if (area == 0) continue;
        paper.dc.DrawPicture(picture, a, b, c, true);
        for (int y = 0; y < HEIGHT; ++y)
            for (int x = 0; x < WIDTH; ++x) {
                // Twice the coordinates of the pixel's centre; s and t are fractions of twice the area.
                const Exact px = 2 * (x - Exact{a.x}) + 1, py = 2 * (y - Exact{a.y}) + 1;
                const Exact s = (px * vy - py * vx) * (area < 0 ? -1 : 1),
                            t = (ux * py - uy * px) * (area < 0 ? -1 : 1);
                const Exact whole = 2 * (area < 0 ? -area : area);
                const double nearS = static_cast<double>(s) / static_cast<double>(whole);
                const double nearT = static_cast<double>(t) / static_cast<double>(whole);
                const auto isClose = [](double v) {
                    return std::abs(v) < 1e-9 || std::abs(v - 1) < 1e-9;
                };
                if (isClose(nearS) || isClose(nearT)) continue;
                ASSERT_EQ(paper.At(x, y) == INK, s >= 0 && s < whole && t >= 0 && t < whole) << i;
            }
    }
}

TEST(Bitmaps, AboveTheirLimitsAreRefused)
{
    CBitmap bitmap;
    for (const CSize size : {CSize(0, 5), CSize(5, -1), CSize(32769, 1), CSize(1, 32769)})
        EXPECT_FALSE(bitmap.CreateBitmap(size.cx, size.cy)) << size.cx;
    EXPECT_FALSE(bitmap.IsCreated());
    EXPECT_TRUE(bitmap.CreateBitmap(32768, 2));
}
