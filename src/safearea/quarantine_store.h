#pragma once

#include "core/domain/cleanup_candidate.h"
#include "core/domain/quarantine_item.h"
#include "platform/clock.h"
#include "platform/file_mover.h"
#include "platform/file_places.h"
#include "platform/host_layout.h"
#include "platform/protected_places.h"
#include "platform/trash.h"
#include "safearea/origin_notes.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// What the store works with.
struct QuarantineTools {
    std::shared_ptr<FileMover> mover;
    std::shared_ptr<FilePlaces> places;
    std::shared_ptr<const ProtectedPlaces> protectedPlaces;
    std::shared_ptr<const Clock> clock;
    std::shared_ptr<Trash> trash
        = nullptr; ///< keeps its records of items that are held; may be none
};

struct QuarantineOptions {
    /// See `MoveOptions::noLinksBelow`: the folder that was walked to find the candidates.
    std::string noLinksBelow = {};
    /// Checked before each candidate and while one is copied from another device.
    std::stop_token stop = {};
    /// Called with the position of each candidate when its turn comes.
    std::function<void(std::size_t position)> begins = {};
    /// See `MoveOptions::progress`; about the candidate in hand.
    std::function<void(std::int64_t done, std::int64_t total)> progress = {};
};

struct RestoreOptions {
    /// See `MoveOptions`.
    std::stop_token stop = {};
    std::function<void(std::int64_t done, std::int64_t total)> progress = {};
};

/// The Safe Area: a holding folder of the program's own, into which items are moved instead of
/// being deleted, and from which they can be moved back.
///
/// Each item lies directly in the folder under its identifier and the beginning of its name; there
/// is no list of them on the disk. Where it came from, why and when are kept as extended attributes
/// (`user.kestavon.*`) of the item, or, where it cannot have any of its own, as a note outside the
/// holding folder; they go when it is restored. Items are held without a time limit. Plain and
/// synchronous: calls come one at a time, off the main thread.
class QuarantineStore {
public:
    /// Touches nothing: the holding folder is made when the first item comes.
    QuarantineStore(const HostLayout& layout, QuarantineTools tools);

    /// The holding folder.
    const std::string& root() const { return m_root; }

    /// Moves each candidate into the holding folder and returns those that moved, in order.
    /// Protected, missing and unmovable ones stay where they are, and so do folders that were files
    /// when they were found. Fails only when the holding folder cannot be made; then nothing moved.
    FileResult<std::vector<QuarantineItem>> quarantine(
        std::span<const CleanupCandidate> candidates, const QuarantineOptions& options = {});

    /// Moves the item back to where it came from, making the folders above when they are gone. When
    /// something lies there, the error is `Kind::fileExists`; after any failure nothing changed.
    FileResult<Done> restore(const QuarantineItem& item, const RestoreOptions& options = {});

    /// To be told after a held item was deleted for good.
    void forget(const QuarantineItem& item);

    /// What lies in the holding folder, from earlier runs too, the oldest first. The original path
    /// is empty for items that are not known to come from anywhere.
    std::vector<QuarantineItem> heldItems();

    /// Ends what a crash left unfinished in the holding folder and where its items were going;
    /// once, and before anything else is done here.
    void clearUnfinishedMoves();

private:
    void dropNotesOfWhatLeft();
    std::optional<QuarantineItem> hold(
        const CleanupCandidate& candidate, const QuarantineOptions& options);

    // Fixed at construction.
    std::string m_root;
    std::string m_home;
    QuarantineTools m_tools;
    OriginNotes m_notes;

    bool m_hasCleared = false;
    std::size_t m_longestName = 255; ///< bytes, in the holding folder
};

} // namespace kestavon
