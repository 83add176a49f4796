#include "ui/style/desktop_appearance.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEventLoop>
#include <QTimer>

#include <utility>

namespace kestavon {

namespace {

constexpr int patienceInMilliseconds = 100;

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto path = QStringLiteral("/org/freedesktop/portal/desktop");
const auto interface = QStringLiteral("org.freedesktop.portal.Settings");
const auto appearance = QStringLiteral("org.freedesktop.appearance");
const auto colorSchemeKey = QStringLiteral("color-scheme");
const auto gnomeInterface = QStringLiteral("org.gnome.desktop.interface");
const auto animationsKey = QStringLiteral("enable-animations");

/// The value itself: `Read` wraps it in one variant more than `SettingChanged` does.
QVariant unwrapped(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

DesktopAppearance::DesktopAppearance()
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
        SLOT(follow(QDBusMessage)));
    QEventLoop waiting;
    int unanswered = 0;
    for (const auto& [group, key] :
        {std::pair(appearance, colorSchemeKey), std::pair(gnomeInterface, animationsKey)}) {
        auto question
            = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
        question << group << key;
        auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
        ++unanswered;
        connect(answer, &QDBusPendingCallWatcher::finished, &waiting, [&] {
            if (--unanswered == 0)
                waiting.quit();
        });
        connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this, group = group, key = key](QDBusPendingCallWatcher* finished) {
                if (const QDBusPendingReply<QDBusVariant> reply = *finished; reply.isValid())
                    take(group, key, reply.value().variant());
                finished->deleteLater();
            });
    }
    // Without the wait, a dark desktop would see a light window first.
    QTimer::singleShot(patienceInMilliseconds, &waiting, &QEventLoop::quit);
    waiting.exec(QEventLoop::ExcludeUserInputEvents);
}

void DesktopAppearance::follow(const QDBusMessage& change)
{
    const auto said = change.arguments();
    if (said.size() == 3)
        take(said[0].toString(), said[1].toString(), said[2]);
}

void DesktopAppearance::take(const QString& group, const QString& key, const QVariant& value)
{
    const auto told = unwrapped(value);
    if (group == appearance && key == colorSchemeKey)
        setColorScheme(told.toUInt());
    else if (group == gnomeInterface && key == animationsKey
        && told.metaType().id() == QMetaType::Bool)
        setReducesMotion(!told.toBool());
}

void DesktopAppearance::setReducesMotion(bool reduces)
{
    if (reduces == m_reducesMotion)
        return;
    m_reducesMotion = reduces;
    Q_EMIT reducesMotionChanged();
}

void DesktopAppearance::setColorScheme(uint scheme)
{
    const int known = scheme <= 2 ? static_cast<int>(scheme) : 0; // others are "no preference"
    if (known == m_colorScheme)
        return;
    m_colorScheme = known;
    Q_EMIT colorSchemeChanged();
}

} // namespace kestavon
