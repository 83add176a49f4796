#pragma once

#include "core/model/app_model.h"

#include <QObject>
#include <QTimer>

#include <chrono>

namespace kestavon {

/// The sheet that asks once for Full Disk Access, and the watch that closes it when access is
/// there. Main thread.
class OnboardingState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isPresented READ isPresented NOTIFY isPresentedChanged)
public:
    /// While the sheet is shown, access is probed every `pause`.
    explicit OnboardingState(
        AppModel& model, std::chrono::milliseconds pause = std::chrono::milliseconds(1500));

    bool isPresented() const { return m_isPresented; }

    /// The main window came up: shows the sheet to a user who was never asked and has no access.
    /// That it was shown is written down now, so that leaving it in any way counts as an answer.
    Q_INVOKABLE void windowAppeared();
    /// The user does not want to.
    Q_INVOKABLE void skip();
    /// Leads the user to the switch; the sheet stays until access is there.
    Q_INVOKABLE void openSystemSettings();
    /// The sheet was closed in some other way.
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void isPresentedChanged();

private:
    void watch();
    void rememberShown();
    void present(bool isPresented);

    AppModel& m_model;
    QTimer m_watcher;
    bool m_isPresented = false;
};

} // namespace kestavon
