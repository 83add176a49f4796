#include "walk/folder_reader.h"

#include "core/domain/record_list.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>
#include <limits>

#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace kestavon {

namespace {

// O_NONBLOCK: whatever takes a folder's place in the meantime must not make the walk wait.
constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;

/// The system's directory entry, see getdents(2); a name longer than the room left in a block ends
/// the block.
struct DirectoryEntry {
    std::uint64_t inode;
    std::int64_t offset;
    std::uint16_t length;
    unsigned char type;
    char name[1];
};
constexpr std::size_t nameOffset = offsetof(DirectoryEntry, name);
constexpr std::size_t longestEntry = 1024 + 32;

OpenedFolder result(long fd)
{
    if (fd < 0)
        return {.file = FileDescriptor(), .error = errno};
    return {.file = FileDescriptor(static_cast<int>(fd)), .error = 0};
}

/// openat2 that refuses every link; the kernel may not have it (before 5.6) and a sandbox may
/// forbid it.
long openRefusingLinks(int base, const char* path, int flags, std::uint64_t refusingToo = 0)
{
    open_how how{};
    how.flags = static_cast<std::uint64_t>(flags);
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | refusingToo;
    long fd = -1;
    do
        fd = ::syscall(SYS_openat2, base, path, &how, sizeof how);
    while (fd < 0 && (errno == EAGAIN || errno == EINTR));
    return fd;
}

std::uint64_t deviceNumber(std::uint32_t upper, std::uint32_t lower)
{
    return std::uint64_t{upper} << 32U | lower;
}

std::int64_t nanoseconds(const statx_timestamp& time)
{
    using Limits = std::numeric_limits<std::int64_t>;
    std::int64_t value = 0;
    if (__builtin_mul_overflow(time.tv_sec, std::int64_t{1'000'000'000}, &value)
        || __builtin_add_overflow(value, std::int64_t{time.tv_nsec}, &value))
        value = time.tv_sec < 0 ? Limits::min() : Limits::max();
    // The lowest value says that there is no time.
    return std::max(value, RecordColumns::unknownTime + 1);
}

} // namespace

OpenedFolder openRootFolder(const std::string& path)
{
    return result(::open(path.c_str(), folderFlags));
}

FolderOpener::FolderOpener()
{
    // Only an answer about the call itself counts: too many open files say nothing of it.
    const auto tried = result(openRefusingLinks(AT_FDCWD, ".", O_PATH | O_CLOEXEC)).error;
    m_refusesLinksOnTheWay = tried != ENOSYS && tried != EPERM && tried != EINVAL && tried != E2BIG;
}

OpenedFolder FolderOpener::open(int base, const char* path) const
{
    return openAt(base, path, folderFlags | O_NOFOLLOW);
}

OpenedFolder FolderOpener::openOnSameDevice(int base, const char* path) const
{
    return result(openRefusingLinks(base, path, folderFlags | O_NOFOLLOW, RESOLVE_NO_XDEV));
}

OpenedFolder FolderOpener::openWithoutMounting(int base, const char* path) const
{
    // Asking for a folder would mount it; see O_PATH in open(2).
    return openAt(base, path, O_PATH | O_CLOEXEC | O_NOFOLLOW);
}

OpenedFolder FolderOpener::openAt(int base, const char* path, int flags) const
{
    if (m_refusesLinksOnTheWay)
        return result(openRefusingLinks(base, path, flags));
    return result(::openat(base, path, flags));
}

Listing listFolder(int folder, std::span<char> block)
{
    Listing listing;
    const auto room = block.size() - listingSlack;
    while (room - listing.bytes >= longestEntry) {
        const auto read
            = ::syscall(SYS_getdents64, folder, block.data() + listing.bytes, room - listing.bytes);
        if (read > 0) {
            listing.bytes += static_cast<std::size_t>(read);
        } else if (read == 0) {
            listing.atEnd = true;
            return listing;
        } else if (errno != EINTR) {
            // A folder that was removed while open lists no more: that is its end.
            listing.error = errno == ENOENT ? 0 : errno;
            listing.atEnd = true;
            return listing;
        }
    }
    return listing;
}

void collectNames(std::span<const char> block, std::vector<ListedName>& names)
{
    for (std::size_t at = 0; at < block.size();) {
        const char* entry = block.data() + at;
        const char* name = entry + nameOffset;
        std::uint16_t entryLength = 0;
        std::memcpy(&entryLength, entry + offsetof(DirectoryEntry, length), sizeof entryLength);
        at += entryLength;
        if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
            continue;
        const auto length = std::strlen(name);
        names.push_back({.key = orderKey(name, length),
            .bytes = name,
            .length = static_cast<std::uint32_t>(length),
            .isFolder = entry[offsetof(DirectoryEntry, type)] == DT_DIR});
    }
}

std::uint64_t orderKey(const char* name, std::size_t length)
{
    std::uint64_t first = 0;
    if (length >= sizeof first)
        std::memcpy(&first, name, sizeof first);
    else
        std::memcpy(&first, name, length);
    if constexpr (std::endian::native == std::endian::little)
        first = __builtin_bswap64(first);
    return first;
}

void sortByBytes(std::vector<ListedName>& names)
{
    std::ranges::sort(names, [](const ListedName& a, const ListedName& b) {
        return a.key != b.key ? a.key < b.key : std::strcmp(a.bytes, b.bytes) < 0;
    });
}

std::optional<EntryFacts> lookAtSize(int folder, const char* name)
{
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): clearing it would show in the profile
    struct stat facts;
    if (::fstatat(folder, name, &facts, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) != 0)
        return std::nullopt;
    EntryFacts entry;
    entry.isDirectory = S_ISDIR(facts.st_mode);
    if (!entry.isDirectory)
        entry.size = facts.st_size;
    entry.modifiedAt = RecordColumns::unknownTime;
    entry.device = deviceNumber(major(facts.st_dev), minor(facts.st_dev));
    return entry;
}

std::optional<EntryFacts> lookAt(int folder, const char* name)
{
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): clearing it would show in the profile
    struct statx facts;
    const int flags = AT_SYMLINK_NOFOLLOW | AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT
        | (*name == '\0' ? AT_EMPTY_PATH : 0);
    if (::statx(folder, name, flags, STATX_TYPE | STATX_SIZE | STATX_MTIME, &facts) != 0)
        return std::nullopt;

    EntryFacts entry;
    entry.isDirectory = (facts.stx_mask & STATX_TYPE) && S_ISDIR(facts.stx_mode);
    // Folders count 0: their bytes are in the files below them.
    if ((facts.stx_mask & STATX_SIZE) && !entry.isDirectory)
        entry.size = static_cast<std::int64_t>(
            std::min<std::uint64_t>(facts.stx_size, std::numeric_limits<std::int64_t>::max()));
    entry.modifiedAt
        = facts.stx_mask & STATX_MTIME ? nanoseconds(facts.stx_mtime) : RecordColumns::unknownTime;
    entry.device = deviceNumber(facts.stx_dev_major, facts.stx_dev_minor);
    return entry;
}

} // namespace kestavon
