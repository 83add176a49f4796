#include "platform/linux/removal/folder_listing.h"

#include "platform/linux/removal/retry.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include <dirent.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace kestavon {

void FolderListing::sortByInode()
{
    std::ranges::sort(m_entries, {}, &Entry::inode);
}

void FolderListing::dropFolders()
{
    std::erase_if(m_entries, [](const Entry& entry) { return entry.type == DT_DIR; });
}

Result<FolderListing, int> listFolder(int folder)
{
    // getdents64(2) itself: the library's readdir would allocate a stream for every folder.
    // Left unset, because the kernel fills what is read of it.
    alignas(dirent64) std::array<char, 32768>
        buffer; // NOLINT(cppcoreguidelines-pro-type-member-init)
    FolderListing listing;
    if (::lseek(folder, 0, SEEK_SET) < 0)
        return errno;
    for (;;) {
        const auto got = retrying(
            [&] { return ::syscall(SYS_getdents64, folder, buffer.data(), buffer.size()); });
        if (got < 0)
            return errno;
        if (got == 0)
            return listing;
        for (std::size_t at = 0; at < static_cast<std::size_t>(got);) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer.data() + at);
            at += entry->d_reclen;
            const std::string_view name = entry->d_name;
            // A slash in a name can only come from a broken file system, and would lead elsewhere.
            if (name.empty() || name == "." || name == ".." || name.find('/') != name.npos)
                continue;
            if (listing.m_names.size() > UINT32_MAX - 4096)
                return EOVERFLOW;
            listing.m_entries.push_back({.inode = entry->d_ino,
                .nameOffset = static_cast<std::uint32_t>(listing.m_names.size()),
                .type = entry->d_type});
            listing.m_names.append(name).push_back('\0');
        }
    }
}

} // namespace kestavon
