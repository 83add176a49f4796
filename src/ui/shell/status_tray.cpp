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

QIcon menuSymbol(const char* name)
{
    return QPixmap::fromImage(SymbolProvider::draw(
        QString::fromLatin1(name), QApplication::palette().color(QPalette::WindowText), 16));
}

} // namespace

StatusTray::StatusTray(UiStates& states)
    : m_states(states)
{
    m_disk = m_menu.addAction(menuSymbol("internaldrive"), QString());
    m_memory = m_menu.addAction(menuSymbol("memorychip"), QString());
    m_disk->setEnabled(false);
    m_memory->setEnabled(false);
    m_menu.addSeparator();
    m_menu.addAction(menuSymbol("macwindow"), QStringLiteral("Open Kestavon"), states.shell(),
        &ShellState::raise);
    m_menu.addAction(menuSymbol("wand.and.sparkles"), QStringLiteral("Smart Clean…"), this, [this] {
        m_states.shell()->showSmartClean();
        m_states.shell()->raise();
    });
    m_menu.addSeparator();
    m_menu.addAction(QStringLiteral("Quit Kestavon"), qApp, &QCoreApplication::quit);
    connect(&m_menu, &QMenu::aboutToShow, states.status(), &StatusState::refresh);
    refreshFigures();
    connect(states.status(), &StatusState::diskChanged, this, &StatusTray::refreshFigures);
    connect(states.status(), &StatusState::memoryChanged, this, &StatusTray::refreshFigures);
    qApp->installEventFilter(this);

    m_icon.setToolTip(QStringLiteral("Kestavon"));
    m_icon.setContextMenu(&m_menu);
    refreshIcon();
    connect(states.status(), &StatusState::diskChanged, this, &StatusTray::refreshIcon);
    connect(&m_icon, &QSystemTrayIcon::activated, this, [this](auto reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
            openMenu();
    });
    m_icon.show();
}

bool StatusTray::eventFilter(QObject* object, QEvent* event)
{
    if (object == qApp && event->type() == QEvent::ApplicationPaletteChange)
        refreshIcon();
    return QObject::eventFilter(object, event);
}

void StatusTray::refreshFigures()
{
    const auto& status = *m_states.status();
    m_disk->setText(QStringLiteral("Disk: %1 free").arg(status.diskFree()));
    m_memory->setText(QStringLiteral("Memory: %1 free").arg(status.memoryFree()));
    m_memory->setVisible(status.hasMemory());
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
