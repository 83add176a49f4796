#pragma once

#include <string>

namespace CLI {
class App;
}

namespace kestavon {

/// Scripts that complete command lines of the program in these shells.
std::string bashCompletions(const CLI::App& table);
std::string zshCompletions(const CLI::App& table);
std::string fishCompletions(const CLI::App& table);

} // namespace kestavon
