#include "support/event_loop.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "support/temporary_folder.h"
#include "ui/support/window_test.h"

#include <QTest>

#include <filesystem>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::processEvents;
using test::processEventsUntil;
using testing::ElementsAre;

/// Removes real files, on each of the screens that list them.
class RemovalOnDisk : public test::WindowTest, public testing::WithParamInterface<AppSection> {
protected:
    RemovalOnDisk()
    {
        machine.home = folder.path();
        machine.hasRealTrash = true;
        machine.files->listable.insert(folder / "Library/Mail");
        open();
        model->setSection(GetParam());
        std::vector<FileRecord> records;
        for (int i = 0; i < 4; ++i) {
            const auto size = static_cast<std::size_t>(4000 - 1000 * i);
            const auto path = folder.writeFile("file-" + std::to_string(i), std::string(size, 'x'));
            records.push_back(test::file(path, static_cast<std::int64_t>(size)));
        }
        scan(records);
    }

    RecordTableModel& rows()
    {
        return GetParam() == AppSection::storage ? *states->storage()->rows()
                                                 : *states->largeFiles()->rows();
    }
    void clickRow(int row, Qt::KeyboardModifiers modifiers = {})
    {
        clickAt(need("tableBody").mapToScene({150, 34.0 * row + 17}), modifiers);
    }
    std::vector<std::string> shownNames()
    {
        std::vector<std::string> names;
        for (int row = 0; row < rows().rowCount(); ++row)
            names.push_back(rows().nameText(row).toStdString());
        return names;
    }
    bool waitForRows(int count)
    {
        return processEventsUntil([&] { return rows().rowCount() == count && !rows().isBusy(); });
    }
    std::vector<std::string> onDisk() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            if (entry.is_regular_file())
                names.push_back(entry.path().filename());
        }
        std::ranges::sort(names);
        return names;
    }
    void removeFirstTwo(const char* button)
    {
        clickRow(0);
        clickRow(1, Qt::ShiftModifier);
        clickItem(button);
        clickItem("confirm");
        EXPECT_TRUE(waitForRows(2));
        EXPECT_TRUE(processEventsUntil([&] { return !model->history().empty(); }));
        processEvents();
    }

    test::TemporaryFolder folder;
};

TEST_P(RemovalOnDisk, MovesToTheTrashAndBackAgain)
{
    removeFirstTwo("moveToTrash");
    EXPECT_THAT(onDisk(), ElementsAre("file-2", "file-3"));
    EXPECT_THAT(shownNames(), ElementsAre("file-2", "file-3"));
    EXPECT_EQ(item("fileActionBar"), nullptr) << "nothing is selected any more";
    EXPECT_EQ(model->history().front().title, "Files moved to Trash");
    EXPECT_EQ(model->history().front().detail, "2 files · 7 KB");
    EXPECT_EQ(states->storage()->subtitle(), "2 items, sorted by size");
    waitFor("2 items moved to the Trash");

    clickItem("noticeAction");
    EXPECT_TRUE(waitForRows(4));
    waitFor("2 items are back where they were.");
    EXPECT_THAT(onDisk(), ElementsAre("file-0", "file-1", "file-2", "file-3"));
    EXPECT_THAT(shownNames(), ElementsAre("file-0", "file-1", "file-2", "file-3"));
    EXPECT_EQ(std::filesystem::file_size(folder / "file-0"), 4000u);
    clickItem("dismissNotice");
    EXPECT_EQ(item("noticeBar"), nullptr);
}

TEST_P(RemovalOnDisk, OffersToTakeBackBesideEveryOtherNotice)
{
    removeFirstTwo("moveToTrash");
    waitFor("2 items moved to the Trash");
    states->notice()->show("Something else");
    waitFor("Something else");
    EXPECT_NE(shown("2 items moved to the Trash"), nullptr);
    states->notice()->dismiss();
    waitUntilGone("Something else");
    EXPECT_EQ(model->undoOffer(), (UndoOffer{ActionKind::trash, 2}));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(waitForRows(4));
    waitFor("2 items are back where they were.");
    EXPECT_EQ(item("undoBar"), nullptr);
}

TEST_P(RemovalOnDisk, TakesBackByKeyWhileItIsOffered)
{
    removeFirstTwo("moveToTrash");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(waitForRows(4));

    removeFirstTwo("moveToTrash");
    clickItem("dismissNotice");
    press(Qt::Key_Z, Qt::ControlModifier);
    processEvents();
    EXPECT_THAT(onDisk(), ElementsAre("file-2", "file-3")) << "the offer was turned down";
    EXPECT_EQ(model->undoOffer(), std::nullopt);
}

TEST_P(RemovalOnDisk, TheBarStaysForAPointerThatComesToItNotForOneThatRestsThere)
{
    QTest::mouseMove(window, {700, 800});
    states->notice()->show("Something");
    waitForFrame(); // it finds out what came under the pointer
    EXPECT_FALSE(states->notice()->held());
    QTest::mouseMove(window, {705, 800});
    processEvents();
    EXPECT_TRUE(states->notice()->held());
    QTest::mouseMove(window, {700, 400});
    processEvents();
    EXPECT_FALSE(states->notice()->held());
}

TEST_P(RemovalOnDisk, DeletesForGoodWithoutAnOffer)
{
    removeFirstTwo("deleteForever");
    EXPECT_THAT(onDisk(), ElementsAre("file-2", "file-3"));
    EXPECT_FALSE(std::filesystem::exists(folder / ".Trash"));
    EXPECT_EQ(model->history().front().title, "Files permanently deleted");
    EXPECT_EQ(item("undoBar"), nullptr);
    EXPECT_EQ(item("fileActionBar"), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Screens, RemovalOnDisk,
    testing::Values(AppSection::storage, AppSection::largeFiles), [](const auto& section) {
        return section.param == AppSection::storage ? "Storage" : "LargeFiles";
    });

} // namespace
} // namespace kestavon
