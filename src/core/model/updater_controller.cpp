#include "core/model/updater_controller.h"

namespace kestavon {

std::string UpdaterController::version()
{
    return KESTAVON_VERSION;
}

std::string UpdaterController::buildNumber()
{
    return KESTAVON_BUILD;
}

std::string UpdaterController::checkForUpdates() const
{
    return "This is Kestavon " + version() + " (build " + buildNumber()
        + "). This build has no update source, so newer versions cannot be looked for from here.";
}

} // namespace kestavon
