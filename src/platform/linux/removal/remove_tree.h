#pragma once

#include "platform/linux/removal/tree_survey.h"

#include <cstdint>
#include <functional>
#include <stop_token>
#include <string>

namespace kestavon {

struct RemoveTreeOptions {
    bool refusesFolders = false; ///< ESTALE for an item that is one
    std::stop_token stop = {};
    /// Called, on the caller's thread, with the number of entries deleted so far.
    std::function<void(std::int64_t entries)> progress = {};
};

/// Deletes the item called `name` in `folder`; a folder with all that is in it, however deep and
/// without a path ever being put together; many folders side by side on several threads. Goes on
/// after an entry that cannot be deleted. Error 0, or the first failure: ECANCELED when stopped.
TreeFailure removeTree(int folder, const std::string& name, const RemoveTreeOptions& options);

/// What became of a surveyed item that was to be deleted.
struct SurveyedRemoval {
    bool isGone = false;
    bool removedSomething = false;
    bool keptSomething = false; ///< entries that are new, or not what the survey saw
    int error = 0; ///< the first failure
};

/// Deletes the item called `name` in `folder`, but only those of its entries that still are what
/// the survey saw.
SurveyedRemoval removeSurveyed(const TreeSurvey& survey, int folder, const std::string& name);

/// Deletes one entry; asks twice, because some disks refuse once. 0 also when it is gone already.
int removeEntry(int folder, const char* name, int flags);

} // namespace kestavon
