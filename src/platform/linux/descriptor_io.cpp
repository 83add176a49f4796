#include "platform/linux/descriptor_io.h"

#include <algorithm>
#include <cerrno>

#include <unistd.h>

namespace kestavon {

bool writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

std::optional<std::string> readAll(int descriptor, std::size_t limit)
{
    constexpr std::size_t step = 16 * 1024;
    std::string bytes;
    while (true) {
        const auto length = bytes.size();
        bytes.resize(length + std::min(step, limit + 1 - length));
        const auto got = ::read(descriptor, bytes.data() + length, bytes.size() - length);
        bytes.resize(length + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            return bytes;
        if (bytes.size() > limit) {
            errno = EFBIG;
            return std::nullopt;
        }
    }
}

} // namespace kestavon
