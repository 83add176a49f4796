#include "core/model/record_selection.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <span>
#include <utility>

namespace kestavon {

namespace {

/// A sum that cannot wrap: the halves of the numbers are added up on their own.
class SizeSum {
public:
    void add(std::int64_t size)
    {
        m_high += size >> halfBits;
        m_low += size & lowHalf;
    }

    /// The sum, held at the limits of 64 bits.
    std::int64_t value() const
    {
        const auto high = m_high + (m_low >> halfBits);
        if (high > std::numeric_limits<std::int64_t>::max() >> halfBits)
            return std::numeric_limits<std::int64_t>::max();
        if (high < std::numeric_limits<std::int64_t>::min() >> halfBits)
            return std::numeric_limits<std::int64_t>::min();
        return (high << halfBits) + (m_low & lowHalf);
    }

private:
    static constexpr int halfBits = 32;
    static constexpr std::int64_t lowHalf = (std::int64_t{1} << halfBits) - 1;

    std::int64_t m_high = 0;
    std::int64_t m_low = 0;
};

} // namespace

void RecordSelection::setView(std::shared_ptr<const RecordView> view)
{
    if (view->records() != m_view->records()) {
        m_selected = RecordSet(view->records()->size());
        m_current.reset();
        m_anchor.reset();
    }
    m_view = std::move(view);
    countShown();
}

void RecordSelection::click(std::size_t row, Modifiers modifiers)
{
    if (row >= m_view->rowCount())
        return;
    const auto position = m_view->positionAt(row);
    if (modifiers.extends) {
        // Without an anchor in sight a range of one: never more than was pointed at.
        const auto anchor = rowOf(m_anchor).value_or(rowOf(m_current).value_or(row));
        m_anchor = m_view->positionAt(anchor);
        if (!modifiers.keeps)
            m_selected.clear();
        selectRange(anchor, row);
    } else if (modifiers.keeps) {
        m_selected.assign(position, !m_selected.contains(position));
        m_anchor = position;
    } else {
        m_selected.clear();
        m_selected.insert(position);
        m_anchor = position;
    }
    m_current = position;
    countShown();
}

void RecordSelection::move(std::int64_t delta, Modifiers modifiers)
{
    const auto rows = static_cast<std::int64_t>(m_view->rowCount());
    if (rows == 0)
        return;
    const auto outside = delta > 0 ? -1 : rows;
    const auto current = currentRow();
    const auto from = current ? static_cast<std::int64_t>(*current) : outside;
    // Held to the table's length first: the sum must not overflow.
    const auto to = std::clamp<std::int64_t>(
        from + std::clamp<std::int64_t>(delta, -rows, rows), 0, rows - 1);
    const auto row = static_cast<std::size_t>(to);
    if (modifiers.keeps && !modifiers.extends)
        m_current = m_view->positionAt(row);
    else
        click(row, modifiers);
}

void RecordSelection::toggleCurrent()
{
    if (const auto row = currentRow())
        click(*row, {.extends = false, .keeps = true});
}

void RecordSelection::selectAll()
{
    m_selected |= m_view->shown();
    countShown();
}

void RecordSelection::clear()
{
    m_selected.clear();
    m_anchor.reset();
    countShown();
}

bool RecordSelection::isSelected(std::size_t row) const
{
    return row < m_view->rowCount() && m_selected.contains(m_view->positionAt(row));
}

std::vector<std::uint32_t> RecordSelection::selectedPositions() const
{
    std::vector<std::uint32_t> positions;
    positions.reserve(m_count);
    const auto& shown = m_view->shown();
    m_selected.forEach([&](std::size_t position) {
        if (shown.contains(position))
            positions.push_back(static_cast<std::uint32_t>(position));
    });
    return positions;
}

std::optional<std::size_t> RecordSelection::rowOf(std::optional<std::uint32_t> position) const
{
    return position ? m_view->rowOf(*position) : std::nullopt;
}

void RecordSelection::selectRange(std::size_t from, std::size_t to)
{
    const auto [first, last] = std::minmax(from, to);
    for (auto row = first; row <= last; ++row)
        m_selected.insert(m_view->positionAt(row));
}

// Counted from the sets every time: a handful of selected records among a million costs some ten
// microseconds, and no running total can go astray.
void RecordSelection::countShown()
{
    const auto selected = std::as_const(m_selected).words();
    const auto shown = m_view->shown().words();
    const auto sizes = m_view->records()->sizes();
    m_count = 0;
    SizeSum sum;
    for (std::size_t w = 0; w < selected.size(); ++w) {
        auto bits = selected[w] & shown[w];
        m_count += static_cast<std::size_t>(std::popcount(bits));
        const auto first = w * RecordSet::wordBits;
        if (bits == ~std::uint64_t{0}) {
            for (const auto size : sizes.subspan(first, RecordSet::wordBits))
                sum.add(size);
            continue;
        }
        for (; bits != 0; bits &= bits - 1)
            sum.add(sizes[first + static_cast<std::size_t>(std::countr_zero(bits))]);
    }
    m_bytes = sum.value();
}

} // namespace kestavon
