#include "frame/Module.h"

#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <string>
#include <vector>

#include "TestPlaces.h"
#include "frame/LibraryVersion.h"
#include "platform/ModuleString.h"
#include "platform/SharedLibrary.h"
#include "support/Messages.h"

namespace {
/// A program that loads the library: what it exports, and what it was asked.
std::map<std::string, void*> g_Exports;
std::vector<std::string> g_Calls;
bool g_Agrees = true;

void* FindExport(const char* name)
{
    const auto found = g_Exports.find(name);
    return found == g_Exports.end() ? nullptr : found->second;
}

std::string Called(const char* what, unsigned version, const char* buildDate)
{
    return std::string(what) + " " + std::to_string(version) + " " + buildDate;
}

bool Check(unsigned version, const char* buildDate)
{
    g_Calls.push_back(Called("check", version, buildDate));
    return g_Agrees;
}

void Register(unsigned version, const char* buildDate)
{
    g_Calls.push_back(Called("register", version, buildDate));
}

void Unregister()
{
    g_Calls.emplace_back("unregister");
}

class ModuleOfAProgram : public testing::Test {
protected:
    ModuleOfAProgram()
    {
        g_Exports = {{"HalyardVersionCheck", reinterpret_cast<void*>(Check)},
                     {"HalyardRegister", reinterpret_cast<void*>(Register)},
                     {"HalyardUnregister", reinterpret_cast<void*>(Unregister)}};
        g_Calls.clear();
        g_Agrees = true;
    }

    // 5.5.1.0, a byte a part: 5 * 2^24 + 5 * 2^16 + 256 = 84214016.
    const std::string m_Said = std::string(" 84214016 ") + LibraryVersion::BuildDate();
    Module m_Module{FindExport};
};
} // namespace

TEST(LibraryVersion, IsANumberAndADay)
{
    EXPECT_EQ(LibraryVersion::Number(), 0x5050100u);
    EXPECT_TRUE(std::regex_match(LibraryVersion::BuildDate(), std::regex("20[0-9]{2}-[01][0-9]-[0-3][0-9]")))
        << LibraryVersion::BuildDate();
}

TEST_F(ModuleOfAProgram, IsCheckedThenRegisteredAndLeavesOnce)
{
    ASSERT_TRUE(m_Module.Load());
    EXPECT_EQ(g_Calls, (std::vector<std::string>{"check" + m_Said, "register" + m_Said}));
    m_Module.Unload();
    m_Module.Unload();
    ASSERT_EQ(g_Calls.size(), 3u);
    EXPECT_EQ(g_Calls[2], "unregister");
}

TEST_F(ModuleOfAProgram, ThatRefusesItIsNotRegistered)
{
    g_Agrees = false;
    EXPECT_FALSE(m_Module.Load());
    m_Module.Unload();
    EXPECT_EQ(g_Calls, std::vector<std::string>{"check" + m_Said});
}

TEST_F(ModuleOfAProgram, ThatExportsLittleOrNothingLoadsItFreely)
{
    g_Exports.erase("HalyardVersionCheck");
    EXPECT_TRUE(m_Module.Load());
    EXPECT_EQ(g_Calls.size(), 1u);
    g_Exports.clear();
    m_Module.Unload();
    EXPECT_EQ(g_Calls.size(), 1u) << "there is no function to call any more";
    EXPECT_TRUE(m_Module.Load());
    EXPECT_EQ(g_Calls.size(), 1u);
}

TEST(ModuleString, IsTheMessageOfThatNumberWhereThereAreStringTables)
{
    const struct {
        unsigned number;
        const wchar_t* text;
    } rows[] = {
        {11760, L"Invalid layer name \"\""},
        {11765, L"Cannot rename \""},
        {11778, L"!"},
        {11784, L"is an Invalid layer name!\nLayer names may only consist of the following "
                L"characters:\nA-Z\n0-9\n-_$\n"},
        {11792, L"Invalid file version"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(MessageText(static_cast<Message>(row.number)), std::wstring(row.text));
        const std::optional<std::wstring> expected =
            TestPlaces::IS_WINDOWS ? std::optional<std::wstring>(row.text) : std::nullopt;
        EXPECT_EQ(ModuleString(row.number), expected) << row.number;
    }
    EXPECT_EQ(ModuleString(11759), std::nullopt);
    EXPECT_EQ(ModuleString(11793), std::nullopt);
}

TEST(SharedLibrary, FindsNothingThatTheProgramDoesNotExport)
{
    EXPECT_EQ(SharedLibrary::FindInProgram("HalyardVersionCheck"), nullptr);
}
