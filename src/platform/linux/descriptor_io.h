#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kestavon {

/// Writes all of `bytes`; false with errno set when the disk refuses some of them.
bool writeAll(int descriptor, std::string_view bytes);

/// What is left to read of the file; nothing, with errno set, when a read fails, and with EFBIG
/// when it is more than `limit` bytes.
std::optional<std::string> readAll(int descriptor, std::size_t limit);

} // namespace kestavon
