#pragma once

#include "platform/linux/removal/deed_journal.h"
#include "platform/linux/trash/directory_sizes.h"
#include "platform/linux/trash/mounted_volumes.h"
#include "platform/linux/trash/trash_folder.h"
#include "platform/linux/trash/trash_record.h"
#include "platform/linux/trash/trashable_item.h"
#include "platform/trash.h"

#include <map>
#include <mutex>
#include <optional>
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

    FileResult<std::string> trashItem(
        const std::string& path, const TrashOptions& options) override;
    std::vector<FileResult<std::string>> trashItems(
        std::span<const std::string> paths, const TrashOptions& options) override;
    void forgetItem(const std::string& path) override;
    void keepRecordOf(const std::string& path) override;
    void clearUnfinishedMoves() override;
    std::vector<TrashPlace> trashPlaces() const override;

private:
    std::optional<FileError> refusalFor(
        const TrashableItem& item, const std::optional<MountedVolume>& volume) const;
    FileResult<TrashFolder> openTrashFor(
        const TrashableItem& item, const std::optional<MountedVolume>& volume) const;
    /// A place in a Trash that is kept for an item.
    struct Reservation {
        TrashRecord record;
        std::string name;
        std::size_t attempt; ///< the next one, for another name
    };
    /// The place for an item, and the Trash that it is in.
    struct Plan {
        std::shared_ptr<const TrashFolder> trash;
        Reservation reservation;
        std::string path; ///< of the item
        bool isWritten = false; ///< the record is on the disk
    };
    using OpenTrashes = std::map<std::uint64_t, std::shared_ptr<const TrashFolder>>; // by volume
    using DirectorySizes = std::map<std::shared_ptr<const TrashFolder>, std::vector<DirectorySize>>;

    /// An item of a Trash: where it lies, and its name there.
    struct OwnItem {
        TrashFolder trash;
        std::string name;
    };
    /// Nothing when the path is not one of an item in a Trash.
    std::optional<OwnItem> findOwnItem(const std::string& path) const;

    FileResult<Reservation> reserve(
        const TrashableItem& item, const TrashFolder& trash, std::size_t attempt) const;
    /// Moves an item that has lost its record while it was moved back to its place.
    FileError putBack(
        const TrashableItem& item, const TrashFolder& trash, const std::string& name) const;
    /// Moves the item to its place. Of a folder the size is added to `sizes`.
    FileResult<std::string> put(const TrashableItem& item, const TrashFolder& trash,
        Reservation& reservation, const TrashOptions& options,
        std::vector<DirectorySize>& sizes) const;
    std::optional<Plan> planFor(
        const std::string& path, const TrashOptions& options, OpenTrashes& trashes);
    static void writeOut(std::vector<std::optional<Plan>>& plans);
    void trashTogether(std::span<const std::string> paths, const TrashOptions& options,
        std::vector<FileResult<std::string>>& results);
    /// Clears what crashes of this program left in the Trash, the first time it is used.
    void clearOnce(const TrashFolder& trash);

    const HostLayout m_layout;
    const ProtectedPlaces m_protectedPlaces;
    const std::shared_ptr<const Clock> m_clock;
    const std::shared_ptr<const MountedVolumes> m_volumes;
    const DeedJournal m_journal;

    std::mutex m_mutex;
    std::set<std::string> m_cleared; // guarded by m_mutex
};

} // namespace kestavon
