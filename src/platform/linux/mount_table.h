#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// One mounted file system.
struct Mount {
    std::string point; ///< the folder it is mounted on
    std::string type; ///< as the kernel names it: "ext4", "tmpfs", "nfs4"

    friend bool operator==(const Mount&, const Mount&) = default;
};

/// The mounts that a text in the form of /proc/self/mountinfo lists, in its order; lines that make
/// no sense are skipped. See proc(5).
std::vector<Mount> parseMountInfo(std::string_view text);

/// What is mounted now, as this process sees it; empty when the kernel does not tell. Touches none
/// of the file systems, so that a dead network server cannot hold it up.
std::vector<Mount> currentMounts();

/// Whether files of a user can lie there: false for what the kernel makes up (proc, sysfs, …).
bool holdsFiles(const Mount& mount);

/// Whether the absolute path leads to another machine, or to a program that stands for one, and
/// looking at it may take for ever. Only names are compared: links are not followed.
bool isOnServer(std::string_view path, const std::vector<Mount>& mounts);

} // namespace kestavon
