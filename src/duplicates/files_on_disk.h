#pragma once

#include "core/domain/file_identity.h"
#include "duplicates/file_reading.h"

#include <span>
#include <stop_token>
#include <string>
#include <unordered_map>

namespace kestavon {

/// Files that a power cut leaves, as they were when that was made sure of.
class FilesOnDisk {
public:
    FilesOnDisk() = default;
    /// Waits for the files at the paths and for the folders that hold them, for many at the same
    /// time: a disk takes hardly longer for all of them than for one. What cannot be waited for, or
    /// not any more after a stop, is none of the files. Any thread but the main one.
    explicit FilesOnDisk(std::span<const std::string> paths, const std::stop_token& stop = {});

    /// Whether the opened file is one of those and has not changed; else it is waited for.
    bool hold(const std::string& path, const OpenedFile& opened) const;

private:
    std::unordered_map<std::string, FileIdentity> m_files; ///< by path
};

} // namespace kestavon
