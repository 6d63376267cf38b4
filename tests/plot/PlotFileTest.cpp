#include "plot/PlotFile.h"

#include "dxf/TempFile.h"
#include "plot/PlotKinds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace {

using PlotKinds::FileOfAll;
using PlotKinds::P3;

/// What reading some bytes gave.
struct Reading {
    explicit Reading(std::string_view bytes) : file(".plot", bytes), result(plot.Read(file.Name(), &document))
    {
    }

    TempFile file;
    DXF document;
    PlotFile plot;
    ErrorString result;
};

std::string Written(const DXF& document)
{
    const TempFile file(".plot");
    EXPECT_TRUE(PlotFile().Write(file.Name(), &document));
    return file.Content();
}

std::size_t NumBlockEntities(const DXF& document)
{
    std::size_t count = 0;
    DXF::BlockMap::const_iterator block;
    for (bool more = document.GetFirstBlock(block); more; more = document.GetFNextBlock(block))
        count += static_cast<std::size_t>(block->second->GetDXF()->NumEntities());
    return count;
}

/// A point during whose writing the caller changes its mind.
class PointThatClears : public DXFPoint {
public:
    explicit PointThatClears(std::atomic<bool>& flag) : m_Flag(flag) {}
    void Write(DXFWriter& writer) const override
    {
        m_Flag = false;
        DXFPoint::Write(writer);
    }

private:
    std::atomic<bool>& m_Flag;
};

bool IsEntity(std::int32_t kind)
{
    return kind >= 2 && kind <= 13;
}

} // namespace

TEST(PlotFile, ReadsEveryKindFromItsPublishedBytes)
{
    std::int32_t kind = PlotKinds::FIRST;
    for (const PlotKind& row : PlotKinds::All()) {
        SCOPED_TRACE(row.name);
        PlotBytes bytes;
        row.bytes(bytes.Layer(u"0").Begin(kind++));
        const Reading reading(bytes.File());
        ASSERT_TRUE(reading.result);
        EXPECT_EQ(reading.plot.Ending(), PlotFile::END_MARK);
        ASSERT_EQ(reading.document.NumEntities(), 1);
        row.check(*(*reading.document[0ULL])[0]);
    }
}

TEST(PlotFile, WritesEveryKindAsItsPublishedBytes)
{
    std::int32_t kind = PlotKinds::FIRST;
    for (const PlotKind& row : PlotKinds::All()) {
        SCOPED_TRACE(row.name);
        PlotBytes bytes;
        row.bytes(bytes.Layer(u"0").Begin(kind++));
        DXF document;
        document.Add(row.entity().release());
        EXPECT_EQ(Written(document), bytes.File());
    }
}

TEST(PlotFile, KeepsBlocksAndLayersByteForByte)
{
    const std::string bytes = FileOfAll().File();
    const Reading reading(bytes);
    ASSERT_TRUE(reading.result);
    const DXFBlock* block = reading.document.GetBlock(L"DOOR");
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block->LayerName(), L"WALLS");
    EXPECT_EQ(block->BasePoint(), P3(1, 2, 3));
    EXPECT_EQ(block->BlockTypeFlag(), 64);
    EXPECT_EQ(block->Xref(), L"lib/doors.dxf");
    EXPECT_EQ(block->GetDXF()->NumEntities(), 1);
    ASSERT_EQ(reading.document.NumLayers(), 2U);
    EXPECT_EQ(reading.document[0ULL]->Color(), 0x00FF00U);
    EXPECT_EQ(reading.document[1ULL]->Name(), L"ALL");
    EXPECT_FALSE(reading.document[1ULL]->IsVisible());
    EXPECT_EQ(reading.document[1ULL]->NumEntities(), 12U);
    // All but the two bulges, the image's and the point's meaningless scalars, which are not read.
    const std::string again = Written(reading.document);
    ASSERT_EQ(again.size(), bytes.size());
    EXPECT_EQ(Written(Reading(again).document), again);
}

TEST(PlotFile, GivesInsertsOfBlocksTheDocumentItself)
{
    PlotBytes bytes;
    for (const char16_t* name : {u"A", u"B"}) {
        bytes.Begin(14).String(name).String(u"").Point(0, 0, 0).Int(0).String(u"").Layer(u"0").Begin(13);
        bytes.String(name[0] == u'A' ? u"B" : u"").Point(7, 0, 0).Point(1, 1, 1).Point(0, 0, 1).Double(0);
        bytes.Int(1).Double(0).Int(1).Double(0).Begin(15);
    }
    bytes.Layer(u"0");
    const Reading reading(bytes.File());
    const auto* insert =
        dynamic_cast<const DXFInsert*>((*(*reading.document.GetBlock(L"A")->GetDXF())[0ULL])[0]);
    ASSERT_NE(insert, nullptr);
    EXPECT_EQ(insert->DXF(), &reading.document);
    EXPECT_EQ(insert->Block(), reading.document.GetBlock(L"B"));
    EXPECT_EQ(reading.document.GetBlock(L"A")->GetDXF()->NumBlocks(), 0U);
}

TEST(PlotFile, LeavesOutBlocksWithinBlocks)
{
    DXF document;
    document.AddBlock(L"OUTER")->GetDXF()->AddBlock(L"INNER");
    const TempFile file(".plot");
    PlotFile plot;
    ASSERT_TRUE(plot.Write(file.Name(), &document));
    EXPECT_EQ(plot.BlocksLeftOut(), 1U);
    const Reading reading(file.Content());
    EXPECT_EQ(reading.document.NumBlocks(), 1U);
    EXPECT_EQ(reading.plot.Ending(), PlotFile::END_MARK);
}

TEST(PlotFile, TakesColourWordsOfOldVersionsForIndices)
{
    struct Row {
        std::int32_t version;
        std::uint32_t word;
        unsigned long color;
    };
    // Index 1 is red, which is 0x0000FF as a device colour; index 0 counts as black.
    for (const Row& row : {Row{3, 1, 0x0000FF},
                           {4, 1, 0x0000FF},
                           {4, 300, 0},
                           {4, 0xFFFFFFFF, 0},
                           {3, 255, 0xFFFFFF},
                           {5, 1, 1},
                           {6, 300, 300},
                           {9, 0x102030, 0x102030},
                           {9, 0x81102030, 0x102030}}) {
        SCOPED_TRACE(std::to_string(row.version) + ", " + std::to_string(row.word));
        PlotBytes bytes(row.version);
        bytes.Layer(u"0", true, row.word).Begin(7).Int(row.word).Point(0, 0, 0);
        bytes.Begin(4).Int(row.word).Int(0).Float(0).Point(0, 0, 0).Point(0, 0, 0);
        const Reading reading(bytes.File());
        ASSERT_TRUE(reading.result);
        EXPECT_EQ(reading.plot.Version(), row.version);
        const DXFLayer& layer = *reading.document[0ULL];
        ASSERT_EQ(layer.NumEntities(), 2U);
        EXPECT_EQ(layer.Color(), row.color);
        EXPECT_EQ(layer[0]->Color(), row.color);
        EXPECT_EQ(layer[1]->Color(), row.color);
    }
}

TEST(PlotFile, ReadsImagesOfTheFirstVersionWithoutTheirAttributes)
{
    PlotBytes bytes(3);
    bytes.Layer(u"0")
        .Begin(11)
        .Int(1)
        .Int(1)
        .String(u"no such picture.png")
        .Doubles({0.5, 0, 0.25, 0, 2, 0.125});
    bytes.Count(2).Doubles({1, 2, 3, 4}).Doubles({11, 12, 640, 480}).Begin(7).Int(1).Point(5, 6, 7);
    const Reading reading(bytes.File());
    ASSERT_EQ(reading.document.NumEntities(), 2);
    const auto& image = dynamic_cast<const DXFImage&>(*(*reading.document[0ULL])[0]);
    EXPECT_EQ(image.FileName(), L"no such picture.png");
    EXPECT_EQ(image.InsertPoint(), P3(11, 12, 0));
    EXPECT_EQ(image.Width(), 640);
    EXPECT_EQ(image.Brightness(), 50) << "neutral";
    EXPECT_EQ(image.ClipBoundary().size(), 2U);
}

TEST(PlotFile, RefusesOtherVersionsAndClearsTheDocument)
{
    for (const std::int32_t version : {7, 8, 2, 10, 0, -1}) {
        DXF document;
        document.AddLayer(L"BEFORE");
        const TempFile file(".plot", PlotBytes(version).File());
        const ErrorString result = PlotFile().Read(file.Name(), &document);
        EXPECT_EQ(result.Text(), L"Invalid file version") << version;
        EXPECT_EQ(document.NumLayers(), 1U) << version;
    }
}

TEST(PlotFile, SaysWhatIsWrongInThePublishedWords)
{
    DXF document;
    document.AddLayer(L"BEFORE");
    PlotFile plot;
    EXPECT_EQ(plot.Write(L"", &document).Text(), L"Empty file name, cannot write plot!");
    EXPECT_EQ(plot.Read(L"", &document).Text(), L"Empty file name, cannot save plot!");
    const std::string magic = PlotBytes().File().substr(0, 17);
    for (const std::string& start :
         {std::string(), magic.substr(0, 16), magic.substr(0, 16) + "Q", std::string(40, 'x')}) {
        const TempFile file(".plot", start);
        EXPECT_EQ(plot.Read(file.Name(), &document).Text(), L"Not a valid plot file!");
        EXPECT_EQ(document.NumLayers(), 2U) << "the document is as it was";
    }
    const std::wstring nowhere = L"no such folder/a.plot";
    EXPECT_EQ(
        plot.Read(nowhere, &document).Text().find(L"Error opening file \"" + nowhere + L"\" for reading!"),
        0U);
    EXPECT_EQ(
        plot.Write(nowhere, &document).Text().find(L"Error opening file \"" + nowhere + L"\" for writing!"),
        0U);
    EXPECT_EQ(plot.Ending(), PlotFile::NOT_READ);
}

TEST(PlotFile, KeepsTheOrderOfLayersWhereZeroIsNotTheFirst)
{
    const Reading reading(PlotBytes().Layer(u"A").Layer(u"0").Layer(u"B").Layer(u"a", false).File());
    EXPECT_EQ(reading.document.GetLayerOrder(), (std::vector<std::wstring>{L"A", L"0", L"B"}));
    EXPECT_FALSE(reading.document[0ULL]->IsVisible()) << "names in another case are the same layer";
}

TEST(PlotFile, PlacesZeroByItsFirstRecordInEachDrawing)
{
    using Order = std::vector<std::wstring>;
    PlotBytes bytes;
    bytes.Layer(u"0").Layer(u"A");
    for (const char16_t* name : {u"B", u"C"}) {
        bytes.Begin(14).String(name).String(u"").Point(0, 0, 0).Int(0).String(u"");
        bytes.Layer(u"A").Layer(u"0").Layer(u"B").Layer(u"0").Begin(15);
    }
    const Reading reading(bytes.Layer(u"0").File());
    EXPECT_EQ(reading.document.GetLayerOrder(), (Order{L"0", L"A"}));
    for (const wchar_t* name : {L"B", L"C"})
        EXPECT_EQ(reading.document.GetBlock(name)->GetDXF()->GetLayerOrder(), (Order{L"A", L"0", L"B"}));
}

TEST(PlotFile, StopsAtALayerThatCannotBe)
{
    PlotBytes bytes;
    bytes.Layer(u"A").Layer(u"A/B").Layer(u"C");
    const Reading reading(bytes.File());
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.plot.Ending(), PlotFile::BAD_LAYER);
    EXPECT_EQ(reading.plot.EndOffset(), bytes.Records()[1].start);
    EXPECT_EQ(reading.document.GetLayerOrder(), (std::vector<std::wstring>{L"0", L"A"}));
}

TEST(PlotFile, PassesOverTheHeadsOfUnknownKinds)
{
    PlotBytes bytes;
    for (const std::int32_t kind : {0, 16, -2, std::numeric_limits<std::int32_t>::min()}) bytes.Begin(kind);
    bytes.Layer(u"0").Begin(7).Int(1).Point(1, 2, 3);
    const Reading reading(bytes.File());
    EXPECT_EQ(reading.plot.UnknownRecords(), 4U);
    EXPECT_EQ(reading.document.NumEntities(), 1);
}

TEST(PlotFile, AddsEntitiesBeforeAnyLayerToLayerZero)
{
    const Reading reading(PlotBytes().Begin(7).Int(1).Point(1, 2, 3).File());
    EXPECT_EQ(reading.document[0ULL]->NumEntities(), 1U);
}

TEST(PlotFile, KeepsOfEveryPrefixWhatIsWhole)
{
    PlotBytes bytes = FileOfAll();
    const std::string file = bytes.File();
    const auto& records = bytes.Records();
    for (std::size_t length = 21; length <= file.size(); ++length) {
        SCOPED_TRACE(length);
        const Reading reading(file.substr(0, length));
        ASSERT_TRUE(reading.result);
        const auto broken =
            std::find_if(records.begin(), records.end(), [=](const auto& r) { return r.end > length; });
        const auto whole = static_cast<std::size_t>(
            std::count_if(records.begin(), broken, [](const auto& r) { return IsEntity(r.kind); }));
        EXPECT_EQ(static_cast<std::size_t>(reading.document.NumEntities())
                      + NumBlockEntities(reading.document),
                  whole);
        const std::size_t start = broken == records.end() ? records.back().end : broken->start;
        EXPECT_EQ(reading.plot.EndOffset(), start);
        EXPECT_EQ(reading.plot.Ending(), length == file.size() ? PlotFile::END_MARK
                                         : length == start     ? PlotFile::END_OF_DATA
                                                               : PlotFile::EARLY);
    }
}

TEST(PlotFile, BelievesNoCountThatTheRestOfTheFileCannotHold)
{
    PlotBytes bytes = FileOfAll();
    const std::string file = bytes.File();
    const auto& records = bytes.Records();
    for (const std::size_t place : bytes.Counts()) {
        const auto record =
            std::find_if(records.begin(), records.end(), [=](const auto& r) { return r.end > place; });
        const auto before =
            std::count_if(records.begin(), record, [](const auto& r) { return IsEntity(r.kind); });
        for (const std::int64_t lie : {std::int64_t{-1}, std::int64_t{0x7FFFFFFF}, -std::int64_t{0x80000000},
                                       static_cast<std::int64_t>(file.size())}) {
            SCOPED_TRACE(std::to_string(place) + ": " + std::to_string(lie));
            std::string lying = file;
            lying.replace(place, 4, PlotBytes::IntBytes(lie));
            const Reading reading(lying);
            ASSERT_TRUE(reading.result);
            EXPECT_EQ(reading.plot.Ending(), PlotFile::EARLY);
            EXPECT_EQ(reading.plot.EndOffset(), record->start);
            EXPECT_EQ(reading.document.NumEntities() + static_cast<int>(NumBlockEntities(reading.document)),
                      before);
        }
    }
}

TEST(PlotFile, ComesToAnEndWhateverAWordSays)
{
    const std::string file = FileOfAll().File();
    for (std::size_t place = 21; place + 4 <= file.size(); ++place)
        for (const std::int64_t word : {0, 1, 14, 15, 255, -1}) {
            std::string lying = file;
            lying.replace(place, 4, PlotBytes::IntBytes(word));
            const Reading reading(lying);
            ASSERT_TRUE(reading.result) << place << ": " << word;
            EXPECT_NE(reading.plot.Ending(), PlotFile::NOT_READ) << place << ": " << word;
        }
}

TEST(PlotFile, DoesNotAskWhereRecordsEnd)
{
    PlotBytes bytes = FileOfAll();
    const std::string file = bytes.File();
    std::string lying = file;
    for (const auto& record : bytes.Records())
        lying.replace(record.start + 4, 4, PlotBytes::IntBytes(0xCCCCCCCC));
    EXPECT_EQ(Written(Reading(lying).document), Written(Reading(file).document));
}

TEST(PlotFile, HoldsRecordsLargerThanAnyBuffer)
{
    constexpr int VERTICES = 50'000;
    constexpr std::size_t CHARACTERS = 300'001;
    DXF document;
    auto* polyline = new DXFPolyline();
    for (int i = 0; i < VERTICES; ++i) polyline->PushBack(i, -i);
    document.Add(polyline);
    std::wstring string(CHARACTERS, L'x');
    for (std::size_t i = 0; i < CHARACTERS; i += 7) string[i] = static_cast<wchar_t>(0x10000 + i);
    for (const std::wstring& content : {string, std::wstring(CHARACTERS, L'\x4E2D')}) {
        auto* text = new DXFText();
        text->SetText(content);
        document.Add(text);
    }
    document.Add(new DXFPoint(1, 2, 3));

    const Reading reading(Written(document));
    EXPECT_EQ(reading.plot.Ending(), PlotFile::END_MARK);
    const DXFLayer& layer = *reading.document[0ULL];
    ASSERT_EQ(layer.NumEntities(), 4U);
    EXPECT_TRUE(dynamic_cast<const DXFPolyline&>(*layer[0]).GetPoly() == polyline->GetPoly());
    EXPECT_EQ(dynamic_cast<const DXFText&>(*layer[1]).Text(), string);
    EXPECT_EQ(dynamic_cast<const DXFText&>(*layer[2]).Text(), std::wstring(CHARACTERS, L'\x4E2D'));
}

TEST(PlotFile, KeepsNumbersThatHaveNoMeaning)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    PlotBytes bytes;
    bytes.Layer(u"0")
        .Begin(9)
        .Int(0)
        .String(u"")
        .Int(77)
        .Double(0)
        .Float(1)
        .Int(-5)
        .Point(nan, 1e308, -0.0)
        .String(u"");
    bytes.Begin(4).Int(0).Int(99).Float(-1).Point(nan, 0, 0).Point(0, 0, 0);
    const std::string file = bytes.File();
    EXPECT_EQ(Written(Reading(file).document), file);
}

TEST(PlotFile, StopsWhenItsCallerSaysSo)
{
    const std::atomic<bool> stop{false};
    DXF document;
    const TempFile file(".plot", FileOfAll().File());
    PlotFile plot;
    plot.SetKeepGoing(stop);
    EXPECT_TRUE(plot.Read(file.Name(), &document));
    EXPECT_EQ(plot.Ending(), PlotFile::STOPPED);
    EXPECT_EQ(document.NumEntities(), 0);

    const int entities = 1'000;
    std::atomic<bool> keepGoing{true};
    plot.SetKeepGoing(keepGoing);
    for (DXFLayer* layer : {document[0ULL], document.AddLayer(L"A")})
        for (int i = 0; i < entities; ++i)
            layer->Add(i == entities / 2 ? new PointThatClears(keepGoing) : new DXFPoint(i, i, i));
    for (const bool fromTheStart : {true, false}) {
        keepGoing = !fromTheStart;
        ASSERT_TRUE(plot.Write(file.Name(), &document));
        const Reading reading(file.Content());
        EXPECT_EQ(reading.plot.Ending(), PlotFile::END_MARK) << "the file is whole";
        EXPECT_EQ(reading.document.NumLayers(), 2U);
        EXPECT_GE(reading.document.NumEntities(), fromTheStart ? 0 : entities / 2);
        EXPECT_LT(reading.document.NumEntities(), fromTheStart ? 1 : entities / 2 + 100);
    }
}

TEST(PlotFile, SharesOnePictureAmongTheImagesOfAFile)
{
    const TempFile picture(".bmp");
    // 1 by 1 pixel of 24 bits, in a row of four bytes.
    PlotBytes bmp;
    const std::size_t head = bmp.Size();
    bmp.Raw("BM").Int(58).Int(0).Int(54).Int(40).Int(1).Int(1).Raw(std::string_view("\1\0\x18\0", 4));
    bmp.Int(0).Int(4).Int(0).Int(0).Int(0).Int(0).Int(0xFFFFFF);
    std::string content = bmp.File().substr(head);
    content.resize(58);
    picture.Write(content);
    const std::string name = picture.Path().filename().string();
    PlotBytes bytes;
    bytes.Layer(u"0");
    for (int i = 0; i < 2; ++i) {
        bytes.Begin(11).Int(0).Int(2).Int(50).Int(50).Int(0).String(std::u16string(name.begin(), name.end()));
        bytes.String(u"")
            .String(u"")
            .String(u"")
            .Doubles({1, 0, 0, 0, 1, 0})
            .Count(3)
            .Doubles({0, 0, 0, 4, 4, 4});
        bytes.Doubles({0, 0, 4, 4, 0});
    }
    const Reading reading(bytes.File());
    ASSERT_EQ(reading.document.NumEntities(), 2);
    const auto& first = dynamic_cast<const DXFImage&>(*(*reading.document[0ULL])[0]);
    const auto& second = dynamic_cast<const DXFImage&>(*(*reading.document[0ULL])[1]);
    ASSERT_NE(first.GetPicture(), nullptr) << "found beside the drawing";
    EXPECT_EQ(first.GetPicture(), second.GetPicture());
    EXPECT_EQ(second.Width(), 1) << "of the picture";
    // The corner (0, 4) of four rows was the upper left one; of one row that is (0, 1).
    EXPECT_EQ(second.ClipBoundary()[1], (GTL::Point2D<double>(0, 1)));
}
