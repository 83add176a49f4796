#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace kestavon {

/// What the folder `name` in the folder open at `parent` and everything in it occupy on the disk,
/// in bytes; a file under several names in it counts once, links are not followed. Nothing when a
/// part cannot be read or lies more than 200 folders down.
std::optional<std::int64_t> bytesOnDisk(int parent, const std::string& name);

/// What is known of one folder in a Trash.
struct DirectorySize {
    std::string name;
    std::int64_t bytes = 0;
    /// The .trashinfo's modification time in seconds since 1970, by which a reader knows that this
    /// is about this folder and not about an earlier one of the same name.
    std::int64_t trashInfoTime = 0;
};

/// A Trash's file `directorysizes` spares other programs the walk through the folders in it. It is
/// a cache: what cannot be written is left out, and no failure is reported. The file is replaced as
/// a whole and lines of other folders stay as they are. `trashFolder` is the Trash, opened.
void recordDirectorySizes(int trashFolder, std::span<const DirectorySize> sizes);

/// Takes the line of a folder that has left the Trash out of `directorysizes`.
void forgetDirectorySize(int trashFolder, const std::string& name);

} // namespace kestavon
