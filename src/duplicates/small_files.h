#pragma once

#include "duplicates/duplicate_search.h"

#include <memory>
#include <vector>

namespace kestavon {

/// Files up to this size are read whole, many at a time, and compared in memory.
inline constexpr std::int64_t largestSmallFile = 64 * 1024;

/// Settles the sets of equally large small files with several threads. Throws `Cancelled`.
void compareSmallFiles(const std::shared_ptr<DuplicateSearch>& search,
    const std::vector<CandidateSet>& sets, unsigned threads, const std::stop_token& stop);

} // namespace kestavon
