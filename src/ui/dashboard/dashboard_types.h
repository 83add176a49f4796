#pragma once

#include "ui/dashboard/dashboard_state.h"

#include <QtQml/qqml.h>

namespace kestavon {

struct DashboardStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::DashboardState)
    QML_NAMED_ELEMENT(DashboardState)
    QML_UNCREATABLE("made by C++")
};

} // namespace kestavon
