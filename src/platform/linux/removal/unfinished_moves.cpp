#include "platform/linux/removal/unfinished_moves.h"

#include "core/domain/uuid.h"
#include "platform/linux/removal/copied_remainder.h"
#include "platform/linux/removal/folder_listing.h"
#include "platform/linux/removal/item_place.h"
#include "platform/linux/removal/metadata.h"
#include "platform/linux/removal/remove_tree.h"
#include "platform/linux/removal/rename_item.h"
#include "platform/linux/removal/retry.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <map>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>

namespace kestavon {

namespace {

constexpr std::string_view partialPrefix = ".kestavon-partial-";
constexpr std::string_view removedPrefix = ".kestavon-removed-";
constexpr std::string_view deletedPrefix = ".kestavon-deleted-";

bool isPrefixAndId(std::string_view name, std::string_view prefix)
{
    return name.starts_with(prefix) && Uuid::fromText(name.substr(prefix.size())).has_value();
}

bool lockAgainstMoves(int folder)
{
    return retrying([&] { return ::flock(folder, LOCK_EX | LOCK_NB); }) == 0;
}

FileDescriptor openForLock(int folder)
{
    return FileDescriptor(
        retrying([&] { return ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
}

bool renameIn(int folder, const std::string& from, const std::string& to)
{
    return renameWithoutReplacing(folder, from.c_str(), folder, to.c_str()) == 0;
}

/// The end came when the copy was in its place and the source still under its own name: puts it
/// aside if it is the source indeed and the copy holds all of it. False when there is nothing to
/// do.
bool putAside(const RemovedSource& source, const std::string& asideName, int sourceFolder,
    int copyFolder, const char* copy)
{
    if (source.formerName.empty() || source.formerName.find('/') != std::string::npos)
        return false;
    const auto found = statusOf(sourceFolder, source.formerName.c_str());
    return found && found->identity.inode == source.inode
        && isCopied(sourceFolder, source.formerName, copyFolder, copy)
        && renameIn(sourceFolder, source.formerName, asideName);
}

/// Deletes what is left of the source of a copy that is in its place, as far as the copy holds it;
/// the rest gets its name back. Nothing is left to be done when this gives true.
bool finishRemoval(const RemovedSource& source, int folder, const char* copy)
{
    const auto remainder = openItemPlace(source.path);
    if (!remainder) // Its volume may be back the next time.
        return false;
    if (!isRemovedSourceName(remainder->name))
        return true;
    const auto sourceFolder = openForLock(remainder->folder.get());
    if (!sourceFolder || !lockAgainstMoves(sourceFolder.get()))
        return false;
    const auto aside = statusOf(sourceFolder.get(), remainder->name.c_str());
    if (!aside && aside.error() == ENOENT
        && !putAside(source, remainder->name, sourceFolder.get(), folder, copy))
        return true;
    const auto left = removeCopiedRemainder(sourceFolder.get(), remainder->name, folder, copy);
    if (left != Remainder::notCopied || source.formerName.empty()
        || source.formerName.find('/') != std::string::npos)
        return left == Remainder::none;
    return renameIn(sourceFolder.get(), remainder->name, source.formerName);
}

/// Clears the locked folder of half copies and of what is left of sources. False when some of it
/// could not be done now.
bool clearTarget(int folder, const FolderListing& listing)
{
    bool isDone = true;
    for (const auto& entry : listing.entries()) {
        const auto* name = listing.nameText(entry);
        if (isPartialCopyName(name) || isDeletedName(name)) {
            isDone = removeTree(folder, name, {}).error == 0 && isDone;
            continue;
        }
        const auto mark = readMark(folder, name, removedSourceMark);
        if (!mark)
            continue;
        if (finishRemoval(RemovedSource::fromText(*mark), folder, name))
            removeMarks(folder, name, std::string(removedSourceMark));
        else
            isDone = false;
    }
    return isDone;
}

/// Clears the folder at `path` as one that something was moved to.
bool clearTargetAt(const std::string& path)
{
    const auto place = openFolder(path);
    if (!place) // Its volume may be back the next time.
        return false;
    const auto folder = openForLock(place->get());
    if (!folder || !lockAgainstMoves(folder.get()))
        return false;
    const auto listing = listFolder(folder.get());
    return listing && clearTarget(folder.get(), *listing);
}

/// Clears the folders to which entries of this one were under way.
void clearTargetsOf(int folder, const FolderListing& listing)
{
    std::map<std::string, bool> isCleared; // by target
    for (const auto& entry : listing.entries()) {
        const auto* name = listing.nameText(entry);
        const auto target = readMark(folder, name, underWayMark);
        if (!target)
            continue;
        const auto [known, isNew] = isCleared.try_emplace(*target, false);
        if (isNew)
            known->second = clearTargetAt(*target);
        if (known->second)
            removeMarks(folder, name, std::string(underWayMark));
    }
}

} // namespace

MoveNames MoveNames::random()
{
    const auto id = Uuid::random().text();
    return {.partialCopy = std::string(partialPrefix) + id,
        .removedSource = std::string(removedPrefix) + id,
        .deleted = std::string(deletedPrefix) + id};
}

std::string RemovedSource::text() const
{
    return path + '\0' + formerName + '\0' + std::to_string(inode);
}

RemovedSource RemovedSource::fromText(const std::string& text)
{
    RemovedSource source;
    const auto afterPath = std::min(text.find('\0'), text.size());
    source.path = text.substr(0, afterPath);
    if (afterPath == text.size())
        return source;
    const auto afterName = std::min(text.find('\0', afterPath + 1), text.size());
    source.formerName = text.substr(afterPath + 1, afterName - afterPath - 1);
    const auto digits = std::min(afterName + 1, text.size());
    std::from_chars(text.data() + digits, text.data() + text.size(), source.inode);
    return source;
}

bool isPartialCopyName(std::string_view name)
{
    return isPrefixAndId(name, partialPrefix);
}

bool isRemovedSourceName(std::string_view name)
{
    return isPrefixAndId(name, removedPrefix);
}

bool isDeletedName(std::string_view name)
{
    return isPrefixAndId(name, deletedPrefix);
}

void lockForMove(int folder)
{
    using namespace std::chrono_literals;
    for (int attempt = 0; attempt < 50; ++attempt) {
        if (::flock(folder, LOCK_SH | LOCK_NB) == 0 || errno != EWOULDBLOCK)
            return;
        std::this_thread::sleep_for(20ms);
    }
}

void clearUnfinishedMovesIn(int folder)
{
    if (!lockAgainstMoves(folder))
        return;
    const auto listing = listFolder(folder);
    if (listing)
        clearTarget(folder, *listing);
    ::flock(folder, LOCK_UN); // What was under way from here may have to be finished here.
    if (listing)
        clearTargetsOf(folder, *listing);
}

} // namespace kestavon
