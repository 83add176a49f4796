#pragma once

#include "core/domain/action_kind.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace kestavon {

/// What is asked before files are worked on: by the window in a dialog, by a command on the
/// terminal, in the same words.
struct Question {
    std::string title;
    std::string message;
    std::string action; ///< what going ahead is called
    bool destructive = false; ///< whether going ahead takes something away

    friend bool operator==(const Question&, const Question&) = default;
};

namespace questions {

/// Before files of a scan are moved to the Trash or, for any other action, deleted.
Question removeFiles(ActionKind action, std::size_t count);
Question moveToSafeArea(std::size_t count);
Question mergeDuplicates(bool toTrash, std::size_t groups);
Question cleanAllJunk(std::int64_t totalBytes);
Question restoreAll(std::size_t count);
Question deleteAll(std::size_t count);
/// Before the application called `name` goes: with what it left in the home, or alone.
Question uninstall(const std::string& name, bool appOnly);
/// Before what an application has left goes, and nothing else.
Question removeLeftovers(const std::string& name);
/// Before one held item, called `name`, is deleted.
Question deleteHeld(const std::string& name);

} // namespace questions

} // namespace kestavon
