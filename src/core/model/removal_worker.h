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

/// What a run of the worker removed.
struct RemovalTally {
    std::int64_t count = 0;
    std::int64_t bytes = 0; ///< sum of the removed items' sizes, at most the largest 64-bit number

    friend bool operator==(const RemovalTally&, const RemovalTally&) = default;
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
    /// Removes the items at these paths, in order, and tells what became of each; an error leaves
    /// it uncounted.
    using Remove = std::function<std::vector<FileResult<Done>>(std::span<const std::string> paths)>;

    RemovalWorker(const ProtectedPlaces& protectedPlaces, const FilePlaces& places, Remove remove);

    /// Tries every item in order, a few hundred at a time; between those it hears `stop`. Protected
    /// ones, those that cannot be removed, and folders that were files when they were found stay
    /// and are not counted; no error comes of it.
    RemovalTally run(std::span<const RemovalRequest> requests, const std::stop_token& stop = {});

private:
    bool mayRemove(const RemovalRequest& request) const;

    const ProtectedPlaces& m_protectedPlaces;
    const FilePlaces& m_places;
    Remove m_remove;
};

} // namespace kestavon
