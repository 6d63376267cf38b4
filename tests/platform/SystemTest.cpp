#include <gtest/gtest.h>

#include <thread>
#include <utility>

#include "platform/Clock.h"
#include "platform/Lock.h"
#include "platform/SharedLibrary.h"

TEST(Lock, ItsThreadMayEnterAgainAndOthersOnlyWhenItHasLeftAsOften)
{
    const Lock lock;
    const auto isFreeForOthers = [&lock] {
        bool isFree = false;
        std::thread([&] {
            isFree = lock.TryEnter();
            if (isFree) lock.Leave();
        }).join();
        return isFree;
    };
    lock.Enter();
    {
        const LockHold hold(lock);
        EXPECT_FALSE(isFreeForOthers());
    }
    EXPECT_FALSE(isFreeForOthers());
    lock.Leave();
    EXPECT_TRUE(isFreeForOthers());
    EXPECT_LE(sizeof(Lock), 40u) << "layers and blocks hold one each";
}

TEST(Lock, CountsWrittenUnderItAreAllKept)
{
    const Lock lock;
    int count = 0;
    const auto add = [&] {
        for (int i = 0; i < 20'000; ++i) {
            const LockHold hold(lock);
            ++count;
        }
    };
    std::thread other(add);
    add();
    other.join();
    EXPECT_EQ(count, 40'000);
}

TEST(SharedLibrary, FindsTheFunctionsOfALibraryAndSaysWhatItLacks)
{
    SharedLibrary library;
    EXPECT_FALSE(library.Open(L"no such library.so"));
    EXPECT_FALSE(library.Reason().empty());
    EXPECT_EQ(library.Find("cos"), nullptr);
    EXPECT_FALSE(library.Open(L""));

    if (!library.Open(L"libm.so.6") && !library.Open(L"msvcrt.dll"))
        GTEST_SKIP() << "no mathematics library of that name here";
    EXPECT_TRUE(library.Reason().empty());
    EXPECT_EQ(library.Find("no such function"), nullptr);
    const auto cosine = reinterpret_cast<double (*)(double)>(library.Find("cos"));
    ASSERT_NE(cosine, nullptr);
    EXPECT_EQ(cosine(0), 1);

    SharedLibrary moved = std::move(library);
    EXPECT_FALSE(library.IsOpen());
    EXPECT_NE(moved.Find("sin"), nullptr);
    moved.Close();
    EXPECT_EQ(moved.Find("sin"), nullptr);
}

TEST(Clock, RunsForwardByMilliseconds)
{
    const std::int64_t start = MonotonicMilliseconds();
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    const std::int64_t passed = MonotonicMilliseconds() - start;
    EXPECT_GE(passed, 29);
    EXPECT_LT(passed, 30'000);
}
