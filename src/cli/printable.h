#pragma once

#include <string>
#include <string_view>

namespace kestavon {

/// `bytes` with what is no text, and characters that mislead (see `misleads`), written as \n, \t,
/// \x1B …, so that a name can neither break a line nor drive the terminal.
std::string printablePath(std::string_view bytes);

} // namespace kestavon
