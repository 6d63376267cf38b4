#include "clip/PolylineClipper.h"
#include "clip/ClipShapes.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>

namespace {

using namespace clipshapes;
using Runs = std::vector<Line>;

constexpr double NAN_ = std::numeric_limits<double>::quiet_NaN();

GTL::ClipResult Clip(const Window& window, const Line& line, Runs& runs)
{
    return GTL::PolylineClipper<P3>(window).Clip(line, runs);
}

Runs Cut(const Window& window, const Line& line)
{
    Runs runs;
    return Clip(window, line, runs) == GTL::Inside ? Runs{line} : runs;
}

struct Row {
    const char* what;
    std::vector<P3> line;
    GTL::ClipResult result;
    std::vector<std::vector<P3>> runs;
};

void PrintTo(const Row& row, std::ostream* out)
{
    *out << row.what;
}

class PolylineClipper : public ::testing::TestWithParam<Row> {};

/// The window is 0 <= x <= 10, 0 <= y <= 6 throughout.
TEST_P(PolylineClipper, FollowsTheTable)
{
    const Row& row = GetParam();
    Runs runs{Line()};
    ASSERT_EQ(Clip(Window({0, 0}, {10, 6}), Line(row.line), runs), row.result);
    ASSERT_EQ(runs.size(), row.runs.size());
    for (std::size_t i = 0; i < runs.size(); ++i) {
        ASSERT_EQ(runs[i].NumPoints(), row.runs[i].size());
        for (std::size_t k = 0; k < runs[i].NumPoints(); ++k) {
            EXPECT_NEAR(runs[i][k].X(), row.runs[i][k].X(), 1e-12);
            EXPECT_NEAR(runs[i][k].Y(), row.runs[i][k].Y(), 1e-12);
            EXPECT_NEAR(runs[i][k].Z(), row.runs[i][k].Z(), 1e-12);
            EXPECT_NEAR(runs[i][k].B(), row.runs[i][k].B(), 1e-12);
        }
    }
}

const double ROOT3 = std::sqrt(3.0);
const double ROOT12 = std::sqrt(12.0);

const Row ROWS[] = {
    {"no vertex", {}, GTL::Outside, {}},
    {"one vertex inside", {{1, 1, 0}}, GTL::Inside, {}},
    {"one vertex outside", {{11, 1, 0}}, GTL::Outside, {}},
    {"inside, on the border too", {{0, 0, 0}, {10, 0, 0}, {10, 6, 0}}, GTL::Inside, {}},
    {"beyond a side", {{11, 0, 0}, {12, 6, 0}}, GTL::Outside, {}},
    {"round a corner outside", {{-1, 5, 0}, {-1, 7, 0}, {5, 7, 0}}, GTL::Outside, {}},
    {"touching the border with a vertex", {{2, 8, 0}, {4, 6, 0}, {6, 8, 0}}, GTL::Outside, {}},
    {"touching a corner along a segment", {{8, 8, 0}, {12, 4, 0}}, GTL::Outside, {}},
    // Through y = 6 at x = 2, 4, 6 and out at x = 10, y = 5 (halfway).
    {"in and out",
     {{1, 8, 1}, {3, 4, 3}, {5, 8, 5}, {7, 4, 7}, {9, 4, 9}, {11, 6, 11}},
     GTL::Clipped,
     {{{2, 6, 2}, {3, 4, 3}, {4, 6, 4}}, {{6, 6, 6}, {7, 4, 7}, {9, 4, 9}, {10, 5, 10}}}},
    {"across two sides by one segment", {{-5, 3, 0}, {15, 3, 20}}, GTL::Clipped, {{{0, 3, 5}, {10, 3, 15}}}},
    {"along the upper border", {{-5, 6, 0}, {15, 6, 0}}, GTL::Clipped, {{{0, 6, 0}, {10, 6, 0}}}},
    {"vertex on the border stays one run",
     {{5, 3, 0}, {5, 6, 0}, {6, 3, 0}, {6, -3, 0}},
     GTL::Clipped,
     {{{5, 3, 0}, {5, 6, 0}, {6, 3, 0}, {6, 0, 0}}}},
    // Clockwise half circle about (5, 4), radius 4, from (1, 4) over (5, 8): at y = 6 the half chord is
    // sqrt(16 - 4) = sqrt(12), the bearing 60 degrees off the top: of each half 90 - 60 = 30 degrees remain.
    // tan(30 / 4 = 7.5 degrees) = 0.13165249758739583.
    {"an arc over the top",
     {{1, 4, 0, -1}, {9, 4, 6, 9}},
     GTL::Clipped,
     {{{1, 4, 0, -0.13165249758739583}, {5 - ROOT12, 6, 1, 0}},
      {{5 + ROOT12, 6, 5, -0.13165249758739583}, {9, 4, 6, 9}}}},
    // Counter-clockwise half circle about (10, 3), radius 2, from (10, 1) over (12, 3): outside but for its
    // ends.
    {"an arc from border to border outside",
     {{9, 1, 0}, {10, 1, 0, 1}, {10, 5, 0}, {9, 5, 0}},
     GTL::Clipped,
     {{{9, 1, 0}, {10, 1, 0}}, {{10, 5, 0}, {9, 5, 0}}}},
    // Clockwise half circle about (11, 3), radius 2, from (11, 1) over (9, 3): x = 10 lies half a radius west
    // of the centre, so 60 degrees on both sides of the west remain, and 30 go at each end: tan(120 / 4 = 30
    // degrees).
    {"both ends of an arc outside",
     {{11, 1, 0, -1}, {11, 5, 6}},
     GTL::Clipped,
     {{{10, 3 - ROOT3, 1, -1 / ROOT3}, {10, 3 + ROOT3, 5}}}},
    // Half a circle about (12, 3) whose leftmost point misses x = 10 by less than the tolerance of 1e-9.
    {"an arc that comes near the border",
     {{12, 1 + 1e-10, 0, -1}, {12, 5 - 1e-10, 0}, {12, 7, 0}, {5, 7, 0}},
     GTL::Outside,
     {}},
    {"not a number between",
     {{1, 1, 0}, {2, 1, 0}, {NAN_, 1, 0}, {4, 1, 0}, {5, 1, 0}, {5, -1, 0}},
     GTL::Clipped,
     {{{1, 1, 0}, {2, 1, 0}}, {{4, 1, 0}, {5, 1, 0}, {5, 0, 0}}}},
    {"not a number, otherwise inside",
     {{1, 1, 0}, {2, 1, 0}, {3, NAN_, 0}, {4, 1, 0}, {NAN_, 1, 0}, {5, 1, 0}, {6, 1, 0}},
     GTL::Clipped,
     {{{1, 1, 0}, {2, 1, 0}}, {{5, 1, 0}, {6, 1, 0}}}},
    {"not a number between single vertices", {{1, 1, 0}, {NAN_, 1, 0}, {3, 1, 0}}, GTL::Outside, {}},
    {"from far away", {{-1e9, 3, 0}, {1e9, 3, 0}}, GTL::Clipped, {{{0, 3, 0}, {10, 3, 0}}}},
    {"repeated vertices",
     {{5, 3, 0}, {5, 3, 0}, {5, 9, 0}, {5, 9, 0}},
     GTL::Clipped,
     {{{5, 3, 0}, {5, 3, 0}, {5, 6, 0}}}},
};
INSTANTIATE_TEST_SUITE_P(Rows, PolylineClipper, ::testing::ValuesIn(ROWS));

/// A chain that wanders about; its bulges are 0 for half of the seeds.
Line Wandering(unsigned seed)
{
    Random random(seed);
    const double bulge = seed % 2 ? 1.2 : 0;
    Line line;
    for (int i = random.Whole(2, 14); i > 0; --i)
        line.PushBack(
            P3(random.Real(-1, 9), random.Real(0, 9), random.Real(0, 5), random.Real(-bulge, bulge)));
    return line;
}

TEST(PolylineClipperLaws, RunsAreWhatLiesInsideInOrder)
{
    const Window window({2, 2}, {6, 7});
    for (unsigned seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(seed);
        const Line line = Wandering(seed);
        const Runs runs = Cut(window, line);
        const Window everything({-1e9, -1e9}, {1e9, 1e9});
        double length = 0;
        for (const Line& run : runs) {
            length += LengthWithin(run, everything);
            const std::vector<P3> path = Flattened(line, false);
            for (const P3& p : Flattened(run, false, 7)) {
                EXPECT_LT(DistanceTo(path, p.X(), p.Y()), 1e-3);
                EXPECT_EQ(GTL::Clipper<P3>(window).Classify(p), GTL::Inside);
            }
        }
        // Every place where the chain passes the border may cost or gain half a step.
        EXPECT_NEAR(length, LengthWithin(line, window), LENGTH_STEP * double(runs.size() + 1));
    }
}

TEST(PolylineClipperLaws, ClippingTwiceIsClippingOnceAndMirrorsAgree)
{
    const Window window({2, 2}, {6, 7});
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE(seed);
        const Line line = Wandering(seed);
        const Runs runs = Cut(window, line);
        const Runs image = Cut(Mirrored(window), Mirrored(line));
        ASSERT_EQ(image.size(), runs.size());
        for (std::size_t i = 0; i < runs.size(); ++i) {
            EXPECT_EQ(Cut(window, runs[i]), Runs{runs[i]});
            const Line back = Mirrored(image[i]);
            ASSERT_EQ(back.NumPoints(), runs[i].NumPoints());
            for (std::size_t k = 0; k < back.NumPoints(); ++k) {
                EXPECT_LT(back[k].Dist2D(runs[i][k], false), 1e-9);
                EXPECT_NEAR(back[k].B(), runs[i][k].B(), 1e-9);
                EXPECT_NEAR(back[k].Z(), runs[i][k].Z(), 1e-9);
            }
        }
    }
}

TEST(PolylineClipper, CutsNearlyStraightArcsWhereTheirChordIsCut)
{
    // The arc leaves its chord by bulge * length / 2 at most.
    for (const double bulge : {1e-6, 1e-9, 1e-12, 1e-300}) {
        const Runs runs = Cut(Window({0, 0}, {10, 6}), Line({P3(500000, 3, 0, bulge), P3(4, 3, 0)}));
        ASSERT_EQ(runs.size(), 1U);
        EXPECT_NEAR(runs[0][0].Y(), 3, bulge * 250000 + 1e-9);
        EXPECT_EQ(runs[0][0].X(), 10);
        EXPECT_NEAR(runs[0][0].B(), bulge * 6 / 499996, 1e-9 * bulge);
    }
}

TEST(PolylineClipper, SurvivesWindowsAndCoordinatesOfAnyKind)
{
    const double values[] = {0, 3, 5, 1e300, -1e300, 1e308, -1e308, INFINITY, -INFINITY, NAN_, 1e-320};
    Random random(5);
    const auto pick = [&] {
        return values[random.Whole(0, 10)];
    };
    for (int i = 0; i < 20000; ++i) {
        Line line;
        for (int k = random.Whole(0, 6); k > 0; --k) line.PushBack(P3(pick(), pick(), pick(), pick()));
        Window window({std::min(pick(), 5.0), 0}, {5, pick()});
        if (random.OneIn(5)) window = Window({3, 0}, {3, 5});
        Runs runs;
        Clip(window, line, runs);
        for (const Line& run : runs)
            for (const P3& p : run.Vertices()) EXPECT_EQ(GTL::Clipper<P3>(window).Classify(p), GTL::Inside);
    }
}

} // namespace
