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

/// The security review over a Mac's disk.
class SecurityWindow : public test::WindowTest {
protected:
    SecurityWindow()
    {
        machine.home = folder / "Users/alice";
        machine.systemRoot = folder.path();
        machine.hasRealTrash = true;
        machine.files->listable.insert(machine.home + "/Library/Mail");
        open();
        model->setSection(AppSection::security);
        processEvents();
    }

    /// Of the whole disk, not of the home only.
    void scanDisk(const std::vector<FileRecord>& records)
    {
        scan({.records = RecordList::fromRecords(folder.path(), records)});
    }
    /// Scans these files and reviews them.
    void review(const std::vector<std::string>& names)
    {
        std::vector<FileRecord> records;
        for (const auto& name : names)
            records.push_back(test::file(folder.writeFile(name, "x"), 1));
        scanDisk(records);
        clickItem("runSecurityScan");
        ASSERT_TRUE(
            processEventsUntil([&] { return model->securityPhase() == ScanPhase::finished(); }));
        letSettle();
    }
    void letSettle()
    {
        processEvents();
        auto* timer = window->findChild<QObject*>(QStringLiteral("securitySettling"));
        ASSERT_NE(timer, nullptr);
        EXPECT_TRUE(processEventsUntil([&] { return !timer->property("running").toBool(); }));
    }

    test::TemporaryFolder folder;
    const std::string agent = "Users/alice/Library/LaunchAgents/a.plist";
};

TEST_F(SecurityWindow, NeedsAScanAndThenSaysWhatItFound)
{
    EXPECT_TRUE(shown("Storage scan needed first"));
    EXPECT_EQ(item("runSecurityScan"), nullptr);
    scanDisk({test::file(folder.writeFile("Users/alice/notes"), 1)});
    EXPECT_FALSE(shown("Storage scan needed first"));
    EXPECT_FALSE(shown("No threats found")) << "nobody has looked";
    review({"Users/alice/notes"});
    EXPECT_TRUE(shown("No threats found"));
    EXPECT_EQ(item("findings"), nullptr);

    review({agent, "Users/alice/Library/LaunchAgents/b.plist", "Library/LaunchDaemons/c.plist"});
    EXPECT_TRUE(shown("No confirmed threats"));
    EXPECT_TRUE(shown("Unknown"));
    EXPECT_TRUE(shown("Persistence location — review recommended"));
    EXPECT_TRUE(shown(QString::fromStdString(folder / agent)));
    EXPECT_TRUE(shown("Protected"));
    EXPECT_NE(item("remove 0"), nullptr);
    EXPECT_NE(item("remove 1"), nullptr);
    EXPECT_EQ(item("remove 2"), nullptr);
}

TEST_F(SecurityWindow, RemovesAFindingAfterAsking)
{
    review({agent, "Users/alice/Library/LaunchAgents/b.plist"});
    clickItem("remove 0");
    waitFor("Remove \"a.plist\"?");
    EXPECT_EQ(focusedName(), "Cancel");
    press(Qt::Key_Escape);
    waitUntilGone("Remove \"a.plist\"?");
    EXPECT_TRUE(std::filesystem::exists(folder / agent));

    clickItem("remove 0");
    click("Move to Trash");
    ASSERT_TRUE(processEventsUntil([&] { return model->findings().size() == 1; }));
    EXPECT_FALSE(std::filesystem::exists(folder / agent));
    EXPECT_EQ(model->history().front().title, "Threat removed");
    EXPECT_EQ(model->history().front().detail, "a.plist");
    clickItem("remove 0"); // now the next one's
    QTest::qWait(50);
    EXPECT_FALSE(shown("Remove \"b.plist\"?"));
}

TEST_F(SecurityWindow, AQuestionStaysWhileItsFindingDoes)
{
    review({agent, "Users/alice/Library/LaunchAgents/b.plist"});
    clickItem("remove 0");
    waitFor("Remove \"a.plist\"?");
    model->removeFinding(model->findings()[1]);
    ASSERT_TRUE(processEventsUntil([&] { return model->findings().size() == 1; }));
    processEvents();
    EXPECT_TRUE(shown("Remove \"a.plist\"?"));
    model->removeFinding(model->findings()[0]);
    waitUntilGone("Remove \"a.plist\"?");
}

TEST_F(SecurityWindow, SaysWhyAFindingStays)
{
    review({agent});
    std::filesystem::remove(folder / agent);
    clickItem("remove 0");
    click("Move to Trash");
    waitFor("Could Not Remove");
    EXPECT_TRUE(shown(states->security()->confirmation()->errorMessage()));
    clickItem("ok");
    waitUntilGone("Could Not Remove");
    EXPECT_EQ(model->findings().size(), 1U);
}

TEST_F(SecurityWindow, SaysOfWhatIsProtectedWhy)
{
    review({"Library/LaunchDaemons/c.plist"});
    auto* word = shown("Protected");
    ASSERT_NE(word, nullptr);
    QTest::mouseMove(window, middleOf(*word).toPoint());
    waitFor("System-level file — requires elevated privileges to remove");
}

TEST_F(SecurityWindow, WorksFromTheKeyboard)
{
    review({agent, "Users/alice/Library/LaunchAgents/b.plist"});
    need("findings").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Down);
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), "Remove");
    press(Qt::Key_Return);
    waitFor("Remove \"b.plist\"?");
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), "Move to Trash");
    press(Qt::Key_Return);
    ASSERT_TRUE(processEventsUntil([&] { return model->findings().size() == 1; }));
}

} // namespace
} // namespace kestavon
