#include "support/DXFColor.h"

#include <gtest/gtest.h>

#include <random>

namespace {

struct Color {
    int red, green, blue;
};

unsigned long DeviceWord(const Color& c)
{
    return static_cast<unsigned long>(c.red | c.green << 8 | c.blue << 16);
}

Color ColorOf(unsigned long word)
{
    return {static_cast<int>(word & 0xFF), static_cast<int>(word >> 8 & 0xFF),
            static_cast<int>(word >> 16 & 0xFF)};
}

/// Indices 10 to 249 are 24 hues of 15 degrees, each at five brightnesses in full and in half saturation: the
/// usual conversion of hue, saturation and value, in whole numbers. Everything is in parts of 2 * 60 * 100.
Color ColorOfHue(int index)
{
    constexpr int BRIGHTNESS_PERCENT[] = {100, 65, 50, 30, 15};
    const int hue = (index / 10 - 1) * 15;
    const int saturation = index % 2 == 0 ? 2 : 1; // in halves
    const int value = 255 * BRIGHTNESS_PERCENT[index % 10 / 2];
    const int within = hue % 60;
    const auto part = [&](int sixtieths) {
        return value * (120 - saturation * sixtieths) / 12000;
    };
    const int full = part(0);
    const int low = part(60);
    const int falling = part(within);
    const int rising = part(60 - within);
    const Color SECTORS[] = {{full, rising, low},  {falling, full, low}, {low, full, rising},
                             {low, falling, full}, {rising, low, full},  {full, low, falling}};
    return SECTORS[hue / 60];
}

/// The obvious way: look at every index.
int IndexBySearch(unsigned long word)
{
    const Color wanted = ColorOf(word);
    int best = 0;
    int bestDistance = 1 << 30;
    for (int index = 0; index < 256; ++index) {
        const Color c = ColorOf(DXFColor(index));
        const int distance = (c.red - wanted.red) * (c.red - wanted.red)
                             + (c.green - wanted.green) * (c.green - wanted.green)
                             + (c.blue - wanted.blue) * (c.blue - wanted.blue);
        if (distance < bestDistance) {
            best = index;
            bestDistance = distance;
        }
    }
    return best;
}

} // namespace

TEST(DXFColor, FirstTenAndLastSixAreThePublishedColors)
{
    const std::pair<int, Color> ROWS[] = {
        {0, {0, 0, 0}},         {1, {255, 0, 0}},       {2, {255, 255, 0}},     {3, {0, 255, 0}},
        {4, {0, 255, 255}},     {5, {0, 0, 255}},       {6, {255, 0, 255}},     {7, {255, 255, 255}},
        {8, {128, 128, 128}},   {9, {192, 192, 192}},   {250, {84, 84, 84}},    {251, {118, 118, 118}},
        {252, {152, 152, 152}}, {253, {186, 186, 186}}, {254, {220, 220, 220}}, {255, {255, 255, 255}},
    };
    for (const auto& [index, color] : ROWS) EXPECT_EQ(DXFColor(index), DeviceWord(color)) << index;
}

TEST(DXFColor, TheOthersGoRoundTheColorCircle)
{
    for (int index = 10; index < 250; ++index)
        EXPECT_EQ(DXFColor(index), DeviceWord(ColorOfHue(index))) << index;
}

TEST(DXFColor, IndexIsKeptAndThatOfAColorIsTheLowest)
{
    EXPECT_EQ(DXFColor(10).Index(), 10);
    EXPECT_EQ(DXFColor(0x0000FFUL).Index(), 1) << "red is 1, 10 too";
    EXPECT_EQ(DXFColor(0xFFFFFFUL).Index(), 7) << "white is 7, 255 too";
    EXPECT_EQ(DXFColor(0xFF0000U).Index(), 5) << "without a sign it is a colour word: blue is the high byte";
    EXPECT_EQ(DXFColor(7U), 7UL);
    EXPECT_EQ(DXFColor(0xAB000000UL).Index(), 0) << "bits above the colour do not count";
    for (const int outside : {-1, 256, 1000000}) EXPECT_EQ(DXFColor(outside).Index(), 0);
}

TEST(DXFColor, NearestIsThatOfASearchThroughTheTable)
{
    std::mt19937 random(99);
    for (int i = 0; i < 20000; ++i) {
        const unsigned long word = random() & 0xFFFFFF;
        ASSERT_EQ(DXFColor(word).Index(), IndexBySearch(word)) << std::hex << word;
    }
    // A lattice whose points lie on both sides of every multiple of 32.
    for (unsigned long i = 0; i < 16 * 16 * 16; ++i) {
        const auto level = [](unsigned long n) {
            return n / 2 * 32 + n % 2 * 31;
        };
        const unsigned long word = level(i % 16) | level(i / 16 % 16) << 8 | level(i / 256) << 16;
        ASSERT_EQ(DXFColor(word).Index(), IndexBySearch(word)) << std::hex << word;
    }
}

TEST(DXFColor, RedAndBlueSwap)
{
    EXPECT_EQ(SwapRedBlue(0x123456), 0x563412UL);
    EXPECT_EQ(SwapRedBlue(SwapRedBlue(0xFF8001)), 0xFF8001UL);
}
