#pragma once

#include "platform/linux/file_descriptor.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// What the file system tells of one entry, links not followed.
struct EntryFacts {
    std::int64_t size = 0; ///< bytes; 0 for a folder
    std::int64_t modifiedAt = 0; ///< as in `RecordColumns::modifiedAt`
    std::uint64_t device = 0; ///< of the file system the entry lies on
    bool isDirectory = false;
};

/// One name of a listed folder. Points into the block it was read from.
struct ListedName {
    std::uint64_t key; ///< the first eight bytes, ordered as the bytes are
    const char* bytes; ///< ended by a NUL
    std::uint32_t length;
    bool isFolder; ///< as the listing tells; not every file system does

    std::string_view view() const { return {bytes, length}; }
};

/// What opening a path gave: a file, or the system's error number.
struct OpenedFolder {
    FileDescriptor file;
    int error = 0;
};

/// Opens the folder at an absolute path; a link to a folder is followed.
OpenedFolder openRootFolder(const std::string& path);

/// Opens folders by their path below an open folder. No link on the way is followed, so that a
/// folder replaced by a link during a walk cannot lead it elsewhere. Any thread.
class FolderOpener {
public:
    explicit FolderOpener();

    OpenedFolder open(int base, const char* path) const;

    /// The same for a folder that lies on the same file system as `base`; any other is refused with
    /// EXDEV. Only where `canStayOnDevice`.
    OpenedFolder openOnSameDevice(int base, const char* path) const;
    bool canStayOnDevice() const { return m_refusesLinksOnTheWay; }

    /// A handle that tells about the folder but mounts nothing that is mounted on demand.
    OpenedFolder openWithoutMounting(int base, const char* path) const;

private:
    OpenedFolder openAt(int base, const char* path, int flags) const;

    bool m_refusesLinksOnTheWay = false; ///< else only a link in the last place is refused
};

/// Bytes that a block of listed names must have behind its end.
inline constexpr std::size_t listingSlack = 8;

/// Fills `block` (less `listingSlack`) with what the folder lists next.
struct Listing {
    std::size_t bytes = 0;
    bool atEnd = false; ///< the folder has no more; otherwise the block is full
    int error = 0; ///< the listing broke off; what was read before it stands
};
Listing listFolder(int folder, std::span<char> block);

/// Appends the names in a filled block, less "." and "..", in the order of the listing.
void collectNames(std::span<const char> block, std::vector<ListedName>& names);

/// Orders names by their bytes.
void sortByBytes(std::vector<ListedName>& names);
std::uint64_t orderKey(const char* name, std::size_t length);

/// Looks for an entry's size, type and device only, which costs less; the time is unknown. On
/// failure nothing, and errno tells why.
std::optional<EntryFacts> lookAtSize(int folder, const char* name);

/// Looks at an entry of an open folder; an empty name means the folder itself. On failure nothing,
/// and errno tells why.
std::optional<EntryFacts> lookAt(int folder, const char* name);

} // namespace kestavon
