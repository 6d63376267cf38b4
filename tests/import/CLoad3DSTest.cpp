#include "import/CLoad3DS.h"

#include "TestPlaces.h"
#include "dxf/TempFile.h"
#include "import/ModelBytes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <set>

using namespace ModelBytes;

namespace {

/// A model that frees its arrays, read from bytes.
struct Loaded {
    explicit Loaded(const std::string& bytes, bool swapAxes = false)
    {
        const TempFile file(".3ds", bytes);
        success = loader.Import3DS(&model, file.Name().c_str(), swapAxes);
    }
    ~Loaded() { CLoad3DS::FreeModel(&model); }
    Loaded(const Loaded&) = delete;
    Loaded& operator=(const Loaded&) = delete;
    const t3DObject& Only() const
    {
        EXPECT_EQ(model.objects.size(), 1U);
        return model.objects.at(0);
    }

    CLoad3DS loader;
    t3DModel model;
    bool success = false;
};

/// Zeros without a sign.
std::string Text(const t3DPoint& p)
{
    char text[64];
    std::snprintf(text, sizeof text, "%g %g %g", double(p.x) + 0, double(p.y) + 0, double(p.z) + 0);
    return text;
}

std::string FaceMaterials(const t3DObject& object)
{
    std::string text;
    for (int i = 0; i < object.numOfFaces; ++i) text += std::to_string(object.pFaceMaterials[i]) + " ";
    return text;
}

/// A model of one object on top of what matters.
std::string FileOf(const std::string& mesh)
{
    return File(Object("a", mesh));
}

TEST(CLoad3DS, ReadsEveryRecord)
{
    const Loaded read(
        File(Chunk(0x3D3E, U32(3)) + Material("red", Color(255, 1, 2), Chunk(0xA040, Chunk(0x30, U16(30))))
             + Material(
                 "brick", Color(9, 8, 7),
                 Chunk(0xA200, Chunk(0x30, U16(100)) + Chunk(0xA300, Z("BRICK.JPG")) + Chunk(0xA351, U16(0))))
             + Object("wall", SquareVertices() + Chunk(0x4140, U16(2) + Floats({0.25F, 0.5F, 1, 2}))
                                  + Chunk(0x4160, Floats({1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0}))
                                  + SquareFaces(FaceMaterial("red", {1}) + FaceMaterial("brick", {0})
                                                + Chunk(0x4150, U32(1) + U32(1))))
             + Object("empty", "")));
    ASSERT_TRUE(read.success);
    const std::vector<tMaterialInfo>& materials = read.model.materials;
    const std::vector<t3DObject>& objects = read.model.objects;
    ASSERT_EQ(materials.size(), 2U);
    EXPECT_STREQ(materials[0].strName, "red");
    EXPECT_STREQ(materials[0].strFile, "");
    EXPECT_EQ(materials[0].color[0] << 16 | materials[0].color[1] << 8 | materials[0].color[2], 0xFF0102);
    EXPECT_STREQ(materials[1].strFile, "BRICK.JPG");

    ASSERT_EQ(objects.size(), 2U);
    const t3DObject& wall = objects[0];
    EXPECT_STREQ(wall.strName, "wall");
    ASSERT_EQ(wall.numOfVerts, 4);
    EXPECT_EQ(Text(wall.pVerts[0]) + ", " + Text(wall.pVerts[2]), "0 0 3, 1 1 3");
    ASSERT_EQ(wall.numTexVertex, 2);
    EXPECT_EQ(wall.pTexVerts[0].v, 0.5F);
    EXPECT_EQ(wall.pTexVerts[1].u, 1.0F);
    ASSERT_EQ(wall.numOfFaces, 2);
    EXPECT_EQ(wall.pFaces[1].vertIndex[1], 2);
    EXPECT_EQ(wall.pFaces[1].vertIndex[2], 3);
    EXPECT_EQ(wall.pFaces[1].coordIndex[2], 0);
    EXPECT_EQ(FaceMaterials(wall), "1 0 ");
    EXPECT_EQ(wall.materialID, 1);
    EXPECT_TRUE(wall.bHasTexture);

    EXPECT_STREQ(objects[1].strName, "empty");
    EXPECT_EQ(objects[1].materialID, -1);
    EXPECT_EQ(objects[1].numOfVerts + objects[1].numOfFaces + objects[1].numTexVertex, 0);
    EXPECT_EQ(objects[1].pVerts, nullptr);
}

TEST(CLoad3DS, RefusesWhatIsNoModel)
{
    const std::string otherStart = Chunk(0x3D3D, Object("a", SquareVertices()));
    for (const std::string& bytes : {std::string(), std::string("M"), otherStart}) {
        const Loaded read(bytes);
        EXPECT_FALSE(read.success);
        EXPECT_TRUE(read.model.objects.empty());
    }
    CLoad3DS loader;
    t3DModel model;
    EXPECT_FALSE(loader.Import3DS(&model, L"no such folder/no.3ds", false));
    EXPECT_FALSE(loader.Import3DS(&model, nullptr, false));
    EXPECT_FALSE(loader.Import3DS(nullptr, L"a.3ds", false));
}

TEST(CLoad3DS, ALoaderReadsOneFileAfterAnotherAndCopiesReadOnTheirOwn)
{
    const TempFile other(".3ds", Chunk(0x3D3D, ""));
    const TempFile square(".3ds", FileOf(SquareVertices()));
    t3DModel model;
    CLoad3DS loader;
    EXPECT_FALSE(loader.Import3DS(&model, other.Name().c_str(), false));
    CLoad3DS copy = loader; // both have the refused file open
    EXPECT_TRUE(loader.Import3DS(&model, square.Name().c_str(), false));
    EXPECT_EQ(model.objects.size(), 1U);
    CLoad3DS::FreeModel(&model);
    EXPECT_TRUE(copy.Import3DS(&model, square.Name().c_str(), false));
    EXPECT_EQ(model.objects.size(), 1U);
    CLoad3DS::FreeModel(&model);
    EXPECT_TRUE(model.objects.empty());
    copy.CleanUp();
    copy.CleanUp();
}

TEST(CLoad3DS, SwappedAxesTurnZUpIntoYUp)
{
    const Loaded read(FileOf(Chunk(0x4110, U16(1) + Floats({1, 2, 3}))), true);
    EXPECT_EQ(Text(read.Only().pVerts[0]), "1 3 -2");
}

TEST(CLoad3DS, NormalsPointAgainstTheCrossProductOfTheSides)
{
    // Of the square's first face: a = p0 - p2 = (-1, -1, 0), b = p2 - p1 = (0, 1, 0), a x b = (0, 0, -1);
    // turned round, (0, 0, 1).
    const Loaded square(FileOf(SquareVertices() + SquareFaces()));
    for (int i = 0; i < 4; ++i) EXPECT_EQ(Text(square.Only().pNormals[i]), "0 0 1");

    // Two faces at right angles along the y axis, one twice as large: (0, 0, 2) and (1, 0, 0) at the vertices
    // that they share, so (1, 0, 2) / sqrt(5) there.
    const Loaded corner(FileOf(Chunk(0x4110, U16(5) + Floats({0, 0, 0, 0, 1, 0, -2, 0, 0, 0, 0, -1, 9, 9, 9}))
                               + Chunk(0x4120, U16(2) + Words({0, 1, 2, 0, 1, 0, 3, 0}))));
    const t3DObject& object = corner.Only();
    for (const int shared : {0, 1}) {
        EXPECT_FLOAT_EQ(object.pNormals[shared].x, 1 / std::sqrt(5.0F));
        EXPECT_FLOAT_EQ(object.pNormals[shared].z, 2 / std::sqrt(5.0F));
    }
    EXPECT_EQ(Text(object.pNormals[2]), "0 0 1");
    // Sides of 2^-149, the least that a float holds: (-1, 0, 1) x 2^-149, whose length no float holds.
    const float least = std::numeric_limits<float>::denorm_min();
    const Loaded tiny(FileOf(Chunk(0x4110, U16(3) + Floats({0, 0, 0, 1, 0, 1, 0, least, 0}))
                             + Chunk(0x4120, U16(1) + Words({0, 1, 2, 0}))));
    const t3DPoint& n = tiny.Only().pNormals[0];
    EXPECT_NEAR(n.x * n.x + n.y * n.y + n.z * n.z, 1, 1e-6);
    EXPECT_TRUE(std::isnan(object.pNormals[4].x)) << "a vertex without faces has 0 / 0";
}

/// Word for word: for each vertex all faces that have it among their three.
t3DPoint SlowNormal(const t3DObject& object, int vertex)
{
    double x = 0, y = 0, z = 0;
    int faces = 0;
    for (int f = 0; f < object.numOfFaces; ++f) {
        const int* v = object.pFaces[f].vertIndex;
        if (v[0] != vertex && v[1] != vertex && v[2] != vertex) continue;
        const t3DPoint &p0 = object.pVerts[v[0]], &p1 = object.pVerts[v[1]], &p2 = object.pVerts[v[2]];
        const double ax = double(p0.x) - p2.x, ay = double(p0.y) - p2.y, az = double(p0.z) - p2.z;
        const double bx = double(p2.x) - p1.x, by = double(p2.y) - p1.y, bz = double(p2.z) - p1.z;
        x += ay * bz - az * by;
        y += az * bx - ax * bz;
        z += ax * by - ay * bx;
        ++faces;
    }
    x /= -faces, y /= -faces, z /= -faces;
    const double length = std::sqrt(x * x + y * y + z * z);
    if (length == 0) return {float(x), float(y), float(z)};
    return {float(x / length), float(y / length), float(z / length)};
}

TEST(CLoad3DS, NormalsAreThoseOfTheObviousAlgorithm)
{
    // A fixed sequence of small numbers, in sizes from 1e-15 to 1e15; faces may name a vertex twice.
    unsigned state = 1;
    const auto next = [&state](unsigned below) {
        return (state = state * 1103515245 + 12345) / 65536 % below;
    };
    for (const float size : {1e-15F, 1.0F, 1e15F}) {
        std::string vertices = U16(40), faces = U16(90);
        for (int i = 0; i < 120; ++i) vertices += Floats({static_cast<float>(next(1000)) * size});
        for (int i = 0; i < 90; ++i) faces += Words({next(38), next(38), next(38), 0});
        const Loaded read(FileOf(Chunk(0x4110, vertices) + Chunk(0x4120, faces)));
        for (int i = 0; i < 40; ++i) {
            const t3DPoint expected = SlowNormal(read.Only(), i), n = read.Only().pNormals[i];
            if (std::isnan(expected.x)) {
                EXPECT_TRUE(std::isnan(n.x)) << i;
                continue;
            }
            EXPECT_NEAR(n.x, expected.x, 1e-4) << i << " at " << size;
            EXPECT_NEAR(n.y, expected.y, 1e-4) << i << " at " << size;
            EXPECT_NEAR(n.z, expected.z, 1e-4) << i << " at " << size;
        }
    }
}

TEST(CLoad3DS, ColoursComeInBytesAndInFloats)
{
    const float nan = std::nanf("");
    const std::string after = Chunk(0xA300, Z("m"));
    struct {
        const char* what;
        std::string color;
        int red, green, blue;
    } const rows[] = {
        {"bytes", Color(1, 2, 3), 1, 2, 3},
        {"linear bytes", Chunk(0x0012, "abc"), 'a', 'b', 'c'},
        {"the first of two", Color(1, 2, 3) + Chunk(0x0012, "abc"), 1, 2, 3},
        // 0.5 x 255 = 127.5
        {"floats", Chunk(0x0010, Floats({0, 1, 0.5F})), 0, 255, 128},
        {"linear floats", Chunk(0x0013, Floats({1, 0, 0.2F})), 255, 0, 51},
        {"floats beyond the range", Chunk(0x0010, Floats({-1, 7e30F, nan})), 0, 255, 0},
        {"two bytes", Chunk(0x0011, "ab"), 'a', 'b', 0},
        {"too many bytes", Chunk(0x0011, std::string(300, 'x')), 'x', 'x', 'x'},
        {"no colour in it", "", 0, 0, 0},
        {"a sub-chunk that is too long", Header(0x0011, 100) + "abc", 0, 0, 0},
    };
    for (const auto& row : rows) {
        const Loaded read(File(Material("m", row.color, after)));
        ASSERT_EQ(read.model.materials.size(), 1U) << row.what;
        const tMaterialInfo& m = read.model.materials[0];
        EXPECT_EQ(m.color[0], row.red) << row.what;
        EXPECT_EQ(m.color[1], row.green) << row.what;
        EXPECT_EQ(m.color[2], row.blue) << row.what;
        EXPECT_STREQ(m.strFile, "m") << row.what << ": reading goes on behind it";
    }
}

TEST(CLoad3DS, MaterialsAreFoundByTheirBytes)
{
    const std::string three = Material("a", Color(1, 0, 0)) + Material("A", Color(2, 0, 0))
                              + Material("a", Color(3, 0, 0), Chunk(0xA200, Chunk(0xA300, Z("t"))));
    const auto square = [](const std::string& chunks) {
        return Object("o", SquareVertices() + SquareFaces(chunks));
    };
    struct {
        const char* what;
        std::string bytes;
        const char* faces;
        int material;
    } const rows[] = {
        {"the first of a name", three + square(FaceMaterial("a", {0, 1})), "0 0 ", 0},
        {"case counts", three + square(FaceMaterial("A", {0})), "1 -1 ", 1},
        {"an unknown name", three + square(FaceMaterial("b", {0, 1})), "-1 -1 ", -1},
        {"an unknown name takes back", three + square(FaceMaterial("a", {0, 1}) + FaceMaterial("b", {1})),
         "0 -1 ", -1},
        {"no faces named", three + square(FaceMaterial("A", {})), "-1 -1 ", 1},
        {"faces that are not there", three + square(FaceMaterial("A", {2, 65535, 1})), "-1 1 ", 1},
        {"a count beyond the chunk", three + square(Chunk(0x4130, Z("A") + U16(900) + U16(1))), "-1 1 ", 1},
        {"more than counted", three + square(Chunk(0x4130, Z("A") + U16(1) + Words({1, 0}))), "-1 1 ", 1},
        {"a name without end", three + square(Chunk(0x4130, "A")), "-1 -1 ", 1},
        {"a material that comes later", square(FaceMaterial("a", {0})) + three, "-1 -1 ", -1},
        {"materials before faces", three + Object("o", FaceMaterial("A", {0}) + SquareFaces()), "-1 -1 ", 1},
    };
    for (const auto& row : rows) {
        const Loaded read(File(row.bytes));
        EXPECT_EQ(FaceMaterials(read.Only()), row.faces) << row.what;
        EXPECT_EQ(read.Only().materialID, row.material) << row.what;
        EXPECT_FALSE(read.Only().bHasTexture) << row.what;
    }
}

TEST(CLoad3DS, NamesAreCutAndTerminated)
{
    const std::string longName(1000, 'n'), fits(254, 'n');
    const Loaded read(File(Material(longName, Color(1, 2, 3), Chunk(0xA300, std::string(255, 'f')))
                           + Object(longName, SquareVertices() + SquareFaces(FaceMaterial(longName, {1})))));
    ASSERT_EQ(read.model.materials.size(), 1U);
    EXPECT_EQ(read.model.materials[0].strName, fits);
    EXPECT_EQ(read.model.materials[0].strFile, std::string(254, 'f'));
    EXPECT_EQ(read.Only().strName, fits);
    EXPECT_EQ(FaceMaterials(read.Only()), "-1 0 ")
        << "names that were cut are the same where they are compared";
    EXPECT_EQ(read.Only().numOfVerts, 4);

    const Loaded endless(File(Chunk(0x4000, "name") + Object("b", "")));
    ASSERT_EQ(endless.model.objects.size(), 2U) << "a name ends with its chunk";
    EXPECT_STREQ(endless.model.objects[0].strName, "name");
}

TEST(CLoad3DS, UnknownChunksArePassedOver)
{
    const std::string large(200'001, '\x11');
    const Loaded read(
        File(Chunk(0xB000, large) + Chunk(0xAFFF, Chunk(0xA230, large) + Chunk(0xA000, Z("m")))
             + Chunk(0x4000, Z("o") + Chunk(0x4010, "") + Chunk(0x4600, large)
                                 + Chunk(0x4100, SquareVertices() + Chunk(0x4111, large) + SquareFaces()))));
    EXPECT_STREQ(read.model.materials.at(0).strName, "m");
    EXPECT_EQ(read.Only().numOfVerts, 4);
    EXPECT_EQ(read.Only().numOfFaces, 2);
}

TEST(CLoad3DS, CountsAndLengthsThatLieDoNoHarm)
{
    const std::string point = Floats({1, 2, 3});
    const auto followed = [](const std::string& chunk) {
        return FileOf(chunk + SquareFaces());
    };
    struct {
        const char* what;
        std::string bytes;
        int verts, faces, texVerts;
    } const rows[] = {
        {"fewer vertices than announced", followed(Chunk(0x4110, U16(3) + point)), 3, 2, 0},
        {"more vertices than announced", followed(Chunk(0x4110, U16(1) + point + point)), 1, 2, 0},
        {"half a vertex", followed(Chunk(0x4110, U16(1) + point.substr(0, 7))), 1, 2, 0},
        {"no count", followed(Chunk(0x4110, "")), 0, 2, 0},
        {"half a count", followed(Chunk(0x4110, "\x01")), 1, 2, 0},
        {"fewer texture vertices", followed(Chunk(0x4140, U16(4) + point)), 0, 2, 4},
        {"two vertex lists", followed(SquareVertices() + Chunk(0x4110, U16(1) + point)), 1, 2, 0},
        {"two face lists", followed(Chunk(0x4120, U16(9))), 0, 2, 0},
        {"faces of vertices that are not there", followed(Chunk(0x4110, U16(2) + point + point)), 2, 2, 0},
        {"fewer faces than announced",
         FileOf(SquareVertices() + Chunk(0x4120, U16(50) + Words({0, 1, 2, 7}))), 4, 50, 0},
        {"a chunk shorter than its header", FileOf(SquareVertices() + Header(0x4110, 5) + SquareFaces()), 4,
         0, 0},
        {"a chunk of length 0", FileOf(SquareVertices() + Header(0x4110, 0) + SquareFaces()), 4, 0, 0},
        {"a chunk longer than its parent", FileOf(SquareVertices() + Header(0x4120, 900) + U16(1)), 4, 0, 0},
        {"a chunk as long as can be", FileOf(SquareVertices() + Header(0x4120, 0xFFFFFFFF) + U16(1)), 4, 0,
         0},
        {"no room for a header", FileOf(SquareVertices() + "12345"), 4, 0, 0},
    };
    for (const auto& row : rows) {
        const Loaded read(row.bytes);
        EXPECT_TRUE(read.success) << row.what;
        EXPECT_EQ(read.Only().numOfVerts, row.verts) << row.what;
        EXPECT_EQ(read.Only().numOfFaces, row.faces) << row.what;
        EXPECT_EQ(read.Only().numTexVertex, row.texVerts) << row.what;
    }
}

TEST(CLoad3DS, WhatIsMissingIsZero)
{
    const Loaded read(
        FileOf(Chunk(0x4110, U16(2) + Floats({1, 2, 3, 4})) + Chunk(0x4120, U16(2) + Words({1, 1, 1, 1}))));
    EXPECT_EQ(Text(read.Only().pVerts[1]), "4 0 0");
    EXPECT_EQ(read.Only().pFaces[1].vertIndex[0], 0);
    EXPECT_EQ(FaceMaterials(read.Only()), "-1 -1 ");
}

TEST(CLoad3DS, ASiblingOfADamagedChunkIsStillRead)
{
    const Loaded read(File(Object("a", SquareVertices() + Header(0x4120, 2)) + Object("b", SquareFaces())));
    ASSERT_EQ(read.model.objects.size(), 2U);
    EXPECT_EQ(read.model.objects[1].numOfFaces, 2);
}

TEST(CLoad3DS, AFileCutAnywhereIsReadUpToThere)
{
    const std::string whole = File(Material("m", Color(1, 2, 3), Chunk(0xA200, Chunk(0xA300, Z("t"))))
                                   + Object("o", SquareVertices() + SquareFaces(FaceMaterial("m", {0, 1}))));
    for (std::size_t length = 6; length < whole.size(); ++length) {
        const Loaded read(whole.substr(0, length));
        EXPECT_TRUE(read.success) << length;
        EXPECT_LE(read.model.objects.size(), 1U);
    }
}

TEST(CLoad3DS, NestingIsLimited)
{
    std::string mesh = SquareVertices(), texture = Chunk(0xA300, Z("t"));
    for (int depth = 0; depth < 20; ++depth) mesh = Chunk(0x4100, mesh), texture = Chunk(0xA200, texture);
    const Loaded read(File(Chunk(0xAFFF, texture) + Chunk(0x4000, Z("o") + mesh)));
    EXPECT_EQ(read.Only().numOfVerts, 4);
    EXPECT_STREQ(read.model.materials.at(0).strFile, "t");

    // Headers alone, each up to the end: 100,000 levels.
    for (const unsigned id : {0x4100U, 0xA200U}) {
        std::string headers;
        for (std::uint32_t left = 600'000; left > 0; left -= 6) headers += Header(id, left);
        EXPECT_TRUE(Loaded(File(Chunk(id == 0x4100 ? 0x4000 : 0xAFFF, Z("") + headers))).success);
    }
}

TEST(CLoad3DS, AnnouncementsAloneTakeLittleMemory)
{
    std::string objects;
    for (int i = 0; i < 2000; ++i)
        objects += Object("", Chunk(0x4120, U16(65535)) + Chunk(0x4110, U16(65535)));
    const Loaded read(File(objects));
    ASSERT_EQ(read.model.objects.size(), 2000U);
    std::size_t bytes = 0;
    for (const t3DObject& object : read.model.objects)
        bytes += static_cast<std::size_t>(object.numOfFaces) * (sizeof(t3DFace) + 4)
                 + static_cast<std::size_t>(object.numOfVerts) * sizeof(t3DPoint);
    EXPECT_LE(bytes, 64U << 20);
}

/// What another program says about a file: the number behind a label, -1 when it cannot read the file.
int AssimpSays(const std::string& listing, const std::string& label)
{
    const std::size_t place = listing.find("\n" + label + ":");
    return place == std::string::npos ? -1 : std::stoi(listing.substr(place + label.size() + 2));
}

std::string AssimpListing(const std::filesystem::path& file)
{
    std::string listing;
    const std::string command = "assimp info '" + file.string() + "' -r 2>/dev/null";
    FILE* pipe = popen(command.c_str(), "r");
    char line[512];
    while (pipe && std::fgets(line, sizeof line, pipe)) listing += line;
    if (pipe) pclose(pipe);
    return listing;
}

TEST(CLoad3DSCorpus, CountsAreThoseOfAnotherReader)
{
    SKIP_WITHOUT_CORPUS();
    if (std::system("command -v assimp >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "no program assimp (Debian package assimp-utils): counts are not compared";
    int compared = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(TestPlaces::Corpus() / "3ds")) {
        if (!entry.is_regular_file()) continue;
        const std::string listing = AssimpListing(entry.path());
        CLoad3DS loader;
        t3DModel model;
        const bool success = loader.Import3DS(&model, FromUtf8(entry.path().string()).c_str(), false);
        EXPECT_EQ(success, AssimpSays(listing, "Faces") >= 0) << entry.path();
        // It makes a mesh of the faces of one object that have one material.
        int faces = 0;
        std::set<std::pair<const void*, int>> meshes;
        for (const t3DObject& object : model.objects) {
            faces += object.numOfFaces;
            for (int i = 0; i < object.numOfFaces; ++i) meshes.emplace(&object, object.pFaceMaterials[i]);
        }
        if (success) {
            EXPECT_EQ(faces, AssimpSays(listing, "Faces")) << entry.path();
            EXPECT_EQ(static_cast<int>(meshes.size()), AssimpSays(listing, "Meshes")) << entry.path();
            ++compared;
        }
        CLoad3DS::FreeModel(&model);
    }
    EXPECT_GE(compared, 1);
}

} // namespace
