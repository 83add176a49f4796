#pragma once

#include "core/domain/record_pick.h"
#include "platform/protected_places.h"

#include <string>
#include <vector>

namespace kestavon {

/// Items that somebody named on the command line.
struct TypedItems {
    RecordPick
        pick; ///< those that may be removed, each once; a folder has the size of what it holds
    std::int64_t bytes = 0; ///< of these
    std::vector<std::string> problems; ///< why the others may not, a sentence for each
};

/// Looks at what lies at the paths. The folders above an item are where they really are; the item
/// itself is never followed, so that a link stands for itself. What is protected, by the rule that
/// all removals follow or by the machine, is refused, and so is "." and "..". Of an item and a
/// folder that holds it, the folder is given only. Sums up folders: not where anybody waits for a
/// window.
TypedItems typedItems(const std::vector<std::string>& paths, const ProtectedPlaces& places);

} // namespace kestavon
