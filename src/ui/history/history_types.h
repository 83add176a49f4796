#pragma once

#include "ui/history/history_state.h"

#include <QtQml/qqml.h>

namespace kestavon {

struct HistoryStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::HistoryState)
    QML_NAMED_ELEMENT(HistoryState)
    QML_UNCREATABLE("made by C++")
};

} // namespace kestavon
