#pragma once

#include "core/domain/duplicate_list.h"
#include "core/domain/file_identity.h"
#include "duplicates/files_on_disk.h"
#include "platform/file_error.h"

#include <optional>
#include <stop_token>
#include <string>

namespace kestavon {

/// A file of a group as the search saw it.
struct KnownFile {
    std::string path;
    FileIdentity identity;
};

/// How sure one has to be that a copy is one.
enum class CopyProof {
    identity, ///< a file that has not changed since the search has its content still
    content, ///< both files are read again, side by side
};

/// A copy that can go and the file that stays for it, as they were when they were compared.
struct SpareCopy {
    KnownFile kept;
    KnownFile copy;
};

/// The file as it is now, if it still has the content of this digest: read whole when it is not
/// what it was, and not at all otherwise. Nothing when it has not, or on a stop. Any thread but the
/// main one.
std::optional<KnownFile> presentState(
    const KnownFile& file, const Sha256Digest& digest, const std::stop_token& stop = {});

/// Gives the two as they are now if the file at `copy` can go without anything being lost: it is a
/// regular file with the content of this digest, and `kept` is another one. When not, the error
/// says that one of the two is gone or changed; two names of one file count as such, also when they
/// lead there through different file systems, and so does a file that would stay in memory only,
/// for a copy on a disk. With `CopyProof::identity`, only what changed since
/// the search is read; with `CopyProof::content` both are, and `kept` is on the disk afterwards,
/// not only in memory; those of `onDisk` are not waited for again. Any thread but the main one.
FileResult<SpareCopy> checkCopyIsSpare(const KnownFile& kept, const KnownFile& copy,
    const Sha256Digest& digest, CopyProof proof, const std::stop_token& stop = {},
    const FilesOnDisk& onDisk = {});

/// Whether the file can be opened by its path and is what it was when it was last looked at. Asks
/// its file system anew, whatever is remembered here.
bool isUntouched(const KnownFile& file);

} // namespace kestavon
