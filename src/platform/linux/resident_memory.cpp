#include "platform/resident_memory.h"

#include "platform/linux/file_descriptor.h"

#include <array>
#include <charconv>
#include <string_view>

#include <fcntl.h>

namespace kestavon {

std::optional<std::uint64_t> residentMemoryBytes()
{
    static const auto pageSize = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
    // Opened each time: a descriptor that is kept would go on telling of this process in a child.
    const FileDescriptor descriptor(::open("/proc/self/statm", O_RDONLY | O_CLOEXEC));
    std::array<char, 128> buffer{};
    const auto length = descriptor ? ::read(descriptor.get(), buffer.data(), buffer.size()) : -1;
    if (length <= 0)
        return std::nullopt;
    const std::string_view line(buffer.data(), static_cast<std::size_t>(length));
    const auto space = line.find(' ');
    if (space == std::string_view::npos)
        return std::nullopt;
    std::uint64_t pages = 0;
    const auto parsed = std::from_chars(line.data() + space + 1, line.data() + line.size(), pages);
    if (parsed.ec != std::errc())
        return std::nullopt;
    return pages * pageSize;
}

} // namespace kestavon
