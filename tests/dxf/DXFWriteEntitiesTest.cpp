#include "dxf/WrittenGroups.h"

#include <cmath>
#include <functional>
#include <limits>

#include "dxf/HandleSet.h"
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

namespace {

using P3 = GTL::Point3D<double>;
using P2 = GTL::Point2D<double>;

/// First handle after those of the tables and blocks of a drawing with one layer.
constexpr int FIRST_ENTITY = 0x7e8;

class DXFWriteEntities : public DXFWriteTest {
protected:
    /// The groups of the ENTITIES section.
    Rows WriteEntities(int exportMode = 0)
    {
        const Rows groups = Write(exportMode);
        const auto first = std::find(groups.begin(), groups.end(), "2 ENTITIES");
        const auto last = std::find(first, groups.end(), "0 ENDSEC");
        return first == groups.end() ? Rows() : Rows(first + 1, last);
    }
};

template <class T>
T* WithLine(T* entity, int style, float width)
{
    entity->SetStyle(style);
    entity->SetWidth(width);
    return entity;
}

template <class T>
T* WithCorners(T* entity)
{
    for (int i = 0; i < 4; ++i) (*entity)[i] = P3(i, i + 0.5, -i);
    return entity;
}

template <class T>
T* WithVertices(T* entity)
{
    entity->PushBack(P3(1, 2, 3, 0));
    entity->PushBack(P3(4, 5, 6, -0.5));
    return WithLine(entity, 2, 0.25F);
}

DXFPolyline* Lightweight(DXFPolyline* polyline)
{
    polyline->SetLWPolyLine(true);
    polyline->SetElevation(7);
    return polyline;
}

TextInfo Font(const wchar_t* font, float size)
{
    TextInfo info;
    info.SetFont(font);
    info.SetSize(size);
    return info;
}

DXFText* NewText()
{
    auto* text = new DXFText();
    text->SetText(L"12\u00B0");
    text->SetPosition(P3(1, 2, 3));
    TextInfo info = Font(L"Arial Bold.ttf", 2.5F);
    info.SetRotation(Angle(-30)); // clockwise; the file's angles are counter-clockwise
    info.SetJustification(TextInfo::MIDDLE_CENTER);
    text->SetTextInfo(info);
    return text;
}

DXFArc* NewArc(double start, double end, const GTL::Vector3D<double>& normal)
{
    return new DXFArc(P3(1, 1, 1), 2, start, end, normal);
}

struct Kind {
    const char* name;
    std::function<DXFEntity*()> make;
    std::string_view groups;
};

TEST_F(DXFWriteEntities, EveryKindHasItsGroups)
{
    // The header of each: "0 name|5 #|8 0|62 0", colour 0 being black, index 0.
    const Kind kinds[] = {
        {"line", [] { return WithLine(new DXFLine(P3(1, 2, 3), P3(-4, 5.5, 0)), 0, 0.5F); },
         "0 LINE|5 #|8 0|62 0|100 AcDbEntity|100 AcDbLine|39 0.500000|6 CONTINUOUS|10 1.000000|20 "
         "2.000000|30 3.000000|"
         "11 -4.000000|21 5.500000|31 0.000000"},
        {"dashed line", [] { return WithLine(new DXFLine(), 1, 0); },
         "0 LINE|5 #|8 0|62 0|100 AcDbEntity|100 AcDbLine|39 0.000000|6 DASHED|10 0.000000|20 0.000000|30 "
         "0.000000|"
         "11 0.000000|21 0.000000|31 0.000000"},
        {"point", [] { return new DXFPoint(0.1234565, 1e15, -1e-7); },
         // printf's rounding: 0.1234565 is 0.12345649999..., and a tiny negative number keeps its sign.
         "0 POINT|5 #|8 0|62 0|100 AcDbEntity|100 AcDbPoint|10 0.123456|20 1000000000000000.000000|30 "
         "-0.000000"},
        {"solid", [] { return WithCorners(new DXFSolid()); },
         "0 SOLID|5 #|8 0|62 0|100 AcDbEntity|100 AcDbTrace|10 0.000000|20 0.500000|30 0.000000|"
         "11 1.000000|21 1.500000|31 -1.000000|12 2.000000|22 2.500000|32 -2.000000|"
         "13 3.000000|23 3.500000|33 -3.000000"},
        {"face", [] { return WithCorners(new DXF3dFace()); },
         "0 3DFACE|5 #|8 0|62 0|100 AcDbEntity|100 AcDbFace|10 0.000000|20 0.500000|30 0.000000|"
         "11 1.000000|21 1.500000|31 -1.000000|12 2.000000|22 2.500000|32 -2.000000|"
         "13 3.000000|23 3.500000|33 -3.000000"},
        {"circle", [] { return WithLine(new DXFCircle(P3(1, 2, 3), 2), 3, 0); },
         "0 CIRCLE|5 #|8 0|62 0|100 AcDbEntity|100 AcDbCircle|39 0.000000|6 DASHDOT|10 1.000000|20 "
         "2.000000|30 3.000000|"
         "40 2.000000"},
        {"turned circle",
         [] {
             return WithLine(new DXFCircle(P3(), 2, {0, 0, -1}), 7, 0);
         },
         "0 CIRCLE|5 #|8 0|62 0|100 AcDbEntity|100 AcDbCircle|39 0.000000|6 CONTINUOUS|10 0.000000|20 "
         "0.000000|"
         "30 0.000000|40 2.000000|210 0.000000|220 0.000000|230 -1.000000"},
        // Bearings 0 to 90 are counter-clockwise 0 to 90; 10 to 350 turn into 100 to 80.
        {"arc",
         [] {
             return NewArc(0, 90, {0, 0, 0});
         },
         "0 ARC|5 #|8 0|62 0|100 AcDbEntity|100 AcDbCircle|39 0.000000|6 CONTINUOUS|10 1.000000|20 "
         "1.000000|30 1.000000|"
         "40 2.000000|100 AcDbArc|50 0.000000|51 90.000000"},
        {"large arc",
         [] {
             return NewArc(10, 350, {1, 0, 0});
         },
         "0 ARC|5 #|8 0|62 0|100 AcDbEntity|100 AcDbCircle|39 0.000000|6 CONTINUOUS|10 1.000000|20 "
         "1.000000|30 1.000000|"
         "40 2.000000|100 AcDbArc|50 100.000000|51 80.000000|210 1.000000|220 0.000000|230 0.000000"},
        {"polyline", [] { return WithVertices(new DXFPolyline()); },
         "0 POLYLINE|5 #|8 0|62 0|100 AcDbEntity|100 AcDb2dPolyline|66 1|10 0.0|20 0.0|30 0.000000|70 0|40 "
         "0.250000|"
         "41 0.250000|6 DOT|"
         "0 VERTEX|5 #|100 AcDbEntity|8 0|100 AcDbVertex|100 AcDb2dVertex|10 1.000000|20 2.000000|30 "
         "3.000000|"
         "0 VERTEX|5 #|100 AcDbEntity|8 0|100 AcDbVertex|100 AcDb2dVertex|10 4.000000|20 5.000000|30 "
         "6.000000|42 -0.500000|"
         "0 SEQEND|5 #|100 AcDbEntity|8 0"},
        {"lightweight", [] { return Lightweight(WithVertices(new DXFPolyline())); },
         "0 POLYLINE|5 #|8 0|62 0|100 AcDbEntity|100 AcDb2dPolyline|66 1|10 0.0|20 0.0|30 7.000000|70 0|40 "
         "0.250000|"
         "41 0.250000|6 DOT|"
         "0 VERTEX|5 #|100 AcDbEntity|8 0|100 AcDbVertex|100 AcDb2dVertex|10 1.000000|20 2.000000|"
         "0 VERTEX|5 #|100 AcDbEntity|8 0|100 AcDbVertex|100 AcDb2dVertex|10 4.000000|20 5.000000|42 "
         "-0.500000|"
         "0 SEQEND|5 #|100 AcDbEntity|8 0"},
        {"polygon", [] { return Lightweight(WithVertices(new DXFPolygon())); },
         "0 POLYLINE|5 #|8 0|62 0|100 AcDbEntity|6 CONTINUOUS|100 AcDb2dPolyline|66 1|10 0.0|20 0.0|30 "
         "0.0|70 1|"
         "40 0.250000|41 0.250000|6 DOT|"
         "0 VERTEX|5 #|62 0|100 AcDbEntity|8 0|100 AcDbVertex|100 AcDb2dVertex|10 1.000000|20 2.000000|30 "
         "3.000000|"
         "0 VERTEX|5 #|62 0|100 AcDbEntity|8 0|100 AcDbVertex|100 AcDb2dVertex|10 4.000000|20 5.000000|30 "
         "6.000000|"
         "42 -0.500000|0 SEQEND|5 #|100 AcDbEntity|8 0"},
        {"empty polyline", [] { return new DXFPolyline(); },
         "0 POLYLINE|5 #|8 0|62 0|100 AcDbEntity|100 AcDb2dPolyline|66 1|10 0.0|20 0.0|30 0.000000|70 0|40 "
         "0.000000|"
         "41 0.000000|6 CONTINUOUS|0 SEQEND|5 #|100 AcDbEntity|8 0"},
        {"insert", [] { return new DXFInsert(L"door", P3(1, 2, 3), 45); }, "0 INSERT|5 #|8 0|62 0"},
    };
    for (const Kind& kind : kinds) {
        m_Drawing.Clear();
        m_Drawing.Add(kind.make());
        EXPECT_EQ(WriteEntities(), Table(kind.groups, FIRST_ENTITY)) << kind.name;
    }
}

TEST_F(DXFWriteEntities, ATextStandsAtItsPointInItsStyle)
{
    m_Drawing.Add(NewText());
    Add<DXFText>()->SetTextInfo(Font(L"txt", 1));
    const Rows groups = WriteEntities();
    EXPECT_EQ(
        Object(groups, 0),
        Table("5 #|8 0|62 0|100 AcDbEntity|100 AcDbText|10 1.000000|20 2.000000|30 3.000000|40 2.500000|"
              "1 12\xB0|50 30.000000|7 Arial_Bold_ttf|72 1|11 1.000000|21 2.000000|31 3.000000|100 "
              "AcDbText|73 2",
              FIRST_ENTITY + 2)); // two handles more for the styles
    EXPECT_EQ(Values(groups, 7), (Rows{"Arial_Bold_ttf", "txt"}));
}

TEST_F(DXFWriteEntities, LayersAndColoursChangeFromEntityToEntity)
{
    m_Drawing.Add(L"\u0416", new DXFPoint(), true);
    m_Drawing.Add(L"B", new DXFPoint(), true)->SetColor(0x0000FFUL);  // red, index 1, 255 * 65536 = 16711680
    m_Drawing.Add(L"B", new DXFPoint(), true)->SetColor(DXFColor(5)); // blue, 255
    m_Drawing.Add(L"B", new DXFPoint(), true)->SetColor(DXFColor(5));
    const Rows groups = WriteEntities(1);
    EXPECT_EQ(Values(groups, 8), (Rows{"_", "B", "B", "B"}));
    EXPECT_EQ(Values(groups, 62), (Rows{"0", "1", "5", "5"}));
    EXPECT_EQ(Values(groups, 420), (Rows{"0", "16711680", "255", "255"}));
    EXPECT_EQ(groups[4], "420 0") << "beside the index";
    EXPECT_TRUE(Values(WriteEntities(0), 420).empty());
}

TEST_F(DXFWriteEntities, NumbersThatAreNoneAreZero)
{
    const double infinity = std::numeric_limits<double>::infinity();
    Add<DXFPoint>(infinity, -infinity, std::nan(""));
    Add<DXFPoint>(-std::numeric_limits<double>::max(), 0, 0);
    const Rows groups = WriteEntities();
    EXPECT_EQ(Values(groups, 10)[0] + Values(groups, 20)[0] + Values(groups, 30)[0],
              "0.0000000.0000000.000000");
    EXPECT_EQ(Values(groups, 10)[1].size(), 317U);
    EXPECT_EQ(dynamic_cast<DXFPoint&>(*(*ReadBack()[0ULL])[1]).X(), -std::numeric_limits<double>::max());
}

// Texts

struct TextCase {
    std::wstring text;
    std::string written;
};

TEST_F(DXFWriteEntities, ATextStaysOnItsLine)
{
    const std::string x509(509, 'x');
    const std::wstring wide509(509, L'x');
    const TextCase cases[] = {
        {L"\u00FF\u0100\U0001F601", "\xFF\\U+0100\\U+D83D\\U+DE01"}, // U+1F601 is D83D DE01 in UTF-16
        {L"\xD83D\xDE00|\xD800|", "\\U+D83D\\U+DE00|\\U+D800|"},
        {L"a\r\nb\nc\rd\te\x1B" + std::wstring(1, L'\0'), "a b c d\te  "},
        {wide509 + L"abc", x509 + "ab"},
        {wide509 + L"\u0416z", x509}, // the form would not fit
        {L"", ""},
    };
    for (const TextCase& text : cases) {
        m_Drawing.Clear();
        Add<DXFText>()->SetText(text.text);
        EXPECT_EQ(Values(WriteEntities(), 1), Rows{text.written});
    }
}

TEST_F(DXFWriteEntities, AnMTextHasPrefixDirectionAndBox)
{
    auto* text = Add<DXFMText>();
    text->SetText(L"a\r\nb\u0416");
    TextInfo info = Font(L"Ar\u0416al", 2);
    info.SetRotation(Angle(270));
    info.SetRectWidth(10);
    info.SetJustification(TextInfo::TOP_LEFT);
    info.SetStyle(static_cast<TextInfo::STYLE>(TextInfo::BOLD | TextInfo::UNDERLINE));
    text->SetTextInfo(info);
    GTL::Extents3D<double> box;
    box.Update(-1, 2, 0);
    box.Update(3, 4, 0);
    text->SetClipExtents(box);
    Rows expected =
        Table("0 MTEXT|5 #|8 0|62 0|100 AcDbEntity|100 AcDbMText|10 0.000000|20 0.000000|30 0.000000|"
              "40 2.000000|41 10.000000|11 0.000000|21 1.000000|31 0.000000|71 1|72 1",
              FIRST_ENTITY + 1);
    expected.emplace_back("1 \\fAr_al|b1|i0|c0|p34;\\La\\Pb\\U+0416");
    EXPECT_EQ(WriteEntities(), Joined(expected, Table("999 YES|17 -1.000000|27 2.000000|37 0.000000|"
                                                      "18 3.000000|28 4.000000|38 0.000000")));
}

TEST_F(DXFWriteEntities, LongMTextsAreCutIntoPieces)
{
    // Without a font the prefix "\f|b0|i0|c0|p34;" is 16 characters.
    struct PieceCase {
        std::wstring text;
        std::vector<std::size_t> lengths;
    };
    const auto xs = [](std::size_t count) {
        return std::wstring(count, L'x');
    };
    const PieceCase cases[] = {
        {L"", {16}},
        {xs(255 - 16), {255}},
        {xs(256 - 16), {255, 1}},
        {xs(600 - 16), {255, 255, 90}},
        {xs(510 - 16), {255, 255}},
        {xs(252 - 16) + L"\u0416" + xs(300),
         {252, 255, 52}}, // 7 characters of \U+0416 go to the next piece whole
        {xs(254 - 16) + L"\n" + xs(3), {254, 5}},
    };
    for (const PieceCase& text : cases) {
        m_Drawing.Clear();
        Add<DXFMText>()->SetText(text.text);
        const Rows groups = WriteEntities();
        std::vector<std::size_t> lengths;
        for (const std::string& piece : Values(groups, 3)) lengths.push_back(piece.size());
        ASSERT_EQ(Values(groups, 1).size(), 1U);
        lengths.push_back(Values(groups, 1)[0].size());
        EXPECT_EQ(lengths, text.lengths);
    }
}

TEST_F(DXFWriteEntities, AFontNameLongerThanAPieceSplitsToo)
{
    auto* text = Add<DXFMText>();
    text->SetText(L"t");
    text->SetTextInfo(Font(std::wstring(600, L'f').c_str(), 1)); // cut to 511, as in the style table
    const Rows groups = WriteEntities();
    EXPECT_EQ(Values(groups, 3)[0] + Values(groups, 3)[1] + Values(groups, 1)[0],
              "\\f" + std::string(511, 'f') + "|b0|i0|c0|p34;t");
}

// Images

DXFImage* NewImage(const wchar_t* fileName)
{
    auto* image = new DXFImage();
    image->SetSize(640, 480);
    static_cast<void>(image->SetFileName(fileName));
    image->SetInsertPoint(P3(1, 2, 3));
    image->SetUVector(P3(0.5, 0, 9));
    image->SetVVector(P3(0, 0.25, 9));
    return image;
}

TEST_F(DXFWriteEntities, ImagesShareADefinitionByTheirExactFileName)
{
    for (const wchar_t* name :
         {L"d:\\pics\\no.such.bmp", L"plain.bmp", L"d:\\pics\\no.such.bmp", L"Plain.bmp"})
        m_Drawing.Add(L"I", NewImage(name), true)->SetColor(0xFFUL);
    ASSERT_TRUE(m_Drawing.RenameLayer(L"I", L"Pictures"));
    DXFFile file;
    ASSERT_TRUE(file.Write(m_File.Name(), m_Drawing, m_KeepGoing));
    ASSERT_TRUE(file.Write(m_File.Name(), m_Drawing, m_KeepGoing));
    EXPECT_EQ(Objects(GroupsOf(Bytes()), "IMAGEDEF").size(), 3U) << "the first file's definitions are gone";
    EXPECT_EQ(Objects(GroupsOf(Bytes()), "IMAGEDEF_REACTOR").size(), 4U);
    const Rows groups = Write(1);

    // In the order of meeting: definition 7d1, reactor 7d2; 7d3, 7d4; reactor 7d5; definition 7d6, reactor
    // 7d7. Tables and blocks with two layers draw 24 to 7ef, the images 7f0 to 7f3, variables and dictionary
    // 7f4 and 7f5.
    const std::vector<Rows> images = Objects(groups, "IMAGE");
    ASSERT_EQ(images.size(), 4U);
    EXPECT_EQ(images[2],
              Table("5 7f2|100 AcDbEntity|8 Pictures|100 AcDbRasterImage|90 0|10 1.000000|20 2.000000|30 0.0|"
                    "11 0.500000|21 0.000000|31 0.0|12 0.000000|22 0.250000|32 0.0|13 640.000000|"
                    "23 480.000000|340 7d1|70 7|280 0|281 50|282 50|283 0|360 7d5|"
                    "71 1|91 2|14 -0.500000|24 -0.500000|14 639.500000|24 479.500000"));
    const std::vector<Rows> reactors = Objects(groups, "IMAGEDEF_REACTOR");
    ASSERT_EQ(reactors.size(), 4U);
    EXPECT_EQ(reactors[2], Table("5 7d5|100 AcDbRasterImageDefReactor|90 2|330 7f2"));
    const std::vector<Rows> definitions = Objects(groups, "IMAGEDEF");
    ASSERT_EQ(definitions.size(), 3U);
    EXPECT_EQ(
        definitions[0],
        Table("5 7d1|102 {ACAD_REACTORS|330 7f5|330 7d2|330 7d5|102 }|100 AcDbRasterImageDef|90 0|"
              "1 d:\\pics\\no.such.bmp|10 640.000000|20 480.000000|11 0.000784|21 0.000784|280 1|281 2"));
    EXPECT_EQ(Joined(Values(definitions[1], 1), Values(definitions[2], 1)), (Rows{"plain.bmp", "Plain.bmp"}));

    const std::vector<Rows> dictionaries = Objects(groups, "DICTIONARY");
    ASSERT_EQ(dictionaries.size(), 4U);
    EXPECT_EQ(dictionaries[0], Table("5 C|100 AcDbDictionary|3 ACAD_GROUP|350 D|3 ACAD_MLINESTYLE|350 1B|"
                                     "3 ACAD_IMAGE_VARS|350 7f4|3 ACAD_IMAGE_DICT|350 7f5"));
    EXPECT_EQ(dictionaries[3], Table("5 7f5|102 {ACAD_REACTORS|330 C|102 }|100 AcDbDictionary|"
                                     "3 no.such|350 7d1|350 7d3|350 7d6"));
    const std::vector<Rows> variables = Objects(groups, "RASTERVARIABLES");
    ASSERT_EQ(variables.size(), 1U) << "the class record names itself in code 1";
    EXPECT_EQ(variables[0],
              Table("5 7f4|102 {ACAD_REACTORS|330 C|102 }|100 AcDbRasterVariables|90 0|70 0|71 1|72 0"));
    EXPECT_EQ(groups[19], "5     7f6");
}

TEST_F(DXFWriteEntities, ImagesKeepALayerNameOfTheirOwn)
{
    m_Drawing.Add(L"I", NewImage(L"a.bmp"), true);
    auto* image = NewImage(L"b.bmp");
    image->SetLayerName(L"Frames");
    m_Drawing.Add(L"I", image, true);
    const Rows groups = Write(0);
    const std::vector<Rows> images = Objects(groups, "IMAGE");
    ASSERT_EQ(images.size(), 2U);
    EXPECT_EQ(Values(images[0], 8)[0] + " " + Values(images[1], 8)[0], "I Frames");
    EXPECT_EQ(image->LayerName(), L"Frames");
}

TEST_F(DXFWriteEntities, ClipBoundariesGoToPixelRowsFromTheTop)
{
    struct ClipCase {
        DXFImage::CLIPTYPE type;
        std::vector<P2> boundary;
        std::string_view groups;
    };
    const ClipCase cases[] = {
        {DXFImage::CLIP_RECTANGLE,
         {{10, 20}, {30, 40}},
         "71 1|91 2|14 9.500000|24 19.500000|14 30.500000|24 40.500000"},
        {DXFImage::CLIP_POLYGON,
         {{0, 0}, {10, 0}, {0, 480}},
         "71 2|91 4|14 0.000000|24 0.000000|14 0.000000|24 480.000000|14 10.000000|24 480.000000|14 "
         "0.000000|24 0.000000"},
        {DXFImage::CLIP_POLYGON, {}, "71 2|91 0"},
    };
    for (const ClipCase& clip : cases) {
        m_Drawing.Clear();
        DXFImage* image = NewImage(L"none.bmp");
        image->SetClipBoundary(clip.type, clip.boundary);
        m_Drawing.Add(image);
        const Rows groups = Objects(Write(), "IMAGE").at(0);
        const Rows expected = Table(clip.groups);
        ASSERT_GE(groups.size(), expected.size());
        EXPECT_EQ(Rows(groups.end() - static_cast<std::ptrdiff_t>(expected.size()), groups.end()), expected);
        const auto& back = dynamic_cast<DXFImage&>(*(*ReadBack()[0ULL])[0]);
        EXPECT_EQ(back.ClipBoundary(), clip.boundary);
        EXPECT_EQ(back.ClipType(), clip.type);
    }
}

TEST_F(DXFWriteEntities, ImageEntriesAreNamedByWhatStandsBetweenBackslashAndFullStop)
{
    for (const wchar_t* name : {L"c:\\a\\b", L"..\\a", L"c:\\x.y\\b", L"\\.bmp"})
        m_Drawing.Add(NewImage(name));
    const std::vector<Rows> dictionaries = Objects(Write(), "DICTIONARY");
    ASSERT_EQ(dictionaries.size(), 4U);
    // The first has no full stop at all; where it stands before the backslash, there is none to end the name.
    EXPECT_EQ(Values(dictionaries[3], 3), (Rows{"a", "b", ""}));
    EXPECT_EQ(Values(dictionaries[3], 350).size(), 4U);
}

} // namespace
