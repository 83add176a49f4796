#include "support/qt_printing.h"
#include "ui/widgets/record_removal.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

TEST(RemovalQuestion, NamesTheNumberAndTheDeed)
{
    const auto trash = removalQuestion(RemovalKind::trash, 1);
    EXPECT_EQ(trash.title, "Move 1 files to Trash?");
    EXPECT_EQ(trash.message, "Files will be moved to the Trash. You can restore them from there.");
    EXPECT_EQ(trash.action, "Move to Trash");

    const auto permanent = removalQuestion(RemovalKind::permanent, 12345);
    EXPECT_EQ(permanent.title, "Permanently delete 12345 files?");
    EXPECT_EQ(permanent.message,
        "This cannot be undone. Files will be permanently removed from your Mac.");
    EXPECT_EQ(permanent.action, "Delete Forever");
}

class RecordRemovalTest : public testing::Test {
protected:
    struct Removed {
        RemovalKind kind;
        RecordPick records;
        RecordRemoval::Done done;
    };

    RecordRemovalTest() { m_selection.positions = {2, 5}; }
    void enable()
    {
        m_removal.setRemove([this](RemovalKind kind, RecordPick records, auto done) {
            m_removed.push_back({kind, std::move(records), std::move(done)});
        });
    }

    RecordPick m_selection{std::make_shared<const RecordList>(), {}};
    std::vector<Removed> m_removed;
    RecordRemoval m_removal{
        [this] { return m_selection; }, [this] { m_selection.positions.clear(); }};
};

TEST_F(RecordRemovalTest, AsksNothingWhileNothingCanBeRemoved)
{
    m_removal.askTrash();
    EXPECT_FALSE(m_removal.asking());

    enable();
    m_selection.positions.clear();
    m_removal.askDelete();
    EXPECT_FALSE(m_removal.asking()) << "nothing is selected";
}

TEST_F(RecordRemovalTest, RemovesWhatWasAskedAboutOnlyAfterConsent)
{
    enable();
    m_removal.askDelete();
    EXPECT_TRUE(m_removal.asking());
    EXPECT_EQ(m_removal.title(), "Permanently delete 2 files?");
    m_removal.cancel();
    EXPECT_FALSE(m_removal.asking());
    m_removal.confirm();
    EXPECT_TRUE(m_removed.empty()) << "a question that was withdrawn cannot be answered";

    m_removal.askTrash();
    m_removal.confirm();
    ASSERT_EQ(m_removed.size(), 1u);
    EXPECT_EQ(m_removed[0].kind, RemovalKind::trash);
    EXPECT_EQ(m_removed[0].records.positions, (std::vector<std::uint32_t>{2, 5}));
    EXPECT_FALSE(m_removal.asking());
    m_removal.confirm();
    EXPECT_EQ(m_removed.size(), 1u) << "one consent, one deed";
}

TEST_F(RecordRemovalTest, WithdrawsItsQuestionWhenTheSelectionChanges)
{
    enable();
    m_removal.askDelete();
    m_removal.selectionChanged();
    EXPECT_TRUE(m_removal.asking()) << "the same records are still selected";
    m_selection.positions.push_back(7);
    m_removal.selectionChanged();
    EXPECT_FALSE(m_removal.asking());

    m_removal.askDelete();
    m_selection.records = std::make_shared<const RecordList>();
    m_removal.selectionChanged();
    EXPECT_FALSE(m_removal.asking()) << "the same positions of another list are other files";
    EXPECT_TRUE(m_removed.empty());
}

TEST_F(RecordRemovalTest, EmptiesTheSelectionOnSuccessAndTellsOfFailure)
{
    enable();
    m_removal.askTrash();
    m_removal.confirm();
    m_removed.back().done("The disk is full.");
    EXPECT_EQ(m_removal.errorMessage(), "The disk is full.");
    EXPECT_FALSE(m_selection.positions.empty()) << "what failed stays selected";
    m_removal.dismissError();
    EXPECT_EQ(m_removal.errorMessage(), "");

    m_removal.askTrash();
    m_removal.confirm();
    m_removed.back().done({});
    EXPECT_TRUE(m_selection.positions.empty());
    EXPECT_EQ(m_removal.errorMessage(), "");
}

} // namespace
} // namespace kestavon
