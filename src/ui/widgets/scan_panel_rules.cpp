#include "ui/widgets/scan_panel_rules.h"

#include "ui/widgets/display_text.h"

namespace kestavon {

ScanPanelTexts scanPanelTexts(
    const ScanPhase& phase, std::int64_t liveFileCount, const StorageSummary& summary)
{
    switch (phase.kind()) {
    case ScanPhase::Kind::scanning:
        return {
            .symbol = {},
            .color = u"accent"_s,
            .title = u"Scanning"_s,
            .count = u"%1 files"_s.arg(liveFileCount),
            .detail = u"Running in background — browse other sections freely"_s,
        };
    case ScanPhase::Kind::partial:
        return {
            .symbol = u"exclamationmark.triangle.fill"_s,
            .color = u"orange"_s,
            .title = displayText(phase.text()),
            .count = {},
            .detail = u"Browse and use the results found before the scan stopped."_s,
        };
    case ScanPhase::Kind::failed:
        return {
            .symbol = u"exclamationmark.triangle.fill"_s,
            .color = u"red"_s,
            .title = displayText(phase.text()),
            .count = {},
            .detail = {},
        };
    case ScanPhase::Kind::finished:
        return {
            .symbol = u"checkmark.circle.fill"_s,
            .color = u"green"_s,
            .title = u"Scan complete — %1 files"_s.arg(liveFileCount),
            .count = {},
            .detail
            = u"%1 total · %2 hidden"_s.arg(byteText(summary.bytes), byteText(summary.hiddenBytes)),
        };
    case ScanPhase::Kind::idle: break;
    }
    return {
        .symbol = u"checkmark.circle"_s,
        .color = u"secondary"_s,
        .title = u"Ready to scan"_s,
        .count = {},
        .detail = {},
    };
}

QString foundSoFarText(std::int64_t liveFileCount)
{
    return u"%1 files found so far"_s.arg(liveFileCount);
}

} // namespace kestavon
