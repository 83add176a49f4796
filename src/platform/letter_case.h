#pragma once

#include <string>
#include <string_view>

namespace kestavon {

/// `text` with every letter in lower case, by Unicode's mapping of single characters and by no
/// language's own rules: "ÜBER" is "über", and "I" never a dotless one. Bytes that are not UTF-8
/// stay as they are. Any thread.
std::string lowerCased(std::string_view text);

} // namespace kestavon
