#include "platform/PictureFile.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/Picture.h"
#include "platform/TemporaryFolder.h"
#include "platform/Utf8.h"

namespace {
constexpr int WIDTH = 61;
constexpr int HEIGHT = 37;
} // namespace

TEST(PictureFiles, ReadBackAsTheyWereWritten)
{
    const TemporaryFolder folder;
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateBitmap(WIDTH, HEIGHT));
    std::mt19937 random(3);
    for (int i = 0; i < WIDTH * HEIGHT; ++i) bitmap.Pixels()[i] = random() & 0xFFFFFF;
    for (const char* name : {"a.png", "b.BMP"}) {
        const std::wstring file = FromUtf8((folder / name).string());
        std::wstring reason;
        ASSERT_TRUE(SavePicture(file, bitmap, &reason)) << ToUtf8(reason);
        const auto picture = LoadPicture(file);
        ASSERT_TRUE(picture);
        ASSERT_EQ(picture->width, WIDTH);
        ASSERT_EQ(picture->height, HEIGHT);
        for (std::size_t i = 0; i < picture->pixels.size(); ++i)
            ASSERT_EQ(picture->pixels[i], bitmap.Pixels()[i] | 0xFF000000U) << name << i;
    }
}

TEST(PictureFiles, ThatCannotBeWrittenSayWhy)
{
    const TemporaryFolder folder;
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateBitmap(WIDTH, HEIGHT));
    const CBitmap empty;
    std::wstring reason;
    EXPECT_FALSE(SavePicture(FromUtf8((folder / "a.gif").string()), bitmap, &reason));
    EXPECT_EQ(reason, L"not a picture format that can be written");
    EXPECT_FALSE(SavePicture(FromUtf8((folder / "a.png").string()), empty, &reason));
    reason.clear();
    EXPECT_FALSE(SavePicture(FromUtf8((folder / "none" / "a.png").string()), bitmap, &reason));
    EXPECT_NE(reason, L"");
}
