#include "clip/DXFClipContext.h"
#include "model/DXF.h"
#include "model/DXF3dFace.h"
#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFImage.h"
#include "model/DXFInsert.h"
#include "model/DXFLine.h"
#include "model/DXFMText.h"
#include "model/DXFPolygon.h"
#include "model/DXFSolid.h"
#include "model/DXFText.h"
#include "model/Probe.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

using P2 = GTL::Point2D<double>;
using P3 = GTL::Point3D<double>;

constexpr unsigned long RED = 0x0000FF;
const std::atomic<bool> GO = true;

/// 0 <= x <= 10, 0 <= y <= 6.
DXFClipContext TenBySix()
{
    DXFClipContext context;
    context.xmax = 10;
    context.ymax = 6;
    return context;
}

/// A layer that was cut after one entity was put on it.
struct Cut {
    explicit Cut(DXFEntity* entity) : layer(L"A"), source(entity)
    {
        layer.Add(entity);
        layer.Extents();
        DXFClipContext context = TenBySix();
        kept = layer.Clip(context, GO);
        EXPECT_EQ(context.layer, nullptr);
        EXPECT_EQ(kept, layer.NumEntities() > 0);
    }
    template <class E>
    const E& As(std::size_t index) const
    {
        const DXFLayer& constant = layer;
        return dynamic_cast<const E&>(*constant[index]);
    }

    DXFLayer layer;
    const DXFEntity* source; ///< dangling when it did not survive
    bool kept;
};

template <class Shape>
Shape* MakeShape(const std::vector<P3>& vertices)
{
    auto* shape = new Shape;
    for (const P3& p : vertices) shape->PushBack(p);
    shape->SetColor(RED);
    shape->SetStyle(LineInfo::DOT);
    shape->SetWidth(2.5F);
    shape->SetLWPolyLine(true);
    shape->SetElevation(9);
    return shape;
}

TEST(ClipRules, PointsOnTheBorderGo)
{
    struct {
        double x, y;
        bool stays;
    } const rows[] = {{5, 3, true},   {0, 3, false},    {10, 3, false},  {5, 0, false},  {5, 6, false},
                      {11, 3, false}, {1e-12, 3, true}, {NAN, 3, false}, {5, NAN, false}};
    for (const auto& row : rows) EXPECT_EQ(Cut(new DXFPoint(row.x, row.y, 1)).kept, row.stays) << row.x;
}

TEST(ClipRules, LinesAreCutInPlace)
{
    auto* line = new DXFLine(P3(8, 2, 3), P3(12, 4, 5));
    line->SetColor(RED);
    line->SetStyle(LineInfo::DASHED);
    line->Extents();
    const Cut cut(line);
    ASSERT_EQ(cut.layer.NumEntities(), 1U);
    EXPECT_EQ(&cut.As<DXFLine>(0), cut.source);
    EXPECT_EQ(cut.As<DXFLine>(0).End(), P3(10, 3, 4));
    EXPECT_EQ(cut.As<DXFLine>(0).Extents().MaxX(), 10);
    EXPECT_EQ(cut.As<DXFLine>(0).Color(), RED);
    EXPECT_EQ(cut.As<DXFLine>(0).Style(), LineInfo::DASHED);
    EXPECT_FALSE(Cut(new DXFLine(P3(11, 0, 0), P3(12, 6, 0))).kept);
    EXPECT_TRUE(Cut(new DXFLine(P3(0, 0, 0), P3(10, 6, 0))).kept);
}

TEST(ClipRules, FurtherRunsOfAPolylineComeBeforeItWithItsAttributes)
{
    const Cut cut(MakeShape<DXFPolyline>(
        {{1, 1, 0}, {1, 8, 0}, {3, 8, 0}, {3, 1, 0}, {5, 1, 0}, {5, 8, 0}, {7, 1, 0}}));
    ASSERT_EQ(cut.layer.NumEntities(), 3U);
    EXPECT_EQ(&cut.As<DXFPolyline>(2), cut.source);
    const P3 begins[] = {{3, 6, 0}, {5 + 4.0 / 7, 6, 0}, {1, 1, 0}};
    for (std::size_t i = 0; i < 3; ++i) {
        const auto& run = cut.As<DXFPolyline>(i);
        EXPECT_LT(run[0].Dist2D(begins[i], false), 1e-12);
        EXPECT_EQ(run.Color(), RED);
        EXPECT_EQ(run.Style(), LineInfo::DOT);
        EXPECT_EQ(run.Width(), 2.5F);
        EXPECT_TRUE(run.GetLWPolyLine());
        EXPECT_EQ(run.GetElevation(), 9);
        EXPECT_EQ(run.Extents().MaxY(), 6);
    }
}

TEST(ClipRules, FurtherPiecesOfAPolygonComeBeforeItWithoutAttributes)
{
    // Two teeth that hang down through the upper side.
    const Cut cut(MakeShape<DXFPolygon>({{1, 2, 0}, {2, 7, 0}, {3, 2, 0}, {4, 7, 0}, {4, 8, 0}, {1, 8, 0}}));
    ASSERT_EQ(cut.layer.NumEntities(), 2U);
    EXPECT_EQ(&cut.As<DXFPolygon>(1), cut.source);
    EXPECT_EQ(cut.As<DXFPolygon>(1).Color(), RED);
    EXPECT_EQ(cut.As<DXFPolygon>(1).Width(), 2.5F);
    EXPECT_TRUE(cut.As<DXFPolygon>(1).GetLWPolyLine());
    EXPECT_EQ(cut.As<DXFPolygon>(0).Color(), 0U);
    EXPECT_EQ(cut.As<DXFPolygon>(0).Style(), LineInfo::CONTINUOUS);
    EXPECT_EQ(cut.As<DXFPolygon>(0).Width(), 0);
    EXPECT_FALSE(cut.As<DXFPolygon>(0).GetLWPolyLine());
    EXPECT_EQ(cut.As<DXFPolygon>(0).GetElevation(), 0);
}

TEST(ClipRules, CirclesThatCrossBecomePlainArcs)
{
    auto* circle = new DXFCircle(P3(10, 3, 0), 2);
    circle->SetColor(RED);
    circle->SetWidth(2);
    // x = 10 crosses at (10, 1), bearing 180, and (10, 5), bearing 0: what lies to the left runs from 180 to
    // 0.
    const Cut cut(circle);
    ASSERT_EQ(cut.layer.NumEntities(), 1U);
    EXPECT_NEAR(cut.As<DXFArc>(0).StartAngle(), 180, 1e-12);
    EXPECT_NEAR(TrimAngle(cut.As<DXFArc>(0).EndAngle() + 1), 1, 1e-12);
    EXPECT_EQ(cut.As<DXFArc>(0).Radius(), 2);
    EXPECT_EQ(cut.As<DXFArc>(0).Color(), 0U);
    EXPECT_EQ(cut.As<DXFArc>(0).Width(), 0);
    EXPECT_TRUE(Cut(new DXFCircle(P3(5, 3, 0), 3)).kept);
    EXPECT_FALSE(Cut(new DXFCircle(P3(5, 6, 0), 2)).kept) << "crosses the upper side only";
}

TEST(ClipRules, ArcsAreCutInPlaceAndFurtherPiecesArePlain)
{
    // Radius 5 about (7, 1) crosses x = 10 at (10, 5), y = 6 only at a touch: from 300 through 0 to 80 the
    // part up to bearing atan(3 / 4) remains; y = 6 is touched at bearing 0.
    auto* arc = new DXFArc(P3(7, 1, 0), 5, 300, 80, {0, 0, -1});
    arc->SetColor(RED);
    const Cut cut(arc);
    ASSERT_EQ(cut.layer.NumEntities(), 1U);
    EXPECT_EQ(&cut.As<DXFArc>(0), cut.source);
    EXPECT_EQ(cut.As<DXFArc>(0).Color(), RED);
    EXPECT_EQ(cut.As<DXFArc>(0).StartAngle(), 300);
    EXPECT_NEAR(cut.As<DXFArc>(0).EndAngle(), std::atan2(3, 4) / D_TO_R, 1e-9);
    EXPECT_EQ(cut.As<DXFArc>(0).Extrusion(), (GTL::Vector3D<double>(0, 0, 1)));

    // Radius 2 about (10, 3): the left half, 180 to 360, is inside; from 200 all the way round to 190 meets
    // it twice.
    auto* wide = new DXFArc(P3(10, 3, 0), 2, 200, 190);
    wide->SetColor(RED);
    const Cut two(wide);
    ASSERT_EQ(two.layer.NumEntities(), 2U);
    EXPECT_EQ(two.As<DXFArc>(0).Color(), 0U);
    EXPECT_NEAR(two.As<DXFArc>(0).StartAngle(), 180, 1e-9);
    EXPECT_NEAR(two.As<DXFArc>(0).EndAngle(), 190, 1e-9);
    EXPECT_EQ(two.As<DXFArc>(1).Color(), RED);
    EXPECT_NEAR(two.As<DXFArc>(1).StartAngle(), 200, 1e-9);
}

template <class Face>
Face* MakeFace(const P3& a, const P3& b, const P3& c, const P3& d)
{
    auto* face = new Face;
    (*face)[0] = a;
    (*face)[1] = b;
    (*face)[2] = c;
    (*face)[3] = d;
    face->SetColor(RED);
    return face;
}

double PlanArea(const DXFSolid& triangle)
{
    const auto u = triangle[1] - triangle[0];
    const auto v = triangle[2] - triangle[0];
    return (u.X() * v.Y() - u.Y() * v.X()) / 2;
}

double ExpectTriangles(const Cut& cut)
{
    double area = 0;
    for (std::size_t i = 0; i < cut.layer.NumEntities(); ++i) {
        const auto& triangle = cut.As<DXFSolid>(i);
        EXPECT_EQ(triangle[2], triangle[3]);
        EXPECT_EQ(triangle.Color(), RED);
        EXPECT_LE(triangle.Extents().MaxX(), 10);
        area += std::abs(PlanArea(triangle));
    }
    return area;
}

TEST(ClipRules, SolidsBecomeTriangles)
{
    // The outline of a solid runs 0, 1, 3, 2: the rectangle from (6, 1) to (14, 5), half of it inside, 4 x 4.
    EXPECT_NEAR(ExpectTriangles(Cut(MakeFace<DXFSolid>({6, 1, 0}, {14, 1, 0}, {6, 5, 0}, {14, 5, 0}))), 16,
                1e-12);
    // One triangle: (6, 1), (14, 1), (6, 5); at x = 10 its upper edge is at y = 3: (4 + 2) / 2 * 4 = 12.
    EXPECT_NEAR(ExpectTriangles(Cut(MakeFace<DXFSolid>({6, 1, 0}, {14, 1, 0}, {6, 5, 0}, {6, 5, 0}))), 12,
                1e-12);
    // Triangle (1, 1), (9, 1), (9, 5) lies inside, its twin (17, 3), (9, 1), (9, 5) beyond x = 10 but for a
    // strip: the first has 16, of the twin 16 - 16 * (7 / 8)^2 = 3.75.
    EXPECT_NEAR(ExpectTriangles(Cut(MakeFace<DXFSolid>({1, 1, 0}, {9, 1, 0}, {9, 5, 0}, {17, 3, 0}))), 19.75,
                1e-12);
    // The same with the twin wholly outside: its corner on the far side of x = 10 and its edge on x = 10.
    EXPECT_NEAR(ExpectTriangles(Cut(MakeFace<DXFSolid>({2, 1, 0}, {10, 1, 0}, {10, 5, 0}, {17, 3, 0}))), 16,
                1e-12);
    EXPECT_FALSE(Cut(MakeFace<DXFSolid>({11, 1, 0}, {14, 1, 0}, {11, 5, 0}, {14, 5, 0})).kept);
    // A corner that is no number takes its triangle with it: (2, 1), (6, 1), (2, 5) is left, 8.
    EXPECT_NEAR(ExpectTriangles(Cut(MakeFace<DXFSolid>({2, 1, 0}, {6, 1, 0}, {2, 5, 0}, {NAN, 5, 0}))), 8,
                1e-12);
    EXPECT_FALSE(Cut(MakeFace<DXFSolid>({2, 1, 0}, {6, NAN, 0}, {2, 5, 0}, {6, 5, 0})).kept);
    const Cut inside(MakeFace<DXFSolid>({1, 1, 0}, {4, 1, 0}, {1, 5, 0}, {4, 5, 0}));
    EXPECT_EQ(&inside.As<DXFSolid>(0), inside.source);
}

TEST(ClipRules, FacesAreSolidsWithTheirCornersInTurn)
{
    EXPECT_NEAR(ExpectTriangles(Cut(MakeFace<DXF3dFace>({6, 1, 6}, {14, 1, 14}, {14, 5, 14}, {6, 5, 6}))), 16,
                1e-12);
    const Cut cut(MakeFace<DXF3dFace>({6, 1, 6}, {14, 1, 14}, {14, 5, 14}, {6, 5, 6}));
    for (std::size_t i = 0; i < cut.layer.NumEntities(); ++i)
        for (int corner = 0; corner < 4; ++corner)
            EXPECT_NEAR(cut.As<DXFSolid>(i)[corner].Z(), cut.As<DXFSolid>(i)[corner].X(), 1e-12)
                << "lies on z = x";
    const Cut inside(MakeFace<DXF3dFace>({1, 1, 0}, {4, 1, 0}, {4, 5, 0}, {1, 5, 0}));
    EXPECT_EQ(&inside.As<DXF3dFace>(0), inside.source);
}

template <class Text>
Text* MakeText(double x, double y, TextInfo::JUSTIFICATION justification, double degrees = 0)
{
    TextInfo info;
    info.SetSize(1);
    info.SetJustification(justification);
    auto* text = new Text;
    text->SetTextInfo(info);
    text->SetText(L"HHH");
    text->SetPosition({x, y, 0});
    text->SetRotation(degrees);
    return text;
}

TEST(ClipRules, TextsStayWholeOrGo)
{
    // Three capitals one unit high: wider than 1 and narrower than 6, the cell between 1 and 2 high.
    struct {
        double x, y;
        TextInfo::JUSTIFICATION justification;
        double degrees;
        bool stays;
    } const rows[] = {
        {1, 1, TextInfo::BOTTOM_LEFT, 0, true},    {9.5, 1, TextInfo::BOTTOM_LEFT, 0, false},
        {9.5, 1, TextInfo::BOTTOM_RIGHT, 0, true}, {0.2, 1, TextInfo::BOTTOM_CENTER, 0, false},
        {5, 5.5, TextInfo::BOTTOM_LEFT, 0, false}, {5, 5.5, TextInfo::TOP_LEFT, 0, true},
        {5, 0.2, TextInfo::MIDDLE_LEFT, 0, false}, {5, 3, TextInfo::MIDDLE_CENTER, 0, true},
        {9.5, 3, TextInfo::TOP_LEFT, 180, true},   {1, 0.2, TextInfo::BOTTOM_LEFT, 90, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Cut(MakeText<DXFText>(row.x, row.y, row.justification, row.degrees)).kept, row.stays)
            << row.x;
        EXPECT_EQ(Cut(MakeText<DXFMText>(row.x, row.y, row.justification, row.degrees)).kept, row.stays)
            << row.x;
    }
    // A position outside removes a text whose box would not be there; a multi-line text is not asked.
    constexpr auto UNPLACED = static_cast<TextInfo::JUSTIFICATION>(12);
    EXPECT_FALSE(Cut(MakeText<DXFText>(50, 50, UNPLACED)).kept);
    EXPECT_TRUE(Cut(MakeText<DXFMText>(50, 50, UNPLACED)).kept);
}

TEST(ClipRules, ImagesGetAPolygonOfPixelsAsTheirBoundary)
{
    auto* image = new DXFImage;
    image->SetSize(40, 20); // 8 x 4 units from (6, 1), turned by 0
    image->SetInsertPoint({6, 1, 0});
    image->SetUVector({0.2, 0, 0});
    image->SetVVector({0, 0.2, 0});
    const Cut cut(image);
    ASSERT_EQ(cut.layer.NumEntities(), 1U);
    const auto& kept = cut.As<DXFImage>(0);
    EXPECT_EQ(&kept, cut.source);
    EXPECT_EQ(kept.ClipType(), DXFImage::CLIP_POLYGON);
    EXPECT_EQ(kept.Width(), 40);
    // x = 10 is 4 units from the left edge: pixel 20 of 40.
    GTL::Extents2D<double> pixels;
    for (const P2& p : kept.ClipBoundary()) pixels.Update(p);
    ASSERT_EQ(kept.ClipBoundary().size(), 4U);
    EXPECT_NEAR(pixels.MinX(), 0, 1e-12);
    EXPECT_NEAR(pixels.MaxX(), 20, 1e-12);
    EXPECT_NEAR(pixels.MinY(), 0, 1e-12);
    EXPECT_NEAR(pixels.MaxY(), 20, 1e-12);
    EXPECT_NEAR(kept.Extents().MaxX(), 10, 1e-12);

    auto* inside = new DXFImage(kept);
    auto* outside = new DXFImage(kept);
    inside->SetInsertPoint({1, 1, 0});
    inside->SetClipBoundary(DXFImage::CLIP_RECTANGLE, {{0, 0}, {9, 9}});
    outside->SetInsertPoint({11, 1, 0});
    EXPECT_EQ(Cut(inside).As<DXFImage>(0).ClipType(), DXFImage::CLIP_RECTANGLE);
    EXPECT_FALSE(Cut(outside).kept);
}

TEST(ClipRules, TurnedImagesKeepWhatTheWindowShows)
{
    auto* image = new DXFImage;
    const double c = std::cos(0.3);
    const double s = std::sin(0.3);
    image->SetSize(40, 20);
    image->SetInsertPoint({6, -1, 0});
    image->SetUVector({0.2 * c, 0.2 * s, 0});
    image->SetVVector({-0.4 * s, 0.4 * c, 0});
    const Cut cut(image);
    for (const P3& corner : cut.As<DXFImage>(0).Outline())
        EXPECT_EQ(GTL::Extents2D<double>({-1e-9, -1e-9}, {10 + 1e-9, 6 + 1e-9}).Classify(corner),
                  GTL::CLS::INSIDE);
}

TEST(ClipRules, InsertsGo)
{
    EXPECT_FALSE(Cut(new DXFInsert(L"B", {5, 3, 0}, 0)).kept);
}

TEST(ClipRules, PiecesWithoutALayerToTakeThemAreDropped)
{
    const std::unique_ptr<DXFPolyline> line(
        MakeShape<DXFPolyline>({{1, 1, 0}, {1, 8, 0}, {3, 8, 0}, {3, 1, 0}}));
    DXFClipContext context = TenBySix();
    EXPECT_TRUE(line->Clip(context));
    EXPECT_EQ(line->NumPoints(), 2);
}

TEST(ClipRules, WindowsThatHoldNothingLeaveNothing)
{
    for (const double xmax : {-1.0, double(NAN)}) {
        DXF drawing;
        drawing.Add(new DXFLine(P3(-2, 1, 0), P3(12, 1, 0)));
        drawing.Add(MakeShape<DXFPolygon>({{-1, -1, 0}, {11, -1, 0}, {11, 11, 0}}));
        drawing.Add(new DXFCircle(P3(5, 3, 0), 20));
        DXFClipContext context = TenBySix();
        context.xmax = xmax;
        drawing.Clip(context, GO);
        EXPECT_EQ(drawing.NumLayers(), 0U);
    }
}

TEST(LayerClip, LeavesOtherLayersThatShareItsEntitiesAlone)
{
    DXFLayer source(L"A");
    source.Add(new DXFLine(P3(8, 2, 0), P3(12, 4, 0)));
    source.Add(new DXFPoint(20, 20, 0));
    DXFLayer copy(L"B");
    copy = source;
    const DXFLayer& untouched = source;
    DXFEntity* const shared = untouched[0];
    DXFClipContext context = TenBySix();
    EXPECT_TRUE(copy.Clip(context, GO));
    EXPECT_EQ(copy.NumEntities(), 1U);
    ASSERT_EQ(source.NumEntities(), 2U);
    EXPECT_EQ(untouched[0], shared);
    EXPECT_EQ(dynamic_cast<const DXFLine&>(*shared).End(), P3(12, 4, 0));
}

TEST(LayerClip, TakesANewIdAlsoWhenNothingChangesAndForgetsItsBox)
{
    DXFLayer layer(L"A");
    layer.Add(new DXFLine(P3(1, 1, 0), P3(2, 2, 0)));
    layer.Add(new DXFLine(P3(1, 1, 0), P3(20, 1, 0)));
    layer.Extents();
    const unsigned int before = layer.ModifiedID();
    DXFClipContext context = TenBySix();
    layer.Clip(context, GO);
    EXPECT_EQ(layer.Extents().MaxX(), 10);
    const unsigned int between = layer.ModifiedID();
    EXPECT_NE(between, before);
    layer.Clip(context, GO);
    EXPECT_NE(layer.ModifiedID(), between);
}

/// Clears a flag when it is cut.
class Stop : public Probe {
public:
    explicit Stop(std::atomic<bool>& flag) : Probe(5, 3), m_Flag(flag) {}
    Stop* Copy() const override { return new Stop(*this); }
    bool Clip(DXFClipContext& context) override
    {
        m_Flag = false;
        return Probe::Clip(context);
    }

private:
    std::atomic<bool>& m_Flag;
};

TEST(LayerClip, ACancelledOneFreesWhatItDidNotReach)
{
    Probe::s_Counts = {};
    std::atomic<bool> flag = true;
    {
        DXF drawing;
        drawing.Add(new Probe(1, 1));
        drawing.Add(new Stop(flag));
        drawing.Add(new Probe(2, 2));
        drawing.Add(L"later", new Probe(20, 20), true);
        DXFClipContext context = TenBySix();
        drawing.Clip(context, flag);
        EXPECT_EQ(drawing[0ULL]->NumEntities(), 2U);
        EXPECT_EQ(drawing[1ULL]->NumEntities(), 1U) << "layers after it stay as they are";
        EXPECT_EQ(context.layer, nullptr);
        EXPECT_EQ(Probe::s_Counts.living, 3);
        drawing.Clip(context, flag);
        EXPECT_EQ(drawing.NumEntities(), 3) << "a flag cleared before changes nothing";
    }
    EXPECT_EQ(Probe::s_Counts.living, 0);
}

TEST(DocumentClip, RemovesLayersThatAreLeftEmpty)
{
    DXF drawing;
    drawing.AddLayer(L"empty");
    drawing.Add(L"outside", new DXFPoint(50, 50, 0), true);
    drawing.Add(L"inside", new DXFPoint(5, 3, 0), true);
    drawing.Add(L"border", new DXFPoint(10, 3, 0), true);
    drawing.Add(L"second", new DXFPoint(6, 3, 0), true);
    DXFBlock* block = drawing.AddBlock(L"B");
    block->GetDXF()->Add(new DXFPoint(50, 50, 0));
    drawing[L"outside"]->Extents();
    const unsigned int id = drawing.ModifiedID();
    DXFClipContext context = TenBySix();
    drawing.Clip(context, GO);
    EXPECT_EQ(drawing.GetLayerOrder(), (std::vector<std::wstring>{L"inside", L"second"}));
    EXPECT_EQ(drawing.ModifiedID(), id);
    EXPECT_EQ(block->GetDXF()->NumEntities(), 1) << "blocks are not cut";
    EXPECT_FALSE(drawing.HasLayer(L"OUTSIDE"));
    EXPECT_EQ(drawing.Add(new DXFPoint(1, 1, 0)), nullptr) << "the active layer was 0, which is gone";
    EXPECT_NE(drawing.Add(L"Border", new DXFPoint(1, 1, 0), true), nullptr) << "the name is free again";
}

TEST(DocumentClip, EndsWithoutLayersWhenEverythingIsOutside)
{
    DXF drawing;
    const DXF copy(drawing);
    drawing.Add(new DXFPoint(50, 50, 0));
    DXFClipContext context = TenBySix();
    drawing.Clip(context, GO);
    EXPECT_EQ(drawing.NumLayers(), 0U);
    EXPECT_EQ(copy.NumLayers(), 1U) << "another document has the layer too";
    EXPECT_EQ(drawing.Add(L"0", new DXFPoint(1, 1, 0), false), nullptr);
}

} // namespace
