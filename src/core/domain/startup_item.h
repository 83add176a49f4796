#pragma once

#include "core/domain/uuid.h"

#include <string>

namespace kestavon {

/// A job that starts by itself at boot or login.
struct StartupItem {
    Uuid id;
    std::string label;
    std::string programPath; ///< the program the job runs
    std::string plistURL; ///< absolute path of the file that defines the job
    bool isSystem = false; ///< defined in a system-wide folder rather than the user's
};

} // namespace kestavon
