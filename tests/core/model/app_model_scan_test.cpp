#include "core/model/app_model.h"
#include "core/model/main_queue.h"
#include "support/event_loop.h"
#include "support/fake_platform.h"
#include "support/fake_scanner.h"

#include <thread>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::FakeMachine;
using test::FakeScanner;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Field = AppModel::Field;

FileRecord file(const std::string& path, std::int64_t size, bool hidden = false)
{
    return {.id = Uuid::random(), .path = path, .size = size, .isHidden = hidden};
}

class AppModelScan : public testing::Test {
protected:
    void finishScan(const std::vector<FileRecord>& records)
    {
        model->startStorageScan();
        scanner->finishWith(model->selectedRoot(), records);
        waitUntilIdle();
    }

    void waitUntilIdle()
    {
        ASSERT_TRUE(test::processEventsUntil([this] { return !model->scanPhase().isScanning(); }));
    }

    FakeMachine machine;
    std::shared_ptr<FakeScanner> scanner = std::make_shared<FakeScanner>();
    std::unique_ptr<AppModel> model = std::make_unique<AppModel>(scanner, machine.platform());
};

TEST_F(AppModelScan, StartsWithTheHomeItsVolumeAndEmptyLists)
{
    EXPECT_EQ(model->selectedRoot(), "/home/alice");
    EXPECT_TRUE(test::processEventsUntil([this] { return model->diskTotal() == 512'110'190'592; }));
    EXPECT_EQ(model->diskFree(), 158'617'000'000);
    EXPECT_EQ(model->scanPhase(), ScanPhase::idle());
    EXPECT_EQ(model->section(), AppSection::dashboard);
    EXPECT_TRUE(model->records()->empty());
    EXPECT_THAT(model->history(), IsEmpty());
    ASSERT_THAT(model->junkGroups(), SizeIs(allCases<JunkCategory>().size()));
    for (std::size_t i = 0; i < model->junkGroups().size(); ++i)
        EXPECT_EQ(model->junkGroups()[i].category, allCases<JunkCategory>()[i].value);
}

TEST_F(AppModelScan, AFinishedScanPublishesRecordsSuggestionsPhaseAndEvent)
{
    finishScan({file("/home/alice/Library/Caches/a/b", 70), file("/home/alice/.hidden", 5, true)});

    EXPECT_EQ(model->scanPhase(), ScanPhase::finished());
    EXPECT_EQ(model->liveFileCount(), 2);
    EXPECT_EQ(model->storageSummary(), (StorageSummary{2, 75, 5}));
    ASSERT_EQ(model->cleanupCandidates()->size(), 1U);
    EXPECT_TRUE(model->selectedCleanupIDs().contains(model->cleanupCandidates()->id(0)));
    EXPECT_EQ(model->selectedCleanupIDs().size(), 1U);
    ASSERT_THAT(model->history(), SizeIs(1));
    EXPECT_EQ(model->history()[0].title, "Storage scan complete");
    EXPECT_EQ(model->history()[0].detail, "2 items scanned");
    EXPECT_EQ(model->history()[0].date, machine.clock->now());
}

TEST_F(AppModelScan, ObserversSeeThePhaseOnlyAfterTheListsItSpeaksOf)
{
    std::vector<Field> changes;
    model->startStorageScan();
    scanner->waitForScans(1);
    QObject::connect(model.get(), &AppModel::fieldChanged, model.get(),
        [&](Field field) { changes.push_back(field); });
    scanner->finishWith("/home/alice", {file("/home/alice/a", 1)});
    waitUntilIdle();

    EXPECT_THAT(changes,
        ElementsAre(Field::liveFileCount, Field::records, Field::cleanupCandidates,
            Field::selectedCleanupIDs, Field::scanNotice, Field::scanPhase, Field::diskTotal,
            Field::diskFree, Field::history));
}

TEST_F(AppModelScan, AFieldStillHasItsOldValueWhileItAnnouncesTheChange)
{
    AppSection seenBefore = AppSection::history;
    AppSection seenAfter = AppSection::history;
    QObject::connect(model.get(), &AppModel::fieldWillChange, model.get(),
        [&](Field) { seenBefore = model->section(); });
    QObject::connect(model.get(), &AppModel::fieldChanged, model.get(),
        [&](Field) { seenAfter = model->section(); });
    model->setSection(AppSection::storage);
    EXPECT_EQ(seenBefore, AppSection::dashboard);
    EXPECT_EQ(seenAfter, AppSection::storage);
}

TEST_F(AppModelScan, StartingClearsTheOldResultsAtOnceButNotTheTicks)
{
    finishScan({file("/home/alice/Library/Caches/a", 70)});
    const auto ticked = model->cleanupCandidates()->id(0);

    model->startStorageScan();
    EXPECT_EQ(model->scanPhase(), ScanPhase::scanning("Starting scan…"));
    EXPECT_TRUE(model->records()->empty());
    EXPECT_TRUE(model->cleanupCandidates()->empty());
    EXPECT_EQ(model->liveFileCount(), 0);
    EXPECT_TRUE(model->selectedCleanupIDs().contains(ticked));
    EXPECT_THAT(model->history(), SizeIs(1));
}

TEST_F(AppModelScan, StoppingIsImmediateAndLeavesNoTrace)
{
    model->startStorageScan();
    scanner->waitForScans(1);
    scanner->reportLiveCount(1000);
    test::processEvents();
    EXPECT_EQ(model->liveFileCount(), 1000);

    scanner->reportLiveCount(2000);
    model->stopStorageScan();
    EXPECT_EQ(model->scanPhase(), ScanPhase::idle());
    test::processEvents();
    EXPECT_EQ(model->liveFileCount(), 1000); // what was on its way came too late
    EXPECT_THAT(model->history(), IsEmpty());
    EXPECT_TRUE(model->records()->empty());
}

TEST_F(AppModelScan, AnOvertakenScanChangesNothing)
{
    scanner->ignoresStop = true;
    model->startStorageScan();
    scanner->waitForScans(1);
    model->startStorageScan();
    scanner->finishWith("/home/alice", {file("/home/alice/old", 1)});
    scanner->waitForScans(2); // the first has returned
    test::processEvents();
    EXPECT_EQ(model->scanPhase(), ScanPhase::scanning("Starting scan…"));
    EXPECT_TRUE(model->records()->empty());

    scanner->finishWith("/home/alice", {file("/home/alice/new", 1), file("/home/alice/newer", 1)});
    waitUntilIdle();
    EXPECT_EQ(model->storageSummary().count, 2U);
    EXPECT_THAT(model->history(), SizeIs(1));
}

TEST_F(AppModelScan, AScanThatHitsTheMemoryLimitIsPartialAndUsable)
{
    model->startStorageScan();
    const std::vector<FileRecord> found{file("/home/alice/a", 3)};
    scanner->finishWith(
        {.records = RecordList::fromRecords("/home/alice", found), .hitMemoryLimit = true});
    waitUntilIdle();
    EXPECT_EQ(model->scanPhase(), ScanPhase::partial("Stopped at 1 GB; results are partial"));
    EXPECT_EQ(model->storageSummary().bytes, 3);
    EXPECT_EQ(model->history()[0].title, "Storage scan stopped");
    EXPECT_EQ(model->history()[0].detail, "1 items scanned");
}

TEST_F(AppModelScan, AFailureIsShownInItsOwnWords)
{
    model->startStorageScan();
    scanner->failWith("The volume was taken away.");
    waitUntilIdle();
    EXPECT_EQ(model->scanPhase(), ScanPhase::failed("The volume was taken away."));
    EXPECT_THAT(model->history(), IsEmpty());
}

TEST_F(AppModelScan, TellsWhatCouldNotBeRead)
{
    const auto empty = std::make_shared<const RecordList>();
    model->startStorageScan();
    scanner->finishWith({.records = empty, .rootProblem = RootProblem::missing});
    waitUntilIdle();
    EXPECT_EQ(model->scanPhase(), ScanPhase::finished());
    EXPECT_EQ(model->history()[0].detail, "0 items scanned");
    EXPECT_THAT(model->scanNotice(), testing::HasSubstr("/home/alice"));
    EXPECT_FALSE(model->scanRootWasOpened());

    model->startStorageScan();
    EXPECT_EQ(model->scanNotice(), "");
    scanner->finishWith({.records = empty, .unreadableFolders = 3});
    waitUntilIdle();
    EXPECT_THAT(model->scanNotice(), testing::StartsWith("3 folders could not be read"));
    EXPECT_TRUE(model->scanRootWasOpened());
}

TEST_F(AppModelScan, ATaskThatOutlivesTheModelChangesNothing)
{
    scanner->ignoresStop = true;
    model->startStorageScan();
    scanner->waitForScans(1);
    model.reset(); // must not wait for the scan
    scanner->reportLiveCount(1000);
    scanner->finishWith("/home/alice", {file("/home/alice/a", 1)});
    test::processEvents();
}

TEST_F(AppModelScan, ChoosingAFolderUpdatesTheTotalsAndStartsNothing)
{
    struct Picker final : FolderPicker {
        void pickFolder(const std::string& folder, Done done) override
        {
            startedAt = folder;
            done(answer);
        }
        std::string startedAt;
        std::optional<std::string> answer;
    } picker;

    model->chooseScanFolder(picker);
    EXPECT_EQ(picker.startedAt, "/home/alice");
    EXPECT_EQ(model->selectedRoot(), "/home/alice");

    machine.volumes->capacities["/mnt/disk"] = VolumeCapacity{1000, 400};
    picker.answer = "/mnt/disk/";
    model->chooseScanFolder(picker);
    EXPECT_EQ(model->selectedRoot(), "/mnt/disk");
    EXPECT_TRUE(test::processEventsUntil([this] { return model->diskTotal() == 1000; }));
    EXPECT_EQ(model->diskFree(), 400);
    EXPECT_EQ(model->scanPhase(), ScanPhase::idle());
}

TEST_F(AppModelScan, AFailedCapacityQueryKeepsTheTotalsAndAMissingValueZeroesThem)
{
    // An answer comes at once, but for a machine that is busy.
    ASSERT_TRUE(test::processEventsUntil([this] { return model->diskTotal() > 0; }));
    machine.volumes->fallback = std::nullopt;
    const int asked = machine.volumes->asked;
    model->refreshDiskSpace();
    ASSERT_TRUE(test::processEventsUntil([&] { return machine.volumes->asked > asked; }));
    EXPECT_EQ(model->diskTotal(), 512'110'190'592);

    machine.volumes->fallback = VolumeCapacity{1000, std::nullopt};
    model->refreshDiskSpace();
    EXPECT_TRUE(test::processEventsUntil([this] { return model->diskTotal() == 0; }));
    EXPECT_EQ(model->diskFree(), 0);
}

TEST_F(AppModelScan, ProbesForAccessInOrderUntilAFolderListsItself)
{
    EXPECT_FALSE(model->hasFullDiskAccess());
    EXPECT_THAT(machine.files->asked,
        ElementsAre("/home/alice/Library/Mail", "/home/alice/Library/Messages"));

    machine.files->asked.clear();
    machine.files->listable = {"/home/alice/Library/Mail"};
    model->refreshFullDiskAccess();
    EXPECT_TRUE(model->hasFullDiskAccess());
    EXPECT_THAT(machine.files->asked, ElementsAre("/home/alice/Library/Mail"));
}

TEST_F(AppModelScan, AVolumeThatDoesNotAnswerHoldsNobodyUp)
{
    std::unique_lock hung(machine.volumes->hung);
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 100; ++i)
        model->refreshDiskSpace();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5))
        << "each waits for the one before";

    machine.volumes->fallback = VolumeCapacity{1000, 400};
    hung.unlock();
    ASSERT_TRUE(test::processEventsUntil([this] { return model->diskTotal() == 1000; }));
    EXPECT_EQ(model->diskFree(), 400);
}

TEST_F(AppModelScan, AVolumeThatNeverAnswersIsNotInTheWayOfAnother)
{
    machine.volumes->fallback = VolumeCapacity{1000, 400};
    std::unique_lock never(machine.volumes->hung);
    machine.volumes->hanging = "/mnt/share";
    model->setSelectedRoot("/mnt/share");
    model->setSelectedRoot("/home/alice");
    EXPECT_TRUE(test::processEventsUntil([this] { return model->diskTotal() == 1000; }));
}

TEST_F(AppModelScan, ALateAnswerForAnotherFolderChangesNothing)
{
    std::vector<std::int64_t> totals;
    QObject::connect(model.get(), &AppModel::fieldChanged, model.get(), [&](Field field) {
        if (field == Field::diskTotal)
            totals.push_back(model->diskTotal());
    });
    std::unique_lock hung(machine.volumes->hung);
    machine.volumes->capacities["/mnt/share"] = VolumeCapacity{1, 1};
    machine.volumes->fallback = VolumeCapacity{1000, 400};
    model->setSelectedRoot("/mnt/share");
    model->setSelectedRoot("/home/alice");
    hung.unlock();
    ASSERT_TRUE(test::processEventsUntil([&] { return !totals.empty(); }));
    EXPECT_THAT(totals, ElementsAre(1000));
}

TEST_F(AppModelScan, ALargeListLeavesBeforeTheNextScanBegins)
{
    finishScan(std::vector<FileRecord>(100'000, file("/home/alice/file", 1)));
    auto shown = model->records(); // by a view that has not noticed yet
    model->startStorageScan();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(scanner->scansBegun(), 1U);
    shown.reset();
    EXPECT_EQ(scanner->waitForScans(2).size(), 2U);
}

} // namespace
} // namespace kestavon
