#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "platform/raster/SlowRaster.h"
#include "support/CPointMimic.h"
#include "support/GDISelector.h"

using namespace SlowRaster;

namespace {
constexpr int LOWEST = std::numeric_limits<int>::min();
constexpr int HIGHEST = std::numeric_limits<int>::max();

/// y up with the origin in the lower left corner, as a drawer of `width` by `height` sets it up.
void TurnYUp(CDC& dc, int width, int height)
{
    ASSERT_EQ(dc.SetMapMode(MM_ISOTROPIC), MM_TEXT);
    const CSize before = dc.SetWindowExt(width, height);
    ASSERT_NE(before.cx * before.cy, 0);
    dc.SetWindowOrg(width / 2, height / 2);
    dc.SetViewportOrg(width / 2, height / 2);
    dc.SetViewportExt(width, -height);
}
} // namespace

TEST(Mapping, OfAnIsotropicContextWithNegativeHeightTurnsYUp)
{
    CDC dc;
    TurnYUp(dc, 200, 100);
    // y = -(y - 50) + 50
    CPoint points[] = {{0, 0}, {200, 100}, {30, 10}};
    dc.LPtoDP(points, 3);
    EXPECT_EQ(points[0], CPoint(0, 100));
    EXPECT_EQ(points[1], CPoint(200, 0));
    EXPECT_EQ(points[2], CPoint(30, 90));
    dc.DPtoLP(points, 3);
    EXPECT_EQ(points[2], CPoint(30, 10));
}

TEST(Mapping, ShrinksTheViewportOfAnIsotropicContextToOneScale)
{
    CDC dc;
    dc.SetMapMode(MM_ISOTROPIC);
    dc.SetWindowExt(100, 100);
    dc.SetViewportExt(400, -250);
    EXPECT_EQ(dc.GetViewportExt(), CSize(250, -250));
    // 2.5 pixels a unit: 3 units are 7.5 pixels, halves up.
    CPoint p(3, 3);
    dc.LPtoDP(&p);
    EXPECT_EQ(p, CPoint(8, -7));
    EXPECT_EQ(dc.SetWindowExt(0, 5), CSize());
    EXPECT_EQ(dc.GetWindowExt(), CSize(100, 100));
}

TEST(Mapping, HoldsItsScaleInSinglePrecision)
{
    CDC dc;
    dc.SetMapMode(MM_ANISOTROPIC);
    dc.SetWindowExt(10, 4);
    dc.SetViewportExt(7, 5);
    // 0.7 in single precision is 0.699999988, so that 5 units stay below 3.5; 1.25 is held exactly: 2 units
    // are 2.5.
    CPoint p(5, 2);
    dc.LPtoDP(&p);
    EXPECT_EQ(p, CPoint(3, 3));
}

TEST(Mapping, SaturatesAtTheEndsOfInt)
{
    CDC dc;
    dc.SetViewportOrg(1000, -1000);
    CPoint p(HIGHEST, LOWEST);
    dc.LPtoDP(&p);
    EXPECT_EQ(p, CPoint(HIGHEST, LOWEST));
}

TEST(Mapping, SetsReturnWhatWasBefore)
{
    CDC dc;
    EXPECT_EQ(dc.SetMapMode(99), 0);
    EXPECT_EQ(dc.SetWindowOrg(3, 4), CPoint());
    EXPECT_EQ(dc.SetWindowOrg(5, 6), CPoint(3, 4));
    EXPECT_EQ(dc.SetBkMode(TRANSPARENT), OPAQUE);
    EXPECT_EQ(dc.SetTextAlign(TA_BASELINE), TA_LEFT | TA_TOP);
    EXPECT_EQ(dc.SetTextColor(0xFF0000), 0U);
    EXPECT_EQ(dc.MoveTo(8, 9), CPoint());
    EXPECT_EQ(dc.MoveTo(0, 0), CPoint(8, 9));
}

TEST(Mapping, TurnsDrawingsUpsideDownPixelForPixelOfTheMappedPoints)
{
    Paper up, down;
    TurnYUp(up.dc, WIDTH, HEIGHT);
    const CPoint path[] = {{3, 4}, {50, 30}, {20, 41}};
    up.dc.Polyline(path, 3);
    CPoint mapped[] = {path[0], path[1], path[2]};
    up.dc.LPtoDP(mapped, 3);
    down.dc.Polyline(mapped, 3);
    EXPECT_EQ(up.Pixels(), down.Pixels());
}

TEST(Selector, RestoresThePreviousObject)
{
    CDC dc;
    CPen outer(PS_SOLID, 1, 1), inner(PS_SOLID, 1, 2);
    EXPECT_EQ(dc.SelectObject(&outer), nullptr);
    {
        const GDISelector select(&dc, &inner);
        EXPECT_EQ(dc.GetCurrentPen(), &inner);
    }
    EXPECT_EQ(dc.GetCurrentPen(), &outer);
}

TEST(PointMimic, TruncatesTowardZeroAndSaturates)
{
    const double inf = std::numeric_limits<double>::infinity();
    const struct {
        double value;
        int pixel;
    } rows[] = {{1.9, 1},
                {-1.9, -1},
                {-0.5, 0},
                {1e300, HIGHEST},
                {-1e300, LOWEST},
                {inf, HIGHEST},
                {-inf, LOWEST},
                {std::nan(""), LOWEST},
                {2147483646.9, 2147483646},
                {-2147483647.9, -2147483647}};
    for (const auto& row : rows)
        EXPECT_EQ(CPointMimic(GTL::Point2D<double>(row.value, row.value)), CPoint(row.pixel, row.pixel))
            << row.value;
    EXPECT_EQ(CPointMimic(3, -4), CPoint(3, -4));
}

namespace {
/// Notes what is drawn instead of drawing it.
class Recorder : public CDC {
public:
    using CDC::LineTo;
    using CDC::MoveTo;
    using CDC::SelectObject;
    CPen* SelectObject(CPen* pen) override
    {
        calls += "pen ";
        return CDC::SelectObject(pen);
    }
    CPoint MoveTo(int x, int y) override
    {
        calls += "move ";
        return CDC::MoveTo(x, y);
    }
    bool LineTo(int, int) override
    {
        calls += "line ";
        return true;
    }
    bool TextOutW(int, int, const wchar_t*, int) override
    {
        calls += "text ";
        return true;
    }
    CSize GetTextExtent(const wchar_t*, int length) const override { return {length, 1}; }

    std::string calls;
};
} // namespace

TEST(Contexts, CanBeDerivedFromToRecordWhatIsDrawn)
{
    Recorder recorder;
    CDC& dc = recorder;
    CPen pen;
    {
        const GDISelector select(&dc, &pen);
        dc.MoveTo(CPoint(1, 2));
        dc.LineTo(CPoint(3, 4));
        dc.TextOutW(0, 0, L"a", 1);
    }
    EXPECT_EQ(recorder.calls, "pen move line text pen ");
    EXPECT_EQ(dc.GetTextExtent(L"abc", 3), CSize(3, 1));
}

TEST(Contexts, WithoutABitmapDrawNothingAndDoNotCrash)
{
    CDC dc;
    const CPoint triangle[] = {{0, 0}, {9, 0}, {0, 9}};
    EXPECT_TRUE(dc.Polygon(triangle, 3));
    EXPECT_TRUE(dc.Polyline(triangle, 3));
    EXPECT_TRUE(dc.TextOutW(0, 0, L"a", 1));
    EXPECT_FALSE(dc.Polyline(triangle, 1));
    EXPECT_EQ(dc.GetPixel(0, 0), CLR_INVALID);
    EXPECT_FALSE(dc.BitBlt(0, 0, 1, 1, &dc, 0, 0, SRCCOPY));
    Paper paper;
    EXPECT_TRUE(dc.SetClipPolygon(triangle, 3));
    paper.bitmap.DeleteObject();
    EXPECT_EQ(paper.dc.SetPixel(0, 0, 0), CLR_INVALID);
}
