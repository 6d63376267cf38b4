#include "cli/ProgramTest.h"
#include "platform/Picture.h"
#include "platform/Utf8.h"

#include <algorithm>
#include <set>

class RenderCommand : public ProgramTest {
protected:
    static constexpr char PLAN[] =
        "0 LINE|8 WALLS|62 1|10 0|20 0|11 40|21 20|0 CIRCLE|8 PIPES|62 3|10 20|20 10|40 4";
    static constexpr std::uint32_t RED = 0xFF0000;
    static constexpr std::uint32_t GREEN = 0x00FF00;

    /// The picture of a command that has to succeed; without a word when it says nothing.
    std::shared_ptr<const Picture> Rendered(const std::string& options, const std::string& warning = "")
    {
        const Outcome outcome = Halyard("render " + options + " in.dxf out.png");
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.err, warning);
        return LoadPicture(FromUtf8((m_Folder / "out.png").string()));
    }
    static std::set<std::uint32_t> Colors(const Picture& picture)
    {
        std::set<std::uint32_t> colors;
        for (const std::uint32_t pixel : picture.pixels) colors.insert(pixel & 0xFFFFFF);
        return colors;
    }
};

TEST_F(RenderCommand, DrawsTheWholeDrawingInItsShape)
{
    Write("in.dxf", Drawing(PLAN));
    const auto picture = Rendered("");
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->width, 1600);
    EXPECT_EQ(picture->height, 800);
    EXPECT_TRUE(Colors(*picture).contains(RED));
    EXPECT_TRUE(Colors(*picture).contains(GREEN));
    // A margin of 2 %: the line begins at 0.8 of 41.6 units, which is pixel 30, and 0.4 of 20.8 from below,
    // which is 15.
    EXPECT_EQ(picture->pixels[std::size_t{800 - 15} * 1600 + 30] & 0xFFFFFF, RED);
}

TEST_F(RenderCommand, TakesSizeViewAndBackground)
{
    Write("in.dxf", Drawing(PLAN));
    // 10 x 10 units about the circle, at 10 pixels a unit, of which the line hits the middle.
    const auto picture = Rendered("--size 100x100 --view 15,5,25,15 --background '#ffffff'");
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->width, 100);
    EXPECT_EQ(picture->height, 100);
    EXPECT_EQ(Colors(*picture), (std::set<std::uint32_t>{0xFFFFFF, RED, GREEN}));
    // The circle's westernmost pixel is 10 +- 1.
    const auto west = picture->pixels.begin() + 50 * 100 + 9;
    EXPECT_EQ(std::count_if(west, west + 3, [](std::uint32_t p) { return (p & 0xFFFFFF) == GREEN; }), 1);
    const auto fitted = Rendered("--size 100x100 --fit");
    ASSERT_TRUE(fitted);
    EXPECT_EQ(fitted->width, 100);
    EXPECT_EQ(fitted->height, 50);
}

TEST_F(RenderCommand, ShowsAndHidesLayers)
{
    Write("in.dxf", Drawing(PLAN, "0 LAYER|2 PIPES|62 -3|370 0"));
    EXPECT_FALSE(Colors(*Rendered("")).contains(GREEN));
    const auto pipes =
        Colors(*Rendered("--layers pipes,NONE", "halyard: in.dxf: warning: there is no layer NONE\n"));
    EXPECT_TRUE(pipes.contains(GREEN));
    EXPECT_FALSE(pipes.contains(RED));
    const auto rest =
        Colors(*Rendered("--hide WALLS", "halyard: in.dxf: warning: there is nothing to draw\n"));
    EXPECT_EQ(rest.size(), 1U);
}

TEST_F(RenderCommand, PutsInsertsWhereOtherProgramsDoUnlessPlain)
{
    Write("in.dxf", Drawing("0 INSERT|8 0|2 B|10 0|20 0|0 LINE|8 0|62 1|10 -5|20 -5|11 5|21 5", "",
                            "0 BLOCK|2 B|8 0|70 0|10 2|20 0|0 POINT|8 0|62 3|10 2|20 3|0 ENDBLK"));
    // At (0, 3), ten pixels a unit; in the plain form the base point is added: (4, 3).
    const std::string options = "--size 100x100 --view -5,-5,5,5 ";
    EXPECT_EQ(Rendered(options)->pixels[20 * 100 + 50] & 0xFFFFFF, GREEN);
    EXPECT_EQ(Rendered(options + "--plain")->pixels[20 * 100 + 90] & 0xFFFFFF, GREEN);
}

TEST_F(RenderCommand, GivesAPictureForAnyExtents)
{
    const struct {
        const char* entities;
        int width;
        int height;
        const char* warning = "";
    } rows[] = {
        {"", 1600, 1600, "halyard: in.dxf: warning: there is nothing to draw\n"},
        {"0 POINT|8 0|10 5|20 5", 1600, 1600},
        {"0 POINT|8 0|10 1e17|20 -1e17", 1600, 1600},
        {"0 LINE|8 0|10 0|20 7|11 9|21 7", 1600, 16},
        {"0 LINE|8 0|10 0|20 0|11 0|21 9", 16, 32768},
        {"0 LINE|8 0|10 0|20 0|11 20|21 1", 1600, 80},
        {"0 LINE|8 0|10 0|20 0|11 1|21 5", 1600, 8000},
        {"0 LINE|8 0|10 0|20 0|11 1|21 1024", 32, 32768},
        {"0 LINE|8 0|10 -1e308|20 -1e308|11 1e308|21 1e308", 1600, 1600},
        {"0 CIRCLE|8 0|10 0|20 0|40 1e300|0 POINT|8 0|10 1|20 1", 1600, 1600},
        {"0 LINE|8 0|10 0|20 0|11 1|21 1|0 POINT|8 0|10 1e9|20 3", 1600, 16},
    };
    for (const auto& row : rows) {
        Write("in.dxf", Drawing(row.entities));
        for (const std::string options : {"", "--plain"}) {
            const auto picture = Rendered(options, row.warning);
            ASSERT_TRUE(picture) << row.entities;
            EXPECT_EQ(picture->width, row.width) << row.entities;
            EXPECT_EQ(picture->height, row.height) << row.entities;
        }
    }
}

TEST_F(RenderCommand, FillsThePictureHoweverSmallOrFarOffTheDrawingIs)
{
    const char* const rows[] = {"0 LINE|8 0|10 5000000|20 5000000|11 5000000.004|21 5000000.004",
                                "0 LINE|8 0|10 0|20 0|11 1e-10|21 1e-10",
                                "0 LINE|8 0|10 0|20 0|11 1e-290|21 1e-290"};
    for (const char* diagonal : rows) {
        Write("in.dxf", Drawing(diagonal));
        const auto picture = Rendered("--size 100x100 --background black");
        ASSERT_TRUE(picture);
        const auto isDrawn = [](std::uint32_t pixel) {
            return (pixel & 0xFFFFFF) != 0;
        };
        // All but the margins: 100 / 1.04 = 96.2.
        const auto drawn = std::count_if(picture->pixels.begin(), picture->pixels.end(), isDrawn);
        EXPECT_GE(drawn, 95) << diagonal;
        EXPECT_LE(drawn, 97) << diagonal;
    }
}

TEST_F(RenderCommand, RefusesWhatItCannotDo)
{
    Write("in.dxf", Drawing(PLAN));
    for (const char* arguments :
         {"in.dxf out.jpg", "--size 32769x10 in.dxf out.png", "--size 10x32769 in.dxf out.png",
          "--size 0x10 in.dxf out.png", "--size 10 in.dxf out.png", "--view 0,0,0,1 in.dxf out.png",
          "--view 1,2,3 in.dxf out.png", "--background blue-ish in.dxf out.png", "in.dxf"}) {
        const Outcome outcome = Halyard(std::string("render ") + arguments);
        EXPECT_EQ(outcome.status, 2) << arguments;
        EXPECT_NE(outcome.err, "") << arguments;
    }
    const Outcome folder = Halyard("render in.dxf nowhere/out.png");
    EXPECT_EQ(folder.status, 1);
    EXPECT_EQ(folder.err, "halyard: nowhere/out.png: cannot be written: there is no folder nowhere\n");
    EXPECT_EQ(Leftovers(), std::vector<std::string>{});
}

#ifndef __SANITIZE_ADDRESS__ // which takes more address space itself
TEST_F(RenderCommand, SaysThatThereIsNotTheMemoryForThePicture)
{
    Write("in.dxf", Drawing(PLAN));
    // 4 GB, of which 2 are to be had.
    const Outcome outcome = Shell("ulimit -v 2000000; halyard render --size 32768x32768 in.dxf out.png");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "halyard: in.dxf: there is not the memory for the picture\n");
}
#endif

TEST_F(RenderCommand, WritesBitmapsToo)
{
    Write("in.dxf", Drawing(PLAN));
    ASSERT_EQ(Halyard("render --size 40x30 in.dxf out.bmp").status, 0);
    EXPECT_TRUE(Read("out.bmp").starts_with("BM"));
    EXPECT_EQ(Leftovers(), std::vector<std::string>{});
}
