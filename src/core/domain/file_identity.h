#pragma once

#include <cstdint>

namespace kestavon {

/// What the file system told of a file at one moment. While all of it stays the same, so does the
/// content, as far as a clock of finite steps can show.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0; ///< bytes
    std::int64_t modifiedAt = 0; ///< nanoseconds since 1970
    std::int64_t changedAt = 0; ///< of content, name or permissions; nanoseconds since 1970

    /// Whether both are names of one file on the disk.
    bool isSameFileAs(const FileIdentity& other) const
    {
        return device == other.device && inode == other.inode;
    }

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

} // namespace kestavon
