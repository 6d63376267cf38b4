#include "render/RecordingDC.h"

#include "model/DXF.h"
#include "model/DXF3dFace.h"
#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFImage.h"
#include "model/DXFInsert.h"
#include "model/DXFLine.h"
#include "model/DXFMText.h"
#include "model/DXFPoint.h"
#include "model/DXFPolygon.h"
#include "model/DXFSolid.h"
#include "model/DXFText.h"
#include "platform/PictureFile.h"
#include "platform/TemporaryFolder.h"
#include "platform/Utf8.h"
#include "render/WinDXFDrawer.h"
#include "support/TextHeightFactComp.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <random>

using testing::ElementsAre;
using testing::IsEmpty;
using P3 = GTL::Point3D<double>;
using Calls = std::vector<std::string>;

/// A view of (0, 0) to (100, 100) on 100 x 100 pixels, unless set up otherwise: places map to themselves.
class Drawer : public testing::Test {
protected:
    static constexpr unsigned long RED = 0x0000FF;
    static constexpr char RED_PEN[] = "pen 0 0 ff";

    Drawer() { Prepare({}, {{0, 0}, {100, 100}}); }

    void Prepare(const DrawingOption& option, const GTL::Extents2D<double>& view)
    {
        m_Drawer = std::make_unique<WinDXFDrawer>(option);
        EXPECT_TRUE(bool(m_Drawer->Init(&m_DC, view, CRect(0, 0, 100, 100))));
        m_DC.calls.clear();
        m_DC.lengths.clear();
    }
    template <class Entity>
    Calls Drawn(Entity entity)
    {
        entity.SetColor(RED);
        static_cast<const DXFEntity&>(entity).Write(*m_Drawer);
        return m_DC.Take();
    }
    static DXFPolyline Chain(std::vector<P3> vertices)
    {
        return DXFPolyline(GTL::Polyline<P3>(std::move(vertices)));
    }
    static DXFPolygon Ring(std::vector<P3> vertices)
    {
        return DXFPolygon(GTL::Polygon<P3>(std::move(vertices)));
    }

    RecordingDC m_DC;
    std::unique_ptr<WinDXFDrawer> m_Drawer;
};

TEST_F(Drawer, SetsTheContextUpWithYUpwards)
{
    WinDXFDrawer drawer;
    EXPECT_TRUE(bool(drawer.Init(&m_DC, {{0, 0}, {1, 1}}, CRect(10, 20, 71, 51))));
    EXPECT_THAT(m_DC.Take(), ElementsAre("mode 7", "window 61 31", "origin 30 15", "viewport origin 30 15",
                                         "viewport 61 -31"));
    EXPECT_EQ(drawer.GetMapper().TargetCenter(), GTL::Point2D<int>(40, 35));
}

TEST_F(Drawer, SaysThatARectangleOfNoSizeCannotBeDrawnOn)
{
    WinDXFDrawer drawer;
    const ErrorString result = drawer.Init(&m_DC, {{0, 0}, {1, 1}}, CRect(5, 5, 5, 25));
    EXPECT_FALSE(bool(result));
    EXPECT_EQ(result.Text(), L"WinDXFDrawer::can not init wnd DC");
    drawer.Write(DXFLine({0, 0, 0}, {1, 1, 0}));
}

TEST_F(Drawer, MapsBetweenDrawingUnitsAndTrueDevicePixels)
{
    // 100 pixels high: y = 30 is row 100 - 30.
    EXPECT_EQ(m_Drawer->LogicToDevice({20, 30, 7}), CPoint(20, 70));
    EXPECT_EQ(m_Drawer->DeviceToLogic({20, 70}), P3(20, 30, 0));
}

TEST_F(Drawer, DrawsLinesAsFarAsTheyAreInView)
{
    const std::string to = std::string(RED_PEN) + " line ";
    EXPECT_THAT(Drawn(DXFLine({10, 20, 5}, {30.9, 40.9, 5})), ElementsAre("move 10 20", to + "30,40"));
    EXPECT_THAT(Drawn(DXFLine({-10, 50, 0}, {50, 50, 0})), ElementsAre("move 0 50", to + "50,50"));
    EXPECT_THAT(Drawn(DXFLine({-10, 50, 0}, {-5, 90, 0})), IsEmpty());
    EXPECT_THAT(Drawn(DXFLine({50, 50, 0}, {std::nan(""), 50, 0})), IsEmpty());
}

TEST_F(Drawer, CutsLinesOutOfSightOnRequest)
{
    // One view's size beyond the border, however far they come from: no cut shows.
    Prepare({.visibleParts = true}, {{0, 0}, {100, 100}});
    const std::string to = std::string(RED_PEN) + " line ";
    EXPECT_THAT(Drawn(DXFLine({-1e15, -1e15, 0}, {3e15, 3e15, 0})),
                ElementsAre("move -100 -100", to + "200,200"));
    EXPECT_THAT(Drawn(DXFLine({50, 1e308, 0}, {50, -1e308, 0})), ElementsAre("move 50 200", to + "50,-100"));
    EXPECT_THAT(Drawn(DXFLine({-20, 50, 0}, {150, 60, 0})), ElementsAre("move -20 50", to + "150,60"));
    EXPECT_THAT(Drawn(DXFLine({-90, 50, 0}, {-50, 50, 0})), IsEmpty());
    EXPECT_THAT(Drawn(DXFLine({-1e15, 0, 0}, {50, 1e15, 0})), IsEmpty());
}

TEST_F(Drawer, CutsLinesWhereTheyPassHoweverFarTheyReach)
{
    // Ends on both sides of (0, 0) in the same direction, which then is on the line: it meets the borders of
    // -100 and 200 where the direction says.
    Prepare({.visibleParts = true}, {{0, 0}, {100, 100}});
    const std::string to = std::string(RED_PEN) + " line ";
    for (const double far : {1e16, 1e17, 1e20, 1e150, 4e307}) {
        EXPECT_THAT(Drawn(DXFLine({-far, -far, 0}, {far, far, 0})),
                    ElementsAre("move -100 -100", to + "200,200"))
            << far;
        EXPECT_THAT(Drawn(DXFLine({far, far / 2, 0}, {-2 * far, -far, 0})),
                    ElementsAre("move 200 100", to + "-100,-50"))
            << far;
        EXPECT_THAT(Drawn(DXFLine({-far, 50, 0}, {far, 50, 0})), ElementsAre("move -100 50", to + "200,50"));
        EXPECT_THAT(Drawn(DXFLine({-far, 0, 0}, {0, far, 0})), IsEmpty());
    }
    // Through a place in sight in the direction (i, j), all in whole numbers that doubles hold: on the border
    // x = X it is at y = (place.y i + (X - place.x) j) / i. The slopes are such that it meets no other.
    std::mt19937 random(6);
    for (int row = 0; row < 200; ++row) {
        const int i = 5 + static_cast<int>(random() % 5);
        const int j = static_cast<int>(random() % 9) - 4;
        const int x = 40 + static_cast<int>(random() % 21);
        const int y = 40 + static_cast<int>(random() % 21);
        const double before = std::ldexp(static_cast<double>(random()), 16);
        const double after = std::ldexp(static_cast<double>(random()), 16);
        const auto at = [&](int border) {
            return std::to_string(static_cast<int>((y * i + (border - x) * j) / static_cast<double>(i)));
        };
        const P3 from(x - before * i, y - before * j, 0);
        const P3 end(x + after * i, y + after * j, 0);
        EXPECT_THAT(Drawn(DXFLine(from, end)), ElementsAre("move -100 " + at(-100), to + "200," + at(200)))
            << x << ',' << y << ' ' << i << ',' << j;
        EXPECT_THAT(Drawn(DXFLine({from.Y(), from.X(), 0}, {end.Y(), end.X(), 0})),
                    ElementsAre("move " + at(-100) + " -100", to + at(200) + ",200"))
            << x << ',' << y << ' ' << i << ',' << j;
    }
}

TEST_F(Drawer, DrawsPointsInsideTheViewAsPixels)
{
    EXPECT_THAT(Drawn(DXFPoint(10.7, 100, 0)), ElementsAre("pixel 10,100 ff"));
    EXPECT_THAT(Drawn(DXFPoint(10, 100.001, 0)), IsEmpty());
}

TEST_F(Drawer, DrawsACircleAsOneClosedLineOfAsFewVerticesAsTheDeviationAllows)
{
    // r = 10: acos(9.95 / 10.05) = 0.141178; 2 pi / 0.141178 + 1 = 45.5: 45 steps, a vertex in the middle of
    // each and the two ends.
    const Calls calls = Drawn(DXFCircle({50, 50, 0}, 10));
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(m_DC.lengths.at(0), 47);
    EXPECT_TRUE(calls[0].starts_with(std::string(RED_PEN) + " polyline 50,60 ")) << calls[0];
    EXPECT_TRUE(calls[0].ends_with(" 50,60")) << calls[0];
    EXPECT_THAT(Drawn(DXFCircle({50, 50, 0}, 0.04)), IsEmpty());
    EXPECT_THAT(Drawn(DXFCircle({500, 50, 0}, 10)), IsEmpty());
}

TEST_F(Drawer, DrawsArcsClockwiseFromNorthAndEqualEndsAsAFullTurn)
{
    // A quarter: pi / 2 / 0.141178 + 1 = 12.1: 12 steps. From north to east.
    Calls calls = Drawn(DXFArc({50, 50, 0}, 10, 0, 90));
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(m_DC.lengths.back(), 14);
    EXPECT_TRUE(calls[0].starts_with(std::string(RED_PEN) + " polyline 50,60 ")) << calls[0];
    EXPECT_TRUE(calls[0].ends_with(" 60,50")) << calls[0];
    calls = Drawn(DXFArc({50, 50, 0}, 10, 90, 90));
    EXPECT_EQ(m_DC.lengths.back(), 47);
}

namespace {
/// The rule itself at two pixels a unit: the start, the middles of the steps, the end.
std::string ArcByTheRule(double x, double y, double radius, double start, double end)
{
    const double a0 = start * MATH::DTR;
    const double a1 = end * MATH::DTR;
    const int steps = static_cast<int>((a1 - a0) / std::acos((radius - 0.05) / (radius + 0.05)) + 1);
    const double step = (a1 - a0) / steps;
    std::string line = "pen 0 0 ff polyline";
    const auto append = [&](double a) {
        line += ' ' + std::to_string(static_cast<int>(2 * (x + radius * std::sin(a) - 25) + 50)) + ','
                + std::to_string(static_cast<int>(2 * (y + radius * std::cos(a) - 25) + 50));
    };
    append(a0);
    for (int i = 0; i < steps; ++i) append(a0 + step / 2 + i * step);
    append(a1);
    return line;
}
} // namespace

TEST_F(Drawer, PutsVerticesOfArcsByTheRuleToThePixel)
{
    // Whole centres and radii have vertices at whole pixels, where the least bit decides.
    Prepare({}, {{0, 0}, {50, 50}});
    for (int row = 0; row < 400; ++row) {
        const int x = 15 + row % 20;
        const int y = 15 + row / 20;
        const int radius = 1 + row * 7 % 15;
        EXPECT_EQ(Drawn(DXFCircle(P3(x, y, 0), radius)).back(), ArcByTheRule(x, y, radius, 0, 360))
            << x << ' ' << y << ' ' << radius;
    }
    // Long chains.
    for (const double radius : {1e5, 3e6, 1e7})
        for (const double start : {0.0, 37.5, 180.0})
            EXPECT_EQ(Drawn(DXFArc({25, 25, 0}, radius, start, 270)).back(),
                      ArcByTheRule(25, 25, radius, start, 270))
                << radius << ' ' << start;
}

TEST_F(Drawer, CutsCirclesButNotArcs)
{
    // Right half of a circle about (0, 50): it enters at the left side at both its ends.
    EXPECT_EQ(Drawn(DXFCircle({100, 50, 0}, 10)).size(), 1U);
    EXPECT_LT(m_DC.lengths.back(), 47);
    EXPECT_EQ(Drawn(DXFArc({300, 50, 0}, 10, 0, 90)).size(), 1U);
}

TEST_F(Drawer, DrawsBulgedSegmentsOfPolylinesAsArcsOfTheirOwn)
{
    const std::string line = std::string(RED_PEN) + " polyline";
    EXPECT_THAT(Drawn(Chain({{10, 10, 0}, {20, 10, 0}, {20, 20, 0}})),
                ElementsAre(line + " 10,10 20,10 20,20"));
    EXPECT_THAT(Drawn(Chain({{10, 10, 0}})), IsEmpty());
    // Bulge -1 turns clockwise, as bearings do: half a turn from (20, 10) over the top to (40, 10).
    const Calls calls = Drawn(Chain({{10, 10, 0}, {20, 10, 0, -1}, {40, 10, 0}, {50, 10, 0, 1}}));
    ASSERT_EQ(calls.size(), 3U);
    EXPECT_EQ(calls[0], line + " 10,10 20,10");
    using testing::HasSubstr;
    EXPECT_THAT(calls[1], testing::AnyOf(HasSubstr(" 29,19 "), HasSubstr(" 29,20 "), HasSubstr(" 30,19 "),
                                         HasSubstr(" 30,20 ")));
    EXPECT_EQ(calls[2], line + " 40,10 50,10");
}

TEST_F(Drawer, DrawsPolygonsAsClosedOutlinesWithoutBulges)
{
    EXPECT_THAT(Drawn(Ring({{10, 10, 0, 1}, {20, 10, 0}, {20, 20, 0}})),
                ElementsAre(std::string(RED_PEN) + " polyline 10,10 20,10 20,20 10,10"));
    EXPECT_THAT(Drawn(Ring({{10, 10, 0}})), IsEmpty());
    // What remains of a square that hangs over the right side has four corners.
    EXPECT_EQ(Drawn(Ring({{90, 10, 0}, {110, 10, 0}, {110, 20, 0}, {90, 20, 0}})).size(), 1U);
    EXPECT_EQ(m_DC.lengths.back(), 4);
}

TEST_F(Drawer, FillsSolidsAsTwoTriangles)
{
    const std::string polygon = "pen 0 1 ff brush ff polygon";
    DXFSolid solid;
    solid[0] = {10, 10, 0};
    solid[1] = {20, 10, 0};
    solid[2] = {10, 20, 0};
    solid[3] = {20, 20, 0};
    EXPECT_THAT(Drawn(solid), ElementsAre(polygon + " 10,10 20,10 10,20", polygon + " 20,20 20,10 10,20"));
    solid[3] = solid[2];
    EXPECT_THAT(Drawn(solid), ElementsAre(polygon + " 10,10 20,10 10,20"));
    EXPECT_EQ(m_DC.GetCurrentBrush(), nullptr);
}

TEST_F(Drawer, FillsFacesByTheirOutline)
{
    DXF3dFace face;
    face[0] = {10, 10, 0};
    face[1] = {20, 10, 5};
    face[2] = {20, 20, 5};
    face[3] = {10, 20, 5};
    const std::string polygon = "pen 0 1 ff brush ff polygon";
    EXPECT_THAT(Drawn(face), ElementsAre(polygon + " 10,10 20,10 10,20", polygon + " 20,20 20,10 10,20"));
}

TEST_F(Drawer, CutsSolidsAtTheBorder)
{
    DXFSolid solid;
    solid[0] = {90, 0, 0};
    solid[1] = {110, 0, 0};
    solid[2] = {90, 20, 0};
    solid[3] = {90, 20, 0};
    // The hypotenuse meets x = 100 at y = 10.
    const Calls calls = Drawn(solid);
    ASSERT_EQ(calls.size(), 1U);
    for (const char* corner : {" 90,0", " 100,0", " 100,10", " 90,20"})
        EXPECT_THAT(calls[0], testing::HasSubstr(corner));
}

namespace {
struct PenRow {
    int style;
    float width;
    const char* pen;
};
} // namespace

TEST_F(Drawer, MakesPensByStyleAndWidthInPixels)
{
    const PenRow rows[] = {
        {0, 0.5F, "pen 0 0 ff"},    {0, 4.9F, "pen 0 4 ff"},   {1, 1.9F, "pen 1 1 ff"},
        {2, 0, "pen 2 0 ff"},       {3, 1, "pen 3 1 ff"},      {9, 1, "pen 0 1 ff"},
        {1, 4, "pen 7 4 ff/28/20"}, {2, 4, "pen 7 4 ff/4/20"}, {3, 4, "pen 7 4 ff/28/20/4/20"},
        {1, 2, "pen 7 2 ff/14/10"}, {9, 4, "no pen"},          {0, -3, "pen 0 0 ff"},
    };
    for (const PenRow& row : rows) {
        DXFLine line({10, 10, 0}, {20, 20, 0});
        line.SetStyle(row.style);
        line.SetWidth(row.width);
        EXPECT_EQ(Drawn(line).back(), std::string(row.pen) + " line 20,20") << row.style << ' ' << row.width;
    }
    m_Drawer.reset();
    EXPECT_EQ(m_DC.GetCurrentPen(), nullptr);
}

TEST_F(Drawer, MakesThinPensOfWidthsThatAreNone)
{
    for (const int widest : {0, 6}) {
        Prepare({.widestLine = widest}, {{0, 0}, {100, 100}});
        for (const float width : {NAN, HUGE_VALF, -HUGE_VALF, -40.0F, -1e30F}) {
            DXFLine line({10, 10, 0}, {20, 20, 0});
            line.SetWidth(width);
            EXPECT_EQ(Drawn(line).back(), "pen 0 0 ff line 20,20") << width << ' ' << widest;
        }
    }
}

TEST_F(Drawer, StretchesTheViewAndMeasuresWidthsAndTextsAlongX)
{
    Prepare({}, {{0, 0}, {200, 100}});
    DXFLine line({100, 50, 0}, {200, 100, 0});
    line.SetWidth(8);
    EXPECT_THAT(Drawn(line), ElementsAre("move 50 50", "pen 0 4 ff line 100,100"));
    DXFText text;
    TextInfo info;
    info.SetSize(20);
    text.SetTextInfo(info);
    text.SetText(L"A");
    const int height = static_cast<int>(TextHeightFactComp::Get()(info) * 20 / 2 + 0.5);
    EXPECT_EQ(Drawn(text).at(0), "font " + std::to_string(height) + " at 0");
}

namespace {
DXFText TextAt(double x, double y, double rotation, TextInfo::JUSTIFICATION justification)
{
    DXFText text;
    TextInfo info;
    info.SetSize(10);
    info.SetColor(0x0000FF);
    info.SetRotation(Angle(rotation));
    info.SetJustification(justification);
    text.SetTextInfo(info);
    text.SetText(L"%%c5");
    text.SetPosition({x, y, 0});
    return text;
}
} // namespace

TEST_F(Drawer, DrawsTextsWithTheirFontTransparentAndInTheirColor)
{
    const Calls calls = Drawn(TextAt(30.6, 40.6, 12.34, TextInfo::BASELINE_LEFT));
    ASSERT_EQ(calls.size(), 6U);
    EXPECT_TRUE(calls[0].ends_with(" at 123")) << calls[0];
    EXPECT_EQ(calls[1], "background 1");
    EXPECT_EQ(calls[2], "text color 255");
    EXPECT_EQ(calls[3], "align 24");
    EXPECT_TRUE(calls[4].starts_with("text 30,40 ")) << calls[4];
    EXPECT_EQ(calls[5], "font before");
}

TEST_F(Drawer, AlignsTextsByTheirJustification)
{
    // The cell is h pixels high; the middle row hangs on its lower edge, half of it below the place.
    TextInfo info;
    info.SetSize(10);
    const int h = static_cast<int>(TextHeightFactComp::Get()(info) * 10 + 0.5);
    CFont font;
    ASSERT_TRUE(font.CreateFontW(h, 0, 0, 0, 400, false, false, false, 0, 7, 16, 2, 0, L""));
    CDC plain;
    plain.SelectObject(&font);
    const int cell = plain.GetTextExtent(L"A", 1).cy;
    const int down = static_cast<int>(50 - cell / 2.0);
    const struct {
        TextInfo::JUSTIFICATION justification;
        int align;
        int y;
    } rows[] = {{TextInfo::BOTTOM_LEFT, 8, 50},      {TextInfo::BOTTOM_CENTER, 14, 50},
                {TextInfo::BOTTOM_RIGHT, 10, 50},    {TextInfo::MIDDLE_RIGHT, 10, down},
                {TextInfo::TOP_RIGHT, 2, 50},        {TextInfo::TOP_CENTER, 6, 50},
                {TextInfo::TOP_LEFT, 0, 50},         {TextInfo::MIDDLE_LEFT, 8, down},
                {TextInfo::MIDDLE_CENTER, 14, down}, {TextInfo::BASELINE_LEFT, 24, 50},
                {TextInfo::BASELINE_CENTER, 30, 50}, {TextInfo::BASELINE_RIGHT, 26, 50}};
    for (const auto& row : rows) {
        const Calls calls = Drawn(TextAt(50, 50, 0, row.justification));
        ASSERT_EQ(calls.size(), 6U);
        EXPECT_EQ(calls[3], "align " + std::to_string(row.align)) << row.justification;
        EXPECT_TRUE(calls[4].starts_with("text 50," + std::to_string(row.y) + ' ')) << calls[4];
    }
    // Turned by 90 degrees clockwise, below is to the left.
    const Calls turned = Drawn(TextAt(50, 50, 90, TextInfo::MIDDLE_CENTER));
    EXPECT_TRUE(turned.at(4).starts_with("text " + std::to_string(down) + ",50 ")) << turned[4];
}

TEST_F(Drawer, DrawsNothingOfTextsBelowHalfAPixel)
{
    DXFText text = TextAt(50, 50, 0, TextInfo::BASELINE_LEFT);
    text.SetSize(0.1F);
    EXPECT_THAT(Drawn(text), IsEmpty());
}

TEST_F(Drawer, DrawsTheLinesOfMultiLineTextsFromTheTop)
{
    const struct {
        TextInfo::JUSTIFICATION justification;
        double above; ///< of the first line's place over the insertion point, in lines
    } rows[] = {{TextInfo::BOTTOM_LEFT, 2},     {TextInfo::BOTTOM_RIGHT, 2}, {TextInfo::MIDDLE_LEFT, 0.5},
                {TextInfo::MIDDLE_CENTER, 0.5}, {TextInfo::TOP_LEFT, 0},     {TextInfo::TOP_RIGHT, 0},
                {TextInfo::BASELINE_LEFT, 0}};
    for (const auto& row : rows) {
        DXFMText text;
        TextInfo info;
        info.SetSize(10);
        info.SetJustification(row.justification);
        text.SetTextInfo(info);
        text.SetText(L"A\\P\\LB\\l\\PC");
        text.SetPosition({50, 50, 0});
        const double line = TextHeightFactComp::Get()(info) * 10;
        const Calls calls = Drawn(text);
        ASSERT_EQ(calls.size(), 10U);
        for (int i = 0; i < 3; ++i) {
            const int y = static_cast<int>(50 + (row.above - i) * line);
            const std::string expected = "text 50," + std::to_string(y) + ' ' + "ABC"[i];
            EXPECT_EQ(calls[static_cast<std::size_t>(4 + 2 * i)], expected) << row.justification;
        }
    }
}

TEST_F(Drawer, DrawsTheOutlineOfAMissingPicture)
{
    DXFImage image;
    image.SetInsertPoint({10, 10, 0});
    image.SetUVector({2, 0, 0});
    image.SetVVector({0, 3, 0});
    image.SetSize(10, 20);
    EXPECT_THAT(Drawn(image), ElementsAre("pen 0 1 ff polyline 10,10 30,10 30,70 10,70 10,10"));
    image.SetInsertPoint({1000, 10, 0});
    EXPECT_THAT(Drawn(image), IsEmpty());
}

TEST_F(Drawer, PlacesPicturesByThreeCornersWithinTheirBoundary)
{
    const TemporaryFolder folder;
    const std::wstring name = FromUtf8((folder / "picture.bmp").string());
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateBitmap(4, 2) && SavePicture(name, bitmap));
    DXFImage image;
    ASSERT_TRUE(image.SetFileName(name));
    // 4 x 2 pixels, a column of them 10 units to the right, a row 5 up: 40 x 10 units from (20, 30).
    image.SetInsertPoint({20, 30, 0});
    image.SetUVector({10, 0, 0});
    image.SetVVector({0, 5, 0});
    image.SetClipBoundary(DXFImage::CLIP_POLYGON, {{0, 0}, {4, 0}, {4, 2}});
    EXPECT_THAT(Drawn(image), ElementsAre("clip 20,30 60,30 60,40", "picture 20,40 60,40 20,30", "no clip"));
}

class DrawerOfBlocks : public Drawer {
protected:
    DXFInsert InsertOf(const wchar_t* block, double x, double y)
    {
        DXFInsert insert(block, {x, y, 0}, 0);
        insert.SetDXF(&m_Document);
        return insert;
    }
    void AddPoint(const wchar_t* block, double x, double y)
    {
        if (!m_Document.HasBlock(block)) m_Document.AddBlock(block);
        auto* point = new DXFPoint(x, y, 0);
        point->SetColor(RED);
        m_Document.GetBlock(block)->GetDXF()->Add(point);
    }
    void AddInsert(const wchar_t* block, const DXFInsert& insert)
    {
        if (!m_Document.HasBlock(block)) m_Document.AddBlock(block);
        m_Document.GetBlock(block)->GetDXF()->Add(insert.Copy());
    }
    /// A block of a point, a nested insert and another point.
    void AddNest()
    {
        AddPoint(L"INNER", 1, 2);
        AddPoint(L"OUTER", 3, 4);
        AddInsert(L"OUTER", InsertOf(L"INNER", 20, 20));
        AddPoint(L"OUTER", 5, 6);
    }

    DXF m_Document;
};

TEST_F(DrawerOfBlocks, PlacesABlockByBasePointRotationScaleAndInsertionInThisOrder)
{
    AddPoint(L"B", 1, 2);
    m_Document.GetBlock(L"B")->SetBasePoint({3, 1, 0});
    DXFInsert insert = InsertOf(L"B", 50, 60);
    insert.SetRotation(90);
    insert.SetScale({2, 5, 1});
    // (1, 2) + (3, 1) = (4, 3), turned (-3, 4), scaled (-6, 20), moved (44, 80).
    EXPECT_THAT(Drawn(insert), ElementsAre("pixel 44,80 ff"));
    EXPECT_THAT(Drawn(InsertOf(L"NONE", 1, 1)), IsEmpty());
    EXPECT_EQ(m_Drawer->GetReport().missingBlocks, 1U);
}

TEST_F(DrawerOfBlocks, ForgetsTheOuterPlacementAfterANestedInsert)
{
    AddNest();
    // The nested insert stands where it says, not in its block; what follows it is not placed at all.
    EXPECT_THAT(Drawn(InsertOf(L"OUTER", 50, 50)),
                ElementsAre("pixel 53,54 ff", "pixel 21,22 ff", "pixel 5,6 ff"));
}

TEST_F(DrawerOfBlocks, ComposesNestedInsertsOnRequest)
{
    AddNest();
    Prepare({.composeInserts = true}, {{0, 0}, {100, 100}});
    EXPECT_THAT(Drawn(InsertOf(L"OUTER", 50, 50)),
                ElementsAre("pixel 53,54 ff", "pixel 71,72 ff", "pixel 55,56 ff"));
    m_Document.GetBlock(L"INNER")->SetBasePoint({1, 2, 0});
    DXFInsert rows = InsertOf(L"INNER", 10, 10);
    rows.SetRowCount(2);
    rows.SetRowSpacing(7);
    EXPECT_THAT(Drawn(rows), ElementsAre("pixel 10,10 ff", "pixel 10,17 ff"));
}

TEST_F(DrawerOfBlocks, DrawABlockThatHoldsItselfOnce)
{
    for (const bool compose : {false, true}) {
        DXF document;
        DXFBlock* block = document.AddBlock(L"SELF");
        auto* point = new DXFPoint(1, 1, 0);
        block->GetDXF()->Add(point);
        DXFInsert insert(L"SELF", {10, 10, 0}, 0);
        insert.SetDXF(&document);
        block->GetDXF()->Add(insert.Copy());
        Prepare({.composeInserts = compose}, {{0, 0}, {100, 100}});
        EXPECT_EQ(Drawn(insert).size(), 1U);
        EXPECT_EQ(m_Drawer->GetReport().recursive, 1U);
    }
}

TEST_F(DrawerOfBlocks, StopsWhereInsertsMultiplyBeyondTheLimit)
{
    for (const bool compose : {false, true}) {
        // 100 inserts of 100 inserts of 100 points.
        DXF document;
        const auto fill = [&](const wchar_t* name, const DXFEntity& entity) {
            DXF* contents = document.AddBlock(name)->GetDXF();
            for (int i = 0; i < 100; ++i) contents->Add(entity.Copy());
        };
        DXFInsert first(L"A", {}, 0), second(L"B", {}, 0), third(L"C", {}, 0);
        for (DXFInsert* insert : {&first, &second, &third}) insert->SetDXF(&document);
        fill(L"A", DXFPoint(1, 1, 0));
        fill(L"B", first);
        fill(L"C", second);
        Prepare({.composeInserts = compose}, {{0, 0}, {100, 100}});
        m_Drawer->SetLimit(500);
        EXPECT_LT(Drawn(third).size(), 500U);
        EXPECT_TRUE(m_Drawer->GetReport().limitReached);
        Prepare({.composeInserts = compose}, {{0, 0}, {100, 100}});
        EXPECT_EQ(Drawn(second).size(), 10'000U);
        EXPECT_FALSE(m_Drawer->GetReport().limitReached);
    }
}

TEST_F(DrawerOfBlocks, LookOnlyIntoInsertsThatMeetTheView)
{
    for (int i = 0; i < 100; ++i) AddPoint(L"B", 0.1 * i, 0.1 * i);
    DXFInsert insert = InsertOf(L"B", 0, 0);
    insert.SetRowCount(100);
    insert.SetRowSpacing(1000);
    Prepare({.composeInserts = true}, {{-1, 49'999}, {19, 50'019}});
    // 100 cells and the points of one.
    m_Drawer->SetLimit(200);
    EXPECT_EQ(Drawn(insert).size(), 100U);
    EXPECT_FALSE(m_Drawer->GetReport().limitReached);
}

TEST_F(DrawerOfBlocks, GiveLayerZeroOfABlockTheLookOfTheInsertsLayer)
{
    Prepare({.composeInserts = true}, {{0, 0}, {100, 100}});
    m_Document.AddBlock(L"B");
    DXFLine line({0, 0, 0}, {10, 0, 0});
    line.SetColor(DXFLayer::COLOR_OF_INSERT);
    line.SetStyle(DXFLayer::STYLE_OF_INSERT);
    line.SetWidth(DXFLayer::WIDTH_OF_INSERT);
    m_Document.GetBlock(L"B")->GetDXF()->Add(line.Copy());
    m_Document.GetBlock(L"B")->GetDXF()->Add(L"HIDDEN", line.Copy(), true);
    m_Document.AddLayer(L"HIDDEN")->SetVisible(false);
    DXFLayer* layer = m_Document.AddLayer(L"HERE");
    layer->SetColor(0x00FF00UL);
    layer->SetWidth(3);
    layer->SetStyle(LineInfo::DASHED);
    layer->Add(InsertOf(L"B", 20, 20).Copy());
    const std::atomic<bool> go{true};
    m_Drawer->Draw(m_Document, go);
    EXPECT_THAT(m_DC.Take(), ElementsAre("move 20 20", "pen 7 3 ff00/21/15 line 30,20"));
}

TEST_F(Drawer, SwapsColorsThatDoNotShowOnTheBackground)
{
    const struct {
        unsigned long background, color;
        const char* shown;
    } rows[] = {{0xFFFFFF, 0xFFFFFF, "0"},
                {0xFFFFFF, 0xF0F0F0, "0"},
                {0x000000, 0x101010, "ffffff"},
                {0x000000, 0x0000FF, "ff"},
                {0xFFFFFF, 0x00FFFF, "ffff"}};
    for (const auto& row : rows) {
        Prepare({.background = row.background}, {{0, 0}, {100, 100}});
        DXFPoint point(1, 1, 0);
        point.SetColor(row.color);
        point.Write(*m_Drawer);
        EXPECT_THAT(m_DC.Take(), ElementsAre("pixel 1,1 " + std::string(row.shown)));
    }
}

TEST_F(Drawer, StaysDefinedWhateverTheNumbersAre)
{
    constexpr double INF = std::numeric_limits<double>::infinity();
    const double values[] = {0, 50, -1e300, 1e308, -1e308, 5e-324, std::nan(""), INF, 1e15};
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateBitmap(100, 100));
    CDC dc;
    dc.SelectObject(&bitmap);
    for (const bool all : {false, true}) {
        WinDXFDrawer drawer(all ? DrawingOption::All(0) : DrawingOption());
        EXPECT_TRUE(bool(drawer.Init(&dc, {{0, 0}, {100, 100}}, CRect(0, 0, 100, 100))));
        for (const double a : values) {
            for (const double b : values) {
                DXFLine line({a, 50, 0}, {b, a, 0});
                line.SetWidth(static_cast<float>(std::isfinite(b) ? std::min(std::fabs(b), 1e38) : b));
                drawer.Write(line);
                drawer.Write(DXFPoint(a, b, a));
                drawer.Write(DXFCircle({a, 50, 0}, b, {0, 0, all ? -1.0 : 1.0}));
                drawer.Write(DXFArc({50, a, 0}, b, a, 90));
                drawer.Write(Chain({{a, 10, 0, b}, {b, 20, 0, 1}, {50, a, 0}}));
                drawer.Write(Ring({{a, 10, 0, b}, {b, 20, 0, 1}, {50, a, 0, a}}));
                DXFSolid solid;
                solid[0] = {a, b, 0};
                solid[1] = {b, 50, 0};
                solid[2] = {50, a, 0};
                drawer.Write(solid);
                DXFText text = TextAt(a, b, a, TextInfo::MIDDLE_CENTER);
                text.SetSize(static_cast<float>(b));
                drawer.Write(text);
                DXFImage image;
                image.SetInsertPoint({a, b, 0});
                image.SetSize(a, b);
                drawer.Write(image);
            }
        }
    }
}
