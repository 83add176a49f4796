#pragma once

#include "core/domain/system_state.h"
#include "platform/memory_counters.h"
#include "platform/process_signals.h"
#include "platform/running_applications.h"

#include <memory>
#include <optional>
#include <vector>

namespace kestavon {

/// Tells of the machine's memory and of the applications that run, and asks one of them to quit. It
/// keeps nothing: each call asks the system afresh. Any thread.
class SystemMonitor {
public:
    SystemMonitor(std::shared_ptr<const MemoryCounters> memory,
        std::shared_ptr<const RunningApplications> applications,
        std::shared_ptr<ProcessSignals> signals);

    /// The counters now, in bytes; nothing when the system does not tell. At once.
    std::optional<MemorySnapshot> memorySnapshot() const;

    /// The applications that run, those with most memory first, and otherwise in the platform's
    /// order. Not on the main thread: some milliseconds, more when it is asked for the first time.
    std::vector<AppProcessInfo> runningProcesses() const;

    /// Asks the application to quit, once, with SIGTERM; it may take its time, or refuse. Only the
    /// very process that was listed is asked. False when it is gone, is this program itself, or
    /// may not be told. At once.
    bool quitProcess(const AppProcessInfo& process) const;
    /// The same for the process that has this id now.
    bool quitProcess(std::int32_t process) const;

private:
    std::shared_ptr<const MemoryCounters> m_memory;
    std::shared_ptr<const RunningApplications> m_applications;
    std::shared_ptr<ProcessSignals> m_signals;
};

/// Whether the user must not end it: the system's own, another user's, what the session cannot do
/// without, and this program, which has a way out of its own.
bool isSystemProcess(const RunningApplication& application);

} // namespace kestavon
