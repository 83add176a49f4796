#pragma once

#include "platform/linux/removal/item_place.h"
#include "platform/linux/trash/mounted_volumes.h"
#include "platform/protected_places.h"
#include "platform/trash.h"

#include <optional>
#include <string>

#include <sys/stat.h>

namespace kestavon {

/// What a Trash is called in messages.
inline constexpr std::string_view trashName = "Trash";

/// An item that may be put into a Trash: it is there, and the machine does not protect it.
struct TrashableItem {
    ItemPlace place;
    std::string path; ///< whole, its folders without links
    struct stat status { }; ///< of the item itself, also when it is a link
};

FileResult<TrashableItem> findTrashableItem(
    const std::string& path, const TrashOptions& options, const ProtectedPlaces& protectedPlaces);

/// Why the item must not be moved to the Trash at `trashFolder`: it lies in there already, or is
/// that Trash, or holds it. Both paths without links.
std::optional<FileError> refusalBecauseOfTrash(
    const TrashableItem& item, const std::string& trashFolder);

/// The refusal for what lies in some Trash.
FileError alreadyInTrash(const TrashableItem& item);

/// The error for an item whose turn had not come when the caller asked to stop.
FileError stoppedBefore(const std::string& path);

/// `path` without links, as far as it exists.
std::string withoutLinks(const std::string& path);

/// The volume on which the folder `path` lies or, as long as it is missing, would be made.
std::optional<MountedVolume> volumeOf(const std::string& path, const MountedVolumes& volumes);

/// Whether something of that name lies in the opened folder; also when that cannot be told.
bool mayExist(int folder, const std::string& name);

/// Whether the item still lies where it was found.
bool isAtItsPlace(const TrashableItem& item);

/// The error for an item that did arrive in the Trash and of which something could not be taken
/// from its old place.
FileError remainsAtItsPlace(const TrashableItem& item);

/// The numbers to try in names, so that a free one is found soon among thousands: in order at
/// first, `inOrder` of them, then at random, and at last 0, for none.
std::size_t nameNumber(std::size_t attempt, std::size_t inOrder = 100);

} // namespace kestavon
