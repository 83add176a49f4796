#pragma once

#include "ui/startup/startup_state.h"

#include <QtQml/qqml.h>

namespace kestavon {

struct StartupRowsType {
    Q_GADGET
    QML_FOREIGN(kestavon::StartupRows)
    QML_NAMED_ELEMENT(StartupRows)
    QML_UNCREATABLE("made by C++")
};

struct StartupStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::StartupState)
    QML_NAMED_ELEMENT(StartupState)
    QML_UNCREATABLE("made by C++")
};

} // namespace kestavon
