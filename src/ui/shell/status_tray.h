#pragma once

#include "ui/ui_states.h"

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

namespace kestavon {

/// The status item in the desktop's tray: its icon follows the disk, a click asks for the status
/// menu, the other button shows the three choices. Main thread.
class StatusTray final : public QObject {
    Q_OBJECT
public:
    /// Make it only where QSystemTrayIcon::isSystemTrayAvailable().
    explicit StatusTray(UiStates& states);

private:
    void refreshIcon();
    void openMenu();

    UiStates& m_states;
    QSystemTrayIcon m_icon;
    QMenu m_choices;
};

} // namespace kestavon
