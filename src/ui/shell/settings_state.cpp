#include "ui/shell/settings_state.h"

#include "ui/shell/product_links.h"

#include <string>

namespace kestavon {

SettingsState::SettingsState(AppModel& model)
    : m_model(model)
{
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        if (field == AppModel::Field::selectedRoot)
            Q_EMIT scannedRootChanged();
    });
}

QString SettingsState::version() const
{
    return QString::fromStdString("Version " + UpdaterController::version() + " (build "
        + UpdaterController::buildNumber() + ")");
}

QString SettingsState::scannedRoot() const
{
    return QString::fromStdString(m_model.selectedRoot());
}

QString SettingsState::supportAddressText() const
{
    return QString::fromUtf8(supportAddress);
}

QString SettingsState::checkForUpdates()
{
    return QString::fromStdString(m_model.updaterController().checkForUpdates());
}

void SettingsState::visitWebsite()
{
    m_model.platform().workspace->openUrl(websiteUrl);
}

void SettingsState::contactSupport()
{
    m_model.platform().workspace->openUrl(std::string("mailto:") + supportAddress);
}

} // namespace kestavon
