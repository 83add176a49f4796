#include "core/model/actions_fixture.h"
#include "support/stuck_trash.h"

#include <algorithm>

namespace kestavon {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// A Mac's disk that is attached here, with jobs that start by themselves.
class AppModelAutostart : public test::AppModelFixture {
protected:
    AppModelAutostart()
    {
        machine.home = folder / "Users/alice";
        machine.systemRoot = folder.path();
        machine.hasRealTrash = true;
        folder.makeFolder("Users/alice/Library");
    }

    void define(const std::string& file, const std::string& label)
    {
        folder.writeFile(file,
            "<plist version=\"1.0\"><dict><key>Label</key><string>" + label
                + "</string></dict></plist>");
    }
    /// Two of the user's and one of the system's.
    void load()
    {
        define("Users/alice/Library/LaunchAgents/a.plist", "org.example.a");
        define("Users/alice/Library/LaunchAgents/b.plist", "org.example.b");
        define("Library/LaunchDaemons/c.plist", "org.example.c");
        model = std::make_unique<AppModel>(scanner, machine.platform());
        reload();
    }
    void reload()
    {
        model->loadStartupItems();
        ASSERT_TRUE(test::processEventsUntil([&] { return !model->isLoadingStartupItems(); }));
    }
    std::vector<std::string> labels() const
    {
        std::vector<std::string> texts;
        for (const auto& item : model->startupItems())
            texts.push_back(item.label);
        return texts;
    }
    std::string remove(std::size_t position)
    {
        const auto item = model->startupItems()[position];
        return await([&](auto done) { model->removeStartupItem(item, done); });
    }
    void review()
    {
        model->startSecurityScan();
        ASSERT_TRUE(test::processEventsUntil(
            [&] { return model->securityPhase() == ScanPhase::finished(); }));
    }
    std::string remove(const SecurityFinding& finding)
    {
        return await([&](auto done) { model->removeFinding(finding, done); });
    }
    std::vector<std::string> findings() const
    {
        std::vector<std::string> names;
        for (const auto& finding : model->findings())
            names.push_back(finding.path.substr(finding.path.rfind('/') + 1));
        return names;
    }
    UndoReport undo()
    {
        std::optional<UndoReport> result;
        model->undoLastMove([&result](const UndoReport& report) { result = report; });
        EXPECT_TRUE(test::processEventsUntil([&result] { return result.has_value(); }));
        return result.value_or(UndoReport());
    }
    std::string lastEventText() const { return lastEvent().title + ": " + lastEvent().detail; }
};

TEST_F(AppModelAutostart, RemovesAnItemOfTheUsers)
{
    load();
    EXPECT_THAT(labels(), ElementsAre("org.example.a", "org.example.b", "org.example.c"));
    EXPECT_EQ(remove(0), "");
    EXPECT_THAT(labels(), ElementsAre("org.example.b", "org.example.c"));
    EXPECT_FALSE(exists("Users/alice/Library/LaunchAgents/a.plist"));
    EXPECT_TRUE(exists("Users/alice/.Trash/a.plist"));
    EXPECT_EQ(lastEventText(), "Startup item removed: org.example.a");

    EXPECT_EQ(undo(), (UndoReport{.restored = 1}));
    EXPECT_THAT(labels(), ElementsAre("org.example.a", "org.example.b", "org.example.c"));
    EXPECT_TRUE(exists("Users/alice/Library/LaunchAgents/a.plist"));
    EXPECT_EQ(lastEventText(), "Move to Trash undone: org.example.a");

    remove(1);
    reload();
    EXPECT_EQ(undo(), (UndoReport{.restored = 1, .listed = false}));
    EXPECT_THAT(labels(), ElementsAre("org.example.a", "org.example.c"));
}

TEST_F(AppModelAutostart, LeavesAnItemOfTheSystemAloneWithoutAWord)
{
    load();
    EXPECT_EQ(remove(2), "");
    EXPECT_THAT(labels(), SizeIs(3));
    EXPECT_TRUE(exists("Library/LaunchDaemons/c.plist"));
    EXPECT_THAT(model->history(), IsEmpty());
    EXPECT_EQ(model->undoOffer(), std::nullopt);
}

TEST_F(AppModelAutostart, SaysWhyAnItemStays)
{
    load();
    std::filesystem::remove(folder / "Users/alice/Library/LaunchAgents/a.plist");
    EXPECT_THAT(remove(0), HasSubstr("a.plist"));
    EXPECT_THAT(labels(), SizeIs(3));
    EXPECT_THAT(model->history(), IsEmpty());

    folder.writeFile("Users/alice/Library/LaunchAgents/a.plist/letters", "nobody has seen them");
    EXPECT_THAT(remove(0), HasSubstr("a.plist"));
    EXPECT_TRUE(exists("Users/alice/Library/LaunchAgents/a.plist/letters"));
    EXPECT_THAT(labels(), SizeIs(3));
}

TEST_F(AppModelAutostart, RemovesAnItemFromAFolderThatIsALink)
{
    define("Users/alice/dotfiles/a.plist", "org.example.a");
    std::filesystem::create_directory_symlink(
        folder / "Users/alice/dotfiles", folder / "Users/alice/Library/LaunchAgents");
    model = std::make_unique<AppModel>(scanner, machine.platform());
    reload();
    EXPECT_EQ(remove(0), "");
    EXPECT_FALSE(exists("Users/alice/dotfiles/a.plist"));
}

TEST_F(AppModelAutostart, AListThatWasMadeMeanwhileDoesNotShowWhatHasGone)
{
    load();
    const auto item = model->startupItems()[0];
    reload(); // all have new ids
    EXPECT_EQ(await([&](auto done) { model->removeStartupItem(item, done); }), "");
    ASSERT_TRUE(test::processEventsUntil([&] { return !model->isLoadingStartupItems(); }));
    EXPECT_THAT(labels(), ElementsAre("org.example.b", "org.example.c"));
}

TEST_F(AppModelAutostart, ReviewsWhatTheLastScanFound)
{
    scan({"Users/alice/Library/LaunchAgents/x.plist", "Users/alice/notes",
        "Library/LaunchDaemons/y.plist"});
    model->startSecurityScan();
    EXPECT_EQ(model->securityPhase(), ScanPhase::scanning("Checking persistence locations…"));
    ASSERT_TRUE(
        test::processEventsUntil([&] { return model->securityPhase() == ScanPhase::finished(); }));
    EXPECT_THAT(findings(), ElementsAre("x.plist", "y.plist"));
    EXPECT_EQ(lastEventText(), "Security scan complete: 2 findings");

    scan({});
    EXPECT_THAT(findings(), SizeIs(2)) << "a new scan is no new review";
    EXPECT_EQ(model->securityPhase(), ScanPhase::finished());
}

TEST_F(AppModelAutostart, OfTwoReviewsTheLaterOneCounts)
{
    scan({"Users/alice/Library/LaunchAgents/x.plist"});
    model->startSecurityScan();
    scan({"Users/alice/Library/LaunchAgents/y.plist"});
    model->startSecurityScan();
    ASSERT_TRUE(test::processEventsUntil([&] {
        return std::ranges::count(model->history(), "Security scan complete", &ActivityEvent::title)
            == 2;
    }));
    EXPECT_THAT(findings(), ElementsAre("y.plist"));
}

TEST_F(AppModelAutostart, RemovesAFindingWhateverItIsCalled)
{
    scan({"Library/LaunchAgents/Agent.xpc", "Library/LaunchAgents/b.plist"});
    review();
    EXPECT_EQ(remove(model->findings()[0]), "");
    EXPECT_THAT(findings(), ElementsAre("b.plist"));
    EXPECT_FALSE(exists("Library/LaunchAgents/Agent.xpc"));
    EXPECT_EQ(model->records()->size(), 2U) << "what was scanned is another list";
    EXPECT_EQ(lastEventText(), "Threat removed: Agent.xpc");

    EXPECT_EQ(undo(), (UndoReport{.restored = 1}));
    EXPECT_THAT(findings(), ElementsAre("Agent.xpc", "b.plist"));
    EXPECT_EQ(folder.readFile("Library/LaunchAgents/Agent.xpc"), "12345");

    remove(model->findings()[0]);
    review();
    EXPECT_THAT(findings(), SizeIs(2)) << "of the same records";
    EXPECT_THAT(remove(model->findings()[0]), HasSubstr("Agent.xpc")) << "it is not there any more";
    EXPECT_THAT(findings(), SizeIs(2));
    EXPECT_EQ(undo(), (UndoReport{.restored = 1, .listed = false}));
    EXPECT_THAT(findings(), SizeIs(2));
}

TEST_F(AppModelAutostart, AFindingIsNotLookedForElsewhere)
{
    scan({"Users/alice/Library/LaunchAgents/a.plist", "Users/alice/Library/LaunchAgents/b.plist"});
    review();
    const auto first = model->findings()[0];
    std::filesystem::remove(first.path);
    folder.writeFile("Users/alice/Library/LaunchAgents/a.plist/letters", "nobody has seen them");
    EXPECT_THAT(remove(first), HasSubstr("a.plist"));
    EXPECT_TRUE(exists("Users/alice/Library/LaunchAgents/a.plist/letters"));

    const auto second = model->findings()[1];
    std::filesystem::rename(folder / "Users/alice/Library/LaunchAgents", folder / "kept");
    std::filesystem::create_directory_symlink(
        folder / "kept", folder / "Users/alice/Library/LaunchAgents");
    EXPECT_NE(remove(second), "");
    EXPECT_THAT(findings(), SizeIs(2));
    scan({"notes"});
    review(); // another one, which knows nothing of it
    EXPECT_NE(remove(second), "");
    EXPECT_TRUE(exists("kept/b.plist"));
    EXPECT_EQ(model->undoOffer(), std::nullopt);
}

TEST_F(AppModelAutostart, AMoveThatIsStoppedIsNoFailure)
{
    auto platform = machine.platform();
    platform.trash = std::make_shared<test::StuckTrash>();
    model = std::make_unique<AppModel>(scanner, platform);
    scan({"Library/LaunchAgents/a.plist"});
    review();
    std::optional<std::string> error;
    model->removeFinding(model->findings()[0], [&](const std::string& words) { error = words; });
    ASSERT_TRUE(test::processEventsUntil([&] { return model->fileWork().has_value(); }));
    model->stopFileWork();
    ASSERT_TRUE(test::processEventsUntil([&] { return error.has_value(); }));
    EXPECT_EQ(error, "");
    EXPECT_THAT(findings(), ElementsAre("a.plist"));
    EXPECT_EQ(lastEvent().title, "Security scan complete");
}

} // namespace
} // namespace kestavon
