#pragma once

#include "duplicates/duplicate_search.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace kestavon {

/// The bytes that are wanted of a candidate, and where they go.
struct PlannedRead {
    std::uint32_t file = 0; ///< the candidate's number
    std::int64_t offset = 0; ///< where `bytes` begin in the file
    std::span<char> bytes;
    std::span<char> end = {}; ///< the file's last bytes, or none
    bool isRead = false; ///< both are there
};

/// Does the reads, one after the other; what the disk has to fetch is asked for meanwhile, up to
/// `openFiles` files at a time. A piece that reaches the end of its file is followed by room for
/// one more byte, to see that the file does end there. Files that cannot be read leave the search,
/// those that are not what they were are hashed later. Returns early when the search is stopped.
void readBatch(DuplicateSearch& search, std::span<PlannedRead> reads, std::size_t openFiles,
    ProcessorTurns::Turn& turn);

} // namespace kestavon
