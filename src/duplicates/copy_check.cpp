#include "duplicates/copy_check.h"

#include "core/domain/removal_guard.h"
#include "duplicates/file_reading.h"
#include "duplicates/sha256_hex.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <span>
#include <vector>

#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace kestavon {

namespace {

/// Whether both may be one file. A file system that shows another's files - a union of folders, a
/// share of this machine - gives them a device and numbers of its own, but the times are the
/// file's. Nobody can choose the time of change, so that two files hardly ever agree in it.
bool mayBeOneFile(const FileIdentity& a, const FileIdentity& b)
{
    return a.isSameFileAs(b)
        || (a.device != b.device && a.size == b.size && a.modifiedAt == b.modifiedAt
            && a.changedAt == b.changedAt);
}

bool holdsContent(const OpenedFile& opened, const KnownFile& known, const Sha256Digest& digest,
    const std::stop_token& stop)
{
    if (opened.identity == known.identity)
        return true;
    if (opened.identity.size != known.identity.size)
        return false;
    // Touched, renamed, or one of its other names is gone: only the content counts.
    const auto present = sha256OfOpenFile(opened, stop);
    return present && present->digest == digest;
}

bool haveEqualContents(const OpenedFile& a, const OpenedFile& b, const std::stop_token& stop)
{
    constexpr std::size_t pieceBytes = 256 * 1024;
    const auto size = a.identity.size;
    if (size != b.identity.size)
        return false;
    std::vector<char> ofA(pieceBytes);
    std::vector<char> ofB(pieceBytes);
    for (std::int64_t offset = 0; offset < size;) {
        const auto count = static_cast<std::size_t>(
            std::min<std::int64_t>(static_cast<std::int64_t>(pieceBytes), size - offset));
        if (stop.stop_requested()
            || readPiece(a.file.get(), offset, std::span(ofA).first(count)) != ReadResult::complete
            || readPiece(b.file.get(), offset, std::span(ofB).first(count)) != ReadResult::complete
            || std::memcmp(ofA.data(), ofB.data(), count) != 0)
            return false;
        offset += static_cast<std::int64_t>(count);
    }
    return endsAt(a.file.get(), size) && endsAt(b.file.get(), size);
}

/// Whether a power cut takes the file, wherever it was written to.
bool isOnlyInMemory(const OpenedFile& opened)
{
    struct statfs fileSystem { };
    return ::fstatfs(opened.file.get(), &fileSystem) == 0
        && (fileSystem.f_type == TMPFS_MAGIC || fileSystem.f_type == RAMFS_MAGIC);
}

} // namespace

std::optional<KnownFile> presentState(
    const KnownFile& file, const Sha256Digest& digest, const std::stop_token& stop)
{
    const auto opened = openRegularFile(file.path);
    if (!opened || !holdsContent(*opened, file, digest, stop))
        return std::nullopt;
    return KnownFile{.path = file.path, .identity = opened->identity};
}

FileResult<SpareCopy> checkCopyIsSpare(const KnownFile& kept, const KnownFile& copy,
    const Sha256Digest& digest, CopyProof proof, const std::stop_token& stop,
    const FilesOnDisk& onDisk)
{
    const auto changed = removalError(FileError::Kind::changed, lastComponent(copy.path));
    const auto openedKept = openRegularFile(kept.path);
    const auto openedCopy = openRegularFile(copy.path);
    if (!openedKept || !openedCopy || mayBeOneFile(openedKept->identity, openedCopy->identity)
        || !holdsContent(*openedKept, kept, digest, stop)
        || (isOnlyInMemory(*openedKept) && !isOnlyInMemory(*openedCopy)))
        return changed;
    const bool isCopy = proof == CopyProof::content
        ? haveEqualContents(*openedKept, *openedCopy, stop) && onDisk.hold(kept.path, *openedKept)
        : holdsContent(*openedCopy, copy, digest, stop);
    SpareCopy spare{.kept = {.path = kept.path, .identity = openedKept->identity},
        .copy = {.path = copy.path, .identity = openedCopy->identity}};
    // Looked at once more: reading may have taken long.
    if (!isCopy || !isUntouched(spare.kept) || !isUntouched(spare.copy))
        return changed;
    return spare;
}

bool isUntouched(const KnownFile& file)
{
    const auto opened = openRegularFile(file.path);
    return opened && lookAgain(opened->file.get()) == file.identity;
}

} // namespace kestavon
