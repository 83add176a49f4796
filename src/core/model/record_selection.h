#pragma once

#include "core/model/record_set.h"
#include "core/model/record_view.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace kestavon {

/// The selected records of a table and how clicks and keys change them.
///
/// Records stay selected while a filter hides them, but count, sum and `selectedPositions` are of
/// the shown ones only. The current record is the one the keys move from; the anchor is where a
/// range starts. Every operation takes at most a few nanoseconds a row that it selects. Not
/// thread-safe.
class RecordSelection {
public:
    /// Which keys are held down with a click or a move.
    struct Modifiers {
        bool extends = false; ///< Shift: select from the anchor to the row
        bool keeps = false; ///< Ctrl: leave the rest of the selection as it is
    };

    /// Shows `view`. Another list of records empties the selection; another view of the same list
    /// only counts it anew.
    void setView(std::shared_ptr<const RecordView> view);
    const std::shared_ptr<const RecordView>& view() const { return m_view; }

    /// Selects the row alone; with `keeps` turns it on or off; with `extends` selects the range
    /// from the anchor, and nothing else unless `keeps`. Rows that do not exist are ignored.
    void click(std::size_t row, Modifiers modifiers);
    /// Moves the current row by `delta` rows, stopping at the first and last one, and clicks there;
    /// with `keeps` alone it only moves. Without a current row it starts outside the table.
    void move(std::int64_t delta, Modifiers modifiers);
    /// Turns the current row on or off.
    void toggleCurrent();
    /// Adds every row.
    void selectAll();
    /// Empties the selection, hidden records too.
    void clear();

    bool isSelected(std::size_t row) const;
    /// The row the keys move from; nothing when there is none or the filter hides it.
    std::optional<std::size_t> currentRow() const { return rowOf(m_current); }

    /// Whether nothing is selected, in sight or hidden.
    bool empty() const { return m_count == 0 && m_selected.empty(); }
    /// How many rows are selected.
    std::size_t count() const { return m_count; }
    /// The selected rows' sizes, in bytes; the sum stops at the largest 64-bit number.
    std::int64_t bytes() const { return m_bytes; }
    /// The records of the selected rows, in the order of the list: a folder before what it holds.
    std::vector<std::uint32_t> selectedPositions() const;

private:
    std::optional<std::size_t> rowOf(std::optional<std::uint32_t> position) const;
    void selectRange(std::size_t from, std::size_t to);
    void countShown();

    std::shared_ptr<const RecordView> m_view = std::make_shared<const RecordView>();
    RecordSet m_selected; ///< over the positions of the view's records
    std::optional<std::uint32_t> m_current; ///< a position
    std::optional<std::uint32_t> m_anchor; ///< a position
    std::size_t m_count = 0;
    std::int64_t m_bytes = 0;
};

} // namespace kestavon
