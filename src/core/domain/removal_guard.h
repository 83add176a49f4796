#pragma once

#include <array>
#include <string_view>

namespace kestavon {

/// Folders that nothing in the program may remove, nor anything below them.
inline constexpr std::array<std::string_view, 7> protectedPathPrefixes{
    "/System",
    "/usr",
    "/bin",
    "/sbin",
    "/private/var/db",
    "/Applications",
    "/Library/Apple",
};

/// Endings of names that are never removed, wherever they lie.
inline constexpr std::array<std::string_view, 3> protectedNameSuffixes{
    ".thumbnail",
    ".appex",
    ".xpc",
};

/// Whether `path` equals `prefix` or lies below it, as every absolute path does below "/". Plain
/// text: "/usrlocal" is not below "/usr".
bool isAtOrBelow(std::string_view path, std::string_view prefix);

/// The path's last component; trailing slashes do not count. "/" for the root.
std::string_view lastComponent(std::string_view path);

/// The one rule that decides whether the program may move or delete a path at all. A plain test of
/// the text: letter case counts, links are not resolved, and the disk is not touched. Any thread.
bool isSafeToRemove(std::string_view path);

} // namespace kestavon
