#include "platform/linux/trash/mounted_volumes.h"

#include "platform/linux/file_descriptor.h"
#include "platform/linux/removal/item_place.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace kestavon {

namespace {

struct FolderIdentity {
    std::uint64_t mount = 0;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    friend bool operator==(const FolderIdentity&, const FolderIdentity&) = default;
};

std::optional<FolderIdentity> identityOf(int folder)
{
    struct statx status { };
    if (::statx(folder, "", AT_EMPTY_PATH, STATX_INO | STATX_MNT_ID, &status) != 0)
        return std::nullopt;
    const auto device = std::uint64_t{makedev(status.stx_dev_major, status.stx_dev_minor)};
    const bool tellsMount = (status.stx_mask & STATX_MNT_ID) != 0;
    return FolderIdentity{tellsMount ? status.stx_mnt_id : device, device, status.stx_ino};
}

} // namespace

std::optional<MountedVolume> SystemMountedVolumes::holding(int folder) const
{
    constexpr int flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
    FileDescriptor top(::openat(folder, ".", flags));
    auto identity = top ? identityOf(top.get()) : std::nullopt;
    while (identity) {
        FileDescriptor above(::openat(top.get(), "..", flags));
        const auto identityAbove = above ? identityOf(above.get()) : std::nullopt;
        if (!identityAbove)
            return std::nullopt;
        // The root lies above itself.
        if (identityAbove->mount != identity->mount || *identityAbove == *identity) {
            auto path = pathOfFolder(top.get());
            if (!path)
                return std::nullopt;
            return MountedVolume{identity->mount, std::move(*path)};
        }
        top = std::move(above);
        identity = identityAbove;
    }
    return std::nullopt;
}

} // namespace kestavon
