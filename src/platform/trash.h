#pragma once

#include "platform/clock.h"
#include "platform/file_error.h"
#include "platform/host_layout.h"
#include "platform/protected_places.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// A folder that is a Trash, whether it exists or not.
struct TrashPlace {
    std::string folder; ///< all that belongs to the Trash lies at or below it
    std::string items; ///< each entry of this folder is one thing that was put into the Trash
    bool isOnVolume = false; ///< at the top of a mounted file system, which may not answer

    friend bool operator==(const TrashPlace&, const TrashPlace&) = default;
};

struct TrashOptions {
    /// See `MoveOptions::noLinksBelow`.
    std::string noLinksBelow = {};
    /// See `MoveOptions::refusesFolders`.
    bool refusesFolders = false;
    /// Heard before each item, and while one is copied to another volume: what has not moved by
    /// then stays (`Kind::cancelled`).
    std::stop_token stop = {};
    /// Of many items, called with the path of each when its turn comes.
    std::function<void(const std::string& path)> begins = {};
    /// See `MoveOptions::progress`; about the item in hand.
    std::function<void(std::int64_t done, std::int64_t total)> progress = {};
};

/// The desktop's Trash. Any thread.
///
/// Nothing is deleted here and nothing is replaced. Whatever happens - an error, a full disk, a
/// crash - every byte of an item is at its place or in the Trash, and an item that cannot be put
/// there stays where it is.
class Trash {
public:
    virtual ~Trash() = default;

    /// Moves a file, a folder with all that is in it, or a link (never what it leads to) to the
    /// Trash, and gives the path at which it lies there. Success means that nothing is left at its
    /// place.
    ///
    /// Refused, besides what the machine protects and what the disk refuses: what already lies in a
    /// Trash (`Kind::fileExists`), a Trash and its own folders and those above it
    /// (`Kind::permission`).
    virtual FileResult<std::string> trashItem(
        const std::string& path, const TrashOptions& options = {})
        = 0;

    /// Moves many items, one after the other, and tells of each what `trashItem` would. Faster than
    /// that where the disk has to be waited for: what is written down about the items goes there
    /// together.
    virtual std::vector<FileResult<std::string>> trashItems(
        std::span<const std::string> paths, const TrashOptions& options = {});

    /// To be told after the item at `path` was deleted for good or taken out of the Trash: what the
    /// Trash wrote down about it goes too. Does nothing when `path` was no item of a Trash, or
    /// something still lies there.
    virtual void forgetItem(const std::string& path) = 0;

    /// To be told before the item at `path` goes where it may come back from: what the Trash wrote
    /// down about it stays, without the item too, until `forgetItem`. Does nothing when `path` is
    /// no item of a Trash.
    virtual void keepRecordOf(const std::string&) { }

    /// Ends what moves to and from the home's Trash that were cut short by a crash left there; the
    /// first move to a Trash does so too.
    virtual void clearUnfinishedMoves() { }

    /// Every Trash of the home and of the volumes mounted now, so that other searches can leave out
    /// what lies there. Only names are put together: no volume is touched.
    virtual std::vector<TrashPlace> trashPlaces() const = 0;
};

/// The Trash that belongs to the layout of the home: a folder `.Trash` in a Mac's home, on any
/// other machine the one that the desktop's programs share, in the home and on every volume.
std::shared_ptr<Trash> makeSystemTrash(
    const HostLayout& layout, ProtectedPlaces protectedPlaces, std::shared_ptr<const Clock> clock);

} // namespace kestavon
