#include "ui/duplicates/duplicate_layout.h"

#include <algorithm>
#include <cmath>

namespace kestavon {

namespace {

constexpr double headingSpan
    = DuplicateLayout::cardGap + DuplicateLayout::headingHeight + DuplicateLayout::panelPadding;
constexpr double groupSpan
    = headingSpan + DuplicateLayout::panelPadding + DuplicateLayout::panelMargin;

/// The last of `count` groups that does not begin after `value`; 0 when all do.
template <class Begin, class Value>
std::size_t groupHolding(std::size_t count, Begin begin, Value value)
{
    std::size_t first = 0; // does not begin after it, or is 0
    for (auto length = count; length > 1;) {
        const auto half = length / 2;
        if (begin(first + half) <= value) {
            first += half;
            length -= half;
        } else {
            length = half;
        }
    }
    return first;
}

} // namespace

DuplicateLayout::Row DuplicateLayout::row(std::size_t row) const
{
    const auto group = groupHolding(
        m_list.size(), [this](std::size_t i) { return headingRow(i); }, row);
    const auto inGroup = row - headingRow(group);
    return {.group = group, .member = inGroup == 0 ? std::nullopt : std::optional(inGroup - 1)};
}

double DuplicateLayout::rowTop(std::size_t row) const
{
    if (m_list.empty())
        return 0;
    if (row >= rowCount())
        return groupTop(m_list.size()) + endMargin;
    const auto [group, member] = this->row(row);
    const auto top = groupTop(group);
    return member ? top + headingSpan + fileHeight * static_cast<double>(*member) : top;
}

std::size_t DuplicateLayout::rowAt(double position) const
{
    if (m_list.empty())
        return 0;
    const auto group = groupAt(position);
    const auto below = position - groupTop(group) - headingSpan;
    if (below < 0)
        return headingRow(group);
    const auto member = static_cast<std::size_t>(std::floor(below / fileHeight));
    return headingRow(group) + 1 + std::min(member, m_list.members(group).size() - 1);
}

double DuplicateLayout::groupTop(std::size_t group) const
{
    return groupSpan * static_cast<double>(group)
        + fileHeight * static_cast<double>(m_list.membersBefore(group));
}

std::size_t DuplicateLayout::groupAt(double position) const
{
    return groupHolding(
        m_list.size(), [this](std::size_t i) { return groupTop(i); }, position);
}

} // namespace kestavon
