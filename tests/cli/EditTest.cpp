#include "cli/ProgramTest.h"

#include <cmath>
#include <map>

using nlohmann::json;

namespace {

constexpr char LAYERS[] = "0 TABLE|2 LAYER|0 LAYER|2 A|62 1|0 LAYER|2 B|62 3|0 LAYER|2 C|62 5|0 ENDTAB";

} // namespace

class EditCommands : public ProgramTest {
protected:
    /// The entities of what a command makes of the drawing in in.dxf.
    std::vector<json> Edited(const std::string& arguments) const
    {
        const Outcome outcome = Halyard(arguments + " in.dxf out.dxf");
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        return Dump("out.dxf");
    }

    /// Each entity's kind and layer, in order.
    static std::string Kinds(const std::vector<json>& entities)
    {
        std::string kinds;
        for (const json& entity : entities)
            kinds += entity["kind"].get<std::string>() + " " + entity["layer"].get<std::string>() + "; ";
        return kinds;
    }

    std::string LayerOrder(const std::string& file) const
    {
        std::string names;
        const json info = Info(file);
        for (const json& layer : info["layers"]) names += layer["name"].get<std::string>() + " ";
        return names;
    }
};

using ClipCommand = EditCommands;

TEST_F(ClipCommand, KeepsWhatShowsWithItsLooks)
{
    // The circle crosses only the upper side: the plain rules leave nothing of it. The polyline falls into
    // two runs, of which the plain rules give the second no colour of a polygon's kind but these do.
    Write(
        "in.dxf",
        Drawing(
            "0 CIRCLE|8 A|62 5|10 5|20 10|40 2|0 LINE|8 B|62 2|10 -5|20 5|11 5|21 5|"
            "0 LWPOLYLINE|8 C|62 6|70 1|90 8|10 1|20 1|10 20|20 1|10 20|20 9|10 1|20 9|10 1|20 8|10 19|20 8|"
            "10 19|20 2|10 1|20 2|0 INSERT|8 B|2 D|10 9|20 5|0 POINT|8 B|10 20|20 20",
            LAYERS, "0 BLOCK|2 D|10 0|20 0|0 LINE|8 B|62 4|10 0|20 0|11 5|21 0|0 ENDBLK"));
    const std::vector<json> entities = Edited("clip --window 10,10,0,0");
    EXPECT_EQ(Kinds(entities), "ARC A; ARC A; LINE B; LINE B; POLYGON C; POLYGON C; ");
    ASSERT_EQ(entities.size(), 6U);
    double sweep = 0;
    for (const std::size_t i : {std::size_t{0}, std::size_t{1}}) {
        EXPECT_EQ(entities[i]["color"], "#0000ff");
        EXPECT_EQ(entities[i]["radius"], 2);
        sweep += std::fmod(
            entities[i]["end_angle"].get<double>() - entities[i]["start_angle"].get<double>() + 360, 360);
    }
    EXPECT_NEAR(sweep, 180, 1e-6) << "the lower half of the circle";
    EXPECT_EQ(entities[2]["start"], json({0, 5, 0}));
    EXPECT_EQ(entities[2]["color"], "#ffff00");
    EXPECT_EQ(entities[3]["end"], json({10, 5, 0}));
    EXPECT_EQ(entities[3]["color"], "#00ffff") << "of the insert";
    EXPECT_EQ(entities[4]["color"], "#ff00ff");
    EXPECT_EQ(entities[5]["color"], "#ff00ff");
    EXPECT_EQ(LayerOrder("out.dxf"), "0 A B C ");
}

TEST_F(ClipCommand, CutsLinesThroughCornersLikeAllOthers)
{
    const struct {
        const char* ends;
        json start, end; ///< empty when nothing is left
    } rows[] = {
        {"10 20|20 20|30 0|11 -10|21 -10|31 30", {10, 10, 10}, {0, 0, 20}},
        {"10 15|20 15|11 5|21 5", {10, 10, 0}, {5, 5, 0}},
        {"10 5|20 5|11 15|21 15", {5, 5, 0}, {10, 10, 0}},
        {"10 0|20 0|30 1|11 20|21 20|31 3", {0, 0, 1}, {10, 10, 2}},
        {"10 -5|20 10|11 15|21 10", {0, 10, 0}, {10, 10, 0}},
        {"10 8|20 12|11 12|21 8", {}, {}},
        {"10 8|20 -2|11 12|21 2", {}, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.ends);
        Write("in.dxf", Drawing(std::string("0 LINE|8 A|62 2|") + row.ends, LAYERS));
        const std::vector<json> entities = Edited("clip --window 0,0,10,10");
        ASSERT_EQ(entities.size(), row.start.empty() ? 0U : 1U);
        if (entities.empty()) continue;
        EXPECT_EQ(entities[0]["start"], row.start);
        EXPECT_EQ(entities[0]["end"], row.end);
        EXPECT_EQ(entities[0]["color"], "#ffff00");
    }
}

/// Degrees of a circle that lie in the window 0 to 10, by small steps.
double VisibleDegrees(double x, double y, double radius)
{
    constexpr int STEPS = 3600;
    constexpr double SLACK = 1e-9;
    int inside = 0;
    for (int k = 0; k < STEPS; ++k) {
        const double angle = (k + 0.5) * 8 * std::atan(1.0) / STEPS;
        const double px = x + radius * std::cos(angle);
        const double py = y + radius * std::sin(angle);
        inside += px >= -SLACK && px <= 10 + SLACK && py >= -SLACK && py <= 10 + SLACK;
    }
    return inside * 360.0 / STEPS;
}

TEST_F(ClipCommand, KeepsOfEveryCircleAsMuchAsLiesInTheWindow)
{
    // Whole numbers, so that many pass through corners or touch a side; pieces are told apart by their
    // centre and radius.
    std::string circles;
    std::map<std::vector<double>, double> degrees;
    for (const int radius : {1, 2, 5, 10})
        for (int x = -6; x <= 16; ++x)
            for (int y = -6; y <= 16; ++y) {
                circles += "0 CIRCLE|8 A|10 " + std::to_string(x) + "|20 " + std::to_string(y) + "|40 "
                           + std::to_string(radius) + "|";
                degrees[{double(x), double(y), double(radius)}] = 0;
            }
    // Arcs of other circles: a quarter that touches a side in its middle, and what touches a corner of a full
    // turn.
    circles += "0 ARC|8 A|10 -3|20 5|40 3|50 -45|51 45|0 ARC|8 A|10 13|20 14|40 5|50 0|51 360";
    Write("in.dxf", Drawing(circles, LAYERS));
    for (const json& piece : Edited("clip --window 0,0,10,10")) {
        const auto key = std::vector<double>{piece["center"][0], piece["center"][1], piece["radius"]};
        ASSERT_TRUE(degrees.count(key)) << piece;
        double sweep = 360;
        if (piece["kind"] == "ARC")
            sweep = piece["end_angle"].get<double>() - piece["start_angle"].get<double>();
        degrees[key] += sweep > 0 ? sweep : sweep + 360;
    }
    for (const auto& [circle, sum] : degrees)
        EXPECT_NEAR(sum, VisibleDegrees(circle[0], circle[1], circle[2]), 0.5)
            << circle[0] << ", " << circle[1] << " radius " << circle[2];
}

TEST_F(ClipCommand, PlainlyFollowsTheRulesOfTheLibrary)
{
    Write("in.dxf",
          Drawing("0 CIRCLE|8 A|10 5|20 10|40 2|0 INSERT|8 B|2 D|10 1|20 5|0 LINE|8 C|10 1|20 1|11 2|21 2",
                  LAYERS, "0 BLOCK|2 D|10 0|20 0|0 POINT|8 B|10 0|20 0|0 ENDBLK"));
    EXPECT_EQ(Kinds(Edited("clip --plain --window 0,0,10,10")), "LINE C; ");
}

TEST_F(ClipCommand, LeavesNothingOfADrawingElsewhere)
{
    Write("in.dxf", Drawing("0 LINE|8 A|10 1|20 1|11 2|21 2", LAYERS));
    EXPECT_EQ(Kinds(Edited("clip --window 10,10,20,20")), "");
}

using TransformCommand = EditCommands;

TEST_F(TransformCommand, TakesItsStepsInTheOrderGiven)
{
    Write("in.dxf", Drawing("0 POINT|8 A|10 1|20 0|30 1|0 POINT|8 B|10 1|20 0", LAYERS));
    const struct {
        const char* steps;
        json a, b;
    } rows[] = {
        {"--move 1,0,0 --rotate 90", {0, 2, 1}, {0, 2, 0}},
        {"--rotate 90 --move 1,0", {1, 1, 1}, {1, 1, 0}},
        {"--rotate 90@1,1", {2, 1, 1}, {2, 1, 0}},
        // (1, 0) by 2 from (2, 2) is (0, -2); a move, the scale once more from the origin.
        {"--scale 2@2,2 --move 0,1,5 --scale 0.5", {0, -0.5, 3.5}, {0, -0.5, 2.5}},
        {"--move 1,1,1 --layers a", {2, 1, 2}, {1, 0, 0}},
        {"--layers B,A,b --move=-1,-1,-1", {0, -1, 0}, {0, -1, -1}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.steps);
        const std::vector<json> entities = Edited(std::string("transform ") + row.steps);
        ASSERT_EQ(Kinds(entities), "POINT A; POINT B; ");
        EXPECT_EQ(entities[0]["point"], row.a);
        EXPECT_EQ(entities[1]["point"], row.b);
    }
}

TEST_F(TransformCommand, TurnsWhatInsertsShow)
{
    // Extruded downwards the block is mirrored: its point (1, 2) lies at (-1, 2) before the turn.
    Write("in.dxf", Drawing("0 INSERT|8 A|2 D|10 0|20 0|210 0|220 0|230 -1", LAYERS,
                            "0 BLOCK|2 D|10 0|20 0|0 POINT|8 B|10 1|20 2|0 ENDBLK"));
    const std::vector<json> entities = Edited("transform --rotate 90");
    ASSERT_EQ(Kinds(entities), "POINT B; ");
    EXPECT_EQ(entities[0]["point"], json({-2, -1, 0}));
}

using LayersCommand = EditCommands;

TEST_F(LayersCommand, RenamesRemovesAndReorders)
{
    Write("in.dxf", Drawing("0 POINT|8 A|10 1|20 0|0 POINT|8 B|10 1|20 0|0 POINT|8 C|10 1|20 0", LAYERS));
    const struct {
        const char* steps;
        const char* order;
    } rows[] = {
        {"--rename b=New", "0 A New C "},
        {"--rename A=B1 --rename B1=A2", "0 A2 B C "},
        {"--remove a", "0 B C "},
        {"--front A", "0 B C A "},
        {"--back C --back 0 --front A", "0 C B A "},
        {"--order C,A", "0 B C A "},
        {"--remove B --rename C=B --back B --back 0", "0 B A "},
    };
    for (const auto& row : rows) {
        EXPECT_NE(Edited(std::string("layers ") + row.steps).size(), 0U);
        EXPECT_EQ(LayerOrder("out.dxf"), row.order) << row.steps;
    }
    EXPECT_NE(Halyard("layers --front 0 in.dxf out.dxf").err.find("warning: layer 0 comes first"),
              std::string::npos);
}

TEST_F(EditCommands, SayInOneSentenceWhatCannotBeDone)
{
    Write("in.dxf", Drawing("0 POINT|8 A|10 1|20 0", LAYERS));
    const struct {
        const char* arguments;
        const char* reason;
    } rows[] = {
        {"layers --remove D", "there is no layer D"},
        {"layers --remove 0", "Layer \"0\" cannot be removed."},
        {"layers --rename A=B", "Cannot rename \"A\". Layer \"B\" already exists!"},
        {"layers --rename \"A=x;y\"", "x;yis an Invalid layer name! Layer names may only consist of the "
                                      "following characters: A-Z 0-9 -_$"},
        {"layers --front A --order A,D", "there is no layer D"},
        {"transform --move 1,1 --layers A,D", "there is no layer D"},
    };
    for (const auto& row : rows) {
        const Outcome outcome = Halyard(std::string(row.arguments) + " in.dxf out.dxf");
        EXPECT_EQ(outcome.status, 1) << row.arguments;
        EXPECT_EQ(outcome.err, std::string("halyard: in.dxf: ") + row.reason + "\n");
    }
    for (const char* arguments :
         {"clip", "clip --window 0,0,1", "clip --window 0,0,1,nan", "clip --window 0,0,1,1e999", "transform",
          "transform --scale 0", "transform --scale=-1", "transform --rotate 90@1",
          "transform --move 1,2,3,4", "transform --layers A", "layers", "layers --rename A",
          "layers --rename =B"})
        EXPECT_EQ(Halyard(std::string(arguments) + " in.dxf out.dxf").status, 2) << arguments;
    EXPECT_FALSE(std::filesystem::exists(m_Folder / "out.dxf"));
    EXPECT_TRUE(Leftovers().empty());
}
