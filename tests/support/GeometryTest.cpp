#include "support/Arc.h"
#include "support/CircIterator.h"
#include "support/Circle.h"
#include "support/Extents.h"
#include "support/Polygon.h"
#include "support/Polyline.h"
#include "support/Rectangle.h"
#include "support/Transformation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using Point2 = GTL::Point2D<double>;
using Point3 = GTL::Point3D<double>;
using Vector3 = GTL::Vector3D<double>;
using Box2 = GTL::Extents2D<double>;
using Box3 = GTL::Extents3D<double>;
using Map = GTL::Transformation<Point3>;

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double HUGE_NUMBER = std::numeric_limits<double>::max();

void ExpectNear(const Point3& p, double x, double y, double z)
{
    EXPECT_NEAR(p.X(), x, 1e-12);
    EXPECT_NEAR(p.Y(), y, 1e-12);
    EXPECT_NEAR(p.Z(), z, 1e-12);
}

} // namespace

TEST(Point, ComparesAllComponentsAndKeepsItsBulgeWhenMoved)
{
    const Point3 p(1, 2, 3, 0.5);
    EXPECT_EQ(p + Vector3(10, 20, 30), Point3(11, 22, 33, 0.5));
    EXPECT_EQ(p - Vector3(1, 2, 3), Point3(0, 0, 0, 0.5));
    EXPECT_NE(p, Point3(1, 2, 3, 0));
    EXPECT_EQ(p - Point3(1, 1, 1), Vector3(0, 1, 2));
    Point3 moved(Point2(1, 2), 3, 0.5);
    static_cast<Point2&>(moved).X() = 7;
    EXPECT_EQ(moved, Point3(7, 2, 3, 0.5));
}

TEST(Point, DistanceIsThatOfThePlan)
{
    EXPECT_EQ(Point3(1, 1, 5).Dist2D(Point3(4, 5, -9), false), 5); // 3-4-5
    EXPECT_EQ(Point3(1, 1, 5).Dist2D(Point3(4, 5, -9), true), 25);
    EXPECT_EQ(::Point::Dist2D(Point2(0, 0), Point2(-6, 8), false), 10);
    EXPECT_EQ(GTL::Point2D<int>(-2147483647, 0).Dist2D({2147483647, 0}, false), 4294967294.0);
}

TEST(Extents, AreEmptyUntilTheFirstPoint)
{
    Box3 box;
    EXPECT_FALSE(box.IsValid());
    EXPECT_EQ(box.Classify(Point3()), GTL::CLS::OUTSIDE);
    box.Update(Box3());
    EXPECT_FALSE(box.IsValid());
    box.Update(-4, 5, 6);
    EXPECT_EQ(box.MinPnt(), Point3(-4, 5, 6));
    EXPECT_EQ(box.MaxPnt(), Point3(-4, 5, 6));
    box.Reset();
    EXPECT_FALSE(box.IsValid());
    EXPECT_FALSE(Box2(box).IsValid());
}

TEST(Extents, NotANumberNeitherStartsNorWidensABox)
{
    Box3 box;
    box.Update(1, NOT_A_NUMBER, 3);
    EXPECT_FALSE(box.IsValid());
    box.Update(1, 2, 3);
    box.Update(NOT_A_NUMBER, 5, NOT_A_NUMBER);
    EXPECT_EQ(box.MinPnt(), Point3(1, 2, 3));
    EXPECT_EQ(box.MaxPnt(), Point3(1, 5, 3));
    EXPECT_FALSE(Box2({NOT_A_NUMBER, 0}, {0, NOT_A_NUMBER}).IsValid());
}

TEST(Extents, ClassifyByOverlap)
{
    const Box2 box({0, 0}, {10, 10});
    EXPECT_EQ(box.Classify(Point2(10, 0)), 1) << "the border is inside";
    EXPECT_EQ(box.Classify(Point2(10.5, 5)), 2);
    EXPECT_EQ(box.Classify(Point2(NOT_A_NUMBER, 5)), 2);
    EXPECT_EQ(box.Classify(Box2({0, 0}, {10, 10})), 1);
    EXPECT_EQ(box.Classify(Box2({9, 9}, {11, 9.5})), 0);
    EXPECT_EQ(box.Classify(Box2({-5, -5}, {15, 15})), 0) << "a box around this one";
    EXPECT_EQ(box.Classify(Box2({10, 10}, {11, 11})), 0) << "touching is not outside";
    EXPECT_EQ(box.Classify(Box2({11, 0}, {12, 10})), 2);
    EXPECT_EQ(box.Classify(Box2()), 2);
}

TEST(Extents, ClassifyInSpaceByZToo)
{
    Box3 box;
    box.Update(0, 0, 0);
    box.Update(10, 10, 10);
    Box3 other;
    other.Update(2, 2, 11);
    EXPECT_EQ(box.Classify(other), 2);
    other.Update(3, 3, 5);
    EXPECT_EQ(box.Classify(other), 0);
    EXPECT_EQ(box.Classify(Point3(5, 5, 10.5)), 2);
    EXPECT_EQ(box.Classify(Point3(5, 5, 10)), 1);
}

TEST(Extents, CenterOfAHugeBoxIsFinite)
{
    const Box2 box({0, -HUGE_NUMBER}, {HUGE_NUMBER, HUGE_NUMBER});
    EXPECT_EQ(box.Center(), Point2(HUGE_NUMBER / 2, 0));
}

TEST(Extents, TransformedBoxHoldsAllTurnedCorners)
{
    Box3 box;
    box.Update(0, 0, 0);
    box.Update(2, 1, 5);
    box.Transform(Map().RotateZ(90).Translate(0, 0, 1));
    EXPECT_EQ(box.MinPnt(), Point3(-1, 0, 1)); // (2, 1) goes to (-1, 2)
    EXPECT_EQ(box.MaxPnt(), Point3(0, 2, 6));
    Box3 empty;
    empty.Transform(Map().Translate(1, 1, 1));
    EXPECT_FALSE(empty.IsValid());
}

TEST(Transformation, AppliesItsStepsInTheOrderOfAdding)
{
    Point3 p(1, 0, 0, 0.25);
    p.Transform(Map().Translate(1, 0, 0).RotateZ(90).Scale(1, 3, 1)); // (2,0) -> (0,2) -> (0,6)
    EXPECT_EQ(p, Point3(0, 6, 0, 0.25));
    Point3 q(1, 0, 0);
    q.Transform(Map().Scale(1, 3, 1).RotateZ(90).Translate(1, 0, 0)); // (1,0) -> (0,1) -> (1,1)
    EXPECT_EQ(q, Point3(1, 1, 0));
}

TEST(Transformation, TurnsCounterClockwiseSeenFromTheTipOfTheAxis)
{
    const Vector3 x(1, 0, 0);
    const Vector3 y(0, 1, 0);
    const Vector3 z(0, 0, 1);
    EXPECT_EQ(Map().RotateZ(90).ApplyLinear(x), y);
    EXPECT_EQ(Map().RotateX(90).ApplyLinear(y), z);
    EXPECT_EQ(Map().RotateY(90).ApplyLinear(z), x);
    // cos 30 = 0.8660254037844386, sin 30 = 0.5
    ExpectNear(Map().RotateZ(30).Apply(Point3(2, 0, 0)), 1.7320508075688772, 1, 0);
}

TEST(Transformation, AppendedMapComesLast)
{
    const Map first = Map().Translate(1, 2, 3).RotateX(20);
    const Map second = Map().Scale(2, -1, 4).RotateY(70).Translate(5, 0, 0);
    Map both = first;
    both.Append(second);
    const Point3 expected = second.Apply(first.Apply(Point3(0.5, -7, 11)));
    ExpectNear(both.Apply(Point3(0.5, -7, 11)), expected.X(), expected.Y(), expected.Z());
    EXPECT_LT(both.Determinant2D() * Map().Scale(-1, 1, 1).Append(both).Determinant2D(), 0)
        << "a mirror in plan";
}

TEST(Rectangle, NumbersItsReferencePoints)
{
    const GTL::Rectangle<Point2> box(4, 2);
    const Point2 POINTS[] = {{0, 0}, {4, 0}, {4, 2}, {0, 2}, {2, 0}, {4, 1}, {2, 2}, {0, 1}, {2, 1}};
    for (int number = 0; number < 9; ++number)
        EXPECT_EQ(box.ReferencePoint(number), POINTS[number]) << number;
    for (const int number : {-1, 9}) EXPECT_EQ(box.ReferencePoint(number), Point2(2, 1));
}

TEST(Rectangle, TurnsClockwiseAndMovesByAReferencePoint)
{
    GTL::Rectangle<Point2> box(4, 2);
    box.RotateClockwise(90);
    EXPECT_EQ(box[1], Point2(0, -4));
    EXPECT_EQ(box[2], Point2(2, -4));
    box.MoveTo(2, {10, 10});
    EXPECT_EQ(box[0], Point2(8, 14));
    EXPECT_EQ(box.Width(), 4);
    EXPECT_EQ(box.Height(), 2);
}

TEST(Arc, RunsClockwiseFromPlusY)
{
    const GTL::Arc<Point3> arc(Point3(1, 1, 7), 2, 90, 180); // right, then down
    EXPECT_EQ(arc.StartPoint(), Point3(3, 1, 7));
    EXPECT_EQ(arc.EndPoint(), Point3(1, -1, 7));
    EXPECT_TRUE(arc.Sweeps(135));
    EXPECT_FALSE(arc.Sweeps(90));
    EXPECT_FALSE(arc.Sweeps(200));
    EXPECT_EQ(arc.BearingOf(Point3(-5, 1, 0)).Get(), 270);
}

TEST(Arc, ExtentsHoldTheCompassPointsOfTheSweep)
{
    struct Row {
        double start, end;
        double minX, minY, maxX, maxY;
    };
    const double h = std::sqrt(0.5); // sin 45 = cos 45
    const Row ROWS[] = {
        {0, 90, 0, 0, 1, 1},     {45, 135, h, -h, 1, h}, // bulges to the right only
        {315, 45, -h, h, h, 1},                          // over north, through 0
        {45, 315, -1, -1, 1, h},                         // the other way round
        {30, 30, -1, -1, 1, 1},                          // a full turn
    };
    for (const Row& row : ROWS) {
        const Box3 box = GTL::Arc<Point3>(Point3(), 1, row.start, row.end).Extents();
        EXPECT_NEAR(box.MinX(), row.minX, 1e-12) << row.start;
        EXPECT_NEAR(box.MinY(), row.minY, 1e-12) << row.start;
        EXPECT_NEAR(box.MaxX(), row.maxX, 1e-12) << row.start;
        EXPECT_NEAR(box.MaxY(), row.maxY, 1e-12) << row.start;
    }
}

TEST(Bulge, PutsItsArcBesideTheChord)
{
    struct Row {
        double bulge, centerX, centerY, radius, start, end;
    };
    const double QUARTER = std::sqrt(2.0) - 1; // tan 22.5
    const Row ROWS[] = {
        // From (0, 0) to (2, 0). A half circle: centre in the middle, below the chord when counter-clockwise.
        {1, 1, 0, 1, 90, 270},
        {-1, 1, 0, 1, 270, 90},
        // A quarter: the centre sees the chord under 90 degrees, so it lies 1 above it; bearings of the ends
        // from there are 225 and 135.
        {QUARTER, 1, 1, std::sqrt(2.0), 135, 225},
        {-QUARTER, 1, -1, std::sqrt(2.0), 315, 45},
    };
    for (const Row& row : ROWS) {
        const auto arc = GTL::BulgeArc(Point3(0, 0, 4), Point3(2, 0, 9), row.bulge);
        ASSERT_TRUE(arc) << row.bulge;
        ExpectNear(arc->Center(), row.centerX, row.centerY, 4);
        EXPECT_NEAR(arc->Radius(), row.radius, 1e-12);
        EXPECT_NEAR(arc->StartAngle().Get(), row.start, 1e-9);
        EXPECT_NEAR(arc->EndAngle().Get(), row.end, 1e-9);
    }
}

TEST(Bulge, WithoutAnArcIsStraight)
{
    const Point3 from(1, 1, 0);
    for (const double bulge : {0.0, NOT_A_NUMBER, HUGE_NUMBER * 2, 1e-320})
        EXPECT_FALSE(GTL::BulgeArc(from, Point3(2, 1, 0), bulge)) << bulge;
    EXPECT_FALSE(GTL::BulgeArc(from, from, 1.0));
    EXPECT_FALSE(GTL::BulgeArc(Point3(-HUGE_NUMBER, 0, 0), Point3(HUGE_NUMBER, 0, 0), 0.5));
}

TEST(Polyline, KeepsTheBoxOfItsVertices)
{
    GTL::Polygon<Point3> ring;
    ring.PushBack(Point3(0, 0, 0, 1));
    ring.PushBack(Point3(5, 0, 0));
    ring.PushFront(Point3(9, 9, 9));
    EXPECT_EQ(ring.Front(), Point3(9, 9, 9));
    EXPECT_EQ(ring.VertexBox().MaxPnt(), Point3(9, 9, 9));
    ring.Set(0, Point3(-1, 0, 0));
    EXPECT_EQ(ring.VertexBox().MaxPnt(), Point3(5, 0, 0)) << "the box shrinks with a vertex replaced";
    ring.Set(3, Point3(100, 0, 0));
    EXPECT_EQ(ring.VertexBox().MaxX(), 5);
    ring.Insert(99, Point3(7, 7, 7));
    EXPECT_EQ(ring.Back(), Point3(7, 7, 7));
    ring.Transform(Map().Translate(1, 0, 0));
    EXPECT_EQ(ring.VertexBox().MinX(), 0);
    ring.Clear();
    EXPECT_FALSE(ring.VertexBox().IsValid());
}

TEST(Circle, ClassifiesByItsSquaredRadius)
{
    const GTL::Circle<Point2> circle({1, 1}, 25);
    EXPECT_EQ(circle.Radius(), 5);
    EXPECT_EQ(circle.Classify({4, 5}), GTL::CLS::INSIDE); // 3-4-5, on the circle
    EXPECT_EQ(circle.Classify({4, 5.001}), GTL::CLS::OUTSIDE);
}

TEST(CircIterator, WrapsAtBothEnds)
{
    const std::vector<int> ring{10, 20, 30};
    CircIterator it(ring, 2);
    EXPECT_EQ(*it, 30);
    EXPECT_EQ(*++it, 10);
    EXPECT_EQ(*it++, 10);
    EXPECT_EQ(*it, 20);
    it = it - 1;
    EXPECT_EQ(*(it - 1), 30);
    EXPECT_EQ(*(it - 7), 30);
    EXPECT_EQ(*(it - -4), 20);
    EXPECT_EQ((it - std::numeric_limits<int>::min()).Index(), (2147483648LL % 3));
}
