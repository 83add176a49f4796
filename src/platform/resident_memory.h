#pragma once

#include <cstdint>
#include <optional>

namespace kestavon {

/// Resident memory of this process, in bytes; nothing when the system does not tell. Any thread.
/// Reads field 2 of /proc/self/statm, see proc(5).
std::optional<std::uint64_t> residentMemoryBytes();

} // namespace kestavon
