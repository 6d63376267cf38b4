#include "cli/ProgramTest.h"
#include "plot/PlotBytes.h"

#include <gmock/gmock.h>

#include <cmath>

using nlohmann::json;
using testing::HasSubstr;

class PlotCommand : public ProgramTest {
protected:
    /// The entities of a drawing after it was converted to a plot file, and what was said about it.
    std::vector<json> Converted(const std::string& drawing, const std::string& options = "")
    {
        Write("in.dxf", drawing);
        const Outcome convert = Halyard("convert " + options + " in.dxf out.plot");
        EXPECT_EQ(convert.status, 0) << convert.err;
        m_Said = convert.err;
        return Dump("out.plot");
    }

    std::string m_Said;
};

namespace {

constexpr char LINE[] = "0 LINE|8 A|62 5|10 0|20 0|11 3|21 4";
/// Bulge 1 is half a circle, counter-clockwise from (0, 0) to (2, 0): about (1, 0), below the x axis.
constexpr char HALF_CIRCLE[] = "0 LWPOLYLINE|8 0|90 3|70 0|10 0|20 0|42 1|10 2|20 0|10 2|20 5|42 1";

std::string TwoPoints()
{
    return PlotBytes().Layer(u"0").Begin(7).Int(255).Point(1, 2, 3).Begin(7).Int(255).Point(4, 5, 6).File();
}

} // namespace

TEST_F(PlotCommand, ConvertsToPlotFilesAndBack)
{
    const auto entities =
        Converted(Drawing(std::string(LINE) + "|0 TEXT|8 A|420 66051|10 1|20 1|40 2|1 Hello"));
    ASSERT_EQ(entities.size(), 2U);
    EXPECT_EQ(entities[0]["end"], json({3, 4, 0}));
    EXPECT_EQ(entities[1]["text"], "Hello");
    EXPECT_EQ(entities, Dump("in.dxf"));
    EXPECT_EQ(m_Said, "");
    ASSERT_EQ(Halyard("convert out.plot back.dxf").status, 0);
    EXPECT_EQ(Dump("back.dxf")[0], entities[0]);
}

TEST_F(PlotCommand, RecognisesPlotFilesByTheirFirstBytes)
{
    Write("named.dxf", TwoPoints());
    const json info = Info("named.dxf");
    EXPECT_EQ(info["format"], "plot");
    EXPECT_EQ(info["release"], "9");
    EXPECT_EQ(info["line_ends"], nullptr);
    EXPECT_EQ(info["kinds"], json({{"POINT", 2}}));
    EXPECT_EQ(info["warnings"], json::array());
    EXPECT_THAT(Halyard("info named.dxf").out, HasSubstr("plot file, version 9\n  extents"));
    EXPECT_EQ(Dump("named.dxf")[1]["color"], "#ff0000") << "255 is red as a device colour";
}

TEST_F(PlotCommand, KeepsBlocksWithWhatTheirEntitiesLookLike)
{
    // The LINE of the block says nothing and stands on RED; the POINT stands on layer 0, whose look comes
    // from the insert.
    const auto entities = Converted(Drawing(
        "0 INSERT|8 HERE|2 B|10 10|20 20|41 2|42 2|43 2|50 90|70 3|71 2|44 5|45 7",
        "0 LAYER|2 RED|62 1|370 50|0 LAYER|2 HERE|62 3",
        "0 BLOCK|2 B|8 RED|70 2|10 1|20 1|0 POINT|8 0|10 2|20 1|0 LINE|8 RED|10 1|20 1|11 1|21 3|0 ENDBLK"));
    ASSERT_EQ(entities.size(), 3U);
    EXPECT_EQ(entities[0]["kind"], "INSERT");
    EXPECT_EQ(entities[0]["rotation"], 90);
    EXPECT_EQ(entities[0]["row_count"], 3);
    EXPECT_EQ(entities[0]["column_count"], 2);
    EXPECT_EQ(entities[1]["block"], "B");
    EXPECT_EQ(entities[1]["color"], "#00ff00");
    EXPECT_EQ(m_Said, "");
    EXPECT_EQ(entities[2]["color"], "#ff0000");
    EXPECT_EQ(entities[2]["width"], 0.5);
    EXPECT_EQ(Info("out.plot")["blocks"], json::parse(R"([{"name":"B","base":[1,1,0],"entities":2}])"));
    ASSERT_EQ(Halyard("convert out.plot back.dxf").status, 0);
    EXPECT_EQ(Dump("back.dxf").size(), 12U) << "three by two cells of two entities";
}

TEST_F(PlotCommand, GivesABlockTheLookOfItsFirstInsertAndCountsTheOthers)
{
    // OUTER holds INNER on its layer 0, so INNER looks as the layer of OUTER's insert. GREEN is drawn before
    // RED, so its inserts come first, and the one on RED is another.
    const auto insert = [](const std::string& layer, const std::string& block) {
        return "0 INSERT|8 " + layer + "|2 " + block + "|10 0|20 0|";
    };
    const auto entities =
        Converted(Drawing(insert("RED", "OUTER") + insert("GREEN", "OUTER") + insert("GREEN", "OUTER") + LINE,
                          "0 LAYER|2 GREEN|62 3|6 DASHDOT|370 70|0 LAYER|2 RED|62 1",
                          "0 BLOCK|2 INNER|8 0|70 0|10 0|20 0|0 LINE|8 0|10 1|20 1|11 1|21 3|0 ENDBLK|0 "
                          "BLOCK|2 OUTER|8 0|70 0|10 0|20 0|"
                              + insert("0", "INNER") + "0 CIRCLE|8 0|10 0|20 0|40 1|0 ENDBLK"));
    ASSERT_EQ(entities.size(), 7U);
    for (const json& entity : entities)
        if (entity["kind"] == "CIRCLE" || entity["block"] == "INNER") {
            EXPECT_EQ(entity["color"], "#00ff00");
            EXPECT_EQ(entity["style"], "DASHDOT");
            EXPECT_FLOAT_EQ(entity["width"].get<float>(), 0.7F);
        }
    EXPECT_THAT(m_Said, HasSubstr("1 insert does not show the look of the layer"));
}

TEST_F(PlotCommand, PutsChordsInThePlaceOfArcsAndCountsThem)
{
    const auto entities = Converted(Drawing(HALF_CIRCLE));
    EXPECT_THAT(m_Said, HasSubstr("1 arc in polylines became chords"));
    ASSERT_EQ(entities.size(), 1U);
    const json& vertices = entities[0]["vertices"];
    ASSERT_GT(vertices.size(), 3U);
    EXPECT_EQ(vertices.front(), json({0, 0, 0, 0}));
    EXPECT_EQ(vertices[vertices.size() - 2], json({2, 0, 0, 0}));
    EXPECT_EQ(vertices.back(), json({2, 5, 0, 0})) << "the bulge of the last vertex begins no segment";
    for (std::size_t i = 0; i + 2 < vertices.size(); ++i) {
        const double x = vertices[i][0].get<double>() - 1;
        const double y = vertices[i][1].get<double>();
        const double middleX = (vertices[i][0].get<double>() + vertices[i + 1][0].get<double>()) / 2 - 1;
        const double middleY = (y + vertices[i + 1][1].get<double>()) / 2;
        EXPECT_NEAR(std::hypot(x, y), 1, 1e-9);
        EXPECT_LE(y, 1e-9);
        EXPECT_GT(std::hypot(middleX, middleY), 1 - 1.01e-4) << "fine enough not to be seen";
    }
    ASSERT_EQ(Halyard("convert out.plot twice.plot").status, 0);
    EXPECT_EQ(Read("twice.plot"), Read("out.plot"));
}

TEST_F(PlotCommand, PlainLeavesArcsToTheFile)
{
    EXPECT_EQ(Converted(Drawing(HALF_CIRCLE), "--plain")[0]["vertices"],
              json::parse("[[0,0,0,0],[2,0,0,0],[2,5,0,0]]"));
    EXPECT_EQ(m_Said, "");
}

TEST_F(PlotCommand, WarnsOfFilesThatBreakOffAndDoesNotReplaceThem)
{
    const std::string whole = TwoPoints();
    constexpr std::size_t END_MARK = 4;
    Write("marked.plot", whole.substr(0, whole.size() - END_MARK));
    EXPECT_EQ(Dump("marked.plot").size(), 2U);
    EXPECT_THAT(Halyard("dump marked.plot").err, HasSubstr("ends without its end mark"));

    const std::string cut = whole.substr(0, whole.size() - END_MARK - 1);
    Write("cut.plot", cut);
    EXPECT_EQ(Dump("cut.plot").size(), 1U);
    // 21 bytes of head, a layer of 19 (8 + 4 + 2 + 1 + 4), a point of 44 (8 + 4 + 32).
    EXPECT_THAT(Halyard("dump cut.plot").err, HasSubstr("reading ended early, at byte 84"));
    const Outcome onto = Halyard("convert cut.plot cut.plot");
    EXPECT_EQ(onto.status, 1);
    EXPECT_THAT(onto.err, HasSubstr("is not replaced"));
    EXPECT_EQ(Read("cut.plot"), cut);

    Write("new.plot", PlotBytes(8).File());
    EXPECT_EQ(Halyard("info new.plot").err,
              "halyard: new.plot: cannot be read as a drawing: Invalid file version\n");
    Write("odd.plot", PlotBytes().Layer(u"0").Begin(77).File());
    EXPECT_THAT(Halyard("dump odd.plot").err, HasSubstr("skipped: 1 record of an unknown kind"));
}

TEST_F(PlotCommand, LeavesNothingHalfWritten)
{
    std::string entities = LINE;
    for (int i = 0; i < 999; ++i) entities += "|" + std::string(LINE);
    Write("in.dxf", Drawing(entities));
    Write("out.plot", "as it was");
    // A limit on the size of files, in units of 512 bytes, that fails a write as a full disk does, also where the
    // program runs on Wine, which knows nothing of the signal.
    const Outcome full = Shell("trap '' XFSZ; ulimit -f 16; halyard convert in.dxf out.plot");
    EXPECT_EQ(full.status, 1);
    EXPECT_THAT(full.err, HasSubstr("out.plot: cannot be written: "));
    EXPECT_EQ(Read("out.plot"), "as it was");
    EXPECT_TRUE(Leftovers().empty());
}

TEST_F(PlotCommand, RefusesOtherNamesOfTheResult)
{
    Write("in.dxf", Drawing(LINE));
    const Outcome outcome = Halyard("convert in.dxf out.svg");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, HasSubstr("does not end in .dxf or .plot"));
}
