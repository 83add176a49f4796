#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kestavon {

/// What the folder `name` in the folder open at `parent` and everything in it occupy on the disk,
/// in bytes; a file under several names in it counts once, links are not followed. Nothing when a
/// part cannot be read or lies more than 200 folders down.
std::optional<std::int64_t> bytesOnDisk(int parent, const std::string& name);

/// A Trash's file `directorysizes` spares other programs the walk through the folders in it. It is
/// a cache: what cannot be written is left out, and no failure is reported. The file is replaced as
/// a whole and lines of other folders stay as they are.
///
/// `trashFolder` is the Trash, opened; `trashInfoTime` the .trashinfo's modification time in
/// seconds since 1970, by which a reader knows that the line is of this folder and not of an
/// earlier one of the same name.
void recordDirectorySize(
    int trashFolder, const std::string& name, std::int64_t bytes, std::int64_t trashInfoTime);

/// Takes the line of a folder that has left the Trash out of `directorysizes`.
void forgetDirectorySize(int trashFolder, const std::string& name);

} // namespace kestavon
