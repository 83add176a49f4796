#include "support/event_loop.h"
#include "support/records.h"
#include "support/temporary_folder.h"
#include "ui/support/window_test.h"

#include <QQmlComponent>
#include <QTest>

namespace kestavon::test {

namespace {

class ShellWindowTest : public WindowTest {
protected:
    /// What has the keyboard shows that it has.
    bool focusedIsMarked() const
    {
        const auto* item = window->activeFocusItem();
        return item && item->property("visualFocus").toBool();
    }
    /// All visible items with this object name, as they follow each other in the window.
    std::vector<QQuickItem*> all(const char* objectName) const
    {
        std::vector<QQuickItem*> found;
        const auto look = [&](auto&& self, QQuickItem* item) -> void {
            if (!item->isVisible())
                return;
            if (item->objectName() == QLatin1String(objectName))
                found.push_back(item);
            for (auto* child : item->childItems())
                self(self, child);
        };
        look(look, window->contentItem());
        return found;
    }
};

constexpr auto shownKey = "kv.fda.onboardingShown";
const auto sheetTitle = QStringLiteral("One Permission. No More Popups.");

TEST_F(ShellWindowTest, EverySectionIsReachedByClick)
{
    open();
    for (const auto& section : allCases<AppSection>()) {
        const auto title = QString::fromUtf8(section.raw.data(), int(section.raw.size()));
        click(title);
        EXPECT_EQ(model->section(), section.value) << section.raw;
    }
}

TEST_F(ShellWindowTest, TheSelectionFollowsTheModelAndTheKeyboard)
{
    open();
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), QStringLiteral("Sections"));
    press(Qt::Key_Down);
    EXPECT_EQ(model->section(), AppSection::storage);
    press(Qt::Key_End);
    EXPECT_EQ(model->section(), AppSection::settings);
    press(Qt::Key_Down);
    EXPECT_EQ(model->section(), AppSection::settings);
    press(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(model->section(), AppSection::history);
    press(Qt::Key_5, Qt::AltModifier);
    EXPECT_EQ(model->section(), AppSection::smartClean);
    press(Qt::Key_0, Qt::AltModifier);
    EXPECT_EQ(model->section(), AppSection::processes);
    press(Qt::Key_4, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_EQ(model->section(), AppSection::settings);
    press(Qt::Key_Home);
    press(Qt::Key_Up);
    EXPECT_EQ(model->section(), AppSection::dashboard);

    model->setSection(AppSection::history);
    const auto* selected = shown(QStringLiteral("History"));
    const auto* other = shown(QStringLiteral("Storage"));
    ASSERT_TRUE(selected && other);
    EXPECT_GT(selected->property("weight").toInt(), other->property("weight").toInt());
}

TEST_F(ShellWindowTest, TheToolbarStartsAndStopsTheScan)
{
    open();
    click(QStringLiteral("Scan"));
    EXPECT_EQ(scanner->waitForScans(1), std::vector<std::string>{"/home/alice"});
    EXPECT_FALSE(shown(QStringLiteral("Scan")));
    press(Qt::Key_F5);
    EXPECT_EQ(scanner->waitForScans(1).size(), 1U) << "the key must not throw a running scan away";
    click(QStringLiteral("Stop"));
    EXPECT_EQ(model->scanPhase(), ScanPhase::idle());

    press(Qt::Key_F5);
    scanner->waitForScans(2);
    waitFor(QStringLiteral("Stop"));
    scanner->finishWith("/home/alice", {});
    waitFor(QStringLiteral("Scan"));
    EXPECT_EQ(model->scanPhase(), ScanPhase::finished());
}

TEST_F(ShellWindowTest, EscapeStopsTheScan)
{
    open();
    press(Qt::Key_F5);
    waitFor(QStringLiteral("Stop"));
    press(Qt::Key_Escape);
    EXPECT_EQ(model->scanPhase(), ScanPhase::idle());
}

TEST_F(ShellWindowTest, EscapeStopsWhatIsGoingOnOneThingAtATime)
{
    open();
    scan({test::file("/home/alice/a", 4), test::file("/home/alice/b", 4)});
    model->startDuplicateAnalysis();
    model->scanAllJunk();
    press(Qt::Key_Escape);
    EXPECT_EQ(model->duplicatePhase(), ScanPhase::idle());
    EXPECT_TRUE(states->smartClean()->scanning());
    press(Qt::Key_Escape);
    EXPECT_FALSE(states->smartClean()->scanning());
    press(Qt::Key_Escape); // there is nothing left to stop
}

TEST_F(ShellWindowTest, EscapeInAFieldIsForTheField)
{
    open();
    model->setSection(AppSection::storage);
    test::processEvents();
    press(Qt::Key_F, Qt::ControlModifier);
    type(QStringLiteral("x"));
    press(Qt::Key_F5);
    waitFor(QStringLiteral("Stop"));
    press(Qt::Key_Escape);
    EXPECT_TRUE(model->scanPhase().isScanning());
    press(Qt::Key_Escape);
    EXPECT_EQ(model->scanPhase(), ScanPhase::idle());
}

TEST_F(ShellWindowTest, ListsItsKeysAndGivesTheKeyboardBack)
{
    open();
    press(Qt::Key_Tab);
    press(Qt::Key_F1);
    waitFor(QStringLiteral("Keyboard Shortcuts"));
    EXPECT_EQ(focusedName(), QStringLiteral("Close"));
    press(Qt::Key_Escape);
    waitUntilGone(QStringLiteral("Keyboard Shortcuts"));
    EXPECT_EQ(focusedName(), QStringLiteral("Sections"));
}

TEST_F(ShellWindowTest, TheListOfKeysCutsNothing)
{
    open();
    press(Qt::Key_F1);
    waitFor(QStringLiteral("Keyboard Shortcuts"));
    waitForFrame();
    const auto texts = all("shortcutText");
    const auto keys = all("shortcutKeys");
    ASSERT_FALSE(texts.empty());
    ASSERT_EQ(keys.size(), texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_FALSE(texts[i]->property("truncated").toBool())
            << texts[i]->property("text").toString().toStdString();
        EXPECT_LT(keys[i]->width(), texts[i]->x());
    }
}

TEST_F(ShellWindowTest, OnboardingIsOfferedOnceAndClosesWhenAccessIsThere)
{
    machine.files->listable.clear();
    open();
    waitFor(sheetTitle);
    EXPECT_TRUE(machine.settings->flags.at(shownKey));
    EXPECT_EQ(focusedName(), QStringLiteral("Open System Settings"));

    press(Qt::Key_Return);
    EXPECT_TRUE(processEventsUntil([this] { return !machine.workspace->opened().empty(); }));
    EXPECT_THAT(
        machine.workspace->opened(), testing::ElementsAre(testing::HasSubstr("Privacy_AllFiles")));
    EXPECT_TRUE(shown(sheetTitle)) << "the sheet stays until access is there";

    machine.files->listable.insert("/home/alice/Library/Messages");
    waitUntilGone(sheetTitle);
    EXPECT_TRUE(model->hasFullDiskAccess());
}

TEST_F(ShellWindowTest, OnboardingCanBeSkippedAndDoesNotComeBack)
{
    machine.files->listable.clear();
    open();
    click(QStringLiteral("Skip for Now"));
    waitUntilGone(sheetTitle);
    const auto probes = machine.files->asked.size();

    window->close();
    window->show();
    EXPECT_TRUE(processEventsUntil([this] { return window->property("hasAppeared").toBool(); }));
    processEvents();
    EXPECT_FALSE(shown(sheetTitle));
    EXPECT_EQ(machine.files->asked.size(), probes);
}

TEST_F(ShellWindowTest, WithAccessNobodyIsAskedAndNothingWritten)
{
    open();
    EXPECT_FALSE(shown(sheetTitle));
    EXPECT_TRUE(machine.settings->flags.empty());
}

TEST_F(ShellWindowTest, SettingsTellTheVersionAndLeadOut)
{
    open();
    click(QStringLiteral("Settings"));
    waitFor(QStringLiteral("Version 1.0.0 (build 1)"));
    model->setSelectedRoot("/srv/data");
    waitFor(QStringLiteral("/srv/data"));
    click(QStringLiteral("Visit Website →"));
    click(QStringLiteral("Contact Support"));
    EXPECT_TRUE(processEventsUntil([this] { return machine.workspace->opened().size() == 2; }));
    EXPECT_THAT(machine.workspace->opened(),
        testing::ElementsAre("https://kestavon.example", "mailto:support@kestavon.example"));

    const auto reason = QStringLiteral("There is no web browser.");
    machine.workspace->refuse(reason.toStdString());
    click(QStringLiteral("Visit Website →"));
    waitFor(reason);
    click(QStringLiteral("OK"));
    waitUntilGone(reason);

    click(QStringLiteral("Check for Updates"));
    waitFor(QStringLiteral("OK"));
    press(Qt::Key_Escape);
    waitUntilGone(QStringLiteral("OK"));
}

TEST_F(ShellWindowTest, TheAccessBannerLeadsToTheSwitchAndLooksAgain)
{
    open();
    QQmlComponent component(engine.get());
    component.setData("import Kestavon.Ui\nFullDiskAccessBanner { property int rechecks: 0\n"
                      "onRecheck: ++rechecks; width: 900 }",
        QUrl());
    const std::unique_ptr<QObject> banner(component.createWithInitialProperties(
        {{QStringLiteral("shell"), QVariant::fromValue(states->shell())}}));
    auto* item = qobject_cast<QQuickItem*>(banner.get());
    ASSERT_TRUE(item) << component.errorString().toStdString();
    item->setParentItem(window->contentItem());

    click(QStringLiteral("Re-check"));
    EXPECT_EQ(banner->property("rechecks").toInt(), 1);
    click(QStringLiteral("Open System Settings"));
    EXPECT_TRUE(processEventsUntil([this] { return !machine.workspace->opened().empty(); }));
    EXPECT_THAT(
        machine.workspace->opened(), testing::ElementsAre(testing::HasSubstr("Privacy_AllFiles")));
}

TEST_F(ShellWindowTest, SettingsOpenInAWindowOfTheirOwn)
{
    open();
    press(Qt::Key_Comma, Qt::ControlModifier);
    auto* settings = waitForWindow(QStringLiteral("Settings"));
    ASSERT_TRUE(settings);
    EXPECT_TRUE(shown(QStringLiteral("Scans stay local — no telemetry"), settings));
    EXPECT_EQ(model->section(), AppSection::dashboard);
    click(QStringLiteral("Check for Updates"), settings);
    EXPECT_TRUE(waitFor(QStringLiteral("OK"), settings));
}

TEST_F(ShellWindowTest, TheStatusMenuShowsFreshFiguresAndLeadsToSmartClean)
{
    open();
    machine.volumes->fallback = VolumeCapacity{1'000'000'000'000, 50'000'000'000};
    machine.memory->value->freeBytes = 1'500'000'000;
    auto* item = window->findChild<QQuickItem*>(QStringLiteral("statusItem"));
    ASSERT_TRUE(item);
    QTest::mouseClick(window, Qt::LeftButton, {}, item->mapToScene({20, 16}).toPoint());
    waitFor(QStringLiteral("50 GB"));
    waitFor(QStringLiteral("1.5 GB"));
    EXPECT_EQ(states->status()->symbol(), QStringLiteral("internaldrive.fill"));

    press(Qt::Key_Down);
    EXPECT_EQ(focusedName(), QStringLiteral("Smart Clean…"));
    press(Qt::Key_Down);
    EXPECT_EQ(focusedName(), QStringLiteral("Quit Kestavon"));
    press(Qt::Key_Down);
    EXPECT_EQ(focusedName(), QStringLiteral("Open Kestavon"));
    press(Qt::Key_Up);
    EXPECT_EQ(focusedName(), QStringLiteral("Quit Kestavon"));

    click(QStringLiteral("Smart Clean…"));
    EXPECT_EQ(model->section(), AppSection::smartClean);
    waitUntilGone(QStringLiteral("50 GB"));
}

TEST_F(ShellWindowTest, TheStatusButtonClosesTheMenuThatItOpened)
{
    open();
    const auto figure = QStringLiteral("Open Kestavon");
    clickItem("statusItem");
    EXPECT_TRUE(shown(figure));
    EXPECT_FALSE(focusedIsMarked()) << "the mouse opened it";
    clickItem("statusItem");
    EXPECT_FALSE(shown(figure));
    clickItem("statusItem");
    EXPECT_TRUE(shown(figure));
    press(Qt::Key_Escape);
    EXPECT_FALSE(shown(figure));

    need("sidebar").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    EXPECT_EQ(focusedName(), figure);
    EXPECT_TRUE(focusedIsMarked());
    press(Qt::Key_Escape);
    EXPECT_EQ(focusedName(), QStringLiteral("Kestavon"));
    EXPECT_TRUE(focusedIsMarked());
}

TEST_F(ShellWindowTest, TheStatusMenuDoesNotStayBehindWithTheWindowsKeys)
{
    open();
    clickItem("statusItem");
    need("sidebar").forceActiveFocus(Qt::OtherFocusReason);
    processEvents();
    EXPECT_FALSE(shown(QStringLiteral("Open Kestavon")));
    EXPECT_EQ(focusedName(), QStringLiteral("Sections")) << "the keyboard stays where it went";
    press(Qt::Key_F5);
    EXPECT_TRUE(model->scanPhase().isScanning());

    clickItem("statusItem");
    model->setSection(AppSection::history);
    processEvents();
    EXPECT_FALSE(shown(QStringLiteral("Open Kestavon")));
}

TEST_F(ShellWindowTest, ComingToTheFrontKeepsTheWindowAsLargeAsItWas)
{
    open();
    window->showMaximized();
    test::processEvents();
    states->shell()->raise();
    EXPECT_EQ(window->visibility(), QWindow::Maximized);
    window->showMinimized();
    test::processEvents();
    states->shell()->raise();
    EXPECT_EQ(window->visibility(), QWindow::Maximized);
    window->hide();
    states->shell()->raise();
    EXPECT_EQ(window->visibility(), QWindow::Maximized);
}

TEST_F(ShellWindowTest, WithoutAMemorySnapshotOnlyTheDiskIsShown)
{
    machine.memory->value.reset();
    open();
    auto* item = window->findChild<QQuickItem*>(QStringLiteral("statusItem"));
    ASSERT_TRUE(item);
    QTest::mouseClick(window, Qt::LeftButton, {}, item->mapToScene({20, 16}).toPoint());
    waitFor(QStringLiteral("Disk"));
    EXPECT_FALSE(shown(QStringLiteral("Memory")));
}

/// The choice of a folder in a home that is really there.
class FolderSheetTest : public ShellWindowTest {
protected:
    FolderSheetTest()
    {
        for (const auto* name : {"Films/deep", "archive", "caf\xE9"})
            folder.makeFolder(name);
        machine.home = folder.path();
        machine.files->listable.insert(folder / "Library/Mail");
        open();
        press(Qt::Key_O, Qt::ControlModifier);
        waitFor(QStringLiteral("Films"));
    }
    bool showsFolder(const std::string& path)
    {
        return processEventsUntil(
            [&] { return need("folderPath").property("text").toString().toStdString() == path; });
    }

    TemporaryFolder folder;
};

TEST_F(FolderSheetTest, CanBeCancelled)
{
    EXPECT_EQ(focusedName(), QStringLiteral("Folders"));
    press(Qt::Key_Down);
    press(Qt::Key_Escape);
    waitUntilGone(QStringLiteral("Films"));
    EXPECT_EQ(model->selectedRoot(), folder.path());
    press(Qt::Key_O, Qt::ControlModifier);
    waitFor(QStringLiteral("Films"));
    clickItem("cancelFolder");
    EXPECT_EQ(model->selectedRoot(), folder.path());
}

TEST_F(FolderSheetTest, OpensWhatWasClickedAndNothingElse)
{
    click(QStringLiteral("caf\uFFFD"));
    EXPECT_EQ(need("chosenName").property("text").toString(), QStringLiteral("caf\uFFFD"));
    clickItem("openFolder");
    EXPECT_EQ(model->selectedRoot(), folder / "caf\xE9");
    EXPECT_FALSE(item("openFolder"));
    // The folder shown, without a click on one in it.
    press(Qt::Key_O, Qt::ControlModifier);
    ASSERT_TRUE(showsFolder("file://" + folder.path() + "/caf%E9"));
    clickItem("folderUp");
    ASSERT_TRUE(showsFolder(folder.path()));
    clickItem("openFolder");
    EXPECT_EQ(model->selectedRoot(), folder.path());
}

TEST_F(FolderSheetTest, WorksFromTheKeyboard)
{
    press(Qt::Key_F);
    press(Qt::Key_Return);
    ASSERT_TRUE(showsFolder(folder / "Films"));
    waitFor(QStringLiteral("deep"));
    press(Qt::Key_Backspace);
    ASSERT_TRUE(showsFolder(folder.path()));
    press(Qt::Key_L, Qt::ControlModifier);
    EXPECT_EQ(focusedName(), QStringLiteral("Folder"));
    type(QStringLiteral("nowhere"));
    press(Qt::Key_Return);
    ASSERT_TRUE(processEventsUntil([&] { return item("folderMessage") != nullptr; }));
    EXPECT_EQ(need("chosenName").property("text").toString(), QStringLiteral("nowhere"));
    need("folderRows").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_End);
    EXPECT_FALSE(item("folderMessage"));
    EXPECT_EQ(need("chosenName").property("text").toString(), QStringLiteral("Films"))
        << "the latest choice counts";
    press(Qt::Key_L, Qt::ControlModifier);
    type(QStringLiteral("Films/deep"));
    press(Qt::Key_Return);
    ASSERT_TRUE(showsFolder(folder / "Films/deep"));
    press(Qt::Key_Up, Qt::AltModifier);
    ASSERT_TRUE(showsFolder(folder / "Films"));
    press(Qt::Key_L, Qt::ControlModifier);
    type(QStringLiteral("/"));
    press(Qt::Key_Return);
    ASSERT_TRUE(showsFolder("/"));
    clickItem("openFolder");
    EXPECT_TRUE(processEventsUntil([&] { return model->selectedRoot() == "/"; }));
    EXPECT_TRUE(machine.workspace->opened().empty()) << "no file manager";
}

} // namespace

} // namespace kestavon::test
