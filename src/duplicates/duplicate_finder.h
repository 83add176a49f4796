#pragma once

#include "core/domain/duplicate_list.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// How far a search has come.
struct DuplicateProgress {
    std::int64_t bytesDone = 0; ///< of files that were read, or need not be read any more
    std::int64_t bytesToDo = 0; ///< of all files that are as large as another; never changes

    friend bool operator==(const DuplicateProgress&, const DuplicateProgress&) = default;
};

struct DuplicateSearchOptions {
    /// Folders (absolute paths) of which nothing counts as a duplicate.
    std::vector<std::string> leaveOut = {};
    /// The same on volumes that may not answer: known by their paths, and not looked at.
    std::vector<std::string> leaveOutUnseen = {};
    /// Called on the search's threads, some ten times a second; must return at once.
    std::function<void(const DuplicateProgress&)> progress = {};
    /// 0 chooses by the machine.
    unsigned threads = 0;
};

/// The groups of files with the same content among the records, each with its SHA-256: what hashing
/// every file that shares its recorded size with another would give. The groups that free most come
/// first, ties and the files of a group in the order of the records.
///
/// Only regular files that are not empty when they are recorded count; links are not followed.
/// Several hard links of a file are a group. What cannot be read is left out, and a file that
/// changed since the scan counts by the content that is read. Memory depends on the number of
/// files, not on their sizes.
///
/// Throws `Cancelled` soon after a stop is requested, even when a disk does not answer. Takes
/// seconds to hours: never on the main thread.
std::shared_ptr<const DuplicateList> findDuplicates(std::shared_ptr<const RecordList> records,
    const DuplicateSearchOptions& options, const std::stop_token& stop);

} // namespace kestavon
