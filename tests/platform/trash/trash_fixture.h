#pragma once

#include "platform/linux/removal/item_place.h"
#include "platform/linux/trash/mounted_volumes.h"
#include "platform/protected_places.h"
#include "support/as_ordinary_user.h"
#include "support/entries.h"
#include "support/environment_variable.h"
#include "support/fake_platform.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestavon::test {

/// Takes folders of one disk for volumes of their own; everything else is one volume, "/".
class FakeMountedVolumes final : public MountedVolumes {
public:
    std::optional<MountedVolume> holding(int folder) const override
    {
        const auto path = pathOfFolder(folder);
        if (!path)
            return std::nullopt;
        for (const auto& [top, id] : tops) {
            if (*path == top || path->starts_with(top + '/'))
                return MountedVolume{id, top};
        }
        return MountedVolume{1, "/"};
    }
    std::map<std::string, std::uint64_t> tops;
};

/// A folder in memory, which is another device than the temporary folder's on most machines.
class MemoryFolder {
public:
    const TemporaryFolder& operator*() const { return m_folder; }
    bool isOnAnotherDeviceThan(const std::string& path) const
    {
        struct stat here {
        }, there{};
        return ::stat(m_folder.path().c_str(), &here) == 0 && ::stat(path.c_str(), &there) == 0
            && here.st_dev != there.st_dev;
    }

private:
    ScopedVariable m_variable{"TMPDIR", "/dev/shm"};
    TemporaryFolder m_folder;
};

inline std::vector<std::string> namesIn(const std::string& folder)
{
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error))
        names.push_back(entry.path().filename().native());
    std::ranges::sort(names);
    return names;
}

inline mode_t modeOf(const std::string& path)
{
    struct stat status { };
    return ::lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

inline ProtectedPlaces nothingProtected()
{
    return ProtectedPlaces(ProtectedPlaces::Lists{});
}

} // namespace kestavon::test
