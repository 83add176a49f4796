#include "core/domain/candidate_list.h"

#include "core/domain/cut_list.h"

#include <algorithm>

namespace kestavon {

CandidateList::CandidateList(std::shared_ptr<const RecordList> records)
    : m_records(std::move(records))
    , m_ids(IdSpace::random())
{
}

void CandidateList::append(std::uint32_t position, std::string_view reason)
{
    auto known = std::ranges::find(m_reasons, reason);
    if (known == m_reasons.end())
        known = m_reasons.insert(m_reasons.end(), std::string(reason));
    m_positions.push_back(position);
    m_ordinalLimit = m_positions.size();
    m_reasonOf.push_back(static_cast<std::uint8_t>(known - m_reasons.begin()));
}

std::shared_ptr<const CandidateList> CandidateList::without(
    std::span<const std::uint32_t> positions) const
{
    auto list = std::make_shared<CandidateList>();
    list->m_records = m_records;
    list->m_ids = m_ids;
    list->m_reasons = m_reasons;
    list->m_ordinalLimit = m_ordinalLimit;
    const auto kept = size() - positions.size();
    list->m_positions.reserve(kept);
    list->m_reasonOf.reserve(kept);
    list->m_ordinals.reserve(kept);
    auto nextRemoved = positions.begin();
    for (std::size_t i = 0; i < size(); ++i) {
        if (nextRemoved != positions.end() && *nextRemoved == i) {
            ++nextRemoved;
            continue;
        }
        list->m_positions.push_back(m_positions[i]);
        list->m_reasonOf.push_back(m_reasonOf[i]);
        list->m_ordinals.push_back(static_cast<std::uint32_t>(ordinal(i)));
    }
    return list;
}

std::shared_ptr<const CandidateList> CandidateList::joinedWith(
    const CandidateList& earlier, std::span<const std::uint32_t> positions) const
{
    if (earlier.m_ids != m_ids)
        return nullptr;
    const auto leftOut = positionsOutside(earlier, *this, positions);
    return leftOut ? earlier.without(*leftOut) : nullptr;
}

CleanupCandidate CandidateList::operator[](std::size_t i) const
{
    return {.id = id(i),
        .record = (*m_records)[m_positions[i]],
        .reason = std::string(reason(i)),
        .estimatedBytes = estimatedBytes(i)};
}

std::optional<std::size_t> CandidateList::positionOf(const Uuid& id) const
{
    const auto wanted = m_ids.ordinalOf(id);
    if (!wanted)
        return std::nullopt;
    if (m_ordinals.empty())
        return *wanted < size() ? std::optional<std::size_t>(*wanted) : std::nullopt;
    const auto found = std::ranges::lower_bound(m_ordinals, *wanted);
    if (found == m_ordinals.end() || *found != *wanted)
        return std::nullopt;
    return static_cast<std::size_t>(found - m_ordinals.begin());
}

CandidateSelection::CandidateSelection(const CandidateList& list, bool selected)
    : m_ids(list.ids())
    , m_selected(list.ordinalLimit(), false)
{
    for (std::size_t i = 0; selected && i < list.size(); ++i)
        m_selected[list.ordinal(i)] = true;
    m_size = selected ? list.size() : 0;
}

std::optional<std::size_t> CandidateSelection::positionOf(const Uuid& id) const
{
    const auto ordinal = m_ids.ordinalOf(id);
    if (!ordinal || *ordinal >= m_selected.size())
        return std::nullopt;
    return static_cast<std::size_t>(*ordinal);
}

bool CandidateSelection::contains(const Uuid& id) const
{
    const auto position = positionOf(id);
    return position && m_selected[*position];
}

void CandidateSelection::set(const Uuid& id, bool selected)
{
    const auto position = positionOf(id);
    if (!position || m_selected[*position] == selected)
        return;
    m_selected[*position] = selected;
    if (selected)
        ++m_size;
    else
        --m_size;
}

} // namespace kestavon
