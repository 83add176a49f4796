#include "support/moments.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "ui/smartclean/preview_rules.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using testing::ElementsAre;

CleanupCandidate item(
    const std::string& path, std::int64_t size, std::optional<Timestamp> modifiedAt = {})
{
    return {.id = Uuid::random(),
        .record = test::file(path, size, modifiedAt),
        .reason = "Application cache",
        .estimatedBytes = size};
}

/// Told apart by their positions.
const std::vector<CleanupCandidate> items{
    item("/a/zebra", 20, test::utc(2026, 11, 2)), // 0
    item("/a/apple", 300), // 1, without a date
    item("/b/Zebra", 20, test::utc(2026, 11, 3)), // 2
    item("/b/apple", 1, test::utc(2026, 11, 1)), // 3
    item("/c/Apple", 300, test::utc(1969, 1, 1)), // 4
};

TEST(PreviewOrder, SortsByItsKeyAndKeepsEqualsAsTheyAre)
{
    using enum PreviewSortOrder;
    EXPECT_THAT(previewOrder(items, sizeDesc), ElementsAre(1, 4, 0, 2, 3));
    EXPECT_THAT(previewOrder(items, sizeAsc), ElementsAre(3, 0, 2, 1, 4));
    EXPECT_THAT(previewOrder(items, nameAsc), ElementsAre(4, 2, 1, 3, 0))
        << "capitals come first, and the folder does not count";
    EXPECT_THAT(previewOrder(items, dateDesc), ElementsAre(2, 0, 3, 4, 1))
        << "no date is older than any";
    EXPECT_THAT(previewOrder(items, dateAsc), ElementsAre(1, 4, 3, 0, 2));
    EXPECT_THAT(previewOrder({}, nameAsc), ElementsAre());
}

TEST(PreviewOrder, ComparesNamesAsBytes)
{
    const std::vector<CleanupCandidate> names{item("/x/\xC3\xA9", 1), item("/x/z", 1),
        item("/x/\xFF", 1), item("/x/-", 1), item("/x/zz", 1)};
    EXPECT_THAT(previewOrder(names, PreviewSortOrder::nameAsc), ElementsAre(3, 1, 4, 0, 2));
}

TEST(ShareTheirName, TellsWhichItemsOnlyTheirFolderTellsApart)
{
    EXPECT_THAT(shareTheirName(items), ElementsAre(false, true, false, true, false));
}

TEST(PreviewTexts, CountInPlainDecimals)
{
    EXPECT_EQ(previewSelectionText(4, 100'000), "4 of 100000");
    EXPECT_EQ(selectedText(1), "1 selected");
    EXPECT_EQ(partialMoveText(3),
        "3 file(s) could not be moved — they may be protected or no longer exist. Try 'Delete "
        "Forever' to remove them directly.");
}

} // namespace
} // namespace kestavon
