#include "platform/linux/removal/unfinished_moves.h"

#include "core/domain/uuid.h"
#include "platform/linux/removal/copied_remainder.h"
#include "platform/linux/removal/folder_listing.h"
#include "platform/linux/removal/item_place.h"
#include "platform/linux/removal/metadata.h"
#include "platform/linux/removal/remove_tree.h"
#include "platform/linux/removal/rename_item.h"
#include "platform/linux/removal/retry.h"

#include <chrono>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>

namespace kestavon {

namespace {

constexpr std::string_view partialPrefix = ".kestavon-partial-";
constexpr std::string_view removedPrefix = ".kestavon-removed-";

bool isPrefixAndId(std::string_view name, std::string_view prefix)
{
    return name.starts_with(prefix) && Uuid::fromText(name.substr(prefix.size())).has_value();
}

bool lockAgainstMoves(int folder)
{
    return retrying([&] { return ::flock(folder, LOCK_EX | LOCK_NB); }) == 0;
}

/// Deletes what is left of the source of a copy that is in its place, as far as the copy holds it;
/// the rest gets its name back. Nothing is left to be done when this gives true.
bool finishRemoval(const std::string& removedSource, int folder, const char* copy)
{
    const auto pathLength = removedSource.find('\0');
    const auto remainder = openItemPlace(removedSource.substr(0, pathLength));
    if (!remainder) // Its volume may be back the next time.
        return false;
    if (!isRemovedSourceName(remainder->name))
        return true;
    const FileDescriptor sourceFolder(retrying([&] {
        return ::openat(remainder->folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    }));
    if (!sourceFolder || !lockAgainstMoves(sourceFolder.get()))
        return false;
    const auto left = removeCopiedRemainder(sourceFolder.get(), remainder->name, folder, copy);
    if (left != Remainder::notCopied || pathLength == std::string::npos)
        return left == Remainder::none;
    const auto formerName = removedSource.substr(pathLength + 1);
    return !formerName.empty() && formerName.find('/') == std::string::npos
        && renameWithoutReplacing(
               sourceFolder.get(), remainder->name.c_str(), sourceFolder.get(), formerName.c_str())
        == 0;
}

} // namespace

MoveNames MoveNames::random()
{
    const auto id = Uuid::random().text();
    return {.partialCopy = std::string(partialPrefix) + id,
        .removedSource = std::string(removedPrefix) + id};
}

std::string removedSourceText(const std::string& path, const std::string& formerName)
{
    return path + '\0' + formerName;
}

bool isPartialCopyName(std::string_view name)
{
    return isPrefixAndId(name, partialPrefix);
}

bool isRemovedSourceName(std::string_view name)
{
    return isPrefixAndId(name, removedPrefix);
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
    if (const auto listing = listFolder(folder)) {
        for (const auto& entry : listing->entries()) {
            const auto* name = listing->nameText(entry);
            if (isPartialCopyName(name)) {
                removeTree(folder, name, {});
                continue;
            }
            const auto removedSource = readMark(folder, name, removedSourceMark);
            if (removedSource && finishRemoval(*removedSource, folder, name))
                removeMarks(folder, name, std::string(removedSourceMark));
        }
    }
    ::flock(folder, LOCK_UN);
}

} // namespace kestavon
