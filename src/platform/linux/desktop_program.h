#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kestavon {

/// What is known of a program a moment after it was started.
enum class Start {
    running, ///< it has not ended
    succeeded,
    failed, ///< it ended, and not well
    missing, ///< there is no such program
};

/// Starts a program of the search path that has nothing to do with this one any more, with one
/// argument and without input or output. Waits two seconds at most. Any thread.
Start startDetached(const std::string& program, const std::string& argument);

/// What the program writes to its output, up to 64 KiB; nothing when it cannot be started, does not
/// end well, or takes longer than five seconds. Any thread.
std::optional<std::string> outputOfProgram(
    const std::string& program, const std::vector<std::string>& arguments);

} // namespace kestavon
