#include "core/domain/candidate_list.h"

#include <gtest/gtest.h>

namespace kestavon {
namespace {

class CandidateLists : public ::testing::Test {
protected:
    static std::shared_ptr<const RecordList> makeRecords()
    {
        std::vector<FileRecord> records;
        for (int i = 0; i < 5; ++i)
            records.push_back({.id = {}, .path = "/home/" + std::to_string(i), .size = 10 * i});
        return RecordList::fromRecords("/home", records);
    }

    static std::shared_ptr<const CandidateList> makeList(
        const std::shared_ptr<const RecordList>& records)
    {
        auto list = std::make_shared<CandidateList>(records);
        list->append(1, "Application cache");
        list->append(2, "Old download");
        list->append(4, "Application cache");
        return list;
    }

    const std::shared_ptr<const RecordList> records = makeRecords();
    const std::shared_ptr<const CandidateList> list = makeList(records);
};

TEST_F(CandidateLists, PointAtTheirRecords)
{
    ASSERT_EQ(list->size(), 3U);
    const auto candidate = (*list)[2];
    EXPECT_EQ(candidate.record, (*records)[4]);
    EXPECT_EQ(candidate.reason, "Application cache");
    EXPECT_EQ(candidate.estimatedBytes, 40);
    EXPECT_EQ((*list)[1].reason, "Old download");
    EXPECT_EQ(list->recordPosition(1), 2U);
    EXPECT_TRUE(CandidateList().empty());
}

TEST_F(CandidateLists, HaveIdentifiersOfTheirOwn)
{
    for (std::size_t i = 0; i < list->size(); ++i) {
        EXPECT_EQ(list->positionOf((*list)[i].id), i);
        EXPECT_EQ(list->positionOf((*list)[i].record.id), std::nullopt);
        EXPECT_EQ(makeList(records)->positionOf(list->id(i)), std::nullopt);
    }
}

TEST_F(CandidateLists, SelectionsCountWhatTheyHold)
{
    auto selection = CandidateSelection::none(*list);
    EXPECT_TRUE(selection.empty());
    selection.insert(list->id(1));
    selection.insert(list->id(1));
    EXPECT_EQ(selection.size(), 1U);
    EXPECT_TRUE(selection.contains(list->id(1)));
    EXPECT_FALSE(selection.contains(list->id(0)));
    selection.erase(list->id(0));
    EXPECT_EQ(selection.size(), 1U);
    selection.erase(list->id(1));
    EXPECT_TRUE(selection.empty());
}

TEST_F(CandidateLists, SelectionsOfEverythingLoseOneAtATime)
{
    auto selection = CandidateSelection::all(*list);
    EXPECT_EQ(selection.size(), 3U);
    selection.erase(list->id(2));
    EXPECT_EQ(selection.size(), 2U);
    EXPECT_FALSE(selection.contains(list->id(2)));
    EXPECT_TRUE(selection.contains(list->id(0)));
}

TEST_F(CandidateLists, SelectionsIgnoreIdentifiersOfOtherLists)
{
    const auto other = makeList(records);
    auto selection = CandidateSelection::none(*list);
    selection.insert(other->id(0));
    selection.insert(records->id(1));
    selection.insert(Uuid());
    EXPECT_TRUE(selection.empty());
    EXPECT_FALSE(CandidateSelection::all(*list).contains(other->id(0)));
    CandidateSelection unmade;
    unmade.insert(list->id(0));
    EXPECT_TRUE(unmade.empty());
    EXPECT_FALSE(unmade.contains(list->id(0)));
}

} // namespace
} // namespace kestavon
