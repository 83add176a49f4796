#pragma once

#include "platform/file_error.h"

#include <string>
#include <vector>

namespace kestavon {

/// The names in one folder that lead on to folders, hidden ones too; in no order.
struct Subfolders {
    std::vector<std::string> folders;
    /// Links, and what the file system gives no type for: `leadsToFolder` tells. Nobody has looked,
    /// because a link may lead to a disk that never answers.
    std::vector<std::string> unknown;
};

/// What the folder at an absolute path holds; a link to a folder is followed. Why not, in a
/// sentence for a person. Any thread but the main one: a dead disk holds it up for ever.
FileResult<Subfolders> subfoldersOf(const std::string& folder);

/// Whether `path` is a folder or a link to one. As `subfoldersOf`, not on the main thread.
bool leadsToFolder(const std::string& path);

} // namespace kestavon
