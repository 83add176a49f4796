#pragma once

#include "platform/calendar.h"
#include "platform/clock.h"
#include "platform/file_manager.h"
#include "platform/file_mover.h"
#include "platform/file_places.h"
#include "platform/file_remover.h"
#include "platform/host_layout.h"
#include "platform/memory_counters.h"
#include "platform/memory_relief.h"
#include "platform/process_signals.h"
#include "platform/protected_places.h"
#include "platform/running_applications.h"
#include "platform/settings.h"
#include "platform/trash.h"
#include "platform/volume.h"
#include "platform/workspace.h"

#include <memory>

namespace kestavon {

/// The machine as the engines and the model see it. A test replaces the parts it is about.
struct Platform {
    HostLayout layout;
    std::shared_ptr<const FileManager> files;
    std::shared_ptr<const Volumes> volumes;
    std::shared_ptr<const MemoryCounters> memory;
    std::shared_ptr<const Clock> clock;
    std::shared_ptr<const Calendar> calendar;
    std::shared_ptr<FileMover> mover;
    std::shared_ptr<FileRemover> remover;
    std::shared_ptr<FilePlaces> places;
    std::shared_ptr<Trash> trash;
    std::shared_ptr<const ProtectedPlaces> protectedPlaces;
    std::shared_ptr<Settings> settings;
    std::shared_ptr<Workspace> workspace;
    std::shared_ptr<const RunningApplications> runningApplications;
    std::shared_ptr<ProcessSignals> processSignals;
    std::shared_ptr<MemoryRelief> memoryRelief;
};

/// This machine, laid out for `environment`; every part is there.
Platform systemPlatform(const HostEnvironment& environment);

} // namespace kestavon
