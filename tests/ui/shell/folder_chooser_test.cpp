#include "support/event_loop.h"
#include "support/temporary_folder.h"
#include "ui/shell/folder_chooser.h"
#include "ui/shell/window_folder_picker.h"

#include <filesystem>
#include <mutex>

#include <gmock/gmock.h>

namespace kestavon {

namespace {

using test::processEventsUntil;
using testing::ElementsAre;

TEST(FolderChooserText, NamesEveryByteOfAPath)
{
    for (const std::string path : {"/", "/home/alice", "/a b#c?d%20", "/caf\xC3\xA9",
             "/not\xFFtext", "/new\nline", "/rtl\xE2\x80\xAEname", "/back\\slash", "/~"}) {
        EXPECT_EQ(pathOfText(typedText(path), "/elsewhere", "/home/alice"), path);
    }
    EXPECT_EQ(typedText("/caf\xC3\xA9"), QStringLiteral("/café")) << "what is text reads as text";
    const auto typed = [](const char* text) {
        return pathOfText(QString::fromUtf8(text), "/srv", "/home/alice");
    };
    EXPECT_EQ(typed("~"), "/home/alice");
    EXPECT_EQ(typed("~/Films"), "/home/alice/Films");
    EXPECT_EQ(typed("~bob"), "/srv/~bob");
    EXPECT_EQ(typed("data"), "/srv/data");
    EXPECT_EQ(typed(""), "/srv");
    EXPECT_EQ(pathOfText(QStringLiteral("x"), "/", "/home/alice"), "/x");
}

TEST(FolderChooserPlaces, AreTheHomeTheRootAndDisksOfPeople)
{
    std::vector<std::string> paths;
    for (const auto& place : folderPlaces("/home/alice",
             {{"/", "ext4"}, {"/proc", "proc"}, {"/boot/efi", "vfat"}, {"/run/user/1000", "tmpfs"},
                 {"/run/media/alice/STICK", "vfat"}, {"/mnt/backup", "btrfs"},
                 {"/mnt/backup", "btrfs"}, {"/home", "ext4"}, {"/var/lib/x", "ext4"}}))
        paths.push_back(place.path);
    EXPECT_THAT(
        paths, ElementsAre("/home/alice", "/", "/run/media/alice/STICK", "/mnt/backup", "/home"));
}

class FolderChooserTest : public testing::Test {
protected:
    FolderChooserTest()
    {
        for (const auto* name : {"Films", "archive", "caf\xE9", ".secret", "Films/deep"})
            folder.makeFolder(name);
        folder.writeFile("file");
        std::filesystem::create_directory_symlink(folder / "Films", folder / "link");
        std::filesystem::create_symlink(folder / "file", folder / "link to file");
        watch(chooser);
    }

    void watch(FolderChooser& watched)
    {
        QObject::connect(&watched, &FolderChooser::chosen,
            [this](const FilePath& path) { chosen.push_back(path.bytes); });
    }
    void begin(FolderChooser& in, const std::string& path)
    {
        in.begin(urlFromPath(path));
        settle(in);
    }
    static void settle(FolderChooser& in)
    {
        EXPECT_TRUE(processEventsUntil([&] { return !in.busy(); }));
    }
    std::vector<std::string> names() const
    {
        std::vector<std::string> found;
        for (int row = 0; row < chooser.rowCount(); ++row)
            found.push_back(std::filesystem::path(chooser.folderAt(row).bytes).filename());
        return found;
    }
    bool shows(const std::vector<std::string>& wanted)
    {
        return processEventsUntil([&] { return names() == wanted; });
    }
    int rowOf(const char* name) const { return chooser.rowBeginningWith(QLatin1String(name), 0); }

    test::TemporaryFolder folder;
    FolderChooser chooser{folder.path()};
    std::vector<std::string> chosen;
};

TEST_F(FolderChooserTest, ListsFoldersAndLinksToThemWhateverTheirBytes)
{
    begin(chooser, folder.path());
    EXPECT_TRUE(shows({"archive", "caf\xE9", "Films", "link"})) << testing::PrintToString(names());
    chooser.setRow(2);
    chooser.setShowsHidden(true);
    EXPECT_TRUE(shows({".secret", "archive", "caf\xE9", "Films", "link"}));
    EXPECT_EQ(chooser.row(), 3) << "the same folder is marked";

    chooser.setRow(2);
    EXPECT_EQ(chooser.choiceName(), QStringLiteral("caf\uFFFD"));
    chooser.take(chooser.path());
    chooser.enter(2);
    settle(chooser);
    EXPECT_EQ(chooser.rowCount(), 0);
    chooser.take(chooser.path());
    EXPECT_THAT(chosen, ElementsAre(folder / "caf\xE9", folder / "caf\xE9"));
    chooser.goUp();
    settle(chooser);
    EXPECT_EQ(chooser.path().toStdString(), folder.path());
}

TEST_F(FolderChooserTest, TakesWhatIsMarkedElseWhatIsShown)
{
    begin(chooser, folder.path());
    chooser.take(chooser.path());
    chooser.setRow(rowOf("films"));
    EXPECT_EQ(chooser.choicePath().toStdString(), folder / "Films");
    chooser.take(chooser.path());
    chooser.go(QStringLiteral("/"));
    settle(chooser);
    EXPECT_EQ(chooser.row(), -1) << "nothing is marked that nobody chose";
    EXPECT_FALSE(chooser.canGoUp());
    chooser.take(chooser.path());
    EXPECT_THAT(chosen, ElementsAre(folder.path(), folder / "Films", "/"));
}

TEST_F(FolderChooserTest, TakesATypedFolderOnceItIsSeenToBeThere)
{
    begin(chooser, folder.path());
    chooser.setRow(0);
    chooser.take(QStringLiteral("nowhere"));
    settle(chooser);
    EXPECT_THAT(chooser.message().toStdString(), testing::HasSubstr("nowhere"));
    chooser.take(QStringLiteral("file"));
    settle(chooser);
    EXPECT_TRUE(chosen.empty());
    EXPECT_EQ(chooser.path().toStdString(), folder.path()) << "the folder before it stays";

    chooser.take(QStringLiteral("Films/../Films//deep/"));
    settle(chooser);
    chooser.take(QStringLiteral("file://") + QString::fromStdString(folder.path())
        + QStringLiteral("/caf%E9"));
    settle(chooser);
    EXPECT_THAT(chosen, ElementsAre(folder / "Films/deep", folder / "caf\xE9"));
    EXPECT_EQ(chooser.message(), QString());
    chooser.go(QStringLiteral("file:///tmp%00/x"));
    EXPECT_NE(chooser.message(), QString());
}

TEST_F(FolderChooserTest, GivesUpADiskThatDoesNotAnswer)
{
    const auto dead = std::make_shared<std::mutex>();
    std::unique_lock held(*dead);
    const auto lister = [dead](const std::string& path) {
        if (path.ends_with("Films"))
            const std::lock_guard waiting(*dead);
        return subfoldersOf(path);
    };
    FolderChooser impatient(folder.path(), lister, std::chrono::milliseconds(20));
    watch(impatient);
    begin(impatient, folder.path());
    impatient.go(QStringLiteral("Films"));
    EXPECT_TRUE(impatient.busy());
    settle(impatient);
    EXPECT_THAT(impatient.message().toStdString(), testing::HasSubstr("Films"));
    EXPECT_EQ(impatient.path().toStdString(), folder.path());

    impatient.go(QStringLiteral("archive"));
    EXPECT_TRUE(
        processEventsUntil([&] { return impatient.path().toStdString() == folder / "archive"; }));
    held.unlock();
    impatient.goUp(); // an answer after all is not heard
    EXPECT_TRUE(
        processEventsUntil([&] { return impatient.path().toStdString() == folder.path(); }));
}

TEST_F(FolderChooserTest, FindsANameByItsBeginning)
{
    begin(chooser, folder.path());
    ASSERT_TRUE(shows({"archive", "caf\xE9", "Films", "link"}));
    EXPECT_EQ(rowOf("F"), 2);
    EXPECT_EQ(rowOf("fi"), 2);
    EXPECT_EQ(rowOf("li"), 3);
    EXPECT_EQ(rowOf("x"), -1);
    EXPECT_EQ(chooser.rowBeginningWith(QStringLiteral("a"), 3), 0) << "from the top again";
}

} // namespace

} // namespace kestavon
