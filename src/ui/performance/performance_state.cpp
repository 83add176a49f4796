#include "ui/performance/performance_state.h"

#include "ui/performance/performance_rules.h"
#include "ui/processes/processes_rules.h"
#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

namespace kestavon {

PerformanceState::PerformanceState(AppModel& model)
    : m_model(model)
{
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        switch (field) {
        case AppModel::Field::memory:
            m_history.add(m_model.memory(), std::chrono::steady_clock::now());
            Q_EMIT memoryChanged();
            [[fallthrough]]; // the shares are of it
        case AppModel::Field::processes:
            ++m_revision;
            Q_EMIT consumersChanged();
            break;
        case AppModel::Field::isFreezingRAM: Q_EMIT optimizingChanged(); break;
        default: break;
        }
    });
}

QString PerformanceState::memoryText(std::uint64_t MemorySnapshot::*counter) const
{
    const auto& memory = m_model.memory();
    return memory ? memoryFigure((*memory).*counter) : QString();
}

QString PerformanceState::freedText() const
{
    return memoryFigure(static_cast<std::uint64_t>(m_model.ramFreedBytes())) + u" reclaimed"_s;
}

int PerformanceState::consumers() const
{
    return static_cast<int>(consumerCount(m_model.processes()));
}

const AppProcessInfo* PerformanceState::at(int row) const
{
    return row >= 0 && row < consumers() ? &m_model.processes()[static_cast<std::size_t>(row)]
                                         : nullptr;
}

QString PerformanceState::nameText(int row) const
{
    const auto* process = at(row);
    return process ? fileNameText(process->processName) : QString();
}

QString PerformanceState::icon(int row) const
{
    const auto* process = at(row);
    return process ? iconKey(process->icon) : QString();
}

QString PerformanceState::memoryText(int row) const
{
    const auto* process = at(row);
    return process ? memoryFigure(process->memoryBytes) : QString();
}

double PerformanceState::share(int row) const
{
    const auto* process = at(row);
    return process ? memoryShare(process->memoryBytes, m_model.memory()) : 0;
}

bool PerformanceState::isLarge(int row) const
{
    return isLargeShare(share(row));
}

void PerformanceState::refresh()
{
    m_model.refreshMemory();
    m_model.refreshProcesses();
}

} // namespace kestavon
