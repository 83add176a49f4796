#include "platform/memory_counters.h"

#include <fstream>
#include <string>
#include <unordered_map>

#include <sys/sysinfo.h>
#include <unistd.h>

namespace kestavon {

std::optional<MemorySnapshot> SystemMemoryCounters::snapshot() const
{
    std::ifstream file("/proc/vmstat");
    std::unordered_map<std::string, std::uint64_t> counters;
    std::string name;
    std::uint64_t value = 0;
    while (file >> name >> value)
        counters[name] = value;
    if (!counters.contains("nr_free_pages"))
        return std::nullopt;

    const auto pageSize = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
    const auto pages = [&counters](const char* counter) {
        const auto found = counters.find(counter);
        return found == counters.end() ? 0 : found->second;
    };
    // Some virtual machines' vmstat leaves out free pages, more than half of all: sysinfo(2) has
    // them.
    struct ::sysinfo system { };
    const auto freePages = ::sysinfo(&system) == 0
        ? std::uint64_t{system.freeram} * system.mem_unit / pageSize
        : pages("nr_free_pages");
    const auto kernelStackPages = pages("nr_kernel_stack") * 1024 / pageSize; // counted in KiB
    return MemorySnapshot{.freeBytes = freePages * pageSize,
        .activeBytes = (pages("nr_active_anon") + pages("nr_active_file")) * pageSize,
        .inactiveBytes = (pages("nr_inactive_anon") + pages("nr_inactive_file")) * pageSize,
        .wiredBytes = (pages("nr_unevictable") + pages("nr_slab_unreclaimable") + kernelStackPages
                          + pages("nr_page_table_pages"))
            * pageSize};
}

} // namespace kestavon
