#include "platform/file_manager.h"
#include "platform/memory_counters.h"
#include "platform/platform.h"
#include "platform/resident_memory.h"
#include "platform/volume.h"
#include "platform/workspace.h"
#include "support/environment_variable.h"
#include "support/temporary_folder.h"

#include <chrono>
#include <cstring>
#include <fstream>
#include <map>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestavon {
namespace {

using namespace std::chrono_literals;
using test::ScopedVariable;
using test::TemporaryFolder;

TEST(CanListFolder, TakesFoldersAndLinksToThemOnly)
{
    const TemporaryFolder folder;
    folder.makeFolder("empty");
    folder.writeFile("full/file");
    std::filesystem::create_directory_symlink("full", folder / "link");
    std::filesystem::create_symlink("nowhere", folder / "dangling");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);

    const SystemFileManager files;
    EXPECT_TRUE(files.canListFolder(folder / "empty"));
    EXPECT_TRUE(files.canListFolder(folder / "full"));
    EXPECT_TRUE(files.canListFolder(folder / "link"));
    EXPECT_FALSE(files.canListFolder(folder / "full/file"));
    EXPECT_FALSE(files.canListFolder(folder / "pipe"));
    EXPECT_FALSE(files.canListFolder(folder / "dangling"));
    EXPECT_FALSE(files.canListFolder(folder / "missing"));
    EXPECT_FALSE(files.canListFolder(""));
}

TEST(CanListFolder, IsFalseWhereReadingIsRefused)
{
    const TemporaryFolder folder;
    const auto closed = folder.makeFolder("closed");
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(closed.c_str(), 0311), 0);
    // The superuser may read everything: ask as nobody.
    const auto self = ::geteuid();
    ASSERT_TRUE(self != 0 || ::seteuid(65534) == 0);
    const bool listable = SystemFileManager().canListFolder(closed);
    ASSERT_TRUE(self != 0 || ::seteuid(self) == 0);
    EXPECT_FALSE(listable);
    ::chmod(closed.c_str(), 0700);
}

TEST(Volumes, TellTheCapacityAroundAPath)
{
    const TemporaryFolder folder;
    const auto capacity = SystemVolumes().capacityOf(folder.path());
    ASSERT_TRUE(capacity);
    struct statvfs status { };
    ASSERT_EQ(::statvfs(folder.path().c_str(), &status), 0);
    EXPECT_EQ(capacity->total, static_cast<std::int64_t>(status.f_blocks * status.f_frsize));
    EXPECT_GT(capacity->available, 0);
    EXPECT_LE(capacity->available, capacity->total);
}

TEST(Volumes, TellNothingOfAMissingPathAndNoBytesOfAPseudoFileSystem)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(SystemVolumes().capacityOf(folder / "missing"));
    const auto pseudo = SystemVolumes().capacityOf("/proc");
    ASSERT_TRUE(pseudo);
    EXPECT_FALSE(pseudo->total);
    EXPECT_FALSE(pseudo->available);
}

TEST(ResidentMemory, GrowsWithTheMemoryThatIsTouched)
{
    constexpr std::size_t size = 16 << 20;
    const auto before = residentMemoryBytes();
    ASSERT_TRUE(before);
    const auto block = std::make_unique_for_overwrite<char[]>(size);
    std::memset(block.get(), 1, size);
    volatile char* const keep = block.get();
    EXPECT_EQ(keep[size / 2], 1);
    EXPECT_GE(*residentMemoryBytes(), *before + size * 9 / 10);
}

class Workspaces : public ::testing::Test {
protected:
    /// Puts an xdg-open into the path that writes down what it was given.
    void installOpener()
    {
        const auto opener = folder.writeFile("bin/xdg-open",
            "#!/bin/sh\nprintf '%s|' \"$@\" > \"" + folder / "given.part" + "\"\nmv \""
                + folder / "given.part" + "\" \"" + folder / "given" + "\"\n");
        ASSERT_EQ(::chmod(opener.c_str(), 0700), 0);
    }

    std::string given() const
    {
        for (int i = 0; i < 1000 && !std::filesystem::exists(folder / "given"); ++i)
            std::this_thread::sleep_for(5ms);
        return folder.readFile("given");
    }

    const TemporaryFolder folder;
    const ScopedVariable searchPath{"PATH", folder / "bin" + ":/usr/bin:/bin"};
};

TEST_F(Workspaces, HandUrlsToTheDesktopAsTheyAre)
{
    installOpener();
    EXPECT_TRUE(DesktopWorkspace().openUrl("https://example.org/a'b?c=$d&e=;f"));
    EXPECT_EQ(given(), "https://example.org/a'b?c=$d&e=;f|");
}

TEST_F(Workspaces, LeaveNoZombie)
{
    installOpener();
    ASSERT_TRUE(DesktopWorkspace().openUrl("https://example.org/"));
    given();
    // Once the opener has been waited for, this process has no child left to wait for.
    int result = 0;
    for (int i = 0; i < 1000 && result == 0; ++i) {
        result = ::waitid(P_ALL, 0, nullptr, WEXITED | WNOHANG | WNOWAIT);
        std::this_thread::sleep_for(5ms);
    }
    EXPECT_EQ(result, -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(Workspaces, RefuseWhatIsNoUrl)
{
    installOpener();
    for (const std::string text : {"", "/etc/passwd", "--version", "no scheme:x", ":x", "1a:x",
             "https:", "https://example.org/two words", "https://example.org/\n"})
        EXPECT_FALSE(DesktopWorkspace().openUrl(text)) << text;
    EXPECT_FALSE(std::filesystem::exists(folder / "given"));
}

TEST_F(Workspaces, OpenItemsByEveryByteOfTheirPaths)
{
    installOpener();
    const auto path = folder.writeFile("100% caf\xE9 #1?\n", "");
    EXPECT_TRUE(DesktopWorkspace().openItem(path));
    EXPECT_EQ(given(), "file://" + folder.path() + "/100%25%20caf%E9%20%231%3F%0A|");
}

TEST_F(Workspaces, SayWhyNothingOpened)
{
    const ScopedVariable onlyOurs("PATH", folder / "bin");
    const auto url = DesktopWorkspace().openUrl("https://example.org/");
    ASSERT_FALSE(url);
    EXPECT_EQ(url.error(),
        "“https://example.org/” couldn’t be opened because xdg-open is not installed.");

    const auto opener = folder.writeFile("bin/xdg-open", "#!/bin/sh\nexit 3\n");
    ASSERT_EQ(::chmod(opener.c_str(), 0700), 0);
    const auto item = DesktopWorkspace().openItem(folder.writeFile("a.xyz", ""));
    ASSERT_FALSE(item);
    EXPECT_EQ(
        item.error(), "“a.xyz” couldn’t be opened because no program on this computer opens it.");

    const auto missing = DesktopWorkspace().openItem(folder / "gone");
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error(), "“gone” couldn’t be opened because it doesn’t exist.");
}

TEST_F(Workspaces, GiveUnusualLinksOnlyToAProgramThatAskedForThem)
{
    installOpener();
    const auto answers = folder.writeFile("bin/xdg-mime",
        "#!/bin/sh\n[ \"$*\" = 'query default x-scheme-handler/x-known' ] && echo known.desktop\n"
        "exit 0\n");
    ASSERT_EQ(::chmod(answers.c_str(), 0700), 0);

    const auto refused = DesktopWorkspace().openUrl("x-unknown:settings");
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error(), "No program on this computer opens “x-unknown” links.");
    EXPECT_FALSE(std::filesystem::exists(folder / "given"));

    EXPECT_TRUE(DesktopWorkspace().openUrl("X-Known:settings"));
    EXPECT_EQ(given(), "X-Known:settings|");
}

TEST(SystemPlatform, KeepsItsSettingsInTheConfigurationFolder)
{
    const TemporaryFolder home;
    const auto platform = systemPlatform({.home = home.path()});
    platform.settings->setFlag("kv.fda.onboardingShown", true);
    EXPECT_TRUE(std::filesystem::exists(home / ".config/Kestavon/settings.json"));
    EXPECT_TRUE(platform.files->canListFolder(home.path()));
    EXPECT_TRUE(platform.volumes->capacityOf(home.path()));
    EXPECT_TRUE(platform.memory->snapshot());
    const auto offset = platform.clock->now() - std::chrono::system_clock::now();
    EXPECT_LT(std::chrono::abs(offset), 10s);
}

TEST(MemoryCounters, AreWholePagesOfTheMemoryThatThereIs)
{
    const auto memory = SystemMemoryCounters().snapshot();
    ASSERT_TRUE(memory);
    std::map<std::string, std::uint64_t> told; // kB
    std::ifstream file("/proc/meminfo");
    std::string name;
    std::string unit;
    for (std::uint64_t value = 0; file >> name >> value; std::getline(file, unit))
        told[name] = value;
    const auto total = told["MemTotal:"] * 1024;
    const auto pageSize = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
    std::uint64_t sum = 0;
    for (const auto part :
        {memory->freeBytes, memory->activeBytes, memory->inactiveBytes, memory->wiredBytes}) {
        EXPECT_EQ(part % pageSize, 0U);
        sum += part;
    }
    EXPECT_LE(sum, total);
    // Others take and return memory meanwhile.
    EXPECT_NEAR(static_cast<double>(memory->freeBytes),
        static_cast<double>(told["MemFree:"]) * 1024, static_cast<double>(total) / 5);
}

} // namespace
} // namespace kestavon
