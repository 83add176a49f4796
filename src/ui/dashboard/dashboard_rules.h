#pragma once

#include "core/domain/record_list.h"
#include "core/domain/scan_phase.h"

#include <QString>

#include <cstdint>

namespace kestavon {

/// The values of the Dashboard's three cards.
struct DashboardMetrics {
    QString itemsScanned;
    QString totalStorage;
    QString hiddenFiles;

    friend bool operator==(const DashboardMetrics&, const DashboardMetrics&) = default;
};

/// While the scan runs only the live count is known.
DashboardMetrics dashboardMetrics(
    const ScanPhase& phase, std::int64_t liveFileCount, const StorageSummary& summary);

/// Whether an analysis of the scanned records (duplicates, security) may start: there are records,
/// no storage scan runs, and the analysis itself does not run already.
bool analysisCanStart(bool hasRecords, const ScanPhase& scan, const ScanPhase& analysis);

} // namespace kestavon
