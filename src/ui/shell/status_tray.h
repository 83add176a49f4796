#pragma once

#include "ui/ui_states.h"

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

namespace kestavon {

/// The status item in the desktop's tray: its icon follows the disk, a click asks for the status
/// menu, the other button shows the same as a menu of the desktop. Main thread.
class StatusTray final : public QObject {
    Q_OBJECT
public:
    /// Make it only where QSystemTrayIcon::isSystemTrayAvailable().
    explicit StatusTray(UiStates& states);

private:
    bool eventFilter(QObject* object, QEvent* event) override;
    void refreshIcon();
    void refreshFigures();
    void openMenu();

    UiStates& m_states;
    QSystemTrayIcon m_icon;
    QMenu m_menu;
    QAction* m_disk; ///< owned by the menu, as is m_memory
    QAction* m_memory;
};

} // namespace kestavon
