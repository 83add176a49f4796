#pragma once

#include "ui/safearea/held_items.h"
#include "ui/safearea/safe_area_state.h"

#include <QtQml/qqml.h>

namespace kestavon {

struct HeldItemsType {
    Q_GADGET
    QML_FOREIGN(kestavon::HeldItems)
    QML_NAMED_ELEMENT(HeldItems)
    QML_UNCREATABLE("made by C++")
};

struct SafeAreaStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::SafeAreaState)
    QML_NAMED_ELEMENT(SafeAreaState)
    QML_UNCREATABLE("made by C++")
};

} // namespace kestavon
