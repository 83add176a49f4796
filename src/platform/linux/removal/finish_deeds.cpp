#include "core/domain/uuid.h"
#include "platform/linux/descriptor_io.h"
#include "platform/linux/mount_table.h"
#include "platform/linux/removal/deed_journal.h"
#include "platform/linux/removal/folder_listing.h"
#include "platform/linux/removal/item_place.h"
#include "platform/linux/removal/metadata.h"
#include "platform/linux/removal/remove_file.h"
#include "platform/linux/removal/remove_tree.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace kestavon {

namespace {

constexpr std::size_t longestEntry = 64 * 1024 * 1024; ///< bytes
/// So long a disk that was taken away may be gone before its notes are given up.
constexpr time_t longestWait = 100 * 24 * 60 * 60; ///< seconds

/// The notes of one deed that nobody is at work on, locked.
struct AbandonedEntry {
    std::string fileName;
    FileDescriptor file;
    std::vector<Note> notes;
};

/// An entry of a folder, as far as it is there.
struct Found {
    ItemPlace place;
    EntryStatus status;

    int folder() const { return place.folder.get(); }
    const char* name() const { return place.name.c_str(); }
};

std::optional<Found> find(const std::string& path)
{
    auto place = openItemPlace(path);
    if (!place)
        return std::nullopt;
    const auto status = statusOf(place->folder.get(), place->name.c_str());
    if (!status)
        return std::nullopt;
    return Found{std::move(*place), *status};
}

/// Whether the folder that holds the entry is there: else its volume may be back the next time.
bool canBeReached(const std::string& path)
{
    return static_cast<bool>(openItemPlace(path));
}

bool finish(const NotedPermissions& note)
{
    const auto found = find(note.path);
    if (!found) // What it is on may only be away for now, but nobody waits for permissions.
        return true;
    const auto& status = found->status;
    // Whoever gave it other permissions since then meant them.
    return status.identity.inode != note.inode || status.permissions() != note.borrowed
        || changePermissions(found->folder(), found->name(), note.former);
}

bool finish(const NotedMarks& note)
{
    const auto found = find(note.path);
    if (found && found->status.identity.inode == note.inode)
        removeMarks(found->folder(), found->name(), note.prefix);
    return true;
}

bool finish(const NotedFile& note)
{
    const auto aside = find(note.folder + '/' + note.aside);
    const auto target = note.target.empty() ? std::nullopt : find(note.target);
    const auto isTheFile = [&note](const std::optional<Found>& found) {
        return found && !found->status.isFolder() && found->status.identity.inode == note.inode;
    };
    const auto isTarget = [&](const std::optional<Found>& found) {
        return isTheFile(found) && isTheFile(target)
            && found->status.identity == target->status.identity;
    };
    if (isTarget(aside)) // It has arrived; this is only a further name.
        return removeEntry(aside->folder(), aside->name(), 0) == 0;
    if (isTheFile(aside))
        return giveNameBack(aside->folder(), note.aside, note.name);
    if (isTarget(find(note.folder + '/' + note.name))) // It was not told to have arrived.
        return removeEntry(target->folder(), target->name(), 0) == 0;
    return canBeReached(note.folder + '/' + note.aside);
}

/// A source whose copy is gone can only be shown to the user again.
bool showAgain(const RemovedSource& source)
{
    const auto aside = find(source.path);
    if (!aside)
        return canBeReached(source.path);
    return !isRemovedSourceName(aside->place.name) || source.formerName.empty()
        || source.formerName.find('/') != std::string::npos
        || giveNameBack(aside->folder(), aside->place.name, source.formerName);
}

bool finish(const NotedMove& note)
{
    const auto folder = openFolder(note.targetFolder);
    if (!folder)
        return false;
    const auto locked = openForLock(folder->get());
    if (!locked || !lockAgainstMoves(locked.get()))
        return false;
    if (isPartialCopyName(note.partialCopy)
        && removeTree(locked.get(), note.partialCopy, {}).error != 0
        && statusOf(locked.get(), note.partialCopy.c_str()))
        return false;
    const auto* target = note.targetName.c_str();
    const auto copy = statusOf(locked.get(), target);
    if (!copy)
        return copy.error() == ENOENT && showAgain(note.source);
    ::flock(locked.get(), LOCK_UN); // The source may lie in the same folder.
    return finishRemoval(note.source, locked.get(), target);
}

bool isOnServer(const Note& note, const std::vector<Mount>& mounts)
{
    struct Paths {
        std::vector<std::string> operator()(const NotedMove& move) const
        {
            return {move.targetFolder, move.source.path};
        }
        std::vector<std::string> operator()(const NotedFile& file) const
        {
            return {file.folder, file.target};
        }
        std::vector<std::string> operator()(const NotedPermissions& lent) const
        {
            return {lent.path};
        }
        std::vector<std::string> operator()(const NotedMarks& marks) const { return {marks.path}; }
    };
    return std::ranges::any_of(std::visit(Paths(), note),
        [&](const std::string& path) { return kestavon::isOnServer(path, mounts); });
}

/// Whether the entry was written by this user: an administrator in somebody's home does not do what
/// files in there say.
bool isOwn(int file)
{
    struct stat status { };
    return ::fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == ::geteuid()
        && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

std::vector<AbandonedEntry> abandonedEntries(int folder)
{
    std::vector<AbandonedEntry> entries;
    const auto listing = listFolder(folder);
    if (!listing)
        return entries;
    constexpr std::size_t atOnce = 200; // each an open file; the next start takes the others
    for (const auto& listed : listing->entries()) {
        if (entries.size() == atOnce)
            break;
        AbandonedEntry entry;
        entry.fileName = listing->name(listed);
        if (!Uuid::fromText(entry.fileName))
            continue;
        entry.file.reset(::openat(
            folder, entry.fileName.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        if (!entry.file || !isOwn(entry.file.get())
            || ::flock(entry.file.get(), LOCK_EX | LOCK_NB) != 0)
            continue;
        const auto text = readAll(entry.file.get(), longestEntry);
        if (!text)
            continue;
        entry.notes = notesIn(*text);
        entries.push_back(std::move(entry));
    }
    return entries;
}

bool isOld(int file)
{
    struct stat status { };
    return ::fstat(file, &status) == 0 && ::time(nullptr) - status.st_mtime > longestWait;
}

bool finishAll(const std::vector<Note>& notes)
{
    bool areDone = true;
    // Permissions first: the rest of a folder may then go, or get another name.
    for (const bool arePermissions : {true, false}) {
        for (const auto& note : notes) {
            if (std::holds_alternative<NotedPermissions>(note) == arePermissions)
                areDone = std::visit([](const auto& one) { return finish(one); }, note) && areDone;
        }
    }
    return areDone;
}

} // namespace

void finishDeeds(const std::string& journalFolder)
{
    const auto place
        = journalFolder.empty() ? Result<FileDescriptor, int>(ENOENT) : openFolder(journalFolder);
    const auto folder = place ? openForLock(place->get()) : FileDescriptor();
    if (!folder)
        return;
    auto entries = abandonedEntries(folder.get());
    const auto mounts = currentMounts();
    std::stable_partition(entries.begin(), entries.end(), [&mounts](const AbandonedEntry& entry) {
        return std::ranges::none_of(
            entry.notes, [&mounts](const Note& note) { return isOnServer(note, mounts); });
    });
    for (const auto& entry : entries) {
        if (finishAll(entry.notes) || isOld(entry.file.get()))
            ::unlinkat(folder.get(), entry.fileName.c_str(), 0);
    }
}

} // namespace kestavon
