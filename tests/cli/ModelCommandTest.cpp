#include "cli/ProgramTest.h"
#include "import/ModelBytes.h"
#include "import/scene/SceneLibrary.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

using namespace ModelBytes;
using nlohmann::json;

namespace {

class ModelCommand : public ProgramTest {
protected:
    /// With the stand-in for the vendor's library.
    Outcome SketchUp(const std::string& arguments) const
    {
        return Shell("HALYARD_SKETCHUP_API='" + TestPlaces::SketchUpLibrary().string() + "' $HALYARD "
                     + arguments);
    }
    /// Layer by name: its colour and its faces.
    std::map<std::string, std::string> Layers(const std::string& file) const
    {
        std::map<std::string, std::string> layers;
        const json info = Info(file);
        for (const json& layer : info["layers"])
            if (layer["entities"] > 0)
                layers[layer["name"]] = std::string(layer["color"]) + " " + layer["entities"].dump();
        return layers;
    }
    static double Area(const json& face)
    {
        // Twice the vector area of a ring of four corners is the cross product of its diagonals.
        const json& c = face["corners"];
        double u[3], v[3];
        for (std::size_t i = 0; i < 3; ++i) {
            u[i] = c[2][i].get<double>() - c[0][i].get<double>();
            v[i] = c[3][i].get<double>() - c[1][i].get<double>();
        }
        return std::hypot(u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0])
               / 2;
    }
};

std::string House()
{
    return File(
        Material("red", Color(255, 0, 0))
        + Material("blue", Color(0, 0, 255), Chunk(0xA200, Chunk(0xA300, Z("B.JPG"))))
        + Object("wall", SquareVertices() + SquareFaces(FaceMaterial("red", {1}) + FaceMaterial("blue", {0})))
        + Object("floor", SquareVertices() + SquareFaces()) + Object("camera", ""));
}

TEST_F(ModelCommand, InfoTellsWhatIsIn3ds)
{
    Write("house.3ds", House());
    const auto object = [](const char* name, int vertices, int faces, const json& material) {
        return json{{"name", name},
                    {"vertices", vertices},
                    {"faces", faces},
                    {"texture_vertices", 0},
                    {"material", material}};
    };
    const json expected = {
        {"file", "house.3ds"},
        {"format", "3ds"},
        {"vertices", 8},
        {"faces", 4},
        {"extents", {{"min", {0, 0, 3}}, {"max", {1, 1, 3}}}},
        {"objects",
         {object("wall", 4, 2, "blue"), object("floor", 4, 2, nullptr), object("camera", 0, 0, nullptr)}},
        {"materials",
         {{{"name", "red"}, {"color", "#ff0000"}, {"texture", ""}},
          {{"name", "blue"}, {"color", "#0000ff"}, {"texture", "B.JPG"}}}},
        {"warnings", json::array()},
    };
    EXPECT_EQ(Info("house.3ds"), expected);
    const Outcome text = Halyard("info house.3ds");
    EXPECT_EQ(text.status, 0);
    for (const char* line :
         {"  format     3DS model\n", "  extents    (0, 0, 3) to (1, 1, 3)\n", "  faces      4\n",
          "  wall           4      2  blue\n", "  blue  #0000ff  B.JPG\n"})
        EXPECT_NE(text.out.find(line), std::string::npos) << line << "is missing in\n" << text.out;
    EXPECT_EQ(text.out.find("Warnings"), std::string::npos);
}

TEST_F(ModelCommand, FacesOf3dsBecome3dFacesOnALayerForEachObject)
{
    Write("house.3ds", House());
    const Outcome convert = Halyard("convert house.3ds house.dxf");
    EXPECT_EQ(convert.status, 0);
    EXPECT_EQ(convert.err, "");
    // The layer has the colour of the material that the object names last, each face that of its own.
    EXPECT_EQ(Layers("house.dxf"),
              (std::map<std::string, std::string>{{"wall", "#0000ff 2"}, {"floor", "#ffffff 2"}}));
    const std::vector<json> faces = Dump("house.dxf");
    ASSERT_EQ(faces.size(), 4U);
    EXPECT_EQ(faces[0]["kind"], "3DFACE");
    EXPECT_EQ(faces[0]["color"], "#0000ff");
    EXPECT_EQ(faces[1]["color"], "#ff0000");
    EXPECT_EQ(faces[1]["corners"], json::parse("[[0,0,3],[1,1,3],[0,1,3],[0,1,3]]"));

    EXPECT_EQ(Halyard("convert house.3ds mm.dxf --units 0.001 --swap-axes").status, 0);
    // (1, 1, 3) metres: (1, 3, -1) with the axes swapped.
    EXPECT_EQ(Dump("mm.dxf")[1]["corners"][1], json::parse("[1000,3000,-1000]"));
}

TEST_F(ModelCommand, WhatCannotBeDrawnIsCounted)
{
    const float infinity = std::numeric_limits<float>::infinity();
    Write("odd.3ds",
          File(Object("o", Chunk(0x4110, U16(4) + Floats({0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, infinity}))
                               + Chunk(0x4120, U16(6) + Words({0, 1, 2, 0, 0, 1, 4, 0, 9, 9,
                                                               9, 0, 0, 1, 1, 0, 0, 1, 3, 0})))));
    const Outcome convert = Halyard("convert odd.3ds odd.dxf");
    EXPECT_EQ(convert.status, 0);
    // The sixth face is announced and not there: zeros.
    EXPECT_NE(convert.err.find("2 faces dropped: the model lacks vertices"), std::string::npos)
        << convert.err;
    EXPECT_NE(convert.err.find("2 faces dropped: they name a vertex twice"), std::string::npos)
        << convert.err;
    EXPECT_NE(convert.err.find("1 face dropped: a coordinate is no finite number"), std::string::npos)
        << convert.err;
    EXPECT_EQ(Dump("odd.dxf").size(), 1U);

    const std::string warning = "the file ends before the model does; it may have been cut short";
    Write("short.3ds", House().substr(0, 300));
    EXPECT_EQ(Halyard("convert short.3ds short.dxf").err, "halyard: short.3ds: warning: " + warning + "\n");
    EXPECT_EQ(Info("short.3ds")["warnings"], json::array({warning}));
    EXPECT_NE(Halyard("info short.3ds").out.find("\nWarnings\n  " + warning + "\n"), std::string::npos);
}

TEST_F(ModelCommand, LayersHaveNamesThatLayersCanHave)
{
    std::string objects;
    for (const char* name : {"a", "A", "a", "", "x/y<z>", "0", "tab\there"})
        objects += Object(name, SquareVertices() + SquareFaces());
    Write("names.3ds", File(objects));
    EXPECT_EQ(Halyard("convert names.3ds names.dxf").status, 0);
    std::string names;
    for (const auto& [name, faces] : Layers("names.dxf")) names += name + " ";
    EXPECT_EQ(names, "0_2 A_2 UNNAMED a a_3 tab_here x_y_z_ ");
}

TEST_F(ModelCommand, FacesOfSketchUpAreCutAndKeepTheirArea)
{
    // A square of 100 inches with two holes of 10 and a notched face of four corners: areas 10000 - 200 and
    // 100 * 100 / 2 - 100 * 10 / 2.
    Write("m.skp",
          Scene::File("face ff0000 0 0 5 100 0 5 100 100 5 0 100 5\nhole 10 10 5 20 10 5 20 20 5 10 20 5\n"
                      "hole 20 20 5 30 20 5 30 30 5 20 30 5\nface 00ff00 0 0 0 100 0 0 10 10 0 0 100 0\n"
                      "group s 0000ff -1 0 0 0  0 1 0 0  0 0 1 0  0 0 0 1\nlist s\n"
                      + Scene::Square("-", "1")));
    const Outcome convert = SketchUp("convert m.skp m.dxf --units 0.0254");
    EXPECT_EQ(convert.status, 0);
    EXPECT_EQ(convert.err, "");
    std::map<std::string, double> areas;
    for (const json& face : Dump("m.dxf")) areas[face["layer"]] += Area(face);
    ASSERT_EQ(areas.size(), 3U);
    EXPECT_NEAR(areas["COLOR_FF0000"], 9800, 1e-3);
    EXPECT_NEAR(areas["COLOR_00FF00"], 1000, 1e-3);
    EXPECT_NEAR(areas["COLOR_0000FF"], 1, 1e-3);
    EXPECT_EQ(Layers("m.dxf")["COLOR_0000FF"], "#0000ff 1") << "a convex face of four corners stays one";

    const json info = json::parse(SketchUp("info --json m.skp").out, nullptr, false);
    EXPECT_EQ(info["faces"], 3);
    EXPECT_EQ(info["holes"], 2);
    EXPECT_EQ(info["colors"].size(), 3U);
    EXPECT_NEAR(info["extents"]["max"][0].get<double>(), 2.54, 1e-12);
    EXPECT_EQ(SketchUp("convert m.skp y.dxf --swap-axes").status, 0);
    EXPECT_NEAR(Info("y.dxf")["extents"]["min"][2].get<double>(), -2.54, 1e-6);
}

TEST_F(ModelCommand, AMissingLibraryIsSaidInOneSentence)
{
    Write("m.skp", Scene::File(""));
    for (const char* command : {"info m.skp", "convert m.skp m.dxf"}) {
        const Outcome none = Shell("HALYARD_SKETCHUP_API=/none.so $HALYARD " + std::string(command));
        EXPECT_EQ(none.status, 1);
        EXPECT_NE(none.err.find("halyard: m.skp: cannot be read: the SketchUp API library"),
                  std::string::npos)
            << none.err;
        EXPECT_EQ(std::count(none.err.begin(), none.err.end(), '\n'), 1);
    }
    Write("bad.skp", Scene::File("nonsense\n"));
    EXPECT_EQ(SketchUp("convert bad.skp bad.dxf").err,
              "halyard: bad.skp: cannot be read as a SketchUp model\n");
}

TEST_F(ModelCommand, ModelsAndDrawingsAreToldApartByTheirBytes)
{
    Write("model.dxf", House());
    Write("plan.3ds", Drawing("0 LINE|8 0|10 0|20 0|11 1|21 1"));
    EXPECT_EQ(Halyard("dump model.dxf").err,
              "halyard: model.dxf: is a 3DS model, not a drawing; 'halyard convert' makes one of it\n");
    EXPECT_EQ(Info("plan.3ds")["format"], "dxf");
    EXPECT_EQ(Halyard("convert plan.3ds out.dxf --swap-axes").status, 2);
    for (const char* units : {"0", "-1", "nan", "inf", "feet"})
        EXPECT_EQ(Halyard("convert model.dxf out.dxf --units " + std::string(units)).status, 2) << units;
    EXPECT_FALSE(std::filesystem::exists(m_Folder / "out.dxf"));
}

TEST_F(ModelCommand, MainChunksAreKnownByAnyChunkThatFits)
{
    const std::string version = Chunk(0x0002, U32(3));
    // A length of 0x2A00 looks like the mark of TIFF.
    const auto likeTiff = [](unsigned first) {
        return Chunk(0x4D4D, Chunk(first, std::string(0x2A00 - 6 - 6, 'x')));
    };
    struct {
        const char* what;
        std::string bytes;
        const char* refusal; ///< none: it is a 3DS model
    } const rows[] = {
        {"no chunk", Chunk(0x4D4D, ""), nullptr},
        {"an unknown one first", Chunk(0x4D4D, Chunk(0x0100, U32(7)) + version), nullptr},
        {"an unknown one alone, with nothing in it", Chunk(0x4D4D, Chunk(0x1234, "")), nullptr},
        {"cut within an unknown one", Header(0x4D4D, 1000) + Header(0x1234, 994), nullptr},
        {"an unknown one that is too long", Header(0x4D4D, 1000) + Header(0x1234, 995), "of a kind"},
        {"an unknown one that is too short", Header(0x4D4D, 1000) + Header(0x1234, 5), "of a kind"},
        {"an unknown one within too little", Header(0x4D4D, 5) + Header(0x1234, 6), "of a kind"},
        {"an unknown one that is cut", Header(0x4D4D, 1000) + U16(0x1234), "of a kind"},
        {"a known one that is cut", Header(0x4D4D, 1000) + U16(0xAFFF), nullptr},
        {"a known one within too little", Header(0x4D4D, 0) + version, nullptr},
        {"version, as long as TIFF", likeTiff(0x0002), nullptr},
        {"editor, as long as TIFF", likeTiff(0x3D3D), nullptr},
        {"an unknown one, as long as TIFF", likeTiff(0x1234), "TIFF picture"},
        {"TIFF", std::string("MM\0*\0\0\0\x8", 8) + std::string(40, '\0'), "TIFF picture"},
        // As 3DS: a version in 0x2A00 bytes, 0xFFFFFFFF long.
        {"TIFF with its directory at 0x200, white before it",
         std::string("MM\0*\0\0\2\0", 8) + std::string(600, '\xFF'), "TIFF picture"},
        // As 3DS: a chunk of 0x20726F66 bytes in one of 0x656D6D75.
        {"text", "MMummer for mer\n", "is text"},
    };
    for (const auto& row : rows) {
        Write("m", row.bytes);
        const Outcome info = Halyard("info --json m");
        EXPECT_EQ(info.status, row.refusal ? 1 : 0) << row.what;
        EXPECT_NE((row.refusal ? info.err : info.out).find(row.refusal ? row.refusal : "\"3ds\""),
                  std::string::npos)
            << row.what << ": " << info.out << info.err;
    }
}

TEST_F(ModelCommand, NamesTellSketchUpWhereBytesTellNothing)
{
    const std::string missing = "cannot be read: the SketchUp API library";
    struct {
        const char* name;
        std::string bytes;
        std::string complaint;
    } const rows[] = {
        {"empty.skp", "", missing},
        {"blank.skp", "\n", missing},
        {"text.SKP", "a dummy\n", missing},
        {"cr.Skp", "a dummy\r", missing},
        {"noise.skp", std::string("\1\0\2", 3), missing},
        {"photo.skp", "\x89PNG\r\n\x1A\n", "is a PNG picture"},
        {"empty.skp.bak", "", "the file is empty"},
    };
    for (const auto& row : rows) {
        Write(row.name, row.bytes);
        for (const std::string command : {"info ", "convert "}) {
            const Outcome outcome = Shell("HALYARD_SKETCHUP_API=/none.so $HALYARD " + command + row.name
                                          + (command == "convert " ? " out.dxf" : ""));
            EXPECT_EQ(outcome.status, 1) << row.name;
            EXPECT_EQ(outcome.err.find(std::string("halyard: ") + row.name + ": " + row.complaint), 0U)
                << outcome.err;
        }
    }
    // The stand-in passes over the first line.
    Write("dummy.skp", "a dummy\n" + Scene::Square("ff0000", "0"));
    EXPECT_EQ(json::parse(SketchUp("info --json dummy.skp").out, nullptr, false)["faces"], 1);
    Write("plan.skp", Drawing("0 LINE|8 0|10 0|20 0|11 1|21 1"));
    EXPECT_EQ(Info("plan.skp")["format"], "dxf");
}

} // namespace
