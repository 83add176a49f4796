#include "platform/linux/removal/rename_item.h"

#include "platform/linux/file_descriptor.h"
#include "platform/linux/removal/entry_status.h"
#include "platform/linux/removal/metadata.h"
#include "platform/linux/removal/retry.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestavon {

namespace {

/// The two ends of one rename.
struct Names {
    int sourceFolder;
    const char* source;
    int targetFolder;
    const char* target;
};

int outcome(int result)
{
    return result == 0 ? 0 : errno;
}

int plainRename(const Names& names)
{
    return outcome(retrying([&] {
        return ::renameat(names.sourceFolder, names.source, names.targetFolder, names.target);
    }));
}

/// A second name at the target, then the first one goes: two names are never one too few.
int moveByLinking(const Names& names)
{
    const auto link = [&] {
        return ::linkat(names.sourceFolder, names.source, names.targetFolder, names.target, 0);
    };
    if (retrying(link) != 0)
        return errno;
    const int error
        = outcome(retrying([&] { return ::unlinkat(names.sourceFolder, names.source, 0); }));
    if (error != 0)
        ::unlinkat(names.targetFolder, names.target, 0);
    return error;
}

/// Takes the name with an empty file of our own, which the rename may then replace.
int moveOntoEmptyFile(const Names& names)
{
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    const FileDescriptor claim(
        retrying([&] { return ::openat(names.targetFolder, names.target, flags, 0600); }));
    if (!claim)
        return errno;
    const auto claimed = statusOf(claim.get(), "");
    const auto isStillOurs = [&] {
        const auto now = statusOf(names.targetFolder, names.target);
        return claimed && now && now->identity == claimed->identity && now->size == 0;
    };
    const int error = isStillOurs() ? plainRename(names) : EEXIST;
    if (error != 0 && isStillOurs())
        ::unlinkat(names.targetFolder, names.target, 0);
    return error;
}

/// Takes the name with an empty folder: a rename replaces that, and no other folder.
int moveOntoEmptyFolder(const Names& names)
{
    if (retrying([&] { return ::mkdirat(names.targetFolder, names.target, 0700); }) != 0)
        return errno;
    const int error = plainRename(names);
    if (error != 0)
        ::unlinkat(names.targetFolder, names.target, AT_REMOVEDIR);
    return error;
}

int renameOnce(const Names& names)
{
    const auto rename = [&] {
        return ::renameat2(
            names.sourceFolder, names.source, names.targetFolder, names.target, RENAME_NOREPLACE);
    };
    if (retrying(rename) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP)
        return errno;
    // A file system, or a kernel, that cannot promise to replace nothing.
    const auto status = statusOf(names.sourceFolder, names.source);
    if (!status)
        return status.error();
    if (status->isFolder())
        return moveOntoEmptyFolder(names);
    const int error = moveByLinking(names);
    return error == EPERM || error == ENOTSUP || error == ENOSYS || error == EMLINK
        ? moveOntoEmptyFile(names)
        : error;
}

/// Whether the item lies at the target although the rename reported a failure: over a network an
/// answer can get lost, or what was done already be asked for again.
bool hasArrived(const Names& names, const Identity& item)
{
    const auto arrived = statusOf(names.targetFolder, names.target);
    if (!arrived || arrived->identity != item)
        return false;
    const auto left = statusOf(names.sourceFolder, names.source);
    return !left && left.error() == ENOENT;
}

} // namespace

int renameWithoutReplacing(
    int sourceFolder, const char* source, int targetFolder, const char* target)
{
    const Names names{sourceFolder, source, targetFolder, target};
    const auto before = statusOf(sourceFolder, source);
    if (!before)
        return before.error();
    const int error = renameOnce(names);
    if (error == 0 || hasArrived(names, before->identity))
        return 0;
    // Changing a folder's parent changes the folder, so it takes the permission to write to it.
    if (error != EACCES || !before->isFolder() || (before->mode & S_IWUSR)
        || before->owner != ::geteuid())
        return error;
    const BorrowedPermissions writable(sourceFolder, source, before->permissions() | S_IWUSR);
    return writable ? renameOnce(names) : error;
}

} // namespace kestavon
