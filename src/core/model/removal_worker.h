#pragma once

#include "core/domain/file_record.h"
#include "platform/file_error.h"
#include "platform/file_places.h"
#include "platform/protected_places.h"

#include <cstdint>
#include <functional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// How much was removed.
struct RemovalTally {
    std::int64_t count = 0;
    std::int64_t bytes = 0; ///< sum of the removed items' sizes, at most the largest 64-bit number

    RemovalTally& operator+=(const RemovalTally& other);
    friend bool operator==(const RemovalTally&, const RemovalTally&) = default;
};

/// An item that lies in a Trash now.
struct TrashedItem {
    std::string originalPath;
    std::string trashedPath;
    RemovalTally tally;
};

/// What a run of the worker did.
struct RemovalReport {
    RemovalTally tally;
    std::vector<TrashedItem> trashed; ///< in order; none when items were deleted
    /// How many of the requests had their turn: all, unless the run was stopped. The one that was
    /// being worked on by then, and was not finished, is not among them.
    std::size_t tried = 0;

    RemovalReport& operator+=(RemovalReport other);
};

/// One item to be removed.
struct RemovalRequest {
    std::string path;
    std::int64_t bytes = 0; ///< what it counts when it is removed
    bool isDirectory = false; ///< as it was found
};

/// Trashes or deletes the items of a selection in order. Any thread but the main one.
class RemovalWorker {
public:
    /// Removes the items at these paths, in order, and tells of each where it lies now, an empty
    /// path when it is gone for good; an error leaves it uncounted.
    using Remove
        = std::function<std::vector<FileResult<std::string>>(std::span<const std::string> paths)>;

    /// `removeNonFolders` is for the items that were no folders when they were found, and leaves
    /// alone what is one by now; without it, that is looked at before `remove` is called.
    RemovalWorker(const ProtectedPlaces& protectedPlaces, const FilePlaces& places, Remove remove,
        Remove removeNonFolders = {});

    /// Tries every item in order, a few hundred at a time; a requested stop ends the run there and
    /// with the first item of which `remove` says that it was cancelled. Protected ones, those that
    /// cannot be removed - because they went with a folder before them, too -, and folders that
    /// were files when they were found are not counted; no error comes of it.
    RemovalReport run(
        std::span<const RemovalRequest> requests, const std::stop_token& stop = {}) const;

private:
    bool mayRemove(const RemovalRequest& request) const;

    const ProtectedPlaces& m_protectedPlaces;
    const FilePlaces& m_places;
    Remove m_remove;
    Remove m_removeNonFolders;
};

} // namespace kestavon
