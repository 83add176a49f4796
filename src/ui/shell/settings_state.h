#pragma once

#include "core/model/app_model.h"
#include "ui/widgets/file_path.h"

#include <QObject>
#include <QString>

namespace kestavon {

/// What the Settings screen tells and does. Main thread.
class SettingsState final : public QObject {
    Q_OBJECT
    /// "Version 1.0.0 (build 1)".
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QString scannedRoot READ scannedRoot NOTIFY scannedRootChanged)
    Q_PROPERTY(kestavon::FilePath scannedRootPath READ scannedRootPath NOTIFY scannedRootChanged)
    Q_PROPERTY(QString supportAddress READ supportAddressText CONSTANT)
public:
    explicit SettingsState(AppModel& model);

    QString version() const;
    QString scannedRoot() const;
    FilePath scannedRootPath() const;
    QString supportAddressText() const;

    /// Looks for a newer version and returns what to tell the user.
    Q_INVOKABLE QString checkForUpdates();
    Q_INVOKABLE void visitWebsite();
    Q_INVOKABLE void contactSupport();

Q_SIGNALS:
    void scannedRootChanged();
    /// Nothing opened; `reason` is a sentence for a person.
    void linkFailed(const QString& reason);

private:
    void openUrl(const std::string& url);

    AppModel& m_model;
};

} // namespace kestavon
