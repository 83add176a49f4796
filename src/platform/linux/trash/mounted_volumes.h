#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kestavon {

/// A mounted file system, or the part of one that is mounted at one place. An item can be renamed
/// within it, and not out of it.
struct MountedVolume {
    std::uint64_t id = 0; ///< equal for folders of one mount, as long as it is mounted
    std::string topFolder; ///< the folder that it is mounted on
};

/// Tells which volume a folder lies on. Any thread.
class MountedVolumes {
public:
    virtual ~MountedVolumes() = default;
    /// The volume of an opened folder; nothing when a folder above it cannot be asked.
    virtual std::optional<MountedVolume> holding(int folder) const = 0;
};

/// Goes up from the folder to where the mount changes. Device numbers decide only where the kernel
/// does not tell mounts apart (before 5.8): one device may be mounted twice, and on an overlay a
/// file's device is not its folder's.
class SystemMountedVolumes final : public MountedVolumes {
public:
    std::optional<MountedVolume> holding(int folder) const override;
};

} // namespace kestavon
