#include "core/model/app_model.h"
#include "core/model/background.h"
#include "platform/byte_count.h"

#include <algorithm>
#include <limits>

namespace kestavon {

namespace {

/// In the order in which readings begin; shared by all who read.
template <class Read>
auto numbered(const std::shared_ptr<std::atomic<std::uint64_t>>& begun, Read read)
{
    const auto number = ++*begun;
    return Numbered<std::invoke_result_t<Read>>{.number = number, .value = read()};
}

std::int64_t freedBytes(
    const std::optional<MemorySnapshot>& before, const std::optional<MemorySnapshot>& after)
{
    const auto inactiveBefore = before ? before->inactiveBytes : 0;
    const auto inactiveAfter = after ? after->inactiveBytes : 0;
    constexpr auto most = std::uint64_t{std::numeric_limits<std::int64_t>::max()};
    return inactiveBefore > inactiveAfter
        ? static_cast<std::int64_t>(std::min(inactiveBefore - inactiveAfter, most))
        : 0;
}

} // namespace

void AppModel::publishMemory(NumberedMemory memory)
{
    if (memory.number <= m_shownMemory)
        return;
    m_shownMemory = memory.number;
    publish(Field::memory, m_memory, memory.value);
}

void AppModel::publishProcesses(NumberedProcesses processes)
{
    if (processes.number <= m_shownProcesses)
        return;
    m_shownProcesses = processes.number;
    publish(Field::processes, m_processes, std::move(processes.value));
}

void AppModel::readMemory()
{
    publishMemory(numbered(m_readingsBegun, [this] { return m_monitor->memorySnapshot(); }));
}

void AppModel::refreshMemory()
{
    if (m_isReadingMemory)
        return;
    m_isReadingMemory = true;
    runInBackground(
        m_memoryQueue, this,
        [monitor = m_monitor, begun = m_readingsBegun] {
            return numbered(begun, [&] { return monitor->memorySnapshot(); });
        },
        [this](Outcome<NumberedMemory> outcome) {
            m_isReadingMemory = false;
            if (outcome.value)
                publishMemory(std::move(*outcome.value));
        });
}

void AppModel::refreshProcesses()
{
    if (m_isReadingProcesses)
        return;
    m_isReadingProcesses = true;
    runInBackground(
        m_processQueue, this,
        [monitor = m_monitor, begun = m_readingsBegun] {
            return numbered(begun, [&] { return monitor->runningProcesses(); });
        },
        [this](Outcome<NumberedProcesses> outcome) {
            m_isReadingProcesses = false;
            if (outcome.value)
                publishProcesses(std::move(*outcome.value));
        });
}

bool AppModel::quitProcess(const AppProcessInfo& process)
{
    return m_monitor->quitProcess(process);
}

void AppModel::optimizeMemory()
{
    if (m_isFreezingRAM)
        return;
    publish(Field::isFreezingRAM, m_isFreezingRAM, true);
    publish(Field::ramFreedBytes, m_ramFreedBytes, std::int64_t{0});

    struct Figures {
        NumberedMemory memory;
        NumberedProcesses processes;
    };
    runInBackground(
        m_optimizerQueue, this,
        [monitor = m_monitor, relief = m_platform.memoryRelief, begun = m_readingsBegun] {
            relief->relieve();
            return Figures{.memory = numbered(begun, [&] { return monitor->memorySnapshot(); }),
                .processes = numbered(begun, [&] { return monitor->runningProcesses(); })};
        },
        [this, before = m_memory](Outcome<Figures> outcome) {
            std::int64_t freed = 0;
            if (outcome.value) {
                freed = freedBytes(before, outcome.value->memory.value);
                publishMemory(std::move(outcome.value->memory));
                publishProcesses(std::move(outcome.value->processes));
            }
            publish(Field::ramFreedBytes, m_ramFreedBytes, freed);
            publish(Field::isFreezingRAM, m_isFreezingRAM, false);
            recordEvent("RAM Optimized", memoryByteCount(freed) + " reclaimed from inactive pages");
        });
}

} // namespace kestavon
