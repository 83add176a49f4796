#pragma once

#include "cli/command_line.h"
#include "cli/console.h"
#include "core/model/app_model.h"

namespace kestavon {

/// Runs the command that `line` asks for, any but the window's, and returns the process's exit
/// code. The model's layout, limits and so on are those that the line asked for already. Main
/// thread; runs event loops of its own.
int runCommand(const CommandLine& line, AppModel& model, const Console& console);

/// The commands that only look.
int runListing(const CommandLine& line, AppModel& model, const Console& console);
/// clean, remove, merge and uninstall.
int runRemoval(const CommandLine& line, AppModel& model, const Console& console);
/// The commands of the Safe Area.
int runSafeArea(const CommandLine& line, AppModel& model, const Console& console);

} // namespace kestavon
