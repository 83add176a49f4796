#pragma once

#include <cstddef>
#include <string>

namespace kestavon {

/// What reading a small file gave.
struct SmallFile {
    std::string bytes;
    int error = 0; ///< 0, or the errno value that says why the file could not be read as a whole
};

/// As large as a configuration file may reasonably be, in bytes.
inline constexpr std::size_t largestConfigurationFile = 256 * 1024;

/// Reads a file as a whole. Only regular files are read: a pipe of that name must not hold up the
/// program. EFBIG for a file of more than `limit` bytes.
SmallFile readSmallFile(const std::string& path, std::size_t limit = largestConfigurationFile);

/// Puts `bytes` in the place of the file, readable and writable by its owner only, and makes its
/// folder (mode 0700) and those above it when they are missing. Whatever happens, the file holds
/// either its old bytes or the new ones. When `path` is a link, what it leads to is replaced.
/// False when it could not be done.
bool replaceSmallFile(const std::string& path, const std::string& bytes);

} // namespace kestavon
