#include "model/InsertExploder.h"

#include "model/DXFImage.h"
#include "model/DXFInsert.h"
#include "model/DXFMText.h"
#include "model/DXFText.h"
#include "model/InsertCurves.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <sstream>
#include <typeinfo>
#include <utility>

namespace {

using P = GTL::Point3D<double>;
using V = GTL::Vector3D<double>;

/// A document whose blocks and inserts a test puts together in few words.
struct Drawing {
    DXF document;
    std::atomic<bool> keepGoing{true};

    DXF& Block(const wchar_t* name, const P& base = {})
    {
        DXFBlock* block = document.HasBlock(name) ? document.GetBlock(name) : document.AddBlock(name);
        if (!(base == P())) block->SetBasePoint(base);
        return *block->GetDXF();
    }
    DXFInsert& Insert(DXF& into, const wchar_t* block, const P& at = {}, const wchar_t* layer = L"0")
    {
        auto* insert = new DXFInsert(block, at, 0);
        insert->SetDXF(&document);
        into.Add(layer, insert, true);
        return *insert;
    }
    DXFInsert& Insert(const wchar_t* block, const P& at = {}, const wchar_t* layer = L"0")
    {
        return Insert(document, block, at, layer);
    }
    DXFInsert& Array(DXF& into, const wchar_t* block, int rows, int columns)
    {
        DXFInsert& insert = Insert(into, block);
        insert.SetRowCount(rows);
        insert.SetColumnCount(columns);
        return insert;
    }
    InsertExploder::Report Explode(std::uint64_t limit = InsertExploder::DEFAULT_LIMIT)
    {
        return InsertExploder(limit).Explode(document, keepGoing);
    }
    template <class Kind>
    const Kind* Only() const
    {
        const DXFLayer& layer = *document[0ULL];
        return layer.NumEntities() == 1 ? dynamic_cast<const Kind*>(layer[0]) : nullptr;
    }
};

void ExpectNear(const P& is, const P& should, double tolerance = 1e-12)
{
    EXPECT_NEAR(is.X(), should.X(), tolerance);
    EXPECT_NEAR(is.Y(), should.Y(), tolerance);
    EXPECT_NEAR(is.Z(), should.Z(), tolerance);
}

/// The entities of all layers in order: "layer:KIND x y" of the first point.
std::vector<std::string> Listing(const DXF& document)
{
    std::vector<std::string> rows;
    for (std::size_t i = 0; i < document.NumLayers(); ++i)
        for (std::size_t k = 0; k < document[i]->NumEntities(); ++k) {
            const DXFEntity& entity = *(*document[i])[k];
            const std::wstring layer = document[i]->Name();
            const std::wstring kind = entity.Name();
            std::ostringstream row;
            row << std::string(layer.begin(), layer.end()) << ':' << std::string(kind.begin(), kind.end());
            const Stretches stretches(entity);
            if (!stretches.m_All.empty())
                row << ' ' << stretches.m_All[0].from.X() << ' ' << stretches.m_All[0].from.Y();
            rows.push_back(row.str());
        }
    return rows;
}

using Rows = std::vector<std::string>;

TEST(InsertExploder, EntitiesTakeThePlaceOfTheInsertAndTheLayersOfTheirBlock)
{
    Drawing d;
    DXF& inner = d.Block(L"inner");
    inner.Add(L"0", new DXFPoint(1, 0, 0), true);
    inner.Add(L"Walls", new DXFPoint(2, 0, 0), true);
    DXF& outer = d.Block(L"outer", {0, 5, 0});
    outer.Add(L"0", new DXFPoint(3, 5, 0), true);
    d.Insert(outer, L"inner", {10, 5, 0}, L"Doors"); // its layer "0" is the layer Doors then
    outer.Add(L"Hidden", new DXFPoint(4, 5, 0), true);
    outer[L"Hidden"]->SetVisible(false);

    d.document.AddLayer(L"walls"); // the name in another case is the same layer
    d.document.Add(L"walls", new DXFPoint(-1, 0, 0), false);
    d.document.AddLayer(L"A");
    d.document.Add(L"A", new DXFPoint(-2, 0, 0), false);
    d.Insert(L"outer", {100, 0, 0}, L"A");
    d.document.Add(L"A", new DXFPoint(-3, 0, 0), false);
    d.document[L"A"]->SetVisible(false);

    const InsertExploder::Report report = d.Explode();
    EXPECT_EQ(Listing(d.document), (Rows{"walls:POINT -1 0", "walls:POINT 112 0", "A:POINT -2 0",
                                         "A:POINT 103 0", "A:POINT -3 0", "Doors:POINT 111 0"}));
    EXPECT_EQ(report.inserts, 2U);
    EXPECT_EQ(report.entities, 3U);
    EXPECT_FALSE(report.limitReached);
    EXPECT_FALSE(d.document[L"A"]->IsVisible());
}

TEST(InsertExploder, TwiceIsOnceAndWhatIsPlainStaysUntouched)
{
    Drawing d;
    d.Block(L"B").Add(L"0", new DXFCircle({1, 2, 0}, 1, {0, 1, 0}), true);
    d.Insert(L"B").SetScale({2, 1, 1});
    d.document.Add(L"0", new DXFArc({1, 2, 0}, 1, 10, 20, {0, 0, -1}), true);
    d.document.Add(L"Plain", new DXFCircle({1, 2, 0}, 1), true);
    const unsigned int plainId = d.document[L"Plain"]->ModifiedID();
    EXPECT_EQ(d.Explode().curves, 1U);
    EXPECT_EQ(d.document[L"Plain"]->ModifiedID(), plainId);

    const Rows once = Listing(d.document);
    const unsigned int id = d.document[L"0"]->ModifiedID();
    const InsertExploder::Report report = d.Explode();
    EXPECT_EQ(Listing(d.document), once);
    EXPECT_EQ(d.document[L"0"]->ModifiedID(), id);
    EXPECT_EQ(report.inserts + report.entities + report.curves, 0U);
}

TEST(InsertExploder, LayersThatShareTheirEntitiesAreExplodedAlone)
{
    Drawing d;
    d.Block(L"B").Add(L"0", new DXFPoint(1, 0, 0), true);
    d.Insert(L"B");
    DXFLayer other(L"other");
    other = *d.document[L"0"];
    d.Explode();
    EXPECT_EQ(Listing(d.document), Rows{"0:POINT 1 0"});
    ASSERT_EQ(other.NumEntities(), 1U);
    EXPECT_STREQ(std::as_const(other)[0]->Name(), L"INSERT");
}

TEST(InsertExploder, CurvesOutsideOfBlocksAreTakenToTheWorld)
{
    // Seen from below x turns its sign, so the bearing a becomes -a and the ends change places.
    Drawing below;
    below.document.Add(L"0", new DXFArc({5, 2, 1}, 3, 10, 100, {0, 0, -1}), true);
    EXPECT_EQ(below.Explode().curves, 1U);
    const auto* arc = below.Only<DXFArc>();
    ASSERT_TRUE(arc);
    ExpectNear(arc->Center(), {-5, 2, -1});
    EXPECT_DOUBLE_EQ(arc->StartAngle(), 260);
    EXPECT_DOUBLE_EQ(arc->EndAngle(), 350);
    EXPECT_EQ(arc->Radius(), 3);
    EXPECT_EQ(arc->Extrusion(), V(0, 0, 1));

    // Along x the object's axes are (0, 1, 0) and (0, 0, 1): an upright circle, a polygon at x = 7.
    Drawing upright;
    auto* circle = new DXFCircle({5, 2, 7}, 3, {1, 0, 0});
    circle->SetStyle(LineInfo::DOT);
    circle->SetWidth(0.5F);
    circle->SetColor(0x123456UL);
    upright.document.Add(L"0", circle, true);
    EXPECT_EQ(upright.Explode().curves, 1U);
    const auto* polygon = upright.Only<DXFPolygon>();
    ASSERT_TRUE(polygon);
    EXPECT_GE(polygon->NumPoints(), 16);
    EXPECT_EQ(polygon->Style(), LineInfo::DOT);
    EXPECT_EQ(polygon->Width(), 0.5F);
    EXPECT_EQ(polygon->Color(), 0x123456UL);
    for (int i = 0; i < polygon->NumPoints(); ++i) {
        const P& p = (*polygon)[i];
        EXPECT_NEAR(p.X(), 7, 1e-12);
        EXPECT_NEAR(std::hypot(p.Y() - 5, p.Z() - 2), circle ? 3 : 0, 1e-6);
    }
}

TEST(InsertExploder, CirclesAndArcsKeepTheirExactShapeWhereNothingBendsThem)
{
    Drawing d;
    auto* circle = new DXFCircle(P(1, 2, 3), 0.1);
    const double square = circle->GetCircle().SquaredRadius();
    d.Block(L"B").Add(L"0", circle, true);
    d.Insert(L"B", {10, 20, 30});
    d.Explode();
    const auto* exploded = d.Only<DXFCircle>();
    ASSERT_TRUE(exploded);
    EXPECT_EQ(exploded->GetCircle().SquaredRadius(), square);
    ExpectNear(exploded->Center(), {11, 22, 33});

    // Turned by 45 degrees and then stretched, the axes are of one length but lean towards each other.
    Drawing skewed;
    skewed.Block(L"circle").Add(L"0", new DXFCircle(P(), 1), true);
    skewed.Insert(skewed.Block(L"B"), L"circle").SetRotation(45);
    skewed.Insert(L"B").SetScale({1, 2, 1});
    skewed.Explode();
    EXPECT_TRUE(skewed.Only<DXFPolygon>());

    // A sweep too small for any bearing but 0 to hold must not become a full turn.
    Drawing tiny;
    tiny.Block(L"B").Add(L"0", new DXFArc(P(), 1, 0, 1e-15), true);
    tiny.Insert(L"B").SetRotation(100);
    tiny.Explode();
    const auto* line = tiny.Only<DXFPolyline>();
    ASSERT_TRUE(line);
    EXPECT_NEAR(line->Extents().MaxX() - line->Extents().MinX(), 0, 1e-12);
    Drawing whole;
    whole.Block(L"B").Add(L"0", new DXFArc(P(), 1, 40, 40), true);
    whole.Insert(L"B").SetRotation(100);
    whole.Explode();
    ASSERT_TRUE(whole.Only<DXFArc>());
    EXPECT_EQ(whole.Only<DXFArc>()->StartAngle(), whole.Only<DXFArc>()->EndAngle());
}

TEST(InsertExploder, PolylinesKeepTheirBulgesOrGiveThemUp)
{
    const struct {
        const char* what;
        P scale;
        double bulge; ///< of the image's first vertex; 0: chords
    } rows[] = {{"even", {2, 2, 1}, 1},
                {"mirrored", {-2, 2, 1}, -1},
                {"turned over", {-2, -2, 1}, 1},
                {"uneven", {2, 1, 1}, 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Drawing d;
        DXF& block = d.Block(L"B");
        auto* open = new DXFPolyline;
        open->PushBack({0, 0, 4, 1});
        open->PushBack({2, 0, 4, 1});
        open->SetLWPolyLine(true);
        open->SetElevation(4);
        block.Add(L"0", open, true);
        auto* closed = new DXFPolygon;
        for (int i = 0; i < open->NumPoints(); ++i) closed->PushBack((*open)[i]);
        block.Add(L"0", closed, true);
        d.Insert(L"B", {0, 0, 1}).SetScale(row.scale);
        d.Explode();
        const DXFLayer& layer = *d.document[L"0"];
        const auto* chain = dynamic_cast<const DXFPolyline*>(layer[0]);
        const auto* ring = dynamic_cast<const DXFPolygon*>(layer[1]);
        ASSERT_TRUE(chain && ring);
        EXPECT_EQ(chain->GetElevation(), 5);
        EXPECT_TRUE(chain->GetLWPolyLine());
        EXPECT_FALSE(ring->GetLWPolyLine());
        EXPECT_EQ((*chain)[0].B(), row.bulge);
        // Chords of one half turn in the open one, of two in the closed one.
        EXPECT_EQ(ring->NumPoints() > 2, row.bulge == 0);
        EXPECT_EQ(ring->NumPoints(), row.bulge != 0 ? 2 : 2 * (chain->NumPoints() - 1));
    }
}

TEST(InsertExploder, ATiltedLightweightPolylineIsLightweightNoMore)
{
    Drawing d;
    auto* chain = new DXFPolyline;
    chain->PushBack(1, 0);
    chain->PushBack(0, 1);
    chain->SetLWPolyLine(true);
    d.Block(L"B").Add(L"0", chain, true);
    d.Insert(L"B").SetExtrusion({1, 0, 0});
    d.Explode();
    ASSERT_TRUE(d.Only<DXFPolyline>());
    EXPECT_FALSE(
        d.Only<DXFPolyline>()->GetLWPolyLine()); // (0, 1, 0) and (0, 0, 1) have no elevation in common
}

TEST(InsertExploder, TextsAndImagesAreTurnedAndScaled)
{
    Drawing d;
    DXF& block = d.Block(L"B", {1, 1, 0});
    auto* text = new DXFText;
    text->SetText(L"x");
    text->SetPosition({2, 1, 0});
    text->SetSize(3);
    block.Add(L"0", text, true);
    auto* image = new DXFImage;
    image->SetInsertPoint({1, 3, 0});
    image->SetUVector({0.5, 0, 0});
    image->SetVVector({0, 0.25, 0});
    image->SetSize(8, 4);
    block.Add(L"0", image, true);
    DXFInsert& insert = d.Insert(L"B", {10, 20, 0});
    insert.SetRotation(90);
    insert.SetScale({2, 2, 2});
    d.Explode();
    const DXFLayer& layer = *d.document[L"0"];
    ASSERT_EQ(layer.NumEntities(), 2U);
    // (1, 0) from the base point, doubled and turned counter-clockwise: (0, 2). Texts count their rotation
    // clockwise.
    const auto& turned = dynamic_cast<const DXFText&>(*layer[0]);
    ExpectNear(turned.Position(), {10, 22, 0});
    EXPECT_NEAR(turned.GetTextInfo().Rotation().Get(), 270, 1e-9);
    EXPECT_FLOAT_EQ(turned.GetTextInfo().Size(), 6);
    const auto& picture = dynamic_cast<const DXFImage&>(*layer[1]);
    ExpectNear(picture.InsertPoint(), {6, 20, 0});
    ExpectNear(picture.UVector(), {0, 1, 0});
    ExpectNear(picture.VVector(), {-0.5, 0, 0});
    EXPECT_EQ(picture.Width(), 8);
    EXPECT_EQ(picture.LayerName(), L"0");
}

TEST(InsertExploder, MirroredTextsCoverTheSameAreaAndReadOnwards)
{
    // Turned by so much clockwise, in each justification that has a line of its own for it.
    for (const double rotation : {0.0, 30.0, 90.0, 200.0, 270.0})
        for (int justification = TextInfo::BOTTOM_LEFT; justification <= TextInfo::MIDDLE_CENTER;
             ++justification)
            for (const GTL::Point3D<double>& mirror :
                 {GTL::Point3D<double>{-1, 1, 1}, GTL::Point3D<double>{1, -1, 1}}) {
                Drawing d;
                auto* text = new DXFText;
                text->SetText(L"Hall 12");
                text->SetPosition({3, 1, 0});
                TextInfo info;
                info.SetSize(2);
                info.SetRotation(Angle(rotation));
                info.SetJustification(static_cast<TextInfo::JUSTIFICATION>(justification));
                text->SetTextInfo(info);
                const GTL::Extents3D<double> box = text->Extents();
                d.Block(L"B", {}).Add(L"0", text, true);
                d.Insert(L"B", {}).SetScale(mirror);
                d.Explode();
                const auto& shown = dynamic_cast<const DXFText&>(*(*d.document[L"0"])[0]);
                GTL::Extents3D<double> mirrored;
                for (const auto& corner : {box.MinPnt(), box.MaxPnt()})
                    mirrored.Update({corner.X() * mirror.X(), corner.Y() * mirror.Y(), 0});
                ExpectNear(shown.Extents().MinPnt(), mirrored.MinPnt());
                ExpectNear(shown.Extents().MaxPnt(), mirrored.MaxPnt());
                const Angle read = shown.GetTextInfo().Rotation();
                EXPECT_GE(read.Cos(), -1e-9) << rotation;
            }
}

/// An insert of a block and what the matrices say about it.
struct Shown {
    const DXFEntity* entity;
    InsertMatrix map;
};

InsertMatrix MatrixOf(const DXFInsert& insert, int row, int column)
{
    using M = InsertMatrix;
    const P& at = insert.InsertPoint();
    const P& s = insert.Scale();
    const P& n = insert.Extrusion();
    const P& base = insert.Block()->BasePoint();
    return M::Extrude({n.X(), n.Y(), n.Z()}) * M::Move(at.X(), at.Y(), at.Z()) * M::Turn(insert.Rotation())
           * M::Move(column * insert.GetColumnSpacing(), row * insert.GetRowSpacing(), 0)
           * M::Scale(s.X(), s.Y(), s.Z()) * M::Move(-base.X(), -base.Y(), -base.Z());
}

void CollectShown(const DXFEntity& entity, const InsertMatrix& map, std::vector<Shown>& shown)
{
    const auto* insert = dynamic_cast<const DXFInsert*>(&entity);
    if (!insert) return shown.push_back({&entity, map});
    const DXFLayer& layer = *(*insert->Block()->GetDXF())[0ULL];
    for (int row = 0; row < insert->GetRowCount(); ++row)
        for (int column = 0; column < insert->GetColumnCount(); ++column)
            for (std::size_t i = 0; i < layer.NumEntities(); ++i)
                CollectShown(*layer[i], map * MatrixOf(*insert, row, column), shown);
}

/// Every point of the original, mapped, lies on the image, and the image goes nowhere else.
void ExpectImage(const DXFEntity& original, const InsertMatrix& matrix, const DXFEntity& image)
{
    const Stretches before(original);
    const Stretches after(image);
    ASSERT_FALSE(after.m_All.empty());
    EXPECT_EQ(after.m_Extrusion, V(0, 0, 1));
    const V& n = before.m_Extrusion;
    const InsertMatrix map = matrix * InsertMatrix::Extrude({n.X(), n.Y(), n.Z()});
    std::vector<P> trace;
    double largest = 0;
    double gap = 0;
    for (const Stretch& s : before.m_All) {
        largest = std::max(largest, s.radius);
        const int steps = s.sweep == 0 ? 10 : 90;
        for (int i = 0; i <= steps; ++i) {
            trace.push_back(map(s.At(double(i) / steps)));
            if (i > 0) gap = std::max(gap, (trace.back() - trace[trace.size() - 2]).Length());
        }
    }
    // The larger scale is at most the root of 3 times the longest column.
    const double tolerance = 1.74 * InsertExploder::CHORD_TOLERANCE * largest * map.LongestColumn() + 1e-9;
    double worst = 0;
    for (const P& p : trace) worst = std::max(worst, after.Distance(p));
    EXPECT_LE(worst, tolerance) << "an original point is lost";
    worst = 0;
    for (const Stretch& s : after.m_All) {
        double least = INFINITY;
        for (const P& p : trace) least = std::min(least, (p - s.At(0.5)).Length());
        worst = std::max(worst, least);
    }
    EXPECT_LE(worst, tolerance + gap) << "the image leaves the original";
    if (dynamic_cast<const DXFArc*>(&original)) {
        const P start = map(before.m_All[0].At(0)), end = map(before.m_All[0].At(1));
        const P first = after.m_All.front().At(0), last = after.m_All.back().At(1);
        const bool kept = (first - start).Length() + (last - end).Length() < 1e-9;
        const bool exchanged = (first - end).Length() + (last - start).Length() < 1e-9;
        EXPECT_TRUE(kept || (exchanged && dynamic_cast<const DXFArc*>(&image)));
    }
}

class RandomDrawing : public Drawing {
public:
    RandomDrawing(unsigned int seed, bool even) : m_Random(seed), m_Even(even)
    {
        Fill(Block(L"leaf", Spot()));
        DXF& middle = Block(L"middle", Spot());
        Fill(middle);
        Place(middle, L"leaf");
        DXF& top = Block(L"top", Spot());
        Place(top, L"middle");
        Place(top, L"leaf");
        Place(document, L"top");
        Place(document, L"leaf");
    }

private:
    double Number(double low, double high)
    {
        return std::uniform_real_distribution<double>(low, high)(m_Random);
    }
    int Choice(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_Random); }
    P Spot() { return {Number(-9, 9), Number(-9, 9), Number(-9, 9)}; }
    /// In a drawing that bends nothing all extrusions are along z.
    P Extrusion()
    {
        const P choices[] = {{0, 0, 1}, {0, 0, -1}, {1, 0, 0}, {0.3, -0.4, 0.5}, {0.001, 0.002, -1}};
        return choices[Choice(m_Even ? 2 : 5)];
    }
    V Normal()
    {
        const P n = Extrusion();
        return {n.X(), n.Y(), n.Z()};
    }

    void Fill(DXF& block)
    {
        block.Add(L"0", new DXFPoint(Spot()), true);
        block.Add(L"0", new DXFLine(Spot(), Spot()), true);
        block.Add(L"0", new DXFCircle(Spot(), Number(0.1, 5), Normal()), true);
        block.Add(L"0", new DXFArc(Spot(), Number(0.1, 5), Number(0, 360), Number(0, 360), Normal()), true);
        block.Add(L"0", new DXFArc(Spot(), 1, 77, 77, Normal()), true);
        Corners(block, new DXFSolid);
        Corners(block, new DXF3dFace);
        Chain(block, new DXFPolyline);
        Chain(block, new DXFPolygon);
    }
    template <class Kind>
    void Corners(DXF& block, Kind* entity)
    {
        for (int i = 0; i < 4; ++i) (*entity)[i] = Spot();
        block.Add(L"0", entity, true);
    }
    void Chain(DXF& block, DXFPolyline* chain)
    {
        for (const double bulge : {0.0, 0.3, -1.0, 2.5, -0.05}) {
            const P spot = Spot();
            chain->PushBack({spot.X(), spot.Y(), spot.Z(), bulge});
        }
        block.Add(L"0", chain, true);
    }
    void Place(DXF& into, const wchar_t* block)
    {
        DXFInsert& insert = Insert(into, block, Spot());
        const double s = Number(0.2, 3);
        const P scales[] = {
            {s, s, s}, {-s, s, s}, {s, -s, 1}, {s, Number(0.2, 3), s}, {-s, Number(-2, 2), 1}};
        insert.SetScale(scales[Choice(m_Even ? 3 : 5)]);
        insert.SetRotation(Choice(3) == 0 ? 90 * Choice(5) : Number(-400, 400));
        insert.SetExtrusion(Extrusion());
        insert.SetRowCount(Choice(4) == 0 ? 2 : 1);
        insert.SetColumnCount(Choice(4) == 0 ? 3 : 1);
        insert.SetRowSpacing(Number(-20, 20));
        insert.SetColumnSpacing(Number(-20, 20));
    }

    std::mt19937 m_Random;
    bool m_Even;
};

class RandomStructures : public testing::TestWithParam<bool> {};

TEST_P(RandomStructures, EqualTheProductsOfTheirMatrices)
{
    for (unsigned int seed = 1; seed <= 6; ++seed) {
        SCOPED_TRACE(seed);
        RandomDrawing d(seed, GetParam());
        const DXF& before = d.document;
        DXFLayer original(L"original"); // holds the inserts while the matrices are worked out
        original = *before[0ULL];
        std::vector<Shown> shown;
        for (std::size_t i = 0; i < original.NumEntities(); ++i)
            CollectShown(*std::as_const(original)[i], {}, shown);
        const InsertExploder::Report report = d.Explode();
        const DXFLayer& after = *before[0ULL];
        ASSERT_EQ(after.NumEntities(), shown.size());
        EXPECT_EQ(report.entities, shown.size());
        for (std::size_t i = 0; i < shown.size(); ++i) {
            SCOPED_TRACE(testing::Message() << "entity " << i);
            ExpectImage(*shown[i].entity, shown[i].map, *after[i]);
            const bool sameKind = typeid(*after[i]) == typeid(*shown[i].entity);
            EXPECT_TRUE(sameKind || !GetParam());
            if (HasFailure()) return;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(InsertExploder, RandomStructures, testing::Bool(),
                         [](const auto& param) { return param.param ? "ThatBendNothing" : "ThatBend"; });

TEST(InsertExploder, FlatArcsAreChordedFinelyForTheirLength)
{
    // A chord of 20,000 on a radius of a million rises 50: less than the radius' tolerance, but plain to see.
    Drawing d;
    auto* chain = new DXFPolyline;
    chain->PushBack({0, 0, 0, 0.005});
    chain->PushBack(20000, 0);
    d.Block(L"B").Add(L"0", chain, true);
    d.Insert(L"B").SetScale({1, 2, 1});
    d.Explode();
    const Stretches exploded(*d.Only<DXFPolyline>());
    // The middle of the arc lies bulge * chord / 2 = 50 below the chord's middle, 100 after the scale.
    EXPECT_LE(exploded.Distance({10000, -100, 0}), 4.1);
}

TEST(InsertExploder, LimitsCutExactlyAndBeforeTheWork)
{
    const struct {
        int rows, columns;
        std::uint64_t limit;
        std::uint64_t entities;
        bool reached;
    } rows[] = {{2, 5, 10, 10, false},
                {2, 5, 9, 9, true},
                {1, 1, 0, 0, true},
                {2'000'000'000, 2'000'000'000, 7, 7, true}};
    for (const auto& row : rows) {
        Drawing d;
        d.Block(L"B").Add(L"0", new DXFPoint, true);
        d.Array(d.document, L"B", row.rows, row.columns);
        d.Insert(L"nothing");
        d.document.Add(L"0", new DXFLine, true);
        const InsertExploder::Report report = d.Explode(row.limit);
        EXPECT_EQ(report.entities, row.entities);
        EXPECT_EQ(report.limitReached, row.reached);
        EXPECT_EQ(d.document[L"0"]->NumEntities(), row.entities + 1) << "what is no insert stays";
    }
}

TEST(InsertExploder, ArraysOfNothingCostNothing)
{
    // None of these may use up the visits that the limit allows, however many cells they have.
    Drawing d;
    constexpr int MANY = 1'000'000'000;
    d.Block(L"empty");
    d.Insert(d.Block(L"hollow"), L"absent");
    d.Array(d.Block(L"self"), L"self", MANY, MANY);
    d.Insert(d.Block(L"partly"), L"absent");
    d.Block(L"partly").Add(L"0", new DXFPoint, true);
    DXF& cut = d.Block(L"cut");
    cut.Add(L"0", new DXFPoint, true);
    d.Array(d.Block(L"back"), L"cut", MANY, MANY);
    d.Array(cut, L"back", MANY, MANY);
    for (const wchar_t* name : {L"empty", L"hollow", L"self", L"absent"})
        d.Array(d.document, name, MANY, MANY);
    d.Insert(L"cut");
    d.Array(d.document, L"partly", 2, 1);
    const InsertExploder::Report report = d.Explode(1000);
    EXPECT_FALSE(report.limitReached);
    EXPECT_EQ(Listing(d.document), Rows(3, "0:POINT 0 0"));
    // Cells of empty, hollow and self; the insert of cut and the cells of back in it; the cells of partly.
    EXPECT_EQ(report.inserts, 4'000'000'000'000'000'003U);
    EXPECT_EQ(report.missingBlocks, 3U); // in hollow, in partly, and the array itself
    EXPECT_EQ(report.recursive, 2U);
}

/// Blocks 0 to depth - 1, each with two inserts of the next; the last one is left to the caller.
std::wstring Doubling(Drawing& d, int depth)
{
    for (int i = 0; i < depth; ++i) {
        const std::wstring next = L"d" + std::to_wstring(i + 1);
        DXF& block = d.Block((L"d" + std::to_wstring(i)).c_str());
        for (int k = 0; k < 2; ++k) d.Insert(block, next.c_str(), P(k, i, 0));
    }
    return L"d" + std::to_wstring(depth);
}

TEST(InsertExploder, InsertsThatMultiplyEnd)
{
    Drawing nothing; // 2^60 visits of an empty block
    nothing.Block(Doubling(nothing, 60).c_str());
    nothing.Insert(L"d0");
    EXPECT_FALSE(nothing.Explode(1000).limitReached);
    EXPECT_EQ(nothing.document.NumEntities(), 0);

    Drawing points;
    points.Block(Doubling(points, 60).c_str()).Add(L"0", new DXFPoint, true);
    points.Insert(L"d0");
    const InsertExploder::Report report = points.Explode(1000);
    EXPECT_TRUE(report.limitReached);
    EXPECT_EQ(report.entities, 1000U);

    Drawing cyclic; // a point could be reached, but each of 2^60 paths is cut just before
    cyclic.Block(L"d0").Add(L"0", new DXFPoint, true);
    cyclic.Insert(cyclic.Block(Doubling(cyclic, 60).c_str()), L"d0");
    cyclic.Insert(L"d0");
    EXPECT_TRUE(cyclic.Explode(1000).limitReached);
    EXPECT_EQ(cyclic.document.NumEntities(), 1);

    Drawing wide; // 20,000 blocks, each inserting the next ten times over: cut at the depth and at the limit
    for (int i = 0; i < 20'000; ++i) {
        DXF& block = wide.Block((L"w" + std::to_wstring(i)).c_str());
        wide.Array(block, (L"w" + std::to_wstring(i + 1)).c_str(), 2, 5);
        block.Add(L"0", new DXFPoint, true);
    }
    wide.Insert(L"w0");
    EXPECT_EQ(wide.Explode(5000).entities, 5000U);
}

TEST(InsertExploder, VerticesAndCharactersAreLimitedTogether)
{
    // 100 vertices, and 80 characters that count as 10 points.
    Drawing d;
    auto* chain = new DXFPolyline;
    for (int i = 0; i < 100; ++i) chain->PushBack(i, 0);
    d.Block(L"B").Add(L"0", chain, true);
    auto* text = new DXFText;
    text->SetText(std::wstring(80, L'x'));
    d.Block(L"B").Add(L"0", text, true);
    d.Array(d.document, L"B", 3, 3);
    // Uneven scales would turn a circle into more points than are left.
    d.document.Add(L"1", new DXFCircle({}, 1, {1, 0, 0}), true);
    const InsertExploder::Report report = InsertExploder(1000, 325).Explode(d.document, d.keepGoing);
    EXPECT_TRUE(report.limitReached);
    EXPECT_EQ(report.entities, 5U); // 110 + 110 + 100, then the text has no room
    EXPECT_TRUE(dynamic_cast<const DXFCircle*>(std::as_const(*d.document[L"1"])[0])) << "kept as it is";
}

TEST(InsertExploder, NestingEndsAtItsDepth)
{
    for (const int depth : {InsertExploder::MAX_DEPTH, InsertExploder::MAX_DEPTH + 1}) {
        Drawing d;
        for (int i = 1; i <= depth; ++i) {
            DXF& block = d.Block((L"n" + std::to_wstring(i)).c_str());
            block.Add(L"0", new DXFPoint, true);
            if (i < depth) d.Insert(block, (L"n" + std::to_wstring(i + 1)).c_str());
        }
        d.Insert(L"n1");
        const InsertExploder::Report report = d.Explode();
        EXPECT_EQ(report.entities, 64U);
        EXPECT_EQ(report.recursive, depth > 64 ? 1U : 0U);
    }
}

TEST(InsertExploder, BlocksWithinThemselvesAreEmptyAtTheSecondVisit)
{
    Drawing mutual;
    DXF& a = mutual.Block(L"a");
    DXF& b = mutual.Block(L"b");
    a.Add(L"0", new DXFPoint(1, 0, 0), true);
    mutual.Insert(a, L"b", {10, 0, 0});
    b.Add(L"0", new DXFPoint(2, 0, 0), true);
    mutual.Insert(b, L"a", {100, 0, 0});
    mutual.Insert(L"a");
    mutual.Insert(L"b");
    EXPECT_EQ(mutual.Explode().recursive, 2U);
    EXPECT_EQ(Listing(mutual.document),
              (Rows{"0:POINT 1 0", "0:POINT 12 0", "0:POINT 2 0", "0:POINT 101 0"}));

    Drawing own; // a block's own document is exploded, which holds an insert of the block
    DXF& inside = own.Block(L"B");
    inside.Add(L"0", new DXFPoint(1, 0, 0), true);
    own.Insert(inside, L"B", {5, 0, 0});
    EXPECT_EQ(InsertExploder().Explode(inside, own.keepGoing).recursive, 1U);
    EXPECT_EQ(Listing(inside), Rows{"0:POINT 1 0"});

    Drawing shared; // a block that shares the layers of the document
    shared.document.Add(L"0", new DXFCircle(P(1, 0, 0), 1, {0, 0, -1}), true);
    shared.Insert(L"B", {5, 0, 0});
    shared.Insert(L"B", {7, 0, 0});
    shared.Block(L"B") = DXF(shared.document);
    EXPECT_EQ(shared.Explode().recursive, 4U);
    EXPECT_EQ(Listing(shared.document), (Rows{"0:CIRCLE -1 0", "0:CIRCLE 4 0", "0:CIRCLE 6 0"}));
}

/// A point that clears a flag when it has been looked at so often.
class Interrupter : public DXFPoint {
public:
    Interrupter(std::atomic<bool>& flag, int& visits) : m_Flag(flag), m_Visits(visits) {}
    Interrupter* Copy() const override { return new Interrupter(*this); }
    void Write(DXFWriter& writer) const override
    {
        if (--m_Visits == 0) m_Flag = false;
        DXFPoint::Write(writer);
    }

private:
    std::atomic<bool>& m_Flag;
    int& m_Visits;
};

TEST(InsertExploder, AnInterruptedInsertStays)
{
    bool inTheMiddle = false;
    for (int stopAt = 1; stopAt < 40; ++stopAt) {
        Drawing d;
        int visits = stopAt;
        for (int i = 0; i < 3; ++i) d.Block(L"B").Add(L"0", new Interrupter(d.keepGoing, visits), true);
        for (int i = 0; i < 4; ++i) d.Insert(L"B");
        const InsertExploder::Report report = d.Explode();
        const Rows rows = Listing(d.document);
        const auto points = static_cast<std::size_t>(std::count(rows.begin(), rows.end(), "0:POINT 0 0"));
        const auto inserts = static_cast<std::size_t>(std::count(rows.begin(), rows.end(), "0:INSERT"));
        EXPECT_EQ(points + 3 * inserts, 12U);
        EXPECT_EQ(points, report.entities);
        EXPECT_EQ(inserts, 4 - report.inserts);
        inTheMiddle = inTheMiddle || (inserts > 0 && points > 0);
    }
    EXPECT_TRUE(inTheMiddle) << "no run was stopped between two inserts";
}

TEST(InsertExploder, NumbersWithoutMeaningEndInADocument)
{
    constexpr double WILD[] = {std::numeric_limits<double>::quiet_NaN(),
                               std::numeric_limits<double>::infinity(),
                               -1e308,
                               1e308,
                               5e-324,
                               0};
    for (const double wild : WILD) {
        for (int place = 0; place < 6; ++place) {
            const auto at = [&](int here, double usual) {
                return here == place ? wild : usual;
            };
            Drawing d;
            DXF& block = d.Block(L"B", {at(0, 1), 0, 0});
            block.Add(L"0", new DXFCircle({at(1, 1), 0, 0}, at(2, 1), {0, at(3, 0), 1}), true);
            block.Add(L"0", new DXFArc({at(1, 1), 0, 0}, at(2, 1), at(3, 5), 90, {0, 0, 1}), true);
            auto* ring = new DXFPolygon;
            ring->PushBack({0, at(1, 0), 0, at(2, 1)});
            ring->PushBack({at(3, 3), 1, 0, -at(2, 1e-9)});
            block.Add(L"0", ring, true);
            DXFInsert& insert = d.Array(d.document, L"B", 2, 2);
            insert.SetScale({at(4, 2), 1, 1});
            insert.SetRotation(at(5, 30));
            insert.SetRowSpacing(at(5, 3));
            EXPECT_EQ(d.Explode().entities, 12U);
            EXPECT_EQ(d.document.NumEntities(), 12);
        }
    }
}

} // namespace
