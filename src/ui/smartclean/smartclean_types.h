#pragma once

#include "ui/smartclean/duplicates_card_state.h"
#include "ui/smartclean/junk_card.h"
#include "ui/smartclean/preview_state.h"
#include "ui/smartclean/smart_clean_state.h"

#include <QtQml/qqml.h>

namespace kestavon {

struct DuplicatesCardStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::DuplicatesCardState)
    QML_NAMED_ELEMENT(DuplicatesCardState)
    QML_UNCREATABLE("made by C++")
};

struct JunkCardType {
    Q_GADGET
    QML_FOREIGN(kestavon::JunkCard)
    QML_VALUE_TYPE(junkCard)
};

struct PreviewStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::PreviewState)
    QML_NAMED_ELEMENT(PreviewState)
    QML_UNCREATABLE("made by C++")
};

struct SmartCleanStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::SmartCleanState)
    QML_NAMED_ELEMENT(SmartCleanState)
    QML_UNCREATABLE("made by C++")
};

} // namespace kestavon
