#include "ui/security/security_state.h"

#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"
#include "ui/widgets/threat_badge_rules.h"

#include <QPointer>

#include <algorithm>

namespace kestavon {

SecurityState::SecurityState(AppModel& model)
    : m_model(model)
    , m_summary(securitySummary(model.findings(), model.securityPhase()))
{
    connect(&model, &AppModel::fieldChanged, this, &SecurityState::follow);
}

void SecurityState::follow(AppModel::Field field)
{
    switch (field) {
    case AppModel::Field::records: Q_EMIT recordsChanged(); break;
    case AppModel::Field::findings:
        cancelOutdatedQuestion();
        Q_EMIT rowsChanged();
        refreshRows();
        [[fallthrough]];
    case AppModel::Field::securityPhase:
        m_summary = securitySummary(m_model.findings(), m_model.securityPhase());
        Q_EMIT summaryChanged();
        break;
    default: break;
    }
}

void SecurityState::cancelOutdatedQuestion()
{
    if (m_asked && std::ranges::find(m_model.findings(), *m_asked) == m_model.findings().end())
        m_confirmation.cancel();
}

void SecurityState::refreshRows()
{
    ++m_revision;
    Q_EMIT changed();
}

QString SecurityState::phaseText() const
{
    const auto& phase = m_model.securityPhase();
    const bool tells = phase.isScanning() || phase.kind() == ScanPhase::Kind::failed;
    return tells ? displayText(phase.text()) : QString();
}

QString SecurityState::summarySymbol() const
{
    return displayText(m_summary.symbol);
}

QString SecurityState::summarySymbolColor() const
{
    return m_summary.color.empty() ? u"secondary"_s : displayText(m_summary.color);
}

QString SecurityState::summaryTextColor() const
{
    return m_summary.colorsText ? summarySymbolColor() : QString();
}

const SecurityFinding* SecurityState::at(int row) const
{
    const auto i = static_cast<std::size_t>(row);
    return row >= 0 && i < m_model.findings().size() ? &m_model.findings()[i] : nullptr;
}

QString SecurityState::reasonText(int row) const
{
    const auto* finding = at(row);
    return finding ? displayText(finding->reason) : QString();
}

QString SecurityState::pathText(int row) const
{
    const auto* finding = at(row);
    return finding ? fileNameText(finding->path) : QString();
}

QString SecurityState::idText(int row) const
{
    const auto* finding = at(row);
    return finding ? displayText(finding->id.text()) : QString();
}

FilePath SecurityState::filePath(int row) const
{
    const auto* finding = at(row);
    return {finding ? finding->path : std::string()};
}

QString SecurityState::levelText(int row) const
{
    const auto* finding = at(row);
    return finding ? threatBadge(finding->level).label : QString();
}

QString SecurityState::levelSymbol(int row) const
{
    const auto* finding = at(row);
    return finding ? threatBadge(finding->level).symbol : QString();
}

QString SecurityState::levelColor(int row) const
{
    const auto* finding = at(row);
    return threatBadge(finding ? finding->level : ThreatLevel::unknown).color;
}

bool SecurityState::mayRemove(int row) const
{
    const auto* finding = at(row);
    return finding && mayRemoveFinding(*finding, m_model.platform().layout.home);
}

bool SecurityState::isBusy(int row) const
{
    const auto* finding = at(row);
    return finding && m_busy.contains(finding->id);
}

void SecurityState::askRemove(int row)
{
    const auto* finding = at(row);
    if (!finding || !mayRemove(row) || isBusy(row) || m_confirmation.asking())
        return;
    m_asked = *finding;
    m_confirmation.ask(
        removeFindingQuestion(*finding), [this, finding = *finding] { remove(finding); });
}

void SecurityState::remove(const SecurityFinding& finding)
{
    m_busy.insert(finding.id);
    refreshRows();
    m_model.removeFinding(
        finding, [self = QPointer<SecurityState>(this), id = finding.id](const std::string& error) {
            if (!self)
                return;
            self->m_busy.erase(id);
            self->refreshRows();
            if (!error.empty())
                self->m_confirmation.setErrorMessage(displayText(error));
        });
}

} // namespace kestavon
