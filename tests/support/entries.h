#pragma once

#include <filesystem>
#include <iterator>
#include <string>

#include <sys/stat.h>

namespace kestavon::test {

/// Whether anything lies at the path, a link that leads nowhere included.
inline bool isThere(const std::string& path)
{
    struct stat status { };
    return ::lstat(path.c_str(), &status) == 0;
}

inline std::size_t entriesIn(const std::string& folder)
{
    return static_cast<std::size_t>(std::distance(
        std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator()));
}

} // namespace kestavon::test
