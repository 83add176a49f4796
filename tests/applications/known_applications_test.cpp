#include "applications/known_applications.h"
#include "applications/linux_machine.h"

#include <algorithm>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::LinuxMachine;
using testing::Contains;
using testing::ElementsAre;

std::vector<std::string> toldOf(const LinuxMachine& machine)
{
    std::vector<std::string> texts;
    for (const auto& application : knownApplications(machine.layout()))
        texts.push_back(application.name + " " + application.identifier.value_or("-")
            + (application.isManaged ? " managed" : "") + (application.isShown ? "" : " unseen"));
    std::ranges::sort(texts);
    return texts;
}

TEST(KnownApplications, AreOneForAllThatTellsOfOneProgram)
{
    const LinuxMachine machine;
    const std::string folder = "usr/share/applications/";
    machine.entry(folder + "libreoffice-startcenter.desktop", "LibreOffice", "libreoffice %U");
    machine.entry(folder + "libreoffice-writer.desktop", "Writer", "libreoffice --writer %U");
    machine.entry(folder + "org.kde.krita.desktop", "Krita", "krita %F");
    machine.entry(folder + "krita_png.desktop", "Krita", "krita %F", "NoDisplay=true\n");
    // One program runs many others, and they have nothing to do with each other.
    machine.entry(folder + "one.desktop", "One", "python3 /usr/share/one/one.py");
    machine.entry(folder + "two.desktop", "Two", "sh -c two");
    machine.entry(folder + "agent.desktop", "Agent", "agent", "NoDisplay=true\n");
    machine.entry(folder + "gone.desktop", "Gone", "gone", "Hidden=true\n");
    EXPECT_THAT(toldOf(machine),
        ElementsAre("Agent agent managed unseen", "Krita org.kde.krita managed",
            "LibreOffice libreoffice-startcenter managed", "One one managed", "Two two managed"));
}

TEST(KnownApplications, OnlyWhatNoPackageManagerOwnsIsTheUsers)
{
    const LinuxMachine machine;
    const std::string own = "home/alice/.local/share/";
    machine.entry(own + "applications/tool.desktop", "Tool", "/home/alice/tool/run");
    machine.disk.writeFile("home/alice/Applications/Krita-5.2.2-x86_64.AppImage");
    machine.entry(own + "applications/krita.desktop", "Krita (AppImage)",
        machine.disk / "home/alice/Applications/Krita-5.2.2-x86_64.AppImage" + " %F");
    const std::string flatpak = "var/lib/flatpak/";
    machine.disk.folder(flatpak + "app/org.example.Editor");
    machine.entry(flatpak + "exports/share/applications/org.example.Editor.desktop", "Editor",
        "/usr/bin/flatpak run --command=editor org.example.Editor",
        "X-Flatpak=org.example.Editor\n");
    machine.disk.folder(own + "flatpak/app/org.example.Own");
    machine.entry("var/lib/snapd/desktop/applications/hello_hello.desktop", "Hello",
        "env BAMF=x /snap/bin/hello", "X-SnapInstanceName=hello\n");
    EXPECT_THAT(toldOf(machine),
        ElementsAre("Editor org.example.Editor managed", "Hello hello_hello managed",
            "Krita (AppImage) krita", "Tool tool",
            "org.example.Own org.example.Own managed unseen"));
    const auto applications = knownApplications(machine.layout());
    const auto krita = std::ranges::find(applications, "Krita (AppImage)", &KnownApplication::name);
    ASSERT_NE(krita, applications.end());
    EXPECT_EQ(krita->path, machine.disk / "home/alice/Applications/Krita-5.2.2-x86_64.AppImage");
}

TEST(KnownApplications, HaveTheNamesUnderWhichTheyKeepData)
{
    const LinuxMachine machine;
    machine.entry("usr/share/applications/org.gnome.gedit.desktop", "Text Editor", "gedit %U",
        "Icon=accessories-text-editor\nStartupWMClass=Gedit\n");
    machine.entry("usr/share/applications/firefox-esr.desktop", "Firefox ESR",
        "/usr/lib/firefox-esr/firefox-esr %u", "Icon=firefox-esr\n");
    const auto applications = knownApplications(machine.layout());
    ASSERT_EQ(applications.size(), 2U);
    const auto& firefox = applications[0].terms;
    for (const auto* term : {"firefox-esr", "firefox", "mozilla"})
        EXPECT_THAT(firefox, Contains(term));
    const auto& gedit = applications[1].terms;
    EXPECT_THAT(gedit, ElementsAre("org.gnome.gedit", "gnome.gedit", "gedit"));
    EXPECT_EQ(applications[1].icon, "accessories-text-editor");
}

} // namespace
} // namespace kestavon
