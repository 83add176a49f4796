#pragma once

#include <string_view>

namespace kestavon {

/// What follows the last dot of a file's name, unless that is its first or last character:
/// ".plist" and "a." have no extension, ".hidden.plist" has "plist".
std::string_view fileExtension(std::string_view name);

/// The name without its extension and the dot before that.
std::string_view withoutExtension(std::string_view name);

} // namespace kestavon
