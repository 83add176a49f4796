#include "duplicates/file_reading.h"

#include "platform/linux/removal/item_place.h"

#include <algorithm>
#include <cerrno>
#include <climits>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/uio.h>
#include <unistd.h>

namespace kestavon {

namespace {

// O_NONBLOCK, because a pipe may have taken the file's place since it was looked at.
constexpr int readingFlags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
constexpr int lookingFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;

std::int64_t nanoseconds(const timespec& time)
{
    return time.tv_sec * 1'000'000'000 + time.tv_nsec;
}

/// Reads as much as there is room for, until `enough` bytes are there or the file ends. Gives their
/// number; nothing when a read fails.
std::optional<std::size_t> readUpTo(
    int file, std::int64_t offset, std::span<char> into, std::size_t enough)
{
    std::size_t count = 0;
    while (count < enough) {
        const auto rest = into.subspan(count);
        const auto got
            = ::pread(file, rest.data(), rest.size(), offset + static_cast<std::int64_t>(count));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        count += static_cast<std::size_t>(got);
    }
    return count;
}

int openPath(const std::string& path, int flags)
{
    const int file = ::open(path.c_str(), flags);
    if (file >= 0 || errno != ENAMETOOLONG || path.size() < PATH_MAX)
        return file;
    const auto place = openItemPlace(path);
    if (!place) {
        errno = place.error();
        return -1;
    }
    return ::openat(place->folder.get(), place->name.c_str(), flags);
}

} // namespace

FileIdentity identityOf(const struct stat& status)
{
    return {.device = status.st_dev,
        .inode = status.st_ino,
        .size = status.st_size,
        .modifiedAt = nanoseconds(status.st_mtim),
        .changedAt = nanoseconds(status.st_ctim)};
}

Result<OpenedFile, int> openRegularFile(const std::string& path)
{
    FileDescriptor file(openPath(path, readingFlags));
    struct stat status { };
    if (!file || ::fstat(file.get(), &status) != 0)
        return errno;
    if (!S_ISREG(status.st_mode))
        return EINVAL;
    return OpenedFile{.file = std::move(file), .identity = identityOf(status)};
}

FileDescriptor openToRead(const std::string& path)
{
    return FileDescriptor(openPath(path, readingFlags));
}

std::optional<LookedAtFile> lookAtRegularFile(int folder, const char* name)
{
    struct stat status { };
    if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) != 0
        || !S_ISREG(status.st_mode))
        return std::nullopt;
    return LookedAtFile{.identity = identityOf(status), .hasSeveralNames = status.st_nlink > 1};
}

std::optional<FileIdentity> lookAgain(int file)
{
    struct statx status { };
    if (::statx(file, "", AT_EMPTY_PATH | AT_STATX_FORCE_SYNC, STATX_BASIC_STATS, &status) != 0
        || !S_ISREG(status.stx_mode))
        return std::nullopt;
    const auto time = [](const statx_timestamp& stamp) {
        return nanoseconds({.tv_sec = stamp.tv_sec, .tv_nsec = stamp.tv_nsec});
    };
    return FileIdentity{.device = makedev(status.stx_dev_major, status.stx_dev_minor),
        .inode = status.stx_ino,
        .size = static_cast<std::int64_t>(status.stx_size),
        .modifiedAt = time(status.stx_mtime),
        .changedAt = time(status.stx_ctime)};
}

FileDescriptor openFolderToLookAt(const std::string& path)
{
    return FileDescriptor(openPath(path, lookingFlags));
}

FileDescriptor openFolderToWriteOut(const std::string& path)
{
    return FileDescriptor(openPath(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

ReadResult readPiece(int file, std::int64_t offset, std::span<char> into)
{
    const auto count = readUpTo(file, offset, into, into.size());
    return count == into.size() ? ReadResult::complete
                                : (count ? ReadResult::shorter : ReadResult::failed);
}

ReadResult readLastPiece(int file, std::int64_t offset, std::span<char> intoAndOneMore)
{
    const auto count = readUpTo(file, offset, intoAndOneMore, intoAndOneMore.size() - 1);
    if (!count)
        return ReadResult::failed;
    if (*count + 1 == intoAndOneMore.size())
        return ReadResult::complete;
    return *count < intoAndOneMore.size() ? ReadResult::shorter : ReadResult::longer;
}

bool endsAt(int file, std::int64_t size)
{
    char byte = 0;
    return readPiece(file, size, {&byte, 1}) == ReadResult::shorter;
}

std::size_t readWithoutWaiting(int file, std::int64_t offset, std::span<char> into)
{
    iovec piece{.iov_base = into.data(), .iov_len = into.size()};
    const auto count = ::preadv2(file, &piece, 1, offset, RWF_NOWAIT);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

void readAhead(int file, std::int64_t offset, std::int64_t bytes)
{
    // Of a longer piece many disks would fetch only so much, and nobody would hear of it.
    constexpr std::int64_t fetchedAtOnce = 128 * 1024;
    for (std::int64_t asked = 0; asked < bytes; asked += fetchedAtOnce)
        ::posix_fadvise(
            file, offset + asked, std::min(fetchedAtOnce, bytes - asked), POSIX_FADV_WILLNEED);
}

ReadResult readOnwards(FileReadOnwards& file, std::int64_t offset, std::span<char> into,
    bool isLast, ProcessorTurns::Turn& turn)
{
    const auto got = readWithoutWaiting(file.file.get(), offset, into);
    const auto wanted = into.size() - (isLast ? 1 : 0);
    const auto end = offset + static_cast<std::int64_t>(wanted);
    const bool comesFromDisk = got < wanted || file.askedUpTo > 0;
    if (comesFromDisk && end + readAheadBytes / 2 > file.askedUpTo) {
        const auto from = std::max(offset + static_cast<std::int64_t>(got), file.askedUpTo);
        file.askedUpTo = isLast ? std::max(from, end) : from + readAheadBytes;
        readAhead(file.file.get(), from, file.askedUpTo - from);
    }
    if (got > wanted)
        return ReadResult::longer;
    if (got == wanted)
        return ReadResult::complete;
    const auto rest = into.subspan(got);
    const auto next = offset + static_cast<std::int64_t>(got);
    return turn.whileWaiting([&file, next, rest, isLast] {
        return isLast ? readLastPiece(file.file.get(), next, rest)
                      : readPiece(file.file.get(), next, rest);
    });
}

std::size_t openFilesPerThread(unsigned threads)
{
    constexpr std::size_t fewest = 4;
    constexpr std::size_t most = 64;
    constexpr std::size_t restOfTheProcess = 128;
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur <= restOfTheProcess)
        return fewest;
    return std::clamp<std::size_t>((limit.rlim_cur - restOfTheProcess) / threads, fewest, most);
}

} // namespace kestavon
