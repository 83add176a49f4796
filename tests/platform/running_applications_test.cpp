#include "platform/linux/process_stat.h"
#include "platform/linux/small_file.h"
#include "platform/running_applications.h"
#include "support/temporary_folder.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <mutex>

#include <gmock/gmock.h>
#include <unistd.h>

namespace kestavon {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// What one process says of itself.
struct Said {
    std::string name = "program";
    std::string unit = "session-2.scope";
    std::string exe = {};
    std::vector<std::string> arguments = {};
    std::map<std::string, std::string> environment = {};
    int startedAt = 1000;
    int pages = 10;
    char state = 'S';
};

/// Processes and desktop entries made by the test.
class RunningApplicationsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::filesystem::create_directories(folder / "proc/self/ns");
        std::filesystem::create_symlink("mnt:[1]", folder / "proc/self/ns/mnt");
        addEntry("org.example.Editor",
            "Name=Editor\nName[de]=Bearbeiter\nIcon=editor\n"
            "Exec=/usr/bin/editor %U\n");
    }

    void addEntry(const std::string& identifier, const std::string& lines)
    {
        folder.writeFile("share/applications/" + identifier + ".desktop",
            "[Desktop Entry]\nType=Application\n" + lines);
    }
    void addProcess(int id, const Said& said)
    {
        const auto process = "proc/" + std::to_string(id);
        std::filesystem::remove_all(folder / process);
        std::string stat = std::to_string(id) + " (" + said.name + ") " + said.state;
        for (int field = 4; field <= 52; ++field)
            stat += ' '
                + std::to_string(field == 22 ? said.startedAt
                        : field == 24        ? said.pages
                                             : 0);
        folder.writeFile(process + "/stat", stat + '\n');
        folder.writeFile(process + "/cgroup",
            "1:name=systemd:/ignored\n0::/user.slice/app.slice/" + said.unit + '\n');
        std::string arguments;
        for (const auto& argument : said.arguments)
            arguments += argument + '\0';
        folder.writeFile(process + "/cmdline", arguments);
        std::string environment;
        for (const auto& [name, value] : said.environment)
            environment += name + '=' + value + '\0';
        folder.writeFile(process + "/environ", environment);
        if (!said.exe.empty())
            std::filesystem::create_symlink(said.exe, folder / (process + "/exe"));
        folder.makeFolder(process + "/ns");
        std::filesystem::create_symlink("mnt:[1]", folder / (process + "/ns/mnt"));
    }
    std::vector<RunningApplication> running() { return machine.running(); }
    /// Identifiers and process ids.
    std::vector<std::string> seen()
    {
        std::vector<std::string> result;
        for (const auto& application : running())
            result.push_back(
                application.identifier.value_or("?") + ' ' + std::to_string(application.process));
        return result;
    }

    const test::TemporaryFolder folder;
    const SystemRunningApplications machine{{.processFolder = folder / "proc",
        .dataFolders = {folder / "share", folder / "none"},
        .languages = {"de"}}};
};

TEST_F(RunningApplicationsTest, AreToldOnceEachByTheirOldestProcess)
{
    addProcess(900, {.name = "helper", .unit = "app-org.example.Editor-1.scope", .startedAt = 80});
    addProcess(30, {.name = "editor", .unit = "app-org.example.Editor-1.scope", .startedAt = 90});
    addProcess(31, {.name = "fifteen-letters", .unit = "app-org.example.Long-2.scope"});
    addProcess(32, {.name = "bash"});
    addProcess(34, {.unit = "app-org.example.Gone-2.scope", .state = 'Z'});
    folder.writeFile("proc/33/comm", "no more than a name\n");
    folder.writeFile("proc/uptime", "1 1\n");
    const auto found = running();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0],
        (RunningApplication{.identifier = "org.example.Editor",
            .name = "Bearbeiter",
            .program = "helper",
            .icon = "editor",
            .process = 900,
            .startedAt = 80,
            .memoryBytes = 10 * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE))}));
    EXPECT_EQ(found[1].identifier, "org.example.Long");
    EXPECT_EQ(found[1].name, std::nullopt) << "the system has cut it short";
    EXPECT_THAT(
        SystemRunningApplications({.processFolder = folder / "missing"}).running(), IsEmpty());
    SystemRunningApplications().running(); // whatever this machine says
}

TEST_F(RunningApplicationsTest, AreToldByThemselvesAndNotByWhatStartedThem)
{
    const auto* const boxed = "app-flatpak-org.example.Boxed-5.scope";
    addProcess(510, {.name = "bwrap", .unit = boxed, .startedAt = 1, .pages = 1});
    addProcess(511, {.name = "xdg-dbus-proxy", .unit = boxed, .startedAt = 2});
    addProcess(512, {.name = "bwrap", .unit = boxed, .startedAt = 3});
    EXPECT_THAT(seen(), ElementsAre("org.example.Boxed 510")) << "there is no other yet";
    addProcess(514, {.name = "boxed", .unit = boxed, .startedAt = 4, .pages = 500});
    addProcess(513, {.name = "renderer", .unit = boxed, .startedAt = 5});
    const auto* const started = "app-org.example.Editor-6.scope";
    for (const auto* name : {"sh", "bash", "dash", "flatpak", "oosplash"})
        addProcess(600 + static_cast<int>(name[0]), {.name = name, .unit = started});
    addProcess(900, {.name = "shell", .unit = started, .startedAt = 2000});
    EXPECT_THAT(seen(), ElementsAre("org.example.Boxed 514", "org.example.Editor 900"));
    EXPECT_EQ(
        running().front().memoryBytes, 500 * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE)));
    EXPECT_EQ(running().front().program, "boxed");
}

TEST_F(RunningApplicationsTest, AreRecognisedWhereNoUnitTellsThem)
{
    addEntry("firefox-esr", "Exec=/usr/lib/firefox-esr/firefox-esr %u\n");
    addEntry("vim", "Exec=vim %F\nTerminal=true\n");
    addEntry("tweaks", "Exec=gnome-tweaks\n");
    addEntry("shell-a", "Exec=sh -c a\n");
    addEntry("libreoffice-startcenter", "Exec=libreoffice %U\n");
    addEntry("libreoffice-writer", "Exec=libreoffice --writer %U\n");
    addEntry("org.gnome.Shell", "Exec=/usr/bin/gnome-shell\nNoDisplay=true\n");
    addEntry("helper", "Exec=/usr/bin/helper\nNoDisplay=true\n");
    addProcess(301, {.exe = "/usr/bin/editor (deleted)", .startedAt = 1});
    addProcess(302, {.exe = "/usr/lib/firefox-esr/firefox-esr", .startedAt = 2});
    addProcess(303, {.arguments = {"/usr/bin/editor"}, .startedAt = 3});
    addProcess(304, {.exe = "/usr/bin/vim"});
    addProcess(305,
        {.exe = "/usr/bin/python3.11",
            .arguments = {"/usr/bin/python3", "/usr/bin/gnome-tweaks"},
            .startedAt = 5});
    addProcess(306, {.exe = "/usr/bin/sh", .arguments = {"sh"}});
    addProcess(307, {.exe = "/usr/lib/libreoffice/program/soffice.bin", .startedAt = 7});
    addProcess(308, {.name = "gnome-shell", .exe = "/usr/bin/gnome-shell", .startedAt = 8});
    addProcess(309, {.exe = "/usr/bin/helper"});
    addProcess(310, {.name = "kworker/0:1"});
    EXPECT_THAT(seen(),
        ElementsAre("org.example.Editor 301", "firefox-esr 302", "tweaks 305",
            "libreoffice-startcenter 307", "org.gnome.Shell 308"));
    EXPECT_TRUE(running().back().isOfSession);
    EXPECT_FALSE(running().front().isOfSession);
}

TEST_F(RunningApplicationsTest, AreRecognisedByWhatTheyWereLaunchedFrom)
{
    const auto file = folder / "share/applications/org.example.Editor.desktop";
    const std::map<std::string, std::string> launch{
        {"GIO_LAUNCHED_DESKTOP_FILE", file}, {"GIO_LAUNCHED_DESKTOP_FILE_PID", "400"}};
    addProcess(400, {.name = "renamed", .exe = "/opt/renamed", .environment = launch});
    addProcess(401, {.name = "child", .exe = "/opt/child", .environment = launch});
    const std::map<std::string, std::string> image{
        {"APPIMAGE", "/home/a/Apps/Paint-1.2.AppImage"}, {"APPDIR", "/tmp/.mount_Pa"}};
    addProcess(410, {.exe = "/tmp/.mount_Pa/usr/bin/paint", .environment = image});
    addProcess(411, {.exe = "/usr/bin/elsewhere", .environment = image});
    addProcess(412, {.exe = "/tmp/.mount_Paper/usr/bin/paper", .environment = image});
    EXPECT_THAT(seen(), ElementsAre("org.example.Editor 400", "? 410"));
    EXPECT_EQ(running().back().name, "Paint-1.2");
}

TEST_F(RunningApplicationsTest, AreRecognisedByTheirSandbox)
{
    const auto inSandbox = [this](int id, const Said& said) {
        addProcess(id, said);
        const auto process = folder / ("proc/" + std::to_string(id));
        std::filesystem::remove(process + "/ns/mnt");
        std::filesystem::create_symlink("mnt:[2]", process + "/ns/mnt");
        std::filesystem::create_directory(process + "/root");
        return process + "/root/.flatpak-info";
    };
    const auto* const info
        = "[Instance]\nname=wrong\n[Application]\nname=org.example.Boxed\nruntime=x\n";
    for (const auto& [id, name] : {std::pair(500, "bwrap"), std::pair(502, "boxed")}) {
        inSandbox(id, {.name = name, .startedAt = id});
        folder.writeFile("proc/" + std::to_string(id) + "/root/.flatpak-info", info);
    }
    addProcess(501, {.name = "host"});
    folder.writeFile("proc/501/root/.flatpak-info", "[Application]\nname=org.example.Ours\n");
    folder.writeFile("elsewhere", "[Application]\nname=org.example.Linked\n");
    std::filesystem::create_symlink(folder / "elsewhere", inSandbox(503, {.name = "linked"}));
    EXPECT_THAT(seen(), ElementsAre("org.example.Boxed 502"));
}

TEST_F(RunningApplicationsTest, AreLookedAtAgainWhenTheyBecomeSomethingElse)
{
    addProcess(600, {.name = "sh", .exe = "/usr/bin/sh"});
    EXPECT_THAT(seen(), IsEmpty());
    addProcess(600, {.name = "editor", .exe = "/usr/bin/editor", .pages = 10});
    EXPECT_THAT(seen(), ElementsAre("org.example.Editor 600")) << "another program";
    addProcess(600, {.name = "editor", .exe = "/usr/bin/editor", .pages = 20});
    EXPECT_EQ(
        running().front().memoryBytes, 20 * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE)));
    addProcess(600, {.name = "editor", .exe = "/opt/editor2", .startedAt = 2000});
    EXPECT_THAT(seen(), IsEmpty()) << "the id belongs to another process";
    addEntry("org.example.Second", "Exec=/opt/editor2\n");
    // A clock may be coarser than a test is quick.
    std::filesystem::last_write_time(folder / "share/applications",
        std::filesystem::file_time_type::clock::now() + std::chrono::seconds(5));
    EXPECT_THAT(seen(), ElementsAre("org.example.Second 600")) << "it was installed";
    std::filesystem::remove_all(folder / "proc/600");
    EXPECT_THAT(seen(), IsEmpty());
}

TEST(ProcessStat, IsReadWhateverTheProgramIsCalled)
{
    const std::string rest = " 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 777 20 33 22\n";
    const auto stat = parseProcessStat("12 (a) R (b) S" + rest);
    ASSERT_TRUE(stat);
    EXPECT_EQ(stat->name, "a) R (b");
    EXPECT_EQ(stat->state, 'S');
    EXPECT_EQ(stat->startedAt, 777U);
    EXPECT_EQ(stat->residentPages, 33U);
    for (const auto* text : {"", "12", "12 (a", "12 (a) S 1 2", ") ( S 1"})
        EXPECT_FALSE(parseProcessStat(text)) << text;
    EXPECT_FALSE(parseProcessStat("12 (a) S 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 x 20 33"));
}

TEST_F(RunningApplicationsTest, AreToldThoughOneOfThemDoesNotAnswer)
{
    struct Hung {
        std::mutex mutex;
        std::atomic<int> asked = 0;
    };
    const auto hung = std::make_shared<Hung>();
    const auto stuckProcess = folder / "proc/40";
    const SystemRunningApplications listed{{.processFolder = folder / "proc",
        .dataFolders = {folder / "share"},
        .readFile = [hung, stuckProcess](int process, const char* name) {
            std::array<char, 4096> path{};
            ::readlink(
                ("/proc/self/fd/" + std::to_string(process)).c_str(), path.data(), path.size() - 1);
            if (path.data() == stuckProcess && std::string_view(name) == "cmdline") {
                ++hung->asked;
                const std::lock_guard lock(hung->mutex);
            }
            return readSmallFile(std::string(path.data()) + '/' + name).bytes;
        }}};
    addProcess(40, {.unit = "app-org.example.Stuck-1.scope", .startedAt = 1});
    addProcess(41, {.exe = "/usr/bin/editor", .startedAt = 2});
    const auto identifiers = [&listed] {
        std::vector<std::string> result;
        for (const auto& application : listed.running())
            result.push_back(application.identifier.value_or("?"));
        return result;
    };
    {
        const std::lock_guard lock(hung->mutex);
        for (int round = 0; round < 3; ++round)
            EXPECT_THAT(identifiers(), ElementsAre("org.example.Stuck", "org.example.Editor"));
        EXPECT_EQ(hung->asked, 1) << "it is asked once only";
    }
    while (hung->asked == 1)
        EXPECT_THAT(identifiers(), ElementsAre("org.example.Stuck", "org.example.Editor"));
}

class FakeWindows final : public ApplicationWindows {
public:
    WindowsOfProcesses list() override { return windows; }
    WindowsOfProcesses windows;
};

TEST_F(RunningApplicationsTest, AreToldByTheirWindowsWhenNothingElseDoes)
{
    const auto open = std::make_shared<FakeWindows>();
    const SystemRunningApplications listed{
        {.processFolder = folder / "proc", .dataFolders = {folder / "share"}, .windows = open}};
    addEntry("org.example.Paint", "Name=Paint\nExec=paint-launcher\nStartupWMClass=PaintWindow\n");
    addProcess(50, {.name = "paint.bin", .exe = "/opt/paint/paint.bin", .startedAt = 1});
    addProcess(51, {.name = "lone", .exe = "/home/a/lone", .startedAt = 2});
    addProcess(52, {.name = "nameless", .exe = "/home/a/nameless", .startedAt = 3});
    addProcess(53, {.name = "editor", .exe = "/usr/bin/editor", .startedAt = 4});
    const auto names = [&listed] {
        std::vector<std::string> result;
        for (const auto& application : listed.running())
            result.push_back(application.name.value_or("?"));
        return result;
    };
    EXPECT_THAT(names(), ElementsAre("Editor"));
    open->windows = {{50, "paintwindow"}, {51, "Lone"}, {52, ""}, {53, "Strange"}, {54, "Gone"}};
    EXPECT_THAT(names(), ElementsAre("Paint", "Lone", "nameless", "Editor"));
    open->windows.clear();
    EXPECT_THAT(names(), ElementsAre("Paint", "Lone", "nameless", "Editor"))
        << "an application may hide its window";
}

} // namespace
} // namespace kestavon
