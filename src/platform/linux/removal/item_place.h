#pragma once

#include "platform/file_error.h"
#include "platform/linux/file_descriptor.h"

#include <cstddef>
#include <optional>
#include <string>

namespace kestavon {

/// An item as a name in an opened folder: what happens to the path above it meanwhile cannot make
/// it mean another item.
struct ItemPlace {
    FileDescriptor folder;
    std::string name; ///< one component: neither empty nor "." nor ".."
    std::string folderName; ///< the folder's name, for messages
};

/// Opens the folder that holds `path` (absolute, of any length). The error number is ENOENT,
/// EACCES, ELOOP and so on. With `noLinksBelow`, see `MoveOptions`.
Result<ItemPlace, int> openItemPlace(const std::string& path, const std::string& noLinksBelow = {});

/// Opens the folder `path` itself; a link at its end is followed.
Result<FileDescriptor, int> openFolder(const std::string& path);

/// How many bytes a name in the opened folder may have: 255 on most file systems, 143 where names
/// are encrypted.
std::size_t longestNameIn(int folder);

/// The path of an opened folder, without links; nothing when it has none any more, or one that is
/// too long for the kernel to tell.
std::optional<std::string> pathOfFolder(int folder);

} // namespace kestavon
