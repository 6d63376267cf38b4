#include "model/DXFMText.h"
#include "model/DXFText.h"

#include <gmock/gmock.h>

#include <cmath>

namespace {

using testing::ElementsAre;
using P = GTL::Point3D<double>;
using Map = GTL::Transformation<P>;

TextInfo Info(float size = 2, double rotation = 0, int justification = 0)
{
    TextInfo info;
    info.SetFont(L"Liberation Sans");
    info.SetSize(size);
    info.SetRotation(Angle(rotation));
    info.SetJustification(static_cast<TextInfo::JUSTIFICATION>(justification));
    return info;
}

void ExpectSame(const TextRectComp::Rect& is, const TextRectComp::Rect& should, double tolerance)
{
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_NEAR(is[i].X(), should[i].X(), tolerance);
        EXPECT_NEAR(is[i].Y(), should[i].Y(), tolerance);
    }
}

class Fonts : public testing::Test {
protected:
    void SetUp() override { DXFText::s_FontTable.clear(); }
    static void Use(const std::wstring& font)
    {
        DXFText text;
        TextInfo info;
        info.SetFont(font);
        text.SetTextInfo(info);
    }
};

TEST_F(Fonts, AreListedOnceWhateverTheirCase)
{
    for (const wchar_t* font : {L"Arial", L"txt.shx", L"", L"ARIAL", L"Txt.SHX", L"Arial"}) Use(font);
    DXFMText multi;
    multi.SetTextInfo(Info());
    EXPECT_THAT(DXFText::s_FontTable, ElementsAre(L"Arial", L"txt.shx", L"Liberation Sans"));
}

TEST_F(Fonts, FollowAHostWhoChangesTheTable)
{
    Use(L"A"), Use(L"B");
    DXFText::s_FontTable.clear();
    Use(L"B"), Use(L"A");
    EXPECT_THAT(DXFText::s_FontTable, ElementsAre(L"B", L"A"));
    std::swap(DXFText::s_FontTable[0], DXFText::s_FontTable[1]);
    Use(L"b"), Use(L"a");
    EXPECT_THAT(DXFText::s_FontTable, ElementsAre(L"A", L"B"));
    DXFText::s_FontTable.push_back(L"D");
    Use(L"d");
    EXPECT_THAT(DXFText::s_FontTable, ElementsAre(L"A", L"B", L"D"));
    DXFText::s_FontTable = {L"X", L"a", L"C"};
    Use(L"A");
    Use(L"B");
    Use(L"c");
    EXPECT_THAT(DXFText::s_FontTable, ElementsAre(L"X", L"a", L"C", L"B"));
}

TEST_F(Fonts, AreFoundAmongMany)
{
    constexpr int COUNT = 30'000;
    for (int i = 0; i < COUNT; ++i) Use(L"Font" + std::to_wstring(i));
    for (int i = 0; i < COUNT; ++i) Use(L"FONT" + std::to_wstring(i));
    EXPECT_EQ(DXFText::s_FontTable.size(), std::size_t(COUNT));
}

TEST(Texts, StandOnThePointTheirJustificationNames)
{
    // Justification and reference point of the rectangle: corners 0 to 3 counter-clockwise from bottom-left,
    // then the middles of the sides from the bottom one on, then the centre.
    constexpr int POINTS[] = {0, 4, 1, 5, 2, 6, 3, 7, 8, 0, 4, 1};
    for (int justification = 0; justification < 12; ++justification)
        for (const double rotation : {0.0, 30.0, 200.0}) {
            DXFText text;
            text.SetText(L"Reference");
            text.SetPosition(P(100, -50, 7));
            text.SetTextInfo(Info(2, rotation, justification));
            const auto rectangle = text.PlacedRectangle();
            const auto point = rectangle.ReferencePoint(POINTS[justification]);
            EXPECT_NEAR(point.X(), 100, 1e-9) << justification;
            EXPECT_NEAR(point.Y(), -50, 1e-9) << justification;
            GTL::Extents3D<double> corners;
            for (std::size_t i = 0; i < 4; ++i) corners.Update(rectangle[i].X(), rectangle[i].Y(), 0);
            EXPECT_EQ(text.Extents(), corners);
        }
}

TEST(Texts, WithoutAReferencePointStayWhereTheyWereMeasured)
{
    DXFText text;
    text.SetText(L"Reference");
    text.SetPosition(P(100, -50, 7));
    text.SetTextInfo(Info(2, 0, 12));
    ExpectSame(text.PlacedRectangle(), TextRectComp()(text.GetTextInfo(), text.Text()), 0);
}

TEST(Texts, OfSeveralLinesAreBrokenAtTheirWidth)
{
    TextInfo info = Info();
    info.SetMultiLine(true);
    DXFMText text;
    text.SetText(L"several words in one text");
    text.SetTextInfo(info);
    const auto line = text.PlacedRectangle();
    info.SetRectWidth(float(line.Width() / 2));
    text.SetTextInfo(info);
    const auto broken = text.PlacedRectangle();
    EXPECT_LT(broken.Width(), line.Width());
    EXPECT_GT(broken.Height(), line.Height());
}

TEST(Texts, EverySetterMakesTheBoxAnew)
{
    DXFText text;
    text.SetTextInfo(Info());
    text.SetText(L"abc");
    auto changed = [&text, last = text.Extents()]() mutable {
        const bool differs = text.Extents() != last;
        last = text.Extents();
        return differs;
    };
    text.SetText(L"abcdef");
    EXPECT_TRUE(changed());
    text.SetPosition(P(1, 1, 0));
    EXPECT_TRUE(changed());
    text.SetRotation(45);
    EXPECT_TRUE(changed());
    text.SetSize(9);
    EXPECT_TRUE(changed());
    text.SetJustification(TextInfo::TOP_RIGHT);
    EXPECT_TRUE(changed());
    text.SetTextInfo(Info());
    EXPECT_TRUE(changed());
    GTL::Extents3D<double> box;
    box.Update(1, 2, 3);
    text.SetClipExtents(box);
    EXPECT_EQ(text.Extents(), box);
    EXPECT_EQ(text.GetClipExtents(), box);
    text.SetSize(4);
    EXPECT_NE(text.Extents(), box);
    EXPECT_EQ(text.GetClipExtents(), box);
    text.UpdateExtents();
}

TEST(Texts, TakeTheColourOfTheirAttributes)
{
    TextInfo info = Info();
    info.SetColor(0x112233);
    DXFText text;
    text.SetTextInfo(info);
    EXPECT_EQ(text.Color(), 0x112233UL);
}

/// Turning, moving and even scaling take the rectangle of a text to the rectangle of the image.
TEST(Texts, TransformsKeepTheRectangle)
{
    for (const double degrees : {0.0, 90.0, 33.0, 270.0})
        for (const double rotation : {0.0, 120.0}) {
            const Map map =
                Map().Translate(3, 4, 0).RotateZ(Angle(degrees)).Scale(2.5, 2.5, 2.5).Translate(-20, 1, 0);
            DXFMText text;
            TextInfo info = Info(2, rotation, TextInfo::TOP_CENTER);
            info.SetRectWidth(15);
            text.SetTextInfo(info);
            text.SetText(L"several words in one text");
            text.SetPosition(P(11, 13, 17));
            const auto before = text.PlacedRectangle();
            text.Transform(map);
            const auto after = text.PlacedRectangle();
            for (std::size_t i = 0; i < 4; ++i) {
                const P image = map.Apply(P(before[i].X(), before[i].Y(), 0));
                EXPECT_NEAR(after[i].X(), image.X(), 1e-4);
                EXPECT_NEAR(after[i].Y(), image.Y(), 1e-4);
            }
            EXPECT_FLOAT_EQ(text.GetTextInfo().Size(), 5);
            EXPECT_FLOAT_EQ(text.GetTextInfo().RectWidth(), 37.5F);
            EXPECT_NEAR(text.Position().Z(), 42.5, 1e-9);
        }
}

TEST(Texts, FollowTheirOwnAxesUnderUnevenMaps)
{
    // Rotations are clockwise from +x. Along the base line the width scales, across it the size.
    const struct {
        double rotation;
        Map map;
        double newRotation;
        float size, width;
    } rows[] = {
        {0, Map().Scale(3, 2, 1), 0, 4, 30},
        {90, Map().Scale(3, 2, 1), 90, 6, 20},
        {0, Map().Scale(-1, 1, 1), 180, 2, 10},
        {0, Map().Scale(1, -1, 1), 0, 2, 10},
        {90, Map().RotateZ(90), 0, 2, 10},
        // A shear x' = x + y leaves the base line and the distance of parallels to it.
        {0, Map(Map::Rows{{{1, 1, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}}}), 0, 2, 10},
        {0, Map().Scale(0, 1, 1), 0, 2, 0},
        {30, Map().Scale(0, 0, 0), 30, 0, 0},
    };
    for (const auto& row : rows) {
        TextInfo info = Info(2, row.rotation);
        info.SetRectWidth(10);
        DXFMText text;
        text.SetTextInfo(info);
        text.Transform(row.map);
        EXPECT_NEAR(text.GetTextInfo().Rotation().Get(), row.newRotation, 1e-9);
        EXPECT_FLOAT_EQ(text.GetTextInfo().Size(), row.size);
        EXPECT_FLOAT_EQ(text.GetTextInfo().RectWidth(), row.width);
    }
}

} // namespace
