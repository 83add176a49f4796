#pragma once

#include "concurrency/processor_turns.h"
#include "core/domain/file_identity.h"
#include "core/domain/result.h"
#include "platform/linux/file_descriptor.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

struct stat;

namespace kestavon {

/// A regular file that is open for reading.
struct OpenedFile {
    FileDescriptor file;
    FileIdentity identity; ///< as it was when it was opened
};

FileIdentity identityOf(const struct stat& status);

/// Opens the file at an absolute path of any length, or gives the system's error number. Only a
/// regular file will do: a link in the last place is not followed (ELOOP), and anything else is
/// refused (EINVAL) without waiting for whoever is at the other end of it.
Result<OpenedFile, int> openRegularFile(const std::string& path);

/// Opens what is at the path, if it is no link, without a look at it; with errno when it cannot be.
/// Reading from anything but a regular file fails, or finds more than a file of that size has.
FileDescriptor openToRead(const std::string& path);

/// What a look at a file tells.
struct LookedAtFile {
    FileIdentity identity;
    bool hasSeveralNames = false;
};

/// Looks at the entry `name` of an open folder, links not followed; nothing unless it is a regular
/// file.
std::optional<LookedAtFile> lookAtRegularFile(int folder, const char* name);

/// Looks at an open file. Its file system is asked, even one on another machine whose last answer
/// is remembered here.
std::optional<FileIdentity> lookAgain(int file);

/// Opens the folder at an absolute path of any length, to look at its entries.
FileDescriptor openFolderToLookAt(const std::string& path);
/// The same, to write it out to the disk.
FileDescriptor openFolderToWriteOut(const std::string& path);

/// How reading a piece of a file went.
enum class ReadResult {
    complete,
    shorter, ///< the file ends before the piece does
    longer, ///< the file does not end with its last piece
    failed,
};

/// Reads exactly the piece of the file that begins at `offset` and is as long as `into`.
ReadResult readPiece(int file, std::int64_t offset, std::span<char> into);

/// The same for the last piece, and sees that the file does end there, whatever length it claims:
/// `intoAndOneMore` is one byte longer than the piece.
ReadResult readLastPiece(int file, std::int64_t offset, std::span<char> intoAndOneMore);

/// Whether the file has no byte at `size` or behind it, whatever length it claims.
bool endsAt(int file, std::int64_t size);

/// The number of the piece's first bytes that lie in memory, after reading those.
std::size_t readWithoutWaiting(int file, std::int64_t offset, std::span<char> into);

/// Asks the disk for a piece of the file without waiting for it.
void readAhead(int file, std::int64_t offset, std::int64_t bytes);

/// How far ahead of its reader a disk is kept, in bytes.
inline constexpr std::int64_t readAheadBytes = std::int64_t{2} << 20;

/// A file that is read piece by piece from its start to its end.
struct FileReadOnwards {
    FileDescriptor file;
    std::int64_t askedUpTo = 0; ///< where what the disk was asked for ends
};

/// Reads the next piece of such a file, which begins at `offset`; the last one as `readLastPiece`
/// does. Once a piece had to come from a disk, the disk is kept a few pieces ahead; while
/// it is waited for, it is another thread's turn.
ReadResult readOnwards(FileReadOnwards& file, std::int64_t offset, std::span<char> into,
    bool isLast, ProcessorTurns::Turn& turn);

/// How many files each of `threads` threads may hold open, so that neither they nor the rest of the
/// process run out of descriptors.
std::size_t openFilesPerThread(unsigned threads);

} // namespace kestavon
