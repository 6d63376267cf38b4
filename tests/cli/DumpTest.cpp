#include "cli/ProgramTest.h"

using nlohmann::json;
using DumpCommand = ProgramTest;

namespace {

struct Row {
    const char* entity;   ///< groups after "8 L"
    const char* expected; ///< fields besides layer, block and color
};

// Worked out from the published meaning of the groups. Layer L is green (3), dotted, 0.25 wide.
const Row ROWS[] = {
    {"0 POINT|8 L|10 1.5|20 -2|30 1e3", R"({"kind":"POINT","point":[1.5,-2,1000]})"},
    {"0 LINE|8 L|10 1|20 2|11 3|21 4|31 5",
     R"({"kind":"LINE","style":"DOT","width":0.25,"start":[1,2,0],"end":[3,4,5]})"},
    {"0 LINE|8 L|6 DashDot|370 13|10 1|20 2|11 3|21 4",
     R"({"kind":"LINE","style":"DASHDOT","width":0.13,"start":[1,2,0],"end":[3,4,0]})"},
    {"0 SOLID|8 L|10 0|20 0|11 1|21 0|12 0|22 1|13 1|23 1",
     R"({"kind":"SOLID","corners":[[0,0,0],[1,0,0],[0,1,0],[1,1,0]]})"},
    {"0 3DFACE|8 L|10 0|20 0|30 1|11 1|21 0|12 1|22 1|13 0|23 1|33 2",
     R"({"kind":"3DFACE","corners":[[0,0,1],[1,0,0],[1,1,0],[0,1,2]]})"},
    {"0 CIRCLE|8 L|10 1|20 2|30 3|40 2|210 0|220 0|230 -1",
     R"({"kind":"CIRCLE","style":"DOT","width":0.25,"center":[1,2,3],"radius":2,"extrusion":[0,0,-1]})"},
    // From 0 to 60 degrees counter-clockwise from east is from 30 to 90 degrees clockwise from north.
    {"0 ARC|8 L|10 0|20 0|40 5|50 0|51 60",
     R"({"kind":"ARC","style":"DOT","width":0.25,"center":[0,0,0],"radius":5,"start_angle":30,"end_angle":90,
         "extrusion":[0,0,1]})"},
    {"0 LWPOLYLINE|8 L|38 7|10 0|20 0|42 1|10 2|20 0",
     R"({"kind":"POLYLINE","style":"DOT","width":0.25,"lightweight":true,"elevation":7,
         "vertices":[[0,0,7,1],[2,0,7,0]]})"},
    {"0 POLYLINE|8 L|70 1|0 VERTEX|8 L|10 0|20 0|30 1|0 VERTEX|8 L|10 1|20 1|42 -0.5|0 SEQEND",
     R"({"kind":"POLYGON","style":"DOT","width":0.25,"lightweight":false,"elevation":0,
         "vertices":[[0,0,1,0],[1,1,0,-0.5]]})"},
    // 72 = 1 and 73 = 3 is top centre, 5; 30 degrees counter-clockwise is 330 clockwise.
    {"0 TEXT|8 L|10 0|20 0|11 5|21 6|40 2.5|1 25%%d|7 ROMANS|50 30|72 1|73 3",
     "{\"kind\":\"TEXT\",\"text\":\"25\u00B0\",\"position\":[5,6,0],\"font\":\"ROMANS\",\"size\":2.5,"
     "\"rotation\":330,"
     "\"justification\":5,\"text_style\":0,\"multi_line\":false,\"rect_width\":0}"},
    {"0 INSERT|8 L|2 B|10 1|20 2|41 2|42 -1|50 45|70 3|44 10|71 2|45 20",
     R"({"kind":"INSERT","block_name":"B","insert_point":[1,2,0],"rotation":45,"scale":[2,-1,1],
         "extrusion":[0,0,1],
         "row_count":3,"column_count":2,"row_spacing":10,"column_spacing":20})"},
    // The file's corners lie half a pixel outside the corner pixels. An image has no colour of its own, and
    // what is read of it says nothing of its brightness, contrast and fade.
    {"0 IMAGE|8 L|10 1|20 2|11 0.5|21 0|12 0|22 0.25|13 640|23 480|71 1|91 2|14 -0.5|24 -0.5|14 99.5|24 "
     "49.5",
     R"({"kind":"IMAGE","color":"#000000","file_name":"","insert_point":[1,2,0],"u_vector":[0.5,0,0],
         "v_vector":[0,0.25,0],
         "width":640,"height":480,"clip_type":1,"clip_boundary":[[0,0],[99,49]],
         "brightness":50,"contrast":50,"fade":0})"},
};

constexpr char LAYER[] = "0 LAYER|2 L|62 3|6 DOT|370 25";

} // namespace

TEST_F(DumpCommand, WritesEveryFieldOfEveryKind)
{
    for (const Row& row : ROWS) {
        Write("one.dxf", Drawing(row.entity, LAYER));
        const auto entities = Dump("one.dxf");
        ASSERT_EQ(entities.size(), 1U) << row.entity;
        json expected = json::parse(row.expected);
        expected.update({{"layer", "L"}, {"block", nullptr}});
        if (!expected.contains("color")) expected["color"] = "#00ff00";
        EXPECT_EQ(entities[0], expected) << entities[0].dump();
    }
}

TEST_F(DumpCommand, WritesMultiLineTextsWithTheirCodes)
{
    // The text holds what separates groups in these tests, so it is put in afterwards.
    std::string text = Drawing("0 MTEXT|8 L|10 1|20 2|40 0.1|41 30|71 2|3 FIRST|1 LAST|62 1", LAYER);
    text.replace(text.find("FIRST"), 5, "{\\fArial|b1;Hel");
    text.replace(text.find("LAST"), 4, "lo}\\Pyou");
    Write("one.dxf", text);
    const auto entities = Dump("one.dxf");
    ASSERT_EQ(entities.size(), 1U);
    // Attachment point 2 is top centre; the parts are joined; the font is what follows the switch, in
    // capitals.
    const json expected = json::parse(R"({"kind":"MTEXT","layer":"L","block":null,"color":"#ff0000",
        "text":"{\\fArial|b1;Hello}\\Pyou","position":[1,2,0],"font":"ARIAL|B1","size":0.1,"rotation":0,
        "justification":5,"text_style":0,"multi_line":true,"rect_width":30})");
    EXPECT_EQ(entities[0], expected) << entities[0].dump();
}

TEST_F(DumpCommand, ListsLayersInDrawingOrderThenBlocksByName)
{
    const auto point = [](const std::string& layer, int x) {
        return "0 POINT|8 " + layer + "|10 " + std::to_string(x) + "|20 0";
    };
    Write("plan.dxf", Drawing(point("B", 1) + "|" + point("0", 2) + "|" + point("A", 3) + "|" + point("B", 4),
                              "0 LAYER|2 A|62 1",
                              "0 BLOCK|2 Z|10 0|20 0|" + point("0", 5) + "|0 ENDBLK|0 BLOCK|2 Q|10 0|20 0|"
                                  + point("A", 6) + "|" + point("0", 7) + "|0 ENDBLK"));
    std::string order;
    for (const json& e : Dump("plan.dxf"))
        order += (e["block"].is_null() ? "-" : e["block"].get<std::string>()) + e["layer"].get<std::string>()
                 + std::to_string(e["point"][0].get<int>()) + " ";
    // Layer 0 is always there first, then those of the table, then those that entities bring.
    EXPECT_EQ(order, "-02 -A3 -B1 -B4 Q07 QA6 Z05 ");
}

TEST_F(DumpCommand, PrintsTheShortestNumbersThatReadBackTheSame)
{
    Write("one.dxf",
          Drawing("0 LINE|8 0|370 70|10 0.1|20 -1e-9|30 123456789|11 1e300|21 0.30000000000000004|31 -0.5"));
    const std::string out = Halyard("dump one.dxf").out;
    EXPECT_NE(
        out.find(R"("width":0.7,"start":[0.1,-1e-09,123456789],"end":[1e+300,0.30000000000000004,-0.5])"),
        std::string::npos)
        << out;
}

TEST_F(DumpCommand, EscapesWhatJsonDoesNotAllow)
{
    // A quote, a backslash, a tab, a control character, and byte E9, which is the character of that value.
    Write("one.dxf", Drawing("0 TEXT|8 0|10 0|20 0|40 1|1 \"a\\b\tc\x01\xE9"));
    const std::string out = Halyard("dump one.dxf").out;
    EXPECT_NE(out.find(R"("text":"\"a\\b\tc\u0001)"
                       "\xC3\xA9\""),
              std::string::npos)
        << out;
    EXPECT_EQ(Dump("one.dxf")[0]["text"], "\"a\\b\tc\x01\xC3\xA9");
}

TEST_F(DumpCommand, EndsQuietlyWhenNobodyReadsOn)
{
    std::string points;
    for (int i = 0; i < 20000; ++i) points += "0\nPOINT\n8\n0\n10\n1\n20\n2\n";
    Write("many.dxf", points + "0\nEOF\n");
    const Outcome killed = Shell("halyard dump many.dxf | head -n 1");
    EXPECT_EQ(killed.err, "");
    EXPECT_EQ(killed.out.find("{\"kind\":\"POINT\""), 0U);
    // The same where the signal of a broken pipe is ignored and writing fails instead.
    const Outcome failed = Shell("trap '' PIPE; { halyard dump many.dxf; echo $? >&2; } | true");
    EXPECT_EQ(failed.err, "0\n");
}

TEST_F(DumpCommand, SaysWhenItsOutputCannotBeWritten)
{
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
    Write("one.dxf", Drawing("0 POINT|8 0|10 1|20 2"));
    for (const char* command : {"dump", "info"}) {
        const Outcome full = Halyard(std::string(command) + " one.dxf > /dev/full");
        EXPECT_EQ(full.status, 1);
        EXPECT_EQ(full.err, "halyard: standard output: no space left on the device\n");
    }
}
