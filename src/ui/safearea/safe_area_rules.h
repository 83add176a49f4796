#pragma once

#include "core/domain/quarantine_item.h"
#include "platform/calendar.h"
#include "ui/widgets/confirmation.h"

#include <QString>

#include <cstddef>

namespace kestavon {

/// The question before all `count` items go back to where they came from.
ConfirmationTexts restoreAllQuestion(std::size_t count);
/// The question before all `count` items are deleted for good.
ConfirmationTexts deleteAllQuestion(std::size_t count);

/// "Moved 16 Nov 2026 at 14:05"
QString movedText(Timestamp date, const Calendar& calendar);

} // namespace kestavon
