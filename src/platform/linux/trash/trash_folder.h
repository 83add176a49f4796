#pragma once

#include "core/domain/result.h"
#include "platform/linux/file_descriptor.h"

#include <string>

#include <sys/types.h>

namespace kestavon {

/// A Trash as the desktop's programs share it, opened: the items in `files`, and in `info` a record
/// of each.
struct TrashFolder {
    std::string path;
    /// The top folder of the Trash's volume, from which its records name their items; empty for the
    /// Trash of the home, whose records name whole paths.
    std::string topFolder;
    FileDescriptor root;
    FileDescriptor files;
    FileDescriptor info;
};

/// Opens the Trash in the folder for programs' data, and makes what is missing of it and of the
/// folders above it (mode 0700). The Trash itself may be a link; `files` and `info` may not, and
/// all of it must belong to the user. Otherwise the errno value that says why not.
Result<TrashFolder, int> openHomeTrash(const std::string& dataHome, uid_t user);

/// Opens the user's Trash on another volume: `.Trash/<user>` where an administrator has made a
/// proper `.Trash` (a folder and no link, with the sticky bit), else `.Trash-<user>`. What is
/// missing is made with mode 0700. A folder that is a link, belongs to another user, or lets others
/// write is not used: on a volume that everybody writes to, anybody may have put it there.
Result<TrashFolder, int> openVolumeTrash(const std::string& topFolder, uid_t user);

/// Opens a Trash that is there already; fails when it is not, or when it is none to be used.
Result<TrashFolder, int> openExistingTrash(const std::string& path, uid_t user);

} // namespace kestavon
