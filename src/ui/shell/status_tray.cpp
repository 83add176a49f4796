#include "ui/shell/status_tray.h"

#include "ui/style/symbol_provider.h"

#include <QApplication>
#include <QCursor>
#include <QPalette>

namespace kestavon {

namespace {

/// The colours that the item can have; on a panel neither of the window's two themes is known, so
/// these are the tones that show on light and dark alike.
QColor panelColor(const QString& name)
{
    if (name == QLatin1String("red"))
        return {0xE5, 0x4B, 0x50};
    if (name == QLatin1String("orange"))
        return {0xE0, 0x84, 0x1F};
    return QApplication::palette().color(QPalette::WindowText);
}

} // namespace

StatusTray::StatusTray(UiStates& states)
    : m_states(states)
{
    m_choices.addAction(QStringLiteral("Open Kestavon"), states.shell(), &ShellState::raise);
    m_choices.addAction(QStringLiteral("Smart Clean…"), this, [this] {
        m_states.shell()->showSmartClean();
        m_states.shell()->raise();
    });
    m_choices.addSeparator();
    m_choices.addAction(QStringLiteral("Quit Kestavon"), qApp, &QCoreApplication::quit);

    m_icon.setToolTip(QStringLiteral("Kestavon"));
    m_icon.setContextMenu(&m_choices);
    refreshIcon();
    connect(states.status(), &StatusState::diskChanged, this, &StatusTray::refreshIcon);
    connect(&m_icon, &QSystemTrayIcon::activated, this, [this](auto reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
            openMenu();
    });
    m_icon.show();
}

void StatusTray::refreshIcon()
{
    const auto color = panelColor(m_states.status()->symbolColor());
    QIcon icon;
    for (const int pixels : {16, 22, 24, 32, 48}) {
        icon.addPixmap(
            QPixmap::fromImage(SymbolProvider::draw(m_states.status()->symbol(), color, pixels)));
    }
    m_icon.setIcon(icon);
}

void StatusTray::openMenu()
{
    // Some desktops do not tell where the icon is.
    const auto place = m_icon.geometry();
    const auto point
        = place.isValid() ? QPoint(place.center().x(), place.bottom() + 1) : QCursor::pos();
    Q_EMIT m_states.status()->menuRequested(point.x(), point.y());
}

} // namespace kestavon
