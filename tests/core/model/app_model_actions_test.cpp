#include "core/model/actions_fixture.h"

namespace kestavon {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using AppModelActions = test::AppModelFixture;

TEST_F(AppModelActions, TrashingCountsWhatWentAndDropsTheWholeSelection)
{
    scan({"a", "b", "c.appex", "d"});
    machine.trash->refusals[folder / "b"] = FileError::Kind::permission;
    EXPECT_EQ(await([&](auto done) { model->trashRecords(pick({0, 1, 2}), done); }), "");

    EXPECT_THAT(machine.trash->trashed, ElementsAre(folder / "a"));
    EXPECT_TRUE(exists("b"));
    EXPECT_TRUE(exists("c.appex"));
    EXPECT_THAT(names(), ElementsAre("d"));
    EXPECT_EQ(lastEvent().title, "Files moved to Trash");
    EXPECT_EQ(lastEvent().detail, "1 files · 5 bytes");
}

TEST_F(AppModelActions, AFolderThatStaysLetsWhatIsInItGoByItself)
{
    scan({"f/", "f/a", "f/b", "f/c.appex"});
    machine.trash->refusals[folder / "f"] = FileError::Kind::permission;
    machine.trash->refusals[folder / "f/b"] = FileError::Kind::permission;
    await([&](auto done) { model->trashRecords(pick({0, 1, 2, 3}), done); });
    EXPECT_THAT(machine.trash->trashed, ElementsAre(folder / "f/a"));
    EXPECT_EQ(lastEvent().detail, "1 files · 5 bytes");
}

TEST_F(AppModelActions, WhatWentWithItsFolderIsMissingAndNotCounted)
{
    machine.hasRealTrash = true;
    for (const bool forGood : {false, true}) {
        scan({"a", "f/", "f/g/", "f/g/a", "f/b"});
        await([&](auto done) {
            forGood ? model->deleteRecordsPermanently(pick({0, 1, 2, 3, 4}), done)
                    : model->trashRecords(pick({0, 1, 2, 3, 4}), done);
        });
        EXPECT_EQ(lastEvent().detail, "2 files · 5 bytes");
        EXPECT_THAT(names(), IsEmpty());
        EXPECT_FALSE(exists("f"));
    }
    EXPECT_TRUE(exists(".Trash/f/g/a")) << "whole";
}

TEST_F(AppModelActions, AFolderThatTookAFilesPlaceStays)
{
    machine.hasRealTrash = true;
    scan({"a", "b"});
    std::filesystem::remove(folder / "a");
    folder.writeFile("a/inner", "nobody saw this");
    await([&](auto done) { model->deleteRecordsPermanently(pick({0}), done); });
    EXPECT_EQ(lastEvent().detail, "0 files · Zero KB");
    std::filesystem::remove(folder / "b");
    folder.writeFile("b/inner", "nor this");
    await([&](auto done) { model->trashRecords(pick({0}), done); });
    EXPECT_EQ(lastEvent().detail, "0 files · Zero KB");
    EXPECT_TRUE(exists("a/inner"));
    EXPECT_TRUE(exists("b/inner"));
}

TEST_F(AppModelActions, DeletionsStartedTogetherBothComplete)
{
    scan({"a", "b", "c"});
    model->deleteRecordsPermanently(pick({0}));
    EXPECT_EQ(await([&](auto done) { model->deleteRecordsPermanently(pick({2}), done); }), "");
    EXPECT_THAT(names(), ElementsAre("b"));
    EXPECT_FALSE(exists("a"));
    EXPECT_FALSE(exists("c"));
    EXPECT_TRUE(exists("b"));
    EXPECT_THAT(model->history(), SizeIs(3));
    EXPECT_EQ(lastEvent().title, "Files permanently deleted");
}

TEST_F(AppModelActions, ARemovalThatEndsAfterANewScanLeavesItsRecordsAlone)
{
    scan({"a", "b"});
    const auto old = pick({0});
    scan({"a", "b"});
    EXPECT_EQ(await([&](auto done) { model->deleteRecordsPermanently(old, done); }), "");
    EXPECT_THAT(names(), ElementsAre("a", "b"));
}

TEST_F(AppModelActions, MovesTheTickedSuggestionsToTheSafeAreaAndBack)
{
    scan({"Library/Caches/x/1", "Library/Caches/x/2", "Library/Caches/x/3", "other"});
    ASSERT_EQ(model->cleanupCandidates()->size(), 3U);
    model->setCleanupSelected(model->cleanupCandidates()->id(1), false);
    std::filesystem::remove(folder / "Library/Caches/x/3"); // gone before it can be moved
    EXPECT_EQ(await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); }), "");

    ASSERT_THAT(model->quarantine(), SizeIs(1));
    const auto item = model->quarantine().front();
    EXPECT_EQ(item.originalPath, folder / "Library/Caches/x/1");
    EXPECT_EQ(item.reason, "Application cache");
    EXPECT_FALSE(exists("Library/Caches/x/1"));
    EXPECT_TRUE(std::filesystem::exists(item.quarantinedPath));
    // Both that were ticked leave the list, the one that could not be moved too.
    ASSERT_EQ(model->cleanupCandidates()->size(), 1U);
    EXPECT_EQ((*model->cleanupCandidates())[0].record.path, folder / "Library/Caches/x/2");
    EXPECT_TRUE(model->selectedCleanupIDs().empty());
    EXPECT_EQ(lastEvent().title, "Items quarantined");
    EXPECT_EQ(lastEvent().detail, "1 items moved safely");

    EXPECT_EQ(await([&](auto done) { model->restoreFromSafeArea(item, done); }), "");
    EXPECT_THAT(model->quarantine(), IsEmpty());
    EXPECT_EQ(folder.readFile("Library/Caches/x/1"), "12345");
    EXPECT_EQ(lastEvent().title, "Item restored");
    EXPECT_EQ(lastEvent().detail, item.originalPath);
}

TEST_F(AppModelActions, NewlyHeldItemsComeFirstInTheirOwnOrder)
{
    scan({"Library/Caches/1", "Library/Caches/2"});
    await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
    scan({"Library/Caches/3", "Library/Caches/4"});
    await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
    std::vector<std::string> held;
    for (const auto& item : model->quarantine())
        held.push_back(item.originalPath.substr(item.originalPath.size() - 1));
    EXPECT_THAT(held, ElementsAre("3", "4", "1", "2"));
}

TEST_F(AppModelActions, RestoringOntoATakenPlaceFailsAndChangesNothing)
{
    scan({"Library/Caches/1"});
    await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
    folder.writeFile("Library/Caches/1", "newcomer");
    const auto events = model->history().size();

    const auto item = model->quarantine().front();
    EXPECT_NE(await([&](auto done) { model->restoreFromSafeArea(item, done); }), "");
    EXPECT_THAT(model->quarantine(), SizeIs(1));
    EXPECT_THAT(model->history(), SizeIs(events));
    EXPECT_EQ(folder.readFile("Library/Caches/1"), "newcomer");
}

TEST_F(AppModelActions, RestoringAllSkipsWhatCannotBeRestored)
{
    scan({"Library/Caches/1", "Library/Caches/2", "Library/Caches/3"});
    await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
    folder.writeFile("Library/Caches/2", "newcomer");
    const auto events = model->history().size();

    EXPECT_EQ(await([&](auto done) { model->restoreAllFromSafeArea(done); }), "");
    ASSERT_THAT(model->quarantine(), SizeIs(1));
    EXPECT_EQ(model->quarantine()[0].originalPath, folder / "Library/Caches/2");
    EXPECT_THAT(model->history(), SizeIs(events + 2));
    EXPECT_EQ(lastEvent().detail, folder / "Library/Caches/3"); // in the list's order
}

TEST_F(AppModelActions, FindsWhatEarlierRunsHeldAndPutsItBack)
{
    scan({"Library/Caches/1", "Library/Caches/2"});
    await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
    model.reset(); // the program ends, and starts again
    const auto unmarked = folder.writeFile(
        "Library/Application Support/Kestavon/Quarantine/" + Uuid::random().text() + "-unmarked",
        "x");
    scan({"Library/Caches/3"});
    EXPECT_THAT(model->quarantine(), IsEmpty());
    EXPECT_THAT(model->earlierQuarantine(), IsEmpty()) << "nobody has asked yet";

    await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
    EXPECT_EQ(await([&](auto done) { model->findEarlierHeldItems(done); }), "");
    ASSERT_THAT(model->earlierQuarantine(), SizeIs(3)) << "what this run has moved is not earlier";
    EXPECT_THAT(model->quarantine(), SizeIs(1));
    if (SystemFilePlaces().marksOf(model->quarantine()[0].quarantinedPath, "user.").empty())
        GTEST_SKIP() << "no extended attributes in " << folder.path();

    folder.writeFile("Library/Caches/2", "came meanwhile");
    EXPECT_EQ(await([&](auto done) { model->restoreAllEarlierHeldItems(done); }), "");
    EXPECT_EQ(folder.readFile("Library/Caches/1"), "12345");
    EXPECT_EQ(folder.readFile("Library/Caches/2"), "came meanwhile");
    EXPECT_EQ(lastEvent().detail, folder / "Library/Caches/1");
    ASSERT_THAT(model->earlierQuarantine(), SizeIs(2));
    EXPECT_EQ(model->earlierQuarantine()[0].originalPath, "") << "its place is not known";

    auto item = model->earlierQuarantine()[0];
    item.originalPath = folder / "Documents/unmarked";
    EXPECT_EQ(await([&](auto done) { model->restoreFromSafeArea(item, done); }), "");
    EXPECT_EQ(folder.readFile("Documents/unmarked"), "x");
    EXPECT_FALSE(std::filesystem::exists(unmarked));

    EXPECT_EQ(await([&](auto done) { model->deleteAllEarlierHeldItems(done); }), "");
    EXPECT_THAT(model->earlierQuarantine(), IsEmpty());
    EXPECT_EQ(lastEvent().title, "Earlier items deleted") << "the Safe Area is not empty";
    EXPECT_EQ(lastEvent().detail, "1 items permanently deleted");
    EXPECT_THAT(model->quarantine(), SizeIs(1)) << "this run's item is none of them";
    EXPECT_TRUE(std::filesystem::exists(model->quarantine()[0].quarantinedPath));
}

TEST_F(AppModelActions, RestoresManyAtOnceWithAnEventForEach)
{
    std::vector<std::string> names;
    for (int i = 0; i < 150; ++i)
        names.push_back("Library/Caches/" + std::to_string(i));
    scan(names);
    await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
    model->clearHistory();
    EXPECT_EQ(await([&](auto done) { model->restoreAllFromSafeArea(done); }), "");
    EXPECT_THAT(model->quarantine(), IsEmpty());
    ASSERT_THAT(model->history(), SizeIs(150));
    EXPECT_EQ(model->history().front().detail, folder / "Library/Caches/149");
    EXPECT_EQ(model->history().back().detail, folder / "Library/Caches/0");
}

TEST_F(AppModelActions, DeletesHeldItemsOneByOneAndAllAtOnce)
{
    scan({"Library/Caches/1", "Library/Caches/2", "Library/Caches/3"});
    await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
    const auto item = model->quarantine()[1];
    EXPECT_EQ(await([&](auto done) { model->deleteFromSafeArea(item, done); }), "");
    EXPECT_FALSE(std::filesystem::exists(item.quarantinedPath));
    EXPECT_THAT(model->quarantine(), SizeIs(2));
    EXPECT_EQ(lastEvent().title, "Permanently deleted");
    EXPECT_EQ(lastEvent().detail, "2");
    EXPECT_THAT(machine.trash->forgotten, ElementsAre(item.originalPath))
        << "what the Trash knows of one that came from there";

    await([&](auto done) { model->emptySafeArea(done); });
    EXPECT_THAT(model->quarantine(), IsEmpty());
    EXPECT_EQ(lastEvent().title, "Safe Area emptied");
    EXPECT_EQ(lastEvent().detail, "2 items permanently deleted");
    await([&](auto done) { model->emptySafeArea(done); });
    EXPECT_EQ(lastEvent().detail, "0 items permanently deleted");
}

TEST_F(AppModelActions, AHeldItemThatCannotBeDeletedStaysListedUntilAllAreDeleted)
{
    scan({"Library/Caches/1", "Library/Caches/2", "other"});
    await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
    const auto item = model->quarantine()[0];
    std::filesystem::remove(item.quarantinedPath); // by hand
    const auto events = model->history().size();
    EXPECT_NE(await([&](auto done) { model->deleteFromSafeArea(item, done); }), "");
    EXPECT_THAT(model->quarantine(), SizeIs(2));
    EXPECT_THAT(model->history(), SizeIs(events));

    scan({"Library/Caches/3"});
    model->emptySafeArea();
    await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); }); // meanwhile
    ASSERT_THAT(model->quarantine(), SizeIs(1));
    EXPECT_EQ(model->quarantine()[0].originalPath, folder / "Library/Caches/3");
    EXPECT_EQ(model->history()[1].title, "Safe Area emptied");
    EXPECT_EQ(model->history()[1].detail, "2 items permanently deleted");
}

TEST_F(AppModelActions, HeldItemsAreBusyAndNotOfferedBackWhileTheyAreWorkedOn)
{
    scan({"Library/Caches/1", "Library/Caches/2"});
    await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
    const auto items = model->quarantine();
    ASSERT_TRUE(model->undoOffer());
    model->restoreFromSafeArea(items[0]);
    EXPECT_TRUE(model->isHeldItemBusy(items[0].id));
    EXPECT_FALSE(model->isHeldItemBusy(items[1].id));
    // Begun while the other one is on its way back: that has to come first.
    bool isEmptied = false;
    model->emptySafeArea([&](const std::string&) { isEmptied = true; });
    EXPECT_FALSE(model->undoOffer()) << "taking back what is being deleted";
    EXPECT_TRUE(model->isHeldItemBusy(items[1].id));
    ASSERT_TRUE(test::processEventsUntil([&] { return isEmptied; }));
    EXPECT_EQ(folder.readFile("Library/Caches/1"), "12345");
    EXPECT_FALSE(exists("Library/Caches/2"));
    for (const auto& item : items)
        EXPECT_FALSE(model->isHeldItemBusy(item.id));
}

TEST_F(AppModelActions, TakesBackWithBusyItems)
{
    scan({"Library/Caches/1"});
    await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
    const auto item = model->quarantine()[0];
    bool isUndone = false;
    model->undoLastMove([&](const UndoReport&) { isUndone = true; });
    EXPECT_TRUE(model->isHeldItemBusy(item.id));
    ASSERT_TRUE(test::processEventsUntil([&] { return isUndone; }));
    EXPECT_FALSE(model->isHeldItemBusy(item.id));
}

TEST_F(AppModelActions, CleansAGroupThatIsNotShownAnyMoreButTellsOfIt)
{
    scan({"logs/a", "logs/b", "logs/c"});
    std::vector<CleanupCandidate> items;
    for (std::size_t i = 0; i < 3; ++i)
        items.push_back({.id = Uuid::random(),
            .record = (*model->records())[i],
            .reason = "Application cache",
            .estimatedBytes = 5});
    const JunkGroup group{
        .id = Uuid::random(), .category = JunkCategory::appCaches, .items = std::move(items)};
    std::filesystem::remove(folder / "logs/b");

    std::pair<std::size_t, std::size_t> moved;
    EXPECT_EQ(await([&](auto done) {
        model->cleanJunkItems(
            group, {group.items[0].id, group.items[1].id}, ActionKind::safeArea,
            [&moved](std::size_t count, std::size_t requested) {
                moved = {count, requested};
            },
            done);
    }),
        "");
    EXPECT_EQ(moved, std::pair(std::size_t{1}, std::size_t{2}));
    EXPECT_EQ(lastEvent().title, "App Caches moved to Safe Area");
    EXPECT_EQ(lastEvent().detail, "1 of 2 items (10 bytes)");

    await([&](auto done) {
        model->cleanJunkItems(group, {group.items[2].id}, ActionKind::permanent, {}, done);
    });
    EXPECT_FALSE(exists("logs/c"));
    EXPECT_EQ(lastEvent().title, "Items permanently deleted");
    EXPECT_EQ(lastEvent().detail, "1 items (5 bytes)");

    folder.writeFile("logs/c", "12345");
    await([&](auto done) {
        model->cleanJunkItems(group, {group.items[2].id}, ActionKind::trash, {}, done);
    });
    EXPECT_EQ(lastEvent().title, "Items moved to Trash");
    EXPECT_EQ(lastEvent().detail, "1 items (5 bytes)");
}

TEST_F(AppModelActions, ClearsWhatACrashLeftWithoutBeingAskedTo)
{
    machine.hasRealTrash = true;
    const auto id = Uuid::random().text();
    const std::string holding = "Library/Application Support/Kestavon/Quarantine/";
    folder.writeFile(holding + ".kestavon-partial-" + id + "/half");
    folder.writeFile(holding + ".kestavon-deleted-" + id + "/left");
    folder.writeFile(".Trash/.kestavon-partial-" + id);
    scan({"a"});
    EXPECT_TRUE(test::processEventsUntil([&] {
        return std::filesystem::is_empty(folder / holding)
            && std::filesystem::is_empty(folder / ".Trash");
    }));
}

TEST_F(AppModelActions, ClearingTheHistoryLeavesNoEvent)
{
    scan({"a"});
    model->clearHistory();
    EXPECT_THAT(model->history(), IsEmpty());
    await([&](auto done) { model->emptySafeArea(done); });
    EXPECT_THAT(model->history(), SizeIs(1));
}

} // namespace
} // namespace kestavon
