#include "ui/style/desktop_appearance.h"

#include <QDBusVariant>
#include <QSignalSpy>

#include <gmock/gmock.h>

namespace kestavon {

namespace {

TEST(DesktopAppearance, FollowsTheLookAndTheMotionThatTheDesktopAsksFor)
{
    DesktopAppearance appearance;
    const auto tell = [&](const char* group, const char* key, const QVariant& value) {
        auto change = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
            QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
        change << QLatin1String(group) << QLatin1String(key)
               << QVariant::fromValue(QDBusVariant(value));
        ASSERT_TRUE(QMetaObject::invokeMethod(&appearance, "follow", Q_ARG(QDBusMessage, change)));
    };
    const auto interface = "org.gnome.desktop.interface";
    tell(interface, "enable-animations", true);
    QSignalSpy changes(&appearance, &DesktopAppearance::reducesMotionChanged);
    tell(interface, "enable-animations", false);
    EXPECT_TRUE(appearance.reducesMotion());
    tell(interface, "enable-animations", false);
    tell(interface, "enable-hot-corners", true);
    tell(interface, "enable-animations", QStringLiteral("yes"));
    EXPECT_TRUE(appearance.reducesMotion()) << "what makes no sense changes nothing";
    EXPECT_EQ(changes.count(), 1);
    tell(interface, "enable-animations", true);
    EXPECT_FALSE(appearance.reducesMotion());

    tell("org.freedesktop.appearance", "color-scheme", 1U);
    EXPECT_EQ(appearance.colorScheme(), 1);
    tell("org.freedesktop.appearance", "color-scheme", 7U);
    EXPECT_EQ(appearance.colorScheme(), 0);
}

} // namespace

} // namespace kestavon
