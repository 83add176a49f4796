#pragma once

#include "core/model/work_meter.h"
#include "safearea/quarantine_store.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace kestavon {

/// What came of moving candidates to the Safe Area.
struct Holding {
    FileResult<std::vector<QuarantineItem>> items = std::vector<QuarantineItem>();
    /// How many of the candidates had their turn: all, unless it was stopped. The one that was
    /// being moved by then is not among them.
    std::size_t tried = 0;
};

/// Moves the candidates, which a walk of `walkedFolder` found, and tells `work` how far it is. On
/// the Safe Area's queue.
Holding holdCandidates(QuarantineStore& store, std::span<const CleanupCandidate> candidates,
    const std::string& walkedFolder, const std::shared_ptr<WorkMeter>& work);

} // namespace kestavon
