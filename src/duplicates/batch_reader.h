#pragma once

#include "duplicates/duplicate_search.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace kestavon {

/// The first and the last bytes that are wanted of a candidate, and where they go.
struct PlannedRead {
    std::uint32_t file = 0; ///< the candidate's number
    std::span<char> start;
    std::span<char> end = {};
    bool isRead = false; ///< both are there
};

/// Does the reads, one after the other; what the disk has to fetch is asked for meanwhile, up to
/// `openFiles` files at a time. Files that cannot be read leave the search. Returns early when the
/// search is stopped.
void readBatch(DuplicateSearch& search, std::span<PlannedRead> reads, std::size_t openFiles);

} // namespace kestavon
