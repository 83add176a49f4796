#pragma once

#include "core/domain/result.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// The entries of one folder, in one buffer.
class FolderListing {
public:
    struct Entry {
        std::uint64_t inode;
        std::uint32_t nameOffset;
        std::uint8_t type; ///< DT_DIR and so on; DT_UNKNOWN where the file system does not tell
    };

    const std::vector<Entry>& entries() const { return m_entries; }
    std::string_view name(const Entry& entry) const { return m_names.c_str() + entry.nameOffset; }
    const char* nameText(const Entry& entry) const { return m_names.c_str() + entry.nameOffset; }

    /// In the order in which the disk holds the entries' own data: visiting them so saves seeks.
    void sortByInode();
    /// Leaves out the entries that the file system calls folders.
    void dropFolders();

private:
    friend Result<FolderListing, int> listFolder(int folder);
    std::string m_names;
    std::vector<Entry> m_entries;
};

/// Lists an opened folder from its start, without "." and "..". The error number is why not.
Result<FolderListing, int> listFolder(int folder);

} // namespace kestavon
