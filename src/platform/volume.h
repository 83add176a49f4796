#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kestavon {

/// Bytes of a volume; a value that the volume does not report is absent.
struct VolumeCapacity {
    std::optional<std::int64_t> total;
    std::optional<std::int64_t> available; ///< what an ordinary user can still write
};

/// The file systems that folders lie on. Any thread.
class Volumes {
public:
    virtual ~Volumes() = default;
    /// The capacity of the volume that holds `path`; nothing when it cannot be asked.
    virtual std::optional<VolumeCapacity> capacityOf(const std::string& path) const = 0;
};

/// Asks statvfs(3).
class SystemVolumes final : public Volumes {
public:
    std::optional<VolumeCapacity> capacityOf(const std::string& path) const override;
};

} // namespace kestavon
