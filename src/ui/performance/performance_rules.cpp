#include "ui/performance/performance_rules.h"

#include <algorithm>

namespace kestavon {

std::size_t consumerCount(const std::vector<AppProcessInfo>& processes)
{
    constexpr std::size_t most = 8;
    return std::min(processes.size(), most);
}

double memoryShare(std::uint64_t bytes, const std::optional<MemorySnapshot>& memory)
{
    double total = 0; // floating, because a broken report may exceed 64 bits
    if (memory) {
        for (const auto part :
            {memory->freeBytes, memory->activeBytes, memory->inactiveBytes, memory->wiredBytes})
            total += static_cast<double>(part);
    }
    return std::min(1.0, static_cast<double>(bytes) / std::max(1.0, total));
}

bool isLargeShare(double share)
{
    return share > 0.15;
}

} // namespace kestavon
