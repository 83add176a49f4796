#include "support/binary_list.h"
#include "support/environment_variable.h"
#include "support/temporary_tree.h"
#include "system/startup_items.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string job(const std::string& entries)
{
    return "<plist version=\"1.0\"><dict>" + entries + "</dict></plist>";
}

std::string text(const std::string& key, const std::string& value)
{
    return "<key>" + key + "</key><string>" + value + "</string>";
}

std::vector<std::string> labelsAndPrograms(const std::vector<StartupItem>& items)
{
    std::vector<std::string> texts;
    for (const auto& item : items)
        texts.push_back(item.label + ": " + item.programPath);
    return texts;
}

TEST(StartupItems, TellWhatAJobIsCalledAndWhatItRuns)
{
    const test::TemporaryTree tree;
    const auto arguments = [](const std::string& elements) {
        return "<key>ProgramArguments</key><array>" + elements + "</array>";
    };
    const auto write = [&tree](const std::string& name, const std::string& content) {
        tree.writeFile("agents/" + name, content);
    };
    write("a.plist",
        job(text("Label", "called a") + text("Program", "/bin/a")
            + arguments("<string>/bin/other</string>")));
    write("b.plist", job(arguments("<string>/usr/bin/true</string><string>-x</string>")));
    write("c.plist", job("<key>Label</key><integer>3</integer>" + arguments("")));
    write("d.plist", job(arguments("<string>/bin/d</string><integer>1</integer>")));
    write("e.plist", job(""));
    write(
        "f.plist", job(text("Label", "") + text("Program", "") + arguments("<string>x</string>")));
    write(".hidden.plist", job(text("Program", "/bin/h")));
    test::BinaryList binary;
    binary.objects = {std::string("\xd1\x01\x02"), "\x57Program", "\x56/bin/z"};
    write("z.plist", binary.bytes());

    EXPECT_THAT(labelsAndPrograms(listStartupItems({{{tree / "agents", false}}})),
        ElementsAre(".hidden: /bin/h", "called a: /bin/a", "b: /usr/bin/true",
            "c: ", "d: ", "e: ", ": ", "z: /bin/z"));
}

TEST(StartupItems, LeaveOutWhatDefinesNoJob)
{
    const test::TemporaryTree tree;
    tree.writeFile("agents/readme.txt", job(""));
    tree.writeFile("agents/job.PLIST", job(""));
    tree.writeFile("agents/.plist", job(""));
    tree.writeFile("agents/broken.plist", "<plist><dict>");
    tree.writeFile("agents/list.plist", "<plist version=\"1.0\"><array/></plist>");
    tree.writeFile("agents/folder.plist/job.plist", job(""));
    tree.link("agents/dangling.plist", "nowhere");
    EXPECT_THAT(
        listStartupItems({{{tree / "agents", false}, {tree / "missing", true}}}), IsEmpty());
}

TEST(StartupItems, TheUsersOwnComeFirstAndFoldersKeepTheirOrder)
{
    const test::TemporaryTree tree;
    for (const auto* path : {"daemons/a.plist", "agents/b.plist", "own/d.plist", "own/c.plist"})
        tree.writeFile(path, job(""));
    const auto items = listStartupItems(
        {{{tree / "daemons", true}, {tree / "own", false}, {tree / "agents", true}}});
    std::vector<std::string> paths;
    for (const auto& item : items)
        paths.push_back(item.plistURL);
    EXPECT_THAT(paths,
        ElementsAre(tree / "own/c.plist", tree / "own/d.plist", tree / "daemons/a.plist",
            tree / "agents/b.plist"));
    EXPECT_FALSE(items[1].isSystem);
    EXPECT_TRUE(items[2].isSystem);
    EXPECT_NE(items[0].id, items[1].id);
}

TEST(StartupItems, AMacsHomeHasItsOwnAndTheDisksFolders)
{
    const test::TemporaryTree disk;
    disk.folder("Users/a/Library");
    const auto layout = makeHostLayout({.home = disk / "Users/a", .systemRoot = disk.path()});
    std::vector<std::string> folders;
    for (const auto& [folder, isSystem, form] : layout.startupFolders)
        folders.push_back(folder + (isSystem ? " (system)" : ""));
    EXPECT_THAT(folders,
        ElementsAre(disk / "Users/a/Library/LaunchAgents",
            disk / "Library/LaunchAgents" + " (system)",
            disk / "Library/LaunchDaemons" + " (system)"));
}

/// A machine with a home, and the startup items that it has in a session of this desktop.
class StartupOfALinuxHome : public testing::Test {
protected:
    void entry(const std::string& path, const std::string& lines) const
    {
        disk.writeFile(path, "[Desktop Entry]\nType=Application\n" + lines);
    }
    std::vector<std::string> items() const
    {
        const auto layout = makeHostLayout({.home = disk / "home/a",
            .systemRoot = disk.path(),
            .xdgConfigDirs = disk / "vendor" + ":" + (disk / "etc/xdg")});
        std::vector<std::string> texts;
        for (const auto& item : listStartupItems(layout.startupFolders))
            texts.push_back(
                item.label + ": " + item.programPath + (item.isSystem ? " (system)" : ""));
        return texts;
    }

    test::TemporaryTree disk;
    test::ScopedVariable desktop{"XDG_CURRENT_DESKTOP", "KDE"};
    test::ScopedVariable language{"LANGUAGE", "de"};
    test::ScopedVariable locale{"LC_ALL", "de_DE.UTF-8"};
};

TEST_F(StartupOfALinuxHome, IsWhatTheSessionWouldStart)
{
    const std::string own = "home/a/.config/autostart/";
    entry(own + "a.desktop", "Name=Cloud\nName[de]=Wolke\nExec=env X=1 /opt/cloud --quiet\n");
    entry(own + "b.desktop", "Exec=flatpak run org.example.App\n");
    entry(own + "c.desktop", "Name=Off\nExec=c\nHidden=true\n");
    entry(own + "d.desktop", "Name=Off too\nExec=d\nX-GNOME-Autostart-enabled=false\n");
    entry(own + "e.desktop", "Name=Not there\nExec=e\nTryExec=/nonexistent/e\n");
    entry(own + "shadow.desktop", "Name=Mine\nExec=mine\n");
    disk.writeFile(own + "notes.txt", "[Desktop Entry]\nType=Application\nExec=x\n");
    entry("vendor/autostart/shadow.desktop", "Name=Theirs\nExec=theirs\n");
    entry("vendor/autostart/c.desktop", "Name=On for others\nExec=c\n");
    entry("etc/xdg/autostart/g.desktop", "Name=Index\nExec=index\nOnlyShowIn=GNOME;Unity;\n");
    entry("etc/xdg/autostart/k.desktop", "Name=Wallet\nExec=wallet\nOnlyShowIn=KDE;\n");
    entry("etc/xdg/autostart/n.desktop", "Name=Applet\nExec=applet\nNotShowIn=KDE;\n");
    EXPECT_THAT(items(),
        ElementsAre("Wolke: /opt/cloud", "b: org.example.App", "Mine: mine",
            "Index (GNOME, Unity only): index (system)", "Wallet: wallet (system)",
            "Applet (not in KDE): applet (system)"));
}

TEST_F(StartupOfALinuxHome, IncludesUnitsThatLinksEnable)
{
    const std::string units = "home/a/.config/systemd/user/";
    disk.writeFile(units + "backup.timer", "[Timer]\nOnCalendar=daily\n");
    disk.writeFile(units + "backup.service",
        "[Unit]\nExecStart=/no\n[Service]\nType=oneshot\nExecStart=-@/usr/bin/backup backup "
        "--all\n");
    disk.writeFile(units + "own.service",
        "[Service]\nExecStart=/usr/bin/theirs\nExecStart=\nExecStart=/usr/bin/own\n"
        "ExecStart=/usr/bin/second\n");
    disk.writeFile(units + "quoted.service", "[Service]\nExecStart = \"/opt/a b/run\" -x\n");
    for (const auto* folder :
        {"timers.target.wants", "default.target.wants", "default.target.requires"})
        disk.folder(units + folder);
    disk.folder("etc/systemd/system/multi-user.target.wants");
    disk.link(units + "timers.target.wants/backup.timer", disk / (units + "backup.timer"));
    disk.link(units + "default.target.wants/quoted.service", disk / (units + "quoted.service"));
    disk.link(units + "default.target.wants/own.service", disk / (units + "own.service"));
    disk.link(units + "default.target.requires/gone.service", "/nonexistent/gone.service");
    disk.link(units + "default.target.wants/basic.target", "/nonexistent/basic.target");
    disk.writeFile(units + "default.target.wants/file.service", "[Service]\nExecStart=/x\n");
    disk.writeFile("lib/sshd.service", "[Service]\nExecStart=/usr/sbin/sshd -D\n");
    disk.link("etc/systemd/system/multi-user.target.wants/sshd.service", disk / "lib/sshd.service");
    EXPECT_THAT(items(),
        ElementsAre("own.service: /usr/bin/own", "quoted.service: /opt/a b/run",
            "backup.timer: /usr/bin/backup",
            "gone.service: ", "sshd.service: /usr/sbin/sshd (system)"));
}

} // namespace
} // namespace kestavon
