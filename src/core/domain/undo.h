#pragma once

#include "core/domain/action_kind.h"

#include <cstdint>
#include <string>

namespace kestavon {

/// The last move to the Trash or to the Safe Area, as long as it can be taken back.
struct UndoOffer {
    ActionKind action = ActionKind::trash; ///< never `permanent`
    std::int64_t count = 0; ///< items that moved

    friend bool operator==(const UndoOffer&, const UndoOffer&) = default;
};

/// How taking back a move went.
struct UndoReport {
    std::int64_t restored = 0; ///< items that lie at their places again
    std::int64_t failed = 0; ///< items that could not be put back; they stay where they were moved
    std::int64_t left = 0; ///< the same for those whose turn did not come: it was stopped
    std::string error = {}; ///< why the first of those could not, in words; empty: none failed
    /// The list that they had left shows them again; false when another scan has replaced it.
    bool listed = true;

    friend bool operator==(const UndoReport&, const UndoReport&) = default;
};

} // namespace kestavon
