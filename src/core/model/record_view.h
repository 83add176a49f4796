#pragma once

#include "core/domain/record_list.h"
#include "core/model/record_filter.h"
#include "core/model/record_set.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <stop_token>
#include <string_view>

namespace kestavon {

/// The records that a table shows, row by row: largest first, equal sizes in record order.
/// Immutable: share it between threads freely.
class RecordView {
public:
    using Rows = std::shared_ptr<const Column<std::uint32_t>>;

    /// A view without rows.
    RecordView();
    /// `rows`: the position of each row's record, in the order above; `shown`: the same positions
    /// as a set.
    RecordView(std::shared_ptr<const RecordList> records, Rows rows, RecordSet shown);

    /// Never null.
    const std::shared_ptr<const RecordList>& records() const { return m_records; }
    std::size_t rowCount() const { return m_rows->size(); }
    /// The position of each row's record in `records()`.
    std::span<const std::uint32_t> rows() const { return m_rows->span(); }
    std::uint32_t positionAt(std::size_t row) const { return (*m_rows)[row]; }
    /// The row of the record at `position`; nothing when it is not shown.
    std::optional<std::size_t> rowOf(std::uint32_t position) const;
    /// The positions of all rows, as a set.
    const RecordSet& shown() const { return m_shown; }
    /// Size of the first row, in bytes; 0 without rows.
    std::int64_t largestSize() const;

private:
    std::shared_ptr<const RecordList> m_records;
    Rows m_rows;
    RecordSet m_shown;
};

/// Makes the views of one record list. It sorts on first use and remembers what helps the next
/// filter text, so that typing on costs less. Any thread; one view at a time.
class RecordViews {
public:
    enum class Contents {
        everything,
        largestFiles, ///< the 100 largest records that are not folders
    };

    RecordViews(std::shared_ptr<const RecordList> records, Contents contents);

    /// The rows whose name or full path contains `filter` (see `RecordFilter`); all rows when it is
    /// empty. Throws `Cancelled` once `stop` is requested; the next call is not affected.
    std::shared_ptr<const RecordView> view(
        std::string_view filter, const std::stop_token& stop = {});

private:
    const std::shared_ptr<const RecordView>& unfiltered(const std::stop_token& stop);

    std::shared_ptr<const RecordList> m_records;
    Contents m_contents;

    std::mutex m_mutex;
    std::shared_ptr<const RecordView> m_unfiltered; // guarded by m_mutex
    std::optional<RecordFilter> m_filter; // guarded by m_mutex
    std::optional<FilterMatches> m_lastMatches; // guarded by m_mutex
};

} // namespace kestavon
