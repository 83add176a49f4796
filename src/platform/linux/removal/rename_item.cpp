#include "platform/linux/removal/rename_item.h"

#include "platform/linux/file_descriptor.h"
#include "platform/linux/removal/deed_journal.h"
#include "platform/linux/removal/entry_status.h"
#include "platform/linux/removal/item_place.h"
#include "platform/linux/removal/metadata.h"
#include "platform/linux/removal/remove_tree.h"
#include "platform/linux/removal/retry.h"
#include "platform/linux/removal/unfinished_moves.h"

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
    JournalEntry* journal = nullptr;
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

/// What lies under a name, as far as it matters to one item.
enum class Found { nothing, theItem, another, unknown };

Found lookFor(const Identity& item, int folder, const char* name)
{
    const auto status = statusOf(folder, name);
    if (!status)
        return status.error() == ENOENT ? Found::nothing : Found::unknown;
    return status->identity == item ? Found::theItem : Found::another;
}

int linkTo(const Names& names)
{
    return outcome(retrying([&] {
        return ::linkat(names.sourceFolder, names.source, names.targetFolder, names.target, 0);
    }));
}

/// Ends a move whose item has both names, by taking the first one away - under a name of our own,
/// because whoever saves the file just now puts another one in its place.
int dropFirstName(const Names& names, const Identity& item, const std::string& aside)
{
    const int folder = names.sourceFolder;
    const int error = plainRename({folder, names.source, folder, aside.c_str()});
    switch (lookFor(item, folder, aside.c_str())) {
    case Found::theItem: removeEntry(folder, aside.c_str(), 0); return 0;
    case Found::another: // Just saved: it belongs where it was.
        if (linkTo({folder, aside.c_str(), folder, names.source}) == 0)
            removeEntry(folder, aside.c_str(), 0);
        return 0;
    case Found::unknown: return error != 0 ? error : EIO;
    case Found::nothing: break;
    }
    // Only a name that is seen lets the other one go: an answer can be wrong or late.
    switch (lookFor(item, folder, names.source)) {
    case Found::theItem: removeEntry(names.targetFolder, names.target, 0); break;
    case Found::nothing:
    case Found::another: return 0;
    case Found::unknown: break;
    }
    return error != 0 ? error : EIO;
}

/// Tells the journal that the item is about to have two names, and then a third.
void noteNames(const Names& names, const Identity& item, const std::string& aside)
{
    const auto folder = names.journal ? pathOfFolder(names.sourceFolder) : std::nullopt;
    const auto targetFolder = folder ? pathOfFolder(names.targetFolder) : std::nullopt;
    if (targetFolder)
        names.journal->add(NotedFile{.folder = *folder,
            .name = names.source,
            .aside = aside,
            .inode = item.inode,
            .target = *targetFolder + '/' + names.target});
}

/// A second name at the target, then the first one goes: two names are never one too few.
int moveByLinking(const Names& names, const Identity& item)
{
    const auto aside = MoveNames::random().removedSource;
    noteNames(names, item, aside);
    const int error = linkTo(names);
    const bool isLinked = error == 0
        || (error != EEXIST && lookFor(item, names.targetFolder, names.target) == Found::theItem);
    return isLinked ? dropFirstName(names, item, aside) : error;
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
    const auto claimed = statusOf(names.targetFolder, names.target);
    const int error = plainRename(names);
    // The item itself may be an empty folder, and have arrived all the same.
    if (error != 0 && claimed
        && lookFor(claimed->identity, names.targetFolder, names.target) == Found::theItem)
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
    const int error = moveByLinking(names, status->identity);
    return error == EPERM || error == ENOTSUP || error == ENOSYS || error == EMLINK
        ? moveOntoEmptyFile(names)
        : error;
}

/// Renames and looks what came of it: over a network an answer can get lost, or what was done
/// already be asked for again; and some disks answer for what they have not done.
int renameAndLook(const Names& names, const Identity& item)
{
    const int error = renameOnce(names);
    const auto left = lookFor(item, names.sourceFolder, names.source);
    if (error == 0)
        return left == Found::theItem ? EIO : 0;
    const bool hasArrived = left == Found::nothing
        && lookFor(item, names.targetFolder, names.target) == Found::theItem;
    return hasArrived ? 0 : error;
}

} // namespace

int renameWithoutReplacing(int sourceFolder, const char* source, int targetFolder,
    const char* target, JournalEntry* journal)
{
    const Names names{sourceFolder, source, targetFolder, target, journal};
    const auto before = statusOf(sourceFolder, source);
    if (!before)
        return before.error();
    const int error = renameAndLook(names, before->identity);
    // Changing a folder's parent changes the folder, so it takes the permission to write to it.
    if (error != EACCES || !before->isFolder() || (before->mode & S_IWUSR)
        || before->owner != ::geteuid())
        return error;
    const BorrowedPermissions writable(sourceFolder, source, before->permissions() | S_IWUSR);
    return writable ? renameAndLook(names, before->identity) : error;
}

} // namespace kestavon
