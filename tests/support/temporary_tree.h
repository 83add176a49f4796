#pragma once

#include "core/domain/timestamp.h"
#include "support/temporary_folder.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kestavon::test {

/// A temporary folder for trees as odd as file systems allow: dates, holes, links, names of any
/// bytes, folders that may not be read, and trees deeper than any path can name. Names are relative
/// to the folder; what cannot be made throws std::system_error.
class TemporaryTree : public TemporaryFolder {
public:
    ~TemporaryTree();

    /// Makes a file of `bytes` bytes that takes no room on the disk, with the folders above it.
    void file(std::string_view name, std::int64_t bytes = 0) const;
    void folder(std::string_view name) const { makeFolder(name); }
    void link(std::string_view name, std::string_view target) const;
    /// Makes a chain of `levels` folders, each named `name` and lying in the one before; the last
    /// holds a file "bottom" of one byte.
    void chain(std::string_view name, int levels) const;

    /// Dates an entry; a link itself, not what it points to.
    void setModified(std::string_view name, Timestamp time) const;
    void setMode(std::string_view name, unsigned mode) const;
};

} // namespace kestavon::test
