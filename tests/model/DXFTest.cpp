#include "model/DXF.h"
#include "model/DXFInsert.h"
#include "model/DXFWriter.h"
#include "model/Probe.h"

#include <gmock/gmock.h>

#include <limits>
#include <memory>
#include <utility>

namespace {

using testing::ElementsAre;
using Names = std::vector<std::wstring>;
using P = GTL::Point3D<double>;

class Documents : public testing::Test {
protected:
    void SetUp() override { Probe::s_Counts = {}; }
    void TearDown() override
    {
        EXPECT_EQ(Probe::s_Counts.living, 0) << "entities leaked, or destroyed twice";
    }

    static void AddLayers(DXF& document, const Names& names)
    {
        for (const std::wstring& name : names) ASSERT_NE(document.AddLayer(name), nullptr);
    }
};

TEST_F(Documents, ANewOneHasLayerZero)
{
    DXF document;
    EXPECT_EQ(document.NumLayers(), 1U);
    EXPECT_EQ(document.NumBlocks(), 0U);
    EXPECT_EQ(document.NumEntities(), 0);
    EXPECT_THAT(document.GetLayerOrder(), ElementsAre(L"0"));
    EXPECT_FALSE(document.Extents().IsValid());
    document.Add(new Probe);
    EXPECT_EQ(document[L"0"]->NumEntities(), 1U) << "layer 0 is active";
}

TEST_F(Documents, LayersAreAddedOnce)
{
    DXF document;
    const unsigned int before = document.ModifiedID();
    DXFLayer* walls = document.AddLayer(L"Walls");
    ASSERT_NE(walls, nullptr);
    EXPECT_EQ(document.ModifiedID(), before + 1);
    for (const wchar_t* bad : {L"Walls", L"WALLS", L"", L"A;B", static_cast<const wchar_t*>(nullptr)})
        EXPECT_EQ(document.AddLayer(bad), nullptr);
    EXPECT_EQ(document.ModifiedID(), before + 1);
    EXPECT_TRUE(document.HasLayer(L"walls"));
    EXPECT_EQ(document[L"walls"], nullptr);
    EXPECT_EQ(document[L"Walls"], walls);
    EXPECT_EQ(document[HashedString<wchar_t>(L"wALLS")], walls);
    EXPECT_FALSE(document.HasLayer(static_cast<const wchar_t*>(nullptr)));
    EXPECT_EQ(document[static_cast<const wchar_t*>(nullptr)], nullptr);
}

template <class Position>
void ExpectAt(DXF& document, Position position, const DXFLayer* layer)
{
    EXPECT_EQ(document[position], layer);
    EXPECT_EQ(std::as_const(document)[position], layer);
}

/// Also by a plain 0, which is a null name as well.
TEST_F(Documents, LayersAreFoundByPositionsOfAnyIntegerType)
{
    DXF document;
    DXFLayer* walls = document.AddLayer(L"Walls");
    EXPECT_EQ(document[0], document[L"0"]);
    EXPECT_EQ(std::as_const(document)[0], document[L"0"]);
    EXPECT_EQ(document[0U], document[L"0"]);
    ExpectAt(document, 1, walls);
    ExpectAt(document, 1U, walls);
    ExpectAt(document, 1L, walls);
    ExpectAt(document, 1ULL, walls);
    ExpectAt(document, std::size_t{1}, walls);
    ExpectAt(document, static_cast<unsigned char>(1), walls);
    ExpectAt(document, -1, nullptr);
    ExpectAt(document, std::numeric_limits<long long>::min(), nullptr);
}

TEST_F(Documents, AConstOneGivesLayersAndBlocksThatCanBeChanged)
{
    DXF document;
    DXFBlock* block = document.AddBlock(L"B");
    const DXF& same = document;
    for (DXFLayer* layer : {same[L"0"], same[std::wstring(L"0")], same[HashedString<wchar_t>(L"0")], same[0]})
        layer->Add(new Probe);
    EXPECT_EQ(document[L"0"]->NumEntities(), 4U);
    DXFBlock* found = same.GetBlock(L"B");
    EXPECT_EQ(found, block);
    DXF* inner = std::as_const(*block).GetDXF();
    EXPECT_EQ(inner, block->GetDXF());
}

TEST_F(Documents, FailuresHaveTheirTexts)
{
    DXF document;
    AddLayers(document, {L"A", L"B"});
    const auto text = [](const ErrorString& result) {
        return !result ? result.Text() : L"(success)";
    };
    const wchar_t* none = nullptr;
    EXPECT_EQ(text(document.RemoveLayer(none)), L"Invalid layer name \"\"");
    EXPECT_EQ(text(document.RemoveLayer(L"0")), L"Layer \"0\" cannot be removed.");
    EXPECT_EQ(text(document.RemoveLayer(L"C")), L"Layer not found");
    EXPECT_EQ(text(document.RemoveLayer(L"")), L"Layer not found");
    EXPECT_EQ(text(document.RemoveLayer(*document[L"0"])), L"Layer \"0\" cannot be removed.");
    EXPECT_EQ(text(document.RenameLayer(L"0", L"X")), L"Layer \"0\" cannot be renamed.");
    EXPECT_EQ(text(document.RenameLayer(L"A", L"b")), L"Cannot rename \"A\". Layer \"b\" already exists!");
    EXPECT_EQ(text(document.RenameLayer(L"A", L"a")), L"Cannot rename \"A\". Layer \"a\" already exists!");
    EXPECT_EQ(text(document.RenameLayer(L"C", L"D")), L"Layer \"C\" does not exist!");
    EXPECT_EQ(text(document.RenameLayer(none, L"D")), L"Layer \"\" does not exist!");
    EXPECT_EQ(text(document.SetActiveLayer(none)), L"Layer \"\" not found.");
    EXPECT_EQ(text(document.SetActiveLayer(L"a")), L"Layer \"a\" not found.");
    // A buffer of 100 characters has room for 99 and their end; the fixed text takes 19 of them.
    EXPECT_EQ(text(document.SetActiveLayer(std::wstring(80, L'%'))),
              L"Layer \"" + std::wstring(80, L'%') + L"\" not found.");
    EXPECT_EQ(text(document.SetActiveLayer(std::wstring(81, L'%'))),
              L"Layer \"" + std::wstring(81, L'%') + L"\" not found");
    EXPECT_EQ(text(document.SetActiveLayer(std::wstring(300, L'x'))), L"Layer \"" + std::wstring(92, L'x'));
}

TEST_F(Documents, RenamedLayersComeOnTop)
{
    DXF document;
    AddLayers(document, {L"A", L"B", L"C"});
    DXFLayer* a = document[L"A"];
    const unsigned int before = document.ModifiedID();
    EXPECT_FALSE(!document.RenameLayer(L"a", L"bad;name"));
    EXPECT_THAT(document.GetLayerOrder(), ElementsAre(L"0", L"B", L"C", L"bad;name"));
    EXPECT_EQ(document[L"bad;name"], a);
    EXPECT_FALSE(document.HasLayer(L"A"));
    EXPECT_FALSE(!document.RenameLayer(L"B", nullptr));
    EXPECT_TRUE(document.HasLayer(L""));
    EXPECT_EQ(document.ModifiedID(), before + 2);
}

TEST_F(Documents, OrderChangesOnlyWhenLayersMove)
{
    DXF document;
    AddLayers(document, {L"A", L"B", L"C"});
    unsigned int id = document.ModifiedID();
    document.BringToFront(L"C");
    document.BringToFront(L"a");
    document.BringToFront(L"X");
    document.MoveToBack(L"0");
    document.MoveToBack(L"x");
    document.SetLayerOrder({L"C", L"x", L"C"});
    EXPECT_EQ(document.ModifiedID(), id);
    document.SetLayerOrder({L"A", L"x", L"B"});
    EXPECT_THAT(document.GetLayerOrder(), ElementsAre(L"0", L"C", L"A", L"B"));
    EXPECT_EQ(document.ModifiedID(), id + 2);
    document.MoveToBack(L"A");
    document.BringToFront(L"C");
    EXPECT_THAT(document.GetLayerOrder(), ElementsAre(L"A", L"0", L"B", L"C"));
    EXPECT_EQ(document.ModifiedID(), id + 4);
}

TEST_F(Documents, EntitiesGoToNamedLayers)
{
    DXF document;
    const std::wstring empty;
    DXFEntity* first = new Probe;
    EXPECT_EQ(document.Add(empty, first, false), first);
    EXPECT_EQ(document[L"0"]->NumEntities(), 1U);
    EXPECT_EQ(document.Add(L"New", new Probe, false), nullptr);
    EXPECT_EQ(Probe::s_Counts.living, 1) << "no layer, so the entity goes";
    EXPECT_NE(document.Add(L"New", new Probe, true), nullptr);
    EXPECT_NE(document.Add(L"NEW", new Probe, false), nullptr);
    EXPECT_THAT(document.GetLayerOrder(), ElementsAre(L"0", L"New"));
    EXPECT_NE(document.Add(L"bad;name", new Probe, true), nullptr);
    EXPECT_EQ(document[L"New"]->NumEntities(), 3U) << "a layer that cannot be made is the last named one";
    document.Add(new Probe);
    EXPECT_EQ(document[L"0"]->NumEntities(), 2U) << "names do not make a layer active";
    const std::unique_ptr<Probe> kept(new Probe);
    EXPECT_EQ(document.Add(static_cast<const wchar_t*>(nullptr), kept.get(), true), nullptr);
    EXPECT_EQ(document.Add(L"New", nullptr, true), nullptr);
    EXPECT_EQ(document.NumEntities(), 5);
}

TEST_F(Documents, RemovedLayersLeaveTheirPlacesEmpty)
{
    DXF document;
    AddLayers(document, {L"A"});
    ASSERT_FALSE(!document.SetActiveLayer(L"A"));
    EXPECT_FALSE(!document.RemoveLayer(L"a"));
    EXPECT_EQ(document.Add(new Probe), nullptr);
    EXPECT_EQ(document.Add(L"A", new Probe, false), nullptr);
    EXPECT_EQ(document.Add(L"bad;name", new Probe, true), nullptr) << "no last named layer to fall back on";
    EXPECT_EQ(Probe::s_Counts.living, 0);
    EXPECT_NE(document.Add(L"A", new Probe, true), nullptr);
    EXPECT_EQ(document.Add(new Probe), nullptr);
    EXPECT_TRUE(!document.SetActiveLayer(L"none"));
    EXPECT_EQ(document.Add(new Probe), nullptr);
    DXFLayer* a = document[L"A"];
    EXPECT_FALSE(!document.RemoveLayer(a));
    EXPECT_NE(a, nullptr);
}

TEST_F(Documents, ClearingLeavesANewDocument)
{
    DXF document;
    AddLayers(document, {L"A"});
    document.Add(L"A", new Probe, false);
    document.AddBlock(L"B")->GetDXF()->Add(new Probe);
    document.AddBlock(L"B");
    const unsigned int before = document.ModifiedID();
    document.Clear();
    EXPECT_EQ(Probe::s_Counts.living, 0);
    EXPECT_EQ(document.ModifiedID(), before + 1);
    EXPECT_THAT(document.GetLayerOrder(), ElementsAre(L"0"));
    EXPECT_EQ(document.NumBlocks(), 0U);
    EXPECT_NE(document.Add(new Probe), nullptr);
}

TEST_F(Documents, BlocksAreFoundByTheirExactNames)
{
    DXF document;
    DXFBlock* old = document.AddBlock(L"b");
    old->GetDXF()->Add(L"Doors", new Probe, true);
    old->GetDXF()->AddLayer(L"Empty");
    document.AddBlock(L"B");
    document.AddBlock(L";");
    EXPECT_EQ(document.AddBlock(static_cast<const wchar_t*>(nullptr)), nullptr);
    EXPECT_TRUE(document.HasBlock(L"b"));
    EXPECT_FALSE(document.HasBlock(L"c"));
    EXPECT_EQ(document.GetBlock(L"b"), old);
    EXPECT_EQ(std::as_const(document).GetBlock(std::wstring(L"x")), nullptr);
    EXPECT_TRUE(document.IsLayerUsedInBlock(L"DOORS"));
    EXPECT_FALSE(document.IsLayerUsedInBlock(L"Empty"));
    Names names;
    DXF::BlockMap::const_iterator it;
    for (bool more = document.GetFirstBlock(it); more; more = document.GetFNextBlock(it))
        names.push_back(it->first);
    EXPECT_THAT(names, ElementsAre(L";", L"B", L"b"));
    EXPECT_FALSE(document.GetFNextBlock(it)) << "the end stays the end";
    EXPECT_FALSE(DXF().GetFirstBlock(it));
    DXFBlock* replacement = document.AddBlock(L"b");
    EXPECT_EQ(document.GetBlock(L"b"), replacement);
    EXPECT_EQ(document.NumBlocks(), 3U);
    EXPECT_EQ(old->GetDXF()->NumEntities(), 1) << "a replaced block lives on";
    EXPECT_FALSE(document.IsLayerUsedInBlock(L"Doors"));
}

TEST_F(Documents, BlocksKeepTheirAttributes)
{
    DXFBlock block(L"Door");
    EXPECT_EQ(block.BasePoint(), P());
    EXPECT_EQ(block.BlockTypeFlag(), 0);
    EXPECT_EQ(block.LayerName(), L"");
    block.SetLayerName(L"Walls");
    EXPECT_EQ(block.HashLayerName(), HashedString<wchar_t>(L"WALLS"));
    block.GetDXF()->Add(new Probe(1, 2));
    EXPECT_EQ(block.Extents().MaxX(), 1);
    block.GetDXF()->Add(new Probe(5, 2));
    EXPECT_EQ(block.Extents().MaxX(), 1) << "a known box is kept";
    const unsigned int before = block.ModifiedID();
    block.Clear();
    EXPECT_NE(block.ModifiedID(), before);
    EXPECT_FALSE(block.Extents().IsValid());
    block.GetDXF()->Add(new Probe(5, 2));
    EXPECT_EQ(block.Extents().MaxX(), 5);
    EXPECT_TRUE(block.DecRefCount());
}

TEST_F(Documents, BoxesCoverAllLayersAndDrawingOnlyVisibleOnes)
{
    DXF document;
    AddLayers(document, {L"A", L"B"});
    document.Add(L"A", new Probe(1, 1), false);
    document.Add(L"B", new Probe(5, 9), false);
    document[L"B"]->SetVisible(false);
    EXPECT_EQ(document.Extents().MinPnt(), P(1, 1, 0));
    EXPECT_EQ(document.Extents().MaxPnt(), P(5, 9, 0));
    struct : DXFWriter {
        using DXFWriter::Write;
        void Write(const DXFPoint& point) override { xs.push_back(point.X()); }
        std::vector<double> xs;
    } writer;
    const std::atomic<bool> go{true};
    document.Draw(writer, GTL::Extents2D<double>({0, 0}, {99, 99}), go);
    EXPECT_THAT(writer.xs, ElementsAre(1));
    DXFWriter nobody;
    document.Draw(nobody, GTL::Extents2D<double>({0, 0}, {99, 99}), go);
    document.Transform(GTL::Transformation<P>().Translate(10, 0, 0), go);
    EXPECT_EQ(document.Extents().MaxX(), 15);
    document.Transform(GTL::Transformation<P>().Translate(10, 0, 0), std::atomic<bool>{false});
    EXPECT_EQ(document.Extents().MaxX(), 15);
}

TEST_F(Documents, CopiesShareAndTheLastOneFrees)
{
    auto source = std::make_unique<DXF>();
    AddLayers(*source, {L"A"});
    source->Add(L"A", new Probe, false);
    source->AddBlock(L"B")->GetDXF()->Add(new Probe);
    DXF copy(*source);
    EXPECT_EQ(copy[L"A"], (*source)[L"A"]);
    EXPECT_EQ(copy.GetBlock(L"B"), source->GetBlock(L"B"));
    EXPECT_EQ(copy.ModifiedID(), source->ModifiedID());
    DXF assigned;
    assigned.Add(new Probe);
    assigned = copy;
    const DXF& self = assigned;
    assigned = self;
    EXPECT_EQ(Probe::s_Counts.living, 2);
    source.reset();
    EXPECT_EQ(Probe::s_Counts.living, 2);
    EXPECT_FALSE(!copy.RemoveLayer(L"A"));
    EXPECT_EQ(assigned[L"A"]->NumEntities(), 1U);
    assigned.Clear();
    copy = DXF();
    EXPECT_EQ(Probe::s_Counts.living, 0);
}

TEST_F(Documents, ABlocksDocumentCanTakeThePlaceOfItsOwner)
{
    DXF document;
    document.Add(new Probe);
    DXF* inner = document.AddBlock(L"B")->GetDXF();
    inner->Add(L"In", new Probe, true);
    inner->AddBlock(L"Deeper")->GetDXF()->Add(new Probe);
    document = *inner;
    EXPECT_EQ(Probe::s_Counts.living, 2);
    EXPECT_THAT(document.GetLayerOrder(), ElementsAre(L"0", L"In"));
    EXPECT_TRUE(document.HasBlock(L"Deeper"));
}

/// Inserts never point to a document that is gone: they turn to one that has their layer or block too.
TEST_F(Documents, InsertsOutliveTheDocumentTheyResolveIn)
{
    auto source = std::make_unique<DXF>();
    source->AddBlock(L"Leaf")->GetDXF()->Add(new Probe(7, 8));
    const auto add = [&](DXF& where, const wchar_t* name) {
        auto* insert = new DXFInsert(name, P(1, 1, 0), 0);
        insert->SetDXF(source.get());
        where.Add(insert);
        return insert;
    };
    const DXFInsert* inBlock = add(*source->AddBlock(L"Branch")->GetDXF(), L"Leaf");
    const DXFInsert* inNested =
        add(*source->GetBlock(L"Branch")->GetDXF()->AddBlock(L"Own")->GetDXF(), L"Leaf");
    const DXFInsert* onLayer = add(*source, L"Branch");
    AddLayers(*source, {L"Gone"});
    ASSERT_FALSE(!source->SetActiveLayer(L"Gone"));
    const DXFInsert* onRemoved = add(*source, L"Leaf");
    DXF copy(*source);
    EXPECT_FALSE(!source->RemoveLayer(L"Gone"));
    EXPECT_EQ(onRemoved->DXF(), &copy);
    EXPECT_EQ(onLayer->DXF(), source.get());
    source.reset();
    for (const DXFInsert* insert : {inBlock, inNested, onLayer}) EXPECT_EQ(insert->DXF(), &copy);
    EXPECT_EQ(copy.Extents().MaxX(), 9); // 1 + 1 + 7
}

TEST_F(Documents, NestingDepthDoesNotMatterToDestruction)
{
    constexpr int DEPTH = 30'000;
    DXF document;
    DXF* inner = &document;
    for (int i = 0; i < DEPTH; ++i) inner = inner->AddBlock(L"B")->GetDXF();
    inner->Add(new Probe);
}

} // namespace
