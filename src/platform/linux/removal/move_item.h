#pragma once

#include "platform/file_mover.h"
#include "platform/linux/removal/deed_journal.h"
#include "platform/linux/removal/item_place.h"

namespace kestavon {

/// What `FileMover::move` does, between two opened folders; what a kill could leave is noted in the
/// journal.
FileResult<MoveReport> moveItem(const ItemPlace& source, const ItemPlace& destination,
    const MoveOptions& options, const DeedJournal& journal);

} // namespace kestavon
