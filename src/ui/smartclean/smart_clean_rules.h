#pragma once

#include "core/domain/junk_group.h"
#include "core/domain/scan_phase.h"
#include "ui/widgets/confirmation.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kestavon {

/// A line and the name of the colour that it is written in.
struct ColoredLine {
    QString text;
    QString color = QStringLiteral("secondary");

    friend bool operator==(const ColoredLine&, const ColoredLine&) = default;
};

/// What a category looks like wherever it is shown.
struct CategoryLook {
    QString title;
    QString subtitle;
    QString symbol;
    QString color; ///< its name
};
CategoryLook categoryLook(JunkCategory category);

/// The line below the title, for all groups, whose items come to so much.
ColoredLine smartCleanStatus(
    const std::vector<JunkGroup>& groups, std::int64_t totalBytes, std::size_t totalItems);
bool anyIsScanning(const std::vector<JunkGroup>& groups);
bool anyIsScanned(const std::vector<JunkGroup>& groups);

/// "Clean All · 34.62 GB"; empty while there is nothing to clean.
QString cleanAllLabel(std::int64_t totalBytes);
/// The question before everything that was found moves.
ConfirmationTexts cleanAllQuestion(std::int64_t totalBytes);

/// What a category's card shows in its lower part.
enum class CardFace {
    unscanned, ///< the button that scans it
    clean, ///< that nothing was found
    found, ///< how much was found
};
CardFace cardFace(const JunkGroup& group);
/// "128 items"
QString itemsText(std::size_t items);
/// How many cards stand side by side in so many pixels, `gap` apart: as many as are at least 210
/// wide, and one in any case.
int cardColumns(double width, double gap);

/// The share of the bar that each group gets whose items come to so many bytes, 0 to 1: its share
/// of them all, but at least `least` where there are any, so that it can be seen. All 0 when
/// nothing was found.
std::vector<double> segmentShares(const std::vector<std::int64_t>& bytes, double least);

/// What the card for duplicates is about.
struct DuplicatesFound {
    ScanPhase phase; ///< of the search for duplicates
    std::size_t groups = 0;
    std::int64_t reclaimableBytes = 0;
    bool storageScanRuns = false;
    bool hasRecords = false;
};
ColoredLine duplicatesStatus(const DuplicatesFound& found);

/// The button that starts or stops the search.
struct AnalysisButton {
    enum class Deed { stop, analyze };

    QString label;
    QString symbol;
    Deed deed = Deed::analyze;
    bool enabled = true;
};
AnalysisButton analysisButton(const DuplicatesFound& found);

/// The question before the copies of all groups go, to the Trash or for good, as this screen words
/// it.
ConfirmationTexts mergeGroupsQuestion(bool toTrash, std::size_t groups);

} // namespace kestavon
