#pragma once

#include "duplicates/duplicate_search.h"

#include <memory>
#include <vector>

namespace kestavon {

/// Settles the sets of equally large files that are too large to be held in memory, with several
/// threads: first by a sample of each, then by reading those that are still alike side by side.
/// Throws `Cancelled`.
void compareLargeFiles(const std::shared_ptr<DuplicateSearch>& search,
    const std::vector<CandidateSet>& sets, unsigned threads, const std::stop_token& stop);

} // namespace kestavon
