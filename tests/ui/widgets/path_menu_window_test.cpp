#include "support/event_loop.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "ui/support/window_test.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::file;
using test::processEvents;
using test::processEventsUntil;

/// The Storage screen with two files; the name of the second is not text.
class PathMenuWindow : public test::WindowTest {
protected:
    PathMenuWindow()
    {
        open();
        model->setSection(AppSection::storage);
        scan({file("/home/alice/Films/one.mkv", 2000), file("/home/alice/caf\xE9", 1000)});
    }

    void rightClickRow(int row)
    {
        const auto point = need("tableBody").mapToScene({150, 34.0 * row + 17});
        QTest::mouseClick(window, Qt::RightButton, {}, point.toPoint());
        processEvents();
    }
    static QString clipboard() { return QGuiApplication::clipboard()->text(); }
    std::vector<std::string> opened(std::size_t count)
    {
        processEventsUntil([&] { return machine.workspace->opened().size() >= count; });
        return machine.workspace->opened();
    }
};

using testing::ElementsAre;

TEST_F(PathMenuWindow, OpensAndCopiesThePathThatWasClicked)
{
    rightClickRow(0);
    click("Copy Path");
    EXPECT_EQ(clipboard(), "/home/alice/Films/one.mkv");
    EXPECT_EQ(shown("Copy Path"), nullptr);
    rightClickRow(0);
    click("Open Folder");
    EXPECT_THAT(opened(1), ElementsAre("/home/alice/Films"));
    EXPECT_EQ(states->storage()->rows()->selectedCount(), 0) << "looking selects nothing";
}

TEST_F(PathMenuWindow, KeepsEveryByteOfANameThatIsNoText)
{
    rightClickRow(1);
    click("Open");
    EXPECT_THAT(opened(1), ElementsAre("/home/alice/caf\xE9"));
    rightClickRow(1);
    click("Copy Path");
    EXPECT_EQ(clipboard(), "file:///home/alice/caf%E9");
}

TEST_F(PathMenuWindow, WorksFromTheKeyboardForTheCurrentRow)
{
    need("tableBody").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Down);
    press(Qt::Key_Menu);
    ASSERT_NE(shown("Open Folder"), nullptr);
    press(Qt::Key_Escape);
    EXPECT_EQ(shown("Open Folder"), nullptr);
    EXPECT_EQ(states->storage()->rows()->selectedCount(), 1) << "Escape was for the menu";

    press(Qt::Key_F10, Qt::ShiftModifier);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_THAT(opened(1), ElementsAre("/home/alice/Films"));
    press(Qt::Key_Down);
    EXPECT_EQ(states->storage()->rows()->currentRow(), 1) << "the table has the keyboard again";
}

TEST_F(PathMenuWindow, HasKeysOfItsOwnForOpeningAndCopying)
{
    need("tableBody").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Return);
    press(Qt::Key_Down);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), "/home/alice/Films/one.mkv");
    press(Qt::Key_Down);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), "file:///home/alice/caf%E9");
    press(Qt::Key_Return);
    EXPECT_THAT(opened(1), ElementsAre("/home/alice/caf\xE9")) << "nothing opens without a row";
}

TEST_F(PathMenuWindow, SaysWhyNothingOpened)
{
    machine.workspace->refuse("“one.mkv” couldn’t be opened.");
    rightClickRow(0);
    click("Open");
    waitFor("“one.mkv” couldn’t be opened.");
    press(Qt::Key_Return);
    waitUntilGone("“one.mkv” couldn’t be opened.");
}

TEST_F(PathMenuWindow, IsOfferedForTheScannedFolderToo)
{
    for (const auto section : {AppSection::dashboard, AppSection::settings}) {
        model->setSection(section);
        auto* folder = waitFor("/home/alice");
        ASSERT_TRUE(folder);
        QTest::mouseClick(
            window, Qt::RightButton, {}, folder->mapToScene({10, folder->height() / 2}).toPoint());
        processEvents();
        click("Open");
    }
    EXPECT_THAT(opened(2), ElementsAre("/home/alice", "/home/alice"));
}

} // namespace
} // namespace kestavon
