#include "ui/dashboard/dashboard_state.h"

#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

namespace kestavon {

DashboardState::DashboardState(AppModel& model, LiveCount& liveCount, QObject* parent)
    : QObject(parent)
    , m_model(model)
    , m_liveCount(liveCount)
    , m_recentActivity(model, recentEvents)
{
    connect(&liveCount, &LiveCount::changed, this, &DashboardState::update);
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        switch (field) {
        case AppModel::Field::selectedRoot:
        case AppModel::Field::scanPhase:
        case AppModel::Field::records:
        case AppModel::Field::duplicatePhase:
        case AppModel::Field::securityPhase: update(); break;
        default: break;
        }
    });
    update();
}

QString DashboardState::duplicatesHint() const
{
    const auto& phase = m_model.duplicatePhase();
    return phase.isScanning() ? displayText(phase.text()) : QString();
}

void DashboardState::findDuplicates()
{
    m_model.startDuplicateAnalysis();
}

void DashboardState::reviewSecurity()
{
    m_model.startSecurityScan();
}

void DashboardState::update()
{
    const auto& phase = m_model.scanPhase();
    const bool hasRecords = !m_model.records()->empty();
    m_folder = fileNameText(m_model.selectedRoot());
    m_metrics = dashboardMetrics(phase, m_liveCount.shown(), m_model.storageSummary());
    m_canFindDuplicates = analysisCanStart(hasRecords, phase, m_model.duplicatePhase());
    m_canReviewSecurity = analysisCanStart(hasRecords, phase, m_model.securityPhase());
    Q_EMIT changed();
}

} // namespace kestavon
