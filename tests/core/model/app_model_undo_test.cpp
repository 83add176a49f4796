#include "core/model/actions_fixture.h"

namespace kestavon {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// Over a real Trash, of both kinds of home.
class AppModelUndo : public test::AppModelFixture, public testing::WithParamInterface<HomeKind> {
protected:
    AppModelUndo()
    {
        machine.homeKind = GetParam();
        machine.hasRealTrash = true;
    }

    void trash(std::vector<std::uint32_t> positions)
    {
        EXPECT_EQ(
            await([&](auto done) { model->trashRecords(pick(std::move(positions)), done); }), "");
    }
    UndoReport undo()
    {
        std::optional<UndoReport> result;
        model->undoLastMove([&result](const UndoReport& report) { result = report; });
        EXPECT_TRUE(test::processEventsUntil([&result] { return result.has_value(); }));
        return result.value_or(UndoReport());
    }
    /// Everything that the Trash holds, its records too.
    std::vector<std::string> trashContents() const
    {
        std::vector<std::string> names;
        for (const auto& place : machine.platform().trash->trashPlaces()) {
            if (!place.folder.starts_with(folder.path()) || !std::filesystem::exists(place.folder))
                continue;
            for (const auto& entry : std::filesystem::recursive_directory_iterator(place.folder)) {
                if (!entry.is_directory())
                    names.push_back(entry.path().filename());
            }
        }
        return names;
    }
};

TEST_P(AppModelUndo, PutsFilesBackAndListsThemAtTheirPlaces)
{
    scan({"a", "b", "deep/c", "d"});
    const auto ids = std::pair(model->records()->id(0), model->records()->id(2));
    trash({0, 2});
    EXPECT_THAT(names(), ElementsAre("b", "d"));
    EXPECT_EQ(model->undoOffer(), (UndoOffer{ActionKind::trash, 2}));
    std::filesystem::remove(folder / "deep"); // and its folder comes back too

    EXPECT_EQ(undo(), (UndoReport{.restored = 2}));
    EXPECT_EQ(folder.readFile("a"), "12345");
    EXPECT_EQ(folder.readFile("deep/c"), "12345");
    EXPECT_THAT(trashContents(), IsEmpty()) << "not even a record is left";
    EXPECT_THAT(names(), ElementsAre("a", "b", "c", "d"));
    EXPECT_EQ(std::pair(model->records()->id(0), model->records()->id(2)), ids);
    EXPECT_EQ(model->storageSummary().bytes, 20);
    EXPECT_EQ(lastEvent().title, "Move to Trash undone");
    EXPECT_EQ(lastEvent().detail, "2 files · 10 bytes");
    EXPECT_EQ(model->undoOffer(), std::nullopt);
}

TEST_P(AppModelUndo, AFolderGoesAndComesBackWhole)
{
    scan({"f/", "f/one", "f/two", "g"});
    trash({0, 1});
    EXPECT_EQ(lastEvent().detail, "1 files · Zero KB")
        << "what went with the folder is missing by then";
    EXPECT_FALSE(exists("f"));

    undo();
    EXPECT_EQ(folder.readFile("f/one"), "12345");
    EXPECT_EQ(folder.readFile("f/two"), "12345");
    EXPECT_THAT(names(), ElementsAre("f", "one", "two", "g"));
    EXPECT_EQ(lastEvent().detail, "1 files · Zero KB");
}

TEST_P(AppModelUndo, ReplacesNothingAndSaysWhatStayedInTheTrash)
{
    scan({"a", "b"});
    trash({0, 1});
    folder.writeFile("a", "newcomer");
    const auto report = undo();
    EXPECT_EQ(report.restored, 1);
    EXPECT_EQ(report.failed, 1);
    EXPECT_THAT(report.error, HasSubstr("“a”"));
    EXPECT_EQ(folder.readFile("a"), "newcomer");
    EXPECT_THAT(trashContents(), testing::Contains("a"));
    EXPECT_THAT(names(), ElementsAre("b")) << "the newcomer is not what the scan found";
    EXPECT_EQ(lastEvent().detail, "1 files · 5 bytes");
}

TEST_P(AppModelUndo, AfterANewScanTheFilesComeBackAndTheListStays)
{
    scan({"a", "b"});
    trash({0});
    scan({"b"});
    EXPECT_EQ(undo(), (UndoReport{.restored = 1, .listed = false}));
    EXPECT_TRUE(exists("a"));
    EXPECT_THAT(names(), ElementsAre("b"));
}

TEST_P(AppModelUndo, AnotherRemovalTakesTheOffersPlace)
{
    scan({"a", "b", "c", "d"});
    trash({0});
    trash({0}); // now b
    EXPECT_EQ(undo().restored, 1);
    EXPECT_THAT(names(), ElementsAre("b", "c", "d"));
    EXPECT_FALSE(exists("a"));

    model->undoLastMove();
    test::processEvents();
    EXPECT_FALSE(exists("a")) << "its offer was not replaced";
}

TEST_P(AppModelUndo, ADeletionForGoodLeavesTheOfferAlone)
{
    scan({"a", "b", "c"});
    trash({0});
    await([&](auto done) { model->deleteRecordsPermanently(pick({0}), done); }); // b
    EXPECT_EQ(undo().restored, 1);
    EXPECT_THAT(names(), ElementsAre("a", "c"));
    EXPECT_FALSE(exists("b"));
}

TEST_P(AppModelUndo, DeletingHeldItemsTakesOnlyThemOutOfTheOffer)
{
    scan({"Library/Caches/1", "Library/Caches/2", "Library/Caches/3", "d"});
    await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
    const auto first = model->quarantine().front();
    await([&](auto done) { model->deleteFromSafeArea(first, done); });
    ASSERT_TRUE(model->undoOffer());
    EXPECT_EQ(model->undoOffer()->count, 2);
    EXPECT_EQ(undo(), (UndoReport{.restored = 2, .listed = true}));

    await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
    await([&](auto done) { model->emptySafeArea(done); });
    EXPECT_EQ(model->undoOffer(), std::nullopt);

    await([&](auto done) { model->trashRecords(pick({3}), done); });
    await([&](auto done) { model->emptySafeArea(done); });
    EXPECT_TRUE(model->undoOffer()) << "what is in the Trash can still come back";
}

TEST_P(AppModelUndo, WhatCouldNotBeMovedIsNotOffered)
{
    scan({"a.appex"});
    trash({0});
    EXPECT_EQ(model->undoOffer(), std::nullopt);
}

TEST_P(AppModelUndo, ARemovalOfNothingLeavesTheOfferAlone)
{
    scan({"a", "b.appex", "c.appex"});
    trash({0});
    trash({0});
    await([&](auto done) { model->deleteRecordsPermanently(pick({0}), done); });
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(undo().restored, 1);
    EXPECT_THAT(names(), ElementsAre("a"));
}

TEST_P(AppModelUndo, MergedCopiesComeBack)
{
    scan({"a", "b", "c"});
    model->startDuplicateAnalysis();
    ASSERT_TRUE(test::processEventsUntil([&] { return !model->duplicates()->empty(); }));
    await([&](auto done) { model->mergeDuplicates(true, done); });
    ASSERT_THAT(names(), ElementsAre("a"));
    EXPECT_EQ(model->undoOffer(), (UndoOffer{ActionKind::trash, 2}));

    EXPECT_EQ(undo(), (UndoReport{.restored = 2}));
    EXPECT_EQ(folder.readFile("b"), "12345");
    EXPECT_THAT(names(), ElementsAre("a", "b", "c"));
    EXPECT_EQ(lastEvent().detail, "2 copies · 10 bytes");
}

TEST_P(AppModelUndo, SuggestionsComeBackFromTheSafeAreaTicked)
{
    scan({"Library/Caches/1", "Library/Caches/2", "Library/Caches/3"});
    model->setCleanupSelected(model->cleanupCandidates()->id(1), false);
    await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
    ASSERT_EQ(model->undoOffer(), (UndoOffer{ActionKind::safeArea, 2}));

    EXPECT_EQ(undo(), (UndoReport{.restored = 2}));
    EXPECT_THAT(model->quarantine(), IsEmpty());
    EXPECT_EQ(folder.readFile("Library/Caches/3"), "12345");
    ASSERT_EQ(model->cleanupCandidates()->size(), 3U);
    EXPECT_EQ(model->selectedCleanupIDs().size(), 2U);
    EXPECT_TRUE(model->selectedCleanupIDs().contains(model->cleanupCandidates()->id(0)));
    EXPECT_EQ(lastEvent().title, "Item restored");
    EXPECT_EQ(lastEvent().detail, folder / "Library/Caches/3");
    EXPECT_EQ(model->history()[1].title, "Item restored");
}

TEST_P(AppModelUndo, TakesWhatIsStillInTheSafeArea)
{
    scan({"Library/Caches/1", "Library/Caches/2", "Library/Caches/3"});
    await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
    const auto first = model->quarantine().front();
    await([&](auto done) { model->restoreFromSafeArea(first, done); });
    folder.writeFile("Library/Caches/2", "newcomer");
    const auto report = undo();
    EXPECT_EQ(report.restored, 1);
    EXPECT_EQ(report.failed, 1);
    EXPECT_THAT(model->quarantine(), SizeIs(1));
    EXPECT_EQ(model->cleanupCandidates()->size(), 2U);
}

TEST_P(AppModelUndo, ItemsOfACategoryComeBack)
{
    scan({"logs/a", "logs/b"});
    std::vector<CleanupCandidate> items;
    for (std::size_t i = 0; i < 2; ++i)
        items.push_back({.id = Uuid::random(),
            .record = (*model->records())[i],
            .reason = "Log",
            .estimatedBytes = 5});
    const JunkGroup group{
        .id = Uuid::random(), .category = JunkCategory::systemLogs, .items = std::move(items)};
    for (const auto action : {ActionKind::trash, ActionKind::safeArea}) {
        await([&](auto done) {
            model->cleanJunkItems(group, {group.items[0].id, group.items[1].id}, action, {}, done);
        });
        EXPECT_FALSE(exists("logs/a"));
        EXPECT_EQ(undo(), (UndoReport{.restored = 2, .listed = false})) << "the group is gone";
        EXPECT_TRUE(exists("logs/a"));
        EXPECT_TRUE(exists("logs/b"));
    }
    EXPECT_EQ(model->history()[3].title, "Move to Trash undone");
    EXPECT_EQ(model->history()[3].detail, "2 items (10 bytes)");
}

INSTANTIATE_TEST_SUITE_P(Homes, AppModelUndo, testing::Values(HomeKind::mac, HomeKind::native),
    [](const auto& kind) { return kind.param == HomeKind::mac ? "Mac" : "Native"; });

} // namespace
} // namespace kestavon
