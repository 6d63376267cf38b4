#include "clip/CircleClipper.h"
#include "clip/ArcClipper.h"
#include "clip/ClipShapes.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

using namespace clipshapes;
using Arc = GTL::Arc<P3>;
using Arcs = std::vector<Arc>;

struct Sweep {
    double start, end;
};

struct Row {
    const char* what;
    double window[4];  ///< xmin, ymin, xmax, ymax
    double start, end; ///< of an arc; unused for circles
    GTL::ClipResult result;
    std::vector<Sweep> pieces;
};

void PrintTo(const Row& row, std::ostream* out)
{
    *out << row.what;
}

Window WindowOf(const double (&bounds)[4])
{
    return {{bounds[0], bounds[1]}, {bounds[2], bounds[3]}};
}

void ExpectSweeps(const Arcs& arcs, const std::vector<Sweep>& expected)
{
    ASSERT_EQ(arcs.size(), expected.size());
    for (std::size_t i = 0; i < arcs.size(); ++i) {
        EXPECT_NEAR(arcs[i].StartAngle().Get(), expected[i].start, 1e-9);
        EXPECT_NEAR(arcs[i].EndAngle().Get(), expected[i].end, 1e-9);
        EXPECT_EQ(arcs[i].Center(), P3(0, 0, 2));
        EXPECT_DOUBLE_EQ(arcs[i].Radius(), 5);
        EXPECT_EQ(arcs[i].Normal(), (GTL::Vector3D<double>(0, 0, 1)));
    }
}

// All rows: centre (0, 0, 2), radius 5. Bearings turn clockwise from +y. With h the half chord at distance d:
// d = 3 has h = 4 and d = 4 has h = 3; A = atan(3/4) = 36.86989764584402 and B = 90 - A = 53.13010235415598.
constexpr double A = 36.86989764584402;
constexpr double B = 53.13010235415598;

class CircleClipper : public ::testing::TestWithParam<Row> {};

TEST_P(CircleClipper, FollowsTheTable)
{
    const Row& row = GetParam();
    const Window window = WindowOf(row.window);
    Arcs arcs;
    EXPECT_EQ(GTL::CircleClipper<P3>(window).Clip({P3(0, 0, 2), 25}, arcs), row.result);
    ExpectSweeps(arcs, row.pieces);
}

const Row CIRCLES[] = {
    {"inside", {-6, -6, 6, 6}, 0, 0, GTL::Inside, {}},
    {"touching all sides from inside", {-5, -5, 5, 5}, 0, 0, GTL::Inside, {}},
    {"outside", {6, -6, 9, 6}, 0, 0, GTL::Outside, {}},
    {"touching from outside", {5, -6, 9, 6}, 0, 0, GTL::Outside, {}},
    {"a window within it, around the centre, keeps it", {-1, -1, 1, 1}, 0, 0, GTL::Inside, {}},
    {"a window within it, beside the centre", {1, 1, 2, 2}, 0, 0, GTL::Outside, {}},
    // Right at (3, -4): bearing 90 + B; then (3, 4): A. List: 90 + B, A. Nearest to (3, -4) is the right
    // side, not above the centre: the first stretch, from 90 + B round to A, is in.
    {"across the right side", {-6, -6, 3, 6}, 0, 0, GTL::Clipped, {{90 + B, A}}},
    // Bottom at (-4, -3): -(90 + A) stays first; (4, -3): 90 + A. Bottom, left of the centre: in.
    {"across the bottom", {-6, -3, 6, 6}, 0, 0, GTL::Clipped, {{270 - A, 90 + A}}},
    // Top at (-4, 3): -B, (4, 3): B. Top, but left of the centre: the stretch from -B to B is out; the other
    // one would wrap and is never part of the result.
    {"across the top, lost", {-6, -6, 6, 3}, 0, 0, GTL::Clipped, {}},
    // Left at (-3, -4): -(90 + B), (-3, 4): -A. Left, below the centre: out.
    {"across the left side, lost", {-3, -6, 6, 6}, 0, 0, GTL::Clipped, {}},
    // Top y = 3: -B, B. Bottom y = -3: -(90 + A), 90 + A. List: -B, then -(90 + A), B, 90 + A in order. The
    // first is top, left of the centre: out. Second stretch -(90 + A) to B: 270 - A to B, across the top;
    // that is meant.
    {"across top and bottom", {-6, -3, 6, 3}, 0, 0, GTL::Clipped, {{270 - A, B}}},
    // Only the quarter x > 0, y > 0 up to 6: right none, left x = 0 at (0, 5): 0; bottom y = 0 at (5, 0): 90.
    // Bottom is found first: 90, 0. Bottom, right of the centre: out.
    {"a quarter, lost", {0, 0, 6, 6}, 0, 0, GTL::Clipped, {}},
    // The opposite quarter: top y = 0 at (-5, 0): -90; right x = 0 at (0, -5): 180. Top, left of the centre:
    // out.
    {"the opposite quarter, lost", {-6, -6, 0, 0}, 0, 0, GTL::Clipped, {}},
    // x < 0, y > 0: bottom y = 0 at (-5, 0): -90; right x = 0 at (0, 5): 0. Bottom, left of the centre: in.
    {"the upper left quarter", {-6, 0, 0, 6}, 0, 0, GTL::Clipped, {{270, 0}}},
    // Corner (3, 4) alone: top finds (3, 4) and right finds it too; both entries are A. Top, right of the
    // centre: in, an arc with equal ends.
    {"touching a corner", {3, 4, 9, 9}, 0, 0, GTL::Clipped, {{A, A}}},
};
INSTANTIATE_TEST_SUITE_P(Rows, CircleClipper, ::testing::ValuesIn(CIRCLES));

TEST(CircleClipper, MeetsCornersByItsStoredSquare)
{
    // The root of 2 squared is no longer 2. Top y = 1 at (-1, 1): -45, (1, 1): 45; right x = 1 at (1, -1):
    // 135, (1, 1): 45. List: -45, 45, 45, 135. Top, left of the centre: the first stretch is out, the next is
    // in.
    const Window window({-5, -5}, {1, 1});
    Arcs arcs;
    EXPECT_EQ(GTL::CircleClipper<P3>(window).Clip({P3(0, 0, 7), 2}, arcs), GTL::Clipped);
    ASSERT_EQ(arcs.size(), 1U);
    EXPECT_EQ(arcs[0], Arc(P3(0, 0, 7), std::sqrt(2.0), Angle(45), Angle(45)));
    // As an arc this is a full turn. It begins on a crossing, outwards: 45, 45, 45, 135, 315, 405.
    const Arc whole = arcs[0];
    GTL::ArcClipper<P3>(window).Clip(whole, arcs);
    EXPECT_EQ(arcs, (Arcs{whole, Arc(P3(0, 0, 7), std::sqrt(2.0), Angle(135), Angle(315))}));
}

class ArcClipper : public ::testing::TestWithParam<Row> {};

TEST_P(ArcClipper, FollowsTheTable)
{
    const Row& row = GetParam();
    const Window window = WindowOf(row.window);
    Arcs arcs;
    const Arc input(P3(0, 0, 2), 5, Angle(row.start), Angle(row.end));
    EXPECT_EQ(GTL::ArcClipper<P3>(window).Clip(input, arcs), row.result);
    ExpectSweeps(arcs, row.pieces);
}

const Row ARCS[] = {
    {"inside, equal to itself", {-6, -6, 6, 6}, 300.1, 80.1, GTL::Clipped, {{300.1, 80.1}}},
    {"outside", {6, -6, 9, 6}, 10, 80, GTL::Clipped, {}},
    // Crossings at A and 180 - A.
    {"runs out to the right", {-6, -6, 3, 6}, 10, 90, GTL::Clipped, {{10, A}}},
    {"runs out and in again", {-6, -6, 3, 6}, 10, 170, GTL::Clipped, {{10, A}, {180 - A, 170}}},
    {"starts outside, through 0", {-6, -6, 3, 6}, 90, 20, GTL::Clipped, {{180 - A, 20}}},
    {"through 0, crossings on both sides of it", {-3, -6, 3, 6}, 270, 90, GTL::Clipped, {{360 - A, A}}},
    {"an end of 0 counts as 360", {-6, -6, 3, 6}, 90, 0, GTL::Clipped, {{180 - A, 0}}},
    {"a full turn", {-6, -6, 3, 6}, 350, 350, GTL::Clipped, {{350, A}, {180 - A, 350}}},
    {"a full turn inside", {-6, -6, 6, 6}, 0, 0, GTL::Clipped, {{0, 0}}},
    // 90 and 270 cross y = 0. At (5, 0) the bottom is nearest, and not left of the centre: the first stretch
    // is out.
    {"starts on a crossing, outwards", {-6, 0, 6, 6}, 90, 200, GTL::Clipped, {}},
    // At (-5, 0): left of the centre: in.
    {"starts on a crossing, inwards", {-6, 0, 6, 6}, 270, 30, GTL::Clipped, {{270, 30}}},
    // A full turn lists the crossing at its own end again: 90, 90, 270, 90. First stretch out, then every
    // other one.
    {"a full turn from a crossing", {-6, 0, 6, 6}, 90, 90, GTL::Clipped, {{90, 270}}},
};
INSTANTIATE_TEST_SUITE_P(Rows, ArcClipper, ::testing::ValuesIn(ARCS));

TEST(CircleClipperLimits, SmallAndBrokenCirclesAreOutside)
{
    const Window window({-1, -1}, {1, 1});
    Arcs arcs{Arc()};
    for (const double radius : {1e-6, 0.0, std::nan("")}) {
        EXPECT_EQ(GTL::CircleClipper<P3>(window).Clip({P3(), radius * radius}, arcs), GTL::Outside);
        EXPECT_TRUE(arcs.empty());
        EXPECT_EQ(GTL::ArcClipper<P3>(window).Clip(Arc(P3(), radius, 10, 20), arcs), GTL::Outside);
    }
    for (const double huge : {1e155, 1e200, 1e300, double(INFINITY)}) {
        GTL::CircleClipper<P3>(window).Clip({P3(huge, -huge, 0), huge * huge}, arcs);
        EXPECT_TRUE(arcs.empty());
        GTL::ArcClipper<P3>(window).Clip(Arc(P3(-huge, 0, 0), huge, 10, 20), arcs);
        EXPECT_TRUE(arcs.empty());
    }
    GTL::ArcClipper<P3>(window).Clip(Arc(P3(NAN, 0, 0), 1, 10, 20), arcs);
    EXPECT_TRUE(arcs.empty());
}

TEST(CircleClipperLimits, AnArcInsideKeepsItsNormal)
{
    const Window window({-6, -6}, {6, 6});
    const Arc tilted(P3(), 5, 10, 20, {0, 0, -1});
    Arcs arcs;
    GTL::ArcClipper<P3>(window).Clip(tilted, arcs);
    ASSERT_EQ(arcs.size(), 1U);
    EXPECT_EQ(arcs[0], tilted);
}

double Swept(const Arc& arc)
{
    const double swept = TrimAngle(arc.EndAngle().Get() - arc.StartAngle().Get());
    return swept == 0 ? 360 : swept;
}

bool LiesWithin(const Window& window, const Arc& arc)
{
    constexpr int STEPS = 50;
    for (int k = 0; k <= STEPS; ++k) {
        const P3 p = arc.PointAt(Angle(arc.StartAngle().Get() + Swept(arc) * k / STEPS));
        if (GTL::Clipper<P3>(window).Classify(p) == GTL::Outside) return false;
    }
    return true;
}

/// Random arcs, and what a slow walk along them finds of them in the window.
TEST(ArcClipperLaws, PiecesAreWhatLiesInsideAndStayWhatTheyAre)
{
    const Window window({2, 2}, {6, 7});
    for (unsigned seed = 1; seed <= 400; ++seed) {
        Random random(seed);
        const Arc arc(P3(random.Real(0, 9), random.Real(0, 9), 1), random.Real(0.1, 6),
                      Angle(random.Real(0, 360)), Angle(random.Real(0, 360)));
        Arcs pieces;
        GTL::ArcClipper<P3>(window).Clip(arc, pieces);
        double total = 0;
        for (const Arc& piece : pieces) {
            total += Swept(piece);
            EXPECT_TRUE(LiesWithin(window, piece)) << seed;
            Arcs again;
            GTL::ArcClipper<P3>(window).Clip(piece, again);
            EXPECT_EQ(again, Arcs{piece}) << seed;
        }
        constexpr int STEPS = 2000;
        int inside = 0;
        for (int k = 0; k < STEPS; ++k) {
            const P3 p = arc.PointAt(Angle(arc.StartAngle().Get() + Swept(arc) * (k + 0.5) / STEPS));
            inside += window.Classify(p) == GTL::CLS::INSIDE;
        }
        EXPECT_NEAR(total, Swept(arc) * inside / STEPS, 8 * Swept(arc) / STEPS) << seed;

        // In the mirror an arc runs the other way: its ends change places, and so does the order of pieces.
        Arcs image;
        const Window mirrored = Mirrored(window);
        GTL::ArcClipper<P3>(mirrored).Clip(
            Arc(P3(-arc.Center().X(), arc.Center().Y(), 1), arc.Radius(), -arc.EndAngle(), -arc.StartAngle()),
            image);
        ASSERT_EQ(image.size(), pieces.size()) << seed;
        for (std::size_t i = 0; i < image.size(); ++i) {
            EXPECT_NEAR(image[image.size() - 1 - i].StartAngle().Get(), (-pieces[i].EndAngle()).Get(), 1e-7);
            EXPECT_NEAR(image[image.size() - 1 - i].EndAngle().Get(), (-pieces[i].StartAngle()).Get(), 1e-7);
        }
    }
}

TEST(CircleClipperLaws, ArcsOfACircleStayWhatTheyAre)
{
    const Window window({2, 2}, {6, 7});
    for (unsigned seed = 1; seed <= 400; ++seed) {
        Random random(seed);
        const float root = float(random.Real(0.1, 6)); // squared in single precision, as drawings do
        const double square = seed % 2 != 0 ? double(root * root) : random.Whole(1, 36);
        const P3 center = seed % 2 != 0 ? P3(random.Real(0, 9), random.Real(0, 9), 1)
                                        : P3(random.Whole(0, 9), random.Whole(0, 9), 1);
        Arcs pieces;
        GTL::CircleClipper<P3>(window).Clip({center, square}, pieces);
        for (const Arc& piece : pieces) {
            // With more than two crossings their order in the list may not be that on the circle.
            if (!LiesWithin(window, piece)) continue;
            Arcs again;
            GTL::ArcClipper<P3>(window).Clip(piece, again);
            EXPECT_EQ(again, Arcs{piece}) << seed;
        }
    }
}

} // namespace
