#pragma once

#include "core/domain/system_state.h"

#include <optional>

namespace kestavon {

/// The machine's memory. Any thread.
class MemoryCounters {
public:
    virtual ~MemoryCounters() = default;
    /// The counters now; nothing when the system does not tell.
    virtual std::optional<MemorySnapshot> snapshot() const = 0;
};

/// Page counts of /proc/vmstat times the page size, see proc(5); free memory as sysinfo(2) has it.
class SystemMemoryCounters final : public MemoryCounters {
public:
    std::optional<MemorySnapshot> snapshot() const override;
};

} // namespace kestavon
