#pragma once

#include "ui/security/security_state.h"

#include <QtQml/qqml.h>

namespace kestavon {

struct SecurityStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::SecurityState)
    QML_NAMED_ELEMENT(SecurityState)
    QML_UNCREATABLE("made by C++")
};

} // namespace kestavon
