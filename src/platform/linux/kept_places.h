#pragma once

#include "platform/host_layout.h"

#include <vector>

namespace kestavon {

/// What must stay in a home of this layout although it looks like junk. Looks at nothing itself.
std::vector<PlacePattern> keptPlacesOf(const HostLayout& layout);

} // namespace kestavon
