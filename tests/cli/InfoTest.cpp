#include "cli/ProgramTest.h"

using nlohmann::json;
using InfoCommand = ProgramTest;

namespace {

constexpr char LAYERS[] = "0 LAYER|2 WALLS|62 1|6 DASHED|370 50|0 LAYER|2 Hidden|62 -5";
constexpr char BLOCKS[] = "0 BLOCK|8 0|2 DOOR|70 0|10 1|20 2|30 3|0 POINT|8 0|10 7|20 7|0 ENDBLK";
constexpr char ENTITIES[] = "0 LINE|8 WALLS|10 0|20 -1|11 4|21 5.5|31 2|0 LINE|8 NEW|10 1|20 1|11 2|21 2|"
                            "0 LWPOLYLINE|8 WALLS|70 1|10 0|20 0|10 1|20 0|10 1|20 1|"
                            "0 HATCH|8 0|0 DIMENSION|8 0|0 HATCH|8 0";

} // namespace

TEST_F(InfoCommand, TellsAllAboutADrawingInOneJsonObject)
{
    Write("plan.dxf", Drawing(ENTITIES, LAYERS, BLOCKS));
    json info = Info("plan.dxf");
    // Colours are those of the published table: 1 red, 5 blue; 370 is in hundredths of a millimetre; a layer
    // without it is 0.1 wide. Layer 0 comes first, NEW is made by the entity that names it.
    const json layer0 = {{"name", "0"},           {"color", "#ffffff"}, {"visible", true},
                         {"style", "CONTINUOUS"}, {"width", 0.1},       {"entities", 0}};
    json walls = layer0;
    walls.update(
        {{"name", "WALLS"}, {"color", "#ff0000"}, {"style", "DASHED"}, {"width", 0.5}, {"entities", 2}});
    json hidden = layer0;
    hidden.update({{"name", "Hidden"}, {"color", "#0000ff"}, {"visible", false}});
    json made = layer0;
    made.update({{"name", "NEW"}, {"entities", 1}});
    EXPECT_EQ(info["warnings"].size(), 1U);
    info.erase("warnings");
    const json expected = {
        {"file", "plan.dxf"},
        {"format", "dxf"},
        {"release", "AC1015"},
        {"line_ends", "LF"},
        {"layers", {layer0, walls, hidden, made}},
        {"blocks", {{{"name", "DOOR"}, {"base", {1, 2, 3}}, {"entities", 1}}}},
        {"kinds", {{"LINE", 2}, {"POLYGON", 1}}},
        {"extents", {{"min", {0, -1, 0}}, {"max", {4, 5.5, 2}}}},
        {"images", json::array()},
        {"skipped", {{"HATCH", 2}, {"DIMENSION", 1}}},
    };
    EXPECT_EQ(info, expected) << info.dump(2);
}

TEST_F(InfoCommand, ShowsTheSameToPeople)
{
    Write("plan.dxf", Drawing(ENTITIES, LAYERS, BLOCKS));
    const Outcome info = Halyard("info plan.dxf");
    EXPECT_EQ(info.status, 0);
    EXPECT_EQ(info.err, "");
    for (const char* line :
         {"  format     DXF, AC1015 (2000)\n", "  line ends  LF\n",
          "  extents    (0, -1, 0) to (4, 5.5, 2)\n",
          "  WALLS   #ff0000  yes      DASHED        0.5         2\n",
          "  Hidden  #0000ff  no       CONTINUOUS    0.1         0\n", "  DOOR  (1, 2, 3)         1\n",
          "  LINE     2\n", "  POLYGON  1\n", "2 HATCH, 1 DIMENSION"})
        EXPECT_NE(info.out.find(line), std::string::npos) << line << "is missing in\n" << info.out;
}

TEST_F(InfoCommand, TellsLineEnds)
{
    const std::string compact = Section("ENTITIES", "0 POINT|8 0|10 1|20 1") + "0 EOF";
    Write("lf.dxf", Groups(compact, "\n"));
    Write("crlf.dxf", Groups(compact, "\r\n"));
    Write("mixed.dxf", Groups(Section("HEADER", ""), "\r\n") + Groups(compact, "\n"));
    EXPECT_EQ(Info("lf.dxf")["line_ends"], "LF");
    EXPECT_EQ(Info("crlf.dxf")["line_ends"], "CRLF");
    EXPECT_EQ(Info("mixed.dxf")["line_ends"], "mixed");
}

TEST_F(InfoCommand, LeavesOutWhatADrawingDoesNotSay)
{
    Write("empty.dxf", Groups("0 EOF"));
    const json info = Info("empty.dxf");
    EXPECT_TRUE(info["extents"].is_null());
    EXPECT_TRUE(info["release"].is_null());
    EXPECT_EQ(info["kinds"], json::object());
    EXPECT_EQ(info["warnings"], json::array());
    EXPECT_NE(Halyard("info empty.dxf").out.find("Entities: none"), std::string::npos);
}

TEST_F(InfoCommand, FindsImagesBesideTheDrawing)
{
    constexpr char IMAGE[] = "8 0|10 0|20 0|11 1|21 0|12 0|22 1|13 4|23 4|340 ";
    const auto image = [&](const std::string& handle) {
        return "0 IMAGE|" + (IMAGE + handle) + "|";
    };
    std::filesystem::create_directory(m_Folder / "sub");
    // Found though it is no picture; found by its last component; not found; an image without a definition.
    Write("sub/broken.png", "no picture");
    Write("sub/deep.bmp", "no picture");
    Write(
        "sub/plan.dxf",
        Groups(
            Section("ENTITIES", image("A") + image("B") + image("C") + image("D"))
            + Section(
                "OBJECTS",
                "0 IMAGEDEF|5 A|1 broken.png|0 IMAGEDEF|5 B|1 d:\\photos\\deep.bmp|0 IMAGEDEF|5 C|1 gone.tif")
            + "0 EOF"));
    const json expected = {{{"file", "broken.png"}, {"found", true}},
                           {{"file", "d:\\photos\\deep.bmp"}, {"found", true}},
                           {{"file", "gone.tif"}, {"found", false}},
                           {{"file", ""}, {"found", false}}};
    EXPECT_EQ(Info("sub/plan.dxf")["images"], expected);
}

TEST_F(InfoCommand, SaysWhereReadingEndedEarlyAndWhy)
{
    const std::string whole = Groups("0 SECTION|2 ENTITIES|0 POINT|8 0|10 1|20 1|0 LINE");
    Write("cut.dxf", whole + "8\n0\n10\n");
    // 6 pairs, then "0/LINE", "8/0" and the code 10 are lines 13 to 17: the value of 10 would be line 18.
    json info = Info("cut.dxf");
    ASSERT_EQ(info["warnings"].size(), 1U);
    EXPECT_NE(info["warnings"][0].get<std::string>().find("ended early, at line 18"), std::string::npos)
        << info;
    EXPECT_EQ(info["kinds"], json({{"POINT", 1}}));

    Write("long.dxf", whole + "8\n0\n1\n" + std::string(512, 'x') + "\n");
    info = Info("long.dxf");
    ASSERT_EQ(info["warnings"].size(), 1U);
    EXPECT_NE(info["warnings"][0].get<std::string>().find("511"), std::string::npos) << info;

    Write("no_eof.dxf", Groups(Section("ENTITIES", "0 POINT|8 0|10 1|20 1")));
    EXPECT_NE(Info("no_eof.dxf")["warnings"][0].get<std::string>().find("EOF"), std::string::npos);
}

TEST_F(InfoCommand, ShowsNamesInTheCharactersTheyMean)
{
    // "Tür" is T, C3 BC, r in UTF-8 and T, FC, r in the older one-byte text. JSON keeps one byte to one
    // character.
    const auto drawing = [](const std::string& release, const std::string& name) {
        return Groups(Section("HEADER", "9 $ACADVER|1 " + release)
                      + Section("ENTITIES", "0 POINT|8 " + name + "|10 1|20 1") + "0 EOF");
    };
    Write("old.dxf", drawing("AC1015", "T\xFCr"));
    Write("new.dxf", drawing("AC1021", "T\xC3\xBCr"));
    // Either kind also comes in files of the other releases.
    Write("old_utf8.dxf", drawing("AC1018", "T\xC3\xBCr"));
    Write("new_bytes.dxf", drawing("AC1021", "T\xFCr"));
    for (const char* file : {"old.dxf", "new.dxf", "old_utf8.dxf", "new_bytes.dxf"})
        EXPECT_NE(Halyard(std::string("info ") + file).out.find("  T\xC3\xBCr "), std::string::npos) << file;
    EXPECT_EQ(Info("old.dxf")["layers"][1]["name"], "T\xC3\xBCr");
    EXPECT_EQ(Info("new.dxf")["layers"][1]["name"], "T\xC3\x83\xC2\xBCr");
}

TEST_F(InfoCommand, LetsNoControlCharacterOfADrawingReachTheTerminal)
{
    // Escape sequences that move the cursor and ring the bell: ESC and the single byte 9B begin them.
    Write("evil.dxf", Drawing("0 POINT|8 a\x1B[2J\x07\x9B"
                              "5A|10 1|20 1|0 E\x1BVIL|8 0"));
    for (const char* command : {"info", "info --json", "dump"}) {
        const Outcome outcome = Halyard(std::string(command) + " evil.dxf");
        EXPECT_EQ(outcome.status, 0);
        for (const std::string& text : {outcome.out, outcome.err}) {
            EXPECT_EQ(text.find_first_of("\x1B\x07\x7F"), std::string::npos) << command;
            EXPECT_EQ(text.find("\xC2\x9B"), std::string::npos) << command;
        }
    }
    EXPECT_EQ(Info("evil.dxf")["layers"][1]["name"], "a\x1B[2J\x07\xC2\x9B"
                                                     "5A");
}
