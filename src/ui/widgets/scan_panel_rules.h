#pragma once

#include "core/domain/record_list.h"
#include "core/domain/scan_phase.h"

#include <QString>

#include <cstdint>

namespace kestavon {

/// What the storage scan's state card says in one phase.
struct ScanPanelTexts {
    QString symbol; ///< empty while scanning, where a pulsing dot stands in its place
    QString color; ///< name of the symbol's colour
    QString title;
    QString count; ///< "128000 files" while scanning, else empty; "found so far" follows it
    QString detail; ///< the last line; empty when there is none
};

/// The card's texts for `phase`; `liveFileCount` is the count as it is to be shown.
ScanPanelTexts scanPanelTexts(
    const ScanPhase& phase, std::int64_t liveFileCount, const StorageSummary& summary);

/// "128000 files found so far"
QString foundSoFarText(std::int64_t liveFileCount);

} // namespace kestavon
