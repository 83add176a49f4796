#pragma once

#include "core/domain/system_state.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace kestavon {

/// How many applications the Performance screen lists.
std::size_t consumerCount(const std::vector<AppProcessInfo>& processes);

/// The part of all counted memory that a process takes, 0 to 1. Without a snapshot, or with one
/// that counts nothing, any byte is all there is.
double memoryShare(std::uint64_t bytes, const std::optional<MemorySnapshot>& memory);

/// Whether a process takes so much that its figure stands out.
bool isLargeShare(double share);

} // namespace kestavon
