#include "clip/ClipShapes.h"
#include "clip/DXFPolygonClipper.h"
#include "clip/TriangleClipper.h"

#include <gtest/gtest.h>

#include <array>
#include <ostream>

namespace {

using namespace clipshapes;
using Pieces = std::vector<Line>;

/// What remains of a ring, the ring itself when it lies inside.
Pieces Cut(const Window& window, const Line& ring)
{
    Pieces pieces;
    const GTL::ClipResult result = GTL::DXFPolygonClipper(window).Clip(ring, pieces);
    if (result == GTL::Inside) return {ring};
    EXPECT_EQ(result == GTL::Outside, pieces.empty());
    return pieces;
}

/// At places on a fine grid, away from the ring, pieces must wind exactly as often as the ring does.
void ExpectSameWinding(const Window& window, const Line& ring, const Pieces& pieces)
{
    const std::vector<P3> outline = Flattened(ring, true);
    std::vector<std::vector<P3>> cut;
    for (const Line& piece : pieces) cut.push_back(Flattened(piece, true));
    constexpr int STEPS = 17;
    for (int i = 0; i < STEPS * STEPS; ++i) {
        const double x = window.MinX() + window.ExtentX() * (i % STEPS + 0.47) / STEPS;
        const double y = window.MinY() + window.ExtentY() * (i / STEPS + 0.53) / STEPS;
        if (DistanceTo(outline, x, y) < 1e-3) continue;
        int sum = 0;
        for (const std::vector<P3>& piece : cut) sum += WindingAround(piece, x, y);
        ASSERT_EQ(sum, WindingAround(outline, x, y)) << "at " << x << ", " << y;
    }
}

/// Straight and bent, convex, concave and crossing themselves; the last kind runs along and through
/// everything.
Line AnyRing(unsigned seed)
{
    Random random(seed);
    const double bulge = seed % 3 == 0 ? 1.5 : 0;
    return seed % 2 ? StarRing(random, seed % 5 == 0 ? 0 : 0.7, bulge) : WildRing(random, bulge);
}

const Window WINDOW({2, 2}, {6, 7});

TEST(PolygonClipperLaws, PiecesWindAsTheRingDoes)
{
    for (unsigned seed = 1; seed <= 600; ++seed) {
        SCOPED_TRACE(seed);
        ExpectSameWinding(WINDOW, AnyRing(seed), Cut(WINDOW, AnyRing(seed)));
        if (HasFatalFailure()) return;
    }
}

/// Shoelace formula over the vertices, and the segments of circles that bulges add: r^2 (a - sin a) / 2 for
/// the included angle a and the radius r = chord / (2 sin(a / 2)).
double AreaOf(const Pieces& pieces)
{
    double twice = 0;
    for (const Line& piece : pieces) {
        for (std::size_t i = 0; i < piece.NumPoints(); ++i) {
            const P3& a = piece[i];
            const P3& b = piece[(i + 1) % piece.NumPoints()];
            twice += a.X() * b.Y() - b.X() * a.Y();
            const double included = 4 * std::atan(a.B());
            if (a.B() == 0) continue;
            const double radius = a.Dist2D(b, false) / (2 * std::sin(included / 2));
            twice += radius * radius * (included - std::sin(included));
        }
    }
    return twice / 2;
}

/// An arc from a random place to a random place of a circle that touches a side of the window 0 to 10 from
/// within or from outside, half of them in the middle of the side.
void AppendTouchingArc(Random& random, Line& ring)
{
    const double radius = random.Real(0.5, 9);
    const double depth = random.OneIn(2) ? radius : -radius;
    const double along = random.OneIn(2) ? 5 : random.Real(0, 10);
    const P3 centers[] = {
        {along, depth, 0}, {10 - depth, along, 0}, {along, 10 - depth, 0}, {depth, along, 0}};
    const P3& center = centers[random.Whole(0, 3)];
    const double from = random.Real(0, MATH::TWOPI);
    const double swept = random.Real(0.5, 6) * (random.OneIn(2) ? 1 : -1);
    for (const double angle : {from, from + swept})
        ring.PushBack(P3(center.X() + radius * std::cos(angle), center.Y() + radius * std::sin(angle), 0,
                         angle == from ? std::tan(swept / 4) : 0));
}

/// Whole coordinates in steps of a quarter of the window, and quarter, half and three quarter circles.
Line RegularRing(Random& random)
{
    const double QUARTER = std::sqrt(2.0) - 1;
    const double bulges[] = {0, 0, 0, 1, -1, QUARTER, -QUARTER, 1 / QUARTER, -1 / QUARTER};
    Line ring;
    for (int i = random.Whole(2, 6); i > 0; --i)
        ring.PushBack(
            P3(2.5 * random.Whole(-2, 6), 2.5 * random.Whole(-2, 6), 0, bulges[random.Whole(0, 8)]));
    return ring;
}

double AreaWithin(const Line& ring, double dx, double dy)
{
    Line moved;
    for (const P3& p : ring.Vertices()) moved.PushBack(p + GTL::Vector3D<double>(dx, dy, 0));
    return AreaOf(Cut(Window({0, 0}, {10, 10}), moved));
}

TEST(PolygonClipperLaws, RingsThatTouchTheBorderGiveWhatTheyGiveAHairBesideIt)
{
    for (unsigned seed = 1; seed <= 20000; ++seed) {
        Random random(seed);
        Line ring;
        if (seed % 2 != 0) ring = RegularRing(random);
        for (int arcs = seed % 2 != 0 ? 0 : random.Whole(1, 3); arcs > 0; --arcs) {
            AppendTouchingArc(random, ring);
            if (random.OneIn(2)) ring.PushBack(P3(random.Real(-4, 14), random.Real(-4, 14), 0));
        }
        const double area = AreaWithin(ring, 1e-7, 3e-8);
        // A ring that winds around the window twice, or runs along its border, is cut as it lies there.
        const bool moves = std::abs(AreaWithin(ring, -1e-7, 2e-8) - area) > 1e-3
                           || std::abs(AreaWithin(ring, 4e-8, 1e-7) - area) > 1e-3
                           || std::abs(AreaWithin(ring, -3e-8, -1e-7) - area) > 1e-3;
        if (moves || std::abs(area) > 150) continue;
        EXPECT_NEAR(AreaWithin(ring, 0, 0), area, 1e-3) << seed;
    }
}

TEST(PolygonClipperLaws, AreaOfThePiecesIsThatOfCountedPoints)
{
    constexpr int STEPS = 100;
    for (unsigned seed = 1; seed <= 60; ++seed) {
        Random random(seed);
        const Line ring = StarRing(random, seed % 3 == 0 ? 0 : 0.8, 0);
        const std::vector<P3> outline = Flattened(ring, true);
        int counted = 0;
        for (int i = 0; i < STEPS * STEPS; ++i)
            counted += WindingAround(outline, WINDOW.MinX() + WINDOW.ExtentX() * (i % STEPS + 0.5) / STEPS,
                                     WINDOW.MinY() + WINDOW.ExtentY() * (i / STEPS + 0.5) / STEPS);
        const double cell = WINDOW.ExtentX() * WINDOW.ExtentY() / (STEPS * STEPS);
        // A side that passes the window cuts through no more than 2 * STEPS cells, and misses half a cell in
        // each.
        EXPECT_NEAR(AreaOf(Cut(WINDOW, ring)), counted * cell, 0.1 * cell * STEPS * double(ring.NumPoints()))
            << seed;
    }
}

TEST(PolygonClipperLaws, PiecesAreClosedListsWithinTheWindowAndStayWhatTheyAre)
{
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        SCOPED_TRACE(seed);
        const Line ring = AnyRing(seed);
        Pieces pieces;
        if (GTL::DXFPolygonClipper(WINDOW).Clip(ring, pieces) == GTL::Inside) continue;
        for (const Line& piece : pieces) {
            ASSERT_GE(piece.NumPoints(), 2U);
            for (std::size_t i = 0; i < piece.NumPoints(); ++i) {
                EXPECT_EQ(WINDOW.Classify(piece[i]), GTL::CLS::INSIDE);
                EXPECT_EQ(piece[i].Z(), 7);
                EXPECT_GT(piece[i].Dist2D(piece[(i + 1) % piece.NumPoints()], true), 0);
            }
            Pieces again;
            EXPECT_EQ(GTL::DXFPolygonClipper(WINDOW).Clip(piece, again), GTL::Inside);
        }
    }
}

std::vector<std::array<double, 3>> SortedVertices(const Pieces& pieces)
{
    std::vector<std::array<double, 3>> sorted;
    for (const Line& piece : pieces)
        for (const P3& p : piece.Vertices()) sorted.push_back({p.X(), p.Y(), p.B()});
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

TEST(PolygonClipperLaws, MirroredInputGivesMirroredOutput)
{
    for (unsigned seed = 1; seed <= 1000; ++seed) {
        SCOPED_TRACE(seed);
        const Line ring = AnyRing(seed);
        const Pieces pieces = Cut(WINDOW, ring);
        Pieces back;
        for (const Line& image : Cut(Mirrored(WINDOW), Mirrored(ring))) back.push_back(Mirrored(image));
        EXPECT_NEAR(AreaOf(back), AreaOf(pieces), 1e-9);
        // Where a ring runs back over itself, outlines that touch may be joined one way or the other.
        if (seed % 2 == 0) continue;
        ASSERT_EQ(back.size(), pieces.size());
        const auto a = SortedVertices(pieces);
        const auto b = SortedVertices(back);
        ASSERT_EQ(a.size(), b.size());
        for (std::size_t i = 0; i < a.size(); ++i)
            for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(a[i][k], b[i][k], 1e-9);
    }
}

struct Row {
    const char* what;
    std::vector<P3> ring;
    GTL::ClipResult result;
    std::vector<std::vector<P3>> pieces; ///< each from any of its vertices on
};

void PrintTo(const Row& row, std::ostream* out)
{
    *out << row.what;
}

bool SameRing(const Line& ring, const std::vector<P3>& expected)
{
    const std::size_t count = expected.size();
    const auto matchesFrom = [&](std::size_t first) {
        for (std::size_t i = 0; i < count; ++i) {
            const P3& p = ring[(first + i) % count];
            const P3& q = expected[i];
            if (p.Dist2D(q, false) > 1e-12 || std::abs(p.Z() - q.Z()) > 1e-12
                || std::abs(p.B() - q.B()) > 1e-12)
                return false;
        }
        return true;
    };
    if (ring.NumPoints() != count) return false;
    for (std::size_t first = 0; first < count; ++first)
        if (matchesFrom(first)) return true;
    return false;
}

class PolygonClipper : public ::testing::TestWithParam<Row> {};

/// The window is 0 <= x <= 10, 0 <= y <= 6 throughout.
TEST_P(PolygonClipper, FollowsTheTable)
{
    const Row& row = GetParam();
    Pieces pieces{Line()};
    ASSERT_EQ(GTL::DXFPolygonClipper(Window({0, 0}, {10, 6})).Clip(Line(row.ring), pieces), row.result);
    ASSERT_EQ(pieces.size(), row.pieces.size());
    for (std::size_t i = 0; i < pieces.size(); ++i) EXPECT_TRUE(SameRing(pieces[i], row.pieces[i])) << i;
}

// A circle about (10, 3) with radius 2 as two half circles. Half of it remains, in two quarters: tan(90 / 4
// degrees).
const double QUARTER = std::sqrt(2.0) - 1;
const double ROOT55 = std::sqrt(55.0);
const double TOUCH = std::tan(std::asin(3.0 / 8) / 2);

const Row ROWS[] = {
    {"no vertex", {}, GTL::Outside, {}},
    {"one vertex inside", {{1, 1, 0}}, GTL::Inside, {}},
    {"one vertex outside", {{11, 1, 0}}, GTL::Outside, {}},
    {"the window itself", {{0, 0, 0}, {10, 0, 0}, {10, 6, 0}, {0, 6, 0}}, GTL::Inside, {}},
    {"window within the ring",
     {{-1, -1, 3}, {11, -1, 3}, {11, 7, 3}, {-1, 7, 3}},
     GTL::Clipped,
     {{{0, 0, 3}, {10, 0, 3}, {10, 6, 3}, {0, 6, 3}}}},
    {"window within a ring that runs clockwise",
     {{-1, -1, 3}, {-1, 7, 3}, {11, 7, 3}, {11, -1, 3}},
     GTL::Clipped,
     {{{0, 0, 3}, {0, 6, 3}, {10, 6, 3}, {10, 0, 3}}}},
    {"window within, one edge shared",
     {{0, -1, 0}, {11, -1, 0}, {11, 7, 0}, {0, 7, 0}},
     GTL::Clipped,
     {{{0, 0, 0}, {10, 0, 0}, {10, 6, 0}, {0, 6, 0}}}},
    {"window in a bay of the ring",
     {{-2, -2, 0}, {12, -2, 0}, {12, -1, 0}, {-1, -1, 0}, {-1, 8, 0}, {-2, 8, 0}},
     GTL::Outside,
     {}},
    {"sharing an edge from outside", {{10, 1, 0}, {12, 1, 0}, {12, 5, 0}, {10, 5, 0}}, GTL::Outside, {}},
    {"sharing a corner from outside", {{10, 6, 0}, {12, 6, 0}, {12, 8, 0}}, GTL::Outside, {}},
    // x = 10 lies on the edge from (8, 1) to (12, 5) at y = 3.
    {"a corner of the window cut off",
     {{8, 1, 0}, {12, 5, 0}, {12, -1, 0}, {8, -1, 0}},
     GTL::Clipped,
     {{{8, 1, 0}, {10, 3, 0}, {10, 0, 0}, {8, 0, 0}}}},
    // A comb from the right with teeth that reach x = 8: apart from each other inside.
    {"a comb falls apart",
     {{12, 0, 0}, {12, 6, 0}, {8, 5, 0}, {11, 4, 0}, {8, 3, 0}, {11, 2, 0}, {8, 1, 0}},
     GTL::Clipped,
     {{{10, 5.5, 0}, {8, 5, 0}, {10, 13.0 / 3, 0}},
      {{10, 11.0 / 3, 0}, {8, 3, 0}, {10, 7.0 / 3, 0}},
      {{10, 5.0 / 3, 0}, {8, 1, 0}, {10, 0.5, 0}}}},
    // The spine of this comb runs along the border itself: its teeth have one point in common.
    {"teeth on the border",
     {{12, 1, 0}, {12, 5, 0}, {10, 5, 0}, {8, 4, 0}, {10, 3, 0}, {8, 2, 0}, {10, 1, 0}},
     GTL::Clipped,
     {{{10, 5, 0}, {8, 4, 0}, {10, 3, 0}}, {{10, 3, 0}, {8, 2, 0}, {10, 1, 0}}}},
    {"a notch from above",
     {{2, 3, 0}, {9, 3, 0}, {9, 7, 0}, {6, 6, 0}, {5, 4, 0}, {4, 6, 0}, {2, 8, 0}},
     GTL::Clipped,
     {{{2, 3, 0}, {9, 3, 0}, {9, 6, 0}, {6, 6, 0}, {5, 4, 0}, {4, 6, 0}, {2, 6, 0}}}},
    {"a wedge from below that reaches the upper border",
     {{-1, 1, 0}, {4, 1, 0}, {5, 6, 0}, {6, 1, 0}, {11, 1, 0}, {11, 7, 0}, {-1, 7, 0}},
     GTL::Clipped,
     {{{0, 1, 0}, {4, 1, 0}, {5, 6, 0}, {0, 6, 0}}, {{5, 6, 0}, {6, 1, 0}, {10, 1, 0}, {10, 6, 0}}}},
    {"a tip that touches the border stays whole",
     {{3, 2, 0}, {7, 2, 0}, {5, 6, 0}, {4, 7, 0}, {4.5, 6, 0}},
     GTL::Clipped,
     {{{3, 2, 0}, {7, 2, 0}, {5, 6, 0}, {4.5, 6, 0}}}},
    {"half a circle", {{10, 1, 0, 1}, {10, 5, 0, 1}}, GTL::Clipped, {{{10, 5, 0, 1}, {10, 1, 0, 0}}}},
    // A disc about (2, 3) with radius 8 touches the right side in its middle. Its chord x = 2 + sqrt(64 - 9)
    // between the lower and the upper side is 6 long, and half the included angle has the sine 3 / 8.
    {"a disc that touches a side",
     {{2, -5, 0, 1}, {2, 11, 0, 1}},
     GTL::Clipped,
     {{{2 + ROOT55, 0, 0, TOUCH}, {2 + ROOT55, 6, 0, 0}, {0, 6, 0}, {0, 0, 0}}}},
    // The rest of the window beside such a disc about (8, 3), which touches the left side.
    {"what is beside a disc that touches a side",
     {{8, 11, 0, 1}, {8, -5, 0}, {-5, -5, 0}, {-5, 11, 0}},
     GTL::Clipped,
     {{{0, 0, 0}, {0, 6, 0}, {8 - ROOT55, 6, 0, TOUCH}, {8 - ROOT55, 0, 0}}}},
    {"half a circle that touches a side in its middle",
     {{3, 2, 0, 1}, {7, 2, 0}, {7, 9, 0}, {3, 9, 0}},
     GTL::Clipped,
     {{{3, 6, 0}, {3, 2, 0, 1}, {7, 2, 0}, {7, 6, 0}}}},
    {"touching a side with a vertex from outside",
     {{7.5, -5, 0}, {5, 0, 0}, {5, -5, 0, -1}},
     GTL::Outside,
     {}},
    {"a circle with its vertices left and right",
     {{8, 3, 0, 1}, {12, 3, 0, 1}},
     GTL::Clipped,
     {{{8, 3, 0, QUARTER}, {10, 1, 0, 0}, {10, 5, 0, QUARTER}}}},
    // y = 2 (x - 8) on the plane z = 3 x + y: at the corner (10, 0) of the window 30.
    {"a corner at the height of the plane",
     {{8, 0, 24}, {8, -2, 22}, {12, -2, 34}, {12, 8, 44}},
     GTL::Clipped,
     {{{8, 0, 24}, {10, 0, 30}, {10, 4, 34}}}},
    // The edge from (13, -3) comes in at the corner (10, 0), 3 of 5 parts up from 1 to 5; the plane is
    // elsewhere.
    {"coming in at a corner, ring not plane",
     {{8, 2, 5}, {8, -2, 9}, {9, -5, 40}, {13, -3, 1}},
     GTL::Clipped,
     {{{8, 2, 5}, {8, 0, 7}, {10, 0, 3.4}}}},
    {"back and forth across the border", {{8, 3, 0}, {12, 3, 0}}, GTL::Clipped, {{{8, 3, 0}, {10, 3, 0}}}},
    {"repeated vertices",
     {{8, 1, 0}, {8, 1, 0}, {12, 1, 0}, {12, 1, 0}, {8, 5, 0}, {8, 5, 0}},
     GTL::Clipped,
     {{{8, 1, 0}, {10, 1, 0}, {10, 3, 0}, {8, 5, 0}}}},
    // Crosses itself at (10, 3): what is inside is the left half.
    {"a bow tie with its knot on the border",
     {{8, 1, 0}, {12, 5, 0}, {12, 1, 0}, {8, 5, 0}},
     GTL::Clipped,
     {{{8, 1, 0}, {10, 3, 0}, {8, 5, 0}}}},
    {"not a number",
     {{8, 1, 0}, {NAN, 1, 0}, {12, 1, 0}, {12, 5, NAN}, {8, 5, 0}, {8, INFINITY, 0}},
     GTL::Clipped,
     {{{8, 1, 0}, {10, 1, 0}, {10, 5, NAN}, {8, 5, 0}}}},
    {"not a number, otherwise inside",
     {{1, 1, 0}, {NAN, 1, 0}, {5, 1, 0}, {5, 5, 0}, {5, NAN, 0}},
     GTL::Clipped,
     {{{1, 1, 0}, {5, 1, 0}, {5, 5, 0}}}},
};
INSTANTIATE_TEST_SUITE_P(Rows, PolygonClipper, ::testing::ValuesIn(ROWS));

TEST(PolygonClipper, SurvivesWindowsAndCoordinatesOfAnyKind)
{
    const double values[] = {0, 3, 5, 6, 1e300, -1e300, 1e308, -1e308, INFINITY, NAN, 1e-320};
    Random random(5);
    const auto pick = [&] {
        return values[random.Whole(0, 10)];
    };
    for (int i = 0; i < 20000; ++i) {
        Line ring;
        for (int k = random.Whole(0, 6); k > 0; --k) ring.PushBack(P3(pick(), pick(), pick(), pick()));
        const Window window({std::min(pick(), 5.0), 0}, {5, pick()});
        Pieces pieces;
        if (GTL::DXFPolygonClipper(window).Clip(ring, pieces) == GTL::Inside) continue;
        for (const Line& piece : pieces)
            for (const P3& p : piece.Vertices()) EXPECT_EQ(window.Classify(p), GTL::CLS::INSIDE);
    }
}

TEST(TriangleClipper, GivesTheOutlineThatThePolygonClipperGives)
{
    for (unsigned seed = 1; seed <= 500; ++seed) {
        Random random(seed);
        std::array<P3, 3> corners;
        for (P3& corner : corners) corner = P3(random.Whole(0, 8), random.Whole(0, 8), 4, random.Whole(0, 1));
        Line ring;
        std::vector<GTL::Point2D<double>> flat;
        for (const P3& corner : corners) ring.PushBack(P3(corner.X(), corner.Y(), corner.Z()));
        for (const P3& corner : corners) flat.push_back(corner);
        std::vector<P3> outline{P3()};
        std::vector<GTL::Polyline<GTL::Point2D<double>>> flatPieces;
        Pieces pieces;
        const GTL::ClipResult result = GTL::TriangleClipper<P3>(WINDOW).Clip(corners, outline);
        EXPECT_EQ(GTL::PolygonClipper<P3>(WINDOW).Clip(ring, pieces), result);
        EXPECT_EQ(GTL::PolygonClipper<GTL::Point2D<double>>(WINDOW).Clip(
                      GTL::Polygon<GTL::Point2D<double>>(flat), flatPieces),
                  result);
        ASSERT_EQ(pieces.size(), result == GTL::Clipped ? 1U : 0U);
        ASSERT_EQ(flatPieces.size(), pieces.size());
        EXPECT_EQ(outline, pieces.empty() ? std::vector<P3>() : pieces[0].Vertices());
        for (std::size_t i = 0; i < outline.size(); ++i)
            EXPECT_EQ(flatPieces[0][i], static_cast<const GTL::Point2D<double>&>(outline[i]));
    }
}

} // namespace
