#pragma once

#include "duplicates/duplicate_search.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace kestavon {

/// Bytes of each large file that its sample counts as done.
inline constexpr std::int64_t sampledBytes = 8192;

/// Splits sets of equally large files, each larger than 64 KiB, by what a few samples of each file
/// hold, read by several threads. Gives the sets that are still alike, none larger than
/// `mostFiles`; what is left alone leaves the search. Reorders the candidates within the sets.
/// Throws `Cancelled`.
std::vector<CandidateSet> alikeBySamples(const std::shared_ptr<DuplicateSearch>& search,
    std::vector<CandidateSet> sets, std::size_t mostFiles, unsigned threads,
    const std::stop_token& stop);

} // namespace kestavon
