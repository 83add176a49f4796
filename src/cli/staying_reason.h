#pragma once

#include "platform/platform.h"

#include <string>

namespace kestavon {

/// Why an item that was to go is still at `path`, as far as the disk tells afterwards: what follows
/// "is still there: " in a sentence, its full stop included.
std::string stayingReason(const std::string& path, const Platform& platform);

} // namespace kestavon
