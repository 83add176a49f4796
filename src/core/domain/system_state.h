#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kestavon {

/// The machine's memory counters at one moment, in bytes.
struct MemorySnapshot {
    std::uint64_t freeBytes = 0;
    std::uint64_t activeBytes = 0;
    std::uint64_t inactiveBytes = 0;
    std::uint64_t wiredBytes = 0;

    friend bool operator==(const MemorySnapshot&, const MemorySnapshot&) = default;
};

/// One running application; its process id is its identity.
struct AppProcessInfo {
    std::int32_t processIdentifier = 0;
    std::string processName;
    std::optional<std::string> bundleIdentifier;
    std::uint64_t memoryBytes = 0;
    bool isSystemProcess = false;
    std::optional<std::string>
        icon; ///< the icon's name in the desktop's theme, or its absolute path
    std::uint64_t startedAt = 0; ///< clock ticks since boot; an id alone may come to mean another

    friend bool operator==(const AppProcessInfo&, const AppProcessInfo&) = default;
};

} // namespace kestavon
