#pragma once

#include "platform/file_mover.h"
#include "platform/linux/removal/item_place.h"

namespace kestavon {

/// What `FileMover::move` does, between two opened folders.
FileResult<MoveReport> moveItem(
    const ItemPlace& source, const ItemPlace& destination, const MoveOptions& options);

} // namespace kestavon
