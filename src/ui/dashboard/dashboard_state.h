#pragma once

#include "core/model/app_model.h"
#include "ui/dashboard/dashboard_rules.h"
#include "ui/widgets/activity_list_model.h"
#include "ui/widgets/live_count.h"

#include <QObject>

namespace kestavon {

/// What the Dashboard shows beside the shared widgets. Main thread.
class DashboardState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString folder READ folder NOTIFY changed)
    Q_PROPERTY(kestavon::FilePath folderPath READ folderPath NOTIFY changed)
    Q_PROPERTY(QString itemsScanned READ itemsScanned NOTIFY changed)
    Q_PROPERTY(QString totalStorage READ totalStorage NOTIFY changed)
    Q_PROPERTY(QString hiddenFiles READ hiddenFiles NOTIFY changed)
    Q_PROPERTY(bool canFindDuplicates READ canFindDuplicates NOTIFY changed)
    /// What the search for duplicates does while it runs, and its button waits.
    Q_PROPERTY(QString duplicatesHint READ duplicatesHint NOTIFY changed)
    Q_PROPERTY(bool canReviewSecurity READ canReviewSecurity NOTIFY changed)
    Q_PROPERTY(kestavon::ActivityListModel* recentActivity READ recentActivity CONSTANT)
public:
    /// Events of the history that the Dashboard shows.
    static constexpr int recentEvents = 3;

    DashboardState(AppModel& model, LiveCount& liveCount, QObject* parent = nullptr);

    /// The path of the folder that is scanned.
    const QString& folder() const { return m_folder; }
    FilePath folderPath() const { return {m_model.selectedRoot()}; }
    const QString& itemsScanned() const { return m_metrics.itemsScanned; }
    const QString& totalStorage() const { return m_metrics.totalStorage; }
    const QString& hiddenFiles() const { return m_metrics.hiddenFiles; }
    bool canFindDuplicates() const { return m_canFindDuplicates; }
    QString duplicatesHint() const;
    bool canReviewSecurity() const { return m_canReviewSecurity; }
    ActivityListModel* recentActivity() { return &m_recentActivity; }

    /// @name Start a review
    /// The screen stays as it is, and the sidebar tells what was found.
    /// @{
    Q_INVOKABLE void findDuplicates();
    Q_INVOKABLE void reviewSecurity();
    /// @}

Q_SIGNALS:
    void changed();

private:
    void update();

    AppModel& m_model;
    LiveCount& m_liveCount;
    QString m_folder;
    DashboardMetrics m_metrics;
    bool m_canFindDuplicates = false;
    bool m_canReviewSecurity = false;
    ActivityListModel m_recentActivity;
};

} // namespace kestavon
