#include "import/SketchUpModel.h"

#include "TestPlaces.h"
#include "dxf/TempFile.h"
#include "import/SketchUpApi.h"
#include "import/scene/SceneLibrary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace {

using Scene::HERE;
using Scene::Square;

std::string Numbers(const GTL::Point3D<double>& p)
{
    std::ostringstream text;
    text << p.X() + 0 << " " << p.Y() + 0 << " " << p.Z() + 0;
    return text.str();
}

std::string Points(const DXFPolyline* ring)
{
    if (!ring) return "none";
    std::string text;
    for (int i = 0; i < ring->NumPoints(); ++i) text += (i > 0 ? ", " : "") + Numbers((*ring)[i]);
    return text;
}

/// Colours of all faces in order, as rrggbb.
std::string Colors(const SketchUpModel& model)
{
    std::string text;
    for (int i = 0; i < model.GetNumFaces(); ++i) {
        char color[16];
        std::snprintf(color, sizeof color, "%06lx ", SwapRedBlue(model.GetFaceColor(i)));
        text += color;
        EXPECT_EQ(model.GetFace(i)->Color(), model.GetFaceColor(i));
    }
    return text;
}

/// The stand-in for the vendor's library, chosen as a user does, and its own view of what happened.
class SketchUp : public testing::Test {
protected:
    static constexpr double INCHES = 0.0254;

    SketchUp()
    {
        Choose(TestPlaces::SketchUpLibrary().string());
        EXPECT_TRUE(m_Library.Open(FromUtf8(TestPlaces::SketchUpLibrary().string())));
        auto* state = reinterpret_cast<SceneState* (*)()>(m_Library.Find("GetSceneState"));
        m_State = state ? state() : nullptr;
    }
    ~SketchUp() override
    {
        Choose("");
        EXPECT_EQ(m_State->models, 0) << "a model was not released";
        EXPECT_EQ(m_State->sessions, 0) << "the library was not ended as often as it was started";
    }
    static void Choose(const std::string& library)
    {
        TestPlaces::SetEnvironment("HALYARD_SKETCHUP_API", library);
    }

    bool Load(SketchUpModel& model, const std::string& lines, double metresPerUnit = INCHES)
    {
        m_File.Write(Scene::File(lines));
        return model.Load(m_File.Name(), metresPerUnit);
    }
    /// The first face of a model, which loads.
    std::string FirstFace(const std::string& lines, double metresPerUnit = INCHES)
    {
        SketchUpModel model;
        EXPECT_TRUE(Load(model, lines, metresPerUnit));
        return Points(model.GetFace(0));
    }

    const TempFile m_File{".skp"};
    SharedLibrary m_Library;
    SceneState* m_State = nullptr;
};

TEST_F(SketchUp, FacesAreClosedRingsWithHolesNormalAndColour)
{
    SketchUpModel model;
    ASSERT_TRUE(Load(
        model, "face 0a141e 0 0 1 8 0 1 8 8 1\nhole 5 1 1 6 1 1 6 2 1\nhole 7 1 1 7.5 1 1 7.5 2 1 7 1 1\n"
               "normal 0 0 -1\nface - 1 2 3\nface -\n"));
    ASSERT_EQ(model.GetNumFaces(), 3);
    EXPECT_EQ(Points(model.GetFace(0)), "0 0 1, 8 0 1, 8 8 1, 0 0 1");
    EXPECT_EQ(model.GetFace(0)->Extents().MaxPnt(), GTL::Point3D<double>(8, 8, 1));
    ASSERT_EQ(model.GetFaceNumInnerLoops(0), 2);
    EXPECT_EQ(Points(model.GetFaceInnerLoop(0, 0)), "5 1 1, 6 1 1, 6 2 1, 5 1 1");
    EXPECT_EQ(Points(model.GetFaceInnerLoop(0, 1)), "7 1 1, 7.5 1 1, 7.5 2 1, 7 1 1") << "closed already";
    EXPECT_EQ(Numbers(*model.GetFaceNormal(0)), "0 0 -1");
    EXPECT_EQ(model.GetFaceColor(0), 0x1E140AU) << "red in the low byte, alpha dropped";
    EXPECT_EQ(Points(model.GetFace(1)), "1 2 3");
    EXPECT_EQ(Points(model.GetFace(2)), "");
    EXPECT_EQ(Colors(model), "0a141e ffffff ffffff ");

    for (const int none : {-1, 3}) {
        EXPECT_EQ(model.GetFace(none), nullptr);
        EXPECT_EQ(model.GetFaceNormal(none), nullptr);
        EXPECT_EQ(model.GetFaceColor(none), 0U);
        EXPECT_EQ(model.GetFaceNumInnerLoops(none), 0);
    }
    for (const int none : {-1, 2}) EXPECT_EQ(model.GetFaceInnerLoop(0, none), nullptr);
}

TEST_F(SketchUp, LengthsAreInTheCallersUnitsFromTheAxesOn)
{
    const std::string edge = "face - 0 0 0 100 0 0 100 50 0\n";
    EXPECT_EQ(FirstFace(edge, 1), "0 0 0, 2.54 0 0, 2.54 1.27 0, 0 0 0");
    EXPECT_EQ(FirstFace(edge, INCHES), "0 0 0, 100 0 0, 100 50 0, 0 0 0");
    EXPECT_EQ(FirstFace(edge + "axes 100 0 10\n", 0.01),
              "-254 0 -25.4, 0 0 -25.4, 0 127 -25.4, -254 0 -25.4");
    SketchUpModel model;
    ASSERT_TRUE(Load(model, edge, 2 * INCHES));
    EXPECT_EQ(Numbers(*model.GetFaceNormal(0)), "0 0 0.5") << "as long as the scale";

    for (const double wrong : {0.0, -1.0, std::nan(""), HUGE_VAL}) {
        SketchUpModel none;
        EXPECT_FALSE(Load(none, edge, wrong)) << wrong;
    }
}

TEST_F(SketchUp, PlacesApplyFromTheInsideOut)
{
    const std::string point = "list p\nface - 1 2 3\n";
    struct {
        const char* what;
        std::string lines;
        const char* expected;
    } const rows[] = {
        {"moved by (10, 20, 30)", "instance p - 1 0 0 0  0 1 0 0  0 0 1 0  10 20 30 1\n", "11 22 33"},
        // Column by column: x goes to y, y to -x.
        {"a quarter turn about z", "instance p - 0 1 0 0  -1 0 0 0  0 0 1 0  0 0 0 1\n", "-2 1 3"},
        {"mirrored in x", "group p - -1 0 0 0  0 1 0 0  0 0 1 0  0 0 0 1\n", "-1 2 3"},
        {"scaled unevenly", "group p - 2 0 0 0  0 3 0 0  0 0 4 0  0 0 0 1\n", "2 6 12"},
        {"doubled by the last element", "instance p - 1 0 0 0  0 1 0 0  0 0 1 0  1 1 1 0.5\n", "4 6 8"},
        // Inside: doubled, (2, 4, 6); then moved, (12, 4, 6).
        {"an instance in a group",
         "group g - 1 0 0 0  0 1 0 0  0 0 1 0  10 0 0 1\nlist g\ninstance p - 2 0 0 0  0 2 0 0  0 0 2 0  0 0 "
         "0 1\n",
         "12 4 6"},
        // Turned (-2, 1, 3), moved (8, 1, 3), mirrored (-8, 1, 3).
        {"an instance in a group in an instance",
         "instance a - -1 0 0 0  0 1 0 0  0 0 1 0  0 0 0 1\nlist a\ngroup b - 1 0 0 0  0 1 0 0  0 0 1 0  10 "
         "0 0 1\n"
         "list b\ninstance p - 0 1 0 0  -1 0 0 0  0 0 1 0  0 0 0 1\n",
         "-8 1 3"},
    };
    for (const auto& row : rows) EXPECT_EQ(FirstFace(row.lines + point), row.expected) << row.what;

    SketchUpModel model;
    ASSERT_TRUE(Load(
        model, "instance p - -2 0 0 0  0 1 0 0  0 0 1 0  5 5 5 1\nlist p\nface - 0 0 0\nnormal 1 0 0\n"));
    EXPECT_EQ(Numbers(*model.GetFaceNormal(0)), "-2 0 0") << "the normal is not moved";
    SketchUpModel flat;
    EXPECT_FALSE(Load(flat, "instance p - 1 0 0 0  0 1 0 0  0 0 1 0  0 0 0 0\n" + point));
}

TEST_F(SketchUp, FacesWithoutMaterialTakeTheColourOfTheirGroup)
{
    const std::string shapes = "list s\nface - 0 0 0\nface 0000ff 0 0 0\n";
    struct {
        const char* what;
        std::string lines;
        const char* colors;
    } const rows[] = {
        {"a group without material", "group s -" + HERE, "ffffff 0000ff "},
        {"a red group", "group s ff0000" + HERE, "ff0000 0000ff "},
        {"the material of an instance counts for nothing", "instance s 00ff00" + HERE, "ffffff 0000ff "},
        {"an instance in a red group", "group g ff0000" + HERE + "list g\ninstance s -" + HERE,
         "ff0000 0000ff "},
        {"a plain group in a red one", "group g ff0000" + HERE + "list g\ngroup s -" + HERE,
         "ff0000 0000ff "},
        {"a green group in a red one", "group g ff0000" + HERE + "list g\ngroup s 00ff00" + HERE,
         "00ff00 0000ff "},
        {"components, then groups, then faces",
         "face 000001 0 0 0\ngroup s ff0000" + HERE + "instance s -" + HERE,
         "ffffff 0000ff ff0000 0000ff 000001 "},
    };
    for (const auto& row : rows) {
        SketchUpModel model;
        EXPECT_TRUE(Load(model, row.lines + shapes)) << row.what;
        EXPECT_EQ(Colors(model), row.colors) << row.what;
    }
}

/// Uses every function.
std::string Everything()
{
    return "axes 1 2 3\n" + Square("ff0000", "0") + "hole 0.1 0.1 0 0.2 0.1 0 0.2 0.2 0\ninstance s -" + HERE
           + "group s 00ff00" + HERE + "list s\n" + Square("-", "1");
}

TEST_F(SketchUp, EveryCallThatFailsEndsTheLoad)
{
    struct Way {
        const char* fault;
        std::vector<std::string> harmless;
    };
    // What a face or a group without a material says is no failure. SUInitialize comes before the file.
    const Way ways[] = {{"fail",
                         {"SUInitialize", "SUTerminate", "SUDrawingElementGetMaterial",
                          "SUFaceGetFrontMaterial", "SUGroupToDrawingElement"}},
                        {"throw", {"SUInitialize", "SUTerminate"}}};
#define NAME(result, name, parameters) #name,
    for (const Way& way : ways)
        for (const std::string function : {SKETCHUP_FUNCTIONS(NAME)}) {
            SCOPED_TRACE(way.fault + (" " + function));
            const bool expected =
                std::find(way.harmless.begin(), way.harmless.end(), function) != way.harmless.end();
            SketchUpModel model;
            EXPECT_EQ(Load(model, Everything() + way.fault + " " + function + " 6\n"), expected);
            EXPECT_EQ(model.GetNumFaces(), expected ? 3 : 0);
            EXPECT_EQ(m_State->models, 0);
            if (expected) continue;
            EXPECT_TRUE(Load(model, Everything())) << "what failed can be loaded later";
            EXPECT_EQ(model.GetNumFaces(), 3);
        }
#undef NAME
}

TEST_F(SketchUp, ListsHoldWhatTheLibraryAnnounced)
{
    for (const std::string function : {"SUEntitiesGetInstances", "SUEntitiesGetGroups", "SUEntitiesGetFaces",
                                       "SUFaceGetInnerLoops", "SULoopGetVertices"}) {
        SketchUpModel model;
        EXPECT_FALSE(Load(model, Everything() + "lose " + function + "\n")) << function;
        EXPECT_EQ(model.GetNumFaces(), 0) << function;
        EXPECT_TRUE(Load(model, Everything() + "mute " + function + "\n")) << function << " leaves the count";
        EXPECT_EQ(model.GetNumFaces(), 3) << function;
        EXPECT_EQ(model.GetFaceNumInnerLoops(2), 1) << function;
        EXPECT_EQ(model.GetFace(2)->NumPoints(), 5) << function;
    }
}

TEST_F(SketchUp, WhatIsMissingIsSaidAndLoadsNothing)
{
    struct {
        const char* library;
        const wchar_t* said;
    } const rows[] = {
        {"/no such folder/library.so", L"HALYARD_SKETCHUP_API names cannot be loaded"},
        {SharedLibrary().Open(L"libm.so.6") ? "libm.so.6" : "kernel32.dll", L"has no function SU"},
        {"", L"is not there"},
    };
    for (const auto& row : rows) {
        Choose(row.library);
        SketchUpModel model;
        EXPECT_FALSE(Load(model, Everything())) << row.library;
        std::wstring missing;
        EXPECT_FALSE(SketchUpModel::CanLoad(missing)) << row.library;
        EXPECT_NE(missing.find(row.said), std::wstring::npos) << ToUtf8(missing);
    }
    Choose(TestPlaces::SketchUpLibrary().string());
    std::wstring nothing;
    EXPECT_TRUE(SketchUpModel::CanLoad(nothing));
    SketchUpModel model;
    EXPECT_FALSE(model.Load(L"no such file.skp", 1));
    EXPECT_FALSE(model.Load(static_cast<const wchar_t*>(nullptr), 1));
}

TEST_F(SketchUp, NestingThatDoesNotEndIsNotFollowed)
{
    SketchUpModel model;
    EXPECT_FALSE(Load(model, "instance s -" + HERE + "list s\ninstance s -" + HERE + Square("-", "0")));
    EXPECT_FALSE(Load(model, "group a -" + HERE + "list a\ngroup b -" + HERE + "list b\ngroup a -" + HERE));
    EXPECT_LT(m_State->calls, 100'000);
    EXPECT_EQ(model.GetNumFaces(), 0);

    const auto chain = [](int depth) {
        std::string lines = "instance 1 -" + HERE;
        for (int i = 1; i < depth; ++i)
            lines += "list " + std::to_string(i) + "\ninstance " + std::to_string(i + 1) + " -" + HERE;
        return lines + "list " + std::to_string(depth) + "\nface - 0 0 0\n";
    };
    EXPECT_FALSE(Load(model, chain(100)));
    EXPECT_TRUE(Load(model, chain(99))) << "the model's own list is the hundredth";
    EXPECT_EQ(model.GetNumFaces(), 1);
}

TEST_F(SketchUp, LoadingAgainNeedsAClear)
{
    SketchUpModel model;
    ASSERT_TRUE(Load(model, Square("ff0000", "0")));
    const DXFPolyline* ring = model.GetFace(0);
    EXPECT_TRUE(Load(model, Everything()));
    EXPECT_TRUE(model.Load(L"no such file.skp", 1));
    EXPECT_EQ(model.GetFace(0), ring);
    EXPECT_EQ(model.GetNumFaces(), 1);
    model.Clear();
    EXPECT_EQ(model.GetNumFaces(), 0);
    EXPECT_TRUE(Load(model, Everything()));
    EXPECT_EQ(model.GetNumFaces(), 3);
}

TEST_F(SketchUp, CopiesAreDeepAndMovesLeaveNothing)
{
    SketchUpModel model;
    m_File.Write(Scene::File(Everything()));
    ASSERT_TRUE(model.Load(CString(m_File.Name()), INCHES));
    SketchUpModel copy = model;
    SketchUpModel assigned;
    assigned = copy;
    const std::string hole = Points(model.GetFaceInnerLoop(2, 0));
    model.GetFace(2)->Clear();
    model.GetFaceInnerLoop(2, 0)->Clear();
    *model.GetFaceNormal(2) = {7, 7, 7};
    model.Clear();
    for (const SketchUpModel* other : {&copy, &assigned}) {
        EXPECT_EQ(other->GetFace(2)->NumPoints(), 5);
        EXPECT_EQ(Points(other->GetFaceInnerLoop(2, 0)), hole);
        EXPECT_EQ(Colors(*other), "ffffff 00ff00 ff0000 ");
        EXPECT_EQ(Numbers(*other->GetFaceNormal(2)), "0 0 1");
    }
    const SketchUpModel moved = std::move(copy);
    EXPECT_EQ(moved.GetNumFaces(), 3);
    copy = assigned;
    EXPECT_EQ(copy.GetNumFaces(), 3);
}

} // namespace
