#include "platform/platform.h"

#include "platform/linux/desktop_entries.h"
#include "platform/settings_file.h"

namespace kestavon {

Platform systemPlatform(const HostEnvironment& environment)
{
    auto layout = makeHostLayout(environment);
    const auto protectedPlaces
        = std::make_shared<const ProtectedPlaces>(ProtectedPlaces::listsFor(layout));
    auto settings = std::make_shared<FileSettings>(layout.settingsFolder + "/settings.json");
    auto clock = std::make_shared<SystemClock>();
    auto trash = makeSystemTrash(layout, *protectedPlaces, clock);
    const auto journal = journalFolder(layout);
    auto applications = std::make_shared<SystemRunningApplications>(
        RunningApplicationsPlaces{.dataFolders = layout.dataFolders,
            .languages = userLanguages(),
            .windows = windowsOfDisplay()});
    return {.layout = std::move(layout),
        .files = std::make_shared<SystemFileManager>(),
        .volumes = std::make_shared<SystemVolumes>(),
        .memory = std::make_shared<SystemMemoryCounters>(),
        .clock = std::move(clock),
        .calendar = std::make_shared<SystemCalendar>(),
        .mover = std::make_shared<SystemFileMover>(journal),
        .remover = std::make_shared<SystemFileRemover>(journal),
        .places = std::make_shared<SystemFilePlaces>(),
        .trash = std::move(trash),
        .protectedPlaces = protectedPlaces,
        .settings = std::move(settings),
        .workspace = std::make_shared<DesktopWorkspace>(),
        .runningApplications = std::move(applications),
        .processSignals = std::make_shared<SystemProcessSignals>(),
        .memoryRelief = std::make_shared<SystemMemoryRelief>()};
}

} // namespace kestavon
