#include "platform/linux/trash/freedesktop_trash.h"

#include "core/domain/removal_guard.h"
#include "platform/linux/mount_table.h"
#include "platform/linux/removal/move_item.h"
#include "platform/linux/removal/unfinished_moves.h"
#include "platform/linux/trash/directory_sizes.h"
#include "platform/linux/trash/trash_info.h"
#include "platform/linux/trash/trash_names.h"
#include "platform/linux/trash/trash_places.h"
#include "platform/linux/trash/trash_record.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/resource.h>
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

/// Each keeps a file open until it has been moved; most of those that there may be are for others.
std::size_t itemsAtTheSameTime()
{
    struct rlimit files { };
    if (::getrlimit(RLIMIT_NOFILE, &files) != 0)
        return 1;
    return std::clamp<std::size_t>(files.rlim_cur / 4, 1, 256);
}

} // namespace

FreedesktopTrash::FreedesktopTrash(HostLayout layout, ProtectedPlaces protectedPlaces,
    std::shared_ptr<const Clock> clock, std::shared_ptr<const MountedVolumes> volumes)
    : m_layout(std::move(layout))
    , m_protectedPlaces(std::move(protectedPlaces))
    , m_clock(std::move(clock))
    , m_volumes(std::move(volumes))
    , m_journal(journalFolder(m_layout))
{
}

FileResult<std::string> FreedesktopTrash::trashItem(
    const std::string& path, const TrashOptions& options)
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
    std::vector<DirectorySize> sizes;
    for (std::size_t attempt = 1;;) {
        auto reservation = reserve(*item, *trash, attempt);
        if (!reservation)
            return reservation.error();
        if (!reservation->record.writeOut())
            return moveError(fileErrorKind(errno), item->place.name, trashName);
        auto result = put(*item, *trash, *reservation, options, sizes);
        attempt = reservation->attempt;
        if (!result && result.error().kind == FileError::Kind::fileExists)
            continue; // somebody without a record was faster
        recordDirectorySizes(trash->root.get(), sizes);
        return result;
    }
}

std::vector<FileResult<std::string>> FreedesktopTrash::trashItems(
    std::span<const std::string> paths, const TrashOptions& options)
{
    const auto atTheSameTime = itemsAtTheSameTime();
    std::vector<FileResult<std::string>> results;
    results.reserve(paths.size());
    while (!paths.empty()) {
        const auto count = std::min(paths.size(), atTheSameTime);
        trashTogether(paths.first(count), options, results);
        paths = paths.subspan(count);
    }
    return results;
}

void FreedesktopTrash::trashTogether(std::span<const std::string> paths,
    const TrashOptions& options, std::vector<FileResult<std::string>>& results)
{
    OpenTrashes trashes;
    std::vector<std::optional<Plan>> plans;
    plans.reserve(paths.size());
    for (const auto& path : paths)
        plans.push_back(
            options.stop.stop_requested() ? std::nullopt : planFor(path, options, trashes));
    writeOut(plans);

    DirectorySizes sizes;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        auto plan = std::exchange(plans[i], std::nullopt);
        std::optional<FileResult<std::string>> result;
        if (options.stop.stop_requested())
            result = stoppedBefore(paths[i]);
        else if (options.begins)
            options.begins(paths[i]);
        if (!result && plan && plan->isWritten) {
            // Looked at again: what was moved before may have taken this item with it.
            const auto item = findTrashableItem(paths[i], options, m_protectedPlaces);
            if (item && item->path == plan->path)
                result = put(*item, *plan->trash, plan->reservation, options, sizes[plan->trash]);
        }
        plan.reset(); // Its name is free again if the item did not take it.
        if (!result || (!*result && result->error().kind == FileError::Kind::fileExists))
            result = trashItem(paths[i], options);
        results.push_back(std::move(*result));
    }
    for (const auto& [trash, ofTrash] : sizes)
        recordDirectorySizes(trash->root.get(), ofTrash);
}

/// Nothing when there is an obstacle; whoever then moves the item by itself will meet it again.
std::optional<FreedesktopTrash::Plan> FreedesktopTrash::planFor(
    const std::string& path, const TrashOptions& options, OpenTrashes& trashes)
{
    const auto item = findTrashableItem(path, options, m_protectedPlaces);
    if (!item)
        return std::nullopt;
    const auto volume = m_volumes->holding(item->place.folder.get());
    if (!volume || refusalFor(*item, volume))
        return std::nullopt;
    auto& trash = trashes[volume->id];
    if (!trash) {
        auto opened = openTrashFor(*item, volume);
        if (!opened)
            return std::nullopt;
        trash = std::make_shared<const TrashFolder>(std::move(*opened));
        clearOnce(*trash);
    }
    auto reservation = reserve(*item, *trash, 1);
    if (!reservation)
        return std::nullopt;
    return Plan{trash, std::move(*reservation), item->path};
}

void FreedesktopTrash::writeOut(std::vector<std::optional<Plan>>& plans)
{
    std::map<std::shared_ptr<const TrashFolder>, std::vector<Plan*>> byTrash;
    for (auto& plan : plans) {
        if (plan)
            byTrash[plan->trash].push_back(&*plan);
    }
    for (const auto& [trash, ofTrash] : byTrash) {
        std::vector<const TrashRecord*> records;
        for (const auto* plan : ofTrash)
            records.push_back(&plan->reservation.record);
        const auto written = TrashRecord::writeOut(records);
        for (std::size_t i = 0; i < ofTrash.size(); ++i)
            ofTrash[i]->isWritten = written[i];
    }
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

FileResult<FreedesktopTrash::Reservation> FreedesktopTrash::reserve(
    const TrashableItem& item, const TrashFolder& trash, std::size_t attempt) const
{
    const auto text = trashInfoText(recordedPath(item, trash), m_clock->now());
    const auto longestName = longestNameIn(trash.info.get()) - trashInfoEnding.size();
    while (const auto number = nameNumber(attempt)) {
        ++attempt;
        auto name = nameWithNumberLast(item.place.name, number, longestName);
        auto record = TrashRecord::write(trash, name, text);
        if (record)
            return Reservation{std::move(*record), std::move(name), attempt};
        if (record.error() != EEXIST)
            return moveError(fileErrorKind(record.error()), item.place.name, trashName);
    }
    return FileError{FileError::Kind::other,
        moveError(FileError::Kind::fileExists, item.place.name, trashName).message};
}

FileResult<std::string> FreedesktopTrash::put(const TrashableItem& item, const TrashFolder& trash,
    Reservation& reservation, const TrashOptions& options, std::vector<DirectorySize>& sizes) const
{
    auto& [record, name, attempt] = reservation;
    const ItemPlace destination{FileDescriptor(::fcntl(trash.files.get(), F_DUPFD_CLOEXEC, 0)),
        name, std::string(trashName)};
    MoveOptions moveOptions;
    moveOptions.stop = options.stop;
    moveOptions.progress = options.progress;
    moveOptions.refusesFolders = options.refusesFolders;
    const auto moved = moveItem(item.place, destination, moveOptions, m_journal);
    if (!moved) {
        // What lies in the Trash must have its record, whatever went wrong after it got there.
        if (moved.error().kind != FileError::Kind::fileExists && mayExist(trash.files.get(), name))
            record.keep();
        return moved.error();
    }
    // Somebody may have emptied the Trash meanwhile, and taken it for one without an item.
    if (!record.isInPlace() && !record.writeAgain())
        return putBack(item, trash, name);
    record.keep();
    if (S_ISDIR(item.status.st_mode)) {
        if (const auto bytes = bytesOnDisk(trash.files.get(), name))
            sizes.push_back({.name = name, .bytes = *bytes, .trashInfoTime = record.time()});
    }
    if (moved->remainsAtSource || isAtItsPlace(item))
        return remainsAtItsPlace(item);
    return trash.path + "/files/" + name;
}

FileError FreedesktopTrash::putBack(
    const TrashableItem& item, const TrashFolder& trash, const std::string& name) const
{
    const ItemPlace trashed{FileDescriptor(::fcntl(trash.files.get(), F_DUPFD_CLOEXEC, 0)), name,
        std::string(trashName)};
    const auto back = moveItem(trashed, item.place, {}, m_journal);
    return moveError(back ? FileError::Kind::changed : back.error().kind, name, trashName);
}

void FreedesktopTrash::clearOnce(const TrashFolder& trash)
{
    {
        const std::lock_guard lock(m_mutex);
        if (!m_cleared.insert(trash.path).second)
            return;
    }
    kestavon::clearUnfinishedMoves(openForLock(trash.files.get()), {}, clearingPatience);
    clearAbandonedRecords(trash);
}

std::optional<FreedesktopTrash::OwnItem> FreedesktopTrash::findOwnItem(
    const std::string& path) const
{
    // Asked about every item, and finding every Trash takes longer than removing one.
    const auto folder = std::string_view(path).substr(0, std::min(path.rfind('/'), path.size()));
    if (lastComponent(folder) != "files")
        return std::nullopt;
    for (const auto& place : trashPlaces()) {
        auto name = path.substr(std::min(place.items.size() + 1, path.size()));
        if (name.empty() || name.find('/') != std::string::npos || path != place.items + '/' + name)
            continue;
        auto trash = openExistingTrash(place.folder, ::geteuid());
        if (!trash)
            return std::nullopt;
        return OwnItem{std::move(*trash), std::move(name)};
    }
    return std::nullopt;
}

void FreedesktopTrash::forgetItem(const std::string& path)
{
    const auto item = findOwnItem(path);
    if (item && !mayExist(item->trash.files.get(), item->name)
        && removeRecord(item->trash, item->name))
        forgetDirectorySize(item->trash.root.get(), item->name);
}

void FreedesktopTrash::keepRecordOf(const std::string& path)
{
    if (const auto item = findOwnItem(path))
        keepRecord(item->trash, item->name);
}

void FreedesktopTrash::clearUnfinishedMoves()
{
    if (const auto trash = openExistingTrash(homeTrashFolder(m_layout), ::geteuid()))
        clearOnce(*trash);
}

std::vector<TrashPlace> FreedesktopTrash::trashPlaces() const
{
    return nativeTrashPlaces(m_layout, currentMounts(), ::geteuid());
}

} // namespace kestavon
