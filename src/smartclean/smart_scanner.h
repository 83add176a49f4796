#pragma once

#include "core/domain/cleanup_candidate.h"
#include "core/domain/junk_category.h"
#include "platform/calendar.h"
#include "platform/clock.h"
#include "platform/host_layout.h"
#include "platform/protected_places.h"
#include "platform/running_applications.h"
#include "platform/trash.h"

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

/// Looks for junk, one category at a time, in the locations of the home's layout. It removes
/// nothing. Plain and synchronous: calls come one at a time, off the main thread.
class SmartScanner {
public:
    /// Touches nothing.
    SmartScanner(HostLayout layout, SmartScannerTools tools);

    /// What is junk now, by locations in their order and in each by the names' bytes: whole entries
    /// of a location with their sizes in bytes, none of them empty or protected. Each has a date
    /// unless it is an orphan. What is missing or cannot be read is left out without a word.
    ///
    /// Once a stop is requested the rest of the locations, and of the folders to be summed up, is
    /// cut short, and what was found comes back at once: sums may be too small then. Downloads and
    /// preferences are still listed. Nothing comes back when the disk does not answer.
    std::vector<CleanupCandidate> scanCategory(
        JunkCategory category, const std::stop_token& stop = {}) const;

private:
    std::shared_ptr<const HostLayout> m_layout;
    SmartScannerTools m_tools;
};

} // namespace kestavon
