#include "dxf/WrittenGroups.h"

#include <set>

#include "model/DXFLine.h"
#include "model/DXFPoint.h"

namespace {

class DXFWriteStructure : public DXFWriteTest {};

/// Place of the handle seed among all groups.
constexpr std::size_t SEED_ROW = 19;

/// The whole of a drawing without entities, typed from the published tables. "#": handles from 7d1 on.
constexpr std::string_view EMPTY_DRAWING = R"(
    0 SECTION|2 HEADER|9 $ACADVER|1 AC1014
    9 $EXTMIN|10 0.000000|20 0.000000|30 0.000000|9 $EXTMAX|10 0.000000|20 0.000000|30 0.000000
    9 $LIMMIN|10 0.000000|20 0.000000|9 $LIMMAX|10 0.000000|20 0.000000
    9 $HANDSEED|5     7e8
    0 ENDSEC
    0 SECTION|2 CLASSES
    0 CLASS|1 RASTERVARIABLES|2 AcDbRasterVariables|3 ISM|90 0|280 0|281 0
    0 CLASS|1 IMAGEDEF|2 AcDbRasterImageDef|3 ISM|90 0|280 0|281 0
    0 CLASS|1 IMAGEDEF_REACTOR|2 AcDbRasterImageDefReactor|3 ISM|90 1|280 0|281 0
    0 CLASS|1 IMAGE|2 AcDbRasterImage|3 ISM|90 127|280 0|281 1
    0 ENDSEC
    0 SECTION|2 TABLES
    0 TABLE|2 LTYPE|5 #|100 AcDbSymbolTable|70 1
    0 LTYPE|5 #|100 AcDbSymbolTableRecord|100 AcDbLinetypeTableRecord|2 CONTINUOUS|70 0|3 Solid line|72 65|73 0|40 0.000000
    0 LTYPE|5 #|100 AcDbSymbolTableRecord|100 AcDbLinetypeTableRecord|2 DASHED|70 0
    3 Dashed __ __ __ __ __ __ __ __ __ __ __ __ __|72 65|73 2|40 0.750000|49 0.500000|74 0|49 -0.250000|74 0
    0 LTYPE|5 #|100 AcDbSymbolTableRecord|100 AcDbLinetypeTableRecord|2 DOT|70 0
    3 Dot . . . . . . . . . . . . . . . . . . . . . .|72 65|73 2|40 0.250000|49 0|74 0|49 -0.250000|74 0
    0 LTYPE|5 #|100 AcDbSymbolTableRecord|100 AcDbLinetypeTableRecord|2 DASHDOT|70 0
    3 Dash dot __ . __ . __ . __ . __ . __ . __ . __|72 65|73 4|40 1.000000
    49 0.500000|74 0|49 -0.250000|74 0|49 0|74 0|49 -0.250000|74 0
    0 LTYPE|5 #|100 AcDbSymbolTableRecord|100 AcDbLinetypeTableRecord|2 BYBLOCK|70 0|3|72 65|73 0|40 0.0
    0 LTYPE|5 #|100 AcDbSymbolTableRecord|100 AcDbLinetypeTableRecord|2 BYLAYER|70 0|3|72 65|73 0|40 0.0
    0 ENDTAB
    0 TABLE|2 LAYER|5 #|100 AcDbSymbolTable|70 1
    0 LAYER|5 #|100 AcDbSymbolTableRecord|100 AcDbLayerTableRecord|2 0|70 0|62 7|6 CONTINUOUS
    0 ENDTAB
    0 TABLE|2 STYLE|5 #|100 AcDbSymbolTable|70 0|0 ENDTAB
    0 TABLE|2 VIEW|5 #|100 AcDbSymbolTable|70 0|0 ENDTAB
    0 TABLE|2 UCS|5 #|100 AcDbSymbolTable|70 0|0 ENDTAB
    0 TABLE|2 APPID|5 #|100 AcDbSymbolTable|70 1
    0 APPID|5 #|100 AcDbSymbolTableRecord|100 AcDbRegAppTableRecord|2 ACAD|70 0
    0 ENDTAB
    0 TABLE|2 BLOCK_RECORD|5 #|100 AcDbSymbolTable|70 0
    0 BLOCK_RECORD|5 #|100 AcDbSymbolTableRecord|100 AcDbBlockTableRecord|2 *MODEL_SPACE
    0 BLOCK_RECORD|5 #|100 AcDbSymbolTableRecord|100 AcDbBlockTableRecord|2 *PAPER_SPACE
    0 ENDTAB
    0 TABLE|2 VPORT|5 #|100 AcDbSymbolTable|70 0|0 ENDTAB
    0 TABLE|2 DIMSTYLE|5 #|100 AcDbSymbolTable|70 0|0 ENDTAB
    0 ENDSEC
    0 SECTION|2 BLOCKS
    0 BLOCK|5 #|100 AcDbEntity|8 0|100 AcDbBlockBegin|2 *MODEL_SPACE|70 0|10 0.0|20 0.0|30 0.0|3 *MODEL_SPACE|1
    0 ENDBLK|5 #|100 AcDbEntity|8 0|100 AcDbBlockEnd
    0 BLOCK|5 #|100 AcDbEntity|67 1|8 0|100 AcDbBlockBegin|2 *PAPER_SPACE|70 0|10 0.0|20 0.0|30 0.0|3 *PAPER_SPACE|1
    0 ENDBLK|5 #|100 AcDbEntity|67 1|8 0|100 AcDbBlockEnd
    0 ENDSEC
    0 SECTION|2 ENTITIES|0 ENDSEC
    0 SECTION|2 OBJECTS
    0 DICTIONARY|5 C|100 AcDbDictionary|3 ACAD_GROUP|350 D|3 ACAD_MLINESTYLE|350 1B
    0 DICTIONARY|5 D|102 {ACAD_REACTORS|330 C|102 }|100 AcDbDictionary
    0 DICTIONARY|5 1B|102 {ACAD_REACTORS|330 C|102 }|100 AcDbDictionary|3 STANDARD|350 1C
    0 MLINESTYLE|5 1C|102 {ACAD_REACTORS|330 1B|102 }|100 AcDbMlineStyle|2 STANDARD|70 0|3|62 256|51 90.0|52 90.0
    71 2|49 0.5|62 256|6 BYLAYER|49 -0.5|62 256|6 BYLAYER
    0 ENDSEC
    0 EOF
)";

TEST_F(DXFWriteStructure, AnEmptyDrawingIsTheSkeletonAlone)
{
    // 23 records draw a handle, 7d1 to 7e7: the next one is 7e8, right-aligned in seven characters.
    EXPECT_EQ(Write(), Table(EMPTY_DRAWING));
    EXPECT_NE(Bytes().find("$HANDSEED\r\n5\r\n    7e8\r\n0\r\n"), std::string::npos);
}

TEST_F(DXFWriteStructure, TheHeaderHoldsTheExtents)
{
    Add<DXFLine>(GTL::Point3D<double>(-1, 2, 3), GTL::Point3D<double>(4.5, 6, -0.25));
    const Rows groups = Write();
    const Rows expected =
        Table("9 $EXTMIN|10 -1.000000|20 2.000000|30 -0.250000|9 $EXTMAX|10 4.500000|20 6.000000|"
              "30 3.000000|9 $LIMMIN|10 -1.000000|20 2.000000|9 $LIMMAX|10 4.500000|20 6.000000");
    ASSERT_GT(groups.size(), 18U);
    EXPECT_EQ(Rows(groups.begin() + 4, groups.begin() + 18), expected);
}

TEST_F(DXFWriteStructure, LayersCarryColourAndVisibility)
{
    // Red 1, green 2, blue 3: 65536 + 2 * 256 + 3 = 66051; the nearest entry of the table is black, index 0.
    m_Drawing.AddLayer(L"Walls \u00E9\u0416")->SetColor(0x030201UL);
    m_Drawing.AddLayer(L"Red")->SetColor(DXFColor(1));
    m_Drawing[L"Red"]->SetVisible(false);
    m_Drawing[L"Red"]->SetStyle(LineInfo::DOT);
    const std::string head = "5 #|100 AcDbSymbolTableRecord|100 AcDbLayerTableRecord|";

    const std::vector<Rows> plain = Objects(Write(), "LAYER");
    ASSERT_EQ(plain.size(), 3U);
    EXPECT_EQ(plain[1], Table(head + "2 Walls \xE9_|70 0|62 0|6 CONTINUOUS", 0x7da));
    EXPECT_EQ(plain[2], Table(head + "2 Red|70 0|62 -1|6 CONTINUOUS", 0x7db));
    const std::vector<Rows> coloured = Objects(Write(1), "LAYER");
    EXPECT_EQ(coloured[1], Table(head + "2 Walls \xE9_|70 0|62 0|420 66051|6 CONTINUOUS", 0x7da));
}

TEST_F(DXFWriteStructure, FontsBecomeTextStyles)
{
    DXFText::s_FontTable = {L"Arial Bold.ttf", L"a!@#%^&*()+={}[]\\|'\";:.>,<?/`~ b",
                            L"\u0416" + std::wstring(39, L'x')};
    const std::vector<Rows> styles = Objects(Write(), "STYLE");
    ASSERT_EQ(styles.size(), 3U);
    EXPECT_EQ(styles[0],
              Table("5 #|100 AcDbSymbolTableRecord|100 AcDbTextStyleTableRecord|2 Arial_Bold_ttf|70 0|"
                    "40 0.000000|41 1.000000|50 0.000000|71 0|42 5.000000|3 Arial Bold.ttf|4",
                    0x7db));
    // Thirty unsafe characters between a and b; b is the 32nd and cut off.
    EXPECT_EQ(Values(styles[1], 2), Rows{"a" + std::string(30, '_')});
    EXPECT_EQ(Values(styles[2], 2), Rows{"_" + std::string(30, 'x')});
    EXPECT_EQ(Values(styles[2], 3), Rows{"_" + std::string(39, 'x')});
}

TEST_F(DXFWriteStructure, EveryHandleIsOnceAndTheSeedIsAboveAll)
{
    for (int i = 0; i < 100; ++i) Add<DXFPoint>(i, i, i);
    const Rows groups = Write();
    std::set<unsigned long> handles;
    unsigned long seed = 0;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (!groups[i].starts_with("5 ")) continue;
        const unsigned long handle = std::stoul(groups[i].substr(2), nullptr, 16);
        if (groups[i - 1] == "9 $HANDSEED")
            seed = handle;
        else
            EXPECT_TRUE(handles.insert(handle).second) << groups[i];
    }
    EXPECT_EQ(handles.size(), 23U + 100 + 4);
    EXPECT_EQ(seed, *handles.rbegin() + 1);
}

TEST_F(DXFWriteStructure, OneWriterNeverGivesAHandleTwice)
{
    DXFFile file;
    ASSERT_TRUE(file.Write(m_File.Name(), m_Drawing, m_KeepGoing));
    const std::string first = Bytes();
    ASSERT_TRUE(file.Write(m_File.Name(), m_Drawing, m_KeepGoing));
    EXPECT_EQ(GroupsOf(first), Table(EMPTY_DRAWING));
    // The seed took 7e8, so the second file starts at 7e9 and its seed is 23 further.
    Rows second = Table(EMPTY_DRAWING, 0x7e9);
    second[SEED_ROW] = "5     800";
    EXPECT_EQ(GroupsOf(Bytes()), second);
}

/// Clears the flag while it is written.
struct Stopper : DXFPoint {
    explicit Stopper(std::atomic<bool>& flag) : m_Flag(flag) {}
    void Write(DXFWriter& writer) const override
    {
        m_Flag = false;
        DXFPoint::Write(writer);
    }
    std::atomic<bool>& m_Flag;
};

TEST_F(DXFWriteStructure, AStoppedWriteLeavesAWholeFile)
{
    Add<DXFPoint>(1, 1, 1);
    m_Drawing.Add(new Stopper(m_KeepGoing));
    Add<DXFPoint>(2, 2, 2);
    m_Drawing.Add(L"Later", new DXFPoint(3, 3, 3), true);
    DXFFile file;
    ASSERT_TRUE(file.Write(m_File.Name(), m_Drawing, m_KeepGoing));
    EXPECT_EQ(file.Done(), 2U);
    EXPECT_EQ(file.Total(), 4U);
    Rows groups = GroupsOf(Bytes());
    EXPECT_EQ(Objects(groups, "POINT").size(), 2U);
    EXPECT_EQ(Objects(groups, "MLINESTYLE").size(), 1U);
    EXPECT_EQ(groups.back(), "0 EOF");
    EXPECT_NE(groups[SEED_ROW], "5        ");

    groups = Write(); // the flag is still false
    EXPECT_TRUE(Objects(groups, "POINT").empty());
    EXPECT_EQ(groups.back(), "0 EOF");
}

TEST_F(DXFWriteStructure, OnlyTheOpeningCanFail)
{
    DXFFile file;
    const ErrorString result = file.Write(L"/no such folder/plan.dxf", m_Drawing, m_KeepGoing);
    EXPECT_FALSE(result);
    EXPECT_EQ(result.Text(), L"Error opening file \"plan.dxf\" for writing!");
    EXPECT_TRUE(file.WriteFailed());
    ASSERT_TRUE(file.Write(m_File.Name(), m_Drawing, m_KeepGoing));
    EXPECT_FALSE(file.WriteFailed());
}

TEST_F(DXFWriteStructure, AFullDiskIsKeptForTheAsking)
{
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "this system has no disk that is always full";
    DXFFile file;
    EXPECT_TRUE(file.Write(L"/dev/full", m_Drawing, m_KeepGoing));
    EXPECT_TRUE(file.WriteFailed());
    EXPECT_FALSE(file.WriteFailReason().empty());
}

TEST_F(DXFWriteStructure, NamesThatWouldBreakTheFileAreMadeHarmless)
{
    const std::wstring longName(600, L'n');
    ASSERT_TRUE(m_Drawing.AddLayer(L"a"));
    ASSERT_TRUE(m_Drawing.RenameLayer(L"a", L""));
    ASSERT_TRUE(m_Drawing.AddLayer(L"b\r\n0\nEOF\t\x1F" + std::wstring(1, L'\0')));
    ASSERT_TRUE(m_Drawing.AddLayer(longName));
    for (const std::wstring& name : m_Drawing.GetLayerOrder())
        (*m_Drawing[HashedString<wchar_t>(name)]).Add(new DXFPoint());
    Write();
    DXF& back = ReadBack();
    const std::vector<std::wstring> expected = {L"0", L"b__0_EOF___", longName.substr(0, 511), L"_"};
    std::vector<std::wstring> names = back.GetLayerOrder();
    EXPECT_EQ(std::set(names.begin(), names.end()), std::set(expected.begin(), expected.end()));
    for (const std::wstring& name : names) EXPECT_EQ(back[name]->NumEntities(), 1U) << names.size();
}

} // namespace
