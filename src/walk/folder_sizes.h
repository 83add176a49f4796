#pragma once

#include "walk/folder_walk.h"

#include <cstdint>
#include <functional>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// A folder whose size is wanted.
struct FolderToMeasure {
    FolderWalk::FilePointer parent; ///< the open folder that holds it
    std::string name;
    std::uint64_t device = 0; ///< as `lookAt` told
};

struct SizeOptions {
    unsigned threads = 0; ///< 0: the usual number
    /// Called for every folder that was read, on any thread; it must own what it uses.
    std::function<void()> visited = {};
};

/// The sizes of the folders in bytes, in their order: of each, the logical sizes of all files in
/// it, however deep. A file of several names counts with each of them, a link with its own text,
/// and folders themselves nothing. A folder is entered whatever it is; packages and AppDirs that
/// lie in it count nothing. What cannot be read is left out, and sums stop at the largest 64-bit
/// number.
///
/// All of them are walked together. Soon after a stop is requested the sums so far come back. Not
/// on the main thread.
std::vector<std::int64_t> folderSizes(
    std::vector<FolderToMeasure> folders, const std::stop_token& stop, SizeOptions options = {});

} // namespace kestavon
