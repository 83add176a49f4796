#pragma once

#include <QDBusMessage>
#include <QObject>

namespace kestavon {

/// What the desktop says of how programs should look, where the palette does not tell: GNOME, and
/// whoever else answers the settings portal (org.freedesktop.portal.Settings). Main thread.
class DesktopAppearance final : public QObject {
    Q_OBJECT
    /// 0 when there is no preference, 1 for a dark look, 2 for a light one: `color-scheme` of
    /// org.freedesktop.appearance.
    Q_PROPERTY(int colorScheme READ colorScheme NOTIFY colorSchemeChanged)
public:
    /// Asks the portal, which answers within a few milliseconds where it runs, and waits no longer
    /// than a tenth of a second; a later answer counts then. Follows every change.
    DesktopAppearance();

    int colorScheme() const { return m_colorScheme; }

Q_SIGNALS:
    void colorSchemeChanged();

private Q_SLOTS:
    void follow(const QDBusMessage& change);

private:
    void setColorScheme(uint scheme);

    int m_colorScheme = 0;
};

} // namespace kestavon
