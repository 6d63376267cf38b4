#include "cli/ProgramTest.h"

#include <regex>
#include <set>

using ProgramUsage = ProgramTest;

namespace {

/// "" stands for the program itself.
constexpr const char* COMMANDS[] = {"", "info", "dump", "convert", "clip", "transform", "layers", "render"};

} // namespace

TEST_F(ProgramUsage, AnswersWrongUsageWithStatusTwo)
{
    Write("in.dxf", Groups("0 EOF"));
    for (const char* arguments :
         {"", "nonsense", "info", "info in.dxf in.dxf", "info --nonsense in.dxf", "--json", "dump",
          "dump --json in.dxf", "convert", "convert in.dxf", "convert in.dxf out", "convert in.dxf out.png",
          "convert in.dxf out.dxf more.dxf", "info in.dxf dump", "render in.dxf out.dxf"}) {
        const Outcome outcome = Halyard(arguments);
        EXPECT_EQ(outcome.status, 2) << arguments;
        EXPECT_EQ(outcome.out, "") << arguments;
        EXPECT_NE(outcome.err, "") << arguments;
    }
    EXPECT_FALSE(std::filesystem::exists(m_Folder / "out"));
    EXPECT_FALSE(std::filesystem::exists(m_Folder / "out.png"));
}

TEST_F(ProgramUsage, HelpsWithEverything)
{
    for (const char* command : COMMANDS) {
        const Outcome outcome = Halyard(command + std::string(" --help"));
        EXPECT_EQ(outcome.status, 0) << command;
        EXPECT_EQ(outcome.err, "") << command;
        EXPECT_NE(outcome.out.find("--help"), std::string::npos) << command;
    }
    EXPECT_EQ(Halyard("-h").out, Halyard("--help").out);
    const Outcome version = Halyard("--version");
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out.find("halyard " HALYARD_VERSION " ("), 0U) << version.out;
}

TEST_F(ProgramUsage, TakesFileNamesOfAnyBytesAndAnyBeginning)
{
    const std::string drawing = Groups("0 SECTION|2 ENTITIES|0 POINT|8 0|10 1|20 2|0 ENDSEC|0 EOF");
    // Blanks, a dash in front, UTF-8, and bytes that are none.
    for (const std::string& name :
         {std::string("a b.dxf"), std::string("-x.dxf"), std::string("T\xC3\xBCr \xE5\x9B\xBE.dxf"),
          std::string("T\xFCr.dxf"), std::string("back\\slash.DXF")}) {
        Write(name, drawing);
        const Outcome outcome =
            Halyard("convert -- '" + name + "' 'out " + name + "' && halyard info -- 'out " + name + "'");
        EXPECT_EQ(outcome.status, 0) << name << outcome.err;
        EXPECT_EQ(outcome.out.find("out " + name + "\n"), 0U) << outcome.out;
    }
}

TEST_F(ProgramUsage, IsToldWholeByManualAndCompletion)
{
    const std::string manual = ReadFile(TestPlaces::Source() / "docs" / "halyard.1");
    const std::string completion = ReadFile(TestPlaces::Source() / "tools" / "completion" / "halyard.bash");
    std::set<std::string> words = {""};
    for (const char* command : COMMANDS) {
        const std::string help = Halyard(command + std::string(" --help")).out;
        words.insert(command);
        const std::regex option("--[a-z][a-z-]*");
        for (std::sregex_iterator at(help.begin(), help.end(), option), end; at != end; ++at)
            words.insert(at->str());
    }
    EXPECT_TRUE(words.contains("--true-color") && words.contains("--version"));
    for (const std::string& word : words) {
        EXPECT_NE(completion.find(word), std::string::npos) << word << " in the completion";
        EXPECT_NE(manual.find(std::regex_replace(word, std::regex("-"), "\\-")), std::string::npos)
            << word << " in the manual";
    }
}

TEST_F(ProgramUsage, IsCompletedByTheShell)
{
    if (Shell("bash -c true").status != 0) GTEST_SKIP() << "no bash here";
    Write("plan.dxf", "");
    Write("OLD.DXF", "");
    Write("notes.txt", "");
    Write("house.3ds", "");
    std::filesystem::create_directory(m_Folder / "sub");
    const auto complete = [&](const std::string& words) {
        const Outcome outcome = Shell(
            "bash -c 'source \"$1\"; shift; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _halyard; "
            "printf \"%s\\n\" \"${COMPREPLY[@]}\" | sort | tr \"\\n\" \" \"' - "
            + Quoted(TestPlaces::Source() / "tools" / "completion" / "halyard.bash") + " halyard " + words);
        EXPECT_EQ(outcome.err, "");
        return outcome.out;
    };
    EXPECT_EQ(complete("''"), "clip convert dump info layers render transform ");
    EXPECT_EQ(complete("d"), "dump ");
    EXPECT_EQ(complete("--v"), "--version ");
    EXPECT_EQ(complete("info --j"), "--json ");
    EXPECT_EQ(complete("convert --"), "--help --plain --swap-axes --true-color --units ");
    EXPECT_EQ(complete("info ''"), "OLD.DXF house.3ds plan.dxf sub ");
    EXPECT_EQ(complete("dump ''"), "OLD.DXF plan.dxf sub ");
    EXPECT_EQ(complete("convert plan.dxf p"), "plan.dxf ");
}
