#pragma once

#include "core/domain/quarantine_item.h"
#include "platform/calendar.h"
#include "ui/widgets/confirmation.h"

#include <QString>

#include <cstddef>
#include <string>

namespace kestavon {

/// The question before all `count` items go back to where they came from.
ConfirmationTexts restoreAllQuestion(std::size_t count);
/// The question before all `count` items are deleted for good.
ConfirmationTexts deleteAllQuestion(std::size_t count);

/// The question before one item of an earlier run is deleted for good.
ConfirmationTexts deleteEarlierQuestion(const QString& name);

/// "12 items from earlier"
QString earlierText(std::size_t count);
/// "Moved 16 Nov 2026 at 14:05"; a dash for a date that is not known, which is 0.
QString movedText(Timestamp date, const Calendar& calendar);

/// The name that the item had before it was moved: all of it where the place is known, else the
/// beginning that it is held under.
std::string originalName(const QuarantineItem& item);
/// The path of that name in `folder`.
std::string pathIn(const std::string& folder, const std::string& name);

} // namespace kestavon
