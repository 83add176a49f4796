#include "support/qt_printing.h"
#include "support/records.h"
#include "ui/smartclean/smart_clean_rules.h"

#include <numeric>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using testing::DoubleEq;
using testing::DoubleNear;
using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

JunkGroup group(bool isScanning, bool isScanned, const std::vector<std::int64_t>& sizes = {})
{
    std::vector<CleanupCandidate> items;
    for (const auto size : sizes)
        items.push_back({.id = Uuid::random(),
            .record = test::file("/home/alice/Library/Caches/x", size),
            .reason = "Application cache",
            .estimatedBytes = size});
    return {.id = Uuid::random(),
        .category = JunkCategory::appCaches,
        .items = std::move(items),
        .isScanning = isScanning,
        .isScanned = isScanned};
}

const auto untouched = group(false, false);
const auto busy = group(true, false);
const auto clean = group(false, true);
const auto found = group(false, true, {12'000'000'000, 480'000'000});

TEST(CategoryLook, NamesTheColoursThatTheThemeHas)
{
    const QString colors[] = {"blue", "gray", "red", "pink", "purple", "orange", "teal", "indigo",
        "cyan", "green", "ember"};
    for (const auto& entry : allCases<JunkCategory>())
        EXPECT_EQ(categoryLook(entry.value).color, colors[static_cast<std::size_t>(entry.value)]);
    EXPECT_EQ(categoryLook(JunkCategory::mailAttachments).title, "Mail & Messages");
    EXPECT_EQ(categoryLook(JunkCategory::mailAttachments).subtitle, "Mail.app data & attachments");
}

TEST(SmartCleanStatus, TakesTheFirstRuleThatFits)
{
    const struct {
        std::vector<JunkGroup> groups;
        std::int64_t bytes;
        std::size_t items;
        ColoredLine line;
    } rows[] = {
        {{untouched, untouched}, 0, 0, {"Scan to discover hidden space hogs", "secondary"}},
        {{busy, untouched}, 0, 0, {"Scanning your Mac…", "secondary"}},
        {{clean, busy}, 0, 0, {"Scanning your Mac…", "secondary"}},
        {{found, busy}, 12'480'000'000, 2, {"Scanning your Mac…", "secondary"}},
        {{clean, untouched}, 0, 0, {"Your Mac is clean.", "green"}},
        {{clean, found}, 12'480'000'000, 2, {"12.48 GB of junk found · 2 items", "orange"}},
        {{found}, 1, 1, {"1 byte of junk found · 1 items", "orange"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(smartCleanStatus(row.groups, row.bytes, row.items), row.line)
            << row.line.text.toStdString();
}

TEST(CleanAll, IsOfferedAndAskedForWithWhatWasFound)
{
    EXPECT_EQ(cleanAllLabel(0), "");
    EXPECT_EQ(cleanAllLabel(34'620'000'000), "Clean All · 34.62 GB");
    const auto question = cleanAllQuestion(34'620'000'000);
    EXPECT_EQ(question.title, "Clean all 34.62 GB of junk?");
    EXPECT_EQ(question.message,
        "All items move to Safe Area. You can restore or permanently delete them from there.");
    EXPECT_EQ(question.action, "Move Everything to Safe Area");
    EXPECT_TRUE(question.destructive);
}

TEST(CardFace, IsCleanOnlyAfterAScanThatFoundNothing)
{
    EXPECT_EQ(cardFace(untouched), CardFace::unscanned);
    EXPECT_EQ(cardFace(busy), CardFace::unscanned);
    EXPECT_EQ(cardFace(clean), CardFace::clean);
    EXPECT_EQ(cardFace(found), CardFace::found);
    const auto hollow = group(false, true, {0, 0});
    EXPECT_EQ(cardFace(hollow), CardFace::clean) << "bytes count, not items";
}

TEST(CardColumns, AreAsManyAsFind210PixelsEach)
{
    const struct {
        double width;
        int columns;
    } rows[] = {{992, 4}, {892, 4}, {882, 4}, {881, 3}, {434, 2}, {433, 1}, {100, 1}, {0, 1}};
    for (const auto& row : rows)
        EXPECT_EQ(cardColumns(row.width, 14), row.columns) << row.width;
}

TEST(SegmentShares, AreThoseOfTheBytes)
{
    EXPECT_THAT(segmentShares({3, 0, 1}, 0.01), ElementsAre(0.75, 0, 0.25));
    EXPECT_THAT(segmentShares({0, 0}, 0.01), ElementsAre(0, 0)) << "nothing was found";
    EXPECT_THAT(segmentShares({}, 0.01), SizeIs(0));
}

TEST(SegmentShares, LeaveNothingTooSmallToBeSeenAndFillTheBar)
{
    const auto shares = segmentShares({1'000'000, 1, 0, 3'000'000, 2}, 0.01);
    EXPECT_THAT(shares,
        ElementsAre(
            DoubleNear(0.245, 1e-6), DoubleEq(0.01), 0, DoubleNear(0.735, 1e-6), DoubleEq(0.01)));
    EXPECT_NEAR(std::accumulate(shares.begin(), shares.end(), 0.0), 1, 1e-9);

    // The third would just be wide enough, were it not for the first two.
    const auto pushed = segmentShares({1, 1, 101, 9'897}, 0.01);
    EXPECT_THAT(pushed, ElementsAre(0.01, 0.01, 0.01, DoubleNear(0.97, 1e-9)));
    EXPECT_THAT(
        segmentShares(std::vector<std::int64_t>(11, 7), 0.01), Each(DoubleNear(1.0 / 11, 1e-9)));
}

TEST(DuplicatesCard, TakesTheFirstRuleThatFits)
{
    const auto scanning = ScanPhase::scanning("Computing SHA-256 hashes…");
    const struct {
        DuplicatesFound found;
        ColoredLine line;
        QString button;
        bool enabled;
    } rows[] = {
        {{.phase = scanning, .hasRecords = true}, {"Computing SHA-256 hashes…", "secondary"},
            "Stop", true},
        {{.phase = ScanPhase::finished(),
             .groups = 38,
             .reclaimableBytes = 6'840'000'000,
             .hasRecords = true},
            {"38 groups · 6.84 GB reclaimable", "orange"}, "Re-analyze", true},
        {{.phase = ScanPhase::finished(), .hasRecords = true}, {"No duplicates found", "green"},
            "Re-analyze", true},
        {{.phase = ScanPhase::finished(), .storageScanRuns = true},
            {"No duplicates found", "green"}, "Re-analyze", true},
        {{.phase = {}, .storageScanRuns = true},
            {"Storage scan running — duplicates can be analyzed once it finishes", "secondary"},
            "Analyze Now", false},
        {{.phase = {}, .storageScanRuns = true, .hasRecords = true},
            {"Storage scan running — duplicates can be analyzed once it finishes", "secondary"},
            "Analyze Now", false},
        {{.phase = {}, .hasRecords = true},
            {"Find exact duplicate files using SHA-256 content matching", "secondary"},
            "Analyze Now", true},
        {{.phase = {}}, {"Run a storage scan first, then analyze for duplicates", "secondary"},
            "Analyze Now", false},
        {{.phase = ScanPhase::failed("There isn't enough memory."), .hasRecords = true},
            {"There isn't enough memory.", "red"}, "Analyze Now", true},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(duplicatesStatus(row.found), row.line) << row.line.text.toStdString();
        EXPECT_EQ(analysisButton(row.found).label, row.button) << row.line.text.toStdString();
        EXPECT_EQ(analysisButton(row.found).enabled, row.enabled) << row.line.text.toStdString();
    }
    EXPECT_EQ(analysisButton(rows[0].found).deed, AnalysisButton::Deed::stop);
    EXPECT_EQ(analysisButton(rows[1].found).symbol, "arrow.clockwise");
    EXPECT_EQ(analysisButton(rows[6].found).symbol, "arrow.triangle.2.circlepath");
}

TEST(MergeGroupsQuestion, IsWordedAsThisScreenWordsIt)
{
    const auto toTrash = mergeGroupsQuestion(true, 38);
    EXPECT_EQ(toTrash.title, "Merge 38 groups?");
    EXPECT_EQ(toTrash.message,
        "The newest copy in each group is kept. All other copies move to the Trash.");
    EXPECT_EQ(toTrash.action, "Merge & Move Copies to Trash");
    const auto forever = mergeGroupsQuestion(false, 38);
    EXPECT_EQ(forever.title, "Permanently delete duplicate copies?");
    EXPECT_EQ(forever.message,
        "This cannot be undone. Newest copy per group is kept; rest permanently deleted.");
    EXPECT_EQ(forever.action, "Merge & Delete Forever");
    EXPECT_TRUE(toTrash.destructive && forever.destructive);
}

} // namespace
} // namespace kestavon
