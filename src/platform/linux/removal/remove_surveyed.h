#pragma once

#include "platform/linux/removal/deed_journal.h"
#include "platform/linux/removal/tree_survey.h"

#include <string>

namespace kestavon {

/// What became of a surveyed item that was to be deleted.
struct SurveyedRemoval {
    bool isGone = false;
    bool removedSomething = false;
    bool keptSomething = false; ///< entries that are new, or not what the survey saw
    int error = 0; ///< the first failure
};

/// Deletes the item called `name` in `folder`, but only those of its entries that still are what
/// the survey saw. Folders that are made writable meanwhile are noted in the journal.
SurveyedRemoval removeSurveyed(
    const TreeSurvey& survey, int folder, const std::string& name, JournalEntry& journal);

} // namespace kestavon
