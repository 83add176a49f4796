#pragma once

#include "platform/linux/file_descriptor.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace kestavon {

/// What a move across devices leaves when the program ends in the middle of it, and how the next
/// start knows it again:
///
/// - a copy in the making lies beside its place under a name of its own: the source is whole, so
///   the copy can go;
/// - once the copy is in its place, the source is deleted under another name, beside the place
///   where it was, and until that is done the copy carries a mark which tells where. What is left
///   of such a source can go as far as the copy holds the same, byte for byte;
/// - a held folder is deleted for good under another name too, and what is left of it goes.
///
/// Of a copy that can carry no mark, and of one that is made where nobody would look for it, the
/// journal tells (`deed_journal.h`).

/// The names of one move, with which it leaves no other's in doubt.
struct MoveNames {
    std::string partialCopy;
    std::string removedSource;
    std::string deleted; ///< of a folder that is being deleted for good

    static MoveNames random();
};

bool isPartialCopyName(std::string_view name);
bool isRemovedSourceName(std::string_view name);
bool isDeletedName(std::string_view name);

/// The mark on a copy whose source may not be gone.
inline constexpr std::string_view removedSourceMark = "user.kestavon.removed-source";
/// Its value.
struct RemovedSource {
    std::string path; ///< where the source lies while it is being deleted
    std::string formerName; ///< what it was called there before
    std::uint64_t inode = 0;

    std::string text() const;
    static RemovedSource fromText(const std::string& text);
};

/// Declares that a move is at work in the opened folder, until the descriptor is closed. Gives up
/// waiting for another program's lock after a while: what such a one clears away is missed when the
/// copy is looked at, so the lock only spares work, never data.
void lockForMove(int folder);

/// Deletes what is left of the source of the copy called `copy` in the opened folder, as far as the
/// copy holds it; the rest gets its name back. Nothing is left to be done when this gives true.
bool finishRemoval(const RemovedSource& source, int folder, const char* copy);

/// Locks the opened folder against moves, until the descriptor is closed; false when one is at work
/// there.
bool lockAgainstMoves(int folder);

/// Opens a folder anew, for a lock of its own.
FileDescriptor openForLock(int folder);

/// So long the program waits for what the past left to be cleared up.
inline constexpr std::chrono::milliseconds clearingPatience{2000};

/// Ends what moves of the past left in the opened folder, which may be none, that they were to move
/// something to, and in the folders where that came from; then the deeds noted in the journal.
/// Leaves alone where a move is at work. Looks at every entry.
///
/// All of that on a thread of its own: what is to be looked at may lie on a server that does not
/// answer. After `patience` the caller goes on, and so does the thread.
void clearUnfinishedMoves(
    FileDescriptor folder, std::string journalFolder, std::chrono::milliseconds patience);

} // namespace kestavon
