#pragma once

#include "ui/largefiles/large_files_state.h"

#include <QtQml/qqml.h>

namespace kestavon {

struct LargeFilesStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::LargeFilesState)
    QML_NAMED_ELEMENT(LargeFilesState)
    QML_UNCREATABLE("made by C++")
};

} // namespace kestavon
