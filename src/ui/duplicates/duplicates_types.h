#pragma once

#include "ui/duplicates/duplicate_rows.h"
#include "ui/duplicates/duplicates_state.h"

#include <QtQml/qqml.h>

namespace kestavon {

struct DuplicateRowsType {
    Q_GADGET
    QML_FOREIGN(kestavon::DuplicateRows)
    QML_NAMED_ELEMENT(DuplicateRows)
    QML_UNCREATABLE("made by C++")
};

struct DuplicatesStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::DuplicatesState)
    QML_NAMED_ELEMENT(DuplicatesState)
    QML_UNCREATABLE("made by C++")
};

} // namespace kestavon
