#pragma once

#include "core/domain/duplicate_list.h"
#include "core/model/removal_worker.h"
#include "duplicates/copy_check.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace kestavon {

/// Which files of each group stay and which go when duplicates are merged: the newest stays, and of
/// equally new ones the first. Files without a date are the oldest. Immutable; any thread.
class DuplicateMerge {
public:
    DuplicateMerge(std::shared_ptr<const DuplicateList> duplicates, CopyProof proof);

    /// The copies that go, group after group.
    const std::vector<RemovalRequest>& requests() const { return m_requests; }
    /// The same as positions in the list's records, ascending.
    std::vector<std::uint32_t> positions() const;

    /// `remove`, but that it gets only copies that were looked at just before, and can go. A copy
    /// stays when the kept file of its group is gone or holds something else by now, when it does
    /// so itself, and when the two are names of one file. Those that go for good are looked at one
    /// by one. The merge must outlive it; reads files.
    RemovalWorker::Remove afterLooking(RemovalWorker::Remove remove) const;

private:
    struct Copy {
        std::uint32_t group;
        std::uint32_t position;
        DuplicateList::Member kept;
        FileIdentity identity;
    };

    std::optional<FileError> objection(const std::string& path) const;

    std::shared_ptr<const DuplicateList> m_duplicates;
    CopyProof m_proof;
    std::vector<RemovalRequest> m_requests;
    std::unordered_map<std::string, Copy> m_copies; ///< by path
};

} // namespace kestavon
