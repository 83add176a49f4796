#include "core/model/actions_fixture.h"
#include "support/stuck_trash.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace kestavon {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A Mac's disk that is attached here, with applications and what they have left in a home.
class AppModelApplications : public test::AppModelFixture {
protected:
    AppModelApplications()
    {
        machine.home = folder / "Users/alice";
        machine.systemRoot = folder.path();
        machine.hasRealTrash = true;
        folder.makeFolder("Users/alice/Library");
    }

    void install(const std::string& bundle, const std::string& identifier)
    {
        folder.writeFile(bundle + "/Contents/Info.plist",
            "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>" + identifier
                + "</string></dict></plist>");
    }
    void leave(const std::string& name, std::size_t bytes)
    {
        folder.writeFile("Users/alice/Library/" + name, std::string(bytes, 'x'));
    }
    /// An editor with three leftovers, 60 bytes, and a viewer with one of 10.
    void load()
    {
        install("Applications/Editor.app", "com.example.Editor");
        install("Users/alice/Applications/Viewer.app", "org.example.Viewer");
        leave("Caches/com.example.Editor/a", 10);
        leave("Logs/Editor/log", 20);
        leave("Preferences/com.example.Editor.plist", 30);
        leave("Caches/org.example.Viewer/b", 10);
        makeModel();
        reload();
    }
    void makeModel() { model = std::make_unique<AppModel>(scanner, machine.platform()); }
    void reload()
    {
        model->loadInstalledApps();
        ASSERT_TRUE(test::processEventsUntil([&] { return !model->isLoadingApps(); }));
    }
    InstalledApp app(const std::string& name) const
    {
        for (const auto& listed : model->installedApps()) {
            if (listed.name == name)
                return listed;
        }
        ADD_FAILURE() << name << " is not listed";
        return {};
    }
    /// Each with its leftovers' number.
    std::vector<std::string> listed() const
    {
        std::vector<std::string> texts;
        for (const auto& listed : model->installedApps())
            texts.push_back(listed.name + " " + std::to_string(listed.leftovers.size()));
        return texts;
    }
    std::string uninstall(const InstalledApp& which, bool appOnly)
    {
        return await([&](auto done) { model->uninstallApp(which, appOnly, done); });
    }
    UndoReport undo()
    {
        std::optional<UndoReport> result;
        model->undoLastMove([&result](const UndoReport& report) { result = report; });
        EXPECT_TRUE(test::processEventsUntil([&result] { return result.has_value(); }));
        return result.value_or(UndoReport());
    }
    bool isInHome(const std::string& name) const { return exists("Users/alice/" + name); }
    std::string lastEventText() const { return lastEvent().title + ": " + lastEvent().detail; }
};

TEST_F(AppModelApplications, ListsThemWithWhatLeavesMostFirst)
{
    EXPECT_NO_FATAL_FAILURE(load());
    EXPECT_THAT(listed(), ElementsAre("Editor 3", "Viewer 1"));
    EXPECT_THAT(model->history(), IsEmpty());

    std::vector<AppModel::Field> changed;
    QObject::connect(model.get(), &AppModel::fieldChanged, model.get(),
        [&](AppModel::Field field) { changed.push_back(field); });
    model->loadInstalledApps();
    EXPECT_TRUE(model->isLoadingApps());
    EXPECT_THAT(model->installedApps(), IsEmpty());
    model->loadInstalledApps(); // the first one's list is dropped
    ASSERT_TRUE(test::processEventsUntil([&] { return !model->isLoadingApps(); }));
    using enum AppModel::Field;
    EXPECT_THAT(changed,
        ElementsAre(isLoadingApps, installedApps, isLoadingApps, installedApps, installedApps,
            isLoadingApps));
}

TEST_F(AppModelApplications, UninstallsWithAllThatIsLeft)
{
    load();
    EXPECT_EQ(uninstall(app("Editor"), false), "");
    EXPECT_THAT(listed(), ElementsAre("Viewer 1"));
    EXPECT_FALSE(exists("Applications/Editor.app"));
    EXPECT_FALSE(isInHome("Library/Caches/com.example.Editor"));
    EXPECT_FALSE(isInHome("Library/Preferences/com.example.Editor.plist"));
    EXPECT_TRUE(isInHome("Library/Logs")) << "only what lies in it was the editor's";
    EXPECT_EQ(folder.readFile("Users/alice/.Trash/com.example.Editor/a"), "xxxxxxxxxx");
    EXPECT_TRUE(isInHome(".Trash/Editor.app/Contents/Info.plist"));
    EXPECT_EQ(lastEventText(), "Editor uninstalled: Moved to Trash + 3 leftover files");
    EXPECT_EQ(model->undoOffer(), (UndoOffer{ActionKind::trash, 4}));
}

TEST_F(AppModelApplications, UninstallsTheApplicationAlone)
{
    load();
    uninstall(app("Editor"), true);
    EXPECT_THAT(listed(), ElementsAre("Viewer 1"));
    EXPECT_FALSE(exists("Applications/Editor.app"));
    EXPECT_TRUE(isInHome("Library/Caches/com.example.Editor/a"));
    EXPECT_EQ(lastEventText(), "Editor uninstalled: Moved to Trash");
}

TEST_F(AppModelApplications, GoesOnWhenTheApplicationCannotBeMoved)
{
    load();
    const auto editor = app("Editor");
    std::filesystem::remove_all(editor.appURL);
    std::filesystem::remove_all(editor.leftovers[1].url);
    EXPECT_EQ(uninstall(editor, false), "") << "the screen shows no error of its own";
    EXPECT_THAT(listed(), ElementsAre("Viewer 1"));
    EXPECT_FALSE(isInHome("Library/Preferences/com.example.Editor.plist"));
    EXPECT_EQ(lastEvent().detail, "Moved to Trash + 3 leftover files");
    EXPECT_EQ(model->undoOffer(), (UndoOffer{ActionKind::trash, 2})) << "what moved";
}

TEST_F(AppModelApplications, RemovesLeftoversAndKeepsTheApplicationWhereItStands)
{
    load();
    EXPECT_EQ(await([&](auto done) { model->removeLeftovers(app("Editor"), done); }), "");
    EXPECT_THAT(listed(), ElementsAre("Editor 0", "Viewer 1"));
    EXPECT_TRUE(exists("Applications/Editor.app"));
    EXPECT_FALSE(isInHome("Library/Logs/Editor"));
    EXPECT_EQ(lastEventText(), "Editor leftovers removed: 3 files (60 bytes)");

    await([&](auto done) { model->removeLeftovers(app("Editor"), done); });
    EXPECT_EQ(lastEventText(), "Editor leftovers removed: 0 files (Zero KB)");
    EXPECT_EQ(undo(), (UndoReport{.restored = 3})) << "of the removal that moved something";
    EXPECT_THAT(listed(), ElementsAre("Editor 3", "Viewer 1"));
}

TEST_F(AppModelApplications, AFolderInTheOldPlaceOfAFileStays)
{
    folder.writeFile("Applications/Flat.app", "x");
    load();
    const auto flat = app("Flat");
    const auto editor = app("Editor");
    for (const std::string name :
        {"Applications/Flat.app", "Users/alice/Library/Preferences/com.example.Editor.plist"}) {
        std::filesystem::remove(folder / name);
        folder.writeFile(name + "/letters", "nobody has seen them");
    }
    uninstall(flat, false);
    EXPECT_TRUE(exists("Applications/Flat.app/letters"));
    EXPECT_THAT(listed(), ElementsAre("Editor 3", "Viewer 1"));

    uninstall(editor, false);
    EXPECT_TRUE(isInHome("Library/Preferences/com.example.Editor.plist/letters"));
    EXPECT_FALSE(isInHome("Library/Logs/Editor"));
    EXPECT_EQ(model->undoOffer(), (UndoOffer{ActionKind::trash, 3}));
}

TEST_F(AppModelApplications, MovesWhatOtherRemovalsLeaveAlone)
{
    install("Applications/Helper.app", "com.example.Helper.appex");
    makeModel();
    reload();
    auto helper = app("Helper");
    helper.leftovers.push_back(
        {.id = Uuid::random(), .url = folder.writeFile("Agent.xpc", "x"), .size = 1});
    uninstall(helper, false);
    EXPECT_FALSE(exists("Applications/Helper.app"));
    EXPECT_FALSE(exists("Agent.xpc"));
}

TEST_F(AppModelApplications, OfOneThatCannotBeMovedOnlyTheLeftoversGo)
{
    load();
    auto editor = app("Editor");
    editor.canBeMoved = false;
    uninstall(editor, true);
    EXPECT_THAT(model->history(), IsEmpty());
    uninstall(editor, false);
    EXPECT_TRUE(exists("Applications/Editor.app"));
    EXPECT_THAT(listed(), ElementsAre("Editor 0", "Viewer 1"));
    EXPECT_EQ(lastEventText(), "Editor leftovers removed: 3 files (60 bytes)");
}

TEST_F(AppModelApplications, WhatComesBackIsListedAgainAtItsPlace)
{
    load();
    const auto editor = app("Editor");
    uninstall(editor, false);
    EXPECT_EQ(undo(), (UndoReport{.restored = 4}));
    EXPECT_THAT(listed(), ElementsAre("Editor 3", "Viewer 1"));
    EXPECT_EQ(app("Editor").id, editor.id);
    EXPECT_TRUE(exists("Applications/Editor.app/Contents/Info.plist"));
    EXPECT_EQ(folder.readFile("Users/alice/Library/Caches/com.example.Editor/a"), "xxxxxxxxxx");
    EXPECT_EQ(lastEventText(), "Move to Trash undone: Editor · 4 items");

    await([&](auto done) { model->removeLeftovers(app("Editor"), done); });
    leave("Logs/Editor", 3); // a newcomer in the place of one of them
    EXPECT_EQ(undo().failed, 1);
    EXPECT_THAT(listed(), ElementsAre("Editor 2", "Viewer 1"));

    uninstall(app("Viewer"), false);
    reload();
    EXPECT_EQ(undo(), (UndoReport{.restored = 2, .listed = false}));
    EXPECT_THAT(listed(), ElementsAre("Editor 3"));
}

/// With a Trash that takes its time over some items.
class AppModelSlowUninstall : public AppModelApplications {
protected:
    AppModelSlowUninstall()
    {
        machine.hasRealTrash = false;
        machine.trash->whenTrashed = [this](const std::string& path) {
            while (!mayGoOn && path.find(slow) != std::string::npos)
                std::this_thread::sleep_for(1ms);
        };
    }
    ~AppModelSlowUninstall() override { mayGoOn = true; }

    /// Starts to uninstall the editor and stops that when it has come to the slow item, which is
    /// done nevertheless.
    void uninstallAndStop()
    {
        bool ended = false;
        model->uninstallApp(app("Editor"), false, [&](const std::string& error) {
            EXPECT_EQ(error, "");
            ended = true;
        });
        ASSERT_TRUE(test::processEventsUntil([&] { return model->fileWork().has_value(); }));
        EXPECT_EQ(model->fileWork()->deed, FileWork::Deed::trash);
        model->stopFileWork();
        mayGoOn = true;
        ASSERT_TRUE(test::processEventsUntil([&] { return ended; }));
    }

    std::string slow;
    std::atomic<bool> mayGoOn = false;
};

TEST_F(AppModelSlowUninstall, KeepsListedWhatWasLeftWhenItIsStopped)
{
    slow = "Caches/com.example.Editor";
    load();
    uninstallAndStop();
    EXPECT_THAT(machine.trash->trashed, SizeIs(2));
    EXPECT_EQ(lastEventText(), "Editor uninstalled: Moved to Trash + 1 leftover files");
    EXPECT_THAT(listed(), ElementsAre("Editor 2", "Viewer 1"));
    EXPECT_FALSE(app("Editor").canBeMoved) << "it is in the Trash";

    uninstall(app("Editor"), false);
    EXPECT_EQ(lastEventText(), "Editor leftovers removed: 2 files (50 bytes)");
    EXPECT_THAT(machine.trash->trashed, SizeIs(4));
}

TEST_F(AppModelSlowUninstall, AnApplicationThatWouldNotMoveCanBeTriedAgain)
{
    slow = "Caches/com.example.Editor";
    load();
    machine.trash->refusals[app("Editor").appURL] = FileError::Kind::permission;
    uninstallAndStop();
    EXPECT_THAT(listed(), ElementsAre("Editor 2", "Viewer 1"));
    EXPECT_TRUE(app("Editor").canBeMoved);

    machine.trash->refusals.clear();
    uninstall(app("Editor"), false);
    EXPECT_EQ(machine.trash->trashed.at(1), folder / "Applications/Editor.app");
    EXPECT_THAT(listed(), ElementsAre("Viewer 1"));
}

TEST_F(AppModelSlowUninstall, OneThatIsStoppedAtTheApplicationChangesNothing)
{
    load();
    auto platform = machine.platform();
    platform.trash = std::make_shared<test::StuckTrash>();
    model = std::make_unique<AppModel>(scanner, platform);
    reload();
    uninstallAndStop();
    EXPECT_THAT(listed(), ElementsAre("Editor 3", "Viewer 1"));
    EXPECT_TRUE(app("Editor").canBeMoved);
    EXPECT_THAT(model->history(), IsEmpty());
    EXPECT_EQ(model->undoOffer(), std::nullopt);
}

TEST_F(AppModelSlowUninstall, AListingWaitsForWhatIsBeingRemoved)
{
    slow = "Editor.app";
    load();
    model->uninstallApp(app("Editor"), false);
    std::filesystem::remove_all(folder / "Applications/Editor.app"); // as the Trash would
    model->loadInstalledApps();
    test::processEvents();
    EXPECT_TRUE(model->isLoadingApps());
    EXPECT_THAT(model->installedApps(), IsEmpty());
    mayGoOn = true;
    ASSERT_TRUE(test::processEventsUntil([&] { return !model->isLoadingApps(); }));
    EXPECT_THAT(listed(), ElementsAre("Viewer 1"));
    EXPECT_THAT(model->history(), SizeIs(1));
}

} // namespace
} // namespace kestavon
