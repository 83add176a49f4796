#pragma once

#include <string>

namespace CLI {
class App;
}

namespace kestavon {

/// What --help prints of a table, or of one of its commands.
std::string helpText(const CLI::App& app);

/// The manual page, in the language of man(7).
std::string manualPage(const CLI::App& table);

} // namespace kestavon
