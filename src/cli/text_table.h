#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace kestavon {

/// Rows of a short list for people, in columns as wide as their longest text.
class TextTable {
public:
    enum class Align { left, right };

    explicit TextTable(std::vector<Align> columns);

    /// As many texts as there are columns, ready to be shown.
    void addRow(std::vector<std::string> texts);
    void print(std::ostream& out) const;
    bool empty() const { return m_rows.empty(); }

private:
    std::vector<Align> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};

} // namespace kestavon
