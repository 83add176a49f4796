#include "ui/shell/status_state.h"

#include "platform/byte_count.h"
#include "ui/shell/shell_rules.h"

#include <algorithm>

namespace kestavon {

namespace {

QString text(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

} // namespace

StatusState::StatusState(AppModel& model)
    : m_model(model)
{
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        if (field == AppModel::Field::diskTotal || field == AppModel::Field::diskFree)
            Q_EMIT diskChanged();
        else if (field == AppModel::Field::memory)
            Q_EMIT memoryChanged();
    });
}

double StatusState::diskFraction() const
{
    return diskUsedFraction(m_model.diskTotal(), m_model.diskFree());
}

QString StatusState::symbol() const
{
    return text(statusSymbol(diskFraction()));
}

QString StatusState::symbolColor() const
{
    return text(statusSymbolColor(diskFraction()));
}

QString StatusState::diskFree() const
{
    return text(fileByteCount(m_model.diskFree()));
}

QString StatusState::diskColor() const
{
    return text(statusDiskColor(diskFraction()));
}

double StatusState::diskBar() const
{
    return std::clamp(diskFraction(), 0.0, 1.0);
}

QString StatusState::memoryFree() const
{
    const auto& memory = m_model.memory();
    return memory ? text(fileByteCount(static_cast<std::int64_t>(memory->freeBytes))) : QString();
}

QString StatusState::memoryColor() const
{
    return text(statusMemoryColor(memoryPressure(m_model.memory())));
}

double StatusState::memoryBar() const
{
    return memoryPressure(m_model.memory());
}

void StatusState::refresh()
{
    m_model.refreshMemory();
    m_model.refreshProcesses();
    m_model.refreshDiskSpace();
}

} // namespace kestavon
