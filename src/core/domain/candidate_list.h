#pragma once

#include "core/domain/cleanup_candidate.h"
#include "core/domain/record_list.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace kestavon {

/// The cleanup suggestions of one scan, in record order: five bytes each beside the records they
/// point at, because a home can hold a million cache files. Immutable: share it freely.
class CandidateList {
public:
    CandidateList() = default;
    explicit CandidateList(std::shared_ptr<const RecordList> records);

    /// Adds the record at `position`; only while the list is being made.
    void append(std::uint32_t position, std::string_view reason);

    /// This list less the candidates at `positions` (ascending). The others keep their ids.
    std::shared_ptr<const CandidateList> without(std::span<const std::uint32_t> positions) const;

    /// This list and, at their old places, the candidates of `earlier` at `positions` (ascending);
    /// `earlier` is a list that this one was cut from. Null when it is not.
    std::shared_ptr<const CandidateList> joinedWith(
        const CandidateList& earlier, std::span<const std::uint32_t> positions) const;

    std::size_t size() const { return m_positions.size(); }
    bool empty() const { return m_positions.empty(); }

    CleanupCandidate operator[](std::size_t i) const;
    Uuid id(std::size_t i) const { return m_ids.at(ordinal(i)); }
    /// The position of the candidate with this id; nothing when it is not in this list.
    std::optional<std::size_t> positionOf(const Uuid& id) const;
    std::string_view reason(std::size_t i) const { return m_reasons[m_reasonOf[i]]; }
    std::int64_t estimatedBytes(std::size_t i) const { return m_records->fileSize(m_positions[i]); }
    /// The record's position in `records()`.
    std::uint32_t recordPosition(std::size_t i) const { return m_positions[i]; }
    const std::shared_ptr<const RecordList>& records() const { return m_records; }
    const IdSpace& ids() const { return m_ids; }
    /// The ids of the list are those of some ordinals below this one.
    std::size_t ordinalLimit() const { return m_ordinalLimit; }
    std::uint64_t ordinal(std::size_t i) const { return m_ordinals.empty() ? i : m_ordinals[i]; }

private:
    std::shared_ptr<const RecordList> m_records;
    IdSpace m_ids;
    std::vector<std::uint32_t> m_positions;
    std::vector<std::uint8_t> m_reasonOf;
    std::vector<std::string> m_reasons;
    std::vector<std::uint32_t> m_ordinals; ///< empty while nothing was cut from the list
    std::size_t m_ordinalLimit = 0;
};

/// A set of the ids of one `CandidateList`, kept as one bit a candidate. It does not keep the list
/// alive: ids outlive what they named.
class CandidateSelection {
public:
    CandidateSelection() = default;
    /// No id of the list, or every one.
    static CandidateSelection none(const CandidateList& list) { return {list, false}; }
    static CandidateSelection all(const CandidateList& list) { return {list, true}; }

    bool contains(const Uuid& id) const;
    /// Whether the candidate at this position of a list with the same ids is in the set.
    bool containsAt(const CandidateList& list, std::size_t i) const
    {
        const auto bit = list.ordinal(i);
        return bit < m_selected.size() && m_selected[bit];
    }
    /// Adds or drops an id; an id that is not of the list changes nothing.
    void insert(const Uuid& id) { set(id, true); }
    void erase(const Uuid& id) { set(id, false); }
    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }

private:
    CandidateSelection(const CandidateList& list, bool selected);
    std::optional<std::size_t> positionOf(const Uuid& id) const;
    void set(const Uuid& id, bool selected);

    IdSpace m_ids;
    std::vector<bool> m_selected;
    std::size_t m_size = 0;
};

} // namespace kestavon
