#include "platform/linux/trash/mac_trash.h"

#include "platform/linux/removal/move_item.h"
#include "platform/linux/trash/trash_names.h"
#include "platform/linux/trash/trash_places.h"

#include <cerrno>

namespace kestavon {

MacTrash::MacTrash(const HostLayout& layout, ProtectedPlaces protectedPlaces)
    : m_folder(macTrashFolder(layout))
    , m_protectedPlaces(std::move(protectedPlaces))
    , m_journal(journalFolder(layout))
{
}

FileResult<std::string> MacTrash::trashItem(const std::string& path, const TrashOptions& options)
{
    const auto item = findTrashableItem(path, options, m_protectedPlaces);
    if (!item)
        return item.error();
    if (auto refusal = refusalBecauseOfTrash(*item, withoutLinks(m_folder)))
        return *refusal;
    auto trash = openTrash();
    if (!trash)
        return trash.error();
    clearUnfinishedMoves();

    const auto longestName = longestNameIn(trash->get());
    MoveOptions moveOptions;
    moveOptions.stop = options.stop;
    moveOptions.progress = options.progress;
    moveOptions.refusesFolders = options.refusesFolders;
    ItemPlace destination{std::move(*trash), {}, std::string(trashName)};
    constexpr std::size_t inOrder = 10'000;
    for (std::size_t attempt = 1; const auto number = nameNumber(attempt, inOrder); ++attempt) {
        destination.name = nameWithNumberBeforeExtension(item->place.name, number, longestName);
        // Looked at first, so that nothing is copied only to find its name taken.
        if (mayExist(destination.folder.get(), destination.name))
            continue;
        const auto moved = moveItem(item->place, destination, moveOptions, m_journal);
        if (!moved && moved.error().kind == FileError::Kind::fileExists)
            continue;
        if (!moved)
            return moved.error();
        if (moved->remainsAtSource || isAtItsPlace(*item))
            return remainsAtItsPlace(*item);
        return m_folder + '/' + destination.name;
    }
    return moveError(FileError::Kind::fileExists, item->place.name, trashName);
}

FileResult<FileDescriptor> MacTrash::openTrash() const
{
    if (::mkdir(m_folder.c_str(), 0700) != 0 && errno != EEXIST)
        return folderError(fileErrorKind(errno), trashName);
    // A person may have put a link to another disk there.
    auto opened = openFolder(m_folder);
    if (!opened)
        return folderError(fileErrorKind(opened.error()), trashName);
    return std::move(*opened);
}

void MacTrash::forgetItem(const std::string&) { }

void MacTrash::clearUnfinishedMoves()
{
    std::call_once(m_cleared, [this] { SystemFileMover().clearUnfinishedMoves(m_folder); });
}

std::vector<TrashPlace> MacTrash::trashPlaces() const
{
    return {{m_folder, m_folder}};
}

} // namespace kestavon
