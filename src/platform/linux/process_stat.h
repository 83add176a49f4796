#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kestavon {

/// What /proc/PID/stat tells of a process, see proc(5).
struct ProcessStat {
    std::string name; ///< of its program, which the system cuts after 15 bytes
    char state = 0; ///< "Z": it has ended, and only its status is waited for
    std::uint64_t startedAt = 0; ///< clock ticks since boot
    std::uint64_t residentPages = 0;
};

/// The same from the file's text; nothing for what is not complete.
std::optional<ProcessStat> parseProcessStat(std::string_view text);

/// Reads the file at `path`, relative to the open folder; nothing when it cannot be read.
std::optional<ProcessStat> readProcessStat(int folder, const char* path);

} // namespace kestavon
