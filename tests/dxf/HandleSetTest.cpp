#include "dxf/HandleSet.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <set>

namespace {

constexpr int LARGEST = std::numeric_limits<int>::max();

TEST(HandleSet, AgreesWithAPlainSet)
{
    std::mt19937 random(7);
    for (int round = 0; round < 50; ++round) {
        HandleSet handles;
        std::set<int> plain;
        for (int i = 0; i < 60; ++i) {
            const int handle = static_cast<int>(random() % 80) - 5;
            handles.Add(handle);
            plain.insert(handle);
        }
        for (int handle = -7; handle < 82; ++handle) {
            ASSERT_EQ(handles.Has(handle), plain.contains(handle)) << handle;
            int next = std::max(handle + 1, 1);
            while (plain.contains(next)) ++next;
            ASSERT_EQ(handles.NextFree(handle), next) << handle;
        }
    }
}

TEST(HandleSet, WrapsPastTheLargestNumber)
{
    HandleSet handles;
    EXPECT_EQ(handles.NextFree(LARGEST), 1);
    for (const int handle : {LARGEST, LARGEST - 1, 1, 2, std::numeric_limits<int>::min()})
        handles.Add(handle);
    EXPECT_EQ(handles.NextFree(LARGEST - 2), 3);
    EXPECT_EQ(handles.NextFree(LARGEST), 3);
    EXPECT_EQ(handles.NextFree(std::numeric_limits<int>::min()), 3);
    EXPECT_TRUE(handles.Has(LARGEST));
}

TEST(HandleSet, MillionsInSequenceCostNothing)
{
    HandleSet handles;
    int handle = 2000;
    for (int i = 0; i < 3'000'000; ++i) handles.Add(handle = handles.NextFree(handle));
    EXPECT_EQ(handle, 3'002'000);
    EXPECT_EQ(handles.NextFree(2000), 3'002'001);
}

} // namespace
