#include "platform/protected_places.h"
#include "support/temporary_tree.h"

#include <filesystem>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kestavon {
namespace {

struct ProtectedPlacesTest : testing::Test {
    ProtectedPlacesTest()
    {
        home.makeFolder("alice/.config");
        home.writeFile("alice/.config/user-dirs.dirs",
            "XDG_DESKTOP_DIR=\"$HOME/Bureau\"\nXDG_MUSIC_DIR=\"" + (home / "shared music")
                + "\"\n");
        HostEnvironment environment;
        environment.home = home / "alice";
        layout = makeHostLayout(environment);
    }

    bool isRefused(const std::string& path) const
    {
        return ProtectedPlaces(ProtectedPlaces::listsFor(layout)).refusal(path).has_value();
    }
    bool mayRemove(const std::string& path) const
    {
        return ProtectedPlaces(ProtectedPlaces::listsFor(layout)).mayRemove(path);
    }

    test::TemporaryTree home;
    HostLayout layout;
};

TEST_F(ProtectedPlacesTest, ProtectsWhatTheSystemAndThePersonCannotDoWithout)
{
    for (const auto* path : {"/etc", "/etc/fstab", "/boot/x", "/lib/x", "/lib64", "/opt/app",
             "/var/lib/dpkg", "/run/x", "/", "/home", "/tmp", "/var", "/var/log", "/usr/local",
             "/Library", "/private", "/private/var", "relative", "/tmp/.."})
        EXPECT_TRUE(isRefused(path)) << path;
    for (const auto* path : {"/etcetera", "/opt/homebrew/var/cache/x", "/home/bob", "/tmp/x",
             "/var/log/old.gz", "/optional", "/run/media/x/../x/y"})
        EXPECT_EQ(isRefused(path), std::string_view(path).starts_with("/run")) << path;

    for (const auto* path : {"", "/.ssh", "/.ssh/id_rsa", "/.gnupg/x", "/.config", "/.local",
             "/.local/share", "/.local/share/keyrings/login.keyring", "/.local/share/Kestavon",
             "/.local/share/Kestavon/Quarantine/x", "/.config/Kestavon/settings.json", "/.cache",
             "/Downloads", "/Bureau", "/.local/share/Trash", "/.local/share/Trash/files",
             "/.docker/config.json", "/.docker"})
        EXPECT_TRUE(isRefused(layout.home + path)) << path;
    for (const auto* path : {"/.sshx", "/.config/app", "/.cache/app", "/Downloads/film", "/notes",
             "/.local/share/app", "/.local/share/Trash/files/x", "/.docker/cache"})
        EXPECT_FALSE(isRefused(layout.home + path)) << path;
    EXPECT_TRUE(isRefused(home / "shared music"));
    EXPECT_TRUE(isRefused(home.path())) << "the home lies in it";
    EXPECT_TRUE(isRefused("/media/stick/.Trash-1000"));
    EXPECT_TRUE(isRefused("/media/stick/.Trash-1000/files"));
    EXPECT_FALSE(isRefused("/media/stick/.Trash-1000/files/old"));
    EXPECT_FALSE(isRefused("/media/stick/.Trash-notes"));
}

TEST_F(ProtectedPlacesTest, LooksThroughLinksOnTheWayButNotAtTheEnd)
{
    home.link("alice/way in", "/etc");
    home.link("alice/keys", layout.home + "/.ssh");
    home.makeFolder("alice/.ssh");
    home.makeFolder("alice/projects");
    EXPECT_TRUE(isRefused(layout.home + "/way in/fstab"));
    EXPECT_TRUE(isRefused(layout.home + "/keys/id_rsa"));
    EXPECT_TRUE(isRefused(layout.home + "/projects/../.ssh/id_rsa"));
    EXPECT_TRUE(isRefused(layout.home + "//.ssh/./id_rsa"));
    EXPECT_FALSE(isRefused(layout.home + "/way in")) << "the link itself may go";

    home.link("alice/system", "/usr");
    EXPECT_FALSE(mayRemove(layout.home + "/system/local/x"));
    EXPECT_FALSE(mayRemove(layout.home + "/x.appex"));
    EXPECT_TRUE(mayRemove(layout.home + "/projects/x"));
}

TEST_F(ProtectedPlacesTest, ProtectsAHomeThatIsReachedInTwoWays)
{
    home.makeFolder("alice/.ssh");
    home.link("link to alice", "alice");
    HostEnvironment environment;
    environment.home = home / "link to alice";
    layout = makeHostLayout(environment);
    for (const auto& path : {home / "alice", home / "alice/.ssh", home / "link to alice",
             home / "link to alice/.ssh/id_rsa"})
        EXPECT_TRUE(isRefused(path)) << path;
}

TEST_F(ProtectedPlacesTest, ProtectsRepositoriesAndMountPoints)
{
    home.makeFolder("alice/project/.git");
    home.writeFile("alice/submodule/.git", "gitdir: ../project/.git/modules/x");
    EXPECT_TRUE(isRefused(layout.home + "/project/.git"));
    EXPECT_FALSE(isRefused(layout.home + "/submodule/.git"));
    EXPECT_FALSE(isRefused(layout.home + "/project"));
    EXPECT_TRUE(isRefused("/dev/shm"));
    EXPECT_FALSE(isRefused("/dev/shm/x"));
}

TEST_F(ProtectedPlacesTest, ProtectsAnAttachedSystemToo)
{
    layout.systemRoot = home / "disk";
    EXPECT_FALSE(mayRemove(home / "disk/Applications/X.app"));
    EXPECT_FALSE(mayRemove(home / "disk/usr"));
    EXPECT_TRUE(mayRemove(home / "disk/Library/Caches/x"));
    for (const auto* holding : {"disk", "disk/Library", "disk/private", "disk/private/var"})
        EXPECT_FALSE(mayRemove(home / holding)) << holding;
    EXPECT_TRUE(mayRemove(home / "disk2/usr"));
}

TEST_F(ProtectedPlacesTest, DoesNotTrustPathsThatNoLookCanResolve)
{
    const std::string name(100, 'd');
    home.chain(name, 60);
    auto path = home.path();
    for (int i = 0; i < 60; ++i)
        path += "/" + name;
    EXPECT_FALSE(isRefused(path + "/bottom"));
    EXPECT_TRUE(isRefused(path + "/../../" + name));
}

} // namespace
} // namespace kestavon
