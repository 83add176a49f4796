#include "cli/text_table.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace kestavon {

namespace {

/// Columns that a text takes, one a character.
std::size_t widthOf(std::string_view text)
{
    return static_cast<std::size_t>(std::ranges::count_if(
        text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

} // namespace

TextTable::TextTable(std::vector<Align> columns)
    : m_columns(std::move(columns))
{
}

void TextTable::addRow(std::vector<std::string> texts)
{
    m_rows.push_back(std::move(texts));
}

void TextTable::print(std::ostream& out) const
{
    std::vector<std::size_t> widths(m_columns.size());
    for (const auto& row : m_rows) {
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], widthOf(row[i]));
    }
    for (const auto& row : m_rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string filling(widths[i] - widthOf(row[i]), ' ');
            line += i == 0 ? "" : "  ";
            line += m_columns[i] == Align::right ? filling + row[i] : row[i] + filling;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << '\n';
    }
}

} // namespace kestavon
