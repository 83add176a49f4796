#include "core/model/record_view.h"

#include "concurrency/cancelled.h"
#include "core/model/record_queries.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace kestavon {

namespace {

constexpr std::size_t largestFileCount = 100;

/// How many rows are looked at between two looks at the stop token.
constexpr std::size_t stretch = 65'536;

/// The rows among `rows` whose record is in `kept`, in their order.
Column<std::uint32_t> restricted(std::span<const std::uint32_t> rows, const RecordSet& kept,
    std::size_t count, const std::stop_token& stop)
{
    Column<std::uint32_t> result(count);
    std::size_t next = 0;
    for (std::size_t first = 0; first < rows.size() && next < count; first += stretch) {
        if (stop.stop_requested())
            throw Cancelled{};
        const auto last = std::min(first + stretch, rows.size());
        // Whether a row is kept is as good as random, so it is counted, not branched on. A row that
        // is not kept writes to the place of the next one that is, which exists until all are done.
        for (auto row = first; row < last && next < count; ++row) {
            result[next] = rows[row];
            next += kept.contains(rows[row]) ? 1 : 0;
        }
    }
    return result;
}

} // namespace

RecordView::RecordView()
    : m_records(std::make_shared<const RecordList>())
    , m_rows(std::make_shared<const Column<std::uint32_t>>())
{
}

RecordView::RecordView(std::shared_ptr<const RecordList> records, Rows rows, RecordSet shown)
    : m_records(std::move(records))
    , m_rows(std::move(rows))
    , m_shown(std::move(shown))
{
}

std::optional<std::size_t> RecordView::rowOf(std::uint32_t position) const
{
    if (position >= m_shown.size() || !m_shown.contains(position))
        return std::nullopt;
    const auto size = m_records->fileSize(position);
    const auto standsBefore = [this, size, position](std::uint32_t other) {
        const auto otherSize = m_records->fileSize(other);
        return otherSize != size ? otherSize > size : other < position;
    };
    const auto rows = m_rows->span();
    return static_cast<std::size_t>(
        std::ranges::partition_point(rows, standsBefore) - rows.begin());
}

std::int64_t RecordView::largestSize() const
{
    return rowCount() == 0 ? 0 : m_records->fileSize(positionAt(0));
}

RecordViews::RecordViews(std::shared_ptr<const RecordList> records, Contents contents)
    : m_records(std::move(records))
    , m_contents(contents)
{
}

std::shared_ptr<const RecordView> RecordViews::view(
    std::string_view filter, const std::stop_token& stop)
{
    const std::lock_guard lock(m_mutex);
    const auto& everything = unfiltered(stop);
    if (filter.empty())
        return everything;
    if (!m_filter)
        m_filter.emplace(m_records, stop);
    auto matches = m_filter->matches(filter, m_lastMatches ? &*m_lastMatches : nullptr, stop);
    auto shown = matches.records;
    auto count = matches.count;
    if (m_contents != Contents::everything) {
        const auto words = shown.words();
        for (std::size_t w = 0; w < words.size(); ++w)
            words[w] &= everything->shown().words()[w];
        count = shown.count();
    }
    m_lastMatches = std::move(matches);
    auto rows = std::make_shared<const Column<std::uint32_t>>(
        restricted(everything->rows(), shown, count, stop));
    return std::make_shared<const RecordView>(m_records, std::move(rows), std::move(shown));
}

const std::shared_ptr<const RecordView>& RecordViews::unfiltered(const std::stop_token& stop)
{
    if (m_unfiltered)
        return m_unfiltered;
    if (m_contents == Contents::everything) {
        auto rows = std::make_shared<const Column<std::uint32_t>>(largestFirst(*m_records, stop));
        m_unfiltered = std::make_shared<const RecordView>(
            m_records, std::move(rows), RecordSet::all(m_records->size()));
        return m_unfiltered;
    }
    const auto files = largestFiles(*m_records, largestFileCount);
    Column<std::uint32_t> rows(files.size());
    std::ranges::copy(files, rows.data());
    RecordSet shown(m_records->size());
    for (const auto position : files)
        shown.insert(position);
    m_unfiltered = std::make_shared<const RecordView>(m_records,
        std::make_shared<const Column<std::uint32_t>>(std::move(rows)), std::move(shown));
    return m_unfiltered;
}

} // namespace kestavon
