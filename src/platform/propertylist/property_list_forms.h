#pragma once

#include "platform/property_list.h"

#include <string_view>

namespace kestavon {

/// What every binary list begins with: its kind and its version.
inline constexpr std::string_view binaryPropertyListMark = "bplist00";

PropertyListResult parseBinaryPropertyList(
    std::string_view bytes, const PropertyListLimits& limits);

PropertyListResult parseXmlPropertyList(std::string_view bytes, const PropertyListLimits& limits);

} // namespace kestavon
