#include "model/DXF.h"
#include "model/DXFWriter.h"
#include "model/Probe.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace {

using P = GTL::Point3D<double>;
using Box2 = GTL::Extents2D<double>;
using Map = GTL::Transformation<P>;

const std::atomic<bool> GO{true};
const std::atomic<bool> STOP{false};

class Layers : public testing::Test {
protected:
    void SetUp() override { Probe::s_Counts = {}; }
    void TearDown() override
    {
        EXPECT_EQ(Probe::s_Counts.living, 0) << "entities leaked, or destroyed twice";
    }

    static DXFEntity* Fill(DXFLayer& layer, int count)
    {
        DXFEntity* last = nullptr;
        for (int i = 0; i < count; ++i) last = layer.Add(new Probe(i, 2 * i));
        return last;
    }
    static double X(const DXFLayer& layer, size_t i) { return dynamic_cast<const DXFPoint&>(*layer[i]).X(); }
};

void ExpectBox(const GTL::Extents3D<double>& box, const P& low, const P& high)
{
    ASSERT_TRUE(box.IsValid());
    EXPECT_EQ(box.MinPnt(), low);
    EXPECT_EQ(box.MaxPnt(), high);
}

TEST_F(Layers, ANewOneHasTheDefaults)
{
    const DXFLayer layer(L"Walls");
    EXPECT_EQ(layer.Name(), L"Walls");
    EXPECT_EQ(layer.Color(), 0xFFFFFFUL);
    EXPECT_EQ(layer.Width(), 0.1F);
    EXPECT_EQ(layer.Style(), 0);
    EXPECT_TRUE(layer.IsVisible());
    EXPECT_EQ(layer.NumEntities(), 0U);
    EXPECT_FALSE(layer.Extents().IsValid());
    EXPECT_EQ(DXFLayer(static_cast<const wchar_t*>(nullptr)).Name(), L"");
}

TEST_F(Layers, StylesHaveNames)
{
    const struct {
        const wchar_t* read;
        int style;
        const wchar_t* written;
    } rows[] = {{L"continuous", 0, L"CONTINUOUS"}, {L"Dashed", 1, L"DASHED"}, {L"DOT", 2, L"DOT"},
                {L"dashdot", 3, L"DASHDOT"},       {L"Hidden", 1, L"DASHED"}, {L"", 1, L"DASHED"}};
    DXFLayer layer(L"0");
    for (const auto& row : rows) {
        layer.SetStyleStr(row.read);
        EXPECT_EQ(layer.Style(), row.style);
        EXPECT_EQ(layer.StyleStr(), row.written);
    }
    layer.SetStyle(static_cast<LineInfo::LINESTYLE>(7));
    EXPECT_EQ(layer.StyleStr(), L"CONTINUOUS");
}

TEST_F(Layers, NamesMustNotHoldElevenCharacters)
{
    for (const wchar_t bad : std::wstring(L"<>/\\\":;?,=`")) {
        const std::wstring name = std::wstring(L"A") + bad + L"B";
        const ErrorString result = DXFLayer::IsValidName(name);
        EXPECT_TRUE(!result);
        EXPECT_EQ(result.Text(),
                  name
                      + L"is an Invalid layer name!\nLayer names may only consist of the following "
                        L"characters:\nA-Z\n0-9\n-_$\n");
        EXPECT_TRUE(!DXFBlock::IsValidBlockName(name));
    }
    for (const wchar_t* good : {L"", L"a b", L"*U7", L"|", L"\u00e4'", L"A-Z_$"})
        EXPECT_FALSE(!DXFLayer::IsValidName(good));
}

TEST_F(Layers, ReferencesAreCountedForTheHost)
{
    DXFLayer layer(L"0");
    EXPECT_TRUE(layer.DecRefCount());
    layer.IncRefCount();
    layer.IncRefCount();
    EXPECT_FALSE(layer.DecRefCount());
    EXPECT_TRUE(layer.DecRefCount());
    EXPECT_TRUE(layer.DecRefCount());
}

TEST_F(Layers, EntitiesAreTakenAndRemoved)
{
    DXFLayer layer(L"0");
    EXPECT_EQ(layer.Add(nullptr), nullptr);
    EXPECT_EQ(layer.NumEntities(), 0U);
    EXPECT_FALSE(layer.Remove(nullptr));
    Fill(layer, 3);
    DXFEntity* middle = layer[1];
    Probe stranger;
    EXPECT_FALSE(layer.Remove(&stranger));
    EXPECT_TRUE(layer.Remove(middle));
    ASSERT_EQ(layer.NumEntities(), 2U);
    EXPECT_EQ(X(layer, 0), 0);
    EXPECT_EQ(X(layer, 1), 2);
    EXPECT_EQ(Probe::s_Counts.living, 3);
}

TEST_F(Layers, AssignmentTakesEverythingButCountsAndIds)
{
    DXFLayer source(L"A");
    source.SetColor(0x123456UL);
    source.SetWidth(2);
    source.SetStyle(LineInfo::DOT);
    source.SetVisible(false);
    Fill(source, 2);
    source.Extents();
    DXFLayer target(L"B");
    target.IncRefCount();
    const unsigned int before = target.ModifiedID();
    target = source;
    EXPECT_EQ(target.Name(), L"A");
    EXPECT_EQ(target.HashName().Hash(), source.HashName().Hash());
    EXPECT_EQ(target.Color(), 0x123456UL);
    EXPECT_EQ(target.Width(), 2);
    EXPECT_EQ(target.Style(), 2);
    EXPECT_FALSE(target.IsVisible());
    EXPECT_EQ(target.NumEntities(), 2U);
    EXPECT_NE(target.ModifiedID(), before);
    EXPECT_NE(target.ModifiedID(), source.ModifiedID());
    EXPECT_TRUE(target.DecRefCount()) << "the count of the target stays";
    DXFLayer& self = target;
    target = self;
    EXPECT_EQ(target.NumEntities(), 2U);
    EXPECT_EQ(Probe::s_Counts.copies, 0);
}

/// Whatever changes one layer leaves the layer that it was assigned from as it was, and copies each entity
/// once.
TEST_F(Layers, ChangesStayWithTheLayerThatIsChanged)
{
    DXFLayer other(L"O");
    const std::pair<const char*, std::function<void(DXFLayer&)>> rows[] = {
        {"Add",
         [](DXFLayer& l) {
             l.Add(new Probe);
         }},
        {"Remove",
         [](DXFLayer& l) {
             l.Remove(l[1]);
         }},
        {"Remove of a stranger",
         [](DXFLayer& l) {
             l.Remove(nullptr);
         }},
        {"Move",
         [](DXFLayer& l) {
             l.Move(1, 1, 1);
         }},
        {"Rotate",
         [](DXFLayer& l) {
             l.Rotate(P(1, 1, 0), 30);
         }},
        {"Scale",
         [](DXFLayer& l) {
             l.Scale(P(1, 1, 0), 3);
         }},
        {"Transform",
         [](DXFLayer& l) {
             l.Transform(Map().Translate(1, 0, 0), GO);
         }},
        {"operator[]",
         [](DXFLayer& l) {
             dynamic_cast<DXFPoint&>(*l[0]).X(99);
         }},
        {"<< target",
         [&](DXFLayer& l) {
             l << other;
         }},
        {"<< source",
         [&](DXFLayer& l) {
             other << l;
         }},
        {">>",
         [&](DXFLayer& l) {
             l >> other;
         }},
        {"InsertCopy",
         [&](DXFLayer& l) {
             l.InsertCopy(other);
         }},
    };
    for (const auto& [name, change] : rows) {
        SCOPED_TRACE(name);
        auto source = std::make_unique<DXFLayer>(L"S");
        Fill(*source, 3);
        DXFLayer layer(L"L");
        layer = *source;
        other.Clear();
        Probe::s_Counts.copies = 0;
        change(layer);
        EXPECT_EQ(Probe::s_Counts.copies, 3);
        ASSERT_EQ(source->NumEntities(), 3U);
        for (size_t i = 0; i < 3; ++i) EXPECT_EQ(X(*source, i), double(i));
        source->Add(new Probe);
        EXPECT_EQ(Probe::s_Counts.copies, 3) << "what is no longer shared is not copied again";
        source.reset();
        for (size_t i = 0; i < layer.NumEntities(); ++i) EXPECT_TRUE(layer[i]->Extents().IsValid());
    }
}

TEST_F(Layers, ReadingCopiesNothing)
{
    DXFLayer source(L"S");
    Fill(source, 3);
    DXFLayer layer(L"L");
    layer = source;
    DXFWriter nobody;
    layer.Draw(nobody, Box2({-9, -9}, {9, 9}), GO);
    layer.Extents();
    std::as_const(layer)[0];
    source.Clear();
    EXPECT_EQ(Probe::s_Counts.copies, 0);
    EXPECT_EQ(layer.NumEntities(), 3U);
}

TEST_F(Layers, BoxesThatAreNotKnownAreNotComputedByAdding)
{
    DXFLayer layer(L"0");
    DXFLayer source(L"S");
    Fill(source, 2);
    Fill(layer, 5);
    layer << source;
    EXPECT_EQ(Probe::s_Counts.boxes, 0);
    ExpectBox(layer.Extents(), P(0, 0, 0), P(4, 8, 0));
    EXPECT_EQ(Probe::s_Counts.boxes, 7);
    layer.Extents();
    EXPECT_EQ(Probe::s_Counts.boxes, 7);
    layer.Add(new Probe(-3, 0));
    EXPECT_EQ(Probe::s_Counts.boxes, 8);
    ExpectBox(layer.Extents(), P(-3, 0, 0), P(4, 8, 0));
    EXPECT_EQ(Probe::s_Counts.boxes, 8);
}

/// Whether the boxes of target and source are known or not, the box after a change is that of all entities.
TEST_F(Layers, ABoxIsNeverThatOfAPart)
{
    const std::function<void(DXFLayer&, DXFLayer&)> changes[] = {
        [](DXFLayer& l, DXFLayer& s) { l << s; }, [](DXFLayer& l, DXFLayer& s) { s >> l; },
        [](DXFLayer& l, DXFLayer& s) { l.InsertCopy(s); },
        [](DXFLayer& l, DXFLayer&) { l.Add(new Probe(7, 7)); },
        [](DXFLayer& l, DXFLayer&) {
            l.Remove(l[0]);
        }};
    for (const auto& change : changes)
        for (int known = 0; known < 4; ++known) {
            DXFLayer layer(L"L");
            DXFLayer source(L"S");
            layer.Add(new Probe(5, 5));
            layer.Add(new Probe(6, 6));
            source.Add(new Probe(-1, 9));
            if (known & 1) layer.Extents();
            if (known & 2) source.Extents();
            change(layer, source);
            GTL::Extents3D<double> all;
            for (size_t i = 0; i < layer.NumEntities(); ++i) all.Update(std::as_const(layer)[i]->Extents());
            EXPECT_EQ(layer.Extents(), all);
        }
}

TEST_F(Layers, EntitiesMoveFromLayerToLayer)
{
    DXFLayer a(L"A");
    DXFLayer b(L"B");
    Fill(a, 1);
    Fill(b, 2);
    const DXFEntity* second = std::as_const(b)[1];
    const unsigned int idOfB = b.ModifiedID();
    EXPECT_EQ(&(a << b), &a);
    EXPECT_EQ(b.NumEntities(), 0U);
    EXPECT_NE(b.ModifiedID(), idOfB);
    ASSERT_EQ(a.NumEntities(), 3U);
    EXPECT_EQ(std::as_const(a)[2], second);
    EXPECT_EQ(&(a >> b), &a);
    EXPECT_EQ(a.NumEntities(), 0U);
    EXPECT_EQ(b.NumEntities(), 3U);
    b << b;
    EXPECT_EQ(b.NumEntities(), 3U);
    b.InsertCopy(b);
    EXPECT_EQ(b.NumEntities(), 6U);
}

TEST_F(Layers, IdsChangeWithTheContents)
{
    DXFLayer layer(L"L");
    DXFLayer other(L"O");
    Fill(layer, 4);
    const struct {
        const char* name;
        bool changes;
        std::function<void()> action;
    } rows[] = {
        {"Add", true,
         [&] {
             layer.Add(new Probe);
         }},
        {"Add null", false,
         [&] {
             layer.Add(nullptr);
         }},
        {"Remove", true,
         [&] {
             layer.Remove(layer[0]);
         }},
        {"Remove a stranger", false,
         [&] {
             layer.Remove(nullptr);
         }},
        {"Move", true,
         [&] {
             layer.Move(1, 0, 0);
         }},
        {"Rotate", true,
         [&] {
             layer.Rotate(P(), 10);
         }},
        {"Scale", true,
         [&] {
             layer.Scale(P(), 2);
         }},
        {"Transform", true,
         [&] {
             layer.Transform(Map(), GO);
         }},
        {"stopped Transform", true,
         [&] {
             layer.Transform(Map(), STOP);
         }},
        {"InsertCopy", false,
         [&] {
             layer.InsertCopy(other);
         }},
        {"setters", false,
         [&] {
             layer.SetColor(1UL), layer.SetVisible(false), layer.SetStyleStr(L"DOT");
         }},
        {"Extents", false,
         [&] {
             layer.Extents();
         }},
        {"<<", true,
         [&] {
             layer << other;
         }},
        {">>", true,
         [&] {
             layer >> other;
         }},
        {"assignment", true,
         [&] {
             layer = other;
         }},
        {"Clear", true,
         [&] {
             layer.Clear();
         }},
    };
    for (const auto& row : rows) {
        const unsigned int before = layer.ModifiedID();
        row.action();
        EXPECT_EQ(layer.ModifiedID() != before, row.changes) << row.name;
    }
}

TEST_F(Layers, MovingTurningAndScalingMapEveryPoint)
{
    DXFLayer layer(L"0");
    layer.Add(new Probe(3, 1));
    layer.Add(new Probe(1, 1));
    layer.Extents();
    layer.Rotate(P(1, 1, 0), 90); // counter-clockwise: (3, 1) goes to (1, 3)
    ExpectBox(layer.Extents(), P(1, 1, 0), P(1, 3, 0));
    layer.Scale(P(1, 1, 0), 2.5);
    ExpectBox(layer.Extents(), P(1, 1, 0), P(1, 6, 0));
    layer.Move(10, 20, 30);
    ExpectBox(layer.Extents(), P(11, 21, 30), P(11, 26, 30));
    EXPECT_EQ(dynamic_cast<const DXFPoint&>(*layer[0]).Point(), P(11, 26, 30));
    layer.Transform(Map().Translate(1, 0, 0), STOP);
    EXPECT_EQ(dynamic_cast<const DXFPoint&>(*layer[0]).Point(), P(11, 26, 30)) << "stopped before the first";
    ExpectBox(layer.Extents(), P(12, 21, 30), P(12, 26, 30));
}

class Counter : public DXFWriter {
public:
    explicit Counter(int stopAfter = 1 << 30) : m_StopAfter(stopAfter) {}
    using DXFWriter::Write;
    void Write(const DXFPoint&) override { keepGoing = ++count < m_StopAfter; }
    int count = 0;
    std::atomic<bool> keepGoing{true};

private:
    int m_StopAfter;
};

TEST_F(Layers, OnlyLayersInViewAreDrawn)
{
    DXFLayer layer(L"0");
    layer.Add(new Probe(0, 0));
    layer.Add(new Probe(10, 10));
    const struct {
        Box2 view;
        int drawn;
    } rows[] = {
        {Box2({4, 4}, {5, 5}), 2},   {Box2({10, 10}, {20, 20}), 2},   {Box2({-5, -5}, {0, 0}), 2},
        {Box2({11, 0}, {20, 9}), 0}, {Box2({-9, 0}, {-0.001, 9}), 0}, {Box2({0, 11}, {9, 20}), 0},
        {Box2({0, -9}, {9, -1}), 0}, {Box2({-99, -99}, {99, 99}), 2},
    };
    for (const auto& row : rows) {
        Counter counter;
        layer.Draw(counter, row.view, counter.keepGoing);
        EXPECT_EQ(counter.count, row.drawn);
    }
    Counter stopping(1);
    layer.Draw(stopping, rows[0].view, stopping.keepGoing);
    EXPECT_EQ(stopping.count, 1);
    Counter empty;
    DXFLayer(L"1").Draw(empty, Box2({-9, -9}, {9, 9}), GO);
    EXPECT_EQ(empty.count, 0);
}

TEST_F(Layers, LocksAreReentrant)
{
    const DXFLayer layer(L"0");
    EXPECT_TRUE(layer.Lock());
    EXPECT_TRUE(layer.Lock());
    layer.Unlock();
    layer.Unlock();
}

} // namespace
