#pragma once

#include "core/model/app_model.h"
#include "ui/uninstaller/app_rows.h"
#include "ui/widgets/confirmation.h"

#include <QObject>
#include <QString>

#include <optional>
#include <unordered_map>

namespace kestavon {

/// The App Uninstaller screen: the installed applications, what each has left, and their way to the
/// Trash. Main thread.
class UninstallerState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool loading READ loading NOTIFY appsChanged)
    /// There is no list, and none on its way.
    Q_PROPERTY(bool empty READ empty NOTIFY appsChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY appsChanged)
    /// "Scan Apps" or "Rescan".
    Q_PROPERTY(QString scanLabel READ scanLabel NOTIFY appsChanged)
    /// Only applications whose names contain it are shown.
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)
    Q_PROPERTY(kestavon::AppRows* rows READ rows CONSTANT)
    Q_PROPERTY(kestavon::Confirmation* confirmation READ confirmation CONSTANT)
public:
    explicit UninstallerState(AppModel& model);

    bool loading() const { return m_model.isLoadingApps(); }
    bool empty() const { return m_model.installedApps().empty() && !loading(); }
    const QString& subtitle() const { return m_subtitle; }
    QString scanLabel() const;
    const QString& filter() const { return m_filter; }
    void setFilter(const QString& filter);
    AppRows* rows() { return &m_rows; }
    Confirmation* confirmation() { return &m_confirmation; }

    Q_INVOKABLE void scan() { m_model.loadInstalledApps(); }
    /// Moves what the row's application has left, without asking; nothing while the application is
    /// already being removed.
    Q_INVOKABLE void removeLeftovers(int row);
    /// Asks whether the row's application goes alone or with all that it has left; nothing when
    /// nothing of it can be moved. The question is withdrawn when the application changes or goes
    /// meanwhile, or a listing begins.
    Q_INVOKABLE void askUninstall(int row);
    /// The screen is gone: its filter is forgotten.
    Q_INVOKABLE void reset() { setFilter({}); }

Q_SIGNALS:
    /// The list of applications is another one.
    void appsChanged();
    void filterChanged();

private:
    void uninstall(const InstalledApp& app, bool appOnly);
    AppModel::Finished busyUntilFinished(const Uuid& app);
    void follow();
    bool isQuestionOutdated() const;

    AppModel& m_model;
    std::unordered_map<Uuid, int> m_busy; // applications that are being removed, and how often
    AppRows m_rows;
    Confirmation m_confirmation;
    std::optional<InstalledApp> m_asked; // what the question is about
    QString m_subtitle;
    QString m_filter;
};

} // namespace kestavon
