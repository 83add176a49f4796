#include "platform/linux/trash/freedesktop_trash.h"

#include "core/domain/removal_guard.h"
#include "platform/linux/removal/move_item.h"
#include "platform/linux/removal/unfinished_moves.h"
#include "platform/linux/trash/directory_sizes.h"
#include "platform/linux/trash/mount_table.h"
#include "platform/linux/trash/trash_info.h"
#include "platform/linux/trash/trash_names.h"
#include "platform/linux/trash/trash_places.h"
#include "platform/linux/trash/trash_record.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace kestavon {

namespace {

/// The path that the record of an item names: whole in the home's Trash, so that it can be found
/// from there, and from the top folder on another volume, which may be mounted elsewhere next time.
std::string recordedPath(const TrashableItem& item, const TrashFolder& trash)
{
    if (trash.topFolder.empty())
        return item.path;
    return item.path.substr(trash.topFolder == "/" ? 1 : trash.topFolder.size() + 1);
}

} // namespace

FreedesktopTrash::FreedesktopTrash(HostLayout layout, ProtectedPlaces protectedPlaces,
    std::shared_ptr<const Clock> clock, std::shared_ptr<const MountedVolumes> volumes)
    : m_layout(std::move(layout))
    , m_protectedPlaces(std::move(protectedPlaces))
    , m_clock(std::move(clock))
    , m_volumes(std::move(volumes))
{
}

FileResult<Done> FreedesktopTrash::trashItem(const std::string& path, const TrashOptions& options)
{
    const auto item = findTrashableItem(path, options, m_protectedPlaces);
    if (!item)
        return item.error();
    const auto volume = m_volumes->holding(item->place.folder.get());
    if (auto refusal = refusalFor(*item, volume))
        return *refusal;
    const auto trash = openTrashFor(*item, volume);
    if (!trash)
        return trash.error();
    clearOnce(*trash);
    return put(*item, *trash, options);
}

std::optional<FileError> FreedesktopTrash::refusalFor(
    const TrashableItem& item, const std::optional<MountedVolume>& volume) const
{
    if (auto refusal = refusalBecauseOfTrash(item, withoutLinks(homeTrashFolder(m_layout))))
        return refusal;
    if ((volume && isInVolumeTrash(item.path, volume->topFolder))
        || isInSandboxTrash(item.path, withoutLinks(m_layout.home)))
        return alreadyInTrash(item);
    return std::nullopt;
}

FileResult<TrashFolder> FreedesktopTrash::openTrashFor(
    const TrashableItem& item, const std::optional<MountedVolume>& volume) const
{
    const auto user = ::geteuid();
    const auto homeVolume = volumeOf(homeTrashFolder(m_layout), *m_volumes);
    const bool isOfHome = volume && homeVolume && volume->id == homeVolume->id;
    const auto liesBelow = [&item](const std::string& top) {
        return top == "/"
            || isAtOrBelow(item.path, top); // else records could not name it from there
    };
    if (volume && !isOfHome && liesBelow(volume->topFolder)) {
        if (auto trash = openVolumeTrash(volume->topFolder, user))
            return std::move(*trash);
    }
    auto trash = openHomeTrash(m_layout.dataHome, user);
    if (!trash)
        return folderError(fileErrorKind(trash.error()), trashName);
    return std::move(*trash);
}

FileResult<Done> FreedesktopTrash::put(
    const TrashableItem& item, const TrashFolder& trash, const TrashOptions& options) const
{
    const auto text = trashInfoText(recordedPath(item, trash), m_clock->now());
    const auto longestName = longestNameIn(trash.info.get()) - trashInfoEnding.size();
    MoveOptions moveOptions;
    moveOptions.stop = options.stop;
    ItemPlace destination{
        FileDescriptor(::fcntl(trash.files.get(), F_DUPFD_CLOEXEC, 0)), {}, std::string(trashName)};

    for (std::size_t attempt = 1; const auto number = nameNumber(attempt); ++attempt) {
        destination.name = nameWithNumberLast(item.place.name, number, longestName);
        auto record = TrashRecord::write(trash, destination.name, text);
        if (!record && record.error() == EEXIST)
            continue;
        if (!record)
            return moveError(fileErrorKind(record.error()), item.place.name, trashName);

        const auto moved = moveItem(item.place, destination, moveOptions);
        if (!moved && moved.error().kind == FileError::Kind::fileExists)
            continue; // somebody without a record was faster
        if (!moved) {
            // What lies in the Trash must have its record, whatever went wrong after it got there.
            if (mayExist(trash.files.get(), destination.name))
                record->keep();
            return moved.error();
        }
        record->keep();
        if (S_ISDIR(item.status.st_mode)) {
            if (const auto bytes = bytesOnDisk(trash.files.get(), destination.name))
                recordDirectorySize(trash.root.get(), destination.name, *bytes, record->time());
        }
        if (moved->remainsAtSource)
            return remainsAtItsPlace(item);
        return Done{};
    }
    return moveError(FileError::Kind::fileExists, item.place.name, trashName);
}

void FreedesktopTrash::clearOnce(const TrashFolder& trash)
{
    {
        const std::lock_guard lock(m_mutex);
        if (!m_cleared.insert(trash.path).second)
            return;
    }
    clearUnfinishedMovesIn(trash.files.get());
    clearAbandonedRecords(trash);
}

void FreedesktopTrash::forgetItem(const std::string& path)
{
    for (const auto& place : trashPlaces()) {
        const auto name = path.substr(std::min(place.items.size() + 1, path.size()));
        if (name.empty() || name.find('/') != std::string::npos || path != place.items + '/' + name)
            continue;
        const auto trash = openExistingTrash(place.folder, ::geteuid());
        if (!trash || mayExist(trash->files.get(), name))
            return;
        if (removeRecord(*trash, name))
            forgetDirectorySize(trash->root.get(), name);
        return;
    }
}

std::vector<TrashPlace> FreedesktopTrash::trashPlaces() const
{
    return nativeTrashPlaces(m_layout, currentMounts(), ::geteuid());
}

} // namespace kestavon
