#pragma once

#include <string>
#include <string_view>

namespace kestavon {

/// A path's bytes as UTF-8 text that any document can hold, and that leads back to exactly those
/// bytes. File names are bytes in no particular encoding: each byte that is not part of valid UTF-8
/// stands as one private character, 0x80 as U+EF80 up to 0xFF as U+EFFF. Names that hold one of
/// these characters themselves have its three bytes stand so. Any other text is unchanged.
std::string pathToText(std::string_view bytes);

/// The bytes that `pathToText` made `text` from.
std::string pathFromText(std::string_view text);

} // namespace kestavon
