#pragma once

#include "TestPlaces.h"
#include "platform/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

/// Runs the built program in a folder of its own, as a shell does.
class ProgramTest : public testing::Test {
protected:
    struct Outcome {
        int status = -1;
        std::string out;
        std::string err;
    };

    /// A command line of the shell; HALYARD in it is the program.
    Outcome Shell(const std::string& command) const
    {
        const std::string script = "cd '" + m_Folder.Path().string() + "' || exit 99\nhalyard() { '"
                                   + TestPlaces::Program().string() + "' \"$@\"; }\nHALYARD='"
                                   + TestPlaces::Program().string() + "'\n{ " + command
                                   + "\n} >.out 2>.err\necho $? >.status\n";
        WriteFile(m_Folder / ".script", script);
        EXPECT_EQ(std::system(("sh '" + (m_Folder / ".script").string() + "'").c_str()), 0);
        const std::string status = ReadFile(m_Folder / ".status");
        return {status.empty() ? -1 : std::stoi(status), ReadFile(m_Folder / ".out"),
                ReadFile(m_Folder / ".err")};
    }
    Outcome Halyard(const std::string& arguments) const { return Shell("halyard " + arguments); }

    void Write(const std::string& name, std::string_view bytes) const { WriteFile(m_Folder / name, bytes); }
    std::string Read(const std::string& name) const { return ReadFile(m_Folder / name); }

    /// All entities of a file as the program dumps them.
    std::vector<nlohmann::json> Dump(const std::string& file) const
    {
        const Outcome dump = Halyard("dump " + file);
        EXPECT_EQ(dump.status, 0) << dump.err;
        std::vector<nlohmann::json> entities;
        std::istringstream lines(dump.out);
        for (std::string line; std::getline(lines, line);) entities.push_back(nlohmann::json::parse(line));
        return entities;
    }
    nlohmann::json Info(const std::string& file) const
    {
        const Outcome info = Halyard("info --json " + file);
        EXPECT_EQ(info.status, 0) << info.err;
        return nlohmann::json::parse(info.out, nullptr, false);
    }
    /// Files of the folder that are none of this test's own.
    std::vector<std::string> Leftovers() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_Folder.Path()))
            if (entry.path().filename().string().starts_with(".halyard"))
                names.push_back(entry.path().filename());
        return names;
    }

    TemporaryFolder m_Folder;
};

/// A file name for a command line of the shell.
inline std::string Quoted(const std::filesystem::path& file)
{
    std::string text = "'";
    text += file.string();
    text += "'";
    return text;
}

/// Groups written on one line, "0 LINE|8 WALLS|10 1.5", as lines of a DXF file. A value may be empty and may
/// hold blanks.
inline std::string Groups(const std::string& compact, const std::string& lineEnd = "\n")
{
    std::string text;
    std::istringstream groups(compact);
    for (std::string group; std::getline(groups, group, '|');) {
        const std::size_t blank = group.find(' ');
        text += group.substr(0, blank) + lineEnd + (blank == std::string::npos ? "" : group.substr(blank + 1))
                + lineEnd;
    }
    return text;
}

inline std::string Section(const std::string& name, const std::string& content)
{
    return "0 SECTION|2 " + name + "|" + content + (content.empty() ? "" : "|") + "0 ENDSEC|";
}

/// A whole drawing with these layers, blocks and entities, each in the compact form of Groups.
inline std::string Drawing(const std::string& entities, const std::string& layers = "",
                           const std::string& blocks = "")
{
    return Groups(Section("HEADER", "9 $ACADVER|1 AC1015") + Section("TABLES", layers)
                  + Section("BLOCKS", blocks) + Section("ENTITIES", entities) + "0 EOF");
}
