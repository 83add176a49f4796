#include "core/model/app_model.h"
#include "support/event_loop.h"
#include "support/fake_duplicate_finder.h"
#include "support/fake_platform.h"
#include "support/fake_scanner.h"
#include "support/moments.h"
#include "support/temporary_folder.h"

#include <filesystem>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const auto analysing = ScanPhase::scanning("Computing SHA-256 hashes…");

/// A model over a finished scan.
class AppModelDuplicates : public testing::Test {
protected:
    AppModelDuplicates() { machine.home = folder.path(); }

    void scan(const std::vector<FileRecord>& records)
    {
        model->startStorageScan();
        scanner->finishWith(folder.path(), records);
        ASSERT_TRUE(test::processEventsUntil([&] { return !model->scanPhase().isScanning(); }));
    }

    bool waitForPhase(const ScanPhase& phase)
    {
        return test::processEventsUntil([&] { return model->duplicatePhase() == phase; });
    }

    std::vector<std::string> eventTitles() const
    {
        std::vector<std::string> titles;
        std::ranges::transform(model->history(), std::back_inserter(titles), &ActivityEvent::title);
        return titles;
    }

    test::TemporaryFolder folder;
    test::FakeMachine machine;
    std::shared_ptr<test::FakeScanner> scanner = std::make_shared<test::FakeScanner>();
    std::unique_ptr<AppModel> model;
};

/// The analysis as the model runs it, its searches in the test's hands.
class DuplicateAnalysis : public AppModelDuplicates {
protected:
    DuplicateAnalysis()
    {
        model = std::make_unique<AppModel>(
            scanner, machine.platform(), test::FakeDuplicateFinder::asFinder(finder));
        scan({{.path = folder / "a", .size = 5}, {.path = folder / "b", .size = 5},
            {.path = folder / "c", .size = 7}, {.path = folder / "d", .size = 7}});
    }

    std::shared_ptr<test::FakeDuplicateFinder> finder
        = std::make_shared<test::FakeDuplicateFinder>();
};

TEST_F(DuplicateAnalysis, PublishesItsGroupsAndRecordsThem)
{
    model->startDuplicateAnalysis();
    EXPECT_EQ(model->duplicatePhase(), analysing);
    finder->finishWith({{2, 3}, {0, 1}});
    ASSERT_TRUE(waitForPhase(ScanPhase::finished()));
    ASSERT_EQ(model->duplicates()->size(), 2U);
    EXPECT_EQ((*model->duplicates())[0].files.front().path, folder / "c");
    EXPECT_EQ(model->history().front().title, "Duplicate analysis complete");
    EXPECT_EQ(model->history().front().detail, "2 duplicate groups found");

    model->startDuplicateAnalysis();
    EXPECT_TRUE(model->duplicates()->empty()); // at once
    finder->finishWith({});
    ASSERT_TRUE(waitForPhase(ScanPhase::finished()));
    EXPECT_EQ(model->history().front().detail, "0 duplicate groups found");
}

TEST_F(DuplicateAnalysis, LeavesOutWhatLiesInTheTrashAndTheSafeArea)
{
    machine.trash->places = {{"/home/alice/.Trash", "/home/alice/.Trash"},
        {"/mnt/disk/.Trash-1000", "/mnt/disk/.Trash-1000/files"}};
    model->startDuplicateAnalysis();
    const auto options = finder->waitForSearches(1).front();
    EXPECT_THAT(options.leaveOut,
        testing::UnorderedElementsAre("/home/alice/.Trash", "/mnt/disk/.Trash-1000",
            folder / "Library/Application Support/Kestavon/Quarantine"));
}

TEST_F(DuplicateAnalysis, AStoppedOneIsIdleAtOnceAndSaysNothingMore)
{
    finder->ignoresStop = true;
    model->startDuplicateAnalysis();
    finder->waitForSearches(1);
    model->stopDuplicateAnalysis();
    EXPECT_EQ(model->duplicatePhase(), ScanPhase::idle());
    finder->finishWith({{0, 1}});
    test::processEvents();
    // The next one runs after it.
    model->startDuplicateAnalysis();
    finder->waitForSearches(2);
    test::processEvents();
    EXPECT_EQ(model->duplicatePhase(), analysing);
    EXPECT_TRUE(model->duplicates()->empty());
    EXPECT_THAT(eventTitles(), ElementsAre("Storage scan complete"));
    finder->finishWith({});
    EXPECT_TRUE(waitForPhase(ScanPhase::finished()));
}

TEST_F(DuplicateAnalysis, ANewerOneReplacesTheOneThatRuns)
{
    model->startDuplicateAnalysis();
    finder->waitForSearches(1);
    model->startDuplicateAnalysis();
    finder->waitForSearches(2); // the first one heard its token
    test::processEvents();
    EXPECT_EQ(model->duplicatePhase(), analysing);
    finder->finishWith({{0, 1}});
    ASSERT_TRUE(waitForPhase(ScanPhase::finished()));
    EXPECT_EQ(model->duplicates()->size(), 1U);
    EXPECT_THAT(eventTitles(), ElementsAre("Duplicate analysis complete", "Storage scan complete"));
}

TEST_F(DuplicateAnalysis, ANewScanCancelsItAndForgetsWhatItFound)
{
    finder->finishWith({{0, 1}});
    model->startDuplicateAnalysis();
    ASSERT_TRUE(waitForPhase(ScanPhase::finished()));
    model->startStorageScan();
    EXPECT_TRUE(model->duplicates()->empty());
    EXPECT_EQ(model->duplicatePhase(), ScanPhase::idle());

    model->startDuplicateAnalysis();
    finder->waitForSearches(2);
    model->startStorageScan();
    EXPECT_EQ(model->duplicatePhase(), ScanPhase::idle());
    model->startDuplicateAnalysis();
    finder->waitForSearches(3); // the second one was cancelled
    finder->finishWith({});
    EXPECT_TRUE(waitForPhase(ScanPhase::finished()));
}

TEST_F(DuplicateAnalysis, ProgressCountsWhileItRuns)
{
    model->startDuplicateAnalysis();
    const auto first = finder->waitForSearches(1).front();
    first.progress({.bytesDone = 3, .bytesToDo = 10});
    ASSERT_TRUE(
        test::processEventsUntil([&] { return model->duplicateProgress().bytesDone == 3; }));
    model->startDuplicateAnalysis();
    EXPECT_EQ(model->duplicateProgress(), DuplicateProgress());
    first.progress({.bytesDone = 9, .bytesToDo = 10});
    test::processEvents();
    EXPECT_EQ(model->duplicateProgress(), DuplicateProgress());
}

TEST_F(DuplicateAnalysis, AFailureIsShownInWords)
{
    finder->failWith("There is no memory left.");
    model->startDuplicateAnalysis();
    EXPECT_TRUE(waitForPhase(ScanPhase::failed("There is no memory left.")));
}

TEST_F(DuplicateAnalysis, EndsWithTheModel)
{
    model->startDuplicateAnalysis();
    finder->waitForSearches(1);
    model.reset(); // stops the search: it would wait for ever
    test::processEvents();
}

/// Merging real files that a real analysis found.
class DuplicateMerging : public AppModelDuplicates {
protected:
    DuplicateMerging() { model = std::make_unique<AppModel>(scanner, machine.platform()); }

    static Timestamp day(int number) { return Timestamp(std::chrono::hours(24 * number)); }

    /// Writes a file and remembers it for the scan.
    void add(const std::string& name, const std::string& content,
        std::optional<Timestamp> modifiedAt = {})
    {
        records.push_back({.path = folder.writeFile(name, content),
            .size = static_cast<std::int64_t>(content.size()),
            .modifiedAt = modifiedAt});
    }

    void analyse()
    {
        scan(records);
        model->startDuplicateAnalysis();
        ASSERT_TRUE(waitForPhase(ScanPhase::finished()));
    }

    void merge(bool toTrash)
    {
        std::optional<std::string> error;
        model->mergeDuplicates(toTrash, [&error](const std::string& text) { error = text; });
        ASSERT_TRUE(test::processEventsUntil([&error] { return error.has_value(); }));
        EXPECT_EQ(*error, "");
    }

    bool exists(const std::string& name) const
    {
        return fs::exists(fs::symlink_status(folder / name));
    }

    std::vector<std::string> listed() const
    {
        std::vector<std::string> names;
        for (std::size_t i = 0; i < model->records()->size(); ++i)
            names.emplace_back(model->records()->name(i));
        return names;
    }

    std::vector<FileRecord> records;
};

TEST_F(DuplicateMerging, TheNewestStaysAndNoDateIsTheOldest)
{
    add("undated", "same");
    add("monday", "same", day(1));
    add("wednesday", "same", day(3));
    add("other", "else", day(4));
    analyse();
    merge(false);
    EXPECT_FALSE(exists("undated"));
    EXPECT_FALSE(exists("monday"));
    EXPECT_TRUE(exists("wednesday"));
    EXPECT_TRUE(exists("other"));
    EXPECT_THAT(listed(), ElementsAre("wednesday", "other"));
    EXPECT_TRUE(model->duplicates()->empty());
    EXPECT_EQ(model->duplicatePhase(), ScanPhase::idle());
    EXPECT_EQ(model->history().front().title, "Duplicates merged");
    EXPECT_EQ(model->history().front().detail, "2 copies permanently deleted · 8 bytes freed");
}

TEST_F(DuplicateMerging, OfEquallyNewFilesTheFirstStays)
{
    add("a", "same", day(1));
    add("b", "same", day(1));
    add("c", "other", day(-1));
    add("d", "other");
    analyse();
    merge(true);
    EXPECT_THAT(machine.trash->trashed, ElementsAre(folder / "d", folder / "b"));
    EXPECT_EQ(model->history().front().detail, "2 copies moved to Trash · 9 bytes freed");
}

TEST_F(DuplicateMerging, AGroupWhoseKeptFileIsGoneOrEditedIsLeftAlone)
{
    for (const bool toTrash : {true, false}) {
        records.clear();
        add("gone/new", "first", day(9));
        add("gone/old", "first", day(1));
        add("gone/older", "first", day(0));
        add("edited/new", "second", day(9));
        add("edited/old", "second", day(1));
        add("fine/new", "the third", day(9));
        add("fine/old", "the third", day(1));
        analyse();
        fs::remove(folder / "gone/new");
        test::waitForATick();
        folder.writeFile("edited/new", "SECOND");
        machine.trash->trashed.clear();
        merge(toTrash);
        EXPECT_TRUE(exists("gone/old"));
        EXPECT_TRUE(exists("gone/older"));
        EXPECT_TRUE(exists("edited/old"));
        EXPECT_TRUE(exists("fine/new"));
        if (toTrash)
            EXPECT_THAT(machine.trash->trashed, ElementsAre(folder / "fine/old"));
        else
            EXPECT_FALSE(exists("fine/old"));
        EXPECT_EQ(model->history().front().detail,
            toTrash ? "1 copies moved to Trash · 9 bytes freed"
                    : "1 copies permanently deleted · 9 bytes freed");
        // What was skipped leaves the list like what went.
        EXPECT_THAT(listed(), ElementsAre("new", "new", "new"));
    }
}

TEST_F(DuplicateMerging, ACopyThatWasEditedOrIsProtectedStays)
{
    add("new", "same", day(9));
    add("edited", "same", day(1));
    add("plugin.appex", "same", day(1));
    add("old", "same", day(1));
    analyse();
    test::waitForATick();
    folder.writeFile("edited", "SAME");
    merge(false);
    EXPECT_TRUE(exists("new"));
    EXPECT_EQ(folder.readFile("edited"), "SAME");
    EXPECT_TRUE(exists("plugin.appex"));
    EXPECT_FALSE(exists("old"));
    EXPECT_EQ(model->history().front().detail, "1 copies permanently deleted · 4 bytes freed");
}

TEST_F(DuplicateMerging, OtherNamesOfTheKeptFileStayAndOtherNamesOfACopyGo)
{
    for (const bool toTrash : {true, false}) {
        records.clear();
        add("kept", "same", day(9));
        add("copy", "same", day(1));
        for (const auto& [from, name] : {std::pair("kept", "kept too"), {"copy", "copy too"}}) {
            fs::remove(folder / name);
            fs::create_hard_link(folder / from, folder / name);
            records.push_back({.path = folder / name, .size = 4, .modifiedAt = day(1)});
        }
        analyse();
        machine.trash->trashed.clear();
        merge(toTrash);
        EXPECT_TRUE(exists("kept"));
        EXPECT_TRUE(exists("kept too"));
        if (toTrash)
            EXPECT_THAT(machine.trash->trashed, ElementsAre(folder / "copy", folder / "copy too"));
        else
            EXPECT_FALSE(exists("copy") || exists("copy too"));
    }
}

TEST_F(DuplicateMerging, AnAnalysisDuringAMergeWaitsForItAndFindsNoneOfWhatGoes)
{
    add("a", "same");
    add("b", "same");
    analyse();
    std::optional<std::string> error;
    model->mergeDuplicates(false, [&error](const std::string& text) { error = text; });
    model->startDuplicateAnalysis();
    EXPECT_EQ(model->duplicatePhase(), analysing);
    ASSERT_TRUE(test::processEventsUntil([&error] { return error.has_value(); }));
    ASSERT_TRUE(waitForPhase(ScanPhase::finished()));
    EXPECT_TRUE(model->duplicates()->empty());
    EXPECT_THAT(listed(), ElementsAre("a"));
}

/// Deletes on this machine, while something else happens at the last moment.
class DisturbedRemover final : public FileRemover {
public:
    explicit DisturbedRemover(std::function<void(const std::string&)> disturb)
        : m_disturb(std::move(disturb))
    {
    }
    FileResult<Done> remove(const std::string& path, const RemoveOptions& options) override
    {
        return m_system.remove(path, options);
    }
    FileResult<Done> removeFileIf(const std::string& path, const FileIdentity& expected,
        const std::function<bool()>& mayGo, const RemoveOptions& options) override
    {
        return m_system.removeFileIf(
            path, expected,
            [&] {
                m_disturb(path);
                return mayGo();
            },
            options);
    }

private:
    std::function<void(const std::string&)> m_disturb;
    SystemFileRemover m_system;
};

class DisturbedMerging : public DuplicateMerging {
protected:
    /// Something that happens between the last look at a copy and its end.
    void disturb(std::function<void(const std::string& path)> action)
    {
        machine.remover = std::make_shared<DisturbedRemover>(action);
        machine.trash->whenTrashed = [action, folder = folder / "Trash"](const std::string& path) {
            fs::create_directories(folder);
            fs::rename(path, folder + "/1");
            action(path);
        };
        machine.trash->places = {{folder / "Trash", folder / "Trash"}};
        model = std::make_unique<AppModel>(scanner, machine.platform());
    }
};

TEST_F(DisturbedMerging, TheCopyComesBackWhenTheKeptFileGoesWithIt)
{
    disturb([this](const std::string&) { fs::remove(folder / "kept"); });
    for (const bool toTrash : {true, false}) {
        records.clear();
        add("kept", "same", day(9));
        add("copy", "same", day(1));
        analyse();
        machine.trash->trashed.clear();
        merge(toTrash);
        EXPECT_EQ(folder.readFile("copy"), "same") << toTrash;
        EXPECT_EQ(model->history().front().detail,
            toTrash ? "0 copies moved to Trash · Zero KB freed"
                    : "0 copies permanently deleted · Zero KB freed");
    }
}

TEST_F(DisturbedMerging, WhatTakesTheNameOfACopyIsNotDeletedWithIt)
{
    disturb([this](const std::string& path) {
        if (fs::exists(folder / "Trash"))
            return;
        folder.writeFile(fs::path(path).filename().native() + "/precious", "new");
    });
    add("kept", "same", day(9));
    add("copy", "same", day(1));
    analyse();
    merge(false);
    EXPECT_EQ(folder.readFile("copy/precious"), "new");
    EXPECT_EQ(folder.readFile("kept"), "same");
}

TEST_F(DisturbedMerging, WhatTakesTheNameOfACopyComesBackFromTheTrash)
{
    machine.trash->places = {{folder / "Trash", folder / "Trash"}};
    machine.trash->whenTrashed = [this](const std::string& path) {
        fs::remove(path);
        folder.writeFile(fs::path(path).filename().native() + "/precious", "new");
        fs::create_directories(folder / "Trash");
        fs::rename(path, folder / "Trash/1");
    };
    model = std::make_unique<AppModel>(scanner, machine.platform());
    add("kept", "same", day(9));
    add("copy", "same", day(1));
    analyse();
    merge(true);
    EXPECT_EQ(folder.readFile("copy/precious"), "new");
    EXPECT_EQ(model->history().front().detail, "0 copies moved to Trash · Zero KB freed");
}

TEST_F(DisturbedMerging, AFailureInTheMiddleLeavesNoGroupsBehind)
{
    disturb([](const std::string&) { throw std::runtime_error("The disk is on fire."); });
    add("a", "same", day(9));
    add("b", "same", day(1));
    analyse();
    std::optional<std::string> error;
    model->mergeDuplicates(true, [&error](const std::string& text) { error = text; });
    ASSERT_TRUE(test::processEventsUntil([&error] { return error.has_value(); }));
    EXPECT_EQ(*error, "The disk is on fire.");
    EXPECT_TRUE(model->duplicates()->empty());
    EXPECT_EQ(model->duplicatePhase(), ScanPhase::idle());
    EXPECT_EQ(model->history().front().title, "Duplicates merged");
    EXPECT_THAT(listed(), ElementsAre("a"));
}

} // namespace
} // namespace kestavon
