#pragma once

#include "platform/file_mover.h"
#include "platform/linux/removal/deed_journal.h"
#include "platform/linux/removal/item_place.h"

namespace kestavon {

/// Moves an item to another device, by a copy: 0, or the error number. Then the source is as it was
/// and no copy is left. What the report says of the source is filled in.
int moveAcrossDevices(const ItemPlace& source, const ItemPlace& target, const MoveOptions& options,
    MoveReport& report, JournalEntry& journal);

} // namespace kestavon
