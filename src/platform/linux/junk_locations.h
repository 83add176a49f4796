#pragma once

#include "platform/host_layout.h"

#include <string>
#include <vector>

namespace kestavon {

/// Where Smart Clean looks in a home of this layout. Looks at nothing itself.
std::vector<JunkLocation> junkLocationsOf(const HostLayout& layout);

/// Where the applications are that a home of this layout goes with; none when they do not lie in
/// bundles.
std::vector<std::string> applicationFoldersOf(const HostLayout& layout);

} // namespace kestavon
