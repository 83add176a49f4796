#pragma once

#include "cli/command_line.h"
#include "core/model/app_model.h"

namespace kestavon {

/// The one model of this process: this machine, seen as the command line says.
AppModel makeModel(const CommandLine& line);

} // namespace kestavon
