#pragma once

#include "core/domain/duplicate_list.h"

#include <cstddef>
#include <optional>

namespace kestavon {

/// Where groups of duplicates stand below each other, in pixels from the top of the list: each a
/// card with a heading and a line for every file. Headings and files are the list's rows, numbered
/// through.
///
/// Every height is known beforehand, so a place follows from the number of groups and files before
/// it: nothing is kept, and a hundred thousand groups are laid out at once.
class DuplicateLayout {
public:
    static constexpr double cardGap = 10; ///< above every card
    static constexpr double headingHeight = 55; ///< with the card's upper edge
    static constexpr double panelPadding = 4; ///< above and below a card's files
    static constexpr double fileHeight = 28;
    static constexpr double panelMargin = 9; ///< below a card's files, with the card's lower edge
    static constexpr double endMargin = 28; ///< below the last card

    /// What a row is.
    struct Row {
        std::size_t group;
        std::optional<std::size_t> member; ///< of the group; none for its heading

        friend bool operator==(const Row&, const Row&) = default;
    };

    /// `list` must outlive this.
    explicit DuplicateLayout(const DuplicateList& list)
        : m_list(list)
    {
    }

    std::size_t rowCount() const { return headingRow(m_list.size()); }
    std::size_t headingRow(std::size_t group) const { return group + m_list.membersBefore(group); }
    /// The row must exist.
    Row row(std::size_t row) const;

    /// The room above the card counts as the heading's, what lies below the files as the last
    /// one's. The top of `rowCount()` is where everything ends.
    double rowTop(std::size_t row) const;
    /// The row at this distance from the top, or the nearest; 0 in an empty list.
    std::size_t rowAt(double position) const;

    /// Where the gap above the group's card begins; for `size()` of the list, below the last card.
    double groupTop(std::size_t group) const;
    /// The group at this distance from the top, or the nearest; 0 in an empty list.
    std::size_t groupAt(double position) const;

private:
    const DuplicateList& m_list;
};

} // namespace kestavon
