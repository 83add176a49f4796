#include "core/model/record_selection.h"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestavon {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr RecordSelection::Modifiers none{};
constexpr RecordSelection::Modifiers shift{.extends = true, .keeps = false};
constexpr RecordSelection::Modifiers control{.extends = false, .keeps = true};
constexpr RecordSelection::Modifiers both{.extends = true, .keeps = true};

/// Ten records of 9, 8, … 0 bytes: row n is record n while nothing is filtered. The odd ones'
/// names contain "odd".
class RecordSelectionTest : public testing::Test {
protected:
    RecordSelectionTest() { selection.setView(views.view("")); }

    static std::shared_ptr<const RecordList> tenRecords()
    {
        std::vector<FileRecord> records(10);
        for (std::size_t i = 0; i < records.size(); ++i) {
            records[i].path = (i % 2 == 1 ? "/r/odd" : "/r/even") + std::to_string(i);
            records[i].size = 9 - static_cast<std::int64_t>(i);
        }
        return RecordList::fromRecords("/r", records);
    }

    RecordViews views{tenRecords(), RecordViews::Contents::everything};
    RecordSelection selection;
};

TEST_F(RecordSelectionTest, FollowsClicks)
{
    selection.click(3, none);
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(3));
    EXPECT_EQ(selection.currentRow(), 3U);
    selection.click(5, control);
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(3, 5));
    EXPECT_EQ(selection.count(), 2U);
    EXPECT_EQ(selection.bytes(), 6 + 4);

    selection.click(7, shift); // from the last row that was clicked by itself
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(5, 6, 7));
    selection.click(4, shift);
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(4, 5));
    selection.click(9, control);
    selection.click(8, both);
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(4, 5, 8, 9));

    selection.click(9, control);
    EXPECT_FALSE(selection.isSelected(9));
    EXPECT_EQ(selection.currentRow(), 9U);
    selection.click(99, none);
    EXPECT_EQ(selection.count(), 3U) << "a row that is not there";
    selection.click(0, none);
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(0));
}

TEST_F(RecordSelectionTest, AnExtendingClickWithoutAnAnchorSelectsOneRow)
{
    selection.click(6, shift);
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(6));
    selection.click(7, shift);
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(6, 7));
}

TEST_F(RecordSelectionTest, FollowsKeys)
{
    selection.move(1, none);
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(0));
    selection.move(4, none);
    selection.move(1, shift);
    selection.move(1, shift);
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(4, 5, 6));
    selection.move(-3, shift);
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(3, 4)) << "back over the anchor";
    selection.move(std::numeric_limits<std::int64_t>::max(), shift);
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(4, 5, 6, 7, 8, 9));
    selection.move(std::numeric_limits<std::int64_t>::min(), none);
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(0));

    selection.move(2, control);
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(0)) << "only the current row moved";
    selection.toggleCurrent();
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(0, 2));

    selection.selectAll();
    EXPECT_EQ(selection.count(), 10U);
    EXPECT_EQ(selection.bytes(), 45);
    selection.clear();
    EXPECT_EQ(selection.count(), 0U);
    EXPECT_EQ(selection.currentRow(), 2U) << "the keys go on from where they were";
}

TEST_F(RecordSelectionTest, KeepsButDoesNotCountWhatAFilterHides)
{
    selection.click(2, none);
    selection.click(3, control);
    selection.setView(views.view("odd")); // rows 0 to 4 are records 1, 3, 5, 7, 9
    EXPECT_EQ(selection.count(), 1U);
    EXPECT_EQ(selection.bytes(), 6);
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(3));
    EXPECT_TRUE(selection.isSelected(1));
    EXPECT_EQ(selection.currentRow(), 1U);

    selection.selectAll();
    EXPECT_EQ(selection.count(), 5U);
    selection.setView(views.view(""));
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(1, 2, 3, 5, 7, 9));

    selection.setView(views.view("even"));
    EXPECT_EQ(selection.currentRow(), std::nullopt) << "record 3 is hidden";
    selection.click(4, shift); // and so is the anchor
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(8));
    selection.setView(views.view(""));
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(8)) << "a new choice replaces it all";

    selection.setView(views.view("none"));
    selection.move(1, none);
    selection.selectAll();
    EXPECT_EQ(selection.count(), 0U);
    selection.setView(views.view(""));
    EXPECT_EQ(selection.count(), 1U);
}

TEST_F(RecordSelectionTest, IsEmptiedByAnotherList)
{
    selection.selectAll();
    RecordViews others(tenRecords(), RecordViews::Contents::everything);
    selection.setView(others.view(""));
    EXPECT_THAT(selection.selectedPositions(), IsEmpty());
    EXPECT_EQ(selection.currentRow(), std::nullopt);
    selection.click(4, shift);
    EXPECT_THAT(selection.selectedPositions(), ElementsAre(4)) << "the anchor is gone too";
}

TEST(RecordSelectionSums, StopAtTheLargestNumber)
{
    constexpr auto highest = std::numeric_limits<std::int64_t>::max();
    std::vector<FileRecord> records(200);
    for (std::size_t i = 0; i < records.size(); ++i)
        records[i].path = "/r/" + std::to_string(i);
    records[7].size = highest - 1;
    records[70].size = 1;
    records[199].size = 5;
    RecordViews views(RecordList::fromRecords("/r", records), RecordViews::Contents::everything);
    RecordSelection selection;
    selection.setView(views.view(""));
    selection.selectAll();
    EXPECT_EQ(selection.bytes(), highest);
    selection.click(1, control); // the 5 bytes
    EXPECT_EQ(selection.count(), 199U);
    EXPECT_EQ(selection.bytes(), highest);
    selection.click(2, control); // the single byte
    EXPECT_EQ(selection.bytes(), highest - 1);
}

} // namespace
} // namespace kestavon
