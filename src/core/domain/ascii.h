#pragma once

#include <algorithm>
#include <string_view>

namespace kestavon {

/// Whether every byte is below 0x80.
inline bool isAscii(std::string_view text)
{
    return std::ranges::none_of(text, [](char c) { return static_cast<unsigned char>(c) > 0x7F; });
}

/// The lower-case letter for an upper-case one of ASCII; any other byte as it is.
constexpr char asciiLower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

} // namespace kestavon
