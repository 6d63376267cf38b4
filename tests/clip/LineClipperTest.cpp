#include "clip/LineClipper.h"
#include "clip/DXFClipContext.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>

namespace {

using P3 = GTL::Point3D<double>;
using Segment = GTL::Line<P3>;
using Window = GTL::Extents2D<double>;

constexpr double NAN_ = std::numeric_limits<double>::quiet_NaN();
constexpr double INF = std::numeric_limits<double>::infinity();

struct Row {
    const char* what;
    double from[3], to[3];
    GTL::ClipResult result;
    double cutFrom[3], cutTo[3]; ///< for Clipped
};

void PrintTo(const Row& row, std::ostream* out)
{
    *out << row.what;
}

class LineClipper : public ::testing::TestWithParam<Row> {};

/// The window is 0 <= x <= 10, 0 <= y <= 6 throughout.
TEST_P(LineClipper, FollowsTheTable)
{
    const Row& row = GetParam();
    const Window window({0, 0}, {10, 6});
    const Segment input({row.from[0], row.from[1], row.from[2]}, {row.to[0], row.to[1], row.to[2]});
    Segment output;
    ASSERT_EQ(GTL::LineClipper<P3>(window).Clip(input, output), row.result);
    if (row.result != GTL::Clipped) return;
    const P3 ends[] = {output.Start(), output.End()};
    const double* expected[] = {row.cutFrom, row.cutTo};
    for (int i = 0; i < 2; ++i) {
        EXPECT_DOUBLE_EQ(ends[i].X(), expected[i][0]);
        EXPECT_DOUBLE_EQ(ends[i].Y(), expected[i][1]);
        EXPECT_DOUBLE_EQ(ends[i].Z(), expected[i][2]);
    }
}

const Row ROWS[] = {
    {"inside", {1, 1, 0}, {9, 5, 0}, GTL::Inside, {}, {}},
    {"both ends on the border", {0, 3, 0}, {10, 3, 0}, GTL::Inside, {}, {}},
    {"beyond the border by less than the tolerance", {-1e-11, 3, 0}, {5, 3, 0}, GTL::Inside, {}, {}},
    {"no length, inside", {5, 3, 0}, {5, 3, 9}, GTL::Inside, {}, {}},
    {"no length, outside", {11, 3, 0}, {11, 3, 9}, GTL::Outside, {}, {}},
    {"beyond one side", {11, 1, 0}, {12, 5, 0}, GTL::Outside, {}, {}},
    // y = 6 at x = -1 and x = 0 at y = 7: passes the upper left corner outside.
    {"past a corner", {-2, 5, 0}, {2, 9, 0}, GTL::Outside, {}, {}},
    // x = 10 at t = 1/2 of 8..12: y = 3, z = 4.
    {"leaves to the right", {8, 2, 3}, {12, 4, 5}, GTL::Clipped, {8, 2, 3}, {10, 3, 4}},
    // The same backwards: the crossing is found first, the inner end stays second.
    {"comes in from the right", {12, 4, 5}, {8, 2, 3}, GTL::Clipped, {10, 3, 4}, {8, 2, 3}},
    // y = 0 at t = 1/4: x = 2; y = 6 at t = 3/4: x = 4. Bottom is found before top.
    {"upwards through both", {1, -3, 0}, {5, 9, 8}, GTL::Clipped, {2, 0, 2}, {4, 6, 6}},
    // Found in the order bottom, top again, and turned round to the segment's own direction.
    {"downwards through both", {5, 9, 8}, {1, -3, 0}, GTL::Clipped, {4, 6, 6}, {2, 0, 2}},
    // x = 10 at t = 3/4: y = 3.5; x = 0 at t = 1/4: y = 2.5. Right is found before left.
    {"rightwards through both", {-5, 2, 0}, {15, 4, 4}, GTL::Clipped, {0, 2.5, 1}, {10, 3.5, 3}},
    {"along the lower border", {-5, 0, 0}, {15, 0, 0}, GTL::Clipped, {0, 0, 0}, {10, 0, 0}},
    // Along the upper border the places x = 10 and x = 0 have y = 6, beyond the half-open range.
    {"along the upper border", {-5, 6, 0}, {15, 6, 0}, GTL::Outside, {}, {}},
    // The upper right corner lies beyond both half-open ranges and is never found.
    {"ends at the upper right corner", {12, 4, 0}, {10, 6, 0}, GTL::Outside, {}, {}},
    {"through the upper right corner outside", {8, 8, 0}, {12, 4, 0}, GTL::Outside, {}, {}},
    // Touches (10, 0) only: y = 0 wants x < 10, x = 10 takes y = 0. One point; the outer end stays.
    {"touches the lower right corner", {8, -2, 0}, {12, 2, 0}, GTL::Clipped, {10, 0, 0}, {12, 2, 0}},
    // The lower left corner is found on both its lines, and the inner end has no place left.
    {"comes in through the lower left corner", {-2, -2, 0}, {3, 3, 0}, GTL::Clipped, {0, 0, 0}, {0, 0, 0}},
    {"leaves through the upper right corner", {8, 4, 0}, {12, 8, 0}, GTL::Clipped, {8, 4, 0}, {12, 8, 0}},
    {"from the border outwards", {10, 3, 0}, {12, 3, 0}, GTL::Clipped, {10, 3, 0}, {10, 3, 0}},
    {"not a number", {NAN_, 3, 0}, {5, 3, 0}, GTL::Outside, {}, {}},
    {"from infinity", {-INF, NAN_, 0}, {INF, 3, 0}, GTL::Outside, {}, {}},
    {"from far away", {-1e300, 3, 0}, {1e300, 3, 0}, GTL::Clipped, {0, 3, 0}, {10, 3, 0}},
};
INSTANTIATE_TEST_SUITE_P(Rows, LineClipper, ::testing::ValuesIn(ROWS));

TEST(LineClipperWindow, IsKeptByValue)
{
    DXFClipContext context{0, 0, 10, 6};
    const GTL::LineClipper<P3> fromContext(context);
    Window window = context;
    const GTL::LineClipper<P3> fromWindow(window);
    window.Reset();
    context = {};
    Segment output;
    for (const GTL::LineClipper<P3>* clipper : {&fromContext, &fromWindow}) {
        EXPECT_EQ(clipper->Clip({{1, 1, 0}, {9, 5, 0}}, output), GTL::Inside);
        EXPECT_EQ(clipper->Clip({{1, 1, 0}, {20, 1, 0}}, output), GTL::Clipped);
        EXPECT_EQ(output.End(), P3(10, 1, 0));
    }
}

TEST(LineClipperWindow, OfNoWidthKeepsWhatLiesOnIt)
{
    const Window line({4, 0}, {4, 6});
    Segment output;
    EXPECT_EQ(GTL::LineClipper<P3>(line).Clip({{4, 1, 0}, {4, 5, 0}}, output), GTL::Inside);
    EXPECT_EQ(GTL::LineClipper<P3>(line).Clip({{0, 1, 0}, {3, 5, 0}}, output), GTL::Outside);
    EXPECT_EQ(GTL::LineClipper<P3>(Window()).Clip({{0, 0, 0}, {0, 0, 0}}, output), GTL::Outside);
}

} // namespace
