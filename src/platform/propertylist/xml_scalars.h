#pragma once

#include "platform/property_list.h"

#include <optional>
#include <string_view>

namespace kestavon {

/// The value of an element that holds nothing but text, such as `<integer>7</integer>`; nothing
/// when the text is none of that element's. `element` is one that `isXmlScalar`.
std::optional<PropertyValue> xmlScalar(std::string_view element, std::string_view text);

bool isXmlScalar(std::string_view element);

} // namespace kestavon
