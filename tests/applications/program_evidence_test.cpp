#include "applications/linux_machine.h"
#include "applications/program_evidence.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

TEST(ProgramEvidence, TellsAProgramThatWasHereFromEverythingElse)
{
    const test::LinuxMachine machine;
    const auto& disk = machine.disk;
    machine.entry("usr/share/applications/org.example.Editor.desktop", "Editor", "editor-bin");
    disk.writeFile("usr/bin/mytool");
    disk.writeFile("usr/share/dbus-1/services/org.example.Service.service");
    disk.writeFile("var/lib/dpkg/status",
        "Package: installed-one\nStatus: install ok installed\nVersion: 1\n\n"
        "Package: leftover\nStatus: deinstall ok config-files\n\n");
    disk.writeFile("var/log/dpkg.log",
        "2026-01-01 10:00:00 remove mousepad:amd64 0.5 <none>\n"
        "2026-01-01 10:00:01 remove transmission-gtk:amd64 3 <none>\n"
        "2026-01-01 10:00:02 install comer:amd64 <none> 1\n"
        "2026-01-01 10:00:03 remove installed-one:amd64 1 <none>\n"
        "2026-01-01 10:00:03 remove pidgin:amd64 1 <none>\n");
    disk.writeFile("var/lib/apt/lists/debian_Packages",
        "Package: available\nDescription: Package: none\n\nPackage: mytool\n\nPackage: git\n");
    const std::vector<std::string> running{"net.example.Running"};
    const ProgramEvidence evidence(machine.layout(), running);
    const struct {
        const char* name;
        bool isAbandoned;
    } rows[] = {
        // Packages that were here, or can be.
        {"mousepad", true},
        {"Mousepad", true},
        {"mousepadrc", true},
        {"mousepad.conf", true},
        {"leftover", true},
        {"available", true},
        {"transmission", true},
        {"purple", true},
        {"mousepad-extras", false},
        {"comer", false},
        {"installed-one", false},
        // Identifiers of nobody.
        {"com.gone.App", true},
        {"com.gone.App.conf", true},
        {"com.gone.app.db", false},
        {"com.gone", false},
        {"my.own.notes", false},
        {"com..app", false},
        // Of what is here.
        {"org.example.Editor", false},
        {"org.example.Editor.helper", false},
        {"org.example", false},
        {"editor-bin", false},
        {"org.example.Service", false},
        {"org.example.Service.data", false},
        {"net.example.Running", false},
        {"mytool", false},
        // The desktop's own, and what nobody knows.
        {"git", false},
        {"org.gone.Desktop", false}, // rather a file's ending
        {"gtk-3.0", false},
        {"kdeglobals", false},
        {"dconf", false},
        {"thesis", false},
        {"", false},
        {".git", false},
    };
    for (const auto& [name, isAbandoned] : rows)
        EXPECT_EQ(evidence.isAbandoned(name), isAbandoned) << name;
    EXPECT_TRUE(evidence.isAbandonedIdentifier("org.gone.App"));
    EXPECT_FALSE(evidence.isAbandonedIdentifier("org.example.Editor"));
    EXPECT_FALSE(evidence.isAbandonedIdentifier("available"));
}

} // namespace
} // namespace kestavon
