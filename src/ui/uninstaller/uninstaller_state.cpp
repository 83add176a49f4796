#include "ui/uninstaller/uninstaller_state.h"

#include "ui/uninstaller/uninstaller_rules.h"

#include <QPointer>

#include <algorithm>

namespace kestavon {

UninstallerState::UninstallerState(AppModel& model)
    : m_model(model)
    , m_rows([&model]() -> const std::vector<InstalledApp>& { return model.installedApps(); },
          [this](const Uuid& id) { return m_busy.contains(id); })
{
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        if (field == AppModel::Field::installedApps || field == AppModel::Field::isLoadingApps)
            follow();
    });
    follow();
}

QString UninstallerState::scanLabel() const
{
    return scanAppsLabel(m_model.installedApps());
}

void UninstallerState::setFilter(const QString& filter)
{
    if (filter == m_filter)
        return;
    m_filter = filter;
    m_rows.setFilter(filter.toStdString());
    Q_EMIT filterChanged();
}

void UninstallerState::removeLeftovers(int row)
{
    const auto* app = m_rows.appOf(row);
    if (app && !m_busy.contains(app->id))
        m_model.removeLeftovers(*app, busyUntilFinished(app->id));
}

void UninstallerState::askUninstall(int row)
{
    const auto* app = m_rows.appOf(row);
    if (!app || !m_rows.canUninstall(row) || m_busy.contains(app->id) || m_confirmation.asking())
        return;
    m_asked = *app;
    m_confirmation.ask(
        uninstallQuestion(*app), [this, app = *app] { uninstall(app, false); },
        [this, app = *app] { uninstall(app, true); });
}

void UninstallerState::uninstall(const InstalledApp& app, bool appOnly)
{
    m_model.uninstallApp(app, appOnly, busyUntilFinished(app.id));
}

AppModel::Finished UninstallerState::busyUntilFinished(const Uuid& app)
{
    ++m_busy[app];
    m_rows.refresh();
    return [self = QPointer<UninstallerState>(this), app](const std::string&) {
        // The list and the history tell how it ended.
        if (!self)
            return;
        if (--self->m_busy[app] == 0)
            self->m_busy.erase(app);
        self->m_rows.refresh();
    };
}

void UninstallerState::follow()
{
    m_subtitle = uninstallerSubtitle(m_model.installedApps(), loading());
    m_rows.reload(); // first of all: no row may stand for what is not listed any more
    if (isQuestionOutdated())
        m_confirmation.cancel();
    Q_EMIT appsChanged();
}

bool UninstallerState::isQuestionOutdated() const
{
    const auto& apps = m_model.installedApps();
    return loading() || (m_asked && std::ranges::find(apps, *m_asked) == apps.end());
}

} // namespace kestavon
