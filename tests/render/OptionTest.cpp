#include "render/DrawnScene.h"

#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFInsert.h"
#include "model/DXFLine.h"
#include "model/DXFPoint.h"
#include "model/DXFPolygon.h"
#include "model/DXFSolid.h"
#include "model/InsertExploder.h"
#include "render/DrawnExtents.h"
#include "render/VisibleArcs.h"

#include <random>

using namespace DrawnScene;

namespace {

constexpr int SIDE = 300;
constexpr unsigned long RED = 0x0000FF;

class Dice {
public:
    explicit Dice(unsigned seed) : m_Random(seed) {}
    double Between(double low, double high) { return std::uniform_real_distribution(low, high)(m_Random); }
    int Upto(int highest) { return std::uniform_int_distribution(0, highest)(m_Random); }
    P3 Place() { return {Between(-30, 30), Between(-30, 30), 0}; }

    std::unique_ptr<DXFEntity> Entity()
    {
        std::unique_ptr<DXFEntity> entity;
        switch (Upto(4)) {
        case 0:
            entity = std::make_unique<DXFLine>(Place(), Place());
            break;
        case 1:
            entity = std::make_unique<DXFCircle>(Place(), Between(0.01, 20));
            break;
        case 2:
            entity = std::make_unique<DXFArc>(Place(), Between(0.01, 20), Between(0, 360), Between(0, 360));
            break;
        case 3: {
            GTL::Polygon<P3> ring;
            for (int i = 0; i < 4; ++i) {
                P3 vertex = Place();
                vertex.B(Between(-1, 1));
                ring.PushBack(vertex);
            }
            entity = std::make_unique<DXFPolygon>(ring);
            break;
        }
        default: {
            auto solid = std::make_unique<DXFSolid>();
            for (int i = 0; i < 4; ++i) (*solid)[i] = Place();
            entity = std::move(solid);
        }
        }
        entity->SetColor(RED);
        return entity;
    }

private:
    std::mt19937 m_Random;
};

DXFInsert RandomInsert(Dice& dice, const wchar_t* block, DXF& document)
{
    DXFInsert insert(block, dice.Place(), dice.Between(0, 360));
    const double size = dice.Between(0.3, 1.5);
    insert.SetScale({dice.Upto(1) ? size : -size, dice.Upto(2) ? size : 2 * size, 1});
    insert.SetRowCount(1 + dice.Upto(1));
    insert.SetColumnCount(1 + dice.Upto(2));
    insert.SetRowSpacing(dice.Between(5, 30));
    insert.SetColumnSpacing(dice.Between(-30, 30));
    if (dice.Upto(3) == 0) insert.SetExtrusion({0, 0, -1});
    insert.SetDXF(&document);
    return insert;
}

/// Without the outermost pixels, whose neighbours may lie outside.
std::vector<std::uint32_t> OffTheBorder(std::vector<std::uint32_t> picture, int side)
{
    for (int i = 0; i < side; ++i)
        for (const int at : {i, (side - 1) * side + i, i * side, i * side + side - 1})
            picture[static_cast<std::size_t>(at)] = 0;
    return picture;
}

} // namespace

TEST(DrawingOptions, ShowInsertsAsTheEntitiesThatTheyStandFor)
{
    // What explodes the inserts first draws only entities outside of blocks.
    for (unsigned seed = 1; seed <= 40; ++seed) {
        Dice dice(seed);
        DXF document;
        for (const wchar_t* name : {L"A", L"B"}) {
            DXFBlock* block = document.AddBlock(name);
            block->SetBasePoint(dice.Place());
            for (int i = 0; i < 3; ++i) block->GetDXF()->Add(dice.Entity().release());
        }
        document.GetBlock(L"B")->GetDXF()->Add(RandomInsert(dice, L"A", document).Copy());
        document.Add(RandomInsert(dice, L"B", document).Copy());
        const View view({-60, -60}, {60, 60});
        const CRect rect(0, 0, SIDE, SIDE);
        const auto drawn = PictureOf(document, view, rect, DrawingOption::All(0));
        InsertExploder().Explode(document, GO);
        const auto expected = PictureOf(document, view, rect, DrawingOption::All(0));
        EXPECT_EQ(Strangers(drawn, expected, SIDE), 0) << seed;
        EXPECT_EQ(Strangers(expected, drawn, SIDE), 0) << seed;
    }
}

TEST(DrawingOptions, ShowAPartOfTheViewAsTheSamePartOfTheWhole)
{
    // The window is the third of the whole in the middle, at the same scale; its picture is that part.
    constexpr int THIRD = SIDE / 3;
    for (unsigned seed = 1; seed <= 150; ++seed) {
        Dice dice(seed);
        DXF document;
        document.Add(dice.Entity().release());
        const auto whole =
            PictureOf(document, {{-90, -90}, {90, 90}}, CRect(0, 0, SIDE, SIDE), DrawingOption::All(0));
        const auto part =
            PictureOf(document, {{-30, -30}, {30, 30}}, CRect(0, 0, THIRD, THIRD), DrawingOption::All(0));
        std::vector<std::uint32_t> expected;
        for (int y = THIRD; y < 2 * THIRD; ++y)
            for (int x = THIRD; x < 2 * THIRD; ++x)
                expected.push_back(whole[static_cast<std::size_t>(y * SIDE + x)]);
        EXPECT_EQ(Strangers(OffTheBorder(part, THIRD), expected, THIRD), 0) << seed;
        EXPECT_EQ(Strangers(OffTheBorder(expected, THIRD), part, THIRD), 0) << seed;
    }
}

TEST(DrawingOptions, KeepArcsNearTheirCircleAtAnyScale)
{
    // Every drawn pixel of a circle of 100 pixels lies within 1.5 pixels of it, in units from tiny to huge.
    for (const double unit : {1e-6, 1.0, 1e9}) {
        DXF document;
        auto* circle = new DXFCircle({0, 0, 0}, 100 * unit);
        circle->SetColor(RED);
        document.Add(circle);
        const double half = SIDE / 2.0 * unit;
        const auto picture = PictureOf(document, {{-half, -half}, {half, half}}, CRect(0, 0, SIDE, SIDE),
                                       DrawingOption::All(0));
        int drawn = 0;
        for (int y = 0; y < SIDE; ++y) {
            for (int x = 0; x < SIDE; ++x) {
                if (picture[static_cast<std::size_t>(y * SIDE + x)] == 0) continue;
                ++drawn;
                EXPECT_NEAR(std::hypot(x + 0.5 - SIDE / 2, y - 0.5 - SIDE / 2), 100, 1.5) << x << ',' << y;
            }
        }
        EXPECT_GT(drawn, 500) << unit;
    }
}

TEST(DrawingOptions, JoinArcsToTheLineThatTheyArePartOf)
{
    // At 2.5 pixels a unit, 0.05 units are as good as an eighth of a pixel.
    for (unsigned seed = 1; seed <= 60; ++seed) {
        Dice dice(seed);
        DXF document;
        document.Add(dice.Entity().release());
        const View view({-60, -60}, {60, 60});
        const CRect rect(0, 0, SIDE, SIDE);
        const auto apart = PictureOf(document, view, rect, {.polygonBulges = true});
        const auto joined = PictureOf(document, view, rect, {.polygonBulges = true, .arcsByPixel = true});
        EXPECT_EQ(Strangers(apart, joined, SIDE), 0) << seed;
        EXPECT_EQ(Strangers(joined, apart, SIDE), 0) << seed;
    }
}

TEST(VisibleArcs, AreAllStretchesInTheWindow)
{
    const View window({0, 0}, {10, 10});
    const auto count = [&](const GTL::Point2D<double>& center, double radius, double start, double sweep) {
        const VisibleArcs arcs(window, center, radius, start, sweep);
        return arcs.end() - arcs.begin();
    };
    EXPECT_EQ(count({5, 5}, 2, 0, 360), 1);
    EXPECT_EQ(count({5, 5}, 20, 0, 360), 0);
    EXPECT_EQ(count({50, 5}, 2, 0, 360), 0);
    // It leaves through all four sides: four stretches in the corners, one of them broken at its start.
    EXPECT_EQ(count({5, 5}, 6, 45, 360), 5);
    EXPECT_EQ(count({5, 5}, 6, 0, 360), 4);
    EXPECT_EQ(count({5, 5}, 6, 0, 90), 1);
    // Upper side only.
    const VisibleArcs cap(window, {5, 12}, 4, 0, 360);
    ASSERT_EQ(cap.end() - cap.begin(), 1);
    // cos of half the opening = 2 / 4.
    EXPECT_NEAR(cap.begin()->start, 120, 1e-9);
    EXPECT_NEAR(cap.begin()->end, 240, 1e-9);
}

TEST(DrawnExtents, AreThoseOfWhatInsertsTrulyShow)
{
    DXF document;
    DXFBlock* block = document.AddBlock(L"B");
    block->SetBasePoint({100, 100, 0});
    block->GetDXF()->Add(new DXFLine({100, 100, 0}, {102, 101, 0}));
    DXFInsert insert(L"B", {10, 20, 0}, 90);
    insert.SetColumnCount(3);
    insert.SetColumnSpacing(5);
    insert.SetDXF(&document);
    document.Add(insert.Copy());
    // The line runs (0, 0) to (-1, 2) from (10, 20), (10, 25) and (10, 30).
    const GTL::Extents3D<double> box = DrawnExtents().Of(document);
    EXPECT_NEAR(box.MinX(), 9, 1e-9);
    EXPECT_NEAR(box.MaxX(), 10, 1e-9);
    EXPECT_NEAR(box.MinY(), 20, 1e-9);
    EXPECT_NEAR(box.MaxY(), 32, 1e-9);
}

TEST(DrawnExtents, SayWhenABlockShowsMoreThanItsBox)
{
    DXF document;
    DXFBlock* block = document.AddBlock(L"SELF");
    block->GetDXF()->Add(new DXFPoint(1, 1, 0));
    auto* insert = new DXFInsert(L"SELF", {10, 10, 0}, 0);
    insert->SetDXF(&document);
    block->GetDXF()->Add(insert);
    DrawnExtents extents;
    EXPECT_FALSE(extents.Of(*block).isWhole);
    EXPECT_EQ(extents.Of(*block).box.MaxX(), 1);
}
