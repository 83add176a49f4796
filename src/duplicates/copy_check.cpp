#include "duplicates/copy_check.h"

#include "core/domain/removal_guard.h"
#include "duplicates/file_reading.h"
#include "duplicates/sha256_hex.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <vector>

#include <sys/stat.h>

namespace kestavon {

namespace {

bool holdsContent(const OpenedFile& opened, const KnownFile& known, const Sha256Digest& digest,
    const std::stop_token& stop)
{
    if (opened.identity == known.identity)
        return true;
    if (opened.identity.size != known.identity.size)
        return false;
    // Touched, renamed, or one of its other names is gone: only the content counts.
    const auto present = sha256OfOpenFile(opened.file.get(), stop);
    return present && *present == digest;
}

bool haveEqualContents(const OpenedFile& a, const OpenedFile& b, const std::stop_token& stop)
{
    constexpr std::size_t pieceBytes = 256 * 1024;
    if (a.identity.size != b.identity.size)
        return false;
    std::vector<char> ofA(pieceBytes);
    std::vector<char> ofB(pieceBytes);
    for (std::int64_t offset = 0; offset < a.identity.size;) {
        const auto length = std::min<std::int64_t>(
            static_cast<std::int64_t>(pieceBytes), a.identity.size - offset);
        const auto count = static_cast<std::size_t>(length);
        if (stop.stop_requested()
            || readPiece(a.file.get(), offset, std::span(ofA).first(count)) != ReadResult::complete
            || readPiece(b.file.get(), offset, std::span(ofB).first(count)) != ReadResult::complete
            || std::memcmp(ofA.data(), ofB.data(), count) != 0)
            return false;
        offset += length;
    }
    return true;
}

/// Whether the path still leads to the file that was opened by it, and nobody wrote to it since.
bool isStillAt(const std::string& path, const OpenedFile& opened)
{
    struct stat status { };
    return ::lstat(path.c_str(), &status) == 0 && identityOf(status) == opened.identity;
}

} // namespace

FileResult<Done> checkCopyIsSpare(const KnownFile& kept, const KnownFile& copy,
    const Sha256Digest& digest, CopyProof proof, const std::stop_token& stop)
{
    const auto changed = removalError(FileError::Kind::changed, lastComponent(copy.path));
    const auto openedKept = openRegularFile(kept.path);
    const auto openedCopy = openRegularFile(copy.path);
    if (!openedKept || !openedCopy || openedKept->identity.isSameFileAs(openedCopy->identity)
        || !holdsContent(*openedKept, kept, digest, stop))
        return changed;
    const bool isCopy = proof == CopyProof::content
        ? haveEqualContents(*openedKept, *openedCopy, stop)
        : holdsContent(*openedCopy, copy, digest, stop);
    // Looked at once more: reading may have taken long.
    if (!isCopy || !isStillAt(kept.path, *openedKept) || !isStillAt(copy.path, *openedCopy))
        return changed;
    return Done{};
}

} // namespace kestavon
