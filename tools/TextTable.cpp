#include "TextTable.h"

#include <algorithm>

namespace {

/// Characters of UTF-8 text, each taken as one column wide.
std::size_t Width(const std::string& cell)
{
    return static_cast<std::size_t>(std::count_if(
        cell.begin(), cell.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

} // namespace

std::string TextTable::Text(const std::string& indent) const
{
    std::vector<std::size_t> widths(m_Columns.size(), 0);
    for (const auto& row : m_Rows)
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Width(row[i]));

    std::string text;
    for (const auto& row : m_Rows) {
        std::string line = indent;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string padding(widths[i] - Width(row[i]), ' ');
            if (i > 0) line += "  ";
            line += m_Columns[i] == RIGHT ? padding + row[i] : row[i] + padding;
        }
        line.resize(line.find_last_not_of(' ') + 1);
        text += line + '\n';
    }
    return text;
}
