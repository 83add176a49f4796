#pragma once

#include "ui/ui_states.h"

#include <QtQml/qqml.h>

namespace kestavon {

// The state objects under the names that QML knows them by. C++ makes them.

struct UiStatesType {
    Q_GADGET
    QML_FOREIGN(kestavon::UiStates)
    QML_NAMED_ELEMENT(UiStates)
    QML_UNCREATABLE("made by C++")
};

} // namespace kestavon
