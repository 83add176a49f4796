#include "support/moments.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "ui/cleaner/cleaner_rules.h"

#include <limits>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::file;

TEST(SuggestionLook, FollowsTheWordCacheInTheReason)
{
    EXPECT_EQ(suggestionLook("Application cache").symbol, "cylinder.split.1x2");
    EXPECT_EQ(suggestionLook("Old download").symbol, "arrow.down.circle");
    EXPECT_EQ(suggestionLook("Cache of downloads").symbol, "arrow.down.circle")
        << "capital letters count";
}

TEST(CleanerTexts, CountInPlainDecimals)
{
    EXPECT_EQ(cleanupSelectionText(1234, 56789), "1234 of 56789 selected");
    EXPECT_EQ(reclaimText(14'390'000'000), "14.39 GB to reclaim");
    const auto question = cleanupQuestion(1);
    EXPECT_EQ(question.title, "Move 1 items to Safe Area?");
    EXPECT_EQ(question.message,
        "Files go to Safe Area — you can restore or permanently delete them from there.");
    EXPECT_EQ(question.action, "Move to Safe Area");
    EXPECT_FALSE(question.destructive);
}

TEST(CleanerTexts, SayWhenASuggestionWasModified)
{
    const SystemCalendar calendar;
    const auto moment = test::utc(2026, 11, 16, 14, 5);
    EXPECT_EQ(modifiedText(moment, calendar),
        QString::fromStdString("Modified " + calendar.dateText(moment)));
    EXPECT_EQ(modifiedText({}, calendar), "Modified —");
}

TEST(SelectedBytes, AreThoseOfTheTickedSuggestionsAndNeverOverflow)
{
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    const auto records = RecordList::fromRecords("/home/alice",
        std::vector{
            file("/home/alice/a", 1000), file("/home/alice/b", 20), file("/home/alice/c", most)});
    CandidateList candidates(records);
    for (std::uint32_t i = 0; i < 3; ++i)
        candidates.append(i, "Old download");
    auto selection = CandidateSelection::all(candidates);
    EXPECT_EQ(selectedBytes(candidates, selection), most);
    selection.erase(candidates.id(2));
    EXPECT_EQ(selectedBytes(candidates, selection), 1020);
    selection.erase(candidates.id(0));
    EXPECT_EQ(selectedBytes(candidates, selection), 20);
    const std::vector<std::uint32_t> first{0};
    EXPECT_EQ(selectedBytes(*candidates.without(first), selection), 20)
        << "the ticks outlive a shorter list";
}

} // namespace
} // namespace kestavon
