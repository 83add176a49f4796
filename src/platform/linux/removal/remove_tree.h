#pragma once

#include "platform/linux/removal/tree_survey.h"

#include <cstdint>
#include <functional>
#include <stop_token>
#include <string>

namespace kestavon {

class JournalEntry;

struct RemoveTreeOptions {
    bool refusesFolders = false; ///< ESTALE for an item that is one
    std::stop_token stop = {};
    /// Called, on the caller's thread, with the number of entries deleted so far.
    std::function<void(std::int64_t entries)> progress = {};
    JournalEntry* journal = nullptr; ///< for permissions that are borrowed
};

/// Deletes the item called `name` in `folder`; a folder with all that is in it, however deep and
/// without a path ever being put together; many folders side by side on several threads. Goes on
/// after an entry that cannot be deleted. Error 0, or the first failure: ECANCELED when stopped.
TreeFailure removeTree(int folder, const std::string& name, const RemoveTreeOptions& options);

/// Deletes one entry; asks twice, because some disks refuse once. 0 also when it is gone already.
int removeEntry(int folder, const char* name, int flags);

} // namespace kestavon
