#include "support/moments.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "ui/duplicates/duplicate_layout.h"
#include "ui/duplicates/duplicates_rules.h"

#include <random>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using L = DuplicateLayout;

TEST(DuplicateTexts, CountInPlainDecimalsAndByteUnits)
{
    EXPECT_EQ(duplicatesSummary(12345, 6'840'000'000), "12345 groups · 6.84 GB reclaimable");
    EXPECT_EQ(duplicatesSummary(1, 2000), "1 groups · 2 KB reclaimable");
    EXPECT_EQ(copiesText(3), "3 copies");
    EXPECT_EQ(savingText(2000), "Save 2 KB");
    EXPECT_EQ(progressText({}), "") << "the search does not know yet";
    EXPECT_EQ(progressText({.bytesDone = 0, .bytesToDo = 5000}), "Zero KB of 5 KB");
    EXPECT_EQ(progressText({.bytesDone = 1'200'000'000, .bytesToDo = 6'840'000'000}),
        "1.2 GB of 6.84 GB");
}

TEST(MergeQuestions, SayWhatBecomesOfTheCopies)
{
    const auto trash = mergeQuestion(true, 38);
    EXPECT_EQ(trash.title, "Merge 38 duplicate groups?");
    EXPECT_EQ(trash.message,
        "The newest copy in each group is kept. All other copies move to the Trash.");
    EXPECT_EQ(trash.action, "Merge & Move Copies to Trash");
    const auto forever = mergeQuestion(false, 38);
    EXPECT_EQ(forever.title, "Permanently delete duplicate copies?");
    EXPECT_EQ(forever.message,
        "This cannot be undone. All duplicate copies except the newest will be permanently "
        "deleted.");
    EXPECT_EQ(forever.action, "Merge & Delete Forever");
    EXPECT_TRUE(trash.destructive && forever.destructive);
}

/// Groups of the given numbers of files.
DuplicateList listOf(const std::vector<std::size_t>& sizes)
{
    std::vector<FileRecord> records;
    for (const auto size : sizes) {
        for (std::size_t i = 0; i < size; ++i)
            records.push_back(test::file("/home/alice/" + std::to_string(records.size()), 10));
    }
    DuplicateList list(RecordList::fromRecords("/home/alice", records));
    std::uint32_t position = 0;
    for (const auto size : sizes) {
        std::vector<DuplicateList::Member> members(size);
        for (auto& member : members)
            member.position = position++;
        list.append({}, members);
    }
    return list;
}

TEST(DuplicateLayout, PutsACardUnderTheOtherWithAHeadingAndALineForEachFile)
{
    const auto list = listOf({2, 3});
    const DuplicateLayout layout(list);
    ASSERT_EQ(layout.rowCount(), 7U);
    EXPECT_EQ(layout.row(0), (L::Row{0, std::nullopt}));
    EXPECT_EQ(layout.row(2), (L::Row{0, 1}));
    EXPECT_EQ(layout.row(3), (L::Row{1, std::nullopt}));
    EXPECT_EQ(layout.row(6), (L::Row{1, 2}));
    const auto firstFile = L::cardGap + L::headingHeight + L::panelPadding;
    EXPECT_EQ(layout.rowTop(1), firstFile);
    EXPECT_EQ(layout.rowTop(2), firstFile + L::fileHeight);
    const auto secondCard = firstFile + 2 * L::fileHeight + L::panelPadding + L::panelMargin;
    EXPECT_EQ(layout.rowTop(3), secondCard);
    EXPECT_EQ(layout.groupTop(1), secondCard);
    EXPECT_EQ(layout.rowTop(7), layout.groupTop(2) + L::endMargin);
}

TEST(DuplicateLayout, FindsEveryRowAgainWhereItIs)
{
    std::mt19937 random(7);
    std::vector<std::size_t> sizes;
    for (int i = 0; i < 300; ++i)
        sizes.push_back(2 + (random() % 5 == 0 ? random() % 40 : 0));
    const auto list = listOf(sizes);
    const DuplicateLayout layout(list);
    std::size_t row = 0;
    double top = 0;
    for (std::size_t group = 0; group < sizes.size(); ++group) {
        EXPECT_EQ(layout.groupTop(group), top);
        for (std::size_t i = 0; i <= sizes[group]; ++i, ++row) {
            ASSERT_EQ(layout.row(row).group, group);
            ASSERT_EQ(layout.row(row).member, i == 0 ? std::nullopt : std::optional(i - 1));
            ASSERT_EQ(layout.rowTop(row), top);
            const auto next = layout.rowTop(row + 1);
            ASSERT_GT(next, top);
            for (const auto position : {top, (top + next) / 2, next - 0.25}) {
                ASSERT_EQ(layout.rowAt(position), row);
                ASSERT_EQ(layout.groupAt(position), group);
            }
            top = next;
        }
    }
    EXPECT_EQ(row, layout.rowCount());
    EXPECT_EQ(layout.rowAt(top + 1000), row - 1);
    EXPECT_EQ(layout.rowAt(-50), 0U);
}

TEST(DuplicateLayout, OfNothingIsEmpty)
{
    const DuplicateList list;
    const DuplicateLayout layout(list);
    EXPECT_EQ(layout.rowCount(), 0U);
    EXPECT_EQ(layout.rowTop(0), 0);
    EXPECT_EQ(layout.rowAt(100), 0U);
    EXPECT_EQ(layout.groupAt(100), 0U);
}

} // namespace
} // namespace kestavon
