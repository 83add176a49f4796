#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// What the program was started with, in bytes as the shell gave them.
struct CommandLine {
    std::string theme; ///< "light", "dark", or empty to follow the desktop
    std::string systemRoot; ///< where "/" of an attached disk is; empty unless it was given
    std::string folder; ///< the folder to look at; empty for the home folder
    bool help = false;
    bool version = false;
    std::string error; ///< what is wrong with it, for a person; empty when nothing is
};

/// Reads `arguments`, the program's name not among them.
CommandLine readCommandLine(const std::vector<std::string>& arguments);

/// The text of --help.
std::string_view commandLineHelp();

} // namespace kestavon
