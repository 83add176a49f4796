#pragma once

#include "core/domain/record_list.h"

#include <string>
#include <vector>

namespace kestavon {

/// Marks, by number, the folders of the list that lie at or below one of `leaveOut`, also where
/// links lead there under another name; and those of anybody's Trash at the top of a volume.
/// Looks at the disk where names agree.
std::vector<bool> foldersLeftOut(
    const RecordList& records, const std::vector<std::string>& leaveOut);

} // namespace kestavon
