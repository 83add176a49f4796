#include "support/temporary_tree.h"
#include "system/app_uninstaller.h"

#include <filesystem>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A Mac's disk that is attached here, with a home on it.
class UninstallerOfAMac : public testing::Test {
protected:
    UninstallerOfAMac() { disk.folder("home/Library"); }

    void install(const std::string& bundle, const std::string& identifier)
    {
        disk.writeFile(bundle + "/Contents/Info.plist",
            "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>" + identifier
                + "</string></dict></plist>");
    }
    void leave(const std::string& name, std::int64_t bytes)
    {
        disk.file("home/Library/" + name, bytes);
    }
    std::vector<InstalledApp> scan(const std::stop_token& stop = {})
    {
        return AppUninstaller(makeHostLayout({.home = disk / "home", .systemRoot = disk.path()}))
            .scanInstalledApps(stop);
    }
    static std::vector<std::string> namesOf(const std::vector<InstalledApp>& apps)
    {
        std::vector<std::string> names;
        for (const auto& app : apps)
            names.push_back(app.name + " " + app.bundleID.value_or("-"));
        return names;
    }
    std::vector<std::string> leftoversOf(const InstalledApp& app)
    {
        std::vector<std::string> texts;
        for (const auto& leftover : app.leftovers)
            texts.push_back(leftover.url.substr((disk / "home/Library/").size()) + " "
                + std::to_string(leftover.size) + " " + std::string(rawValue(leftover.kind)));
        return texts;
    }

    test::TemporaryTree disk;
};

TEST_F(UninstallerOfAMac, ListsApplicationsOfTheTwoFoldersAndTheirOwnOnly)
{
    install("Applications/Viewer.app", "org.example.Viewer");
    install("Applications/Utilities/Console.app", "org.example.Console");
    install("Applications/.Hidden.app", "org.example.Hidden");
    install("System/Applications/Mail.app", "org.example.Mail");
    install("home/Applications/Editor.app", "com.example.Editor");
    disk.file("Applications/flat.app", 3);
    disk.file("Applications/Loud.APP", 3);
    disk.folder("Applications/Empty.app");
    const auto apps = scan();
    EXPECT_THAT(namesOf(apps),
        ElementsAre("Empty -", "Viewer org.example.Viewer", "flat -", "Editor com.example.Editor"));
    EXPECT_EQ(apps[3].appURL, disk / "home/Applications/Editor.app");
    EXPECT_THAT(apps[3].leftovers, IsEmpty());
}

TEST_F(UninstallerOfAMac, FindsWhatAnApplicationLeavesFolderByFolder)
{
    install("Applications/Editor.app", "com.example.Editor");
    leave("Saved Application State/com.example.editor.savedState/data", 8);
    leave("Saved Application State/com.example.editor.x", 9); // a file
    leave("Preferences/com.example.Editor.plist", 7);
    leave("Preferences/com.example.editor.folder.plist/x", 7);
    leave("HTTPStorages/com.example.Editor/x", 6);
    leave("Application Scripts/com.example.Editor/x", 5);
    leave("Containers/com.example.Editor/Data/x", 4);
    leave("Logs/Editor.log", 3);
    leave("Caches/.com.example.editor.hidden/x", 2);
    leave("Application Support/Editor/a/b", 1);
    leave("Application Support/Editor/.hidden", 1);
    leave("Application Support/Editor/Helper.app/Contents/large", 1000); // a package
    leave("Application Support/Editor Empty/none", 0);
    leave("Application Support/Editor.xpc", 10);
    disk.link("home/Library/Caches/editor.link", "four");
    leave("WebKit/com.example.Editor/x", 100); // no place of these

    const auto apps = scan();
    ASSERT_EQ(apps.size(), 1U);
    EXPECT_THAT(leftoversOf(apps[0]),
        ElementsAre("Application Support/Editor 2 App Support",
            "Caches/.com.example.editor.hidden 2 Cache", "Caches/editor.link 4 Cache",
            "Logs/Editor.log 3 Logs", "Containers/com.example.Editor 4 Container",
            "Application Scripts/com.example.Editor 5 App Support",
            "HTTPStorages/com.example.Editor 6 Cache",
            "Preferences/com.example.Editor.plist 7 Preferences",
            "Saved Application State/com.example.editor.savedState 8 Saved State"));
    EXPECT_EQ(apps[0].leftoverBytes(), 41);
}

TEST_F(UninstallerOfAMac, ThoseThatLeaveMostComeFirst)
{
    for (const auto* name : {"A", "B", "C", "D"})
        install("Applications/" + std::string(name) + ".app", "org.example." + std::string(name));
    leave("Caches/B/x", 10);
    leave("Logs/b.log/x", 5);
    leave("Caches/D/x", 20);
    const auto apps = scan();
    EXPECT_THAT(namesOf(apps),
        ElementsAre("D org.example.D", "B org.example.B", "A org.example.A", "C org.example.C"));
}

TEST_F(UninstallerOfAMac, WhatSeveralApplicationsLeaveIsListedWithEach)
{
    install("Applications/One.app", "org.example.Editor");
    install("Applications/Two.app", "com.other.Editor");
    leave("Caches/Editor/x", 10);
    const auto apps = scan();
    EXPECT_EQ(apps[0].leftovers.at(0).url, apps[1].leftovers.at(0).url);
    EXPECT_NE(apps[0].leftovers.at(0).id, apps[1].leftovers.at(0).id);
}

TEST_F(UninstallerOfAMac, AStopBringsBackWhatWasFound)
{
    install("Applications/One.app", "org.example.Editor");
    leave("Caches/Editor/x", 10);
    std::stop_source source;
    source.request_stop();
    EXPECT_THAT(scan(source.get_token()), IsEmpty());
}

TEST(UninstallerOfALinuxHome, FindsWhatAnApplicationLeavesFolderByFolder)
{
    const test::TemporaryTree disk;
    const auto install = [&disk](const std::string& folder, const std::string& id,
                             const std::string& name, const std::string& exec) {
        disk.writeFile(folder + "/applications/" + id + ".desktop",
            "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=" + exec + "\n");
    };
    install("usr/share", "org.example.Painter", "Painter", "painter-gtk %U");
    install("usr/share", "org.example.Player", "Tune Player", "tunes");
    install("home/a/.local/share", "own", "Own Tool", "/home/a/own");
    for (const auto* file : {".config/painterrc", ".config/Painter/x", ".config/painter.conf",
             ".cache/painter/x", ".local/share/org.example.Painter/x", ".local/state/painter-2/x",
             ".var/app/org.example.Painter/data/x", ".config/autostart/org.example.painter.desktop",
             ".painter/x", ".painter-old/x", ".config/paint/x", ".local/share/tunes/x",
             ".local/share/painter-tunes/x", ".local/share/org.example/x", ".cache/empty/x"})
        disk.file(std::string("home/a/") + file, 5);
    disk.folder("home/a/.config/painter-empty");
    const auto apps
        = AppUninstaller(makeHostLayout({.home = disk / "home/a", .systemRoot = disk.path()}))
              .scanInstalledApps();
    std::vector<std::string> texts;
    for (const auto& app : apps) {
        texts.push_back(app.name + (app.canBeMoved ? "" : ", managed"));
        for (const auto& leftover : app.leftovers)
            texts.push_back(leftover.url.substr((disk / "home/a/").size()) + " "
                + std::string(rawValue(leftover.kind)));
    }
    EXPECT_THAT(texts,
        ElementsAre("Painter, managed", ".config/painter.conf Preferences",
            ".config/painterrc Preferences", ".config/Painter App Support", ".cache/painter Cache",
            ".local/share/org.example.Painter App Support",
            ".local/share/painter-tunes App Support", ".local/state/painter-2 Other",
            ".var/app/org.example.Painter Container",
            ".config/autostart/org.example.painter.desktop Other", ".painter App Support",
            "Tune Player, managed", ".local/share/tunes App Support", "Own Tool"));
}

TEST(UninstallerOfALinuxHome, WhatMayNotBeRemovedIsNobodysLeftover)
{
    const test::TemporaryTree disk;
    disk.writeFile("usr/share/applications/org.kestavon.Kestavon.desktop",
        "[Desktop Entry]\nType=Application\nName=Kestavon\nExec=kestavon\n");
    disk.file("home/a/.local/share/Kestavon/Safe Area/held", 5);
    disk.file("home/a/.config/Kestavon/settings.json", 5);
    disk.file("home/a/.local/state/kestavon/x", 5);
    const auto layout = makeHostLayout({.home = disk / "home/a", .systemRoot = disk.path()});
    const auto apps = AppUninstaller(
        layout, std::make_shared<const ProtectedPlaces>(ProtectedPlaces::listsFor(layout)))
                          .scanInstalledApps();
    ASSERT_EQ(apps.size(), 1U);
    ASSERT_EQ(apps[0].leftovers.size(), 1U);
    EXPECT_EQ(apps[0].leftovers[0].url, disk / "home/a/.local/state/kestavon");
}

TEST(UninstallerOfALinuxHome, WhatSeveralApplicationsClaimIsListedWithNone)
{
    const test::TemporaryTree disk;
    for (const std::string name : {"one", "two"})
        disk.writeFile("usr/share/applications/org." + name + ".Sketch.desktop",
            "[Desktop Entry]\nType=Application\nName=Sketch\nExec=" + name + "\n");
    disk.file("home/a/.config/sketch/x", 5);
    disk.file("home/a/.config/org.one.Sketch/x", 5);
    const auto apps
        = AppUninstaller(makeHostLayout({.home = disk / "home/a", .systemRoot = disk.path()}))
              .scanInstalledApps();
    ASSERT_EQ(apps.size(), 2U);
    EXPECT_EQ(apps[0].bundleID, "org.one.Sketch");
    EXPECT_EQ(apps[0].leftovers.size(), 1U);
    EXPECT_THAT(apps[1].leftovers, IsEmpty());
}

} // namespace
} // namespace kestavon
