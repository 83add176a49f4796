#pragma once

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
///   of such a source can go as far as the copy holds the same, byte for byte.

/// The names of one move, with which it leaves no other's in doubt.
struct MoveNames {
    std::string partialCopy;
    std::string removedSource;

    static MoveNames random();
};

bool isPartialCopyName(std::string_view name);
bool isRemovedSourceName(std::string_view name);

/// The mark on a copy whose source may not be gone.
inline constexpr std::string_view removedSourceMark = "user.kestavon.removed-source";
/// Its value: where what is left of the source lies now, and the name that it had.
std::string removedSourceText(const std::string& path, const std::string& formerName);

/// Declares that a move is at work in the opened folder, until the descriptor is closed. Gives up
/// waiting for another program's lock after a while: the lock only spares work, never data.
void lockForMove(int folder);

/// Ends what moves of the past left in the opened folder that they were to move something to, and
/// in the folders where that came from, unless a move is at work there. Looks at every entry.
void clearUnfinishedMovesIn(int folder);

} // namespace kestavon
