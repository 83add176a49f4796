#pragma once

#include "ui/uninstaller/uninstaller_state.h"

#include <QtQml/qqml.h>

namespace kestavon {

struct AppRowsType {
    Q_GADGET
    QML_FOREIGN(kestavon::AppRows)
    QML_NAMED_ELEMENT(AppRows)
    QML_UNCREATABLE("made by C++")
};

struct UninstallerStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::UninstallerState)
    QML_NAMED_ELEMENT(UninstallerState)
    QML_UNCREATABLE("made by C++")
};

} // namespace kestavon
