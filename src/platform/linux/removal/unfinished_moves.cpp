#include "platform/linux/removal/unfinished_moves.h"

#include "core/domain/uuid.h"
#include "platform/linux/mount_table.h"
#include "platform/linux/removal/copied_remainder.h"
#include "platform/linux/removal/deed_journal.h"
#include "platform/linux/removal/folder_listing.h"
#include "platform/linux/removal/item_place.h"
#include "platform/linux/removal/metadata.h"
#include "platform/linux/removal/patience.h"
#include "platform/linux/removal/remove_tree.h"
#include "platform/linux/removal/rename_item.h"
#include "platform/linux/removal/retry.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

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

/// A copy in the folder whose source may not be gone.
struct MarkedCopy {
    std::string name;
    RemovedSource source;
};

/// Clears the locked folder of half copies and of folders that were being deleted, and gives the
/// copies that are not finished.
std::vector<MarkedCopy> clearTarget(int folder)
{
    std::vector<MarkedCopy> copies;
    const auto listing = listFolder(folder);
    if (!listing)
        return copies;
    for (const auto& entry : listing->entries()) {
        const auto* name = listing->nameText(entry);
        if (isPartialCopyName(name) || isDeletedName(name))
            removeTree(folder, name, {});
        else if (const auto mark = readMark(folder, name, removedSourceMark))
            copies.push_back({.name = name, .source = RemovedSource::fromText(*mark)});
    }
    return copies;
}

/// Finishes the copies in the folder. It is not locked any more: no move was at work when their
/// marks were read, and whoever takes such a copy away only keeps its source from being deleted.
void finishCopies(int folder, std::vector<MarkedCopy> copies)
{
    const auto mounts = currentMounts();
    std::stable_partition(copies.begin(), copies.end(),
        [&](const MarkedCopy& copy) { return !isOnServer(copy.source.path, mounts); });
    for (const auto& copy : copies) {
        if (finishRemoval(copy.source, folder, copy.name.c_str()))
            removeMarks(folder, copy.name.c_str(), std::string(removedSourceMark));
    }
}

void clear(const FileDescriptor& folder, const std::string& journalFolder)
{
    if (folder && lockAgainstMoves(folder.get())) {
        auto copies = clearTarget(folder.get());
        ::flock(folder.get(), LOCK_UN);
        finishCopies(folder.get(), std::move(copies));
    }
    finishDeeds(journalFolder);
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

bool lockAgainstMoves(int folder)
{
    return retrying([&] { return ::flock(folder, LOCK_EX | LOCK_NB); }) == 0;
}

FileDescriptor openForLock(int folder)
{
    return FileDescriptor(
        retrying([&] { return ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
}

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

void clearUnfinishedMoves(
    FileDescriptor folder, std::string journalFolder, std::chrono::milliseconds patience)
{
    auto shared = std::make_shared<FileDescriptor>(std::move(folder));
    runWithPatience(
        patience, [folder = std::move(shared), journalFolder = std::move(journalFolder)] {
            clear(*folder, journalFolder);
        });
}

} // namespace kestavon
