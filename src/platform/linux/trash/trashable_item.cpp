#include "platform/linux/trash/trashable_item.h"

#include "core/domain/removal_guard.h"
#include "core/domain/uuid.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>

namespace kestavon {

namespace {

std::string joined(const std::string& folder, std::string_view name)
{
    auto path = folder;
    if (!path.ends_with('/'))
        path += '/';
    return path.append(name);
}

std::string parentOf(const std::string& path)
{
    const auto slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::string quoted(std::string_view name)
{
    return std::string("“").append(name).append("”");
}

/// Whether a path means the same place however it is read: absolute, and no component goes up.
bool isPlain(std::string_view path)
{
    return path.starts_with('/') && std::string(path).append("/").find("/../") == std::string::npos;
}

} // namespace

FileResult<TrashableItem> findTrashableItem(
    const std::string& path, const TrashOptions& options, const ProtectedPlaces& protectedPlaces)
{
    if (auto refusal = protectedPlaces.refusal(path))
        return *refusal;
    auto place = openItemPlace(path, options.noLinksBelow);
    if (!place)
        return moveError(fileErrorKind(place.error()), lastComponent(path), trashName);
    TrashableItem item{.place = std::move(*place), .path = {}};
    const auto& name = item.place.name;
    if (::fstatat(item.place.folder.get(), name.c_str(), &item.status, AT_SYMLINK_NOFOLLOW) != 0)
        return moveError(fileErrorKind(errno), name, trashName);
    if (const auto folder = pathOfFolder(item.place.folder.get()))
        item.path = joined(*folder, name);
    else if (isPlain(path)) // too long for the kernel to tell
        item.path = path;
    else
        return moveError(FileError::Kind::other, name, trashName);
    return item;
}

std::optional<FileError> refusalBecauseOfTrash(
    const TrashableItem& item, const std::string& trashFolder)
{
    if (item.path == trashFolder || isAtOrBelow(trashFolder, item.path))
        return moveError(FileError::Kind::permission, item.place.name, trashName);
    if (isAtOrBelow(item.path, trashFolder))
        return alreadyInTrash(item);
    return std::nullopt;
}

FileError alreadyInTrash(const TrashableItem& item)
{
    return {FileError::Kind::fileExists, quoted(item.place.name) + " is already in the Trash."};
}

FileError stoppedBefore(const std::string& path)
{
    return moveError(FileError::Kind::cancelled, lastComponent(path), trashName);
}

std::string withoutLinks(const std::string& path)
{
    if (const auto folder = openFolder(path)) {
        if (auto resolved = pathOfFolder(folder->get()))
            return *resolved;
    }
    return path == "/" ? path : joined(withoutLinks(parentOf(path)), lastComponent(path));
}

std::optional<MountedVolume> volumeOf(const std::string& path, const MountedVolumes& volumes)
{
    for (auto folder = path;; folder = parentOf(folder)) {
        if (const auto opened = openFolder(folder))
            return volumes.holding(opened->get());
        if (folder == "/")
            return std::nullopt;
    }
}

bool mayExist(int folder, const std::string& name)
{
    struct stat status { };
    return ::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 || errno != ENOENT;
}

bool isAtItsPlace(const TrashableItem& item)
{
    struct stat status { };
    return ::fstatat(item.place.folder.get(), item.place.name.c_str(), &status, AT_SYMLINK_NOFOLLOW)
        == 0
        && status.st_dev == item.status.st_dev && status.st_ino == item.status.st_ino;
}

FileError remainsAtItsPlace(const TrashableItem& item)
{
    return {FileError::Kind::changed,
        quoted(item.place.name)
            + " was copied to the Trash, but couldn’t be removed completely from its place."};
}

std::size_t nameNumber(std::size_t attempt, std::size_t inOrder)
{
    constexpr std::size_t atRandom = 100;
    if (attempt <= inOrder)
        return attempt;
    if (attempt > inOrder + atRandom)
        return 0;
    const auto random = Uuid::random().bytes;
    return inOrder + 1 + random[0] + std::size_t{random[1]} * 256 + std::size_t{random[2]} * 65536;
}

} // namespace kestavon
