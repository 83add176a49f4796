#include "ui/shell/desktop_dialogs.h"

#include <QtGui/private/qguiapplication_p.h>
#include <QtGui/qpa/qplatformtheme.h>

namespace kestavon {

bool DesktopDialogs::hasFolderDialog() const
{
    const auto* theme = QGuiApplicationPrivate::platformTheme();
    return theme && theme->usePlatformNativeDialog(QPlatformTheme::FileDialog);
}

} // namespace kestavon
