#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace kestavon {

using Options = std::vector<const CLI::Option*>;

/// What a command of the table takes by name, and what by its place.
Options optionsOf(const CLI::App& app);
Options positionalsOf(const CLI::App& app);
/// The commands below one.
std::vector<const CLI::App*> commandsOf(const CLI::App& app);

bool takesValue(const CLI::Option& option);
bool takesMany(const CLI::Option& option);

/// The words of a text, which spaces and line ends part.
std::vector<std::string> wordsOf(const std::string& text);

} // namespace kestavon
