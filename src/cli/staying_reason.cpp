#include "cli/staying_reason.h"

#include "core/domain/removal_guard.h"
#include "platform/linux/mount_table.h"

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestavon {

std::string stayingReason(const std::string& path, const Platform& platform)
{
    if (!isSafeToRemove(path))
        return "it belongs to the system.";
    if (const auto refusal = platform.protectedPlaces->refusal(path))
        return refusal->message;
    const auto mounts = currentMounts();
    const auto inside = std::ranges::find_if(
        mounts, [&path](const Mount& mount) { return isAtOrBelow(mount.point, path); });
    if (inside != mounts.end())
        return "another volume is mounted in it, at " + inside->point + '.';
    const auto slash = path.rfind('/');
    const auto folder = slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
    if (::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        return "you may not change the folder that it lies in.";
    struct stat above { };
    struct stat item { };
    if (::stat(folder.c_str(), &above) == 0 && ::lstat(path.c_str(), &item) == 0
        && (above.st_mode & S_ISVTX) != 0 && ::geteuid() != 0 && item.st_uid != ::geteuid()
        && above.st_uid != ::geteuid())
        return "it is somebody else's.";
    return "it was changed meanwhile, or could not be moved.";
}

} // namespace kestavon
