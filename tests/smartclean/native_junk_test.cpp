#include "core/domain/removal_guard.h"
#include "smartclean/native_home.h"
#include "support/as_ordinary_user.h"
#include "support/moments.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace kestavon {
namespace {

using enum JunkCategory;
using test::NativeHome;
using testing::ElementsAre;
using testing::IsEmpty;

/// One entry in a folder of each kind gives these items, and nothing else.
TEST(NativeJunk, IsFoundWhereProgramsKeepIt)
{
    const struct {
        JunkCategory category;
        std::vector<const char*> files;
        std::vector<const char*> items;
    } cases[] = {
        {appCaches,
            {"~/.cache/app/a", "~/.cache/thumbnails/large/x.png", "~/.thumbnails/normal/x.png",
                "~/.var/app/org.example.App/cache/tmp/x", "~/.var/app/org.example.App/data/x",
                "~/snap/app/common/.cache/x", "~/snap/app/common/x",
                "~/.config/Code/Code Cache/js/x", "~/.config/Code/User/settings.json",
                "~/.config/discord/Local Storage/x", "~/.config/discord/GPUCache/data"},
            {"~/.cache/app: Application cache",
                "~/.var/app/org.example.App/cache/tmp: Application cache",
                "~/snap/app/common/.cache/x: Application cache",
                "~/.cache/thumbnails/large: Application cache",
                "~/.thumbnails/normal: Application cache",
                "~/.config/Code/Code Cache/js: Application cache",
                "~/.config/discord/GPUCache/data: Application cache"}},
        {systemLogs,
            {"~/.xsession-errors", "~/.xsession-errors.old", "~/.xsessionrc",
                "~/.local/share/xorg/Xorg.0.log", "~/.local/share/qBittorrent/logs/x.log",
                "~/.local/share/qBittorrent/logs/x.log.bak1", "~/.local/share/app/logs/friend",
                "~/.local/share/TpLogger/logs/chat.log", "~/.local/state/app/log/x",
                "~/.local/state/app/history", "var/log/syslog", "var/log/syslog.1",
                "var/log/syslog.2.gz", "var/log/apt/term.log.3.gz", "var/log/journal/x/y.gz"},
            {"~/.xsession-errors: System log", "~/.xsession-errors.old: System log",
                "~/.local/share/xorg/Xorg.0.log: System log",
                "~/.local/share/qBittorrent/logs/x.log: System log",
                "~/.local/share/qBittorrent/logs/x.log.bak1: System log",
                "~/.local/state/app/log/x: System log", "var/log/syslog.1: System log",
                "var/log/syslog.2.gz: System log", "var/log/apt/term.log.3.gz: System log"}},
        {crashReports,
            {"~/.config/mozilla/firefox/Crash Reports/pending/x.dmp",
                "~/.mozilla/firefox/abc.default/minidumps/x.dmp",
                "~/.mozilla/firefox/abc.default/prefs.js",
                "~/.config/chromium/Crash Reports/completed/x", "~/.config/App/Crashpad/reports/x",
                "var/crash/_usr_bin_app.1000.crash"},
            {"~/.config/mozilla/firefox/Crash Reports/pending: Crash report",
                "~/.mozilla/firefox/abc.default/minidumps/x.dmp: Crash report",
                "~/.config/chromium/Crash Reports/completed: Crash report",
                "~/.config/App/Crashpad/reports: Crash report",
                "var/crash/_usr_bin_app.1000.crash: Crash report"}},
        {devTools,
            {"~/.npm/_cacache/x", "~/.cache/pip/http/x", "~/.cache/pypoetry/cache/x",
                "~/.cache/pypoetry/virtualenvs/project/bin/python", "~/.gem/ruby/3.1.0/cache/x.gem",
                "~/.gem/ruby/3.1.0/gems/x/x.rb", "~/.cargo/registry/cache/x", "~/.cargo/bin/tool",
                "~/.terraform.d/plugin-cache/x", "~/.terraform.d/plugins/own", "~/.ccache/a/x",
                "~/.ccache/ccache.conf", "~/.pub-cache/bin/tool", "~/go/pkg/mod/cache/download/x",
                "~/go/pkg/mod/module/x"},
            {"~/.npm/_cacache/x: npm cache", "~/.cache/pip/http: pip cache",
                "~/.cache/pypoetry/cache/x: Python package cache",
                "~/.cargo/registry/cache/x: Cargo registry cache",
                "~/.gem/ruby/3.1.0/cache/x.gem: Ruby gem cache",
                "~/go/pkg/mod/cache/download: Go module cache",
                "~/.terraform.d/plugin-cache/x: Terraform plugins", "~/.ccache/a: Compiler cache"}},
        {xcodeArtifacts,
            {"~/.cache/JetBrains/Idea2026/caches/x", "~/.cache/JetBrains/Idea2026/LocalHistory/x",
                "~/.android/cache/x", "~/.android/adbkey"},
            {"~/.cache/JetBrains/Idea2026/caches/x: IDE cache", "~/.android/cache/x: IDE cache"}},
        {browserCaches,
            {"~/.cache/mozilla/firefox/abc.default/cache2/x", "~/.cache/chromium/Default/Cache/x",
                "~/.cache/microsoft-edge-dev/Default/x", "~/.config/chromium/ShaderCache/x",
                "~/.config/chromium/Default/Cookies", "~/.cache/epiphany/x"},
            {"~/.cache/mozilla/firefox/abc.default: Firefox profile cache",
                "~/.cache/chromium/Default: Chromium cache",
                "~/.config/chromium/ShaderCache/x: Chrome system cache",
                "~/.cache/microsoft-edge-dev/Default: Edge cache",
                "~/.cache/epiphany/x: Web cache"}},
        {mailAttachments,
            {"~/.cache/thunderbird/abc.default/x", "~/.thunderbird/abc.default/Mail/Inbox",
                "~/.cache/evolution/mail/x", "~/.local/share/geary/account_01/attachments/1/x",
                "~/.local/share/geary/account_01/geary.db"},
            {"~/.cache/thunderbird/abc.default: Mail cache", "~/.cache/evolution/mail: Mail cache",
                "~/.local/share/geary/account_01/attachments/1: Mail downloads"}},
        {iosBackups, {"~/Library backup/MobileSync/Backup/x"}, {}},
    };
    for (const auto& [category, files, items] : cases) {
        const NativeHome home;
        for (const auto* file : files)
            home.file(file);
        const std::vector<std::string> expected(items.begin(), items.end());
        EXPECT_EQ(home.scan(category), expected) << rawValue(category);
    }
}

TEST(NativeJunk, CountsNothingTwice)
{
    const NativeHome home;
    for (const auto* file :
        {"~/.cache/pip/http/x", "~/.cache/mozilla/firefox/p/x", "~/.cache/thumbnails/large/x",
            "~/.cache/google-chrome/Default/x", "~/.cache/microsoft-edge/x", "~/.cache/bazel/x",
            "~/.cache/app/logs/x.log", "~/.var/app/org.chromium.Chromium/cache/chromium/x",
            "~/.var/app/org.mozilla.firefox/cache/mozilla/x",
            "~/.var/app/org.mozilla.firefox/cache/fontconfig/x", "~/snap/firefox/common/.cache/x",
            "~/.local/share/app/logs/a.log", "~/.local/share/Trash/files/x", "~/.npm/_logs/x"})
        home.file(file);
    auto found = home.everything();
    EXPECT_EQ(found.size(), 14U);
    for (const auto& one : found) {
        for (const auto& other : found)
            EXPECT_TRUE(&one == &other || !isAtOrBelow(one, other)) << one << " in " << other;
    }
}

/// What nobody may lose: data, keys, programs, and caches that are none.
TEST(NativeJunk, NeverTouchesWhatIsNotJunk)
{
    const char* const never[] = {"~/.thunderbird/p.default/Mail/Local Folders/Inbox",
        "~/.thunderbird/p.default/ImapMail/server/INBOX", "~/.local/share/evolution/mail/local/x",
        "~/.local/share/akonadi/file_db_data/x", "~/.config/chromium/Default/Cookies",
        "~/.config/chromium/Default/Login Data", "~/.config/google-chrome/Default/IndexedDB/x",
        "~/.config/google-chrome/Profile 1/Local Storage/x",
        "~/.config/chromium/Default/Service Worker/x", "~/.config/chromium/Default/Sessions/x",
        "~/.mozilla/firefox/p.default/cookies.sqlite", "~/.mozilla/firefox/p.default/storage/x",
        "~/.config/mozilla/firefox/p.default/logins.json",
        "~/.local/share/containers/storage/volumes/x", "~/.docker/desktop/vms/0/data/Docker.raw",
        "~/.gem/ruby/3.1.0/gems/x/x.rb", "~/.gem/ruby/3.1.0/bin/x",
        "~/.local/share/gem/ruby/3.1.0/gems/x", "~/.rustup/toolchains/x", "~/.nvm/versions/x",
        "~/.sdkman/candidates/x", "~/.cargo/bin/x", "~/.local/share/Steam/steamapps/x",
        "~/.steam/x", "~/.wine/drive_c/x", "~/.local/share/wineprefixes/p/x",
        "~/.local/share/flatpak/repo/x", "~/.local/share/flatpak/app/org.example.App/x",
        "~/.local/share/flatpak/runtime/x", "var/cache/apt/archives/x.deb",
        "~/.local/share/TelegramDesktop/tdata/x", "~/.config/Signal/sql/db.sqlite",
        "~/.var/app/org.telegram.desktop/data/TelegramDesktop/x",
        "~/.var/app/org.signal.Signal/config/Signal/x",
        "~/.var/app/org.mozilla.Thunderbird/.thunderbird/p/Mail/x", "~/.cache/rclone/vfs/x",
        "~/.cache/JetBrains/Idea/LocalHistory/x", "~/.cache/pypoetry/virtualenvs/x/bin/python",
        "~/.cache/huggingface/hub/x", "~/.cache/ksycoca5_x", "~/.cache/icon-cache.kcache",
        "~/.cache/mesa_shader_cache_db/x", "~/.cache/gvfsd/x", "~/.cache/keyring-X1/control",
        "~/.cache/vim/swap/%home%alice%thesis.swp", "~/.cache/Kestavon/x", "~/.cache/sessions/x",
        "~/.config/Kestavon/settings.json", "~/.local/share/Kestavon/Quarantine/x",
        "~/.config/Code/User/settings.json", "~/.config/Code/Backups/x", "~/.ssh/id_rsa",
        "~/.local/share/keyrings/login.keyring", "~/.local/share/TpLogger/logs/x.log",
        "~/.local/share/weechat/logs/irc.log", "~/.pub-cache/bin/x", "~/.terraform.d/plugins/x",
        "~/.local/state/bash_history", "~/Documents/x", "~/.config/autostart/x.desktop"};
    const NativeHome home;
    for (const auto* file : never) {
        home.file(file);
        home.disk.setModified(
            home.path(file).substr(home.disk.path().size() + 1), test::utc(2020, 1, 1));
    }
    for (const auto& item : home.everything()) {
        for (const auto* file : never)
            EXPECT_FALSE(isAtOrBelow(file, item)) << item;
    }
}

TEST(NativeJunk, ABaseDirectoryThatHoldsOtherThingsProvesNothing)
{
    const struct {
        const char* cache;
        const char* data;
        std::vector<std::string> caches;
    } cases[] = {
        {"", "", {"~/.cache/app: Application cache"}},
        {"relative", "also/relative", {"~/.cache/app: Application cache"}},
        {"~/elsewhere", "", {"~/elsewhere/app: Application cache"}},
        {"~", "", {}},
        {"~/.local", "", {}},
        {"~/.config", "", {}},
        {"~/.local/share", "", {}},
        {"~/Downloads", "", {}},
        {"~/x", "~/x", {}},
        {"/", "", {}},
    };
    for (const auto& [cache, data, caches] : cases) {
        NativeHome home;
        for (const auto* folder : {".cache", "elsewhere", "x", ".local", ".config", ".local/share",
                 "Downloads", ".", "Documents"})
            home.file(std::string("~/") + folder + "/app/x");
        const auto given = [&home](std::string path) {
            return path.starts_with('~') ? (home.disk / "home/alice").append(path, 1) : path;
        };
        home.environment.xdgCacheHome = given(cache);
        home.environment.xdgDataHome = given(data);
        EXPECT_EQ(home.scan(appCaches), caches) << cache;
        EXPECT_THAT(home.scan(orphanedApps), IsEmpty()) << cache;
        home.file("~/.config/ccache/ccache.conf");
        EXPECT_THAT(home.scan(devTools), IsEmpty()) << cache;
    }
}

TEST(NativeJunk, IsOnlyWhatThisUserMayTakeOut)
{
    const test::AsOrdinaryUser user;
    const NativeHome home;
    home.file("~/.cache/mine/x");
    home.file("~/.cache/link target/x");
    home.file("var/crash/own.crash");
    EXPECT_THAT(home.scan(crashReports), ElementsAre("var/crash/own.crash: Crash report"));
    ::chmod(home.path("var/crash").c_str(), 0500);
    EXPECT_THAT(home.scan(crashReports), IsEmpty());
    ::chmod(home.path("var/crash").c_str(), 0700);
}

TEST(NativeJunk, OldDownloadsLieInTheFolderThatTheUserNamedToo)
{
    const NativeHome home;
    home.disk.writeFile(
        "home/alice/.config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/Descargas\"\n");
    for (const std::string file : {"~/Descargas/old", "~/Downloads/old", "~/Desktop/old"}) {
        home.file(file);
        home.disk.setModified(std::string("home/alice").append(file, 1), test::utc(2020, 1, 1));
    }
    home.file("~/Descargas/new");
    home.clock->time = test::utc(2026, 11, 18);
    home.disk.setModified("home/alice/Descargas/new", test::utc(2026, 11, 1));
    EXPECT_THAT(home.scan(oldDownloads),
        ElementsAre("~/Downloads/old: Old download (90+ days)",
            "~/Descargas/old: Old download (90+ days)"));
}

TEST(NativeJunk, EveryTrashThatThereIsHasItems)
{
    NativeHome home;
    home.file("~/.local/share/Trash/files/a");
    home.file("media/stick/.Trash-1000/files/b");
    home.file("media/stick/.Trash-1000/info/b.trashinfo");
    home.trash = std::make_shared<test::FakeTrash>();
    for (const std::string folder : {"~/.local/share/Trash", "media/stick/.Trash-1000"})
        home.trash->places.push_back(
            {.folder = home.path(folder), .items = home.path(folder + "/files")});
    EXPECT_THAT(home.scan(trash),
        ElementsAre("~/.local/share/Trash/files/a: Trash item",
            "media/stick/.Trash-1000/files/b: Trash item"));
}

} // namespace
} // namespace kestavon
