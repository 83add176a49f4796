#include "support/event_loop.h"
#include "support/fake_platform.h"
#include "support/fake_scanner.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "ui/largefiles/large_files_state.h"
#include "ui/storage/storage_state.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::file;
using test::folder;
using test::processEventsUntil;

class FileTableTest : public testing::Test {
protected:
    void scan(const std::vector<FileRecord>& records)
    {
        m_model.startStorageScan();
        m_scanner->finishWith("/home/alice", records);
        ASSERT_TRUE(processEventsUntil([&] {
            return !m_model.scanPhase().isScanning() && !m_storage.rows()->isBusy()
                && !m_largeFiles.rows()->isBusy();
        }));
    }
    void search(const QString& text)
    {
        m_storage.setSearchText(text);
        ASSERT_TRUE(processEventsUntil([&] { return !m_storage.rows()->isBusy(); }));
    }
    static std::vector<QString> names(const RecordTableModel& rows)
    {
        std::vector<QString> names;
        for (int row = 0; row < rows.rowCount(); ++row)
            names.push_back(rows.text(row, 0));
        return names;
    }

    test::FakeMachine m_machine;
    std::shared_ptr<test::FakeScanner> m_scanner = std::make_shared<test::FakeScanner>();
    AppModel m_model{m_scanner, m_machine.platform()};
    StorageState m_storage{m_model};
    LargeFilesState m_largeFiles{m_model};
};

TEST_F(FileTableTest, ListsEverythingInStorageAndOnlyFilesInLargeFiles)
{
    EXPECT_TRUE(m_storage.empty());
    EXPECT_EQ(m_storage.subtitle(), "0 items, sorted by size");

    scan({folder("/home/alice/d"), file("/home/alice/d/small", 10), file("/home/alice/big", 3000)});
    EXPECT_FALSE(m_storage.empty());
    EXPECT_EQ(m_storage.subtitle(), "3 items, sorted by size");
    EXPECT_EQ(names(*m_storage.rows()), (std::vector<QString>{"big", "small", "d"}));
    EXPECT_EQ(names(*m_largeFiles.rows()), (std::vector<QString>{"big", "small"}));

    m_model.startStorageScan();
    EXPECT_TRUE(m_storage.empty()) << "a new scan starts with nothing to list";
    EXPECT_EQ(m_storage.rows()->rowCount(), 0);
    m_model.stopStorageScan();
}

TEST_F(FileTableTest, CountsAllItemsInTheHeaderWhateverTheFilterShows)
{
    scan({file("/home/alice/Photos/one.raw", 20), file("/home/alice/two.txt", 10)});
    search("PHOTOS");
    EXPECT_EQ(names(*m_storage.rows()), (std::vector<QString>{"one.raw"}));
    EXPECT_EQ(m_storage.subtitle(), "2 items, sorted by size");
}

TEST_F(FileTableTest, SumsUpOnlyTheSelectedRowsInSight)
{
    scan({file("/home/alice/a.mov", 3'000'000), file("/home/alice/b.txt", 1'500'000)});
    EXPECT_FALSE(m_storage.hasSelection());
    m_storage.rows()->selectAll();
    EXPECT_TRUE(m_storage.hasSelection());
    EXPECT_EQ(m_storage.selectionSummary(), "2 selected · 4.5 MB");

    search("mov");
    EXPECT_EQ(m_storage.selectionSummary(), "1 selected · 3 MB");
    EXPECT_TRUE(m_storage.canRemove());
    search("nothing has this name");
    EXPECT_TRUE(m_storage.hasSelection()) << "what is hidden can still be cleared";
    EXPECT_EQ(m_storage.selectionSummary(), "0 selected · Zero KB");
    EXPECT_FALSE(m_storage.canRemove());
    search("");
    EXPECT_EQ(m_storage.selectionSummary(), "2 selected · 4.5 MB");

    m_storage.rows()->clearSelection();
    EXPECT_FALSE(m_storage.hasSelection());
    EXPECT_EQ(m_storage.selectionSummary(), "2 selected · 4.5 MB")
        << "the bar keeps its text while it slides away";
}

TEST_F(FileTableTest, RemovesTheSelectedRowsInSightAndNoOthers)
{
    scan({file("/home/alice/a.mov", 30), file("/home/alice/b.txt", 20),
        file("/home/alice/c.mov", 10)});
    std::vector<std::string> removed;
    m_storage.removal()->setRemove([&](RemovalKind, RecordPick selected, auto done) {
        for (const auto position : selected.positions)
            removed.push_back(selected.records->path(position));
        done({});
    });
    m_storage.rows()->selectAll();
    search("mov");
    m_storage.removal()->askDelete();
    EXPECT_EQ(m_storage.removal()->title(), "Permanently delete 2 files?");
    m_storage.removal()->confirm();
    EXPECT_THAT(removed, testing::UnorderedElementsAre("/home/alice/a.mov", "/home/alice/c.mov"));
    EXPECT_FALSE(m_storage.hasSelection());
    search("");
    EXPECT_FALSE(m_storage.hasSelection()) << "the hidden row is not left selected";
}

TEST_F(FileTableTest, WithdrawsTheQuestionWhenANewScanBegins)
{
    scan({file("/home/alice/a", 30)});
    m_storage.removal()->setRemove([](RemovalKind, RecordPick, const auto&) { FAIL(); });
    m_storage.rows()->selectAll();
    m_storage.removal()->askTrash();
    ASSERT_TRUE(m_storage.removal()->asking());
    m_model.startStorageScan();
    EXPECT_FALSE(m_storage.removal()->asking());
    m_storage.removal()->confirm();
    m_model.stopStorageScan();
}

TEST_F(FileTableTest, ForgetsFilterAndSelectionWithItsScreen)
{
    scan({file("/home/alice/a", 30), file("/home/alice/b", 20)});
    m_storage.rows()->selectAll();
    search("a");
    m_storage.reset();
    ASSERT_TRUE(processEventsUntil([&] { return !m_storage.rows()->isBusy(); }));
    EXPECT_EQ(m_storage.searchText(), "");
    EXPECT_EQ(m_storage.rows()->rowCount(), 2);
    EXPECT_FALSE(m_storage.hasSelection());
}

} // namespace
} // namespace kestavon
