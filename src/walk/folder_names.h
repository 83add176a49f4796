#pragma once

#include "walk/folder_walk.h"

#include <optional>
#include <string>
#include <vector>

namespace kestavon {

/// An open folder and what it lists.
struct NamedEntries {
    FolderWalk::FilePointer folder;
    std::vector<std::string> names; ///< in byte order
};

/// The names in the folder at an absolute path, hidden ones too; a link to a folder is followed.
/// Nothing when it cannot be opened and listed to its end.
std::optional<NamedEntries> namedEntriesOf(const std::string& folder);

} // namespace kestavon
