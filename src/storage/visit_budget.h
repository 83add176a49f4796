#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>

namespace kestavon {

/// Decides how many entries a walk may still visit: it counts the visits of all its threads, and at
/// every 1000th one asks how much memory the process holds. Any thread.
class VisitBudget {
public:
    using MemoryProbe = std::function<std::optional<std::uint64_t>()>;

    /// A record list finds its names by 32-bit offsets.
    static constexpr std::uint64_t longestNames = 0xFFFF'FFFF;

    /// No visit is granted from the one on at which `probe` tells `memoryLimitBytes` or more, or
    /// which would bring the names' bytes beyond `nameLimitBytes`.
    VisitBudget(MemoryProbe probe, std::uint64_t memoryLimitBytes,
        std::uint64_t nameLimitBytes = longestNames);

    /// Asks for `entries` visits, whose names take `nameBytes`, and returns how many of them are
    /// granted: all, or fewer and the budget is used up.
    std::uint64_t request(std::uint64_t entries, std::uint64_t nameBytes);

    /// Uses the budget up: there is no memory for more.
    void exhaust();
    bool isExhausted() const;

private:
    const MemoryProbe m_probe;
    const std::uint64_t m_memoryLimitBytes;
    const std::uint64_t m_nameLimitBytes;

    // Held while the probe is asked: no thread may record a later entry before the answer is in.
    mutable std::mutex m_mutex;
    std::uint64_t m_visited = 0; // guarded by m_mutex
    std::uint64_t m_nameBytes = 0; // guarded by m_mutex
    bool m_exhausted = false; // guarded by m_mutex
};

} // namespace kestavon
