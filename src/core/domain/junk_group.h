#pragma once

#include "core/domain/junk_category.h"
#include "core/domain/junk_items.h"

#include <vector>

namespace kestavon {

/// The Smart Clean state of one category. One group exists for every category.
struct JunkGroup {
    Uuid id;
    JunkCategory category = JunkCategory::appCaches;
    JunkItems items; ///< what the last scan of the category found
    bool isScanning = false;
    bool isScanned = false; ///< the last scan started for this group has completed
};

/// A group of each category, in declared order, each with a new id and nothing in it.
inline std::vector<JunkGroup> freshJunkGroups(bool areScanning = false)
{
    std::vector<JunkGroup> groups;
    for (const auto& entry : allCases<JunkCategory>()) {
        groups.push_back({.id = Uuid::random(),
            .category = entry.value,
            .items = {},
            .isScanning = areScanning});
    }
    return groups;
}

} // namespace kestavon
