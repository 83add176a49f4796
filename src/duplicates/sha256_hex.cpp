#include "duplicates/sha256_hex.h"

#include "core/domain/removal_guard.h"
#include "duplicates/sha256.h"

#include <cerrno>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace kestavon {

FileResult<FileDigest> sha256OfFile(const std::string& path, const std::stop_token& stop)
{
    const auto failure
        = [&path](int error) { return readError(fileErrorKind(error), lastComponent(path)); };
    const auto opened = openRegularFile(path);
    if (!opened)
        return failure(opened.error());
    const auto digest = sha256OfOpenFile(*opened, stop);
    if (!digest)
        return failure(digest.error());
    return *digest;
}

FileResult<std::string> sha256Hex(const std::string& path, const std::stop_token& stop)
{
    const auto file = sha256OfFile(path, stop);
    if (!file)
        return file.error();
    return hexText(file->digest);
}

Result<FileDigest, int> sha256OfOpenFile(const OpenedFile& opened, const std::stop_token& stop)
{
    const int file = opened.file.get();
    constexpr std::size_t pieceBytes = std::size_t{1} << 20;
    ::posix_fadvise(file, 0, 0, POSIX_FADV_SEQUENTIAL);
    Sha256 sha256;
    std::vector<char> piece(pieceBytes);
    for (off_t offset = 0;;) {
        if (stop.stop_requested())
            return ECANCELED;
        const auto count = ::pread(file, piece.data(), piece.size(), offset);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errno;
        if (count == 0)
            return FileDigest{
                .digest = sha256.finish(), .bytes = offset, .identity = opened.identity};
        sha256.update(std::span(piece).first(static_cast<std::size_t>(count)));
        offset += count;
    }
}

} // namespace kestavon
