#include "smartclean/mac_home.h"

#include <chrono>
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

TEST(StoppedSmartScan, EndsWithinATenthOfASecond)
{
    const MacHome home;
    for (int folder = 0; folder < 300; ++folder) {
        for (int file = 0; file < 15; ++file)
            home.file("~/Library/Caches/app" + std::to_string(folder % 7) + "/"
                    + std::to_string(folder) + "/" + std::to_string(file),
                1);
    }
    const auto scanner = home.scanner();
    std::int64_t whole = 0;
    for (const auto& item : scanner.scanCategory(appCaches))
        whole += item.estimatedBytes;
    ASSERT_EQ(whole, 300 * 15);

    for (int delay = 0; delay < 12; ++delay) {
        std::stop_source stop;
        std::chrono::steady_clock::time_point stoppedAt;
        std::thread stopper([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(delay));
            stoppedAt = std::chrono::steady_clock::now();
            stop.request_stop();
        });
        std::int64_t sum = 0;
        for (const auto& item : scanner.scanCategory(appCaches, stop.get_token()))
            sum += item.estimatedBytes;
        const auto end = std::chrono::steady_clock::now();
        stopper.join();
        EXPECT_LE(sum, whole);
        EXPECT_LT(end - stoppedAt, std::chrono::milliseconds(100));
    }
}

} // namespace
} // namespace kestavon
