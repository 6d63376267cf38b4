#include "cli/ProgramTest.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

using nlohmann::json;

class ConvertCommand : public ProgramTest {
protected:
    /// The entities of a converted drawing.
    std::vector<json> Converted(const std::string& drawing, const std::string& options = "") const
    {
        Write("in.dxf", drawing);
        const Outcome convert = Halyard("convert " + options + " in.dxf out.dxf");
        EXPECT_EQ(convert.status, 0) << convert.err;
        EXPECT_EQ(convert.out, "");
        return Dump("out.dxf");
    }
    bool TwiceIsOnce(const std::string& in, const std::string& options = "") const
    {
        const Outcome outcome = Halyard("convert " + options + " " + in + " once.dxf && halyard convert "
                                        + options + " once.dxf twice.dxf");
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return !Read("once.dxf").empty() && Read("once.dxf") == Read("twice.dxf");
    }
};

namespace {

constexpr char POINT[] = "0 POINT|8 0|10 1|20 2";

std::string MText(const std::string& text)
{
    return "0\nMTEXT\n8\n0\n10\n1.23456789\n20\n2\n40\n0.123456789\n41\n9\n11\n0.6\n21\n0.799999999\n1\n"
           + text + "\n";
}

/// Their directions of unit length are none any more with six decimals, and their boxes are computed from all
/// that.
std::string TurnedTexts()
{
    constexpr int TEXTS = 300;
    constexpr double STEP = 0.0210987654321;
    std::string drawing;
    for (int i = 0; i < TEXTS; ++i) {
        char turned[200];
        std::snprintf(turned, sizeof turned,
                      "0\nMTEXT\n8\n0\n10\n%.9f\n20\n%.9f\n40\n%.9f\n11\n%.12f\n21\n%.12f\n1\nText\n",
                      std::cbrt(i), std::sqrt(i), 1 + i * STEP, std::cos(i * STEP), std::sin(i * STEP));
        drawing += turned;
    }
    return drawing;
}

} // namespace

TEST_F(ConvertCommand, WritesTheWholeDrawingAsAc1014)
{
    const auto entities =
        Converted(Drawing("0 LINE|8 A|62 5|10 0|20 0|11 3|21 4|0 TEXT|8 A|10 1|20 1|40 2|1 Hello"));
    ASSERT_EQ(entities.size(), 2U);
    EXPECT_EQ(entities[0]["end"], json({3, 4, 0}));
    EXPECT_EQ(entities[0]["color"], "#0000ff");
    EXPECT_EQ(entities[1]["text"], "Hello");
    const json info = Info("out.dxf");
    EXPECT_EQ(info["release"], "AC1014");
    EXPECT_EQ(info["line_ends"], "CRLF");
    EXPECT_EQ(info["warnings"], json::array());
}

TEST_F(ConvertCommand, PutsTheEntitiesOfBlocksWhereInsertsShowThem)
{
    // The base point (1, 1) lands on (10, 20). Turned by 90 degrees and doubled, the block's (2, 1), one to
    // the right of it, comes to lie two above. Layer 0 of the block is the insert's layer; RED says what the
    // block's LINE does not.
    const auto entities = Converted(Drawing(
        "0 INSERT|8 HERE|2 B|10 10|20 20|41 2|42 2|43 2|50 90", "0 LAYER|2 RED|62 1|370 50",
        "0 BLOCK|2 B|8 0|70 0|10 1|20 1|0 POINT|8 0|10 2|20 1|0 LINE|8 RED|10 1|20 1|11 1|21 3|0 ENDBLK"));
    ASSERT_EQ(entities.size(), 2U);
    const json& line = entities[0];
    const json& point = entities[1];
    EXPECT_EQ(point["layer"], "HERE");
    EXPECT_EQ(point["point"], json({10, 22, 0}));
    EXPECT_EQ(line["layer"], "RED");
    EXPECT_EQ(line["color"], "#ff0000");
    EXPECT_EQ(line["width"], 0.5);
    EXPECT_EQ(line["end"], json({6, 20, 0}));
}

TEST_F(ConvertCommand, SaysWhichInsertsItCouldNotShow)
{
    Write("in.dxf", Drawing("0 INSERT|8 0|2 NONE|10 0|20 0|0 INSERT|8 0|2 B|10 0|20 0|" + std::string(POINT),
                            "", "0 BLOCK|2 B|8 0|70 0|10 0|20 0|0 INSERT|8 0|2 B|10 1|20 1|0 ENDBLK"));
    const Outcome convert = Halyard("convert in.dxf out.dxf");
    EXPECT_EQ(convert.status, 0);
    EXPECT_EQ(
        convert.err,
        "halyard: in.dxf: warning: 1 insert dropped: the drawing lacks the block\n"
        "halyard: in.dxf: warning: 1 insert dropped: a block holds itself, or blocks are nested too deep\n");
    EXPECT_EQ(Dump("out.dxf").size(), 1U);
}

TEST_F(ConvertCommand, LeavesADrawingAsItWasReadWhenPlain)
{
    const std::string drawing = Drawing("0 INSERT|8 0|2 B|10 1|20 1|" + std::string(POINT), "",
                                        "0 BLOCK|2 B|8 0|70 0|10 0|20 0|0 POINT|8 0|10 2|20 1|0 ENDBLK");
    EXPECT_EQ(Converted(drawing, "--plain").size(), 1U);
    // An insert keeps its bare header, which reading counts as skipped.
    EXPECT_EQ(Info("out.dxf")["skipped"], json({{"INSERT", 1}}));
    // The writer's prefix is part of the text it reads back.
    Write("in.dxf", MText("Hi"));
    EXPECT_EQ(Halyard("convert --plain in.dxf a.dxf && halyard convert --plain a.dxf b.dxf").status, 0);
    EXPECT_EQ(Dump("b.dxf")[0]["text"], R"(\fCOURIER|B0|I0|C0|P34|b0|i0|c0|p34;\fCOURIER|b0|i0|c0|p34;Hi)");
    // One convert that is not plain leaves a single prefix, whatever came before.
    EXPECT_EQ(Halyard("convert b.dxf c.dxf").status, 0);
    EXPECT_EQ(Dump("c.dxf")[0]["text"], R"(\fCOURIER|b0|i0|c0|p34;Hi)");
}

TEST_F(ConvertCommand, WritesExactColoursWhenAsked)
{
    // 0x010203 is red 1, green 2, blue 3; the nearest of the table's colours is black.
    const std::string drawing = Drawing("0 POINT|8 0|420 66051|10 1|20 2");
    EXPECT_EQ(Converted(drawing, "--true-color")[0]["color"], "#010203");
    EXPECT_EQ(Converted(drawing)[0]["color"], "#000000");
}

TEST_F(ConvertCommand, DoneTwiceIsDoneOnce)
{
    // Numbers of many digits, angles at the seam of a turn, and everything that comes back from a file in
    // another form.
    const std::string drawings[] = {
        MText("Hello"),
        MText("\\fTimes New Roman|b1|i0|c0|p18;Big \\H2x;text"),
        MText("\\fArial|b1|i1|c0|p34;\\Lunderlined"),
        MText("{\\fArial|b0|i0|c0|p34;in braces; with a semicolon}"),
        MText("\\f|b0|i0|c0|p34;no font") + MText("\\f;none at all") + MText("\\fa{b;odd")
            + MText(std::string(500, 'x')),
        MText("tab\tand control \x01 characters \\U+4E2D"),
        Drawing("0 TEXT|8 0|10 0.12345678|20 1e-7|40 1.23456789|1 T|7 arial narrow.ttf|50 359.9999999|72 4"),
        Drawing("0 TEXT|8 0|10 1|20 1|11 2|21 2|40 1|1 T|7 A font whose name is longer than others|50 "
                "-30.00000049|72 1|73 2"),
        Drawing("0 ARC|8 0|10 -0.0000004|20 0|40 1|50 10|51 45"),
        Drawing("0 ARC|8 0|10 0.00000049|20 0.00000049|40 1.00000049|50 0|51 360"),
        Drawing("0 ARC|8 0|10 0|20 0|40 1|50 359.9999999|51 123.45678949|0 ARC|8 0|10 0|20 0|40 2|50 7|51 "
                "359.9999999"),
        TurnedTexts(),
        Drawing("0 CIRCLE|8 0|10 0.00000049|20 -0.00000051|40 12345.6789012345|0 CIRCLE|8 0|10 1|20 2|40 "
                "-3|39 5"),
        Drawing("0 CIRCLE|8 0|10 1|20 2|40 3|210 0|220 0|230 -1|0 ARC|8 0|10 1|20 2|40 3|50 0|51 90|210 "
                "1|220 1|230 1"),
        Drawing("0 LWPOLYLINE|8 L|38 5.5|6 DASHED|10 0.1234567|20 0|42 0.33333333|10 5|20 0",
                "0 LAYER|2 L|62 3|6 DOT|370 100"),
        Drawing("0 LWPOLYLINE|8 L|70 1|38 5.5|10 0|20 0|42 -1|10 5|20 0.0000005",
                "0 LAYER|2 L|62 -3|6 DASHED|370 100"),
        Drawing(
            "0 POLYLINE|8 L|66 1|70 8|0 VERTEX|8 L|10 0|20 0|30 1|0 VERTEX|8 L|10 1|20 1|30 2.5|0 SEQEND"),
        Drawing("0 SOLID|8 0|10 0.1234567|20 0|11 1|21 0|12 0|22 1|13 1|23 1e300|0 3DFACE|8 0|10 0|20 0|11 "
                "1|21 0|12 1|22 1|13 0|23 1"),
        Drawing("0 LINE|8 0|420 1193046|6 HIDDEN|370 13|10 -0.0000001|20 0|11 1e15|21 0.1234565"),
        Drawing("0 IMAGE|8 0|10 1.23456789|20 2|30 3|11 0.1|21 0|31 1|12 0|22 0.1234567|13 640|23 480|340 "
                "A|71 2|91 4|14 0|24 0|14 9|24 0|"
                "14 9|24 9.0000009|14 0|24 0|0 IMAGE|8 0|10 0|20 0|11 1|21 0|12 0|22 1|13 10|23 20|340 A")
            + "0\nIMAGEDEF\n5\nA\n1\nc:\\x\\photo.png\n",
    };
    for (const std::string& drawing : drawings) {
        Write("in.dxf", drawing);
        EXPECT_TRUE(TwiceIsOnce("in.dxf")) << drawing;
    }
    const std::string example = Quoted(TestPlaces::Source() / "examples" / "plan.dxf");
    EXPECT_TRUE(TwiceIsOnce(example));
    EXPECT_TRUE(TwiceIsOnce(example, "--true-color"));
}

TEST_F(ConvertCommand, DoneTwiceIsDoneOnceForEverySampleDrawing)
{
    SKIP_WITHOUT_CORPUS();
    int converted = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(TestPlaces::Corpus() / "dxf")) {
        if (!entry.is_regular_file()) continue;
        const std::string file = Quoted(entry.path());
        const Outcome once = Halyard("convert " + file + " once.dxf && halyard convert once.dxf twice.dxf");
        ASSERT_TRUE(once.status == 0 || once.status == 1) << file << once.status;
        if (once.status != 0) continue;
        ++converted;
        EXPECT_TRUE(Read("once.dxf") == Read("twice.dxf")) << file;
    }
    EXPECT_GT(converted, 150);
}

TEST_F(ConvertCommand, KeepsTheHeightOfLightweightPolylines)
{
    const auto entities = Converted(Drawing("0 LWPOLYLINE|8 0|38 5.5|10 0|20 0|10 1|20 0"));
    EXPECT_EQ(entities[0]["vertices"], json::parse("[[0,0,5.5,0],[1,0,5.5,0]]"));
    EXPECT_NE(
        Read("out.dxf").find("AcDb2dPolyline\r\n66\r\n1\r\n10\r\n0.0\r\n20\r\n0.0\r\n30\r\n5.500000\r\n"),
        std::string::npos);
}

TEST_F(ConvertCommand, KeepsTheBoxThatTheWriterNotedForAText)
{
    // Whatever the fonts of this machine measure.
    Write("in.dxf",
          MText("\\fArial|b0|i0|c0|p34;Hi") + "999\nYES\n17\n-5\n27\n-6\n37\n0\n18\n70\n28\n80\n38\n0\n");
    EXPECT_EQ(Halyard("convert in.dxf out.dxf").status, 0);
    EXPECT_EQ(Info("out.dxf")["extents"], json({{"min", {-5, -6, 0}}, {"max", {70, 80, 0}}}));
}

TEST_F(ConvertCommand, ListsOnlyTheFontsOfTheDrawing)
{
    // UNUSED is the font of a block that nothing inserts.
    Converted(Drawing("0 TEXT|8 0|10 0|20 0|40 1|1 T|7 USED", "",
                      "0 BLOCK|2 B|8 0|70 0|10 0|20 0|0 TEXT|8 0|10 0|20 0|40 1|1 T|7 UNUSED|0 ENDBLK"));
    EXPECT_NE(Read("out.dxf").find("USED"), std::string::npos);
    EXPECT_EQ(Read("out.dxf").find("UNUSED"), std::string::npos);
}

TEST_F(ConvertCommand, MayReplaceItsOwnInput)
{
    Write("plan.dxf", Drawing(POINT));
    std::filesystem::permissions(m_Folder / "plan.dxf", std::filesystem::perms(0640));
    std::filesystem::create_symlink("plan.dxf", m_Folder / "link.dxf");
    const Outcome convert = Halyard("convert link.dxf link.dxf");
    EXPECT_EQ(convert.status, 0) << convert.err;
    EXPECT_EQ(Info("plan.dxf")["release"], "AC1014");
    EXPECT_EQ(Dump("plan.dxf").size(), 1U);
    EXPECT_TRUE(std::filesystem::is_symlink(m_Folder / "link.dxf"));
    EXPECT_EQ(std::filesystem::status(m_Folder / "plan.dxf").permissions(), std::filesystem::perms(0640));
    std::filesystem::create_symlink("not/../new.dxf", m_Folder / "second.dxf");
    std::filesystem::create_directory(m_Folder / "not");
    std::filesystem::create_symlink("second.dxf", m_Folder / "first.dxf");
    EXPECT_EQ(Halyard("convert plan.dxf first.dxf").status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(m_Folder / "first.dxf")
                && std::filesystem::is_symlink(m_Folder / "second.dxf"));
    EXPECT_EQ(Dump("new.dxf").size(), 1U) << "the file that the links lead to was made";
    EXPECT_EQ(Leftovers(), std::vector<std::string>());
}

TEST_F(ConvertCommand, DoesNotReplaceItsInputByAPartOfIt)
{
    const std::string cut = Drawing(POINT).substr(0, Drawing(POINT).rfind("20\n") + 3);
    Write("plan.dxf", cut);
    const Outcome convert = Halyard("convert plan.dxf plan.dxf");
    EXPECT_EQ(convert.status, 1);
    EXPECT_NE(convert.err.find("halyard: plan.dxf: is not replaced, because"), std::string::npos);
    EXPECT_EQ(Read("plan.dxf"), cut);
}

TEST_F(ConvertCommand, SaysWhyATargetCannotBeWrittenAndLeavesIt)
{
    Write("in.dxf", Drawing(POINT));
    Write("protected.dxf", "old");
    std::filesystem::permissions(m_Folder / "protected.dxf", std::filesystem::perms(0444));
    std::filesystem::create_directory(m_Folder / "folder.dxf");
    std::filesystem::create_symlink("round2.dxf", m_Folder / "round1.dxf");
    std::filesystem::create_symlink("round1.dxf", m_Folder / "round2.dxf");
    Shell("mkfifo pipe.dxf");
    const std::pair<const char*, const char*> rows[] = {
        {"protected.dxf", "is write-protected"},
        {"folder.dxf", "is a folder"},
        {"round1.dxf", "is a link that leads nowhere"},
        {"pipe.dxf", "is no regular file"},
        {"none/out.dxf", "cannot be written: there is no folder none"},
        {"in.dxf/out.dxf", "cannot be written: there is no folder in.dxf"},
    };
    for (const auto& [target, complaint] : rows) {
        const Outcome convert = Halyard(std::string("convert in.dxf ") + target);
        EXPECT_EQ(convert.status, 1);
        EXPECT_EQ(convert.err, std::string("halyard: ") + target + ": " + complaint + "\n");
    }
    EXPECT_EQ(Read("protected.dxf"), "old");
    EXPECT_EQ(Leftovers(), std::vector<std::string>());
}

TEST_F(ConvertCommand, LosesNothingWhenThereIsNoRoomForTheOutput)
{
    std::string drawing;
    for (int i = 0; i < 3000; ++i) drawing += Groups(POINT);
    Write("in.dxf", drawing + Groups("0 EOF"));
    Write("out.dxf", "old");
    // A limit on the size of files, 128 blocks of 512 or 1024 bytes, stands for a full disk.
    const Outcome convert = Shell("ulimit -f 128; halyard convert in.dxf out.dxf");
    EXPECT_EQ(convert.status, 1);
    EXPECT_EQ(convert.err, "halyard: out.dxf: cannot be written: the file is too large\n");
    EXPECT_EQ(Read("out.dxf"), "old");
    EXPECT_EQ(Leftovers(), std::vector<std::string>());
}

class StoppedProgram : public ConvertCommand {
protected:
    /// So many lines that each part of the work takes a while.
    void WriteBigDrawing() const
    {
        std::string drawing;
        const std::string line = Groups("0 LINE|8 0|10 1234.5|20 2345.6|11 3456.7|21 4567.8");
        constexpr std::size_t LINES = 500'000;
        drawing.reserve(LINES * line.size());
        for (std::size_t i = 0; i < LINES; ++i) drawing += line;
        Write("big.dxf", drawing + Groups("0 EOF"));
        Write("out.dxf", "old");
    }
    void ExpectCleanStop(const Outcome& outcome) const
    {
        EXPECT_EQ(outcome.status, 130);
        EXPECT_EQ(outcome.err, "halyard: stopped\n");
        EXPECT_EQ(Read("out.dxf"), "old");
        EXPECT_EQ(Leftovers(), std::vector<std::string>());
    }
};

TEST_F(StoppedProgram, LeavesNoHalfWrittenFile)
{
    WriteBigDrawing();
    // The file that is being written shows that the time has come.
    ExpectCleanStop(Shell("\"$HALYARD\" convert big.dxf out.dxf & pid=$!\n"
                          "until ls .halyard-*.tmp >/dev/null 2>&1; do kill -0 $pid || break; done\n"
                          "kill -TERM $pid; wait $pid"));
}

TEST_F(StoppedProgram, StopsWhileItReads)
{
    WriteBigDrawing();
    for (const std::string command : {"convert big.dxf out.dxf", "dump big.dxf", "info big.dxf"}) {
        Outcome outcome;
        // A machine may be so slow that the signal comes before the program has taken it over: then later.
        for (const std::string delay : {"0.05", "0.1", "0.2", "0.4", "0.8"}) {
            outcome = Shell("timeout --preserve-status -s INT " + delay + " \"$HALYARD\" " + command
                            + " >/dev/null");
            if (outcome.status == 0 || !outcome.err.empty()) break;
        }
        ExpectCleanStop(outcome);
    }
}
