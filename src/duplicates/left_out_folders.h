#pragma once

#include "core/domain/record_list.h"
#include "duplicates/duplicate_finder.h"

#include <vector>

namespace kestavon {

/// Marks, by number, the folders of the list that lie at or below one that the options leave out,
/// also where links lead there under another name; and those of anybody's Trash, at the top of a
/// volume or in the home on a Mac's disk. Looks at the disk where names agree.
std::vector<bool> foldersLeftOut(const RecordList& records, const DuplicateSearchOptions& options);

} // namespace kestavon
