#include "platform/icns_file.h"

#include "platform/linux/descriptor_io.h"
#include "platform/linux/file_descriptor.h"

#include <cstddef>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace kestavon {

std::string pngInIcnsFile(const std::string& path, int pixels)
{
    constexpr std::size_t largest = 8'000'000;
    const FileDescriptor file(
        ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status { };
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)
        || std::cmp_greater(status.st_size, largest))
        return {};
    const auto bytes = readAll(file.get(), largest);
    return bytes ? std::string(pngInIcns(*bytes, pixels)) : std::string();
}

} // namespace kestavon
