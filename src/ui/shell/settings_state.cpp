#include "ui/shell/settings_state.h"

#include "ui/shell/product_links.h"
#include "ui/widgets/file_name_text.h"

#include <QPointer>

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
    return fileNameText(m_model.selectedRoot());
}

FilePath SettingsState::scannedRootPath() const
{
    return {m_model.selectedRoot()};
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
    openUrl(websiteUrl);
}

void SettingsState::contactSupport()
{
    openUrl(std::string("mailto:") + supportAddress);
}

void SettingsState::openUrl(const std::string& url)
{
    m_model.openUrl(url, [self = QPointer<SettingsState>(this)](const std::string& error) {
        if (self && !error.empty())
            Q_EMIT self->linkFailed(QString::fromStdString(error));
    });
}

} // namespace kestavon
