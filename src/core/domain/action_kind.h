#pragma once

namespace kestavon {

/// How selected items are removed.
enum class ActionKind {
    safeArea, ///< moved into the Safe Area, restorable
    trash, ///< moved to the Trash
    permanent, ///< deleted at once
};

} // namespace kestavon
