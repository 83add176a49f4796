#pragma once

#include "core/domain/record_pick.h"
#include "platform/protected_places.h"

#include <string>
#include <vector>

namespace kestavon {

/// Items that somebody named on the command line.
struct TypedItems {
    RecordPick pick; ///< those that may be removed
    std::vector<std::string> problems; ///< why the others may not, a sentence for each
};

/// Looks at what lies at the paths. The folders above an item are where they really are; the item
/// itself is never followed, so that a link stands for itself. What is protected, by the rule that
/// all removals follow or by the machine, is refused.
TypedItems typedItems(const std::vector<std::string>& paths, const ProtectedPlaces& places);

} // namespace kestavon
