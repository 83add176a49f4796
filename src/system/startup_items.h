#pragma once

#include "core/domain/startup_item.h"
#include "platform/host_layout.h"

#include <span>
#include <vector>

namespace kestavon {

/// The jobs that the files in these folders define, with new ids, the user's own first and
/// otherwise in the order of the folders and of the names' bytes. What does not start - because it
/// is hidden, switched off, or its program is missing - and what cannot be read is left out without
/// a word. Not on the main thread.
std::vector<StartupItem> listStartupItems(std::span<const StartupFolder> folders);

} // namespace kestavon
