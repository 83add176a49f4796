#pragma once

#include "core/domain/action_kind.h"
#include "core/domain/duplicate_list.h"
#include "core/model/copy_removal.h"
#include "core/model/removal_worker.h"
#include "core/model/work_meter.h"
#include "platform/platform.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace kestavon {

/// Which files of each group stay and which go when duplicates are merged: the newest stays, and of
/// equally new ones the first. Files without a date are the oldest. Immutable; any thread.
class DuplicateMerge {
public:
    /// What a merge did; of one that failed half-way, what it did until then, up to the last few
    /// hundred copies.
    struct Report {
        RemovalReport removed;
        std::string error; ///< in words, for a person; empty unless it failed
    };

    explicit DuplicateMerge(std::shared_ptr<const DuplicateList> duplicates);

    /// The first `count` of the copies that go, in the order of their turn, as positions in the
    /// list's records, ascending.
    std::vector<std::uint32_t> positions(std::size_t count = SIZE_MAX) const;

    /// Trashes or deletes the copies, group after group, each only if it is spare at that moment:
    /// see `CopyRemoval`. Those that are protected, changed or cannot be removed stay and are not
    /// counted. A requested stop leaves the rest where it is. Throws nothing; any thread but the
    /// main one.
    Report run(const Platform& platform, ActionKind action, const WorkWatch& watch = {}) const;

private:
    /// The members of a group that matter for one copy.
    struct Copy {
        std::uint32_t group;
        std::uint32_t kept;
        std::uint32_t copy;
    };

    KnownFile fileOf(const DuplicateList::Member& member) const;
    RemovalReport remove(std::span<const Copy> copies, const Platform& platform, ActionKind action,
        const WorkWatch& watch) const;

    std::shared_ptr<const DuplicateList> m_duplicates;
    std::vector<Copy> m_copies; ///< group after group
};

} // namespace kestavon
