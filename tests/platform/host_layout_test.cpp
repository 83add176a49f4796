#include "platform/host_layout.h"
#include "support/environment_variable.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <pwd.h>
#include <unistd.h>

namespace kestavon {
namespace {

using test::ScopedVariable;
using test::TemporaryFolder;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;

HostLayout layoutOf(const std::string& home)
{
    HostEnvironment environment;
    environment.home = home;
    return makeHostLayout(environment);
}

TEST(HostLayout, AHomeWithALibraryIsLaidOutLikeAMac)
{
    const TemporaryFolder home;
    home.makeFolder("Library");
    home.writeFile(".config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/Elsewhere\"\n");
    const auto layout = layoutOf(home.path() + "//");
    EXPECT_EQ(layout.home, home.path());
    EXPECT_EQ(layout.kind, HomeKind::mac);
    EXPECT_EQ(layout.applicationSupport, home / "Library/Application Support");
    EXPECT_THAT(layout.fullDiskAccessProbes,
        ElementsAre(home / "Library/Mail", home / "Library/Messages", home / "Library/Safari",
            home / "Library/Calendars", home / "Library/AddressBook"));
    EXPECT_THAT(layout.cacheMarkers, ElementsAre("/Library/Caches/"));
    EXPECT_THAT(layout.downloadFolders, ElementsAre(home / "Downloads"));
}

TEST(HostLayout, FindsTheRootOfTheDiskThatAMacsHomeLiesOn)
{
    const TemporaryFolder disk;
    disk.makeFolder("Users/alice/Library");
    EXPECT_EQ(systemRootOf(disk / "Users/alice"), "/") << "a home alone";
    disk.makeFolder("System/Library");
    EXPECT_EQ(systemRootOf(disk / "Users/alice"), disk.path());
    EXPECT_EQ(systemRootOf(disk / "home/alice"), "/");
    EXPECT_EQ(systemRootOf("/"), "/");
}

TEST(HostLayout, AnyOtherHomeFollowsTheBaseDirectories)
{
    const TemporaryFolder home;
    home.writeFile("Library"); // A file of that name is no library.
    const auto layout = layoutOf(home.path());
    EXPECT_EQ(layout.kind, HomeKind::native);
    EXPECT_EQ(layout.cacheHome, home / ".cache");
    EXPECT_EQ(layout.configHome, home / ".config");
    EXPECT_EQ(layout.dataHome, home / ".local/share");
    EXPECT_EQ(layout.stateHome, home / ".local/state");
    EXPECT_THAT(layout.dataFolders,
        ElementsAre(home / ".local/share", "/usr/local/share", "/usr/share",
            home / ".local/share/flatpak/exports/share", "/var/lib/flatpak/exports/share",
            "/var/lib/snapd/desktop"));
    EXPECT_EQ(layout.applicationSupport, home / ".local/share");
    EXPECT_THAT(layout.fullDiskAccessProbes,
        ElementsAre(home / "Library/Mail", home / "Library/Messages", home / "Library/Safari",
            home / "Library/Calendars", home / "Library/AddressBook", home / ".thunderbird",
            home / ".config/mozilla", home / ".mozilla", home / ".local/share/evolution",
            home / ".config", home / ".cache", "/"));
    EXPECT_EQ(layout.settingsFolder, home / ".config/Kestavon");
}

TEST(HostLayout, TakesAbsoluteBaseDirectoriesOnly)
{
    const TemporaryFolder home;
    const auto layout = makeHostLayout({.home = home.path(),
        .xdgCacheHome = "/var/cache/alice/",
        .xdgConfigHome = "relative/config",
        .xdgDataHome = "/data",
        .xdgStateHome = "",
        .xdgDataDirs = "/more/::relative:/data:/var/lib/flatpak/exports/share"});
    EXPECT_THAT(layout.dataFolders,
        ElementsAre("/data", "/more", "/var/lib/flatpak/exports/share",
            "/data/flatpak/exports/share", "/var/lib/snapd/desktop"));
    EXPECT_EQ(layout.cacheHome, "/var/cache/alice");
    EXPECT_EQ(layout.configHome, home / ".config");
    EXPECT_EQ(layout.dataHome, "/data");
    EXPECT_EQ(layout.applicationSupport, "/data");
    EXPECT_EQ(layout.stateHome, home / ".local/state");
}

TEST(HostLayout, KeepsTheSpellingOfAHomeThatIsALink)
{
    const TemporaryFolder folder;
    folder.makeFolder("disk/alice");
    folder.makeFolder("elsewhere");
    std::filesystem::create_directory_symlink("disk/alice", folder / "home");
    std::filesystem::create_directory_symlink("../../elsewhere", folder / "disk/alice/Library");
    const auto layout = layoutOf(folder / "home");
    EXPECT_EQ(layout.home, folder / "home");
    EXPECT_EQ(layout.kind, HomeKind::mac) << "a Library that is a link to a folder counts";
    EXPECT_THAT(layout.downloadFolders, ElementsAre(folder / "home/Downloads"));
}

TEST(HostLayout, ResolvesSystemPathsBelowTheSystemRoot)
{
    EXPECT_EQ(layoutOf("/nonexistent").belowSystemRoot("/Library/Logs"), "/Library/Logs");
    const auto attached
        = makeHostLayout({.home = "/mnt/mac/Users/alice", .systemRoot = "/mnt/mac/"});
    EXPECT_EQ(attached.systemRoot, "/mnt/mac");
    EXPECT_EQ(attached.belowSystemRoot("/Library/Logs"), "/mnt/mac/Library/Logs");
    EXPECT_EQ(attached.belowSystemRoot("/"), "/mnt/mac");
    EXPECT_THAT(attached.scanExclusions,
        ElementsAre("/mnt/mac/System", "/mnt/mac/private/var/db", "/mnt/mac/private/var/vm"));
    EXPECT_THAT(layoutOf("/nonexistent").scanExclusions,
        ElementsAre("/System", "/private/var/db", "/private/var/vm"));
}

TEST(HostLayout, LooksForJunkInTheHomeButForTwoFoldersOfTheSystem)
{
    const TemporaryFolder folder;
    folder.makeFolder("mac/Users/alice/Library");
    const auto mac
        = makeHostLayout({.home = folder / "mac/Users/alice", .systemRoot = folder / "mac"});
    std::vector<std::string> outside;
    for (const auto& location : mac.junkLocations) {
        if (!location.folder.starts_with(mac.home + '/'))
            outside.push_back(location.folder);
    }
    EXPECT_THAT(outside,
        ElementsAre(
            folder / "mac/Library/Logs/DiagnosticReports", folder / "mac/opt/homebrew/var/cache"));
    EXPECT_THAT(mac.applicationFolders,
        ElementsAre(folder / "mac/Applications", folder / "mac/System/Applications",
            folder / "mac/Users/alice/Applications"));

    outside.clear();
    const auto native = makeHostLayout({.home = folder.path()});
    for (const auto& location : native.junkLocations) {
        if (!location.folder.starts_with(native.home + '/') && location.names.empty())
            outside.push_back(location.folder);
    }
    EXPECT_THAT(outside, ElementsAre("/var/crash", "/home/linuxbrew/.linuxbrew/var/cache"));
    EXPECT_THAT(native.applicationFolders, IsEmpty());
}

TEST(HostLayout, ALinuxHomeHasNoPlacesOfAMacAndAMacNoneOfLinux)
{
    const TemporaryFolder folder;
    folder.makeFolder("mac/Library");
    const auto mac = layoutOf(folder / "mac");
    EXPECT_THAT(mac.applicationSources, IsEmpty());
    EXPECT_THAT(mac.keptPlaces, IsEmpty());
    EXPECT_THAT(mac.cachePlaces, IsEmpty());
    EXPECT_THAT(
        mac.persistenceMarkers, ElementsAre("/Library/LaunchAgents/", "/Library/LaunchDaemons/"));
    for (const auto& location : mac.junkLocations)
        EXPECT_FALSE(location.yields || location.onlyRemovable || !location.below.empty());
    const auto native = layoutOf(folder / "native");
    EXPECT_THAT(native.uninstallFolders, IsEmpty());
    for (const auto& location : native.leftoverLocations)
        EXPECT_FALSE(location.folder.find("/Library") != std::string::npos);
}

TEST(HostLayout, NamesThePlacesOfOtherBaseDirectories)
{
    const TemporaryFolder home;
    const auto layout = makeHostLayout({.home = home.path(),
        .xdgCacheHome = home.path(),
        .xdgConfigHome = "/settings",
        .xdgConfigDirs = "relative:/one/:/two",
        .path = "bin:/opt/tools"});
    EXPECT_EQ(layout.programRecords.programFolders.front(), "/opt/tools");
    std::vector<std::string> startup;
    for (const auto& place : layout.startupFolders)
        startup.push_back(place.folder);
    EXPECT_THAT(startup,
        ElementsAre("/settings/autostart", "/settings/systemd/user", "/one/autostart",
            "/two/autostart", "/etc/systemd/user", "/etc/systemd/system"));
    for (const auto& leftover : layout.leftoverLocations)
        EXPECT_TRUE(leftover.folder != home.path() || leftover.rule == LeftoverRule::dottedName);
}

TEST(HostLayout, AddsTheDownloadFolderThatTheUserNamed)
{
    const struct {
        const char* line;
        const char* added; ///< below the home when relative; nothing when empty
    } rows[] = {
        {"XDG_DOWNLOAD_DIR=\"$HOME/T\xC3\xA9l\xC3\xA9"
         "chargements\"",
            "T\xC3\xA9l\xC3\xA9"
            "chargements"},
        {"  XDG_DOWNLOAD_DIR = \"$HOME//a/./b/\"", "a/b"},
        {"XDG_DOWNLOAD_DIR=\"/srv/in \\\"quotes\\\"\"", "/srv/in \"quotes\""},
        {"XDG_DOWNLOAD_DIR=\"/first\"\nXDG_MUSIC_DIR=\"/music\"\nXDG_DOWNLOAD_DIR=\"/last\"\n",
            "/last"},
        {"XDG_DOWNLOAD_DIR=\"$HOME/Downloads\"", ""},
        {"XDG_DOWNLOAD_DIR=\"$HOME\"", ""},
        {"XDG_DOWNLOAD_DIR=\"$HOME/\"", ""},
        {"XDG_DOWNLOAD_DIR=\"$HOME/..\"", ""},
        {"XDG_DOWNLOAD_DIR=\"/\"", ""},
        {"XDG_DOWNLOAD_DIR=\"$HOMEWARD/x\"", ""},
        {"XDG_DOWNLOAD_DIR=\"Downloads/relative\"", ""},
        {"XDG_DOWNLOAD_DIR=\"/unfinished", ""},
        {"#XDG_DOWNLOAD_DIR=\"/commented\"", ""},
        {"XDG_DOWNLOAD_DIRECTORY=\"/other\"", ""},
    };
    for (const auto& row : rows) {
        const TemporaryFolder home;
        home.writeFile(".config/user-dirs.dirs", row.line);
        const auto folders = layoutOf(home.path()).downloadFolders;
        EXPECT_EQ(folders.front(), home / "Downloads") << row.line;
        const std::string added = row.added;
        if (added.empty())
            EXPECT_EQ(folders.size(), 1U) << row.line;
        else
            EXPECT_EQ(folders.back(), added.starts_with('/') ? added : home / added) << row.line;
    }
}

TEST(HostLayout, InASandboxItsOwnSettingsAreNotTheUsers)
{
    const TemporaryFolder home;
    const auto layout = makeHostLayout({.home = home.path(),
        .xdgConfigHome = home / ".config",
        .sandboxConfigHome = home / ".var/app/kestavon/config/"});
    EXPECT_EQ(layout.configHome, home / ".config");
    EXPECT_EQ(layout.settingsFolder, home / ".var/app/kestavon/config/Kestavon");
    EXPECT_THAT(layout.fullDiskAccessProbes, testing::Not(testing::Contains("/")))
        << "a sandbox shows an empty disk of its own";
}

TEST(TypedPath, LeadsToTheSamePlaceInTheSpellingOfItsFolder)
{
    const TemporaryFolder folder;
    folder.makeFolder("real/inner");
    std::filesystem::create_directory_symlink("real/inner", folder / "link");
    EXPECT_EQ(typedPath(folder / "real/./inner//"), folder / "real/inner");
    EXPECT_EQ(typedPath(folder / "./link/."), folder / "link") << "a link keeps its name";
    EXPECT_EQ(typedPath(folder / "link/../x"),
        std::filesystem::canonical(folder.path()).native() + "/real/x");
    EXPECT_EQ(typedPath("."), std::filesystem::current_path());
    EXPECT_EQ(typedPath("/"), "/");
    EXPECT_EQ(typedPath("/.."), "/");
    EXPECT_EQ(typedPath(folder / "\xFF./..x"), folder / "\xFF./..x");
}

TEST(NormalisedPath, IsAbsoluteWithoutTrailingSlashes)
{
    EXPECT_EQ(normalisedPath("/"), "/");
    EXPECT_EQ(normalisedPath("///"), "/");
    EXPECT_EQ(normalisedPath("/a/b//"), "/a/b");
    EXPECT_EQ(normalisedPath("/a/../b/."), "/a/../b/.");
    EXPECT_EQ(normalisedPath("/a%20b/\xFF\n"), "/a%20b/\xFF\n");
    EXPECT_EQ(normalisedPath("x/"), std::filesystem::current_path().native() + "/x");
}

TEST(CurrentHostEnvironment, TakesTheHomeFromTheEnvironment)
{
    const ScopedVariable home("HOME", "/somewhere/alice/");
    const ScopedVariable cache("XDG_CACHE_HOME", "/somewhere/cache");
    const ScopedVariable data("XDG_DATA_HOME", std::nullopt);
    const auto environment = currentHostEnvironment();
    EXPECT_EQ(normalisedPath(environment.home), "/somewhere/alice");
    EXPECT_EQ(environment.xdgCacheHome, "/somewhere/cache");
    EXPECT_EQ(environment.xdgDataHome, "");
    EXPECT_EQ(environment.systemRoot, "/");
}

TEST(CurrentHostEnvironment, AsksThePasswordDatabaseWhenHomeIsUnusable)
{
    const auto* entry = ::getpwuid(::getuid());
    if (!entry)
        GTEST_SKIP() << "this user has no password entry";
    const std::string expected = entry->pw_dir;
    const std::optional<std::string> unusable[] = {std::nullopt, "", "relative/home"};
    for (const auto& value : unusable) {
        const ScopedVariable home("HOME", value);
        EXPECT_EQ(currentHostEnvironment().home, expected) << value.value_or("unset");
    }
}

} // namespace
} // namespace kestavon
