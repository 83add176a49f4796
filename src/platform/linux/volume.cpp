#include "platform/volume.h"

#include <cerrno>
#include <limits>

#include <sys/statvfs.h>

namespace kestavon {

namespace {

std::int64_t saturatingBytes(std::uint64_t blocks, std::uint64_t blockSize)
{
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    std::int64_t bytes = 0;
    return __builtin_mul_overflow(blocks, blockSize, &bytes) ? most : bytes;
}

} // namespace

std::optional<VolumeCapacity> SystemVolumes::capacityOf(const std::string& path) const
{
    struct statvfs status { };
    int result = 0;
    do {
        result = ::statvfs(path.c_str(), &status);
    } while (result != 0 && errno == EINTR);
    if (result != 0)
        return std::nullopt;
    if (status.f_blocks == 0)
        return VolumeCapacity{}; // proc(5) and its like have no bytes to speak of.
    return VolumeCapacity{.total = saturatingBytes(status.f_blocks, status.f_frsize),
        .available = saturatingBytes(status.f_bavail, status.f_frsize)};
}

} // namespace kestavon
