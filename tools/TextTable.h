#pragma once

#include <string>
#include <vector>

/// Rows of text in aligned columns, two blanks between them.
class TextTable {
public:
    enum ALIGNMENT { LEFT, RIGHT };

    explicit TextTable(std::vector<ALIGNMENT> columns) : m_Columns(std::move(columns)) {}

    /// One cell for each column, in UTF-8.
    void Add(std::vector<std::string> cells) { m_Rows.push_back(std::move(cells)); }
    /// All rows, each with the indent before it and a line feed behind it, no blanks at its end.
    std::string Text(const std::string& indent) const;

private:
    std::vector<ALIGNMENT> m_Columns;
    std::vector<std::vector<std::string>> m_Rows;
};
