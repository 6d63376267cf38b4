#include "dxf/DXFFile.h"
#include "dxf/TempFile.h"

#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFImage.h"
#include "model/DXFInsert.h"
#include "model/DXFLine.h"
#include "model/DXFMText.h"
#include "model/DXFPolygon.h"
#include "model/DXFSolid.h"
#include "model/DXFText.h"
#include "model/InsertExploder.h"

#include <memory>

namespace {

const std::atomic<bool> GO{true};

/// Pairs written in one line each: "0 LINE|8 A|10 1.5" becomes the text of the pairs, LF ends.
std::string Pairs(std::string_view list)
{
    std::string text;
    while (!list.empty()) {
        const std::string_view pair = list.substr(0, list.find('|'));
        list.remove_prefix(std::min(pair.size() + 1, list.size()));
        const std::size_t blank = std::min(pair.find(' '), pair.size());
        text += std::string(pair.substr(0, blank)) + "\n"
                + std::string(pair.substr(std::min(blank + 1, pair.size()))) + "\n";
    }
    return text;
}

std::string Entities(std::string_view list)
{
    return Pairs("0 SECTION|2 ENTITIES") + Pairs(list) + Pairs("0 ENDSEC|0 EOF");
}

struct Reading {
    DXF document;
    DXFFile file;
    ErrorString result = true;

    explicit Reading(const std::string& text, bool clearAll = true, bool documentLayers = false,
                     bool toWorld = false)
    {
        const TempFile temp(".dxf", text);
        file.SetBlocksUseDocumentLayers(documentLayers);
        file.SetExtrusionsToWorld(toWorld);
        file.SetFitsTexts(toWorld);
        result = file.Read(temp.Name(), document, GO, clearAll);
    }
    template <class Entity>
    const Entity* Only(const wchar_t* layer = L"A")
    {
        const DXFLayer* found = document[HashedString<wchar_t>(layer)];
        return found && found->NumEntities() == 1 ? dynamic_cast<const Entity*>((*found)[0]) : nullptr;
    }
};

GTL::Point3D<double> P(double x, double y, double z = 0, double b = 0)
{
    return {x, y, z, b};
}

constexpr const char* LINE = "0 LINE|8 A|10 1|20 2|30 3|11 4|21 5|31 6";

} // namespace

TEST(DXFRead, SaysWhatIsWrongAndWhere)
{
    struct Row {
        std::string text;
        const wchar_t* message;
    };
    const Row rows[] = {
        {"", L"Error Line 1. No data; expected 0!"},
        {"999\n", L"Error Line 2. No data; expected group name!"},
        {"999\nnote\n", L"Error Line 3. No data; expected 0!"},
        {"7\nx\n", L"Error Line 1. Unexpected group code (7) found."},
        // Lines 1 to 4 open the section; the object's last line is the 14th, its end, the code 0, the 15th.
        {Entities("0 LINE|8 A|10 1|11 4|21 5"), L"Error before line 15group. Expected group code: 20."},
        {Entities("0 LINE|8 A|10 1|20|11 4|21 5"), L"Error before line 17group. No group data."},
        {Entities("0 CIRCLE|8 A|10 1|20 1"), L"Error before line 13group. Expected group code: 40."},
        {Entities("0 POLYLINE|8 A|0 VERTEX|8 A|10 1|0 SEQEND"), L"Error reading polyline vertices!"},
        {Entities("0 LAYER|2 a;b|62 1"), L"Error adding layer: a;b."},
        {Entities("0 MTEXT|8 A|10 1|20 1|40 1|1 x|999 YES|17 0|27 0|37 0|18 1"),
         L"Error before line 27group. Expected group code: 28."},
        {Pairs("0 SECTION|2 BLOCKS|0 BLOCK|2 B|10 0|20 0|0 LINE|8 A"),
         L"Error Line 17. No data; expected group name!"},
        {Pairs("0 SECTION|2 BLOCKS|0 BLOCK|2 B|10 0|0 ENDBLK|0 ENDSEC|0 EOF"),
         L"Error before line 11group. Expected group code: 20."},
    };
    for (const Row& row : rows) {
        Reading reading(row.text);
        EXPECT_FALSE(static_cast<bool>(reading.result)) << row.text;
        EXPECT_EQ(reading.result.Text(), row.message) << row.text;
        EXPECT_EQ(reading.document.NumEntities(), 0);
        EXPECT_EQ(reading.file.Ending(), DXFFile::FAILED);
    }
    DXF document;
    EXPECT_EQ(document.Read(L"/no/such folder/plan.dxf", GO, true).Text(),
              L"Error opening file \"plan.dxf\" for reading!");
}

TEST(DXFRead, KeepsWhatWasWholeWhenTheDataBreakOff)
{
    const std::string text = Entities(std::string(LINE) + "|" + LINE + "|" + LINE);
    for (std::size_t length = 0; length <= text.size(); ++length) {
        const std::string part = text.substr(0, length);
        int whole = 0; // a line is whole once the first digit of its last value is there
        for (std::size_t at = 0; (at = part.find("\n31\n6", at)) != std::string::npos; ++at) ++whole;
        Reading reading(part);
        // Cut before its last group, which it can do without, a line is whole as well.
        const bool cutThere = part.ends_with("21\n5") || part.ends_with("21\n5\n");
        EXPECT_EQ(reading.document.NumEntities(), whole + int(cutThere)) << part;
        EXPECT_TRUE(whole == 0 || static_cast<bool>(reading.result)) << part;
    }
}

TEST(DXFRead, TellsHowItEnded)
{
    struct Row {
        std::string text;
        DXFFile::ENDING ending;
        int line;
        const wchar_t* reason;
        int entities;
    };
    const std::string open = Pairs("0 SECTION|2 ENTITIES") + Pairs(LINE);
    const Row rows[] = {
        {open + Pairs("0 ENDSEC|0 EOF"), DXFFile::EOF_OBJECT, 23, L"", 1},
        {open + Pairs("0 EOF") + "trash\n\n0\nLINE\n", DXFFile::EOF_OBJECT, 22, L"", 1},
        {open, DXFFile::END_OF_DATA, 22, L"", 1},
        {open + Pairs("0 LINE|1072 x"), DXFFile::EARLY, 23, L"Invalid group code: 1072!", 1},
        {open + Pairs("0 LINE") + "8\n", DXFFile::EARLY, 24, L"Error Line 24. No data; expected group name!",
         1},
        {open + Pairs("0 LINE|8 ") + std::string(512, 'x') + "\n" + Pairs("0 EOF"), DXFFile::EARLY, 25,
         L"A line is longer than 511 characters.", 1},
    };
    for (const Row& row : rows) {
        Reading reading(row.text);
        EXPECT_TRUE(static_cast<bool>(reading.result));
        EXPECT_EQ(reading.file.Ending(), row.ending) << row.text;
        EXPECT_EQ(reading.file.EndReason(), row.reason);
        EXPECT_EQ(reading.document.NumEntities(), row.entities) << row.text;
        if (row.ending == DXFFile::EARLY) {
            EXPECT_EQ(reading.file.EndLine(), row.line) << row.text;
        }
    }
}

TEST(DXFRead, StoppedByTheFlagSucceedsWithAnEmptiedDrawing)
{
    const TempFile temp(".dxf", Entities(LINE));
    const std::atomic<bool> stop{false};
    DXF document;
    document.AddLayer(L"Keep")->Add(new DXFLine);
    DXFFile file;
    EXPECT_TRUE(static_cast<bool>(file.Read(temp.Name(), document, stop, false)));
    EXPECT_EQ(document.NumEntities(), 0);
    EXPECT_TRUE(document.HasLayer(L"Keep"));
    EXPECT_EQ(file.Ending(), DXFFile::STOPPED);
    EXPECT_TRUE(static_cast<bool>(file.Read(temp.Name(), document, stop, true)));
    EXPECT_EQ(document.NumLayers(), 1U);
}

TEST(DXFRead, TakesColoursStylesAndWidthsFromGroupsOrLayer)
{
    // Layer: colour 1 (red), dashed, 0.50 mm. Colour words are 0x00BBGGRR.
    const std::string layer = Pairs("0 LAYER|2 A|62 1|6 Hidden|370 50");
    struct Row {
        const char* groups;
        unsigned long color;
        int style;
        float width;
    };
    const Row rows[] = {
        {"", 0x0000FF, 1, 0.5F},
        {"|62 5|6 continuous|370 25", 0xFF0000, 0, 0.25F},
        {"|62 256|6 DOT|370 0", 0x000000, 2, 0},
        {"|62 -3|370 -1", 0x000000, 1, 0},
        {"|420 66051", 0x030201, 1, 0.5F}, // 66051 = 0x010203
        {"|420 66051|62 5|6 DashDot", 0x030201, 3, 0.5F},
        {"|39 7.5", 0x0000FF, 1, 0.5F}, // a thickness in a foreign file
    };
    for (const Row& row : rows) {
        Reading reading(layer + Entities(std::string(LINE) + row.groups));
        const auto* line = reading.Only<DXFLine>();
        ASSERT_TRUE(line) << row.groups;
        EXPECT_EQ(line->Start(), P(1, 2, 3));
        EXPECT_EQ(line->End(), P(4, 5, 6));
        EXPECT_EQ(line->Color(), row.color) << row.groups;
        EXPECT_EQ(line->Style(), row.style) << row.groups;
        EXPECT_EQ(line->Width(), row.width) << row.groups;
    }
}

TEST(DXFRead, TakesBackAWidthFromGroup39OfItsOwnFiles)
{
    const std::string header =
        "0 SECTION|2 HEADER|9 $ACADVER|1 AC1014|9 $EXTMIN|10 0|20 0|30 0|9 $EXTMAX|10 0|20 0|30 0|"
        "9 $LIMMIN|10 0|20 0|9 $LIMMAX|10 0|20 0|9 $HANDSEED|5     7d5|0 ENDSEC";
    EXPECT_EQ(Reading(Pairs(header) + Entities(std::string(LINE) + "|39 7.5")).Only<DXFLine>()->Width(),
              7.5F);
    Reading other(Pairs(header + "|0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|0 ENDSEC")
                  + Entities(std::string(LINE) + "|39 7.5"));
    EXPECT_EQ(other.Only<DXFLine>()->Width(),
              0); // a thickness there; the layer comes into being with the line
    EXPECT_EQ(other.file.Release(), L"AC1015");
}

TEST(DXFRead, ReadsLayersOfTheTable)
{
    Reading reading(
        Pairs("0 LAYER|2 Walls|62 -7|6 DOT|370 0|0 LAYER|2 WALLS|62 300|0 LAYER|2 B|62 1|420 255|0 EOF"));
    EXPECT_EQ(reading.document.NumLayers(), 3U);
    const DXFLayer& walls = *reading.document[L"Walls"];
    EXPECT_FALSE(walls.IsVisible());      // only a number below 0 says anything of it
    EXPECT_EQ(walls.Color(), 0x000000UL); // of the later entry: that name in another case is the same layer
    EXPECT_EQ(walls.Style(), 2);
    EXPECT_EQ(walls.Width(), 0.1F);                         // a layer takes widths above 0 only
    EXPECT_EQ(reading.document[L"B"]->Color(), 0xFF0000UL); // 255 is blue in 0x00RRGGBB
    EXPECT_FALSE((*Reading(Pairs("0 LAYER|2 Off|62 -7|0 EOF")).document[L"Off"]).IsVisible());
}

TEST(DXFRead, TurnsArcsFromCounterClockwiseAnglesToBearings)
{
    // 0 to 90 degrees counter-clockwise from +x runs from (r, 0) to (0, r): bearings 90 and 0, clockwise from
    // +y.
    const double rows[][4] = {{0, 90, 0, 90}, {90, 0, 90, 0}, {350, 10, 80, 100}, {-90, 45, 45, 180}};
    for (const auto& row : rows) {
        Reading reading(Entities("0 ARC|8 A|10 0|20 0|40 2|50 " + std::to_string(row[0]) + "|51 "
                                 + std::to_string(row[1])));
        EXPECT_DOUBLE_EQ(reading.Only<DXFArc>()->StartAngle(), row[2]);
        EXPECT_DOUBLE_EQ(reading.Only<DXFArc>()->EndAngle(), row[3]);
    }
}

TEST(DXFRead, BuildsPolylinesPolygonsAndFaces)
{
    Reading open(Entities("0 LWPOLYLINE|8 A|38 5|10 0|20 0|10 1|20 0|42 .5|10 1|20 1|10 0|20 1"));
    const auto* light = open.Only<DXFPolyline>();
    ASSERT_TRUE(light && !dynamic_cast<const DXFPolygon*>(light) && light->GetLWPolyLine());
    ASSERT_EQ(light->NumPoints(), 4);
    EXPECT_EQ((*light)[1], P(1, 0, 5, .5));
    EXPECT_EQ((*light)[2], P(1, 1, 5, 0));
    Reading closed(Entities("0 LWPOLYLINE|8 A|70 1|38 5|10 0|20 0|10 1|20 0|10 1"));
    EXPECT_EQ(closed.Only<DXFPolygon>()->NumPoints(), 2); // as many as have both coordinates
    EXPECT_EQ(closed.Only<DXFPolygon>()->GetElevation(), 5);

    const std::string vertices = "|0 VERTEX|8 A|10 0|20 0|0 VERTEX|8 A|10 3|20 4|30 1|42 -1|0 SEQEND";
    EXPECT_TRUE(Reading(Entities("0 POLYLINE|8 A|70 1" + vertices)).Only<DXFPolygon>());
    Reading chain(Entities("0 POLYLINE|8 A" + vertices + "|8 A|" + LINE));
    EXPECT_EQ(chain.document.NumEntities(), 2);
    const auto* polyline = dynamic_cast<const DXFPolyline*>((*std::as_const(chain.document)[L"A"])[0]);
    EXPECT_EQ((*polyline)[1], P(3, 4, 1, -1));
}

TEST(DXFRead, MakesAPolygonOfEachFaceOfAMesh)
{
    std::string mesh = "0 POLYLINE|8 A|62 3|70 65";
    for (int i = 0; i < 4; ++i)
        mesh += "|0 VERTEX|8 A|10 " + std::to_string(i) + "|20 " + std::to_string(i * i) + "|70 192";
    mesh += "|0 VERTEX|8 A|10 0|20 0|70 128|71 1|72 -2|73 3|74 4" // a fourth corner is not read
            "|0 VERTEX|8 A|10 0|20 0|70 128|71 4|72 9|73 1"       // 9 names no position
            "|0 VERTEX|8 A|10 0|20 0|70 128|71 9|72 0|73 1"       // one corner left: dropped
            "|0 SEQEND|8 A";
    Reading reading(Entities(mesh));
    ASSERT_EQ(reading.document.NumEntities(), 2);
    const DXFLayer& layer = *std::as_const(reading.document)[L"A"];
    const auto* first = dynamic_cast<const DXFPolygon*>(layer[0]);
    const auto* second = dynamic_cast<const DXFPolygon*>(layer[1]);
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->Color(), 0x00FF00UL);
    EXPECT_EQ(first->NumPoints(), 3);
    EXPECT_EQ((*first)[1], P(1, 1));
    EXPECT_EQ(second->NumPoints(), 2);
    EXPECT_EQ((*second)[0], P(3, 9));
}

TEST(DXFRead, TakesEntitiesOfThePlaneToTheWorldWhenTold)
{
    const std::string below = "|210 0|220 0|230 -1";
    const std::string list = "0 LWPOLYLINE|8 A|38 5|10 1|20 2|42 1|10 3|20 2" + below
                             + "|0 SOLID|8 A|10 1|20 2|11 3|21 2|12 1|22 4|13 1|23 4" + below
                             + "|0 TEXT|8 A|10 1|20 2|40 1|1 T" + below + "|0 POLYLINE|8 A|70 8" + below
                             + "|0 VERTEX|8 A|10 1|20 2|0 SEQEND|0 POLYLINE|8 A" + below
                             + "|0 VERTEX|8 A|10 1|20 2|0 SEQEND";
    // By the arbitrary axis rule the axes of (0, 0, -1) are (-1, 0, 0) and (0, 1, 0).
    Reading reading(Entities(list), true, false, true);
    const DXFLayer& layer = *reading.document[L"A"];
    ASSERT_EQ(layer.NumEntities(), 5U);
    const auto verticesOf = [&](std::size_t i) {
        return dynamic_cast<const DXFPolyline&>(*layer[i]).GetPoly().Vertices();
    };
    EXPECT_EQ(verticesOf(0), (std::vector{P(-1, 2, -5, -1), P(-3, 2, -5)}));
    EXPECT_EQ(dynamic_cast<const DXFSolid&>(*layer[1])[1], P(-3, 2));
    EXPECT_EQ(layer[1]->Extents().MinPnt(), P(-3, 2));
    const auto& text = dynamic_cast<const DXFText&>(*layer[2]);
    EXPECT_EQ(text.Position(), P(-1, 2));
    EXPECT_EQ(text.GetTextInfo().Justification(), TextInfo::BASELINE_RIGHT)
        << "it ends where it began, read from the other side";
    EXPECT_NEAR(text.GetTextInfo().Rotation().Get(), 0, 1e-9);
    EXPECT_EQ(verticesOf(3), std::vector{P(1, 2)}) << "a polyline of space has world coordinates";
    EXPECT_EQ(verticesOf(4), std::vector{P(-1, 2)});
    EXPECT_EQ(reading.file.ChordedArcs(), 0U);
    // The half circle lies upright, and is a line when seen from above.
    Reading upright(Entities("0 LWPOLYLINE|8 A|10 1|20 0|42 1|10 3|20 0|210 0|220 -1|230 0"), true, false,
                    true);
    EXPECT_EQ(upright.file.ChordedArcs(), 1U);
    const auto* chords = upright.Only<DXFPolyline>();
    EXPECT_GT(chords->NumPoints(), 10);
    EXPECT_NEAR(chords->Extents().MinPnt().Z(), -1, 1e-3);
    EXPECT_NEAR(chords->Extents().MaxPnt().Y(), 0, 1e-12);
    Reading asItStands(Entities(list));
    EXPECT_EQ(dynamic_cast<const DXFPolyline&>(*(*asItStands.document[L"A"])[0]).GetPoly().Vertices()[1],
              P(3, 2, 5));
}

TEST(DXFRead, FitsTextsBetweenTheirPointsWhenTold)
{
    // From (1, 2) to (4, 6): 5 long, rising at atan2(4, 3).
    const std::string text = "0 TEXT|8 A|10 1|20 2|11 4|21 6|40 1|1 ";
    const struct {
        std::string groups;
        double length; ///< 0 where the text is shorter than its room
        bool isOneHigh;
    } rows[] = {{text + "a|72 3", 5, false},
                {text + std::string(90, 'a') + "|72 3", 5, false},
                {text + std::string(90, 'a') + "|72 5", 5, false},
                {text + "a|72 5", 0, true}};
    for (const auto& row : rows) {
        Reading reading(Entities(row.groups), true, false, true);
        const auto* fitted = reading.Only<DXFText>();
        ASSERT_TRUE(fitted);
        EXPECT_EQ(fitted->Position(), P(1, 2));
        EXPECT_NEAR(fitted->GetTextInfo().Rotation().Get(), 360 - 53.130102354, 1e-6) << "clockwise";
        EXPECT_EQ(fitted->GetTextInfo().Size() == 1, row.isOneHigh);
        DXFText level(*fitted);
        TextInfo info = level.GetTextInfo();
        info.SetRotation(Angle());
        level.SetTextInfo(info);
        const double length = level.Extents().MaxX() - level.Extents().MinX();
        EXPECT_TRUE(row.length == 0 ? length < 5 : std::abs(length - row.length) < 0.01) << row.groups;
    }
    EXPECT_EQ(Reading(Entities(text + "a|72 3")).Only<DXFText>()->Position(), P(4, 6));
}

TEST(DXFRead, ReadsTexts)
{
    Reading reading(
        Entities("0 TEXT|8 A|10 1|20 2|11 7|21 8|40 2.5|1 25%%d %%P1 %%c%%%d|50 30|7 arial|72 1|73 2"));
    const auto* text = reading.Only<DXFText>();
    EXPECT_EQ(text->Text(), L"25\u00B0 \u00B11 %%c%\u00B0");
    EXPECT_EQ(text->Position(), P(7, 8));
    EXPECT_EQ(text->GetTextInfo().Justification(), 8);
    EXPECT_DOUBLE_EQ(text->GetTextInfo().Rotation().Get(), 330);
    EXPECT_EQ(text->GetTextInfo().Font(), L"arial");
    EXPECT_EQ(text->GetTextInfo().Size(), 2.5F);
    EXPECT_EQ(Reading(Entities("0 TEXT|8 A|10 1|20 2|40 1|72 1")).Only<DXFText>()->Position(), P(1, 2));
    EXPECT_EQ(Reading(Entities("0 TEXT|8 A|10 1|20 2|11 7|21 8|40 1")).Only<DXFText>()->Position(), P(1, 2));
}

TEST(DXFRead, ReadsMultiLineTexts)
{
    struct Row {
        const char* groups;
        const wchar_t* text;
        const wchar_t* font;
        int justification;
        double rotation;
    };
    const Row rows[] = {
        {"3 one |3 two |1 end|71 5|50 30", L"one two end", L"COURIER", 8, 30},
        {"1 {\\fArial|b1;x}|71 7|11 0|21 1", L"{\\fArial|b1;x}", L"ARIAL|B1", 9, 270},
        {"1 \\Ftxt.shx;none|71 1", L"\\Ftxt.shx;none", L"TXT", 6, 0},
        {"1 \\fnever ends|71 7", L"\\fnever ends", L"COURIER", 0, 0},
        {"1 %%d|71 9", L"\u00B0", L"COURIER", 2, 0},
        {"1 x|71 7|50 30|101 Embedded Object|70 1|10 1|20 0|30 0|11 5|21 5|71 2|40 9", L"x", L"COURIER", 0,
         30},
    };
    for (const Row& row : rows) {
        std::string groups = row.groups;
        for (std::size_t at = 0; (at = groups.find("Arial|b1", at)) != std::string::npos;)
            groups.replace(at, 8,
                           "Arial\x01"
                           "b1");
        std::string text = Entities("0 MTEXT|8 A|10 1|20 2|40 1.5|41 20|" + groups);
        for (char& c : text)
            if (c == '\x01') c = '|';
        Reading reading(text);
        const auto* mtext = reading.Only<DXFMText>();
        ASSERT_TRUE(mtext) << row.groups;
        EXPECT_EQ(mtext->Text(), row.text);
        EXPECT_EQ(mtext->GetTextInfo().Font(), row.font);
        EXPECT_EQ(mtext->GetTextInfo().Justification(), row.justification) << row.groups;
        EXPECT_NEAR(mtext->GetTextInfo().Rotation().Get(), row.rotation, 1e-9);
        EXPECT_TRUE(mtext->GetTextInfo().MultiLine());
    }
    Reading boxed(Entities("0 MTEXT|8 A|10 1|20 2|40 1|1 x|999 YES|17 -3|27 -4|18 5|28 6"));
    EXPECT_EQ(boxed.Only<DXFMText>()->Extents().MinPnt(), P(-3, -4));
    EXPECT_EQ(boxed.Only<DXFMText>()->GetClipExtents().MaxPnt(), P(5, 6));
    EXPECT_FALSE(boxed.Only<DXFMText>()->GetTextInfo().MultiLine());
}

TEST(DXFRead, FillsBlocksAndGivesInsertsTheDocument)
{
    const std::string text =
        Pairs("0 LAYER|2 W|62 3|6 DOT|370 70|0 SECTION|2 BLOCKS|0 BLOCK|8 Plan|2 Door|70 2|10 1|20 2|30 3"
              "|0 LINE|8 W|10 0|20 0|11 1|21 1|0 LINE|8 W|10 0|0 POLYLINE|8 W|0 VERTEX|10 1|0 INSERT|8 0|2 "
              "Knob|10 0|20 0|0 ELLIPSE|8 0"
              "|0 ENDBLK|8 0|0 ENDSEC")
        + Entities("0 INSERT|8 A|2 Door|10 5|20 6|70 3|44 10|71 2|45 4|41 2|50 30|210 0|220 0|230 -1"
                   "|0 ATTRIB|8 A|0 SEQEND|0 INSERT|8 A|62 7");
    Reading reading(text);
    const DXFBlock* door = reading.document.GetBlock(L"Door");
    ASSERT_TRUE(door);
    EXPECT_EQ(door->BasePoint(), P(1, 2, 3));
    EXPECT_EQ(door->LayerName(), L"Plan");
    EXPECT_EQ(door->BlockTypeFlag(), 2);
    ASSERT_EQ(door->GetDXF()->NumEntities(), 2);
    const auto* insert = reading.Only<DXFInsert>();
    EXPECT_EQ(insert->DXF(), &reading.document);
    EXPECT_EQ(insert->GetRowCount(), 3);
    EXPECT_EQ(insert->GetRowSpacing(), 10);
    EXPECT_EQ(insert->GetColumnCount(), 2);
    EXPECT_EQ(insert->Scale(), P(2, 1, 1));
    EXPECT_EQ(insert->Extrusion(), P(0, 0, -1));
    const auto* nested = dynamic_cast<const DXFInsert*>((*(*door->GetDXF())[L"0"])[0]);
    EXPECT_EQ(nested->DXF(), &reading.document);
    const std::map<std::wstring, std::uint64_t> skipped = {
        {L"ATTRIB", 1}, {L"ELLIPSE", 1}, {L"INSERT", 1}, {L"LINE", 1}, {L"POLYLINE", 1}};
    EXPECT_EQ(reading.file.Skipped(), skipped);
    // A block's own drawing knows nothing of the layer table, unless it is told to.
    const auto colorIn = [](DXF& document) {
        return (*std::as_const(*document.GetBlock(L"Door")->GetDXF())[L"W"])[0]->Color();
    };
    EXPECT_EQ(colorIn(reading.document), 0UL);
    Reading resolved(text, true, true);
    EXPECT_EQ(colorIn(resolved.document), 0x00FF00UL);
    EXPECT_EQ((*resolved.document.GetBlock(L"Door")->GetDXF())[L"W"]->Width(), 0.7F);
}

TEST(DXFRead, LeavesWhatIsOnLayerZeroOfABlockToTheInsert)
{
    const std::string text =
        Pairs("0 LAYER|2 A|62 1|6 DOT|370 50|0 SECTION|2 BLOCKS|0 BLOCK|8 0|2 Inner|10 0|20 0"
              "|0 LINE|8 0|10 0|20 0|11 1|21 1|0 TEXT|8 0|10 0|20 0|40 1|1 t|0 ENDBLK"
              "|0 BLOCK|8 0|2 Outer|10 0|20 0|0 INSERT|8 0|2 Inner|10 0|20 0"
              "|0 LINE|8 0|62 5|6 DASHED|370 25|10 0|20 0|11 1|21 1|0 ENDBLK|0 ENDSEC")
        + Entities("0 INSERT|8 A|2 Outer|10 5|20 6");
    Reading reading(text, true, true);
    EXPECT_EQ(InsertExploder().Explode(reading.document, GO).entities, 3U);
    const DXFLayer& layer = *std::as_const(reading.document)[L"A"];
    ASSERT_EQ(layer.NumEntities(), 3U);
    const auto* left = dynamic_cast<const DXFLine*>(layer[0]);
    const auto* own = dynamic_cast<const DXFLine*>(layer[2]);
    EXPECT_EQ(left->GetInfo(), LineInfo(LineInfo::DOT, 0.5F, 0x0000FF));
    EXPECT_EQ(dynamic_cast<const DXFText*>(layer[1])->GetTextInfo().Color(), 0x0000FFUL);
    EXPECT_EQ(own->GetInfo(), LineInfo(LineInfo::DASHED, 0.25F, 0xFF0000));
}

TEST(DXFRead, EndsBlocksSectionsThatNestWithoutEnd)
{
    std::string text;
    for (int i = 0; i < 5000; ++i) text += Pairs("0 SECTION|2 BLOCKS|0 BLOCK|2 B|10 0|20 0");
    Reading reading(text);
    EXPECT_FALSE(static_cast<bool>(reading.result)); // the innermost block has no end
}

TEST(DXFRead, GivesImagesTheirDefinitionsAndUndoesTheFormOfTheirBoundary)
{
    const std::string image = "0 IMAGE|8 New|10 1|20 2|11 .5|21 0|12 0|22 .5|13 8|23 4|340 1A";
    Reading reading(Entities(image + "|71 1|91 2|14 -0.5|24 -0.5|14 7.5|24 3.5")
                    + Pairs("0 IMAGEDEF|5 1a|1 no.bmp"));
    const auto* rectangle = reading.Only<DXFImage>(L"New");
    ASSERT_TRUE(rectangle);
    EXPECT_EQ(rectangle->ClipBoundary(), (std::vector<GTL::Point2D<double>>{{0, 0}, {7, 3}}));
    EXPECT_EQ(rectangle->Width(), 8);
    EXPECT_EQ(rectangle->Extents().MaxPnt(), P(5, 4)); // 1 + 8 * .5, 2 + 4 * .5
    // The ring c, a, b, c with rows from the top is a, b, c with rows from below: y becomes 4 - y.
    Reading ring(Entities(image + "|71 2|91 4|14 3|24 0|14 1|24 3|14 2|24 3|14 3|24 0")
                 + Pairs("0 IMAGEDEF|5 1A|1 x.tga"));
    EXPECT_EQ(ring.Only<DXFImage>(L"New")->ClipBoundary(),
              (std::vector<GTL::Point2D<double>>{{1, 1}, {2, 1}, {3, 4}}));
}

TEST(DXFRead, ForgetsAnImageThatNoLayerTakes)
{
    const std::string image = "0 IMAGE|8 A=B|10 1|20 2|11 .5|21 0|12 0|22 .5|13 8|23 4|340 1A";
    const TempFile temp(".dxf", Entities(image) + Pairs("0 IMAGEDEF|5 1A|1 no.bmp"));
    DXF document;
    document.AddLayer(L"Last");
    EXPECT_TRUE(static_cast<bool>(document.RemoveLayer(L"Last")));
    EXPECT_TRUE(static_cast<bool>(document.Read(temp.Name(), GO, false)));
    EXPECT_EQ(document.NumEntities(), 0);
}

TEST(DXFRead, CountsNothingOfSectionsThatShowNothingAsSkipped)
{
    Reading reading(Pairs("0 SECTION|2 objects|0 DICTIONARY|5 C|0 ENDSEC") + Entities("0 ELLIPSE|8 A"));
    EXPECT_EQ(reading.file.Skipped(), (std::map<std::wstring, std::uint64_t>{{L"ELLIPSE", 1}}));
}

TEST(DXFRead, ReadsTheSameWithEitherLineEnd)
{
    const std::string text =
        Entities(std::string(LINE) + "|0 CIRCLE|8 A|10 1|20 1|40 2|0 TEXT|8 A|10 0|20 0|40 1|1 a b ");
    std::string crLf;
    for (const char c : text) crLf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    Reading lf(text);
    Reading both(crLf);
    EXPECT_EQ(lf.file.LineEnds(), DXFFile::LF);
    EXPECT_EQ(both.file.LineEnds(), DXFFile::CR_LF);
    EXPECT_EQ(lf.document.NumEntities(), both.document.NumEntities());
    const auto* text1 = dynamic_cast<const DXFText*>((*std::as_const(both.document)[L"A"])[2]);
    EXPECT_EQ(text1->Text(), L"a b "); // nothing but the line end is trimmed
}
