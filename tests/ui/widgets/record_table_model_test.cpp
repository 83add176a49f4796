#include "support/event_loop.h"
#include "ui/widgets/file_name_text.h"
#include "ui/widgets/record_table_model.h"

#include <QCoreApplication>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestavon {
namespace {

using testing::ElementsAre;

constexpr int noKey = Qt::NoModifier;
constexpr int shift = Qt::ShiftModifier;
constexpr int control = Qt::ControlModifier;

FileRecord record(std::string path, std::int64_t size)
{
    FileRecord result;
    result.path = std::move(path);
    result.size = size;
    return result;
}

std::shared_ptr<const RecordList> fiveRecords()
{
    return RecordList::fromRecords("/r",
        std::vector<FileRecord>{record("/r/apple", 10), record("/r/pear", 500),
            record("/r/plum", 10), record("/r/grape", 3'000), record("/r/fig", 0)});
}

/// Enough of them that sorting and filtering outlast a few calls.
std::shared_ptr<const RecordList> manyRecords()
{
    std::vector<FileRecord> records;
    for (int i = 0; i < 100'000; ++i)
        records.push_back(record("/r/file" + std::to_string(i), i));
    return RecordList::fromRecords("/r", records);
}

std::vector<std::string> names(const RecordTableModel& table)
{
    std::vector<std::string> result;
    for (int row = 0; row < table.rowCount(); ++row)
        result.push_back(table.nameText(row).toStdString());
    return result;
}

void awaitRows(const RecordTableModel& table)
{
    ASSERT_TRUE(test::processEventsUntil([&table] { return !table.isBusy(); }));
}

TEST(RecordTableModel, ShowsRecordsLargestFirst)
{
    auto dated = record("/r/line\nbreak \xFF", 12'300'000);
    dated.modifiedAt = Timestamp(std::chrono::seconds(1'794'837'900)); // 14:05 UTC
    auto folder = record("/r/folder", 0);
    folder.isDirectory = true;
    RecordTableModel table;
    table.setRecords(RecordList::fromRecords(
        "/r", std::vector<FileRecord>{folder, record("/r/small", 3'075'000), dated}));
    awaitRows(table);

    ASSERT_EQ(table.rowCount(), 3);
    EXPECT_EQ(table.nameText(0), QStringLiteral("line\u2424break \uFFFD"));
    EXPECT_EQ(table.pathText(0), QStringLiteral("/r/line\u2424break \uFFFD"));
    EXPECT_EQ(table.sizeText(0), QStringLiteral("12.3 MB"));
    EXPECT_EQ(table.dateText(0), QStringLiteral("16 Nov 2026 at 14:05"));
    EXPECT_EQ(table.dateText(1), QStringLiteral("—"));
    EXPECT_DOUBLE_EQ(table.sizeShare(0), 1);
    EXPECT_DOUBLE_EQ(table.sizeShare(1), 0.25);
    EXPECT_TRUE(table.isFolder(2));
    EXPECT_FALSE(table.isFolder(1));
    EXPECT_EQ(table.text(1, 3), QStringLiteral("/r/small"));
    for (const int missing : {-1, 3}) {
        EXPECT_EQ(table.nameText(missing), QString());
        EXPECT_EQ(table.sizeText(missing), QString());
        EXPECT_EQ(table.dateText(missing), QString());
        EXPECT_DOUBLE_EQ(table.sizeShare(missing), 0);
        EXPECT_FALSE(table.isSelected(missing));
    }

    table.setLargestFilesOnly(true);
    awaitRows(table);
    EXPECT_EQ(table.rowCount(), 2);
    EXPECT_EQ(table.text(1, 2), QStringLiteral("/r/small"));
}

TEST(RecordTableModel, CountsOnlyTheSelectedRowsThatTheFilterShows)
{
    RecordTableModel table;
    table.setRecords(fiveRecords());
    awaitRows(table);
    EXPECT_THAT(names(table), ElementsAre("grape", "pear", "apple", "plum", "fig"));
    table.click(1, noKey);
    table.click(3, control);
    EXPECT_EQ(table.selectedCount(), 2);
    EXPECT_EQ(table.selectedBytes(), 510);

    const auto selectionBefore = table.selectionRevision();
    const auto contentBefore = table.contentRevision();
    table.setFilter(QStringLiteral("PL"));
    EXPECT_EQ(table.rowCount(), 5) << "the old rows stay until the new ones are ready";
    awaitRows(table);
    EXPECT_THAT(names(table), ElementsAre("apple", "plum"));
    EXPECT_EQ(table.selectedCount(), 1);
    EXPECT_EQ(table.selectedBytes(), 10);
    EXPECT_THAT(table.selectedVisiblePositions(), ElementsAre(2));
    EXPECT_EQ(table.shownRecords()->name(2), "plum");
    EXPECT_GT(table.selectionRevision(), selectionBefore);
    EXPECT_GT(table.contentRevision(), contentBefore);

    table.setFilter(QString());
    awaitRows(table);
    EXPECT_EQ(table.selectedCount(), 2) << "the hidden one was kept";
    table.move(-1, noKey); // from plum, the last one clicked
    EXPECT_EQ(table.currentRow(), 2);
    table.move(table.rowCount(), shift);
    EXPECT_THAT(table.selectedVisiblePositions(), ElementsAre(0, 2, 4));
    table.clearSelection();
    EXPECT_EQ(table.selectedCount(), 0);
}

TEST(RecordTableModel, ShowsTheLatestOfManyRequests)
{
    RecordTableModel table;
    int shown = 0;
    QObject::connect(&table, &RecordTableModel::rowsChanged, [&shown] { ++shown; });
    table.setRecords(manyRecords());
    for (const auto* const typed : {"f", "fi", "file9", "file99", "file999"})
        table.setFilter(QString::fromLatin1(typed));
    awaitRows(table);
    EXPECT_EQ(shown, 1) << "superseded rows are never shown";
    EXPECT_EQ(table.rowCount(), 111); // file999, file9990 to 9999, file99900 to 99999
    EXPECT_EQ(table.nameText(0), QStringLiteral("file99999"));

    table.setFilter(QStringLiteral("file123"));
    table.setRecords(fiveRecords());
    table.setFilter(QStringLiteral("fig"));
    awaitRows(table);
    EXPECT_THAT(names(table), ElementsAre("fig"));
}

TEST(RecordTableModel, EmptiesTheSelectionWhenTheRecordsChange)
{
    RecordTableModel table;
    const auto records = fiveRecords();
    table.setRecords(records);
    awaitRows(table);
    table.selectAll();
    EXPECT_EQ(table.selectedCount(), 5);

    const auto fewer = records->without(std::vector<std::uint32_t>{3});
    table.setRecords(fewer);
    EXPECT_EQ(table.selectedCount(), 0) << "at once, not only when the new rows are there";
    EXPECT_EQ(table.shownRecords(), records);
    table.click(0, noKey); // a row of the old list
    awaitRows(table);
    EXPECT_EQ(table.shownRecords(), fewer);
    EXPECT_EQ(table.selectedCount(), 0);
    EXPECT_EQ(table.currentRow(), -1);
    EXPECT_THAT(names(table), ElementsAre("pear", "apple", "plum", "fig"));

    table.setRecords(manyRecords());
    table.setRecords(nullptr);
    EXPECT_EQ(table.rowCount(), 0) << "nothing to wait for";
    EXPECT_FALSE(table.isBusy());
    QCoreApplication::processEvents();
    EXPECT_EQ(table.rowCount(), 0);
}

TEST(RecordTableModel, MayGoWhileItsRowsAreOnTheirWay)
{
    const auto records = manyRecords();
    {
        RecordTableModel table;
        table.setRecords(records);
        table.setFilter(QStringLiteral("file1"));
    }
    // The list is let go of once the work has been noticed to be of no use.
    EXPECT_TRUE(test::processEventsUntil([&records] { return records.use_count() == 1; }));
}

TEST(FileNameText, ShowsNothingThatWouldBreakOrDisguiseALine)
{
    EXPECT_EQ(fileNameText("plain été 日本 \U0001F600"), QStringLiteral("plain été 日本 😀"));
    EXPECT_EQ(fileNameText("a\r\n\tb\x7F\u0085"), QStringLiteral("a␍\u2424␉b␡\u2424"));
    EXPECT_EQ(fileNameText("photo\u202Egpj.exe"), QStringLiteral("photo\uFFFDgpj.exe"));
    EXPECT_EQ(fileNameText("\xC3("), QStringLiteral("\uFFFD("));
}

} // namespace
} // namespace kestavon
