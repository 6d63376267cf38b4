#include "model/DXFInsert.h"

#include "model/DXF.h"
#include "model/DXFLine.h"
#include "model/InsertPlacement.h"
#include "model/Probe.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <map>
#include <random>
#include <set>
#include <thread>

namespace {

using P = GTL::Point3D<double>;
using Box = GTL::Extents3D<double>;
using Map = GTL::Transformation<P>;

void ExpectBox(const Box& box, const P& low, const P& high)
{
    constexpr double TOLERANCE = 1e-12;
    ASSERT_TRUE(box.IsValid());
    EXPECT_NEAR(box.MinX(), low.X(), TOLERANCE);
    EXPECT_NEAR(box.MinY(), low.Y(), TOLERANCE);
    EXPECT_NEAR(box.MinZ(), low.Z(), TOLERANCE);
    EXPECT_NEAR(box.MaxX(), high.X(), TOLERANCE);
    EXPECT_NEAR(box.MaxY(), high.Y(), TOLERANCE);
    EXPECT_NEAR(box.MaxZ(), high.Z(), TOLERANCE);
}

DXFInsert* AddInsert(DXF& where, DXF& document, const std::wstring& block, const P& at)
{
    auto* insert = new DXFInsert(block, at, 0);
    insert->SetDXF(&document);
    where.Add(insert);
    return insert;
}

TEST(Inserts, WithoutABlockAreTheirPoint)
{
    DXF document;
    DXFInsert insert(L"door", P(1, 2, 3), 45);
    ExpectBox(insert.Extents(), P(1, 2, 3), P(1, 2, 3));
    document.AddBlock(L"Door")->GetDXF()->Add(new DXFPoint(50, 50, 50));
    insert.SetDXF(&document);
    ExpectBox(insert.Extents(), P(1, 2, 3), P(1, 2, 3)); // names of blocks have case
    document.AddBlock(L"door");
    insert.SetRotation(0);
    ExpectBox(insert.Extents(), P(1, 2, 3), P(1, 2, 3)); // an empty block
    insert.SetBlockName(L"Door");
    ExpectBox(insert.Extents(), P(1, 2, 3), P(51, 52, 53));
}

TEST(Inserts, PlaceTheBoxOfTheirBlock)
{
    DXF document;
    DXFBlock* block = document.AddBlock(L"B");
    block->GetDXF()->Add(new DXFPoint(0, 0, 0));
    block->GetDXF()->Add(new DXFPoint(2, 1, 0));
    block->SetBasePoint(P(10, 0, 0));
    DXFInsert insert(L"B", P(100, 0, 0), 90);
    insert.SetScale(P(2, 3, 1));
    insert.SetDXF(&document);
    // The base point is added: x 10..12, y 0..1. Turned by 90 degrees: x -1..0, y 10..12. Scaled: x -2..0,
    // y 30..36. Moved to the insertion point, which counts too.
    ExpectBox(insert.Extents(), P(98, 0, 0), P(100, 36, 0));
    insert.SetRowCount(5), insert.SetRowSpacing(1000);
    insert.SetScale(P(1, 1, 1));
    ExpectBox(insert.Extents(), P(99, 0, 0), P(100, 12, 0)); // rows do not count
    insert.SetInsertPoint(P());
    ExpectBox(insert.Extents(), P(-1, 0, 0), P(0, 12, 0));
}

TEST(Inserts, TiltByTheirExtrusion)
{
    DXF document;
    document.AddBlock(L"B")->GetDXF()->Add(new DXFPoint(5, 0, 0));
    DXFInsert insert(L"B", P(), 0);
    insert.SetDXF(&document);
    // Tilt atan2(3, 4), its cosine 4/5 and sine 3/5: about y by minus the tilt (5, 0, 0) goes to (4, 0, 3).
    // Direction atan2(x, y) = atan2(3, 0) = 90 degrees: about x that goes to (4, -3, 0).
    insert.SetExtrusion(P(3, 0, 4));
    ExpectBox(insert.Extents(), P(0, -3, 0), P(4, 0, 0));
    // Direction atan2(0, 3) = 0.
    insert.SetExtrusion(P(0, 3, 4));
    ExpectBox(insert.Extents(), P(0, 0, 0), P(4, 0, 3));
    // No planar length: nothing to tilt, downwards either.
    insert.SetExtrusion(P(0, 0, -1));
    ExpectBox(insert.Extents(), P(0, 0, 0), P(5, 0, 0));
}

/// Placing and then mapping is placing by the mapped insert, for every cell of its array.
TEST(Inserts, TransformsMapThePlacement)
{
    DXF document;
    document.AddBlock(L"B")->SetBasePoint(P(1, 2, 3));
    const Map maps[] = {
        Map().Translate(5, -6, 7),
        Map().RotateZ(30),
        Map().Scale(3, 3, 3),
        Map().Scale(-1, 1, 1),
        Map().Scale(1, -1, 1).RotateZ(-70).Translate(4, 4, 4),
        Map().RotateZ(110).Scale(-2, 2, 2),
    };
    for (const Map& map : maps)
        for (const P& extrusion : {P(0, 0, 1), P(0, 0, -1)})
            for (const double rotation : {0.0, 25.0, 190.0}) {
                DXFInsert insert(L"B", P(10, 20, 30), rotation);
                insert.SetDXF(&document);
                insert.SetScale(P(2, -0.5, 3));
                insert.SetExtrusion(extrusion);
                insert.SetRowCount(3), insert.SetColumnCount(2);
                insert.SetRowSpacing(7), insert.SetColumnSpacing(-11);
                const InsertPlacement before(insert);
                insert.Transform(map);
                const InsertPlacement after(insert);
                for (const P& p : {P(1, 2, 3), P(4, 0, 0), P(-3, 8, 5)}) {
                    const P should = map.Apply(before.At(2, 1).Apply(p));
                    const P is = after.At(2, 1).Apply(p);
                    EXPECT_NEAR(is.X(), should.X(), 1e-9);
                    EXPECT_NEAR(is.Y(), should.Y(), 1e-9);
                    EXPECT_NEAR(is.Z(), should.Z(), 1e-9);
                }
            }
}

/// A drawing of blocks with one point each that insert each other by plain shifts.
class Nest {
public:
    struct Edge {
        int block;
        P at;
    };
    using Graph = std::vector<std::vector<Edge>>;

    explicit Nest(const Graph& graph) : m_Graph(graph)
    {
        for (std::size_t i = 0; i < graph.size(); ++i) {
            DXF& inner = *document.AddBlock(Name(int(i)))->GetDXF();
            if (i % 2) inner.Add(new Probe(PointOf(int(i)), 0));
            for (const Edge& edge : graph[i]) AddInsert(inner, document, Name(edge.block), edge.at);
            if (i % 2 == 0) inner.Add(new Probe(PointOf(int(i)), 0));
        }
    }

    const Box& BoxOf(int block) { return document.GetBlock(Name(block))->Extents(); }
    DXF& DocumentOf(int block) { return *document.GetBlock(Name(block))->GetDXF(); }

    /// The rule, step by step: a block that is being entered counts as empty.
    Box SlowBox(int block, std::set<int> entered = {}) const
    {
        Box box;
        if (!entered.insert(block).second) return box;
        box.Update(PointOf(block), 0, 0);
        for (const Edge& edge : m_Graph[std::size_t(block)]) {
            box.Update(edge.at);
            Box inner = SlowBox(edge.block, entered);
            inner.Transform(Map().Translate(edge.at.X(), edge.at.Y(), edge.at.Z()));
            box.Update(inner);
        }
        return box;
    }

    DXF document;

private:
    static std::wstring Name(int i) { return L"B" + std::to_wstring(i); }
    static double PointOf(int i) { return i + 1; }

    Graph m_Graph;
};

TEST(NestedInserts, AreEmptyAtTheSecondVisit)
{
    // The block's point is at x = 1. Its insert of itself adds the insertion point alone.
    Nest one({{{0, P(10, 0, 0)}}});
    ExpectBox(one.BoxOf(0), P(1, 0, 0), P(10, 0, 0));
    // Points at 1 and 2. B0: 1, then at (100, 0) the box of B1: 2 and the insertion point (0, 50) of B0.
    Nest two({{{1, P(100, 0, 0)}}, {{0, P(0, 50, 0)}}});
    ExpectBox(two.BoxOf(0), P(1, 0, 0), P(102, 50, 0));
    ExpectBox(two.BoxOf(1), P(0, 0, 0), P(100, 50, 0)); // 2, (0, 50), (0 + 1, 50), (0 + 100, 50)
}

/// Every block inserts one other: chains that end in cycles of every length.
TEST(NestedInserts, DoNotDependOnWhoIsAskedFirst)
{
    std::mt19937 random(11);
    for (int round = 0; round < 200; ++round) {
        const int count = 1 + int(random() % 6);
        Nest::Graph graph(static_cast<std::size_t>(count));
        for (auto& edges : graph)
            edges.push_back(
                {int(random() % unsigned(count)), P(int(random() % 100), int(random() % 100), 0)});
        Nest nest(graph);
        std::vector<int> order;
        for (int i = 0; i < count; ++i) order.push_back(i);
        std::shuffle(order.begin(), order.end(), random);
        for (const int i : order) {
            const Box box = nest.SlowBox(i);
            const bool isLayerFirst = random() % 2, isDocumentFirst = random() % 2;
            if (isLayerFirst) {
                EXPECT_EQ(nest.DocumentOf(i)[0]->Extents(), box) << round << " layer " << i;
            }
            if (isDocumentFirst) {
                EXPECT_EQ(nest.DocumentOf(i).Extents(), box) << round << " document " << i;
            }
            EXPECT_EQ(nest.BoxOf(i), box) << round << " block " << i;
            EXPECT_EQ(nest.DocumentOf(i).Extents(), box) << round << " document " << i;
        }
    }
}

Nest::Graph RandomGraph(std::mt19937& random, int count, int edges, bool cycles)
{
    Nest::Graph graph(static_cast<std::size_t>(count));
    for (int i = 0; i < edges; ++i) {
        const int from = int(random() % unsigned(count));
        const int to = int(random() % unsigned(count));
        if (cycles || from < to)
            graph[std::size_t(from)].push_back({to, P(int(random() % 100), int(random() % 100), 0)});
    }
    return graph;
}

TEST(NestedInserts, WithoutCyclesAreTheSumOfTheirParts)
{
    std::mt19937 random(5);
    for (int round = 0; round < 50; ++round) {
        Nest nest(RandomGraph(random, 8, 30, false));
        for (int i = 7; i >= 0; --i) EXPECT_EQ(nest.BoxOf((i * 3) % 8), nest.SlowBox((i * 3) % 8));
    }
}

TEST(NestedInserts, InAnyTangleAreTheSameInAnyOrder)
{
    std::mt19937 random(6);
    for (int round = 0; round < 50; ++round) {
        const Nest::Graph graph = RandomGraph(random, 8, 14, true);
        Nest forwards(graph);
        Nest backwards(graph);
        std::map<int, Box> boxes;
        for (int i = 0; i < 8; ++i) boxes[i] = forwards.BoxOf(i);
        for (int i = 7; i >= 0; --i) {
            EXPECT_EQ(backwards.DocumentOf(i).Extents(), boxes[i]) << round << " document " << i;
            EXPECT_EQ(backwards.BoxOf(i), boxes[i]) << round << " block " << i;
        }
    }
}

TEST(NestedInserts, MayBeAnyNumberOfLevelsDeep)
{
    constexpr int DEPTH = 30'000;
    Nest::Graph graph(DEPTH);
    for (int i = 0; i + 1 < DEPTH; ++i) graph[std::size_t(i)].push_back({i + 1, P(0, 1, 0)});
    Nest nest(graph);
    // Each block stands one higher than the block that inserts it; their points lie at x = 1 to DEPTH.
    ExpectBox(nest.BoxOf(0), P(0, 0, 0), P(DEPTH, DEPTH - 1, 0));
}

TEST(NestedInserts, CostNoMoreThanTheyTakeToWriteDown)
{
    constexpr int LEVELS = 60;
    Nest::Graph fan(LEVELS);
    for (int i = 0; i + 1 < LEVELS; ++i)
        for (int k = 0; k < 10; ++k) fan[std::size_t(i)].push_back({i + 1, P(k, 1, 0)});
    Nest nest(fan);
    Probe::s_Counts = {};
    ExpectBox(nest.BoxOf(0), P(0, 0, 0), P(LEVELS + 9 * (LEVELS - 1), LEVELS - 1, 0));
    EXPECT_EQ(Probe::s_Counts.boxes, LEVELS);

    constexpr int CLIQUE = 300;
    Nest::Graph all(CLIQUE);
    for (auto& edges : all)
        for (int k = 0; k < CLIQUE; ++k) edges.push_back({k, P(0, k, 0)});
    Nest clique(all);
    Probe::s_Counts = {};
    // Too many to be told apart: each has its own point and the insertion points.
    for (int i = 0; i < CLIQUE; ++i) ExpectBox(clique.BoxOf(i), P(0, 0, 0), P(i + 1, CLIQUE - 1, 0));
    EXPECT_LE(Probe::s_Counts.boxes, 2 * CLIQUE);
}

/// What has no place has no box, which is not the same as one that is not known yet: the last block would be
/// asked 2^40 times.
TEST(NestedInserts, OfNoPlaceCostNoMore)
{
    constexpr int LEVELS = 40;
    DXF document;
    for (int i = 0; i < LEVELS; ++i) {
        DXF& inner = *document.AddBlock(L"B" + std::to_wstring(i))->GetDXF();
        for (int k = 0; k < 2; ++k)
            AddInsert(inner, document, L"B" + std::to_wstring(i + 1), P(std::nan(""), 0, 0));
    }
    EXPECT_FALSE(document.GetBlock(L"B0")->Extents().IsValid());
    EXPECT_FALSE(document.GetBlock(L"B0")->GetDXF()->Extents().IsValid());
}

TEST(NestedInserts, MayStandInRingsOfAnySize)
{
    constexpr int COUNT = 30'000;
    Nest::Graph graph(COUNT);
    for (int i = 0; i < COUNT; ++i) graph[std::size_t(i)].push_back({(i + 1) % COUNT, P(0, 1, 0)});
    Nest nest(graph);
    for (int i = 0; i < COUNT; ++i) ExpectBox(nest.BoxOf(i), P(0, 0, 0), P(i + 1, 1, 0));
}

TEST(NestedInserts, OfADocumentInItselfEnd)
{
    DXF document;
    DXF* inner = document.AddBlock(L"A")->GetDXF();
    inner->Add(new DXFPoint(1, 1, 1));
    DXFInsert* insert = AddInsert(*inner, *inner, L"A", P(5, 5, 5)); // the inner document has no such block
    ExpectBox(insert->Extents(), P(5, 5, 5), P(5, 5, 5));
    insert->SetDXF(&document);
    ExpectBox(insert->Extents(), P(5, 5, 5), P(10, 10, 10)); // the block's box is (1, 1, 1) to (5, 5, 5)
    ExpectBox(document.GetBlock(L"A")->Extents(), P(1, 1, 1), P(5, 5, 5));
}

TEST(BlockBoxes, AreThoseOfTheBlocksDocument)
{
    DXF document;
    DXFBlock& block = *document.AddBlock(L"B");
    DXF& inner = *block.GetDXF();
    auto* line = new DXFLine(P(0, 0, 0), P(10, 0, 0));
    inner.Add(line);
    inner.Extents();
    // The box of 0..10 turned by 45 degrees and back: of a square with the line as its diagonal.
    inner[0]->Rotate(P(), 45);
    inner[0]->Rotate(P(), -45);
    ExpectBox(block.Extents(), P(0, -5, 0), P(10, 5, 0));
    // A transformation that is stopped at once moves a known box alone.
    block.Clear();
    inner.Add(new DXFLine(P(0, 0, 0), P(10, 0, 0)));
    inner.Extents();
    inner[0]->Transform(Map().Translate(100, 0, 0), std::atomic<bool>{false});
    ExpectBox(block.Extents(), P(100, 0, 0), P(110, 0, 0));
}

TEST(BlockBoxes, TakeKnownBoxesAndKeepTheirOwn)
{
    DXF document;
    DXF& leaf = *document.AddBlock(L"Leaf")->GetDXF();
    leaf.Add(new Probe(7, 0));
    DXFBlock& block = *document.AddBlock(L"B");
    DXF& inner = *block.GetDXF();
    inner.Add(new Probe(1, 1));
    AddInsert(inner, document, L"Leaf", P(3, 0, 0));
    inner.Add(L"Other", new Probe(0, 4), true);
    inner[0]->Extents(); // (1, 1), (3, 0) and (3 + 7, 0)
    leaf.Clear();
    Probe::s_Counts.boxes = 0;
    ExpectBox(block.Extents(), P(0, 0, 0), P(10, 4, 0));
    EXPECT_EQ(Probe::s_Counts.boxes, 1) << "of the layer that was not known";
    ExpectBox(inner.Extents(), P(0, 0, 0), P(10, 4, 0));
    EXPECT_EQ(Probe::s_Counts.boxes, 1) << "of no layer any more";
}

/// An insert keeps its box while its block changes, for its document and so for the block that holds it.
TEST(BlockBoxes, OfInsertsAreTakenAsKnown)
{
    DXF document;
    DXF& leaf = *document.AddBlock(L"Leaf")->GetDXF();
    leaf.Add(new DXFPoint(7, 0, 0));
    DXFBlock& block = *document.AddBlock(L"B");
    DXFInsert* insert = AddInsert(*block.GetDXF(), document, L"Leaf", P(3, 0, 0));
    insert->Extents();
    document.GetBlock(L"Leaf")->Clear();
    block.GetDXF()->Add(new DXFPoint(0, 4, 0));
    ExpectBox(block.Extents(), P(0, 0, 0), P(10, 4, 0));
}

/// A point whose box cannot be had before another thread has come as far.
class Meeting : public DXFPoint {
public:
    Meeting(const P& place, std::atomic<int>& toCome)
        : DXFPoint(place.X(), place.Y(), place.Z()), m_ToCome(toCome)
    {
        m_Box.Update(place);
    }
    const Box& Extents() const override
    {
        if (m_HasMet.exchange(true)) return m_Box;
        --m_ToCome;
        while (m_ToCome > 0) std::this_thread::yield();
        return m_Box;
    }

private:
    std::atomic<int>& m_ToCome; ///< threads that are still to get to their own
    mutable std::atomic<bool> m_HasMet{false};
    Box m_Box;
};

/// Each thread is in the document of its block when the other gets there, and goes on into the other's.
TEST(BlockBoxes, OfARingAreFoundByTwoThreadsAtOnce)
{
    for (const bool isDocumentAsked : {false, true}) {
        DXF document;
        std::atomic<int> toCome{2};
        DXFBlock* blocks[] = {document.AddBlock(L"A"), document.AddBlock(L"B")};
        for (int i : {0, 1}) {
            blocks[i]->GetDXF()->Add(new Meeting(P(i, 0, 0), toCome));
            AddInsert(*blocks[i]->GetDXF(), document, blocks[1 - i]->Name(), P(0, 10 + i, 0));
        }
        Box boxes[2];
        const auto ask = [&](int i) {
            boxes[i] = isDocumentAsked ? blocks[i]->GetDXF()->Extents() : blocks[i]->Extents();
        };
        std::thread other(ask, 1);
        ask(0);
        other.join();
        // A: (0, 0) and (0, 10), from there on (1, 0) and (0, 11) of B. B: (1, 0) and (0, 11), from there on
        // (0, 0) and (0, 10) of A. Or from there on the whole of the other, when that was found first.
        for (const Box& box : boxes) {
            EXPECT_EQ(box.MinPnt(), P(0, 0, 0));
            EXPECT_EQ(box.MaxX(), 1);
            EXPECT_GE(box.MaxY(), 21);
            EXPECT_LE(box.MaxY(), 32);
        }
    }
}

TEST(BlockBoxes, WaitForTheLockOfTheBlocksDocument)
{
    DXF document;
    DXFBlock& outer = *document.AddBlock(L"Outer");
    DXFBlock& inner = *document.AddBlock(L"Inner");
    AddInsert(*outer.GetDXF(), document, L"Inner", P(1, 0, 0));
    for (const DXFBlock* locked : {&inner, &outer}) {
        inner.GetDXF()->Add(new DXFPoint(5, 5, 0));
        std::atomic<bool> isDone{false};
        locked->GetDXF()->Lock();
        EXPECT_EQ(inner.Extents().IsValid(), true) << "the thread that holds the lock goes on";
        inner.Clear();
        std::thread other([&] {
            outer.Extents();
            isDone = true;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        EXPECT_FALSE(isDone);
        inner.GetDXF()->Add(new DXFPoint(8, 0, 0));
        locked->GetDXF()->Unlock();
        other.join();
        ExpectBox(outer.Extents(), P(1, 0, 0), P(9, 0, 0));
        outer.Clear();
        inner.Clear();
        AddInsert(*outer.GetDXF(), document, L"Inner", P(1, 0, 0));
    }
}

} // namespace
