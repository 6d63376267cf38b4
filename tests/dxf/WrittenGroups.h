#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "dxf/DXFFile.h"
#include "dxf/TempFile.h"
#include "model/DXF.h"
#include "model/DXFText.h"

/// Groups as "code value" rows, from a file by the rule of the format alone, and from tables typed by hand.
using Rows = std::vector<std::string>;

/// A line of the code, a line of the value, each closed by CR LF and without other control characters.
inline Rows GroupsOf(std::string_view bytes)
{
    Rows lines;
    while (!bytes.empty()) {
        const std::size_t end = bytes.find("\r\n");
        if (end == std::string_view::npos) {
            ADD_FAILURE() << "the last line is not closed";
            break;
        }
        lines.emplace_back(bytes.substr(0, end));
        for (const char c : lines.back()) EXPECT_FALSE(c >= 0 && c < ' ' && c != '\t') << lines.back();
        EXPECT_LE(lines.back().size(), 511U);
        bytes.remove_prefix(end + 2);
    }
    EXPECT_EQ(lines.size() % 2, 0U);
    Rows groups;
    for (std::size_t i = 0; i + 1 < lines.size(); i += 2) groups.push_back(lines[i] + ' ' + lines[i + 1]);
    return groups;
}

/// Rows of a table: parted by "|" or line feeds, blanks before them dropped. A "#" for a value stands for the
/// next of a sequence of handles.
inline Rows Table(std::string_view text, int firstHandle = 0x7d1)
{
    Rows rows;
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("|\n");
        std::string_view row = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (row.find_first_not_of(' ') == std::string_view::npos) continue;
        row.remove_prefix(row.find_first_not_of(' '));
        std::string full(row);
        if (full.find(' ') == std::string::npos) full += ' ';
        if (full.ends_with(" #")) {
            char handle[9];
            std::snprintf(handle, sizeof handle, "%x", static_cast<unsigned>(firstHandle++));
            full.replace(full.size() - 1, 1, handle);
        }
        rows.push_back(full);
    }
    return rows;
}

inline Rows Joined(Rows first, const Rows& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// The rows from the one at `first`, behind it, up to the next object.
inline Rows Object(const Rows& groups, std::size_t first)
{
    Rows object;
    for (std::size_t i = first + 1; i < groups.size() && !groups[i].starts_with("0 "); ++i)
        object.push_back(groups[i]);
    return object;
}

/// All objects of a name, in order; the name's own row dropped.
inline std::vector<Rows> Objects(const Rows& groups, const std::string& name)
{
    std::vector<Rows> objects;
    for (std::size_t i = 0; i < groups.size(); ++i)
        if (groups[i] == "0 " + name) objects.push_back(Object(groups, i));
    return objects;
}

/// Values of a code among rows, in order.
inline Rows Values(const Rows& groups, int code)
{
    const std::string start = std::to_string(code) + ' ';
    Rows values;
    for (const std::string& group : groups)
        if (group.starts_with(start)) values.push_back(group.substr(start.size()));
    return values;
}

/// Writes drawings into a file of its own and with a font table of its own.
class DXFWriteTest : public testing::Test {
protected:
    DXFWriteTest() { DXFText::s_FontTable.clear(); }
    ~DXFWriteTest() override { DXFText::s_FontTable = m_Fonts; }

    std::string Bytes() const { return m_File.Content(); }
    Rows Write(int exportMode = 0)
    {
        const ErrorString result = m_Drawing.Write(m_File.Name(), m_KeepGoing, exportMode);
        EXPECT_TRUE(result) << testing::PrintToString(result.Text());
        return GroupsOf(Bytes());
    }
    /// The drawing as it comes back.
    DXF& ReadBack()
    {
        const ErrorString result = m_Back.Read(m_File.Name(), m_KeepGoing, true);
        EXPECT_TRUE(result) << testing::PrintToString(result.Text());
        return m_Back;
    }
    template <class T, class... Args>
    T* Add(Args&&... args)
    {
        T* entity = new T(std::forward<Args>(args)...);
        m_Drawing.Add(entity);
        return entity;
    }

    const std::vector<std::wstring> m_Fonts = DXFText::s_FontTable;
    const TempFile m_File;
    std::atomic<bool> m_KeepGoing{true};
    DXF m_Drawing;
    DXF m_Back;
};
