#include "smartclean/mac_home.h"
#include "support/as_ordinary_user.h"

#include <gmock/gmock.h>
#include <unistd.h>

namespace kestavon {
namespace {

using enum JunkCategory;
using test::FoundItem;
using test::MacHome;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string supportLabel = "Orphaned app support data";
const std::string containerLabel = "Orphaned app container";
const std::string groupLabel = "Orphaned group container";
const std::string preferenceLabel = "Orphaned preference file";

std::vector<std::string> orphanNames(const MacHome& home)
{
    std::vector<std::string> names;
    for (const auto& item : home.scan(orphanedApps))
        names.push_back(item.name.substr(item.name.rfind('/') + 1));
    return names;
}

TEST(OrphanScan, FindsDataOfNoApplicationInFourPlaces)
{
    const MacHome home;
    home.install("Applications/Editor.app", "com.example.Editor");
    for (const auto* folder : {"~/Library/Application Support/", "~/Library/Containers/",
             "~/Library/Group Containers/"}) {
        for (const auto* name : {"com.example.editor", "com.example.Editor.agent",
                 "com.example.other", "org.sample.tool", "Google", "empty.folder.name"})
            home.folder(std::string(folder) + name);
        for (const auto* name : {"com.example.editor", "com.example.Editor.agent",
                 "com.example.other", "org.sample.tool", "Google"})
            home.file(std::string(folder) + name + "/data", 20);
        home.file(std::string(folder) + "Gone.App", 2);
    }
    home.file("~/Library/Group Containers/group.com.example.editor/data", 30);
    home.file("~/Library/Preferences/com.gone.app.plist", 120);
    home.file("~/Library/Preferences/com.gone.empty.plist", 0);
    home.file("~/Library/Preferences/com.example.Editor.plist", 120);
    home.file("~/Library/Preferences/com.gone.app.PLIST", 120);
    home.file("~/Library/Preferences/com.gone.app", 120);
    home.file("~/Library/Preferences/loginwindow.plist", 120);
    home.file("~/Library/Preferences/.GlobalPreferences.plist", 50);
    home.file("~/Library/Preferences/com.gone.folder.plist/file", 120);
    EXPECT_THAT(home.scan(orphanedApps),
        ElementsAre(FoundItem{"~/Library/Application Support/Gone.App", 2, supportLabel},
            FoundItem{"~/Library/Application Support/org.sample.tool", 20, supportLabel},
            FoundItem{"~/Library/Containers/Gone.App", 2, containerLabel},
            FoundItem{"~/Library/Containers/org.sample.tool", 20, containerLabel},
            FoundItem{"~/Library/Group Containers/Gone.App", 2, groupLabel},
            FoundItem{"~/Library/Group Containers/group.com.example.editor", 30, groupLabel},
            FoundItem{"~/Library/Group Containers/org.sample.tool", 20, groupLabel},
            FoundItem{"~/Library/Preferences/.GlobalPreferences.plist", 50, preferenceLabel},
            FoundItem{"~/Library/Preferences/com.gone.app.plist", 120, preferenceLabel}));
    for (const auto& item : home.candidates(orphanedApps))
        EXPECT_FALSE(item.record.modifiedAt) << item.record.path;
}

TEST(OrphanScan, KnowsApplicationsByNameAndByIdentifier)
{
    const MacHome home;
    home.install("Applications/Editor.app", "com.example.Editor");
    home.install("System/Applications/Mail.app", "com.apple.mail");
    home.install("~/Applications/.Hidden.app", "net.hidden.Tool");
    home.folder("Applications/ÜBER Öffner.app"); // no bundle at all
    home.file("Applications/Flat.app/Info.plist", 0);
    home.file("Applications/Single.app", 1);
    home.install("Applications/Upper.APP", "org.upper.Tool");
    home.install("Applications/Utilities/Nested.app", "org.nested.Tool");
    home.disk.writeFile("Applications/Numbers.app/Contents/Info.plist",
        "<plist><dict><key>CFBundleIdentifier</key><integer>7</integer></dict></plist>");
    home.disk.writeFile("Applications/Broken.app/Contents/Info.plist", "<plist><dict>");
    home.disk.writeFile("Applications/Nameless.app/Contents/Info.plist",
        "<plist><dict><key>CFBundleIdentifier</key><string></string></dict></plist>");

    const std::string support = "~/Library/Application Support/";
    for (const auto* owned : {"com.example.x", "editor.data", "com.apple.anything", "net.hidden.y",
             "über öffner.savedState", "Flat.data", "Single.data", "Numbers.data", "BROKEN.data",
             "Nameless.data"})
        home.file(support + owned, 1);
    for (const auto* orphan : {".DS_Store", "org.nested.Tool", "org.upper.Tool", "Nested.data"})
        home.file(support + orphan, 1);
    EXPECT_THAT(orphanNames(home),
        ElementsAre(".DS_Store", "Nested.data", "org.nested.Tool", "org.upper.Tool"));
}

TEST(OrphanScan, LeavesRunningApplicationsTheirData)
{
    const MacHome home;
    home.file("~/Library/Containers/org.portable.Reader/data", 1);
    home.file("~/Library/Containers/org.portable.Other/data", 1);
    home.file("~/Library/Preferences/Portable Écran.helper.plist", 1);
    home.runningApplications->applications = {{.identifier = "Org.Portable.reader", .name = {}},
        {.identifier = {}, .name = "Portable écran"}};
    EXPECT_THAT(orphanNames(home), ElementsAre("org.portable.Other"));
}

TEST(OrphanScan, NeedsAFolderThatMayBeWrittenTo)
{
    const test::AsOrdinaryUser user;
    const MacHome home;
    home.file("~/Library/Containers/org.gone.tool/data", 1);
    home.file("~/Library/Preferences/org.gone.tool.plist", 1);
    home.disk.setMode("Users/alice/Library/Containers", 0500);
    home.disk.setMode("Users/alice/Library/Preferences", 0500);
    EXPECT_THAT(orphanNames(home), ElementsAre("org.gone.tool.plist")) << "nobody asks there";
}

TEST(OrphanScan, FindsNothingInANativeHome)
{
    const test::TemporaryTree tree;
    tree.file("home/.local/share/org.gone.tool/data", 1);
    tree.file("home/.local/share/Trash/files/old", 6);
    const SmartScanner scanner(makeHostLayout({.home = tree / "home"}),
        {.clock = std::make_shared<test::FakeClock>(),
            .calendar = std::make_shared<SystemCalendar>(),
            .runningApplications = std::make_shared<test::FakeRunningApplications>()});
    EXPECT_THAT(scanner.scanCategory(orphanedApps), IsEmpty());
    const auto inTrash = scanner.scanCategory(trash);
    ASSERT_EQ(inTrash.size(), 1U);
    EXPECT_EQ(inTrash[0].record.path, tree / "home/.local/share/Trash/files/old");
}

} // namespace
} // namespace kestavon
