#pragma once

#include "cli/command_line.h"

#include <memory>
#include <span>
#include <string_view>

namespace CLI {
class App;
}

namespace kestavon {

/// Every command with its options, descriptions and limits: what the command line is read by, and
/// what --help, the manual and the completions are written from. Reading fills `line`, which must
/// outlive the table.
std::shared_ptr<CLI::App> makeCommandTable(CommandLine& line);

/// A part of the manual that is about no command.
struct ManualSection {
    std::string_view title;
    std::string_view text; ///< paragraphs, parted by empty lines; indented lines stay as they are
};

/// The sections that follow the commands, in the order of the manual.
std::span<const ManualSection> manualSections();

} // namespace kestavon
