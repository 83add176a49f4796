#include "ui/style/desktop_appearance.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEventLoop>
#include <QTimer>

namespace kestavon {

namespace {

constexpr int patienceInMilliseconds = 100;

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto path = QStringLiteral("/org/freedesktop/portal/desktop");
const auto interface = QStringLiteral("org.freedesktop.portal.Settings");
const auto appearance = QStringLiteral("org.freedesktop.appearance");
const auto colorSchemeKey = QStringLiteral("color-scheme");

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
    auto question
        = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    question << appearance << colorSchemeKey;
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    QEventLoop waiting;
    connect(answer, &QDBusPendingCallWatcher::finished, &waiting, &QEventLoop::quit);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
        [this](QDBusPendingCallWatcher* finished) {
            if (const QDBusPendingReply<QDBusVariant> reply = *finished; reply.isValid())
                setColorScheme(unwrapped(reply.value().variant()).toUInt());
            finished->deleteLater();
        });
    // Without the wait, a dark desktop would see a light window first.
    QTimer::singleShot(patienceInMilliseconds, &waiting, &QEventLoop::quit);
    waiting.exec(QEventLoop::ExcludeUserInputEvents);
}

void DesktopAppearance::follow(const QDBusMessage& change)
{
    const auto said = change.arguments();
    if (said.size() == 3 && said[0] == appearance && said[1] == colorSchemeKey)
        setColorScheme(unwrapped(said[2]).toUInt());
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
