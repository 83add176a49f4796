#pragma once

#include "core/domain/action_kind.h"
#include "core/model/removal_worker.h"
#include "core/model/work_meter.h"
#include "platform/platform.h"

#include <string>

namespace kestavon {

/// Moving to the Trash or deleting for good, whichever the action stands for, without following
/// links below `walkedFolder`; folders are left alone if they are refused.
RemovalWorker::Remove removalFor(const Platform& platform, ActionKind action,
    const std::string& walkedFolder, bool refusesFolders = false, const WorkWatch& watch = {});

/// The worker that does so; it uses `platform` while it lives.
RemovalWorker workerFor(const Platform& platform, ActionKind action,
    const std::string& walkedFolder, const WorkWatch& watch = {});

} // namespace kestavon
