#pragma once

#include "core/domain/record_list.h"
#include "storage/record_store.h"

#include <cstdint>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// Puts what the threads of a walk found into one table in depth-first order: a folder, all that
/// lies below it, then its next sibling; siblings in byte order. The folders get new numbers in the
/// same order, so that equal trees give equal tables. Empties `stores` on the way, which keeps both
/// from standing in memory at full size. Throws `Cancelled` once `stop` is requested, and
/// std::bad_alloc.
RecordColumns stitchDepthFirst(const std::string& root, std::vector<RecordStore>& stores,
    std::uint32_t folderCount, unsigned threads, const std::stop_token& stop);

} // namespace kestavon
