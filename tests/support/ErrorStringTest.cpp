#include "support/ErrorString.h"
#include "support/Messages.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>

TEST(ErrorString, IsASuccessOrAFailureWithItsText)
{
    const ErrorString success(true);
    EXPECT_TRUE(success);
    EXPECT_FALSE(!success);
    EXPECT_EQ(success.Text(), L"");
    const ErrorString failure(L"broken");
    EXPECT_TRUE(!failure);
    EXPECT_EQ(failure.Text(), L"broken");
    EXPECT_TRUE(!ErrorString(std::wstring()));
    EXPECT_TRUE(!ErrorString(static_cast<const wchar_t*>(nullptr)));
    EXPECT_TRUE(!ErrorString(false));
}

/// A number is that of a message, never a truth value.
TEST(ErrorString, IsMadeOfWhatAFunctionReturns)
{
    const auto number = []() -> ErrorString {
        return 11762;
    };
    EXPECT_TRUE(!number());
    EXPECT_EQ(number().Text(), L"Layer not found");
    const ErrorString assigned = 1;
    EXPECT_TRUE(!assigned);
    const auto truth = [](bool isDone) -> ErrorString {
        return isDone;
    };
    EXPECT_TRUE(truth(true));
    EXPECT_FALSE(truth(false));
    const auto text = []() -> ErrorString {
        return L"broken";
    };
    EXPECT_EQ(text().Text(), L"broken");
}

TEST(ErrorString, IsPutTogetherFromPieces)
{
    ErrorString error(Message::ErrorLine);
    error << -12 << Message::UnexpectedGroupCode << 999 << Message::UnexpectedGroupCodeFound << L""
          << std::wstring(L"?");
    EXPECT_EQ(error.Text(), L"Error Line -12. Unexpected group code (999) found.?");
    ErrorString turned(true);
    turned << L"no";
    EXPECT_TRUE(!turned);
}

TEST(ErrorString, TheLastErrorIsThatOfTheThread)
{
    (void)(ErrorString(L"Layer ") << L"gone");
    EXPECT_EQ(ErrorString::LastError().Text(), L"Layer gone");
    std::thread([] {
        EXPECT_TRUE(ErrorString::LastError()) << "nothing failed in this thread";
        (void)ErrorString(false);
        EXPECT_FALSE(ErrorString::LastError());
    }).join();
    (void)ErrorString(true);
    EXPECT_EQ(ErrorString::LastError().Text(), L"Layer gone") << "a success is no error";
}

TEST(Messages, HaveTheirPublishedNumbers)
{
    // 33 texts, no number twice or missing, are what the range 11760 to 11792 holds.
    std::set<std::wstring> texts;
    for (int number = 11760; number <= 11792; ++number)
        texts.insert(MessageText(static_cast<Message>(number)));
    EXPECT_EQ(texts.size(), 33U);
    EXPECT_FALSE(texts.contains(L""));
    EXPECT_EQ(ErrorString(11785).Text(), L"WinDXFDrawer::can not init internal mapper");
    EXPECT_EQ(ErrorString(11786).Text(), L"WinDXFDrawer::can not init wnd DC");
    for (const int unknown : {11759, 11793, 0, -1}) EXPECT_EQ(ErrorString(unknown).Text(), L"");
}
