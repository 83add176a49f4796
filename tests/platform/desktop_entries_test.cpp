#include "platform/linux/desktop_entries.h"
#include "support/environment_variable.h"
#include "support/temporary_folder.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace kestavon {

static void PrintTo(const DesktopCommand& command, std::ostream* stream)
{
    *stream << static_cast<int>(command.kind) << ' ' << command.target;
}

namespace {

using test::TemporaryFolder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Kind = DesktopCommand::Kind;

const std::vector<std::string> german = languagesOf("de_AT.UTF-8");

std::string entryNamed(const std::string& name)
{
    return "[Desktop Entry]\nType=Application\nName=" + name + '\n';
}

std::vector<std::string> identifiersOf(const std::vector<DesktopEntry>& entries)
{
    std::vector<std::string> identifiers;
    for (const auto& entry : entries)
        identifiers.push_back(entry.identifier);
    return identifiers;
}

TEST(DesktopEntry, TellsWhatItsFirstGroupSays)
{
    const auto entry = parseDesktopEntry("# made by hand\r\n"
                                         "[Elsewhere]\nName=Wrong\n"
                                         "[Desktop Entry]\r\n"
                                         "Type = Application\r\n"
                                         "Name=Editor\nName[fr]=Éditeur\nName[de]=Bearbeiter\n"
                                         "Icon=org.example.Editor\nExec=editor %U\n"
                                         "TryExec=/usr/bin/editor\nStartupWMClass=Editor\\sOne\n"
                                         "X-Flatpak=org.example.Editor\nX-SnapInstanceName=edit\n"
                                         "OnlyShowIn=GNOME;KDE;\nNotShowIn=XFCE\n"
                                         "NoDisplay=true\nHidden=false\n"
                                         "X-GNOME-Autostart-enabled=false\nnonsense\n"
                                         "[Desktop Action new]\nName=New\nExec=other\n",
        german);
    DesktopEntry said;
    said.name = "Bearbeiter";
    said.icon = "org.example.Editor";
    said.command.target = "editor";
    said.tryExec = "/usr/bin/editor";
    said.windowClass = "Editor One";
    said.flatpak = "org.example.Editor";
    said.snap = "edit";
    said.onlyShownIn = {"GNOME", "KDE"};
    said.notShownIn = {"XFCE"};
    said.isApplication = true;
    said.isNotDisplayed = true;
    said.startsWithSession = false;
    EXPECT_EQ(entry, said);
    EXPECT_EQ(parseDesktopEntry("[Desktop Entry]", {}), DesktopEntry());
}

TEST(DesktopEntry, TakesTheNameThatTheLanguageAsksFor)
{
    const auto name = [](const std::string& locale) {
        return parseDesktopEntry("[Desktop Entry]\nName=plain\nName[sr@latin]=sr@latin\n"
                                 "Name[sr]=sr\nName[pt_BR]=pt_BR\nName[pt]=\n",
            languagesOf(locale))
            ->name;
    };
    EXPECT_EQ(name("sr_RS.UTF-8@latin"), "sr@latin");
    EXPECT_EQ(name("sr_RS.UTF-8"), "sr");
    EXPECT_EQ(name("pt_BR"), "pt_BR");
    EXPECT_EQ(name("pt_PT.UTF-8"), "plain") << "an empty translation is none";
    EXPECT_EQ(name("C.UTF-8"), "plain");
    EXPECT_EQ(name(""), "plain");
    EXPECT_THAT(
        languagesOf("de_AT.UTF-8@euro"), ElementsAre("de_AT@euro", "de_AT", "de@euro", "de"));
}

TEST(DesktopEntry, AsksTheEnvironmentForTheLanguagesAsGettextDoes)
{
    const test::ScopedVariable all("LC_ALL", {});
    const test::ScopedVariable messages("LC_MESSAGES", "fr_FR.UTF-8");
    const test::ScopedVariable lang("LANG", "de_DE.UTF-8");
    const test::ScopedVariable none("LANGUAGE", {});
    EXPECT_THAT(userLanguages(), ElementsAre("fr_FR", "fr"));
    const test::ScopedVariable list("LANGUAGE", "it:de_DE");
    EXPECT_THAT(userLanguages(), ElementsAre("it", "de_DE", "de"));
    const test::ScopedVariable plain("LC_ALL", "C");
    EXPECT_THAT(userLanguages(), IsEmpty());
}

TEST(DesktopCommand, IsTheProgramThatStartsInTheEnd)
{
    const std::pair<const char*, DesktopCommand> lines[]{
        {"firefox-esr %u", {Kind::program, "firefox-esr"}},
        {"\"/opt/My App/run\" --new", {Kind::program, "/opt/My App/run"}},
        {R"("/opt/a\$b\\c")", {Kind::program, "/opt/a$b\\c"}},
        {"'/opt/it s'/x", {Kind::program, "/opt/it s/x"}},
        {"/opt/100%%/run", {Kind::program, "/opt/100%/run"}},
        {"%k  run", {Kind::program, "run"}},
        {"env -u LANG --chdir /tmp GTK_THEME=a/b X= gimp", {Kind::program, "gimp"}},
        {"/usr/bin/env nohup setsid -f env A=b \"my app\"", {Kind::program, "my app"}},
        {"pkexec --disable-internal-agent /usr/sbin/gparted", {Kind::program, "/usr/sbin/gparted"}},
        {"sh -c \"exec thing\"", {Kind::program, "sh"}},
        {"/usr/bin/flatpak run --branch=stable --command firefox --file-forwarding "
         "org.mozilla.firefox @@u %u @@",
            {Kind::flatpak, "org.mozilla.firefox"}},
        {"flatpak --user run org.example.App", {Kind::flatpak, "org.example.App"}},
        {"flatpak update", {Kind::program, "flatpak"}},
        {"flatpak run --branch 1.2.3", {Kind::program, "flatpak"}},
        {"snap run --hook=x lxd.lxc", {Kind::snap, "lxd.lxc"}},
        {"env BAMF_DESKTOP_FILE_HINT=/x.desktop /snap/bin/firefox %u", {Kind::snap, "firefox"}},
        {"env A=b", {}},
        {" \t", {}},
        {"\"unclosed", {Kind::program, "unclosed"}},
    };
    for (const auto& [line, command] : lines)
        EXPECT_EQ(desktopCommandOf(line), command) << line;
}

TEST(DesktopEntry, IsAbsentOrPoorerWhereTheFileIsHostile)
{
    EXPECT_EQ(parseDesktopEntry("", {}), std::nullopt);
    EXPECT_EQ(parseDesktopEntry("Name=a\n[Other]\nName=b", {}), std::nullopt);
    EXPECT_EQ(parseDesktopEntry({"[Desktop Entry]\nName=a\0b\n", 25}, {}), std::nullopt);
    const auto nameOf = [](const std::string& name) {
        return parseDesktopEntry("[Desktop Entry]\nName[de]=" + name + "\nName=plain\n", german)
            ->name;
    };
    EXPECT_EQ(nameOf("\xFF\xFE"), "plain");
    EXPECT_EQ(nameOf(std::string(5000, 'a')), "plain");

    const TemporaryFolder folder;
    folder.writeFile("huge.desktop", entryNamed("Huge") + std::string(300 * 1024, '#'));
    folder.makeFolder("folder.desktop");
    ASSERT_EQ(::mkfifo((folder / "pipe.desktop").c_str(), 0600), 0);
    std::filesystem::create_symlink("nowhere", folder / "dangling.desktop");
    std::filesystem::create_directory_symlink(".", folder / "loop");
    folder.writeFile("notes.txt", entryNamed("Notes"));
    folder.writeFile("real/whole", entryNamed("Whole"));
    std::filesystem::create_symlink("real/whole", folder / "linked.desktop");
    EXPECT_THAT(identifiersOf(readDesktopEntriesIn(folder.path(), german)), ElementsAre("linked"));
    const std::string folders[]{folder.path(), folder / "missing"};
    EXPECT_EQ(readDesktopEntries(folders, german).front().identifier, "linked");
}

TEST(DesktopEntries, ComeOnceEachFromTheFolderThatGoesFirst)
{
    const TemporaryFolder folder;
    folder.writeFile("user/editor.desktop", entryNamed("Mine") + "Hidden=true\n");
    folder.writeFile("user/kde/org.kde.app.desktop", entryNamed("Nested"));
    std::filesystem::create_symlink("nowhere", folder / "user/viewer.desktop");
    folder.writeFile("system/editor.desktop", entryNamed("Theirs"));
    folder.writeFile("system/kde-org.kde.app.desktop", entryNamed("Shadowed"));
    folder.writeFile("system/viewer.desktop", entryNamed("Viewer"));
    const std::string folders[]{folder / "user", folder / "system"};
    const auto entries = readDesktopEntries(folders, german);
    ASSERT_THAT(identifiersOf(entries), ElementsAre("editor", "kde-org.kde.app", "viewer"));
    EXPECT_EQ(entries[0].name, "Mine");
    EXPECT_TRUE(entries[0].isHidden);
    EXPECT_EQ(entries[1].path, folder / "user/kde/org.kde.app.desktop");
    EXPECT_EQ(entries[2].name, "Viewer");
}

TEST(DesktopEntry, IsShownInTheDesktopsItNames)
{
    const std::vector<std::string> ubuntu{"ubuntu", "GNOME"};
    DesktopEntry entry;
    const auto isShown
        = [&](const std::vector<std::string>& only, const std::vector<std::string>& never) {
              entry.onlyShownIn = only;
              entry.notShownIn = never;
              return isShownIn(entry, ubuntu);
          };
    EXPECT_TRUE(isShown({}, {}));
    EXPECT_TRUE(isShown({"KDE", "GNOME"}, {}));
    EXPECT_TRUE(isShown({"ubuntu"}, {"GNOME"}));
    EXPECT_FALSE(isShown({}, {"GNOME"}));
    EXPECT_FALSE(isShown({"KDE"}, {}));
    EXPECT_FALSE(isShownIn(entry, {})) << "where nobody knows the desktop";
    const test::ScopedVariable current("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    EXPECT_EQ(currentDesktops(), ubuntu);
}

} // namespace
} // namespace kestavon
