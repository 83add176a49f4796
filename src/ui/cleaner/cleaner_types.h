#pragma once

#include "ui/cleaner/cleaner_state.h"

#include <QtQml/qqml.h>

namespace kestavon {

struct CleanerStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::CleanerState)
    QML_NAMED_ELEMENT(CleanerState)
    QML_UNCREATABLE("made by C++")
};

} // namespace kestavon
