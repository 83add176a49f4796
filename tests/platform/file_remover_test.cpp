#include "platform/file_remover.h"
#include "support/as_ordinary_user.h"
#include "support/entries.h"
#include "support/faulty_calls.h"
#include "support/temporary_tree.h"
#include "support/tree_picture.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <new>
#include <set>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestavon {
namespace {

using Kind = FileError::Kind;
namespace fs = std::filesystem;

using test::Fault;
using test::FaultyCalls;
using test::isThere;
using test::SystemCall;

TEST(FileRemoverTests, DeletesLinksAndNotWhatTheyLeadTo)
{
    const test::TemporaryTree home;
    home.writeFile("victim/file", "kept");
    home.writeFile("tree/sub/file");
    home.link("tree/to a folder", home / "victim");
    home.link("tree/to a file", home / "victim/file");
    home.link("tree/sub/up", "../..");
    home.link("link", home / "victim");
    fs::create_hard_link(home / "victim/file", home / "tree/second name");
    ASSERT_EQ(::mkfifo((home / "tree/pipe").c_str(), 0600), 0);
    const auto before = home.readFile("victim/file");

    SystemFileRemover remover;
    EXPECT_TRUE(remover.remove(home / "tree"));
    EXPECT_TRUE(remover.remove(home / "link"));
    EXPECT_FALSE(isThere(home / "tree"));
    EXPECT_FALSE(isThere(home / "link"));
    EXPECT_EQ(home.readFile("victim/file"), before);
}

TEST(FileRemoverTests, FollowsNoLinkThatTookAFoldersPlaceBelowTheWholeDisk)
{
    const test::TemporaryTree home;
    home.writeFile("folder/item", "found");
    home.writeFile("elsewhere/item", "not meant");
    fs::rename(home / "folder", home / "gone");
    home.link("folder", home / "elsewhere");
    const auto whole = fs::canonical(home.path()).native();
    SystemFileRemover remover;
    for (const auto& walked : {std::string("/"), whole})
        EXPECT_FALSE(remover.remove(whole + "/folder/item", {.noLinksBelow = walked})) << walked;
    EXPECT_EQ(home.readFile("elsewhere/item"), "not meant");
    EXPECT_TRUE(remover.remove(whole + "/gone/item", {.noLinksBelow = "/"}));
}

TEST(FileRemoverTests, DeletesFoldersThatMayNotBeReadOrWrittenTo)
{
    const test::TemporaryTree home;
    for (const unsigned mode : {0555U, 0333U, 0111U, 0U}) {
        home.writeFile("tree/locked/sub/file");
        home.setMode("tree/locked/sub", mode);
        home.setMode("tree/locked", mode);
        const auto removed = SystemFileRemover().remove(home / "tree");
        EXPECT_TRUE(removed) << std::oct << mode << " " << removed.error().message;
        EXPECT_FALSE(isThere(home / "tree")) << std::oct << mode;
    }
}

TEST(FileRemoverTests, DeletesTreesDeeperThanAnyPathWithFewDescriptors)
{
    const test::TemporaryTree home;
    const std::string name(100, 'd');
    home.chain(name, 300);
    home.writeFile("beside");
    struct rlimit old { };
    ::getrlimit(RLIMIT_NOFILE, &old);
    const struct rlimit tight {
        40, old.rlim_max
    };
    ::setrlimit(RLIMIT_NOFILE, &tight);
    const auto removed = SystemFileRemover().remove(home / name);
    ::setrlimit(RLIMIT_NOFILE, &old);
    EXPECT_TRUE(removed);
    EXPECT_FALSE(isThere(home / name));
    EXPECT_TRUE(isThere(home / "beside"));
}

/// Makes a file one that nobody can delete, or an ordinary one again; false where that cannot be.
bool setImmutable(const std::string& path, bool immutable)
{
    const int file = ::open(path.c_str(), O_RDONLY);
    int flags = 0;
    bool done = file >= 0 && ::ioctl(file, FS_IOC_GETFLAGS, &flags) == 0;
    flags = immutable ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
    done = done && ::ioctl(file, FS_IOC_SETFLAGS, &flags) == 0;
    ::close(file);
    return done;
}

TEST(FileRemoverTests, DeletesTheRestWhenOneEntryCannotGo)
{
    const test::TemporaryTree home;
    for (const auto* file : {"tree/a", "tree/middle/stays", "tree/middle/goes", "tree/z/z"})
        home.writeFile(file);
    const auto stays = home / "tree/middle/stays";
    if (!setImmutable(stays, true))
        GTEST_SKIP() << "takes root and a disk that knows immutable files";
    const auto removed = SystemFileRemover().remove(home / "tree");
    EXPECT_TRUE(setImmutable(stays, false));
    ASSERT_FALSE(removed);
    EXPECT_EQ(removed.error().kind, Kind::permission);
    EXPECT_NE(removed.error().message.find("stays"), std::string::npos);
    std::size_t left = 0;
    for ([[maybe_unused]] const auto& entry : fs::recursive_directory_iterator(home / "tree"))
        ++left;
    EXPECT_EQ(left, 2U);
}

TEST(FileRemoverTests, TellsWhatIsMissingAndWhatIsNoItem)
{
    const test::TemporaryTree home;
    home.writeFile("walked/folder/item");
    home.writeFile("elsewhere/item", "not meant");
    SystemFileRemover remover;
    EXPECT_EQ(remover.remove(home / "none").error().kind, Kind::noSuchFile);
    EXPECT_FALSE(remover.remove("/"));
    EXPECT_FALSE(remover.remove(home / "walked/.."));
    EXPECT_FALSE(remover.remove("walked"));

    fs::rename(home / "walked/folder", home / "gone");
    home.link("walked/folder", home / "elsewhere");
    EXPECT_FALSE(remover.remove(home / "walked/folder/item", {.noLinksBelow = home / "walked"}));
    EXPECT_EQ(home.readFile("elsewhere/item"), "not meant");
}

TEST(FileRemoverTests, StopsWhenAsked)
{
    const test::TemporaryTree home;
    home.writeFile("tree/file");
    std::stop_source stop;
    stop.request_stop();
    const auto removed = SystemFileRemover().remove(home / "tree", {.stop = stop.get_token()});
    ASSERT_FALSE(removed);
    EXPECT_EQ(removed.error().kind, Kind::cancelled);
    EXPECT_TRUE(isThere(home / "tree/file"));
}

TEST(FileRemoverTests, GivesPermissionsBackAtEveryDepthWhenItIsStopped)
{
    const test::TemporaryTree home;
    home.setMode(".", 0777);
    std::vector<std::string> folders{"tree"};
    while (folders.size() < 20) // more than are kept open at a time
        folders.push_back(folders.back() + "/d");
    home.writeFile(folders.back() + "/a");
    home.writeFile(folders.back() + "/b");
    constexpr uid_t ordinaryUser = 65534;
    for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder) {
        if (::geteuid() == 0) {
            ASSERT_EQ(::chown((home / *folder).c_str(), ordinaryUser, ordinaryUser), 0);
        }
        home.setMode(*folder, 0555);
    }
    std::stop_source stop;
    {
        const test::AsOrdinaryUser user;
        const auto removed = SystemFileRemover().remove(home / "tree",
            {.stop = stop.get_token(), .progress = [&stop](std::int64_t) { stop.request_stop(); }});
        ASSERT_FALSE(removed);
        EXPECT_EQ(removed.error().kind, Kind::cancelled);
    }
    for (const auto& folder : folders) {
        struct stat status { };
        ASSERT_EQ(::lstat((home / folder).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 0555U) << folder;
    }
}

/// A file that was looked at and is to be deleted, if it still is that one.
class OneFileRemoval : public testing::Test {
protected:
    FileIdentity identityOf(const std::string& name) const
    {
        struct stat status { };
        ::lstat((home / name).c_str(), &status);
        const auto nanoseconds
            = [](const timespec& time) { return time.tv_sec * 1'000'000'000 + time.tv_nsec; };
        return {.device = status.st_dev,
            .inode = status.st_ino,
            .size = status.st_size,
            .modifiedAt = nanoseconds(status.st_mtim),
            .changedAt = nanoseconds(status.st_ctim)};
    }

    std::set<std::string> names() const
    {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(home.path()))
            names.insert(entry.path().filename());
        return names;
    }

    using Names = std::set<std::string>;
    const test::TemporaryTree home;
    SystemFileRemover remover;
};

TEST_F(OneFileRemoval, DeletesItWhenItMayGo)
{
    home.writeFile("file", "content");
    bool wasAway = false;
    const auto mayGo = [&] {
        wasAway = !isThere(home / "file");
        return true;
    };
    EXPECT_TRUE(remover.removeFileIf(home / "file", identityOf("file"), mayGo));
    EXPECT_TRUE(wasAway);
    EXPECT_EQ(names(), Names());
}

TEST_F(OneFileRemoval, GivesItsNameBackWhenItMayNot)
{
    home.writeFile("file.txt", "content");
    auto known = identityOf("file.txt");
    EXPECT_EQ(remover.removeFileIf(home / "file.txt", known, [] { return false; }).error().kind,
        Kind::changed);
    known = identityOf("file.txt");
    EXPECT_FALSE(
        remover.removeFileIf(home / "file.txt", known, []() -> bool { throw std::bad_alloc(); }));
    EXPECT_EQ(names(), Names{"file.txt"});
    // Somebody wants the name just then: neither of the two is lost.
    known = identityOf("file.txt");
    EXPECT_FALSE(remover.removeFileIf(home / "file.txt", known, [this] {
        home.writeFile("file.txt", "new");
        return false;
    }));
    EXPECT_EQ(home.readFile("file.txt"), "new");
    EXPECT_EQ(home.readFile("file 2.txt"), "content");
    EXPECT_EQ(names(), (Names{"file.txt", "file 2.txt"}));
}

TEST_F(OneFileRemoval, NeverDeletesWhatHasTakenItsPlace)
{
    struct {
        const char* what;
        std::function<void()> replace;
    } const rows[] = {
        {"another file", [this] { home.writeFile("file", "CONTENT"); }},
        {"the same, written to", [this] { fs::rename(home / "beside", home / "file"); }},
        {"a folder", [this] { home.writeFile("file/precious"); }},
        {"a link", [this] { home.link("file", "beside"); }},
    };
    for (const auto& row : rows) {
        home.writeFile("file", "content");
        const auto known = identityOf("file");
        fs::rename(home / "file", home / "beside");
        std::ofstream(home / "beside") << "CONTENT";
        row.replace();
        const auto before = names();
        EXPECT_FALSE(remover.removeFileIf(home / "file", known, [] { return true; })) << row.what;
        EXPECT_EQ(names(), before) << row.what;
        fs::remove_all(home / "file");
    }
}

TEST(FileRemoverTests, LeavesAFolderWhereNoneWasExpected)
{
    const test::TemporaryTree home;
    home.writeFile("item/inner", "kept");
    SystemFileRemover remover;
    const auto removed = remover.remove(home / "item", {.refusesFolders = true});
    ASSERT_FALSE(removed);
    EXPECT_EQ(removed.error().kind, Kind::changed);
    EXPECT_EQ(home.readFile("item/inner"), "kept");
    EXPECT_TRUE(remover.remove(home / "item/inner", {.refusesFolders = true}));
}

TEST(FileRemoverTests, EntersNoOtherVolumeWhereMountsHaveNoNumbers)
{
    if (::geteuid() != 0 || ::unshare(CLONE_NEWNS) != 0)
        GTEST_SKIP() << "only root can mount";
    ASSERT_EQ(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0);
    const test::TemporaryTree home;
    home.makeFolder("tree/volume");
    ASSERT_EQ(::mount("none", (home / "tree/volume").c_str(), "tmpfs", 0, nullptr), 0);
    home.writeFile("tree/volume/file", "kept");
    {
        const test::WithoutMountNumbers older;
        EXPECT_FALSE(SystemFileRemover().remove(home / "tree"));
    }
    EXPECT_EQ(home.readFile("tree/volume/file"), "kept");
    ::umount((home / "tree/volume").c_str());
}

TEST(FileRemoverTests, HidesAFolderWhileItIsHalfDeleted)
{
    const test::TemporaryTree home;
    home.writeFile("held/a", "bytes");
    home.writeFile("held/b", "bytes");
    std::size_t seenUnderItsName = 0;
    {
        const FaultyCalls calls([&](const SystemCall& call) -> std::optional<Fault> {
            if (call.call != "unlinkat")
                return std::nullopt;
            seenUnderItsName += isThere(home / "held") ? 1 : 0;
            return call.name == "b" ? std::optional(Fault{EPERM}) : std::nullopt;
        });
        EXPECT_FALSE(SystemFileRemover().remove(home / "held", {.hidesFolders = true}));
    }
    EXPECT_EQ(seenUnderItsName, 0U);
    EXPECT_EQ(home.readFile("held/b"), "bytes") << "what cannot be deleted has its name again";
    EXPECT_TRUE(SystemFileRemover().remove(home / "held", {.hidesFolders = true}));
    EXPECT_EQ(test::entriesIn(home.path()), 0U);
}

TEST(FileRemoverTests, TellsOfAFolderThatWasMovedAwayMeanwhile)
{
    const test::TemporaryTree home;
    home.writeFile("tree/sub/file");
    bool isMoved = false;
    const FaultyCalls calls([&](const SystemCall& call) -> std::optional<Fault> {
        if (call.call == "unlinkat" && call.name == "file" && !std::exchange(isMoved, true))
            fs::rename(home / "tree", home / "elsewhere");
        return std::nullopt;
    });
    EXPECT_FALSE(SystemFileRemover().remove(home / "tree"));
    EXPECT_TRUE(isThere(home / "elsewhere"));
}

TEST(FileRemoverTests, DeletesNoNamesakeWhenTheTreeIsRearranged)
{
    const test::TemporaryTree home;
    home.chain("d", 20);
    bool isMoved = false;
    const auto second = home / "d/d";
    const FaultyCalls calls([&](const SystemCall& call) -> std::optional<Fault> {
        if (call.call == "unlinkat" && call.name == "bottom" && !std::exchange(isMoved, true)) {
            fs::rename(second, home / "elsewhere");
            fs::create_directory(second);
        }
        return std::nullopt;
    });
    EXPECT_FALSE(SystemFileRemover().remove(home / "d"));
    EXPECT_TRUE(isThere(second)) << "a newcomer that was never listed";
}

TEST(FileRemoverTests, DeletesManyFoldersSideBySideAndCountsEveryEntry)
{
    const test::TemporaryTree home;
    std::int64_t entries = 1; // "tree"
    for (int folder = 0; folder < 60; ++folder, ++entries) {
        const auto name = "tree/" + std::to_string(folder);
        for (int file = 0; file < 5; ++file, entries += 2)
            home.writeFile(name + "/sub " + std::to_string(file) + "/file");
        home.setMode(name, folder % 7 == 0 ? 0555 : 0755);
    }
    home.link("tree/link", home.path());
    home.writeFile("tree/file");
    entries += 2;
    std::int64_t last = 0;
    const auto caller = std::this_thread::get_id();
    const auto progress = [&](std::int64_t removed) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        EXPECT_GT(removed, last);
        last = removed;
    };
    EXPECT_TRUE(SystemFileRemover().remove(home / "tree", {.progress = progress}));
    EXPECT_EQ(last, entries);
    EXPECT_EQ(test::entriesIn(home.path()), 0U);
}

TEST(FileRemoverTests, StopsAmongManyFoldersAndGivesTheNameBack)
{
    const test::TemporaryTree home;
    for (int folder = 0; folder < 60; ++folder) {
        for (int file = 0; file < 20; ++file)
            home.writeFile("tree/" + std::to_string(folder) + "/" + std::to_string(file));
    }
    std::stop_source stop;
    const auto removed = SystemFileRemover().remove(home / "tree",
        {.hidesFolders = true, .stop = stop.get_token(), .progress = [&](std::int64_t entries) {
             if (entries >= 30)
                 stop.request_stop();
         }});
    if (removed)
        GTEST_SKIP() << "the other threads had deleted all before this one could stop them";
    EXPECT_EQ(removed.error().kind, Kind::cancelled);
    EXPECT_NE(removed.error().message.find("“tree”"), std::string::npos);
    EXPECT_LT(test::pictureOf(home / "tree").size(), 1261U - 30U + 1U);
    EXPECT_TRUE(SystemFileRemover().remove(home / "tree"));
}

} // namespace
} // namespace kestavon
