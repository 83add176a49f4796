#include "platform/linux/removal/move_item.h"

#include "core/domain/removal_guard.h"
#include "platform/linux/mount_table.h"
#include "platform/linux/removal/entry_status.h"
#include "platform/linux/removal/metadata.h"
#include "platform/linux/removal/move_across_devices.h"
#include "platform/linux/removal/rename_item.h"

#include <algorithm>
#include <cerrno>

#include <unistd.h>

namespace kestavon {

namespace {

/// Whether a rename of the item to the folder has a chance. The device numbers are only a hint -
/// on layered file systems a file need not have its folder's -, and the rename's own answer
/// decides.
bool mayShareDevice(const EntryStatus& item, int sourceFolder, int targetFolder)
{
    const auto from = item.isFolder() ? Result<EntryStatus, int>(item) : statusOf(sourceFolder, "");
    const auto to = statusOf(targetFolder, "");
    return from && to && from->identity.device == to->identity.device;
}

/// Whether marks on the item would be its own: every name of a file shows the same ones.
bool canCarryMarks(const EntryStatus& item)
{
    return item.isFolder() || (item.isFile() && item.links == 1);
}

/// Puts the marks on the item, or tells whoever wants to keep them elsewhere.
void markItem(int folder, const char* name, const EntryStatus& item, const MoveOptions& options)
{
    if (options.marks.empty())
        return;
    const bool isMarked = canCarryMarks(item) && setMarks(folder, name, options.marks);
    if (!isMarked && options.whenUnmarkable)
        options.whenUnmarkable();
}

/// Whether something is mounted on a folder below this one. A rename would take it along, and who
/// then empties that place empties another disk.
bool holdsMountPoint(int folder, const std::string& name)
{
    const auto above = pathOfFolder(folder);
    if (!above)
        return false;
    const auto path = (*above == "/" ? "" : *above) + '/' + name;
    return std::ranges::any_of(
        currentMounts(), [&path](const Mount& mount) { return isAtOrBelow(mount.point, path); });
}

/// Whether the item gets another permission for a moment: to be put into another folder, or to be
/// marked.
bool needsLoan(const EntryStatus& item, const MoveOptions& options)
{
    const auto user = ::geteuid();
    const bool isMarked = !options.marks.empty() || !options.unmarkPrefix.empty();
    return user != 0 && item.owner == user && (item.mode & S_IWUSR) == 0
        && (item.isFolder() || (item.isFile() && isMarked));
}

/// Notes what a kill would leave on the item, wherever it lies then.
void noteTraces(const ItemPlace& source, const ItemPlace& target, const EntryStatus& item,
    const MoveOptions& options, JournalEntry& journal)
{
    const bool isLent = needsLoan(item, options);
    const bool isMarked = !options.marks.empty() && canCarryMarks(item);
    if (!isLent && !isMarked && options.unmarkPrefix.empty())
        return;
    const auto folder = pathOfFolder(source.folder.get());
    const auto targetFolder = pathOfFolder(target.folder.get());
    if (!folder || !targetFolder)
        return;
    const auto before = *folder + '/' + source.name;
    const auto after = *targetFolder + '/' + target.name;
    const auto inode = item.identity.inode;
    std::vector<Note> notes;
    for (const auto& mark : options.marks) {
        if (isMarked)
            notes.emplace_back(NotedMarks{.path = before, .inode = inode, .prefix = mark.name});
    }
    if (!options.unmarkPrefix.empty())
        notes.emplace_back(
            NotedMarks{.path = after, .inode = inode, .prefix = options.unmarkPrefix});
    for (const auto& path : {before, after}) {
        if (isLent)
            notes.emplace_back(NotedPermissions{.path = path,
                .inode = inode,
                .former = item.permissions(),
                .borrowed = item.permissions() | S_IWUSR});
    }
    journal.add(notes);
}

int moveToFolder(const ItemPlace& source, const ItemPlace& target, const MoveOptions& options,
    MoveReport& report, JournalEntry& journal)
{
    const int folder = source.folder.get();
    const auto* name = source.name.c_str();
    const int targetFolder = target.folder.get();
    const auto* targetName = target.name.c_str();
    const auto item = statusOf(folder, name);
    if (!item)
        return item.error();
    if (item->isFolder() && options.refusesFolders)
        return ESTALE;
    if (item->isFolder() && holdsMountPoint(folder, source.name))
        return EBUSY;
    noteTraces(source, target, *item, options, journal);
    // Before the rename, so that a crash cannot leave an item whose origin nobody knows.
    const bool marksFirst
        = mayShareDevice(*item, folder, targetFolder) && !statusOf(targetFolder, targetName);
    if (marksFirst)
        markItem(folder, name, *item, options);
    const int error = renameWithoutReplacing(folder, name, targetFolder, targetName, &journal);
    if (error == 0) {
        if (!marksFirst)
            markItem(targetFolder, targetName, *item, options);
        removeMarks(targetFolder, targetName, options.unmarkPrefix);
        return 0;
    }
    for (const auto& mark : options.marks) {
        if (marksFirst && canCarryMarks(*item))
            removeMarks(folder, name, mark.name);
    }
    if (error != EXDEV)
        return error;
    report.copied = true;
    return moveAcrossDevices(source, target, options, report, journal);
}

} // namespace

FileResult<MoveReport> moveItem(const ItemPlace& source, const ItemPlace& destination,
    const MoveOptions& options, const DeedJournal& journal)
{
    MoveReport report;
    auto entry = journal.begin();
    if (const int error = moveToFolder(source, destination, options, report, entry))
        return moveError(fileErrorKind(error), source.name, destination.folderName);
    return report;
}

} // namespace kestavon
