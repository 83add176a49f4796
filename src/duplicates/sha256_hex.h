#pragma once

#include "core/domain/duplicate_list.h"
#include "core/domain/file_identity.h"
#include "duplicates/file_reading.h"
#include "platform/file_error.h"

#include <stop_token>
#include <string>

namespace kestavon {

/// A file's content, summed up.
struct FileDigest {
    Sha256Digest digest{};
    std::int64_t bytes = 0; ///< that were read
    FileIdentity identity; ///< the file as it was just before it was read
};

/// The SHA-256 digest of the regular file at an absolute path, read to its end. Anything but a
/// regular file is refused, a link too, and a read that fails gives no digest. A requested stop
/// ends it between two pieces of a mebibyte (`Kind::cancelled`). Any thread.
FileResult<FileDigest> sha256OfFile(const std::string& path, const std::stop_token& stop = {});

/// The same digest as 64 lower-case hexadecimal characters.
FileResult<std::string> sha256Hex(const std::string& path, const std::stop_token& stop = {});

/// The same of a file that is open, from its start to its end, or the system's error number.
Result<FileDigest, int> sha256OfOpenFile(
    const OpenedFile& opened, const std::stop_token& stop = {});

} // namespace kestavon
