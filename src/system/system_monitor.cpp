#include "system/system_monitor.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <utility>

#include <unistd.h>

namespace kestavon {

namespace {

AppProcessInfo infoOf(const RunningApplication& application)
{
    const auto& name = application.name ? application.name : application.identifier;
    return {.processIdentifier = application.process,
        .processName = name.value_or("Unknown"),
        .bundleIdentifier = application.identifier,
        .memoryBytes = application.memoryBytes,
        .isSystemProcess = isSystemProcess(application),
        .icon = application.icon,
        .startedAt = application.startedAt};
}

} // namespace

SystemMonitor::SystemMonitor(std::shared_ptr<const MemoryCounters> memory,
    std::shared_ptr<const RunningApplications> applications,
    std::shared_ptr<ProcessSignals> signals)
    : m_memory(std::move(memory))
    , m_applications(std::move(applications))
    , m_signals(std::move(signals))
{
}

std::optional<MemorySnapshot> SystemMonitor::memorySnapshot() const
{
    return m_memory->snapshot();
}

std::vector<AppProcessInfo> SystemMonitor::runningProcesses() const
{
    std::vector<AppProcessInfo> processes;
    for (const auto& application : m_applications->running())
        processes.push_back(infoOf(application));
    std::ranges::stable_sort(processes, std::greater(), &AppProcessInfo::memoryBytes);
    return processes;
}

bool SystemMonitor::quitProcess(const AppProcessInfo& process) const
{
    return m_signals->terminate(process.processIdentifier, process.startedAt);
}

bool SystemMonitor::quitProcess(std::int32_t process) const
{
    const auto startedAt = m_signals->startOf(process);
    return startedAt && m_signals->terminate(process, *startedAt);
}

bool isSystemProcess(const RunningApplication& application)
{
    constexpr std::string_view makersPrefix = "com.apple.";
    constexpr std::int32_t firstOfUsers = 200; // those below were started with the system
    return (application.identifier && application.identifier->starts_with(makersPrefix))
        || application.process < firstOfUsers || application.isOthers || application.isOfSession
        || application.process == ::getpid();
}

} // namespace kestavon
