#pragma once

#include "core/domain/cleanup_candidate.h"
#include "core/domain/junk_category.h"
#include "platform/calendar.h"
#include "platform/clock.h"
#include "platform/host_layout.h"
#include "platform/protected_places.h"
#include "platform/running_applications.h"
#include "platform/trash.h"

#include <chrono>
#include <memory>
#include <stop_token>
#include <vector>

namespace kestavon {

/// What the scanner works with.
struct SmartScannerTools {
    std::shared_ptr<const Clock> clock;
    std::shared_ptr<const Calendar> calendar;
    std::shared_ptr<const RunningApplications> runningApplications;
    /// What is asked of what must be removable; without, only the disk is.
    std::shared_ptr<const ProtectedPlaces> protectedPlaces = nullptr;
    /// What tells of further Trashes; without, there is only that of the layout.
    std::shared_ptr<const Trash> trash = nullptr;
};

/// How long a scan waits when nothing moves, because a disk does not answer.
struct ScanPatience {
    /// Until the next folder is looked in by another thread.
    std::chrono::milliseconds untilNext = std::chrono::seconds(1);
    /// Until the folders that are stuck are given up, when nothing else is left to do.
    std::chrono::milliseconds inAll = std::chrono::seconds(10);
    /// The same once a stop was requested.
    std::chrono::milliseconds quietAfterStop = std::chrono::milliseconds(80);
    /// How long a stopped scan may list what it still lists, though it moves.
    std::chrono::milliseconds afterStop = std::chrono::seconds(1);
};

/// Looks for junk, one category at a time, in the locations of the home's layout. It removes
/// nothing. Plain and synchronous: calls come one at a time, off the main thread.
class SmartScanner {
public:
    /// Touches nothing.
    SmartScanner(HostLayout layout, SmartScannerTools tools, ScanPatience patience = {});

    /// What is junk now, by locations in their order and in each by the names' bytes: whole entries
    /// of a location with their sizes in bytes, none of them empty or protected. Each has a date
    /// unless it is an orphan. What is missing or cannot be read is left out without a word, and so
    /// is, after a while, what lies on a disk that does not answer.
    ///
    /// Once a stop is requested the folder that is being listed is still listed to its end, but
    /// folders in it are not summed up, and locations that come later are not looked at, but for
    /// downloads and preferences. What was found comes back at once: the folders that were being
    /// summed up with the sums so far.
    std::vector<CleanupCandidate> scanCategory(
        JunkCategory category, const std::stop_token& stop = {}) const;

private:
    std::shared_ptr<const HostLayout> m_layout;
    SmartScannerTools m_tools;
    ScanPatience m_patience;
};

} // namespace kestavon
