#pragma once

#include "core/domain/cleanup_candidate.h"
#include "core/domain/junk_group.h"
#include "core/domain/record_list.h"
#include "platform/file_mover.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kestavon::shots {

/// What a scan of a lived-in home finds: 418236 files and folders of 287.94 GB, 41.37 GB of it
/// hidden. The same list on every call.
std::shared_ptr<const RecordList> livedInHome();

/// What a scan finds that leads to 126 suggestions. The same list on every call.
std::shared_ptr<const RecordList> homeToClean();

/// What a scan finds that holds duplicates, and where in the list the copies of each are: 38
/// groups, the ones that free most first. The same list on every call.
struct HomeWithCopies {
    std::shared_ptr<const RecordList> records;
    std::vector<std::vector<std::uint32_t>> groups;
};
const HomeWithCopies& homeWithCopies();

/// What lies in a category of junk: 34.62 GB in 718 items over all of them. The same on every call,
/// but for the identifiers.
std::vector<CleanupCandidate> junkOf(JunkCategory category);

/// Items to be held in the Safe Area, the oldest first, and when each is moved there.
struct Held {
    CleanupCandidate candidate;
    Timestamp movedAt;
};
std::vector<Held> itemsToHold();

/// Names of items that earlier runs have left in the holding folder, with their marks.
std::vector<std::pair<std::string, std::vector<FileMark>>> earlierItems();

} // namespace kestavon::shots
