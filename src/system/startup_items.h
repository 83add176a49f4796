#pragma once

#include "core/domain/startup_item.h"
#include "platform/host_layout.h"

#include <span>
#include <vector>

namespace kestavon {

/// The jobs that the property lists in these folders define, with new ids, the user's own first and
/// otherwise in the order of the folders and of the names' bytes. What cannot be read, or is no
/// property list with a dictionary, is left out without a word. Not on the main thread.
std::vector<StartupItem> listStartupItems(std::span<const StartupFolder> folders);

} // namespace kestavon
