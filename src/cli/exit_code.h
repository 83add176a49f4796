#pragma once

namespace kestavon {

inline constexpr int doneExitCode = 0;
inline constexpr int failedExitCode = 1; ///< something could not be done
inline constexpr int usageExitCode = 2; ///< the command line is wrong
inline constexpr int interruptedExitCode = 130; ///< 128 + SIGINT, as shells report it

} // namespace kestavon
