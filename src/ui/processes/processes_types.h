#pragma once

#include "ui/processes/processes_state.h"

#include <QtQml/qqml.h>

namespace kestavon {

struct ProcessesStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::ProcessesState)
    QML_NAMED_ELEMENT(ProcessesState)
    QML_UNCREATABLE("made by C++")
};

} // namespace kestavon
