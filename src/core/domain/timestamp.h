#pragma once

#include <chrono>

namespace kestavon {

/// A moment, in nanoseconds since 1970-01-01 00:00:00 UTC; negative before. File systems can name
/// moments beyond what 64 bits of nanoseconds reach (years 1677 to 2262): those are held at the
/// edge.
using Timestamp = std::chrono::sys_time<std::chrono::nanoseconds>;

} // namespace kestavon
