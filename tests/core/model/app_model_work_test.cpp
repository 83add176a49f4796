#include "core/model/actions_fixture.h"
#include "support/fake_junk_scanner.h"

#include <QElapsedTimer>

#include <atomic>
#include <chrono>
#include <thread>

namespace kestavon {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::SizeIs;

/// Deletes as the system does, but never comes to an end with one item.
class SlowRemover final : public FileRemover {
public:
    explicit SlowRemover(std::string slow)
        : m_slow(std::move(slow))
    {
    }

    FileResult<Done> remove(const std::string& path, const RemoveOptions& options) override
    {
        if (path.find(m_slow) == std::string::npos)
            return m_system.remove(path, options);
        for (std::int64_t entries = 1; !options.stop.stop_requested(); ++entries) {
            options.progress(entries);
            std::this_thread::sleep_for(1ms);
        }
        return removalError(FileError::Kind::cancelled, path);
    }
    FileResult<Done> removeFileIf(const std::string& path, const FileIdentity& expected,
        const std::function<bool()>& mayGo, const RemoveOptions& options) override
    {
        return m_system.removeFileIf(path, expected, mayGo, options);
    }

private:
    std::string m_slow;
    SystemFileRemover m_system;
};

/// Moves as the system does, but is copying one item for ever, if any.
class SlowMover final : public FileMover {
public:
    FileResult<MoveReport> move(const std::string& source, const std::string& destination,
        const MoveOptions& options) override
    {
        if (!isSlow || source.find(slow) == std::string::npos)
            return m_system.move(source, destination, options);
        for (std::int64_t bytes = 1; !options.stop.stop_requested(); ++bytes) {
            options.progress(bytes, 1'000'000);
            std::this_thread::sleep_for(1ms);
        }
        if (whenStopped)
            whenStopped();
        return moveError(FileError::Kind::cancelled, source, {});
    }
    void clearUnfinishedMoves(const std::string& folder) override
    {
        m_system.clearUnfinishedMoves(folder);
    }

    const std::string slow = "slow";
    std::atomic<bool> isSlow = false;
    std::function<void()> whenStopped;

private:
    SystemFileMover m_system;
};

class AppModelWork : public test::AppModelFixture {
protected:
    AppModelWork() { machine.mover = mover; }

    /// Starts the operation, waits until it is told about and stops it. Gives what was told.
    template <class Operation> FileWork startAndStop(Operation operation)
    {
        std::optional<std::string> error;
        operation([&error](const std::string& words) { error = words; });
        EXPECT_TRUE(test::processEventsUntil([&] {
            const auto& work = model->fileWork();
            return work && (work->copiedBytes > 0 || work->removedEntries > 0);
        }));
        const auto told = model->fileWork().value_or(FileWork());
        model->stopFileWork();
        EXPECT_TRUE(model->fileWork() && model->fileWork()->isStopping);
        EXPECT_TRUE(test::processEventsUntil([&error] { return error.has_value(); }));
        EXPECT_EQ(error, "") << "being stopped is no failure";
        EXPECT_EQ(model->fileWork(), std::nullopt);
        return told;
    }
    /// Expects that the event tells how much of a folder is gone.
    void expectPartTold(const ActivityEvent& event, const std::string& path)
    {
        ASSERT_TRUE(model->partlyDeleted());
        EXPECT_EQ(model->partlyDeleted()->path, path);
        const auto gone = model->partlyDeleted()->entries;
        EXPECT_GT(gone, 0);
        EXPECT_EQ(event.title, "Deletion stopped");
        EXPECT_EQ(event.detail,
            path.substr(path.rfind('/') + 1) + " · " + std::to_string(gone)
                + " of its files and folders permanently deleted");
    }
    /// Holds three items, of which the second is the slow one.
    void holdThree()
    {
        scan({"Library/Caches/1", "Library/Caches/2 slow", "Library/Caches/3"});
        await([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
        ASSERT_THAT(model->quarantine(), SizeIs(3));
    }
    std::vector<std::string> heldNames() const
    {
        std::vector<std::string> held;
        for (const auto& item : model->quarantine())
            held.push_back(item.originalPath.substr(item.originalPath.rfind('/') + 1));
        return held;
    }

    std::shared_ptr<SlowMover> mover = std::make_shared<SlowMover>();
};

TEST_F(AppModelWork, ADeletionThatIsStoppedKeepsListedWhatIsLeft)
{
    machine.remover = std::make_shared<SlowRemover>("slow");
    scan({"a", "slow/", "slow/x", "z"});
    const auto told = startAndStop([&](auto done) {
        model->deleteRecordsPermanently(pick({0, 1, 3}), done);
    });
    EXPECT_EQ(told.deed, FileWork::Deed::remove);
    EXPECT_EQ(told.path, folder / "slow");
    EXPECT_EQ(std::pair(told.item, told.items), (std::pair<std::int64_t, std::int64_t>(2, 3)));
    EXPECT_THAT(names(), ElementsAre("slow", "x", "z"));
    EXPECT_TRUE(exists("z"));
    EXPECT_FALSE(exists("a"));
    EXPECT_EQ(lastEvent().title, "Files permanently deleted");
    EXPECT_EQ(lastEvent().detail, "1 files · 5 bytes");
    expectPartTold(model->history().at(1), folder / "slow");
}

TEST_F(AppModelWork, WhatWentWithTheFolderThatWasStoppedIsNotListedAnyMore)
{
    machine.remover = std::make_shared<SlowRemover>("slow");
    scan({"slow/", "slow/gone", "slow/there", "z"});
    std::filesystem::remove(folder / "slow/gone");
    startAndStop([&](auto done) { model->deleteRecordsPermanently(pick({0, 1, 2, 3}), done); });
    EXPECT_THAT(names(), ElementsAre("slow", "there", "z"));
}

TEST_F(AppModelWork, IsToldAFewTimesASecondAndOnlyWhenItLasts)
{
    machine.remover = std::make_shared<SlowRemover>("slow");
    scan({"a", "slow/"});
    int announcements = 0;
    QObject::connect(model.get(), &AppModel::fieldChanged, model.get(), [&](AppModel::Field field) {
        announcements += field == AppModel::Field::fileWork ? 1 : 0;
    });
    await([&](auto done) { model->deleteRecordsPermanently(pick({0}), done); });
    EXPECT_EQ(announcements, 0);

    QElapsedTimer time;
    model->deleteRecordsPermanently(pick({0}));
    ASSERT_TRUE(test::processEventsUntil([&] { return announcements > 0; }));
    announcements = 0;
    time.start();
    ASSERT_TRUE(test::processEventsUntil([&] { return time.elapsed() > 600; }));
    EXPECT_GE(announcements, 2);
    EXPECT_LE(announcements, 12);
    model->stopFileWork();
    EXPECT_TRUE(test::processEventsUntil([&] { return !model->fileWork(); }));
}

TEST_F(AppModelWork, AMoveToTheTrashThatIsStoppedLeavesTheRestAtItsPlace)
{
    std::atomic<bool> mayGoOn = false;
    machine.trash->whenTrashed = [&](const std::string& path) {
        while (path.ends_with("slow") && !mayGoOn)
            std::this_thread::sleep_for(1ms);
    };
    scan({"a", "slow", "z"});
    bool ended = false;
    model->trashRecords(pick({0, 1, 2}), [&](const std::string&) { ended = true; });
    ASSERT_TRUE(test::processEventsUntil([&] { return model->fileWork().has_value(); }));
    EXPECT_EQ(model->fileWork()->deed, FileWork::Deed::trash);
    EXPECT_THAT(model->fileWork()->path, EndsWith("slow"));
    model->stopFileWork();
    mayGoOn = true;
    ASSERT_TRUE(test::processEventsUntil([&] { return ended; }));
    EXPECT_THAT(machine.trash->trashed, ElementsAre(folder / "a", folder / "slow"));
    EXPECT_THAT(names(), ElementsAre("z"));
    EXPECT_EQ(lastEvent().detail, "2 files · 10 bytes");
    EXPECT_EQ(model->undoOffer(), (UndoOffer{ActionKind::trash, 2}));
}

TEST_F(AppModelWork, WhatWasNotHeldStaysSuggestedAndTicked)
{
    mover->isSlow = true;
    scan({"Library/Caches/1", "Library/Caches/2 slow", "Library/Caches/3"});
    const auto told = startAndStop([&](auto done) { model->moveSelectedCleanupToSafeArea(done); });
    EXPECT_EQ(told.deed, FileWork::Deed::hold);
    EXPECT_EQ(told.bytesToCopy, 1'000'000);
    EXPECT_THAT(heldNames(), ElementsAre("1"));
    EXPECT_EQ(model->cleanupCandidates()->size(), 2U);
    EXPECT_EQ(model->selectedCleanupIDs().size(), 2U);
    EXPECT_EQ(lastEvent().detail, "1 items moved safely");
    EXPECT_EQ(model->undoOffer(), (UndoOffer{ActionKind::safeArea, 1}));
}

TEST_F(AppModelWork, WhatWasNotCleanedStaysInItsCategory)
{
    const auto junkScanner = std::make_shared<test::FakeJunkScanner>();
    model = std::make_unique<AppModel>(scanner, machine.platform(), findDuplicates,
        [junkScanner](auto category, const auto& stop) { return (*junkScanner)(category, stop); });
    const auto junkFile
        = [this](const char* name) { return test::junk(folder.writeFile(name, "12345"), 5); };
    model->scanAllJunk();
    junkScanner->finishWith({junkFile("1"), junkFile("2"), junkFile("slow"), junkFile("4")});
    junkScanner->finishWith({junkFile("5")});
    for (int i = 2; i < 11; ++i)
        junkScanner->finishWith({});
    ASSERT_TRUE(test::processEventsUntil([&] { return !model->history().empty(); }));
    const auto& groups = model->junkGroups();

    mover->isSlow = true;
    startAndStop([&](auto done) { model->cleanAllJunk(done); });
    EXPECT_THAT(groups[0].items, SizeIs(2));
    EXPECT_THAT(groups[1].items, SizeIs(1));
    EXPECT_EQ(lastEvent().detail, "2 items (10 bytes) quarantined");

    const std::unordered_set<Uuid> ids{groups[0].items[0].id, groups[0].items[1].id};
    std::pair<std::size_t, std::size_t> moved(1, 1);
    startAndStop([&](auto done) {
        model->cleanJunkItems(
            groups[0], ids, ActionKind::safeArea,
            [&](std::size_t count, std::size_t tried) {
                moved = {count, tried};
            },
            done);
    });
    EXPECT_EQ(moved, (std::pair<std::size_t, std::size_t>(0, 0))) << "none of them failed";
    EXPECT_THAT(groups[0].items, SizeIs(2));
    EXPECT_EQ(lastEvent().detail, "0 of 0 items (Zero KB)");
}

TEST_F(AppModelWork, WhatWasNotRestoredStaysHeld)
{
    holdThree();
    mover->isSlow = true;
    const auto slow = model->quarantine()[1];
    const auto events = model->history().size();
    EXPECT_EQ(startAndStop([&](auto done) { model->restoreFromSafeArea(slow, done); }).path,
        slow.originalPath);
    EXPECT_THAT(model->quarantine(), SizeIs(3));
    EXPECT_THAT(model->history(), SizeIs(events));
    EXPECT_FALSE(model->isHeldItemBusy(slow.id));

    startAndStop([&](auto done) { model->restoreAllFromSafeArea(done); });
    EXPECT_THAT(heldNames(), ElementsAre("2 slow", "3"));
    EXPECT_THAT(model->history(), SizeIs(events + 1));
    EXPECT_FALSE(model->isHeldItemBusy(slow.id));
}

TEST_F(AppModelWork, TakingBackThatIsStoppedTellsWhatIsLeft)
{
    holdThree();
    mover->isSlow = true;
    UndoReport report;
    startAndStop([&](auto done) {
        model->undoLastMove([&report, done](const UndoReport& undone) {
            report = undone;
            done({});
        });
    });
    EXPECT_EQ(report, (UndoReport{.restored = 1, .left = 2}));
    EXPECT_EQ(model->cleanupCandidates()->size(), 1U) << "only what came back is suggested again";
}

TEST_F(AppModelWork, QuittingWaitsUntilTheWorkHasEndedCleanly)
{
    scan({"Library/Caches/slow"});
    std::atomic<bool> isCleared = false;
    mover->whenStopped = [&isCleared] {
        std::this_thread::sleep_for(50ms);
        isCleared = true;
    };
    mover->isSlow = true;
    model->moveSelectedCleanupToSafeArea();
    ASSERT_TRUE(test::processEventsUntil([&] { return model->fileWork().has_value(); }));
    model.reset();
    EXPECT_TRUE(isCleared) << "the copy is cleared away";
}

TEST_F(AppModelWork, WhatWasNotDeletedStaysHeld)
{
    machine.remover = std::make_shared<SlowRemover>("slow");
    holdThree();
    startAndStop([&](auto done) { model->emptySafeArea(done); });
    EXPECT_THAT(heldNames(), ElementsAre("2 slow", "3"));
    EXPECT_EQ(lastEvent().title, "Items permanently deleted") << "it is not empty";
    EXPECT_EQ(lastEvent().detail, "1 items permanently deleted");

    const auto events = model->history().size();
    const auto slow = model->quarantine()[0];
    startAndStop([&](auto done) { model->deleteFromSafeArea(slow, done); });
    EXPECT_THAT(model->quarantine(), SizeIs(2));
    EXPECT_THAT(model->history(), SizeIs(events + 1));
    expectPartTold(lastEvent(), slow.originalPath);
}

} // namespace
} // namespace kestavon
