#include "core/model/actions_fixture.h"
#include "support/fake_junk_scanner.h"

#include <limits>
#include <set>

namespace kestavon {
namespace {

using enum JunkCategory;
using test::junk;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::size_t categoryCount = 11;

class AppModelJunk : public test::AppModelFixture {
protected:
    AppModelJunk() { makeModel(); }

    void makeModel()
    {
        model = std::make_unique<AppModel>(scanner, machine.platform(), findDuplicates,
            test::FakeJunkScanner::asScanner(junkScanner));
    }

    const JunkGroup& group(JunkCategory category) const
    {
        return model->junkGroups()[static_cast<std::size_t>(category)];
    }
    std::size_t scanning() const
    {
        return static_cast<std::size_t>(
            std::ranges::count_if(model->junkGroups(), &JunkGroup::isScanning));
    }
    bool waitUntilScanned(JunkCategory category)
    {
        return test::processEventsUntil([&] { return group(category).isScanned; });
    }
    bool waitForEvents(std::size_t count)
    {
        return test::processEventsUntil([&] { return model->history().size() >= count; });
    }
    /// Lets a scan of all find these in the first categories.
    void scanAll(std::vector<std::vector<CleanupCandidate>> found)
    {
        const auto events = model->history().size();
        model->scanAllJunk();
        found.resize(categoryCount);
        for (auto& items : found)
            junkScanner->finishWith(std::move(items));
        ASSERT_TRUE(waitForEvents(events + 1));
    }

    /// An item over a real file of five bytes.
    CleanupCandidate junkFile(const std::string& name)
    {
        return junk(folder.writeFile(name, "12345"), 5);
    }

    UndoReport undo()
    {
        std::optional<UndoReport> report;
        model->undoLastMove([&](const UndoReport& result) { report = result; });
        EXPECT_TRUE(test::processEventsUntil([&] { return report.has_value(); }));
        return report.value_or(UndoReport());
    }

    std::shared_ptr<test::FakeJunkScanner> junkScanner = std::make_shared<test::FakeJunkScanner>();
};

TEST_F(AppModelJunk, AScanOfAllFillsFreshGroupsOneByOne)
{
    const auto before = model->junkGroups();
    model->scanAllJunk();
    ASSERT_THAT(model->junkGroups(), SizeIs(categoryCount));
    std::set<Uuid> ids;
    for (std::size_t i = 0; i < categoryCount; ++i) {
        const auto& shown = model->junkGroups()[i];
        EXPECT_EQ(shown.category, before[i].category);
        EXPECT_TRUE(shown.isScanning);
        EXPECT_FALSE(shown.isScanned);
        ids.insert({shown.id, before[i].id});
    }
    EXPECT_THAT(ids, SizeIs(2 * categoryCount));

    junkScanner->finishWith({junk("/a", 1'500'000), junk("/b", 7)});
    ASSERT_TRUE(waitUntilScanned(appCaches));
    EXPECT_FALSE(group(appCaches).isScanning);
    EXPECT_THAT(group(appCaches).items, SizeIs(2));
    EXPECT_EQ(scanning(), categoryCount - 1) << "the others go on";
    EXPECT_EQ(model->totalJunkBytes(), 1'500'007);
    EXPECT_EQ(model->totalJunkItemCount(), 2U);

    for (std::size_t i = 1; i < categoryCount; ++i)
        junkScanner->finishWith({junk("/c", 50'000)});
    ASSERT_TRUE(waitForEvents(1));
    EXPECT_EQ(scanning(), 0U);
    EXPECT_EQ(lastEvent().title, "Smart Scan complete");
    EXPECT_EQ(lastEvent().detail, "2 MB of junk found");
    std::vector<JunkCategory> all;
    for (const auto& entry : allCases<JunkCategory>())
        all.push_back(entry.value);
    EXPECT_EQ(junkScanner->waitForScans(categoryCount), all);
}

TEST_F(AppModelJunk, AnotherScanOfAllForgetsWhatTheLastOneFound)
{
    scanAll({{junk("/a", 5)}});
    model->scanAllJunk();
    EXPECT_EQ(scanning(), categoryCount);
    EXPECT_EQ(model->totalJunkItemCount(), 0U);
    EXPECT_FALSE(group(appCaches).isScanned);
}

TEST_F(AppModelJunk, AStoppedScanEndsAtOnceAndStillDeliversWhatItHas)
{
    model->scanAllJunk();
    junkScanner->finishWith({junk("/a", 5)});
    ASSERT_TRUE(waitUntilScanned(appCaches));
    junkScanner->foundWhenStopped = {junk("/part", 3)};
    model->stopJunkScan();
    EXPECT_EQ(scanning(), 0U);
    EXPECT_TRUE(group(appCaches).isScanned);
    EXPECT_THAT(group(appCaches).items, SizeIs(1));
    EXPECT_FALSE(group(systemLogs).isScanned);

    ASSERT_TRUE(waitForEvents(1));
    EXPECT_EQ(lastEvent().title, "Smart Scan complete");
    EXPECT_EQ(lastEvent().detail, "35 bytes of junk found");
    EXPECT_TRUE(group(mailAttachments).isScanned);
    EXPECT_FALSE(group(mailAttachments).isScanning);
    model->stopJunkScan(); // nothing to stop
    EXPECT_EQ(model->totalJunkBytes(), 35);
}

TEST_F(AppModelJunk, AScanThatIsBegunAnewDeliversNothingInTheNewGroups)
{
    junkScanner->foundWhenStopped = {junk("/part", 3)};
    model->scanAllJunk();
    junkScanner->waitForScans(1);
    model->scanAllJunk();
    ASSERT_TRUE(waitForEvents(1)); // the first is complete, as far as it went
    EXPECT_EQ(lastEvent().detail, "Zero KB of junk found");
    EXPECT_EQ(scanning(), categoryCount);
    for (std::size_t i = 0; i < categoryCount; ++i)
        junkScanner->finishWith({junk("/whole", 10)});
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_EQ(lastEvent().detail, "110 bytes of junk found");
    EXPECT_EQ(group(trash).items[0].record.path, "/whole");
}

TEST_F(AppModelJunk, ACategorysOwnScanAfterAStopIsNotAnsweredByTheStoppedOne)
{
    junkScanner->foundWhenStopped = {};
    model->scanAllJunk();
    junkScanner->waitForScans(1);
    model->stopJunkScan();
    model->scanJunkCategory(trash);
    ASSERT_TRUE(waitForEvents(1)); // the stopped one is complete
    EXPECT_TRUE(group(trash).isScanning);
    EXPECT_FALSE(group(trash).isScanned);
    junkScanner->finishWith({junk("/c", 9)});
    ASSERT_TRUE(waitUntilScanned(trash));
    EXPECT_THAT(group(trash).items, SizeIs(1));
}

TEST_F(AppModelJunk, AScanOfOneCategoryTouchesNoOther)
{
    scanAll({{junk("/a", 5)}, {junk("/b", 5)}});
    const auto before = model->junkGroups();
    model->scanJunkCategory(systemLogs);
    EXPECT_TRUE(group(systemLogs).isScanning);
    EXPECT_FALSE(group(systemLogs).isScanned);
    EXPECT_THAT(group(systemLogs).items, IsEmpty());
    EXPECT_EQ(group(systemLogs).id, before[1].id);
    EXPECT_EQ(group(appCaches).items, before[0].items);

    // Stopping shows it as ended, and lets it go on.
    model->stopJunkScan();
    EXPECT_EQ(scanning(), 0U);
    junkScanner->finishWith({junk("/c", 9)});
    ASSERT_TRUE(waitUntilScanned(systemLogs));
    EXPECT_EQ(group(systemLogs).items[0].record.path, "/c");
    EXPECT_THAT(model->history(), SizeIs(1)) << "no event for a single one";
    EXPECT_EQ(junkScanner->waitForScans(categoryCount + 1).back(), systemLogs);
}

TEST_F(AppModelJunk, TotalsStopAtTheLargestNumber)
{
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    scanAll({{junk("/a", most)}, {junk("/b", most)}});
    EXPECT_EQ(model->totalJunkBytes(), most);
}

TEST_F(AppModelJunk, AScanOutlivesTheModelWithoutHarm)
{
    model->scanAllJunk();
    model->scanJunkCategory(trash);
    junkScanner->waitForScans(1);
    model.reset(); // stops them all
    test::processEvents();
}

TEST_F(AppModelJunk, CleaningAllMovesEverythingAndSaysWhatWasThere)
{
    auto gone = junk(folder / "gone", 1'000'000);
    scanAll({{junkFile("Library/Caches/a"), gone}, {}, {}, {junkFile(".Trash/b")}});
    EXPECT_EQ(await([&](auto done) { model->cleanAllJunk(done); }), "");
    EXPECT_FALSE(exists("Library/Caches/a"));
    EXPECT_FALSE(exists(".Trash/b"));
    ASSERT_THAT(model->quarantine(), SizeIs(2));
    EXPECT_EQ(model->quarantine()[0].originalPath, folder / "Library/Caches/a");
    EXPECT_EQ(model->quarantine()[0].reason, "Junk");
    EXPECT_EQ(model->totalJunkItemCount(), 0U) << "what could not be moved goes too";
    EXPECT_TRUE(group(appCaches).isScanned);
    EXPECT_EQ(lastEvent().title, "Smart Clean complete");
    EXPECT_EQ(lastEvent().detail, "2 items (1 MB) quarantined");

    EXPECT_EQ(await([&](auto done) { model->cleanAllJunk(done); }), "");
    EXPECT_EQ(lastEvent().detail, "0 items (Zero KB) quarantined");
}

TEST_F(AppModelJunk, CleaningAllMovesWhatCategoriesShareOnce)
{
    const auto inner = junkFile("Library/Caches/pip/http");
    scanAll({{junk(folder / "Library/Caches/pip", 5, true)}, {}, {}, {}, {inner}});
    EXPECT_EQ(model->totalJunkBytes(), 10);
    EXPECT_EQ(await([&](auto done) { model->cleanAllJunk(done); }), "");
    EXPECT_THAT(model->quarantine(), SizeIs(1));
    EXPECT_EQ(lastEvent().detail, "1 items (10 bytes) quarantined");
    EXPECT_EQ(undo(), (UndoReport{.restored = 1}));
    EXPECT_EQ(folder.readFile("Library/Caches/pip/http"), "12345");
    EXPECT_THAT(group(devTools).items, ElementsAre(inner)) << "it lies there again as well";
}

TEST_F(AppModelJunk, AFolderComesBackBeforeWhatWasTakenOutOfItEarlier)
{
    const auto inner = junkFile("Library/Containers/org.gone/Data/vms/disk");
    const auto outer = junk(folder / "Library/Containers/org.gone", 7, true);
    folder.writeFile("Library/Containers/org.gone/settings", "ab");
    for (const bool takenBack : {true, false}) {
        scanAll({{}, {}, {}, {}, {inner}, {outer}});
        await([&](auto done) { model->cleanAllJunk(done); });
        EXPECT_THAT(model->quarantine(), SizeIs(2));
        EXPECT_FALSE(exists("Library/Containers/org.gone"));
        if (takenBack)
            EXPECT_EQ(undo(), (UndoReport{.restored = 2}));
        else
            await([&](auto done) { model->restoreAllFromSafeArea(done); });
        EXPECT_THAT(model->quarantine(), IsEmpty());
        EXPECT_EQ(folder.readFile("Library/Containers/org.gone/settings"), "ab");
        EXPECT_EQ(folder.readFile("Library/Containers/org.gone/Data/vms/disk"), "12345");
    }
}

TEST_F(AppModelJunk, CleaningAllCanBeTakenBackAsFarAsNothingWasScannedAnew)
{
    const auto cache = junkFile("Library/Caches/a");
    const auto log = junkFile("Library/Logs/b");
    scanAll({{cache}, {log}});
    await([&](auto done) { model->cleanAllJunk(done); });
    ASSERT_TRUE(model->undoOffer());
    EXPECT_EQ(undo(), (UndoReport{.restored = 2}));
    EXPECT_THAT(group(appCaches).items, ElementsAre(cache));
    EXPECT_THAT(group(systemLogs).items, ElementsAre(log));

    await([&](auto done) { model->cleanAllJunk(done); });
    model->scanJunkCategory(systemLogs);
    junkScanner->finishWith({junk("/other", 1)});
    ASSERT_TRUE(waitUntilScanned(systemLogs));
    EXPECT_EQ(undo(), (UndoReport{.restored = 2, .listed = false}));
    EXPECT_THAT(group(appCaches).items, ElementsAre(cache));
    EXPECT_EQ(group(systemLogs).items[0].record.path, "/other");
}

TEST_F(AppModelJunk, WhatAScanFindsWhileAllIsCleanedStaysListed)
{
    scanAll({{junkFile("Library/Caches/a")}});
    model->scanJunkCategory(systemLogs);
    junkScanner->waitForScans(categoryCount + 1);
    const auto log = junkFile("Library/Logs/b");
    std::optional<std::string> error;
    model->cleanAllJunk([&](const std::string& text) { error = text; });
    junkScanner->finishWith({log});
    ASSERT_TRUE(test::processEventsUntil([&] { return error && group(systemLogs).isScanned; }));
    EXPECT_THAT(group(systemLogs).items, ElementsAre(log));
    EXPECT_THAT(group(appCaches).items, IsEmpty());
    EXPECT_TRUE(exists("Library/Logs/b"));
}

TEST_F(AppModelJunk, NothingChangesWhenTheSafeAreaCannotBeOpened)
{
    folder.writeFile("Library/Application Support", "in the way");
    const auto cache = junkFile("Library/Caches/a");
    scanAll({{cache}});
    EXPECT_NE(await([&](auto done) { model->cleanAllJunk(done); }), "");
    EXPECT_THAT(group(appCaches).items, ElementsAre(cache));
    EXPECT_THAT(model->history(), SizeIs(1));
    EXPECT_FALSE(model->undoOffer());
}

TEST_F(AppModelJunk, CleaningItemsOfAGroupLeavesTheOthers)
{
    const auto first = junkFile("Library/Caches/a");
    const auto second = junkFile("Library/Caches/b");
    scanAll({{first, second}});
    const auto shown = group(appCaches);
    const std::unordered_set<Uuid> ids{first.id};
    EXPECT_EQ(await([&](auto done) {
        model->cleanJunkItems(shown, ids, ActionKind::permanent, {}, done);
    }),
        "");
    EXPECT_FALSE(exists("Library/Caches/a"));
    EXPECT_THAT(group(appCaches).items, ElementsAre(second));
    EXPECT_EQ(lastEvent().title, "Items permanently deleted");

    // The ids of a group are no longer good after a scan of all; the files still are.
    scanAll({{second}});
    await([&](auto done) {
        model->cleanJunkItems(shown, {second.id}, ActionKind::permanent, {}, done);
    });
    EXPECT_FALSE(exists("Library/Caches/b"));
    EXPECT_THAT(group(appCaches).items, SizeIs(1));
    EXPECT_EQ(lastEvent().detail, "1 items (5 bytes)");
}

TEST_F(AppModelJunk, CleaningsAtTheSameTimeTakeEachTheirOwn)
{
    const auto first = junkFile("Library/Caches/a");
    const auto second = junkFile("Library/Caches/b");
    const auto third = junkFile("Library/Caches/c");
    scanAll({{first, second, third}});
    const auto shown = group(appCaches);
    int done = 0;
    const auto count = [&done](const std::string&) { ++done; };
    model->cleanJunkItems(shown, {first.id}, ActionKind::safeArea, {}, count);
    model->cleanJunkItems(shown, {second.id}, ActionKind::safeArea, {}, count);
    ASSERT_TRUE(test::processEventsUntil([&] { return done == 2; }));
    EXPECT_THAT(group(appCaches).items, ElementsAre(third));

    // And while a move is taken back.
    std::optional<UndoReport> report;
    model->undoLastMove([&](const UndoReport& result) { report = result; });
    model->cleanJunkItems(shown, {third.id}, ActionKind::permanent, {}, count);
    ASSERT_TRUE(test::processEventsUntil([&] { return done == 3 && report; }));
    EXPECT_THAT(group(appCaches).items, ElementsAre(second));
    EXPECT_TRUE(exists("Library/Caches/b"));
    EXPECT_FALSE(exists("Library/Caches/c"));
}

TEST(AppModelSmartClean, FindsWhatLiesInTheHome)
{
    const test::TemporaryFolder folder;
    folder.writeFile("Library/Caches/app/data", "12345");
    folder.writeFile("Library/Containers/org.gone.tool/data", "123");
    test::FakeMachine machine;
    auto platform = machine.platform();
    platform.layout = makeHostLayout({.home = folder.path(), .systemRoot = folder / "no system"});
    AppModel model(std::make_shared<test::FakeScanner>(), platform);
    model.scanAllJunk();
    ASSERT_TRUE(test::processEventsUntil([&] { return !model.history().empty(); }));
    EXPECT_EQ(model.history()[0].detail, "8 bytes of junk found");
    EXPECT_EQ(model.junkGroups()[0].items[0].record.path, folder / "Library/Caches/app");
}

} // namespace
} // namespace kestavon
