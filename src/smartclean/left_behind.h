#pragma once

#include "core/domain/timestamp.h"

#include <functional>
#include <string>

namespace kestavon {

/// Whether the entry looks like data that a program left behind, once its name says so: it is no
/// link, and nothing in it was changed for thirty days, is a saved game, or is kept under version
/// control, as settings are that somebody carries from machine to machine. The container of a
/// sandboxed application also has the folders that all of those have. Looks at the disk; what
/// cannot be read was not left behind, nor what was not looked through because `goesOn`, which is
/// asked before each entry, said no.
bool isLeftBehind(const std::string& folder, const std::string& name, bool isContainer,
    Timestamp now, const std::function<bool()>& goesOn);

} // namespace kestavon
