#include "smartclean/mac_home.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <future>
#include <mutex>
#include <thread>

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace kestavon {
namespace {

using enum JunkCategory;
using test::MacHome;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

TEST(StoppedSmartScan, FindsNothingInLocationsItHasNotReached)
{
    const MacHome home;
    for (const auto* name : {"~/Library/Caches/file", "~/Library/Logs/DiagnosticReports/file",
             "Library/Logs/DiagnosticReports/file", "~/.npm/_cacache/file",
             "opt/homebrew/var/cache/file", "~/Library/Mail/file", "~/.Trash/file"})
        home.file(name, 5);
    for (const auto category :
        {appCaches, systemLogs, crashReports, devTools, mailAttachments, trash})
        EXPECT_THAT(home.scan(category, test::stopped()), IsEmpty()) << rawValue(category);
}

TEST(StoppedSmartScan, StillListsOldFilesAndOrphanedPreferences)
{
    const MacHome home;
    home.install("Applications/Editor.app", "com.example.Editor");
    const Timestamp longAgo{};
    home.file("~/Downloads/folder/file", 5);
    home.file("~/Downloads/file", 5);
    for (const auto* name : {"folder", "file"})
        home.disk.setModified(std::string("Users/alice/Downloads/") + name, longAgo);
    home.file("~/Library/Containers/org.gone.tool/data", 5);
    home.file("~/Library/Preferences/org.gone.tool.plist", 5);
    home.file("~/Library/Preferences/com.example.Editor.plist", 5);

    const auto names = [&](JunkCategory category) {
        std::vector<std::string> result;
        for (const auto& item : home.scan(category, test::stopped()))
            result.push_back(item.name);
        return result;
    };
    EXPECT_THAT(names(oldDownloads), ElementsAre("~/Downloads/file"));
    EXPECT_THAT(names(orphanedApps), ElementsAre("~/Library/Preferences/org.gone.tool.plist"))
        << "what is installed is still known";
}

TEST(StoppedSmartScan, DoesNotSumUpWhatIsLeft)
{
    const MacHome home;
    home.file("~/Library/Caches/app/file", 1);
    // Names of one file are cheap to make, and as much work to look at as files.
    const auto file = home.path("~/Library/Caches/app/file");
    std::int64_t whole = 1;
    const auto addNames = [&](int folders) {
        for (int folder = 0; folder < folders; ++folder) {
            const auto path = home.path("~/Library/Caches/app/" + std::to_string(whole));
            std::filesystem::create_directory(path);
            for (int i = 0; i < 500; ++i, ++whole)
                std::filesystem::create_hard_link(file, path + '/' + std::to_string(i));
        }
    };
    const auto scanner = home.scanner();
    const auto sumOf = [&scanner](const std::stop_token& stop) {
        std::int64_t sum = 0;
        for (const auto& item : scanner.scanCategory(appCaches, stop))
            sum += item.estimatedBytes;
        return sum;
    };
    using Clock = std::chrono::steady_clock;
    const auto enough = std::chrono::milliseconds(80);
    auto duration = Clock::duration::zero();
    for (int folders = 40; duration < enough && whole < 60'000; folders *= 2) {
        addNames(folders);
        const auto begin = Clock::now();
        ASSERT_EQ(sumOf({}), whole);
        duration = Clock::now() - begin;
    }

    std::int64_t leastSum = whole;
    for (int part = 0; part < 8; ++part) {
        std::stop_source stop;
        std::thread stopper([&] {
            std::this_thread::sleep_for(duration * part / 16);
            stop.request_stop();
        });
        leastSum = std::min(leastSum, sumOf(stop.get_token()));
        stopper.join();
    }
    EXPECT_LT(leastSum, whole) << "no stop was heard";
}

/// What runs, for whom `meanwhile` happens whenever somebody asks.
class InterruptedApplications final : public RunningApplications {
public:
    std::vector<RunningApplication> running() const override
    {
        meanwhile();
        return {};
    }
    std::function<void()> meanwhile;
};

TEST(StoppedSmartScan, ListsTheRestOfTheFolderItIsIn)
{
    const MacHome home;
    for (const auto* name : {"Containers/org.a.file", "Containers/org.b.folder/data",
             "Containers/org.c.file", "Group Containers/org.gone", "Preferences/org.d.plist"})
        home.file(std::string("~/Library/") + name, 5);
    std::stop_source stop;
    const auto applications = std::make_shared<InterruptedApplications>();
    applications->meanwhile = [&stop] { stop.request_stop(); };
    auto tools = home.tools();
    tools.runningApplications = applications;
    std::vector<std::string> found;
    for (const auto& item :
        SmartScanner(home.layout(), tools).scanCategory(orphanedApps, stop.get_token()))
        found.push_back(item.record.path.substr(home.home.size() + 9));
    EXPECT_THAT(found,
        ElementsAre("Containers/org.a.file", "Containers/org.c.file", "Preferences/org.d.plist"));
}

/// A clock that does something when it is looked at for the nth time.
class CountingClock final : public Clock {
public:
    Timestamp now() const override
    {
        if (--left == 0)
            then();
        return test::FakeClock().time;
    }
    mutable std::atomic<int> left{0};
    std::function<void()> then;
};

TEST(StoppedSmartScan, KeepsTheSumsOfTheFoldersItMetBefore)
{
    const MacHome home;
    constexpr int many = 300;
    for (int i = 0; i < many; ++i) {
        const auto container = "Users/alice/containers/org.gone.App" + std::to_string(1000 + i);
        for (const auto* part : {"/cache", "/config", "/data"})
            home.disk.file(container + part, 2);
        for (const auto* part : {"/cache", "/config", "/data", ""})
            home.disk.setModified(container + part, Timestamp{});
    }
    auto layout = home.layout();
    layout.junkLocations = {{.category = orphanedApps,
        .folder = home.path("~/containers"),
        .label = "Container",
        .rule = JunkRule::abandonedContainers}};
    std::stop_source stop;
    const auto clock = std::make_shared<CountingClock>();
    clock->left = many;
    clock->then = [&stop] { stop.request_stop(); };
    auto tools = home.tools();
    tools.clock = clock;
    const auto items = SmartScanner(layout, tools).scanCategory(orphanedApps, stop.get_token());
    ASSERT_GT(items.size(), many / 2U);
    EXPECT_THAT(items, Each(Field(&CleanupCandidate::estimatedBytes, 6)));
}

/// Three locations of one category, of which nobody gets to the end of the second while `hung` is
/// held, as on a disk that does not answer.
class StuckSmartScan : public testing::Test {
protected:
    StuckSmartScan()
    {
        for (const auto* name : {"~/a/first", "~/b/second", "~/b/folder/x", "~/c/third"})
            home.file(name, 5);
        home.disk.setModified("Users/alice/b/second", Timestamp{});
    }

    SmartScanner scanner(ScanPatience patience) const
    {
        auto layout = home.layout();
        layout.junkLocations = {{.category = devTools, .folder = home.path("~/a"), .label = "A"},
            {.category = devTools,
                .folder = home.path("~/b"),
                .label = "B",
                .rule = JunkRule::oldEntries},
            {.category = devTools, .folder = home.path("~/c"), .label = "C"}};
        auto tools = home.tools();
        tools.calendar = calendar;
        return {layout, tools, patience};
    }

    static std::vector<std::string> labels(const std::vector<CleanupCandidate>& items)
    {
        std::vector<std::string> result;
        for (const auto& item : items)
            result.push_back(item.reason);
        return result;
    }

    class HangingCalendar final : public Calendar {
    public:
        std::int64_t wholeDays(Timestamp, Timestamp) const override { return 0; }
        Timestamp daysBefore(Timestamp day, std::int64_t) const override
        {
            reached.request_stop();
            const std::lock_guard lock(hung);
            return day;
        }
        std::string dateText(Timestamp) const override { return {}; }
        mutable std::mutex hung; ///< nobody gets an answer while a test holds it
        mutable std::stop_source reached; ///< stopped when somebody asks
    };

    static constexpr auto ages = std::chrono::minutes(10);
    static constexpr auto moment = std::chrono::milliseconds(20);

    const MacHome home;
    const std::shared_ptr<HangingCalendar> calendar = std::make_shared<HangingCalendar>();
};

TEST_F(StuckSmartScan, FindsWhatLiesElsewhere)
{
    const std::lock_guard lock(calendar->hung);
    EXPECT_THAT(labels(scanner({.untilNext = moment, .inAll = 5 * moment}).scanCategory(devTools)),
        ElementsAre("A", "C"));
}

TEST_F(StuckSmartScan, FindsAllOfADiskThatPausesAtEveryFolder)
{
    /// Takes its time, and much more than what makes the scan go on with something else.
    class SlowCalendar final : public Calendar {
    public:
        std::int64_t wholeDays(Timestamp, Timestamp) const override { return 0; }
        Timestamp daysBefore(Timestamp moment, std::int64_t) const override
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(60));
            return moment;
        }
        std::string dateText(Timestamp) const override { return {}; }
    };
    auto layout = home.layout();
    layout.junkLocations.clear();
    for (int i = 0; i < 40; ++i) {
        const auto folder = "~/slow" + std::to_string(i);
        home.file(folder + "/old", 5);
        home.disk.setModified("Users/alice/slow" + std::to_string(i) + "/old", Timestamp{});
        layout.junkLocations.push_back({.category = devTools,
            .folder = home.path(folder),
            .label = "Old",
            .rule = JunkRule::oldEntries});
    }
    auto tools = home.tools();
    tools.calendar = std::make_shared<SlowCalendar>();
    const SmartScanner scanner(
        layout, tools, {.untilNext = std::chrono::milliseconds(2), .inAll = ages});
    EXPECT_EQ(scanner.scanCategory(devTools).size(), 40U);
}

TEST_F(StuckSmartScan, KeepsTheOrderWhenTheDiskAnswersLate)
{
    std::unique_lock lock(calendar->hung);
    const auto scan = scanner({.untilNext = moment, .inAll = ages});
    auto found = std::async(std::launch::async, [&scan] { return scan.scanCategory(devTools); });
    while (!calendar->reached.stop_requested())
        std::this_thread::yield();
    std::this_thread::sleep_for(5 * moment); // others are done by then
    lock.unlock();
    EXPECT_THAT(labels(found.get()), ElementsAre("A", "B", "C"));
}

TEST_F(StuckSmartScan, GivesWhatItHasWhenItIsStopped)
{
    const std::lock_guard lock(calendar->hung);
    const auto scan = scanner({.untilNext = ages, .inAll = ages, .quietAfterStop = moment});
    EXPECT_THAT(
        labels(scan.scanCategory(devTools, calendar->reached.get_token())), ElementsAre("A"));
}

} // namespace
} // namespace kestavon
