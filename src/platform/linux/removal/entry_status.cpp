#include "platform/linux/removal/entry_status.h"

#include "platform/linux/removal/retry.h"

#include <fcntl.h>
#include <linux/stat.h>
#include <sys/sysmacros.h>

namespace kestavon {

namespace {

struct timespec timeOf(const struct statx_timestamp& stamp)
{
    return {.tv_sec = stamp.tv_sec, .tv_nsec = static_cast<long>(stamp.tv_nsec)};
}

bool same(const struct timespec& a, const struct timespec& b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

} // namespace

Result<EntryStatus, int> statusOf(int folder, const char* name)
{
    constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_EMPTY_PATH | AT_NO_AUTOMOUNT;
    struct statx raw { };
    const auto call
        = [&] { return ::statx(folder, name, flags, STATX_BASIC_STATS | STATX_MNT_ID, &raw); };
    if (retrying(call) < 0)
        return errno;
    EntryStatus status;
    status.identity
        = {.device = makedev(raw.stx_dev_major, raw.stx_dev_minor), .inode = raw.stx_ino};
    status.mount = raw.stx_mask & STATX_MNT_ID ? raw.stx_mnt_id : 0;
    status.mode = raw.stx_mode;
    status.owner = raw.stx_uid;
    status.group = raw.stx_gid;
    status.links = raw.stx_nlink;
    status.deviceNumber = makedev(raw.stx_rdev_major, raw.stx_rdev_minor);
    status.size = static_cast<std::int64_t>(raw.stx_size);
    status.allocated = static_cast<std::int64_t>(raw.stx_blocks * 512);
    status.accessed = timeOf(raw.stx_atime);
    status.modified = timeOf(raw.stx_mtime);
    status.changed = timeOf(raw.stx_ctime);
    status.isMountPoint = raw.stx_attributes & STATX_ATTR_MOUNT_ROOT;
    status.isImmutable = raw.stx_attributes & (STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND);
    return status;
}

bool isUntouched(const EntryStatus& before, const EntryStatus& now)
{
    return isUnchanged(before, now) && (before.isFolder() || same(before.changed, now.changed));
}

bool isUnchanged(const EntryStatus& before, const EntryStatus& now)
{
    if (before.identity != now.identity || before.mode != now.mode || before.owner != now.owner
        || before.group != now.group)
        return false;
    if (before.isFolder())
        return true; // Its entries are looked at one by one.
    return before.size == now.size && same(before.modified, now.modified)
        && (before.links > 1 || same(before.changed, now.changed));
}

} // namespace kestavon
