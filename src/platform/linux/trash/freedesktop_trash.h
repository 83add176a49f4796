#pragma once

#include "platform/linux/trash/mounted_volumes.h"
#include "platform/linux/trash/trash_folder.h"
#include "platform/linux/trash/trashable_item.h"
#include "platform/trash.h"

#include <mutex>
#include <set>
#include <string>

namespace kestavon {

/// The Trash that the desktop's programs share, by the freedesktop.org standard, version 1.0.
///
/// An item goes to the Trash of the home when it lies on the same volume, else to its own volume's.
/// Where that has none and none can be made - the top folder belongs to the administrator, a file
/// system without owners - it is copied to the home's if that has room: the standard allows it, and
/// the only other way to get rid of the item would be to delete it.
class FreedesktopTrash final : public Trash {
public:
    FreedesktopTrash(HostLayout layout, ProtectedPlaces protectedPlaces,
        std::shared_ptr<const Clock> clock, std::shared_ptr<const MountedVolumes> volumes);

    FileResult<Done> trashItem(const std::string& path, const TrashOptions& options) override;
    void forgetItem(const std::string& path) override;
    std::vector<TrashPlace> trashPlaces() const override;

private:
    std::optional<FileError> refusalFor(
        const TrashableItem& item, const std::optional<MountedVolume>& volume) const;
    FileResult<TrashFolder> openTrashFor(
        const TrashableItem& item, const std::optional<MountedVolume>& volume) const;
    FileResult<Done> put(
        const TrashableItem& item, const TrashFolder& trash, const TrashOptions& options) const;
    /// Clears what crashes of this program left in the Trash, the first time it is used.
    void clearOnce(const TrashFolder& trash);

    const HostLayout m_layout;
    const ProtectedPlaces m_protectedPlaces;
    const std::shared_ptr<const Clock> m_clock;
    const std::shared_ptr<const MountedVolumes> m_volumes;

    std::mutex m_mutex;
    std::set<std::string> m_cleared; // guarded by m_mutex
};

} // namespace kestavon
