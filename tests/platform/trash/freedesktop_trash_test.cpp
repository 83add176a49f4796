#include "core/domain/uuid.h"
#include "platform/linux/trash/freedesktop_trash.h"
#include "platform/linux/trash/trash_info.h"
#include "platform/linux/trash/trash_record.h"
#include "platform/trash/trash_fixture.h"
#include "support/faulty_calls.h"
#include "support/time_zone.h"

#include <fstream>
#include <thread>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/xattr.h>

namespace kestavon {

namespace {

using test::isThere;
using test::modeOf;
using test::namesIn;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using Kind = FileError::Kind;

class FreedesktopTrashTest : public ::testing::Test {
protected:
    FreedesktopTrashTest()
    {
        m_folder.makeFolder("home");
        m_layout.home = m_folder / "home";
        m_layout.dataHome = m_folder / "home/.local/share";
        m_trash = makeTrash();
    }

    std::shared_ptr<FreedesktopTrash> makeTrash() const
    {
        return std::make_shared<FreedesktopTrash>(
            m_layout, test::nothingProtected(), m_clock, m_volumes);
    }

    FileResult<std::string> put(const std::string& path)
    {
        auto result = m_trash->trashItem(path, {});
        EXPECT_TRUE(!result || isThere(*result)) << "the item is not where it is said to lie";
        return result;
    }

    void expectRefused(const std::string& path, Kind kind)
    {
        const auto result = put(path);
        ASSERT_FALSE(result) << path;
        EXPECT_EQ(result.error().kind, kind) << path << ": " << result.error().message;
        EXPECT_FALSE(result.error().message.empty());
    }

    std::vector<std::string> items() const { return namesIn(m_homeTrash + "/files"); }
    std::vector<std::string> records() const { return namesIn(m_homeTrash + "/info"); }
    std::string record(const std::string& name) const
    {
        return m_folder.readFile("home/.local/share/Trash/info/" + name + ".trashinfo");
    }

    /// A folder that is taken for the top of a volume.
    std::string makeVolume(const std::string& name)
    {
        auto top = m_folder.makeFolder(name);
        m_volumes->tops[top] = m_volumes->tops.size() + 2;
        return top;
    }

    test::TemporaryFolder m_folder;
    std::string m_homeTrash = m_folder / "home/.local/share/Trash";
    std::string m_userName = std::to_string(::geteuid());
    HostLayout m_layout;
    std::shared_ptr<test::FakeClock> m_clock = std::make_shared<test::FakeClock>();
    std::shared_ptr<test::FakeMountedVolumes> m_volumes
        = std::make_shared<test::FakeMountedVolumes>();
    std::shared_ptr<FreedesktopTrash> m_trash;
};

TEST_F(FreedesktopTrashTest, MovesAFileAndWritesDownWhereItLayAndWhen)
{
    const test::ScopedTimeZone zone("Europe/Berlin");
    const auto path = m_folder.writeFile("home/a b.txt", "content");
    ::chmod(path.c_str(), 0640);
    ASSERT_TRUE(put(path));

    EXPECT_FALSE(isThere(path));
    EXPECT_THAT(items(), ElementsAre("a b.txt"));
    EXPECT_EQ(m_folder.readFile("home/.local/share/Trash/files/a b.txt"), "content");
    EXPECT_EQ(modeOf(m_homeTrash + "/files/a b.txt"), 0640u);
    EXPECT_THAT(records(), ElementsAre("a b.txt.trashinfo"));
    EXPECT_EQ(originalPathIn(record("a b.txt")), path);
    EXPECT_NE(record("a b.txt").find("DeletionDate=2026-11-18T12:06:40\n"), std::string::npos);
    // Nobody else is to know what a person threw away.
    EXPECT_EQ(modeOf(m_homeTrash + "/info/a b.txt.trashinfo"), 0600u);
    for (const auto* folder : {"", "/files", "/info"})
        EXPECT_EQ(modeOf(m_homeTrash + folder), 0700u) << folder;
    // Programs that show the Trash need no sizes of files.
    EXPECT_FALSE(isThere(m_homeTrash + "/directorysizes"));
}

TEST_F(FreedesktopTrashTest, ReportsNoSuccessWhileTheItemIsAtItsPlace)
{
    const auto path = m_folder.writeFile("home/item", "content");
    {
        const test::FaultyCalls calls([](const test::SystemCall& call) {
            return call.call == "renameat2" && call.name == "item" ? std::optional(test::Fault{})
                                                                   : std::nullopt;
        });
        EXPECT_FALSE(m_trash->trashItem(path, {}));
    }
    EXPECT_EQ(m_folder.readFile("home/item"), "content");
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(FreedesktopTrashTest, NeverLeavesAnItemWithoutItsRecord)
{
    const auto path = m_folder.writeFile("home/item", "content");
    const auto info = m_homeTrash + "/info";
    const auto whenItMoves = [](const std::function<void()>& then) {
        return [then](const test::SystemCall& call) -> std::optional<test::Fault> {
            if (call.call == "renameat2" && call.name == "item")
                then();
            return std::nullopt;
        };
    };
    { // Somebody empties the Trash, and the record seems to have no item yet.
        const test::FaultyCalls calls(
            whenItMoves([&] { std::filesystem::remove(info + "/item.trashinfo"); }));
        ASSERT_TRUE(put(path));
    }
    EXPECT_EQ(originalPathIn(record("item")), path);
    EXPECT_THAT(items(), ElementsAre("item"));

    m_folder.writeFile("home/item", "content 2");
    { // There is nowhere to write it any more.
        const test::FaultyCalls calls(whenItMoves([&] { std::filesystem::remove_all(info); }));
        EXPECT_FALSE(put(path));
    }
    EXPECT_EQ(m_folder.readFile("home/item"), "content 2");
    EXPECT_THAT(items(), ElementsAre("item"));
}

TEST_F(FreedesktopTrashTest, LeavesAFolderWhereNoneWasExpected)
{
    m_folder.writeFile("home/item/inner", "content");
    const std::vector<std::string> paths{m_folder / "home/item", m_folder / "home/item/inner"};
    const auto results = m_trash->trashItems(paths, {.refusesFolders = true});
    ASSERT_THAT(results, SizeIs(2));
    ASSERT_FALSE(results[0]);
    EXPECT_EQ(results[0].error().kind, Kind::changed);
    EXPECT_TRUE(results[1]);
    EXPECT_TRUE(isThere(m_folder / "home/item"));
}

TEST_F(FreedesktopTrashTest, TakesEveryNameThatTheDiskTakes)
{
    std::string characters;
    while (characters.size() + 3 <= 255)
        characters += "€";
    const std::string names[]{"\xff\xfe not text", "line\nbreak", "100%", "-rf", "..hidden", " ",
        "x.trashinfo", std::string(255, 'a'), characters, std::string(245, 'b') + ".extension"};
    for (const auto& name : names) {
        const auto path = m_folder.writeFile("home/" + name, name);
        ASSERT_TRUE(put(path)) << name;
        EXPECT_FALSE(isThere(path));
        ASSERT_THAT(items(), SizeIs(1));
        const auto item = items().front();
        EXPECT_LE(item.size() + std::string(".trashinfo").size(), 255u);
        EXPECT_TRUE(name.starts_with(item));
        EXPECT_EQ(originalPathIn(record(item)), path);
        EXPECT_EQ(m_folder.readFile("home/.local/share/Trash/files/" + item), name);
        std::filesystem::remove(m_homeTrash + "/files/" + item);
        m_trash->forgetItem(m_homeTrash + "/files/" + item);
        EXPECT_THAT(records(), IsEmpty());
    }
}

TEST_F(FreedesktopTrashTest, NeverReplacesWhatHasTheSameName)
{
    for (const auto* content : {"first", "second", "third"}) {
        const auto path = m_folder.writeFile("home/same", content);
        ASSERT_TRUE(put(path));
    }
    EXPECT_THAT(items(), ElementsAre("same", "same.2", "same.3"));
    EXPECT_EQ(m_folder.readFile("home/.local/share/Trash/files/same"), "first");
    EXPECT_EQ(m_folder.readFile("home/.local/share/Trash/files/same.3"), "third");
    EXPECT_EQ(originalPathIn(record("same.3")), m_folder / "home/same");
}

TEST_F(FreedesktopTrashTest, LeavesNamesAloneOfWhichOnlyHalfIsThere)
{
    // What other programs, or a crash, left: an item without a record, even a link that leads
    // nowhere, and a record without an item.
    m_folder.writeFile("home/.local/share/Trash/files/one", "theirs");
    std::filesystem::create_symlink("nowhere", m_homeTrash + "/files/one.2");
    m_folder.writeFile("home/.local/share/Trash/info/one.3.trashinfo", "[Trash Info]\nPath=/x\n");
    ASSERT_TRUE(put(m_folder.writeFile("home/one", "ours")));
    EXPECT_THAT(items(), ElementsAre("one", "one.2", "one.4"));
    EXPECT_THAT(records(), ElementsAre("one.3.trashinfo", "one.4.trashinfo"));
    EXPECT_EQ(m_folder.readFile("home/.local/share/Trash/files/one"), "theirs");
}

TEST_F(FreedesktopTrashTest, FindsNamesForThousandsOfTheSame)
{
    m_folder.makeFolder("home/.local/share/Trash/info");
    for (int number = 2; number <= 150; ++number)
        m_folder.writeFile(
            "home/.local/share/Trash/files/index." + std::to_string(number), "theirs");
    m_folder.writeFile("home/.local/share/Trash/files/index", "theirs");
    const auto path = m_folder.writeFile("home/index", "ours");
    ASSERT_TRUE(put(path));
    EXPECT_FALSE(isThere(path));
    EXPECT_THAT(items(), SizeIs(151));
    ASSERT_THAT(records(), SizeIs(1));
}

TEST_F(FreedesktopTrashTest, TakesLinksAndNotWhatTheyLeadTo)
{
    m_folder.writeFile("home/target/kept");
    std::filesystem::create_symlink("nowhere", m_folder / "home/dangling");
    std::filesystem::create_directory_symlink(m_folder / "home/target", m_folder / "home/link");
    EXPECT_TRUE(put(m_folder / "home/dangling"));
    EXPECT_TRUE(put(m_folder / "home/link/"));
    EXPECT_THAT(items(), ElementsAre("dangling", "link"));
    EXPECT_TRUE(isThere(m_folder / "home/target/kept"));
    EXPECT_EQ(std::filesystem::read_symlink(m_homeTrash + "/files/dangling"), "nowhere");
    // The size of a folder is not the link's.
    EXPECT_FALSE(isThere(m_homeTrash + "/directorysizes"));
}

TEST_F(FreedesktopTrashTest, RecordsTheFolderWithoutLinksSoThatTheItemCanGoBack)
{
    m_folder.makeFolder("home/real");
    std::filesystem::create_directory_symlink("real", m_folder / "home/shortcut");
    m_folder.writeFile("home/real/file");
    ASSERT_TRUE(put(m_folder / "home/shortcut/../shortcut/file"));
    EXPECT_EQ(originalPathIn(record("file")), m_folder / "home/real/file");
}

TEST_F(FreedesktopTrashTest, TellsOtherProgramsTheSizesOfFolders)
{
    m_folder.makeFolder("home/.local/share/Trash");
    const std::string theirs = "4096 1700000000 their%20folder\nnot understood\n";
    m_folder.writeFile("home/.local/share/Trash/directorysizes",
        theirs + "7 1700000000 my%20folder\n8 1 no line end");
    m_folder.writeFile("home/my folder/a", std::string(100'000, 'x'));
    m_folder.writeFile("home/my folder/below/b", std::string(5'000, 'x'));
    std::filesystem::create_hard_link(
        m_folder / "home/my folder/a", m_folder / "home/my folder/below/a again");
    std::filesystem::create_symlink("/", m_folder / "home/my folder/root");
    std::int64_t blocks = 0;
    for (const auto* name : {"", "/a", "/below", "/below/b", "/root"}) {
        struct stat status { };
        ASSERT_EQ(::lstat((m_folder / "home/my folder").append(name).c_str(), &status), 0);
        blocks += status.st_blocks;
    }

    ASSERT_TRUE(put(m_folder / "home/my folder"));
    EXPECT_EQ(namesIn(m_homeTrash + "/files/my folder/below"),
        (std::vector<std::string>{"a again", "b"}));
    struct stat info { };
    ASSERT_EQ(::stat((m_homeTrash + "/info/my folder.trashinfo").c_str(), &info), 0);
    EXPECT_EQ(m_folder.readFile("home/.local/share/Trash/directorysizes"),
        theirs + "8 1 no line end\n" + std::to_string(512 * blocks) + ' '
            + std::to_string(info.st_mtime) + " my%20folder\n");

    // What the Trash wrote down goes when the item has gone, and not before.
    m_trash->forgetItem(m_homeTrash + "/files/my folder");
    EXPECT_THAT(records(), SizeIs(1));
    std::filesystem::remove_all(m_homeTrash + "/files/my folder");
    m_trash->forgetItem(m_homeTrash + "/files/my folder");
    EXPECT_THAT(records(), IsEmpty());
    EXPECT_EQ(
        m_folder.readFile("home/.local/share/Trash/directorysizes"), theirs + "8 1 no line end\n");
    EXPECT_THAT(namesIn(m_homeTrash), ElementsAre("directorysizes", "files", "info"));
}

TEST_F(FreedesktopTrashTest, RefusesWhatLiesInATrashAndTheTrashItself)
{
    ASSERT_TRUE(put(m_folder.writeFile("home/folder/file", "content")));
    ASSERT_TRUE(put(m_folder / "home/folder"));
    const auto top = makeVolume("volume");
    m_folder.writeFile("volume/.Trash-1234/files/theirs");
    m_folder.writeFile("home/.var/app/org.example.App/data/Trash/files/theirs");
    std::filesystem::create_directory_symlink(m_homeTrash, m_folder / "home/shortcut");

    expectRefused(m_homeTrash + "/files/file", Kind::fileExists);
    expectRefused(m_folder / "home/shortcut/files/file", Kind::fileExists);
    expectRefused(m_homeTrash + "/info/file.trashinfo", Kind::fileExists);
    expectRefused(m_homeTrash + "/files", Kind::fileExists);
    expectRefused(m_homeTrash, Kind::permission);
    expectRefused(m_layout.dataHome, Kind::permission);
    expectRefused(m_layout.home, Kind::permission);
    expectRefused(top + "/.Trash-1234", Kind::permission);
    expectRefused(top + "/.Trash-1234/files/theirs", Kind::fileExists);
    expectRefused(
        m_folder / "home/.var/app/org.example.App/data/Trash/files/theirs", Kind::fileExists);
    EXPECT_THAT(items(), ElementsAre("file", "folder"));
    EXPECT_THAT(records(), SizeIs(2));
}

TEST_F(FreedesktopTrashTest, LeavesNothingBehindWhenTheItemIsNotThere)
{
    expectRefused(m_folder / "home/missing", Kind::noSuchFile);
    expectRefused(m_folder / "home/missing/below", Kind::noSuchFile);
    for (const auto& path :
        {std::string(), std::string("/"), std::string("home"), m_folder / "home/.."})
        EXPECT_FALSE(put(path)) << path;
    EXPECT_FALSE(isThere(m_homeTrash));
}

TEST_F(FreedesktopTrashTest, LeavesWhatTheMachineProtects)
{
    const auto path = m_folder.writeFile("home/precious/key", "content");
    ProtectedPlaces::Lists lists;
    lists.withContents = {m_folder / "home/precious"};
    FreedesktopTrash trash(m_layout, ProtectedPlaces(lists), m_clock, m_volumes);
    const auto result = trash.trashItem(path, {});
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().kind, Kind::permission);
    EXPECT_TRUE(isThere(path));
}

TEST_F(FreedesktopTrashTest, UsesTheSharedTrashOfAVolumeOnlyWhenItIsAProperOne)
{
    const auto top = makeVolume("volume");
    const auto own = top + "/.Trash-" + m_userName;
    const auto shared = top + "/.Trash/" + m_userName;

    ASSERT_TRUE(put(m_folder.writeFile("volume/sub/1", "content")));
    EXPECT_THAT(namesIn(own + "/files"), ElementsAre("1"));
    EXPECT_EQ(modeOf(own), 0700u);
    EXPECT_EQ(
        originalPathIn(m_folder.readFile("volume/.Trash-" + m_userName + "/info/1.trashinfo")),
        "sub/1");

    m_folder.makeFolder("volume/.Trash"); // anybody may put a plain folder there
    ASSERT_TRUE(put(m_folder.writeFile("volume/2")));
    EXPECT_THAT(namesIn(own + "/files"), ElementsAre("1", "2"));
    EXPECT_THAT(namesIn(top + "/.Trash"), IsEmpty());

    ASSERT_EQ(::chmod((top + "/.Trash").c_str(), 01777), 0);
    ASSERT_TRUE(put(m_folder.writeFile("volume/3")));
    EXPECT_THAT(namesIn(shared + "/files"), ElementsAre("3"));
    EXPECT_EQ(modeOf(shared), 0700u);

    std::filesystem::rename(top + "/.Trash", m_folder / "elsewhere");
    std::filesystem::create_directory_symlink(m_folder / "elsewhere", top + "/.Trash");
    ASSERT_TRUE(put(m_folder.writeFile("volume/4")));
    EXPECT_THAT(namesIn(own + "/files"), ElementsAre("1", "2", "4"));
    EXPECT_FALSE(isThere(m_homeTrash));
}

TEST_F(FreedesktopTrashTest, GoesHomeRatherThanIntoAFolderThatSomebodyElseMayHavePrepared)
{
    const auto top = makeVolume("volume");
    const auto own = top + "/.Trash-" + m_userName;
    m_folder.makeFolder("trap");
    std::filesystem::create_directory_symlink(m_folder / "trap", own);
    ASSERT_TRUE(put(m_folder.writeFile("volume/1", "one")));
    EXPECT_THAT(namesIn(m_folder / "trap"), IsEmpty());
    EXPECT_THAT(items(), ElementsAre("1"));
    EXPECT_EQ(originalPathIn(record("1")), top + "/1");

    std::filesystem::remove(own);
    m_folder.makeFolder("volume/.Trash-" + m_userName);
    ASSERT_EQ(::chmod(own.c_str(), 0777), 0);
    ASSERT_TRUE(put(m_folder.writeFile("volume/2", "two")));
    EXPECT_THAT(namesIn(own), IsEmpty());
    EXPECT_THAT(items(), ElementsAre("1", "2"));

    ASSERT_EQ(::chmod(own.c_str(), 0700), 0);
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(own.c_str(), 1234, 1234), 0);
        ASSERT_TRUE(put(m_folder.writeFile("volume/3", "three")));
        EXPECT_THAT(namesIn(own), IsEmpty());
        EXPECT_THAT(items(), ElementsAre("1", "2", "3"));
    }
}

TEST_F(FreedesktopTrashTest, CopiesHomeFromAnotherDeviceThatCanHaveNoTrash)
{
    const test::MemoryFolder memory;
    if (!memory.isOnAnotherDeviceThan(m_folder.path()))
        GTEST_SKIP() << "/dev/shm is no device of its own";
    const auto top = (*memory).path();
    m_volumes->tops[top] = 9;
    (*memory).writeFile(".Trash-" + m_userName, "in the way");
    (*memory).writeFile("folder/below/file", "content");
    std::filesystem::create_symlink("nowhere", *memory / "folder/link");
    ASSERT_TRUE(put(*memory / "folder"));
    EXPECT_FALSE(isThere(*memory / "folder"));
    EXPECT_EQ(m_folder.readFile("home/.local/share/Trash/files/folder/below/file"), "content");
    EXPECT_EQ(std::filesystem::read_symlink(m_homeTrash + "/files/folder/link"), "nowhere");
    EXPECT_EQ(originalPathIn(record("folder")), *memory / "folder");
    EXPECT_THAT(items(), ElementsAre("folder"));
}

TEST_F(FreedesktopTrashTest, LeavesTheItemWhereItIsWhenThereIsNoTrash)
{
    const auto top = makeVolume("volume");
    const auto path = m_folder.writeFile("volume/file", "content");
    m_folder.writeFile("volume/.Trash-" + m_userName, "in the way");
    m_folder.writeFile("home/.local", "in the way of the data folder");
    EXPECT_FALSE(put(path));
    EXPECT_EQ(m_folder.readFile("volume/file"), "content");

    m_folder.writeFile("home/file", "content");
    EXPECT_FALSE(put(m_folder / "home/file"));
    EXPECT_EQ(m_folder.readFile("home/file"), "content");
}

TEST_F(FreedesktopTrashTest, LeavesTheItemWhereItIsInAFolderThatIsNotToBeWrittenTo)
{
    m_folder.writeFile("home/locked/file", "content");
    ASSERT_EQ(::chown(m_folder.path().c_str(), ::getuid() == 0 ? 65534 : ::getuid(), ~gid_t{0}), 0);
    if (::geteuid() == 0) {
        for (const auto* path : {"home", "home/locked", "home/locked/file"})
            ASSERT_EQ(::chown((m_folder / path).c_str(), 65534, 65534), 0);
    }
    ASSERT_EQ(::chmod((m_folder / "home/locked").c_str(), 0500), 0);
    {
        const test::AsOrdinaryUser user;
        expectRefused(m_folder / "home/locked/file", Kind::permission);
        EXPECT_THAT(items(), IsEmpty());
        EXPECT_THAT(records(), IsEmpty());
    }
    ASSERT_EQ(::chmod((m_folder / "home/locked").c_str(), 0700), 0);
    EXPECT_EQ(m_folder.readFile("home/locked/file"), "content");
}

TEST_F(FreedesktopTrashTest, ClearsOnlyTheRecordsThatItsOwnCrashLeft)
{
    const auto writeRecord = [this](const std::string& name, const std::string& text) {
        m_folder.writeFile("home/.local/share/Trash/info/" + name + ".trashinfo", text);
    };
    m_folder.makeFolder("home/.local/share/Trash/files");
    const auto ours = trashInfoText("/home/a/x", m_clock->now());
    writeRecord("crashed", ours);
    writeRecord("crashed early", ours.substr(0, ours.find("Path=") + 7));
    writeRecord("whole", ours);
    m_folder.writeFile("home/.local/share/Trash/files/whole", "content");
    writeRecord("theirs", "[Trash Info]\nPath=/x\nDeletionDate=2020-01-01T00:00:00\n");
    writeRecord("empty and new", "");
    writeRecord("empty and old", "");
    const timespec longAgo[2]{{1'000'000'000, 0}, {1'000'000'000, 0}};
    ASSERT_EQ(
        ::utimensat(AT_FDCWD, (m_homeTrash + "/info/empty and old.trashinfo").c_str(), longAgo, 0),
        0);
    const auto opened = openExistingTrash(m_homeTrash, ::geteuid());
    ASSERT_TRUE(opened);
    const auto working = TrashRecord::write(*opened, "working", ours);
    ASSERT_TRUE(working);

    ASSERT_TRUE(put(m_folder.writeFile("home/next")));
    EXPECT_THAT(records(),
        ElementsAre("empty and new.trashinfo", "next.trashinfo", "theirs.trashinfo",
            "whole.trashinfo", "working.trashinfo"));
}

TEST_F(FreedesktopTrashTest, ClearsTheRestOfASourceThatACrashLeftAfterItWasCopied)
{
    const auto removed = ".kestavon-removed-" + Uuid::random().text();
    m_folder.writeFile("volume/" + removed + "/below/file", "content");
    m_folder.writeFile("volume/" + removed + "/new", "written after the copy");
    m_folder.writeFile("home/.local/share/Trash/files/folder/below/file", "content");
    m_folder.writeFile(
        "home/.local/share/Trash/info/folder.trashinfo", trashInfoText("/x", m_clock->now()));
    const auto mark = m_folder / ("volume/" + removed) + '\0' + "folder";
    if (::setxattr((m_homeTrash + "/files/folder").c_str(), "user.kestavon.removed-source",
            mark.data(), mark.size(), 0)
        != 0)
        GTEST_SKIP() << "no extended attributes here";

    ASSERT_TRUE(put(m_folder.writeFile("home/next")));
    EXPECT_FALSE(isThere(m_folder / ("volume/" + removed)));
    EXPECT_THAT(namesIn(m_folder / "volume"), ElementsAre("folder"));
    EXPECT_THAT(namesIn(m_folder / "volume/folder"), ElementsAre("new"));
    EXPECT_EQ(m_folder.readFile("home/.local/share/Trash/files/folder/below/file"), "content");
}

TEST_F(FreedesktopTrashTest, MovesManyAsIfOneByOne)
{
    const auto volume = makeVolume("volume");
    m_folder.writeFile("home/folder/inside", "content");
    m_folder.writeFile("home/a/same", "a");
    m_folder.writeFile("home/b/same", "b");
    const std::vector<std::string> paths{m_folder / "home/folder", m_folder / "home/folder/inside",
        m_folder / "home/missing", m_folder / "home/a/same", m_folder.writeFile("volume/there"),
        m_homeTrash, m_folder / "home/b/same", m_folder / "home/a"};
    std::vector<bool> went;
    for (const auto& result : m_trash->trashItems(paths, {}))
        went.push_back(bool(result));
    EXPECT_THAT(went, ElementsAre(true, false, false, true, true, false, true, true));

    EXPECT_THAT(items(), ElementsAre("a", "folder", "same", "same.2"));
    EXPECT_THAT(namesIn(m_homeTrash + "/files/folder"), ElementsAre("inside"));
    EXPECT_EQ(originalPathIn(record("same.2")), m_folder / "home/b/same");
    EXPECT_EQ(m_folder.readFile("home/.local/share/Trash/files/same.2"), "b");
    EXPECT_THAT(records(), SizeIs(4));
    EXPECT_THAT(namesIn(volume + "/.Trash-" + m_userName + "/files"), ElementsAre("there"));
    const auto sizes = m_folder.readFile("home/.local/share/Trash/directorysizes");
    EXPECT_EQ(std::ranges::count(sizes, '\n'), 2);
}

TEST_F(FreedesktopTrashTest, StopsBetweenTwoOfManyAndKeepsNoRecordsOfTheRest)
{
    std::vector<std::string> paths;
    for (const auto* name : {"a", "b", "c"})
        paths.push_back(m_folder.writeFile(std::string("home/") + name, name));
    std::stop_source stop;
    const auto results = m_trash->trashItems(
        paths, {.stop = stop.get_token(), .begins = [&](const std::string& path) {
                    if (path.ends_with('b'))
                        stop.request_stop();
                }});
    ASSERT_THAT(results, SizeIs(3));
    EXPECT_TRUE(results[0]);
    EXPECT_TRUE(results[1]) << "its turn had come";
    ASSERT_FALSE(results[2]);
    EXPECT_EQ(results[2].error().kind, FileError::Kind::cancelled);
    EXPECT_EQ(m_folder.readFile("home/c"), "c");
    EXPECT_THAT(items(), ElementsAre("a", "b"));
    EXPECT_THAT(records(), SizeIs(2));
}

TEST_F(FreedesktopTrashTest, MovesManyWithFewDescriptors)
{
    constexpr int files = 600;
    std::vector<std::string> paths;
    for (int i = 0; i < files; ++i)
        paths.push_back(m_folder.writeFile("home/" + std::to_string(i), std::to_string(i)));
    struct rlimit old { };
    ::getrlimit(RLIMIT_NOFILE, &old);
    const struct rlimit few {
        64, old.rlim_max
    };
    ::setrlimit(RLIMIT_NOFILE, &few);
    const auto results = m_trash->trashItems(paths, {});
    ::setrlimit(RLIMIT_NOFILE, &old);
    EXPECT_EQ(
        std::ranges::count_if(results, [](const auto& result) { return bool(result); }), files);
    EXPECT_THAT(items(), SizeIs(files));
    EXPECT_THAT(records(), SizeIs(files));
}

TEST_F(FreedesktopTrashTest, KeepsItemsApartThatArriveAtTheSameMoment)
{
    constexpr int threads = 4, each = 10;
    for (int i = 0; i < threads * each; ++i)
        m_folder.writeFile("home/" + std::to_string(i) + "/same/file", std::to_string(i));
    {
        std::vector<std::jthread> workers;
        // Two objects, as two copies of the program have.
        for (int t = 0; t < threads; ++t)
            workers.emplace_back([this, t, trash = t % 2 ? m_trash : makeTrash()] {
                for (int i = t * each; i < (t + 1) * each; ++i)
                    EXPECT_TRUE(
                        trash->trashItem(m_folder / ("home/" + std::to_string(i) + "/same"), {}));
            });
    }
    std::set<std::string> contents;
    for (const auto& item : items()) {
        const auto content = m_folder.readFile("home/.local/share/Trash/files/" + item + "/file");
        contents.insert(content);
        EXPECT_EQ(originalPathIn(record(item)), m_folder / ("home/" + content + "/same"));
    }
    EXPECT_THAT(contents, SizeIs(threads * each));
    EXPECT_THAT(records(), SizeIs(threads * each));
    const auto sizes = m_folder.readFile("home/.local/share/Trash/directorysizes");
    EXPECT_EQ(std::ranges::count(sizes, '\n'), threads * each);
}

TEST(MountedVolumes, KnowsWhereAVolumeBegins)
{
    const SystemMountedVolumes volumes;
    const auto holding = [&volumes](const std::string& path) {
        const FileDescriptor folder(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        return volumes.holding(folder.get());
    };
    const test::TemporaryFolder folder;
    const auto here = holding(folder.path());
    const auto below = holding(folder.makeFolder("a/b"));
    const auto system = holding("/proc/sys");
    ASSERT_TRUE(here && below && system);
    EXPECT_EQ(here->id, below->id);
    EXPECT_EQ(here->topFolder, below->topFolder);
    EXPECT_TRUE(folder.path().starts_with(here->topFolder));
    EXPECT_NE(here->id, system->id);
    const auto root = holding("/");
    ASSERT_TRUE(root);
    EXPECT_EQ(root->topFolder, "/");
}

} // namespace

} // namespace kestavon
