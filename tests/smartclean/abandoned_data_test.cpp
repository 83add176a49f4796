#include "smartclean/native_home.h"
#include "support/moments.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::NativeHome;
using testing::ElementsAre;

/// A home in which every entry below was changed long ago, of a machine where the package "gone"
/// was removed.
class AbandonedData : public testing::Test {
protected:
    AbandonedData()
    {
        home.clock->time = test::utc(2026, 11, 18);
        home.disk.writeFile(
            "var/log/dpkg.log", "2026-01-01 10:00:00 remove gone:amd64 0.5 <none>\n");
    }
    /// Makes the file; it and what holds it below the home were changed on that day.
    void put(const std::string& name, Timestamp changed = test::utc(2026, 10, 1)) const
    {
        home.file(name, 3);
        auto path = std::string("home/alice").append(name, 1);
        for (; path != "home/alice"; path.erase(path.rfind('/')))
            home.disk.setModified(path, changed);
    }

    NativeHome home;
};

TEST_F(AbandonedData, IsFoundByKind)
{
    for (const auto* name : {"~/.local/share/gone/x", "~/.config/Gone/x", "~/.local/state/gone/x",
             "~/.config/gone.conf", "~/.config/gonerc", "~/.cache/gone/x", "~/.config/other/x",
             "~/.local/share/com.example.Gone/x"})
        put(name);
    for (const auto* part : {"cache", "config", "data"})
        put(std::string("~/.var/app/org.example.Gone/") + part + "/x");
    put("~/.var/app/org.example.Partly/data/x");
    EXPECT_THAT(home.scan(JunkCategory::orphanedApps),
        ElementsAre("~/.local/share/com.example.Gone: Orphaned app support data",
            "~/.local/share/gone: Orphaned app support data",
            "~/.config/Gone: Orphaned app support data",
            "~/.local/state/gone: Orphaned app support data",
            "~/.var/app/org.example.Gone: Orphaned app container",
            "~/.config/gone.conf: Orphaned preference file",
            "~/.config/gonerc: Orphaned preference file"));
    EXPECT_EQ(home.candidates(JunkCategory::orphanedApps)[0].record.modifiedAt, std::nullopt);
}

TEST_F(AbandonedData, StaysWhileAnythingSpeaksForIt)
{
    put("~/.config/gone/deep/new", test::utc(2026, 10, 25));
    put("~/.config/gone/old");
    home.disk.setModified("home/alice/.config/gone", test::utc(2026, 1, 1));
    put("~/.local/share/gone/Saves/slot 1");
    put("~/dotfiles/gone/x");
    home.disk.folder("home/alice/.local/state");
    home.disk.link("home/alice/.local/state/gone", "../../dotfiles/gone");
    EXPECT_THAT(home.scan(JunkCategory::orphanedApps), testing::IsEmpty());
}

TEST_F(AbandonedData, StaysInAFolderUnderVersionControl)
{
    put("~/.config/gone/x");
    EXPECT_THAT(home.scan(JunkCategory::orphanedApps), testing::SizeIs(1));
    put("~/.config/.git/HEAD");
    EXPECT_THAT(home.scan(JunkCategory::orphanedApps), testing::IsEmpty());
}

TEST_F(AbandonedData, IsNotThatOfARunningProgram)
{
    put("~/.config/gone/x");
    home.runningApplications->applications = {{.identifier = "org.example.Gone", .name = {}}};
    EXPECT_THAT(home.scan(JunkCategory::orphanedApps), testing::IsEmpty());
}

} // namespace
} // namespace kestavon
