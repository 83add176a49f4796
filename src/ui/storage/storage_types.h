#pragma once

#include "ui/storage/storage_state.h"

#include <QtQml/qqml.h>

namespace kestavon {

struct StorageStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::StorageState)
    QML_NAMED_ELEMENT(StorageState)
    QML_UNCREATABLE("made by C++")
};

} // namespace kestavon
