#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <time.h>

namespace kestavon {

/// The names under which a move across devices keeps what is not yet, or no longer, an item. Found
/// again after a crash, they say what may be cleared away.

/// A copy in the making, beside the place it is for.
std::string partialCopyName();

/// A source whose copy is complete and in its place: it is deleted under this name, beside the
/// place where it was. `surveyed` is when the source was last known to be as the copy is.
std::string removedSourceName(const struct timespec& surveyed);

bool isPartialCopyName(std::string_view name);
/// The moment in the name of a removed source; nothing for any other name.
std::optional<struct timespec> surveyTimeOf(std::string_view name);

/// Declares that a move is at work in the opened folder, until the descriptor is closed. Gives up
/// waiting for another program's lock after a while: the lock only spares work, never data.
void lockForMove(int folder);

/// Deletes what moves of the past left in the opened folder, unless one is at work there.
void clearUnfinishedMovesIn(int folder);

} // namespace kestavon
