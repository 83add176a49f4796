#pragma once

#include "ui/performance/performance_state.h"

#include <QtQml/qqml.h>

namespace kestavon {

struct PerformanceStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::PerformanceState)
    QML_NAMED_ELEMENT(PerformanceState)
    QML_UNCREATABLE("made by C++")
};

} // namespace kestavon
