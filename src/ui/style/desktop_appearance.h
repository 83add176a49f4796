#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariant>

namespace kestavon {

/// What the desktop says of how programs should look and move, where nothing else tells: GNOME, and
/// whoever else answers the settings portal (org.freedesktop.portal.Settings). Main thread.
class DesktopAppearance final : public QObject {
    Q_OBJECT
    /// 0 when there is no preference, 1 for a dark look, 2 for a light one: `color-scheme` of
    /// org.freedesktop.appearance.
    Q_PROPERTY(int colorScheme READ colorScheme NOTIFY colorSchemeChanged)
    /// Animations are switched off: `enable-animations` of org.gnome.desktop.interface.
    Q_PROPERTY(bool reducesMotion READ reducesMotion NOTIFY reducesMotionChanged)
public:
    /// Asks the portal, which answers within a few milliseconds where it runs, and waits no longer
    /// than a tenth of a second; a later answer counts then. Follows every change.
    DesktopAppearance();

    int colorScheme() const { return m_colorScheme; }
    bool reducesMotion() const { return m_reducesMotion; }

Q_SIGNALS:
    void colorSchemeChanged();
    void reducesMotionChanged();

private Q_SLOTS:
    void follow(const QDBusMessage& change);

private:
    void take(const QString& group, const QString& key, const QVariant& value);
    void setColorScheme(uint scheme);
    void setReducesMotion(bool reduces);

    int m_colorScheme = 0;
    bool m_reducesMotion = false;
};

} // namespace kestavon
