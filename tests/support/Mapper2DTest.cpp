#include "support/Mapper2D.h"

#include <gtest/gtest.h>

#include <cmath>

using P2 = GTL::Point2D<double>;
using Pixel = GTL::Point2D<int>;

TEST(Mapper2D, MapsEachAxisByItselfAboutTheCenters)
{
    // 200 x 50 units about (10, 20) on 100 x 100 pixels about (50, 60): scales 1/2 and 2.
    GTL::Mapper2D<double, double> mapper;
    mapper.SetSource({10, 20}, 200, 50);
    mapper.SetTarget({50, 60}, 100, 100);
    EXPECT_EQ(mapper.Map({14, 21}), P2(52, 62));
    EXPECT_EQ(mapper.Unmap(52, 62), P2(14, 21));
    EXPECT_EQ(mapper.MapSize({4, 4}), GTL::Vector2D<double>(2, 8));
    EXPECT_EQ(mapper.UnmapSize({2, 8}), GTL::Vector2D<double>(4, 4));
}

TEST(Mapper2D, TruncatesWholeResultsTowardZeroAndKeepsThemInRange)
{
    constexpr int LOWEST = std::numeric_limits<int>::min();
    constexpr int HIGHEST = std::numeric_limits<int>::max();
    GTL::Mapper2D<double, int> mapper;
    EXPECT_EQ(mapper.Map(1.9, -1.9), Pixel(1, -1));
    EXPECT_EQ(mapper.Map(1e308, -1e308), Pixel(HIGHEST, LOWEST));
    EXPECT_EQ(mapper.Map(std::nan(""), std::numeric_limits<double>::infinity()), Pixel(LOWEST, HIGHEST));
    mapper.SetTarget({}, 3, 3);
    EXPECT_EQ(mapper.MapX(-0.9), -2);
}

TEST(Mapper2D, TakesSizesOfZeroForOne)
{
    GTL::Mapper2D<double, double> mapper;
    mapper.SetSource({5, 5}, 0, 10);
    mapper.SetTarget({0, 0}, 30, 0);
    EXPECT_EQ(mapper.ScaleX(), 30);
    EXPECT_EQ(mapper.ScaleY(), 0.1);
}
