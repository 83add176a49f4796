#pragma once

#include "platform/place_pattern.h"

#include <string>
#include <vector>

namespace kestavon {

/// The folders that the pattern names, by their paths' bytes; one without wildcards is named
/// whether it is there or not. No link below `place.folder` is followed where the pattern has a
/// wildcard. Lists the folders above; not on the main thread.
std::vector<std::string> foldersNamedBy(const PlacePattern& place);

} // namespace kestavon
