#pragma once

#include "platform/file_mover.h"
#include "platform/file_places.h"

#include <string>

namespace kestavon {

/// Moves what lies at `source` back to `destination`, where it came from, and makes the folders
/// above that are gone. Where something lies at the destination the error is `Kind::fileExists`;
/// after any failure everything is as it was. Messages call the item by the name it gets back.
FileResult<Done> putBack(const std::string& source, const std::string& destination,
    FileMover& mover, FilePlaces& places, const MoveOptions& options = {});

} // namespace kestavon
