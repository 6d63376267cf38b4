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
#include "model/DXFWriter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>

namespace {

using P = GTL::Point3D<double>;
using Box = GTL::Extents3D<double>;
using Map = GTL::Transformation<P>;

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

void ExpectBox(const Box& box, const P& low, const P& high, double tolerance = 0)
{
    ASSERT_TRUE(box.IsValid());
    EXPECT_NEAR(box.MinX(), low.X(), tolerance);
    EXPECT_NEAR(box.MinY(), low.Y(), tolerance);
    EXPECT_NEAR(box.MinZ(), low.Z(), tolerance);
    EXPECT_NEAR(box.MaxX(), high.X(), tolerance);
    EXPECT_NEAR(box.MaxY(), high.Y(), tolerance);
    EXPECT_NEAR(box.MaxZ(), high.Z(), tolerance);
}

/// Notes which overload it was called through.
class Kinds : public DXFWriter {
public:
    void Write(const DXFInsert&) override { seen += "insert "; }
    void Write(const DXF3dFace&) override { seen += "face "; }
    void Write(const DXFImage&) override { seen += "image "; }
    void Write(const DXFMText&) override { seen += "mtext "; }
    void Write(const DXFText&) override { seen += "text "; }
    void Write(const DXFArc&) override { seen += "arc "; }
    void Write(const DXFCircle&) override { seen += "circle "; }
    void Write(const DXFPolygon&) override { seen += "polygon "; }
    void Write(const DXFPolyline&) override { seen += "polyline "; }
    void Write(const DXFSolid&) override { seen += "solid "; }
    void Write(const DXFPoint&) override { seen += "point "; }
    void Write(const DXFLine&) override { seen += "line "; }
    std::string seen;
};

template <class Kind>
void ExpectKind(const wchar_t* name, const char* overload)
{
    Kind entity;
    entity.SetColor(0x123456UL);
    const std::unique_ptr<Kind> copy(entity.Copy());
    const DXFEntity& base = *copy;
    EXPECT_STREQ(base.Name(), name);
    EXPECT_EQ(base.Color(), 0x123456UL);
    Kinds kinds;
    base.Write(kinds);
    EXPECT_EQ(kinds.seen, overload);
    DXFWriter nobody;
    base.Write(nobody);
    const std::unique_ptr<DXFEntity> again(base.Copy());
    EXPECT_EQ(typeid(*again), typeid(Kind));
}

TEST(Entities, AnswerToTheirNamesAndVisitors)
{
    ExpectKind<DXFPoint>(L"POINT", "point ");
    ExpectKind<DXFLine>(L"LINE", "line ");
    ExpectKind<DXFSolid>(L"SOLID", "solid ");
    ExpectKind<DXF3dFace>(L"3DFACE", "face ");
    ExpectKind<DXFCircle>(L"CIRCLE", "circle ");
    ExpectKind<DXFArc>(L"ARC", "arc ");
    ExpectKind<DXFPolyline>(L"POLYLINE", "polyline ");
    ExpectKind<DXFPolygon>(L"POLYLINE", "polygon ");
    ExpectKind<DXFText>(L"TEXT", "text ");
    ExpectKind<DXFMText>(L"MTEXT", "mtext ");
    ExpectKind<DXFInsert>(L"INSERT", "insert ");
    ExpectKind<DXFImage>(L"IMAGE", "image ");
}

TEST(Entities, LinesHaveStyleWidthAndColour)
{
    DXFLine line;
    EXPECT_EQ(line.Style(), 0);
    EXPECT_EQ(line.Width(), 0);
    EXPECT_EQ(line.Color(), 0UL);
    line.SetInfo(LineInfo(LineInfo::DASHDOT, 2.5F, 0xFF));
    EXPECT_EQ(line.StyleStr(), L"DASHDOT");
    EXPECT_EQ(line.GetInfo(), LineInfo(LineInfo::DASHDOT, 2.5F, 0xFF));
    line.SetStyleStr(L"nothing known");
    EXPECT_EQ(line.Style(), 1);
    line.SetStyle(7);
    EXPECT_EQ(line.StyleStr(), L"CONTINUOUS");
    EXPECT_EQ(line.GetInfo().Style(), 7);
    line.SetColor(DXFColor(1)); // index 1 is red
    EXPECT_EQ(line.Color(), 0x0000FFUL);
}

TEST(Entities, BoxesOfPointsFollowEveryChange)
{
    DXFPoint point(1, 2, 3);
    ExpectBox(point.Extents(), P(1, 2, 3), P(1, 2, 3));
    point.X(4), point.Extents(), point.Y(5), point.Extents(), point.Z(6);
    ExpectBox(point.Extents(), P(4, 5, 6), P(4, 5, 6));
    point.SetPoint(P(0, 0, 0));
    ExpectBox(point.Extents(), P(), P());

    DXFLine line(P(1, 5, 0), P(3, 2, -1));
    ExpectBox(line.Extents(), P(1, 2, -1), P(3, 5, 0));
    line.SetStart(P(9, 9, 9)), line.Extents(), line.SetEnd(P(0, 0, 0));
    ExpectBox(line.Extents(), P(0, 0, 0), P(9, 9, 9));
    line.Transform(Map().Translate(1, 2, 3).RotateZ(90));
    EXPECT_EQ(line.Start(), P(-11, 10, 12));
    ExpectBox(line.Extents(), P(-11, 1, 3), P(-2, 10, 12));
    line.Set(P(), P());
    ExpectBox(line.Extents(), P(), P());
}

template <class Kind>
void ExpectFourCorners()
{
    Kind entity;
    for (int i = 0; i < 4; ++i) entity[i] = P(i, 10 * i, -i);
    ExpectBox(entity.Extents(), P(0, 0, -3), P(3, 30, 0));
    entity[3] = P();
    ExpectBox(entity.Extents(), P(0, 0, -3), P(3, 30, 0)); // writing a corner leaves the known box
    entity.Transform(Map().Scale(2, 2, 2));
    ExpectBox(entity.Extents(), P(0, 0, -4), P(4, 40, 0));
    EXPECT_EQ(std::as_const(entity)[2], P(4, 40, -4));
}

TEST(Entities, SolidsAndFacesHaveFourCorners)
{
    ExpectFourCorners<DXFSolid>();
    ExpectFourCorners<DXF3dFace>();
}

TEST(Circles, KeepTheSquareOfTheirRadiusInSinglePrecision)
{
    DXFCircle circle(P(1, 2, 5), 0.1);
    EXPECT_DOUBLE_EQ(circle.Radius(), 0.1) << "the constructor squares in double precision";
    circle.SetRadius(0.1);
    const float single = 0.1F;
    EXPECT_EQ(circle.Radius(), std::sqrt(double(single * single)));
    EXPECT_NE(circle.Radius(), 0.1);
    EXPECT_EQ(circle.Extrusion(), (GTL::Vector3D<double>(0, 0, 1)));
    circle.SetRadius(3);
    ExpectBox(circle.Extents(), P(-2, -1, 0), P(4, 5, 0)); // at z = 0 whatever the centre's z
    circle.SetCenter(P(0, 0, 9));
    ExpectBox(circle.Extents(), P(-3, -3, 0), P(3, 3, 0));
}

TEST(Circles, TransformByTheirSquare)
{
    // Centre (1, 2), radius 2; the square's corners (-1, 0), (3, 4) and (3, 0).
    const struct {
        Map map;
        P center;
        double radius;
    } rows[] = {
        {Map().Translate(10, 0, 4), P(11, 2, 4), 2},
        {Map().RotateZ(90), P(-2, 1, 0), 2},
        {Map().Scale(3, 3, 3), P(3, 6, 0), 6},
        {Map().Scale(-1, 1, 1), P(-1, 2, 0), 2},
        // Uneven: the lower side of the square, 4 long, becomes 12; a quarter of its square is 36.
        {Map().Scale(3, 1, 1), P(3, 2, 0), 6},
    };
    for (const auto& row : rows) {
        DXFCircle circle(P(1, 2, 5), 2);
        circle.Extents();
        circle.Transform(row.map);
        EXPECT_EQ(circle.Center(), row.center);
        EXPECT_DOUBLE_EQ(circle.Radius(), row.radius);
        EXPECT_DOUBLE_EQ(circle.Extents().MaxX(), row.center.X() + row.radius);
    }
}

TEST(Arcs, AnglesAreBearings)
{
    DXFArc arc(P(1, 1, 3), 2, 90, 180);
    EXPECT_EQ(arc.StartPoint(), P(3, 1, 3)); // east
    EXPECT_EQ(arc.EndPoint(), P(1, -1, 3));  // south
    arc.SetStartPoint(P(1, 99, 0));
    EXPECT_EQ(arc.StartAngle(), 0);
    EXPECT_EQ(arc.Radius(), 2);
    arc.SetEndPoint(P(-7, 1, 0));
    EXPECT_EQ(arc.EndAngle(), 270);
    arc.SetStartAngle(-90);
    EXPECT_EQ(arc.StartAngle(), 270);
    arc.SetEndAngle(725);
    EXPECT_EQ(arc.EndAngle(), 5);
}

TEST(Arcs, TransformsKeepTheOrderOfTheirEnds)
{
    const struct {
        Map map;
        P center;
        double radius, start, end;
    } rows[] = {
        {Map().Translate(1, 1, 1), P(2, 1, 1), 5, 0, 90},
        {Map().RotateZ(90), P(0, 1, 0), 5, 270, 0},
        {Map().Scale(2, 2, 2), P(2, 0, 0), 10, 0, 90},
        // Mirrored at the y axis: north stays, east becomes west; what was the start stays the start.
        {Map().Scale(-1, 1, 1), P(-1, 0, 0), 5, 0, 270},
    };
    for (const auto& row : rows) {
        DXFArc arc(P(1, 0, 7), 5, 0, 90);
        arc.Extents();
        arc.Transform(row.map);
        EXPECT_EQ(arc.Center(), row.center); // the arc's own z does not survive
        EXPECT_DOUBLE_EQ(arc.Radius(), row.radius);
        EXPECT_EQ(arc.StartAngle(), row.start);
        EXPECT_EQ(arc.EndAngle(), row.end);
    }
}

Box SampledArc(const P& center, double r, double start, double sweep)
{
    Box box;
    for (int i = 0; i <= 4000; ++i) {
        const double a = (start + sweep * i / 4000) * D_TO_R;
        box.Update(center.X() + r * std::sin(a), center.Y() + r * std::cos(a), center.Z());
    }
    return box;
}

TEST(Arcs, BoxesHoldTheSweepAndNoMore)
{
    std::mt19937 random(7);
    std::uniform_int_distribution<int> degrees(0, 359);
    for (int i = 0; i < 300; ++i) {
        // Whole tens meet the compass points often.
        const int start = degrees(random) / 10 * 10;
        const int end = degrees(random) / 10 * 10;
        const int sweep = (end - start + 359) % 360 + 1; // equal ends are a full turn
        const DXFArc arc(P(3, -4, 2), 10, start, end);
        const Box sampled = SampledArc(P(3, -4, 2), 10, start, sweep);
        // Between samples 0.09 degrees apart a circle of radius 10 rises by 3.1e-6 at most.
        ExpectBox(arc.Extents(), sampled.MinPnt(), sampled.MaxPnt(), 4e-6);
    }
    DXFArc arc(P(), 1, 350, 10);
    EXPECT_EQ(arc.Extents().MaxY(), 1);
    arc.SetRadius(2);
    EXPECT_EQ(arc.Extents().MaxY(), 2);
    arc.SetCenter(P(0, 1, 0));
    EXPECT_EQ(arc.Extents().MaxY(), 3);
    arc.SetStartAngle(0);
    EXPECT_NEAR(arc.Extents().MinX(), 0, 1e-15);
    arc.SetEndAngle(180);
    EXPECT_EQ(arc.Extents().MinY(), -1);
}

TEST(Polylines, AreListsOfVertices)
{
    DXFPolyline polyline;
    EXPECT_FALSE(polyline.Extents().IsValid());
    polyline.PushBack(1, 2);
    polyline.PushFront(P(0, 0, 7, 0.5));
    polyline.Insert(99, P(5, 5, 5));
    polyline.Insert(-4, P(-1, -1, 0));
    ASSERT_EQ(polyline.NumPoints(), 4);
    EXPECT_EQ(polyline[0], P(-1, -1, 0));
    EXPECT_EQ(polyline[1], P(0, 0, 7, 0.5));
    EXPECT_EQ(polyline[2], P(1, 2, 0, 0));
    EXPECT_EQ(polyline[3], P(5, 5, 5));
    polyline.Set(-1, P()), polyline.Set(4, P());
    EXPECT_EQ(polyline[3], P(5, 5, 5));
    polyline.Extents();
    polyline.Set(1, P(0, 0, 0)), polyline.Set(3, P(4, 4, 0));
    ExpectBox(polyline.Extents(), P(-1, -1, 0), P(4, 4, 0));
    polyline.PushFront(-9, 0);
    ExpectBox(polyline.Extents(), P(-9, -1, 0), P(4, 4, 0));
    polyline.Transform(Map().Translate(10, 0, 0));
    ExpectBox(polyline.Extents(), P(1, -1, 0), P(14, 4, 0));
    polyline.Clear();
    EXPECT_FALSE(polyline.Extents().IsValid());
    EXPECT_FALSE(polyline.GetLWPolyLine());
    EXPECT_EQ(polyline.GetElevation(), 0);
}

TEST(Polylines, CopiesShareNothing)
{
    DXFPolygon ring;
    ring.PushBack(0, 0);
    ring.SetLWPolyLine(true);
    ring.SetElevation(3);
    const std::unique_ptr<DXFPolygon> copy(ring.Copy());
    ring.PushBack(9, 9);
    EXPECT_EQ(copy->NumPoints(), 1);
    EXPECT_TRUE(copy->GetLWPolyLine());
    EXPECT_EQ(copy->GetElevation(), 3);
}

/// An arc by its definition: a quarter of the included angle has the bulge as its tangent; a positive one
/// turns counter-clockwise. The end is turned about the centre, which lies on the bisector of the chord.
Box SampledBulge(const P& from, const P& to)
{
    const double angle = 4 * std::atan(from.B());
    const double toCenter = 0.5 / std::tan(angle / 2); // in chords, to the left of it
    const double cx = (from.X() + to.X()) / 2 - toCenter * (to.Y() - from.Y());
    const double cy = (from.Y() + to.Y()) / 2 + toCenter * (to.X() - from.X());
    Box box;
    for (int i = 0; i <= 2000; ++i) {
        const double s = std::sin(angle * i / 2000);
        const double c = std::cos(angle * i / 2000);
        const double x = from.X() - cx;
        const double y = from.Y() - cy;
        box.Update(cx + c * x - s * y, cy + s * x + c * y, from.Z());
    }
    return box;
}

TEST(Polylines, BoxesHoldTheirArcs)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(-10, 10);
    std::uniform_real_distribution<double> bulge(-2.5, 2.5);
    for (int i = 0; i < 200; ++i) {
        DXFPolyline polyline;
        Box sampled;
        for (int k = 0; k < 3; ++k) polyline.PushBack(P(place(random), place(random), k, bulge(random)));
        for (int k = 0; k < 2; ++k) sampled.Update(SampledBulge(polyline[k], polyline[k + 1]));
        sampled.Update(polyline[2]); // whose own bulge counts for nothing
        // Chords of at most 29 and bulges of at most 2.5 give radii below 29 (|b| > 0.27) or sweeps that are
        // short; between 2000 samples of a sweep a, the arc rises by r (a / 4000)^2 / 2 at most, below 2e-5.
        ExpectBox(polyline.Extents(), sampled.MinPnt(), sampled.MaxPnt(), 2e-5);
    }
}

TEST(Polylines, FlatArcsStayAtTheirChord)
{
    // The sagitta is half the chord times the bulge: 5e-17, though the centre is 2.5e17 away.
    for (const double bulge : {1e-17, -1e-17, 1e-300, -1e-300, 5e-324, 1e-9}) {
        DXFPolyline polyline;
        polyline.PushBack(P(0, 0, 0, bulge));
        polyline.PushBack(P(10, 0, 0));
        ExpectBox(polyline.Extents(), P(), P(10, 0, 0), 5.1 * std::abs(bulge));
    }
    DXFPolyline semicircle; // counter-clockwise from west to east: through the south
    semicircle.PushBack(P(0, 0, 0, 1));
    semicircle.PushBack(P(10, 0, 0));
    ExpectBox(semicircle.Extents(), P(0, -5, 0), P(10, 0, 0));
}

TEST(Entities, SurviveNumbersThatAreNone)
{
    for (const double bad : {INF, -INF, NOT_A_NUMBER, 1.7e308, -1.7e308}) {
        std::unique_ptr<DXFEntity> entities[] = {std::make_unique<DXFPoint>(bad, 0, bad),
                                                 std::make_unique<DXFLine>(P(bad, bad, 0), P(0, -bad, 0)),
                                                 std::make_unique<DXFCircle>(P(bad, 1, 0), bad),
                                                 std::make_unique<DXFArc>(P(0, bad, 0), bad, bad, -bad),
                                                 std::make_unique<DXFPolyline>(),
                                                 std::make_unique<DXFText>(),
                                                 std::make_unique<DXFMText>(),
                                                 std::make_unique<DXFInsert>(L"B", P(bad, bad, bad), bad),
                                                 std::make_unique<DXFImage>()};
        auto& polyline = dynamic_cast<DXFPolyline&>(*entities[4]);
        for (const double b : {bad, 1.0, bad}) polyline.PushBack(P(b, -b, 0, b));
        auto& text = dynamic_cast<DXFText&>(*entities[5]);
        text.SetText(L"text");
        text.SetSize(std::numeric_limits<float>::infinity());
        text.SetRotation(bad);
        dynamic_cast<DXFCircle&>(*entities[2]).SetRadius(bad);
        auto& image = dynamic_cast<DXFImage&>(*entities[8]);
        image.SetSize(bad, bad);
        image.SetClipBoundary(DXFImage::CLIP_RECTANGLE, {{bad, 1}, {0, -bad}});
        for (const auto& entity : entities) {
            entity->Extents();
            entity->Transform(Map().Scale(bad, -1, 1).RotateZ(bad).Translate(bad, 0, -bad));
            const Box& box = entity->Extents();
            EXPECT_TRUE(!box.IsValid() || (box.MinX() <= box.MaxX() && box.MinY() <= box.MaxY()))
                << box.MinX();
        }
    }
}

} // namespace
