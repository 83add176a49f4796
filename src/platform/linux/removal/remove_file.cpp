#include "platform/linux/removal/remove_file.h"

#include "platform/linux/removal/entry_status.h"
#include "platform/linux/removal/item_place.h"
#include "platform/linux/removal/remove_tree.h"
#include "platform/linux/removal/rename_item.h"
#include "platform/linux/removal/unfinished_moves.h"
#include "platform/linux/trash/trash_names.h"

#include <cerrno>

namespace kestavon {

namespace {

std::int64_t nanoseconds(const struct timespec& time)
{
    return time.tv_sec * 1'000'000'000 + time.tv_nsec;
}

/// Whether the entry is the file; its time of change counts only while it has its own name, because
/// being renamed is a change.
bool isFile(int folder, const char* name, const FileIdentity& file, bool isRenamed)
{
    const auto now = statusOf(folder, name);
    return now && now->isFile() && now->identity == Identity{file.device, file.inode}
    && now->size == file.size && nanoseconds(now->modified) == file.modifiedAt
        && (isRenamed || nanoseconds(now->changed) == file.changedAt);
}

bool isAllowed(const std::function<bool()>& mayGo)
{
    try {
        return mayGo();
    } catch (...) { // It gets its name back first of all.
        return false;
    }
}

} // namespace

bool giveNameBack(int folder, const std::string& aside, const std::string& name)
{
    constexpr std::size_t names = 100;
    const auto longestName = longestNameIn(folder);
    for (std::size_t number = 1; number <= names; ++number) {
        const auto free = nameWithNumberBeforeExtension(name, number, longestName);
        const int error = renameWithoutReplacing(folder, aside.c_str(), folder, free.c_str());
        if (error != EEXIST)
            return error == 0;
    }
    return false;
}

int removeFileIf(int folder, const std::string& name, const FileIdentity& expected,
    const std::function<bool()>& mayGo, JournalEntry& journal)
{
    if (!isFile(folder, name.c_str(), expected, false))
        return ESTALE;
    const auto aside = MoveNames::random().removedSource;
    if (const auto path = pathOfFolder(folder))
        journal.add(NotedFile{
            .folder = *path, .name = name, .aside = aside, .inode = expected.inode, .target = {}});
    if (const int error = renameWithoutReplacing(folder, name.c_str(), folder, aside.c_str()))
        return error;
    int error = ESTALE;
    if (isFile(folder, aside.c_str(), expected, true) && isAllowed(mayGo))
        error = removeEntry(folder, aside.c_str(), 0);
    if (error != 0 && !giveNameBack(folder, aside, name))
        journal.leave();
    return error;
}

} // namespace kestavon
