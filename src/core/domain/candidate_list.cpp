#include "core/domain/candidate_list.h"

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
    m_reasonOf.push_back(static_cast<std::uint8_t>(known - m_reasons.begin()));
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
    const auto ordinal = m_ids.ordinalOf(id);
    if (!ordinal || *ordinal >= size())
        return std::nullopt;
    return static_cast<std::size_t>(*ordinal);
}

CandidateSelection::CandidateSelection(const CandidateList& list, bool selected)
    : m_ids(list.ids())
    , m_selected(list.size(), selected)
    , m_size(selected ? list.size() : 0)
{
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
