#pragma once

#include "core/domain/result.h"

#include <cstdint>

#include <sys/stat.h>
#include <sys/types.h>

namespace kestavon {

/// What tells two files, folders or links apart as long as both exist.
struct Identity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    friend auto operator<=>(const Identity&, const Identity&) = default;
};

/// What the system says about an entry itself; links are not followed.
struct EntryStatus {
    Identity identity;
    std::uint64_t mount = 0; ///< the mounted volume it was reached through; 0 when not told
    mode_t mode = 0; ///< type and permissions
    uid_t owner = 0;
    gid_t group = 0;
    std::uint64_t links = 0;
    dev_t deviceNumber = 0; ///< for device files
    std::int64_t size = 0; ///< bytes
    std::int64_t allocated = 0; ///< bytes
    struct timespec accessed { };
    struct timespec modified { };
    struct timespec changed { };
    bool isMountPoint = false;
    bool isImmutable = false; ///< or may only grow: cannot be removed

    bool isFolder() const { return S_ISDIR(mode); }
    bool isFile() const { return S_ISREG(mode); }
    bool isLink() const { return S_ISLNK(mode); }
    mode_t permissions() const { return mode & 07777; }
};

/// The status of `name` in `folder`, or of `folder` itself when the name is empty.
Result<EntryStatus, int> statusOf(int folder, const char* name);

/// Whether nothing of the entry was touched between two looks at it. What lies in a folder is not
/// compared.
bool isUntouched(const EntryStatus& before, const EntryStatus& now);

/// The same while names of the entry are taken away: of files with several names only what that
/// leaves alone is compared.
bool isUnchanged(const EntryStatus& before, const EntryStatus& now);

} // namespace kestavon
