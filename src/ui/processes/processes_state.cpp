#include "ui/processes/processes_state.h"

#include "ui/processes/processes_rules.h"
#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

namespace kestavon {

ProcessesState::ProcessesState(AppModel& model)
    : m_model(model)
{
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        if (field != AppModel::Field::processes)
            return;
        m_hasLooked = true;
        Q_EMIT countChanged();
        updateRows();
    });
}

QString ProcessesState::countText() const
{
    return QString::number(m_model.processes().size()) + u" apps"_s;
}

void ProcessesState::setFilter(const QString& filter)
{
    if (filter == m_filter)
        return;
    m_filter = filter;
    Q_EMIT filterChanged();
    updateRows();
}

void ProcessesState::setHeld(bool held)
{
    if (held == m_held)
        return;
    m_held = held;
    Q_EMIT heldChanged();
    // Later: the control says that it was let go before it says that it was clicked.
    if (!held)
        QMetaObject::invokeMethod(this, &ProcessesState::updateRows, Qt::QueuedConnection);
}

void ProcessesState::updateRows()
{
    if (m_held)
        return;
    m_rows = processesNamed(m_model.processes(), m_filter.toStdString());
    ++m_revision;
    Q_EMIT rowsChanged();
}

const AppProcessInfo* ProcessesState::at(int row) const
{
    return row >= 0 && row < rowCount() ? &m_rows[static_cast<std::size_t>(row)] : nullptr;
}

QString ProcessesState::nameText(int row) const
{
    const auto* process = at(row);
    return process ? fileNameText(process->processName) : QString();
}

QString ProcessesState::processText(int row) const
{
    const auto* process = at(row);
    return process ? u"PID %1"_s.arg(process->processIdentifier) : QString();
}

QString ProcessesState::memoryText(int row) const
{
    const auto* process = at(row);
    return process ? memoryFigure(process->memoryBytes) : QString();
}

QString ProcessesState::icon(int row) const
{
    const auto* process = at(row);
    return process ? iconKey(process->icon) : QString();
}

bool ProcessesState::isLarge(int row) const
{
    const auto* process = at(row);
    return process && isLargeProcess(*process);
}

bool ProcessesState::isProtected(int row) const
{
    const auto* process = at(row);
    return process && process->isSystemProcess;
}

void ProcessesState::refresh()
{
    m_model.refreshMemory();
    m_model.refreshProcesses();
}

void ProcessesState::begin()
{
    setHeld(false);
    setFilter({});
}

void ProcessesState::askForceQuit(int row)
{
    const auto* process = at(row);
    if (!process || process->isSystemProcess)
        return;
    m_confirmation.ask(
        forceQuitQuestion(nameText(row)), [this, process = *process] { quit(process); });
}

void ProcessesState::quit(const AppProcessInfo& process)
{
    if (!m_model.quitProcess(process))
        m_confirmation.setErrorMessage(quitFailure(fileNameText(process.processName)));
}

} // namespace kestavon
