#include "platform/platform.h"

#include "platform/settings_file.h"

namespace kestavon {

Platform systemPlatform(const HostEnvironment& environment)
{
    auto layout = makeHostLayout(environment);
    auto settings = std::make_shared<FileSettings>(layout.configHome + "/Kestavon/settings.json");
    auto clock = std::make_shared<SystemClock>();
    auto trash = makeSystemTrash(layout, ProtectedPlaces(ProtectedPlaces::listsFor(layout)), clock);
    return {.layout = std::move(layout),
        .files = std::make_shared<SystemFileManager>(),
        .volumes = std::make_shared<SystemVolumes>(),
        .memory = std::make_shared<SystemMemoryCounters>(),
        .clock = std::move(clock),
        .calendar = std::make_shared<SystemCalendar>(),
        .settings = std::move(settings),
        .workspace = std::make_shared<DesktopWorkspace>(),
        .trash = std::move(trash)};
}

} // namespace kestavon
