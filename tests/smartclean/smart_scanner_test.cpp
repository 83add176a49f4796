#include "smartclean/mac_home.h"
#include "support/as_ordinary_user.h"
#include "support/moments.h"
#include "support/time_zone.h"

#include <filesystem>
#include <set>

#include <gmock/gmock.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace kestavon {
namespace {

using enum JunkCategory;
using test::MacHome;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// One file of one byte in each folder gives these items, and nothing else.
struct CategoryCase {
    JunkCategory category;
    std::vector<std::pair<std::string, std::string>> foldersAndLabels;
};

const std::vector<CategoryCase> everyEntryCategories{
    {appCaches, {{"~/Library/Caches", "Application cache"}}},
    {systemLogs, {{"~/Library/Logs", "System log"}}},
    {crashReports,
        {{"~/Library/Logs/DiagnosticReports", "Crash report"},
            {"Library/Logs/DiagnosticReports", "Crash report"}}},
    {trash, {{"~/.Trash", "Trash item"}}},
    {devTools,
        {{"~/.npm/_cacache", "npm cache"}, {"~/.npm-cache", "npm cache"},
            {"~/Library/Caches/Yarn", "Yarn cache"}, {"~/.yarn/cache", "Yarn v2 cache"},
            {"~/Library/Caches/pip", "pip cache"},
            {"~/Library/Caches/Homebrew", "Homebrew download cache"},
            {"~/Library/pnpm/store", "pnpm content store"}, {"~/.pnpm-store", "pnpm store"},
            {"~/.cargo/registry/cache", "Cargo registry cache"},
            {"~/.cargo/registry/src", "Cargo registry source"},
            {"~/.gradle/caches", "Gradle cache"}, {"~/.m2/repository", "Maven local repository"},
            {"~/Library/Caches/CocoaPods", "CocoaPods download cache"},
            {"~/.gem/ruby", "Ruby gem cache"},
            {"~/Library/Containers/com.docker.docker/Data/vms", "Docker VM images"},
            {"~/.cache/bazel", "Bazel build cache"},
            {"~/.terraform.d/plugins", "Terraform plugins"},
            {"~/go/pkg/mod/cache", "Go module cache"},
            {"opt/homebrew/var/cache", "Homebrew cache"}}},
    {xcodeArtifacts,
        {{"~/Library/Developer/Xcode/DerivedData", "Xcode Derived Data"},
            {"~/Library/Developer/Xcode/iOS DeviceSupport", "Xcode iOS Device Support"},
            {"~/Library/Developer/Xcode/watchOS DeviceSupport", "Xcode watchOS Device Support"},
            {"~/Library/Developer/Xcode/Archives", "Xcode Archive"},
            {"~/Library/Developer/CoreSimulator/Devices", "iOS Simulator device data"},
            {"~/Library/Developer/Xcode/UserData/IB Support/Simulator Devices",
                "IB Simulator data"}}},
    {iosBackups, {{"~/Library/Application Support/MobileSync/Backup", "iOS/iPadOS backup"}}},
    {browserCaches,
        {{"~/Library/Caches/com.apple.Safari", "Safari cache"},
            {"~/Library/Safari/LocalStorage", "Safari local storage"},
            {"~/Library/Application Support/Google/Chrome/Default/Cache", "Chrome cache"},
            {"~/Library/Caches/Google/Chrome", "Chrome system cache"},
            {"~/Library/Application Support/Firefox/Profiles", "Firefox profile cache"},
            {"~/Library/Application Support/BraveSoftware/Brave-Browser/Default/Cache",
                "Brave cache"},
            {"~/Library/Application Support/BraveSoftware/Brave-Browser/Default/Code Cache",
                "Brave code cache"},
            {"~/Library/Application Support/Microsoft Edge/Default/Cache", "Edge cache"},
            {"~/Library/Application Support/Microsoft Edge/Default/Code Cache", "Edge code cache"},
            {"~/Library/Application Support/Arc/User Data/Default/Cache", "Arc cache"},
            {"~/Library/Application Support/com.operasoftware.Opera/Default/Cache", "Opera cache"},
            {"~/Library/Application Support/Vivaldi/Default/Cache", "Vivaldi cache"}}},
    {mailAttachments,
        {{"~/Library/Containers/com.apple.mail/Data/Library/Mail Downloads", "Mail downloads"},
            {"~/Library/Containers/com.apple.mail/Data/Library/Caches", "Mail cache"},
            {"~/Library/Mail", "Mail message data"},
            {"~/Library/Containers/com.apple.iChat/Data/Library/Caches", "Messages cache"},
            {"~/Library/Messages/Attachments", "Messages attachments"}}},
};

TEST(SmartScanner, FindsEveryEntryOfItsLocationsInTheirOrder)
{
    for (const auto& [category, foldersAndLabels] : everyEntryCategories) {
        const MacHome home;
        std::vector<test::FoundItem> expected;
        for (const auto& [folder, label] : foldersAndLabels) {
            // Hidden ones too; in the order of their bytes.
            for (const std::string name : {"/.hidden", "/Z", "/a", "/\xFFnot text"}) {
                home.file(folder + name, 7);
                expected.push_back({folder + name, 7, label});
            }
            home.file(folder.substr(0, folder.rfind('/')) + "/beside", 7);
        }
        auto found = home.scan(category);
        // What lies beside one location may lie in another.
        std::erase_if(found, [](const auto& item) { return item.name.ends_with("/beside"); });
        std::erase_if(found, [&](const auto& item) {
            return std::ranges::any_of(foldersAndLabels, [&](const auto& row) {
                return row.first.starts_with(item.name + '/') || row.first == item.name;
            });
        });
        EXPECT_EQ(found, expected) << rawValue(category);
    }
}

TEST(SmartScanner, FindsNothingWhereThereIsNothing)
{
    const MacHome home;
    for (const auto& entry : allCases<JunkCategory>())
        EXPECT_THAT(home.scan(entry.value), IsEmpty()) << entry.raw;
}

TEST(SmartScanner, MeasuresFoldersByTheFilesInThem)
{
    const MacHome home;
    home.file("~/Library/Caches/one/file", 10);
    home.file("~/Library/Caches/two/a/b/c/deep", 5);
    home.file("~/Library/Caches/two/.hidden", 3);
    home.disk.link("Users/alice/Library/Caches/two/link", "12345678");
    home.folder("~/Library/Caches/empty/of/files");
    home.file("~/Library/Caches/nothing", 0);
    EXPECT_THAT(home.scan(appCaches),
        ElementsAre(test::FoundItem{"~/Library/Caches/one", 10, "Application cache"},
            test::FoundItem{"~/Library/Caches/two", 16, "Application cache"}));
}

TEST(SmartScanner, EntersAPackageOnlyWhereItIsTheItem)
{
    const MacHome home;
    home.file("~/.Trash/Editor.app/Contents/MacOS/Editor", 100);
    home.file("~/.Trash/Editor.app/Contents/PlugIns/Extra.bundle/code", 1000);
    home.file("~/.Trash/old/Editor.app/Contents/MacOS/Editor", 100);
    home.file("~/.Trash/old/notes", 1);
    EXPECT_THAT(home.scan(trash),
        ElementsAre(test::FoundItem{"~/.Trash/Editor.app", 100, "Trash item"},
            test::FoundItem{"~/.Trash/old", 1, "Trash item"}));
}

TEST(SmartScanner, LeavesOutWhatIsNeverRemoved)
{
    const MacHome home;
    for (const auto* folder : {"~/Library/Caches/", "~/.Trash/", "~/Downloads/",
             "~/Library/Application Support/", "~/Library/Preferences/"}) {
        for (const auto* name :
            {"org.gone.tool.appex", "org.gone.tool.xpc", "org.gone.tool.thumbnail"})
            home.file(std::string(folder) + name + "/data", 9);
        home.file(std::string(folder) + "org.gone.tool.appex.plist", 9);
    }
    home.disk.setModified("Users/alice/Downloads/org.gone.tool.xpc", test::utc(2020, 1, 1));
    EXPECT_THAT(home.scan(appCaches), SizeIs(1)); // what only begins like that
    EXPECT_THAT(home.scan(trash), SizeIs(1));
    EXPECT_THAT(home.scan(oldDownloads), IsEmpty());
    EXPECT_THAT(home.scan(orphanedApps), SizeIs(2));
}

TEST(SmartScanner, TellsOfEachItemWhatAScanWouldButForItsSize)
{
    const MacHome home;
    home.file("~/Library/Logs/.hidden/file", 4);
    home.file("~/Library/Logs/log", 6);
    const auto date = test::utc(2026, 3, 29, 1, 2, 3, 456'789'000);
    home.disk.setModified("Users/alice/Library/Logs/.hidden", date);
    home.disk.setModified("Users/alice/Library/Logs/log", date);
    const auto found = home.candidates(systemLogs);
    ASSERT_THAT(found, SizeIs(2));
    std::set<Uuid> ids;
    for (const auto& item : found) {
        EXPECT_EQ(item.estimatedBytes, item.record.size);
        EXPECT_EQ(item.record.modifiedAt, date);
        EXPECT_FALSE(item.record.isHidden);
        ids.insert({item.id, item.record.id});
    }
    EXPECT_TRUE(found[0].record.isDirectory);
    EXPECT_FALSE(found[1].record.isDirectory);
    for (const auto& item : home.candidates(systemLogs))
        ids.insert({item.id, item.record.id});
    EXPECT_THAT(ids, SizeIs(8)) << "a later scan finds other items";
}

TEST(SmartScanner, FollowsALinkToALocationButNoneInIt)
{
    const MacHome home;
    home.file("elsewhere/caches/app/file", 10);
    home.file("elsewhere/secret/file", 1000);
    home.disk.link("Users/alice/Library/Caches", home.path("elsewhere/caches"));
    home.disk.link("elsewhere/caches/way", "../secret");
    EXPECT_THAT(home.scan(appCaches),
        ElementsAre(test::FoundItem{"~/Library/Caches/app", 10, "Application cache"},
            test::FoundItem{"~/Library/Caches/way", 9, "Application cache"}));
    EXPECT_FALSE(home.candidates(appCaches)[1].record.isDirectory);
}

TEST(SmartScanner, NamesItemsAsTheHomeIsSpelt)
{
    MacHome home;
    home.file("~/Library/Caches/app/file", 10);
    home.disk.link("moved", "Users/alice");
    home.home = home.path("moved") + '/';
    const auto found = home.candidates(appCaches);
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_EQ(found[0].record.path, home.path("moved/Library/Caches/app"));
}

TEST(SmartScanner, GoesOnPastWhatItMayNotRead)
{
    const test::AsOrdinaryUser user;
    const MacHome home;
    home.file("~/.Trash/file", 5);
    home.file("~/Library/Caches/closed/file", 5);
    home.file("~/Library/Caches/open/closed/file", 5);
    home.file("~/Library/Caches/open/file", 3);
    for (const auto* name : {".Trash", "Library/Caches/closed", "Library/Caches/open/closed"})
        home.disk.setMode(std::string("Users/alice/") + name, 0);
    EXPECT_THAT(home.scan(trash), IsEmpty());
    EXPECT_THAT(home.scan(appCaches),
        ElementsAre(test::FoundItem{"~/Library/Caches/open", 3, "Application cache"}));
}

TEST(SmartScanner, TakesAFileInALocationsPlaceForNothing)
{
    const MacHome home;
    home.file("~/Library/Caches", 5);
    home.file("~/Library/Logs/DiagnosticReports", 5);
    EXPECT_THAT(home.scan(appCaches), IsEmpty());
    EXPECT_THAT(home.scan(crashReports), IsEmpty());
    EXPECT_THAT(home.scan(systemLogs), SizeIs(1));
}

TEST(OldDownloads, AreThoseUnchangedForNinetyDays)
{
    const test::ScopedTimeZone zone("UTC");
    const MacHome home;
    home.clock->time = test::utc(2026, 11, 18, 10, 0, 0);
    const auto cutOff = test::utc(2026, 8, 20, 10, 0, 0);
    const auto put = [&](const std::string& name, Timestamp date, std::int64_t bytes = 3) {
        home.file("~/Downloads/" + name, bytes);
        home.disk.setModified("Users/alice/Downloads/" + name, date);
    };
    put("a just old", cutOff - std::chrono::nanoseconds(1));
    put("b ninety days to the tick", cutOff);
    put("c younger", test::utc(2026, 8, 21, 10, 0, 0));
    put("d old but empty", test::utc(2020, 1, 1), 0);
    put(".e hidden", test::utc(2020, 1, 1));
    put("f later than now", test::utc(2030, 1, 1));
    // A folder is as old as its own list of names.
    home.file("~/Downloads/g folder/new file", 8);
    home.disk.setModified("Users/alice/Downloads/g folder", test::utc(2020, 1, 1));
    home.file("~/Downloads/h folder/old file", 8);
    home.disk.setModified("Users/alice/Downloads/h folder/old file", test::utc(2020, 1, 1));
    home.disk.setModified("Users/alice/Downloads/h folder", cutOff);

    const std::string label = "Old download (90+ days)";
    EXPECT_THAT(home.scan(oldDownloads),
        ElementsAre(test::FoundItem{"~/Downloads/.e hidden", 3, label},
            test::FoundItem{"~/Downloads/a just old", 3, label},
            test::FoundItem{"~/Downloads/g folder", 8, label}));
    EXPECT_EQ(home.candidates(oldDownloads)[0].record.modifiedAt, test::utc(2020, 1, 1));
}

TEST(OldDownloads, CountDaysAndNotHours)
{
    // Between these two clocks went back by an hour: ninety days are 2161 hours.
    const test::ScopedTimeZone zone("Europe/Berlin");
    const MacHome home;
    home.clock->time = test::utc(2026, 11, 18, 11, 0, 0); // noon
    home.file("~/Downloads/file", 3);
    home.disk.setModified("Users/alice/Downloads/file", test::utc(2026, 8, 20, 10, 30, 0));
    EXPECT_THAT(home.scan(oldDownloads), IsEmpty()) << "half past twelve";
    home.disk.setModified("Users/alice/Downloads/file", test::utc(2026, 8, 20, 9, 59, 59));
    EXPECT_THAT(home.scan(oldDownloads), SizeIs(1));
}

/// Counts how often a folder is opened while it lives. It hears of the closing too, because what
/// happens twice in a row is told once.
class OpeningCount {
public:
    explicit OpeningCount(const std::string& folder)
        : m_watch(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        ::inotify_add_watch(m_watch, folder.c_str(), IN_OPEN | IN_CLOSE | IN_ONLYDIR);
    }
    ~OpeningCount() { ::close(m_watch); }
    OpeningCount(const OpeningCount&) = delete;
    OpeningCount& operator=(const OpeningCount&) = delete;

    int openings()
    {
        char events[4096];
        for (ssize_t bytes = 0; (bytes = ::read(m_watch, events, sizeof events)) > 0;) {
            for (ssize_t at = 0; at < bytes;) {
                const auto* event = reinterpret_cast<const inotify_event*>(events + at);
                if ((event->mask & IN_OPEN) && event->len == 0) // itself, and nothing in it
                    ++m_openings;
                at += static_cast<ssize_t>(sizeof *event + event->len);
            }
        }
        return m_openings;
    }

private:
    int m_watch;
    int m_openings = 0;
};

TEST(SmartScanner, ReadsNoFolderMoreOftenThanCategoriesShareIt)
{
    const MacHome home;
    home.file("~/Library/Caches/app/inner/file", 10);
    home.file("~/Library/Caches/pip/http/file", 10);
    OpeningCount inner(home.path("~/Library/Caches/app/inner"));
    OpeningCount shared(home.path("~/Library/Caches/pip/http"));
    for (const auto& entry : allCases<JunkCategory>())
        home.scan(entry.value);
    EXPECT_EQ(inner.openings(), 1);
    EXPECT_EQ(shared.openings(), 2) << "once as a cache, once as pip's";
}

} // namespace
} // namespace kestavon
