#pragma once

#include "core/domain/record_list.h"

#include <cstddef>
#include <cstdint>
#include <stop_token>
#include <vector>

namespace kestavon {

/// The positions of all records by size, largest first; equal sizes in record order. Takes 16 bytes
/// a record beside the result while it runs. Throws `Cancelled` once `stop` is requested.
Column<std::uint32_t> largestFirst(const RecordList& records, const std::stop_token& stop = {});

/// The positions of the `limit` largest records that are not folders, in the order of
/// `largestFirst`; all of them when there are fewer. One pass over the sizes.
std::vector<std::uint32_t> largestFiles(const RecordList& records, std::size_t limit);

} // namespace kestavon
