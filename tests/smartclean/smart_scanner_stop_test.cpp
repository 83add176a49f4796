#include "smartclean/mac_home.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <thread>

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace kestavon {
namespace {

using enum JunkCategory;
using test::MacHome;
using testing::ElementsAre;
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

} // namespace
} // namespace kestavon
