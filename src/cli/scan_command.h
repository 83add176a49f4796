#pragma once

#include "core/model/app_model.h"

#include <ostream>
#include <string>
#include <string_view>

namespace kestavon {

/// `bytes` with what is no text, and characters that mislead (see `misleads`), written as \n, \t,
/// \x1B …, so that a name can neither break a line nor drive the terminal.
std::string printablePath(std::string_view bytes);

/// Scans the model's root and prints what was found for a person: the number of items, the bytes in
/// all and in hidden files, the ten largest files. The live count goes to `progress` while the scan
/// runs: one line, rewritten, on a terminal, and elsewhere a line every two seconds. Runs an event
/// loop of its own until the scan ends; main thread. Returns the process's exit code: 0 done, 1 the
/// root could not be scanned (the reason is on `progress`), 130 interrupted by Ctrl+C.
int runScanCommand(AppModel& model, std::ostream& out, std::ostream& progress, bool onTerminal);

} // namespace kestavon
