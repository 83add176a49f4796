#include "ui/style/desktop_motion.h"

#include <QSettings>
#include <QStandardPaths>

namespace kestavon {

bool desktopReducesMotion(bool desktopSaidSo)
{
    if (qEnvironmentVariableIsSet("KESTAVON_REDUCED_MOTION"))
        return qEnvironmentVariableIntValue("KESTAVON_REDUCED_MOTION") != 0;
    if (desktopSaidSo)
        return true;
    const auto folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    for (const auto* file : {"/gtk-4.0/settings.ini", "/gtk-3.0/settings.ini"}) {
        const QSettings gtk(folder + QLatin1String(file), QSettings::IniFormat);
        if (!gtk.value(QStringLiteral("Settings/gtk-enable-animations"), true).toBool())
            return true;
    }
    const QSettings kde(folder + QStringLiteral("/kdeglobals"), QSettings::IniFormat);
    return kde.value(QStringLiteral("KDE/AnimationDurationFactor"), 1.0).toDouble() == 0.0;
}

} // namespace kestavon
