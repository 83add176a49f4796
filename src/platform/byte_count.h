#pragma once

#include <cstdint>
#include <string>

namespace kestavon {

/// Bytes in units of 1000, as disk sizes are shown: "Zero KB", "1 byte", "999 KB", "12.35 GB".
std::string fileByteCount(std::int64_t bytes);

/// Bytes in units of 1024, as memory sizes are shown: "1,023 bytes", "256 MB".
std::string memoryByteCount(std::int64_t bytes);

} // namespace kestavon
