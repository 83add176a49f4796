#include "ui/smartclean/smart_clean_rules.h"

#include "core/model/questions.h"
#include "smartclean/junk_catalogue.h"
#include "ui/duplicates/duplicates_rules.h"
#include "ui/widgets/display_text.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <variant>

namespace kestavon {

namespace {

QString colorName(const JunkColor& color)
{
    // In the order of NamedColor.
    static const std::array names{u"blue"_s, u"gray"_s, u"red"_s, u"pink"_s, u"purple"_s,
        u"orange"_s, u"teal"_s, u"indigo"_s, u"cyan"_s, u"green"_s};
    const auto* named = std::get_if<NamedColor>(&color);
    return named ? names[static_cast<std::size_t>(*named)] : u"ember"_s;
}

} // namespace

CategoryLook categoryLook(JunkCategory category)
{
    const auto& look = lookOf(category);
    return {
        .title = displayText(rawValue(category)),
        .subtitle = displayText(look.subtitle),
        .symbol = displayText(look.symbol),
        .color = colorName(look.color),
    };
}

bool anyIsScanning(const std::vector<JunkGroup>& groups)
{
    return std::ranges::any_of(groups, &JunkGroup::isScanning);
}

bool anyIsScanned(const std::vector<JunkGroup>& groups)
{
    return std::ranges::any_of(groups, &JunkGroup::isScanned);
}

ColoredLine smartCleanStatus(
    const std::vector<JunkGroup>& groups, std::int64_t totalBytes, std::size_t totalItems)
{
    if (anyIsScanning(groups))
        return {.text = u"Scanning your Mac…"_s};
    if (!anyIsScanned(groups))
        return {.text = u"Scan to discover hidden space hogs"_s};
    if (totalBytes < 1)
        return {.text = u"Your Mac is clean."_s, .color = u"green"_s};
    return {
        .text = u"%1 of junk found · %2"_s.arg(byteText(totalBytes), itemsText(totalItems)),
        .color = u"orange"_s,
    };
}

QString cleanAllLabel(std::int64_t totalBytes)
{
    return totalBytes > 0 ? u"Clean All · "_s + byteText(totalBytes) : QString();
}

ConfirmationTexts cleanAllQuestion(std::int64_t totalBytes)
{
    return textsOf(questions::cleanAllJunk(totalBytes));
}

CardFace cardFace(const JunkGroup& group)
{
    if (!group.isScanned)
        return CardFace::unscanned;
    return group.items.bytes() > 0 ? CardFace::found : CardFace::clean;
}

QString itemsText(std::size_t items)
{
    return u"%1 items"_s.arg(items);
}

int cardColumns(double width, double gap)
{
    constexpr double least = 210;
    return std::max(1, static_cast<int>((width + gap) / (least + gap)));
}

std::vector<double> segmentShares(const std::vector<std::int64_t>& bytes, double least)
{
    std::vector<double> shares(bytes.begin(), bytes.end());
    std::vector<bool> isLeast(bytes.size());
    double rest = 1;
    double restBytes = std::accumulate(shares.begin(), shares.end(), 0.0);
    // What is too small to be seen gets the least, and the others share the rest of the bar. That
    // may make another one too small, so look again until none is.
    for (bool changed = true; changed;) {
        changed = false;
        for (std::size_t i = 0; i < shares.size(); ++i) {
            if (isLeast[i] || bytes[i] <= 0 || shares[i] * rest >= least * restBytes)
                continue;
            isLeast[i] = changed = true;
            rest -= least;
            restBytes -= shares[i];
        }
    }
    for (std::size_t i = 0; i < shares.size(); ++i) {
        if (bytes[i] > 0)
            shares[i] = isLeast[i] ? least : shares[i] * rest / restBytes;
    }
    return shares;
}

ColoredLine duplicatesStatus(const DuplicatesFound& found)
{
    if (found.phase.isScanning())
        return {.text = u"Computing SHA-256 hashes…"_s};
    if (found.groups > 0)
        return {
            .text = duplicatesSummary(found.groups, found.reclaimableBytes),
            .color = u"orange"_s,
        };
    if (found.phase.kind() == ScanPhase::Kind::finished)
        return {.text = u"No duplicates found"_s, .color = u"green"_s};
    if (found.phase.kind() == ScanPhase::Kind::failed)
        return {.text = displayText(found.phase.text()), .color = u"red"_s};
    if (found.storageScanRuns)
        return {.text = u"Storage scan running — duplicates can be analyzed once it finishes"_s};
    if (found.hasRecords)
        return {.text = u"Find exact duplicate files using SHA-256 content matching"_s};
    return {.text = u"Run a storage scan first, then analyze for duplicates"_s};
}

AnalysisButton analysisButton(const DuplicatesFound& found)
{
    if (found.phase.isScanning())
        return {.label = u"Stop"_s, .symbol = {}, .deed = AnalysisButton::Deed::stop};
    if (found.phase.kind() == ScanPhase::Kind::finished)
        return {.label = u"Re-analyze"_s, .symbol = u"arrow.clockwise"_s};
    return {
        .label = u"Analyze Now"_s,
        .symbol = u"arrow.triangle.2.circlepath"_s,
        .enabled = found.hasRecords && !found.storageScanRuns,
    };
}

ConfirmationTexts mergeGroupsQuestion(bool toTrash, std::size_t groups)
{
    if (toTrash)
        return {
            .title = u"Merge %1 groups?"_s.arg(groups),
            .message = u"The newest copy in each group is kept. All other copies move to the "
                       u"Trash."_s,
            .action = u"Merge & Move Copies to Trash"_s,
            .destructive = true,
        };
    return {
        .title = u"Permanently delete duplicate copies?"_s,
        .message = u"This cannot be undone. Newest copy per group is kept; rest permanently "
                   u"deleted."_s,
        .action = u"Merge & Delete Forever"_s,
        .destructive = true,
    };
}

} // namespace kestavon
