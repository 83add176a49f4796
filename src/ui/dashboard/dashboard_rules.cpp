#include "ui/dashboard/dashboard_rules.h"

#include "ui/widgets/display_text.h"

namespace kestavon {

DashboardMetrics dashboardMetrics(
    const ScanPhase& phase, std::int64_t liveFileCount, const StorageSummary& summary)
{
    if (phase.isScanning())
        return {QString::number(liveFileCount) + u"…"_s, u"Scanning…"_s, u"—"_s};
    return {QString::number(summary.count), byteText(summary.bytes), byteText(summary.hiddenBytes)};
}

bool analysisCanStart(bool hasRecords, const ScanPhase& scan, const ScanPhase& analysis)
{
    return hasRecords && !scan.isScanning() && !analysis.isScanning();
}

} // namespace kestavon
