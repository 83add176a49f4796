#include "platform/linux/mount_table.h"
#include "platform/linux/trash/trash_info.h"
#include "platform/linux/trash/trash_names.h"
#include "platform/linux/trash/trash_places.h"
#include "support/moments.h"
#include "support/temporary_folder.h"
#include "support/time_zone.h"

#include <filesystem>
#include <tuple>

#include <gmock/gmock.h>

namespace kestavon {

namespace {

using test::ScopedTimeZone;
using test::utc;
using ::testing::ElementsAre;

TEST(TrashNames, PutsTheNumberLast)
{
    EXPECT_EQ(nameWithNumberLast("a.txt", 1, 245), "a.txt");
    EXPECT_EQ(nameWithNumberLast("a.txt", 2, 245), "a.txt.2");
    EXPECT_EQ(nameWithNumberLast(std::string(255, 'x'), 1, 245), std::string(245, 'x'));
    EXPECT_EQ(nameWithNumberLast(std::string(255, 'x'), 12, 245), std::string(242, 'x') + ".12");
}

TEST(TrashNames, PutsTheNumberBeforeTheExtension)
{
    const std::tuple<std::string, std::string> names[]{
        {"report.txt", "report 2.txt"},
        {"report", "report 2"},
        {"archive.tar.gz", "archive.tar 2.gz"},
        {".profile", ".profile 2"},
        {"..data", "..data 2"},
        {".profile.old", ".profile 2.old"},
        {"ends with dot.", "ends with dot. 2"},
        {"Mr. Smith goes home", "Mr. Smith goes home 2"},
        {"a." + std::string(253, 'e'), "a." + std::string(251, 'e') + " 2"},
        {std::string(251, 'n') + ".txt", std::string(249, 'n') + " 2.txt"},
    };
    for (const auto& [name, numbered] : names)
        EXPECT_EQ(nameWithNumberBeforeExtension(name, 2, 255), numbered);
    EXPECT_EQ(nameWithNumberBeforeExtension("report.txt", 1, 255), "report.txt");
}

TEST(TrashNames, AreCutBetweenCharacters)
{
    EXPECT_EQ(cutToBytes("aéz", 2), "a");
    EXPECT_EQ(cutToBytes("aéz", 3), "aé");
    EXPECT_EQ(cutToBytes("a😀", 4), "a");
    EXPECT_EQ(cutToBytes("a😀z", 5), "a😀");
    // Bytes that are no UTF-8 are worth keeping too.
    EXPECT_EQ(cutToBytes("\xff\xfe\xfd\xfc", 3), "\xff\xfe\xfd");
    EXPECT_EQ(cutToBytes("\xbf\xbf\xbf\xbf\xbf", 4), "\xbf\xbf\xbf\xbf");
    EXPECT_EQ(cutToBytes("ab\xc3", 2), "ab");
}

TEST(TrashInfo, EncodesEveryByteSoThatItComesBack)
{
    EXPECT_EQ(percentEncoded("/a b/ü%\n~-._"), "/a%20b/%C3%BC%25%0A~-._");
    std::string all;
    for (int byte = 1; byte < 256; ++byte)
        all += static_cast<char>(byte);
    const auto encoded = percentEncoded(all);
    EXPECT_TRUE(std::ranges::all_of(encoded, [](char c) { return c > ' ' && c < 127; }));
    EXPECT_EQ(percentDecoded(encoded), all);
    EXPECT_EQ(percentDecoded("%c3%Bc"), "ü");
    for (const auto* broken : {"%", "%4", "a%4g", "%%41"})
        EXPECT_EQ(percentDecoded(broken), std::nullopt) << broken;
}

TEST(TrashInfo, TellsPathAndLocalTime)
{
    const ScopedTimeZone zone("America/New_York");
    const auto text = trashInfoText("/home/a/\xff[Trash]\nPath=x", utc(2026, 7, 1, 2, 3, 4));
    EXPECT_TRUE(text.starts_with("[Trash Info]\n"));
    EXPECT_NE(text.find("\nPath=/home/a/%FF%5BTrash%5D%0APath%3Dx\n"), std::string::npos);
    EXPECT_NE(text.find("\nDeletionDate=2026-06-30T22:03:04\n"), std::string::npos);
    EXPECT_EQ(originalPathIn(text), "/home/a/\xff[Trash]\nPath=x");
    EXPECT_TRUE(isOurTrashInfo(text));
}

TEST(TrashInfo, UnderstandsOtherProgramsRecordsAndKnowsThemAsTheirs)
{
    const std::string text
        = "[Trash Info]\nX-Other=1\nPath=b%2fc\nPath=d\nDeletionDate=2026-06-30T22:03:04\n";
    EXPECT_EQ(originalPathIn(text), "b/c");
    EXPECT_FALSE(isOurTrashInfo(text));
    EXPECT_FALSE(isOurTrashInfo(""));
    EXPECT_FALSE(isOurTrashInfo("[Trash Info]\n"));
    EXPECT_EQ(originalPathIn("Path=a\n"), std::nullopt);
}

constexpr auto mountInfo
    = "22 1 254:1 / / rw,relatime shared:1 - ext4 /dev/vda1 rw\n"
      "23 22 0:5 / /proc rw - proc proc rw\n"
      "24 22 8:1 / /media/a\\040b\\134c rw master:2 propagate_from:1 - vfat /dev/sda1 rw\n"
      "nonsense\n"
      "25 22 8:1 / /short rw -\n"
      "26 22 8:2 /sub /media/a\\040b\\134c rw - btrfs /dev/sda2 rw";

TEST(MountTable, IsReadWithEscapesAndOptionalFields)
{
    const auto mounts = parseMountInfo(mountInfo);
    EXPECT_THAT(mounts,
        ElementsAre(Mount{"/", "ext4"}, Mount{"/proc", "proc"}, Mount{"/media/a b\\c", "vfat"},
            Mount{"/media/a b\\c", "btrfs"}));
    EXPECT_TRUE(holdsFiles(mounts[0]));
    EXPECT_FALSE(holdsFiles(mounts[1]));
}

TEST(MountTable, TellsWhatLiesOnAServer)
{
    const std::vector<Mount> mounts{{"/", "ext4"}, {"/net", "nfs4"}, {"/net/disk", "btrfs"},
        {"/home/a/cloud", "fuse.sshfs"}, {"/twice", "ext4"}, {"/twice", "cifs"}};
    for (const auto* path : {"/net", "/net/a/b", "/home/a/cloud/x", "/twice/x"})
        EXPECT_TRUE(isOnServer(path, mounts)) << path;
    for (const auto* path : {"/", "/network", "/net/disk/x", "/home/a"})
        EXPECT_FALSE(isOnServer(path, mounts)) << path;
}

TEST(TrashPlaces, AreThoseOfTheHomeItsSandboxesAndItsVolumes)
{
    const test::TemporaryFolder home;
    HostLayout layout;
    layout.home = home.path();
    layout.dataHome = home / "data";
    home.makeFolder(".var/app/org.example.App");
    home.makeFolder("snap/editor/42");
    std::filesystem::create_directory_symlink("42", home / "snap/editor/current");

    std::vector<std::string> folders;
    for (const auto& place : nativeTrashPlaces(layout, parseMountInfo(mountInfo), 1000)) {
        folders.push_back(place.folder);
        EXPECT_EQ(place.items, place.folder + "/files");
    }
    EXPECT_THAT(folders,
        ElementsAre(home / "data/Trash", home / ".var/app/org.example.App/data/Trash",
            home / "snap/editor/42/.local/share/Trash", "/.Trash/1000", "/.Trash-1000",
            "/media/a b\\c/.Trash/1000", "/media/a b\\c/.Trash-1000"));
}

TEST(TrashPlaces, AreRecognisedByTheirPaths)
{
    EXPECT_TRUE(isInVolumeTrash("/media/stick/.Trash-1000/files/a", "/media/stick"));
    EXPECT_TRUE(isInVolumeTrash("/.Trash-0", "/"));
    EXPECT_TRUE(isInVolumeTrash("/media/stick/.Trash/7/files/a", "/media/stick"));
    EXPECT_FALSE(isInVolumeTrash("/media/stick/.Trash-old/a", "/media/stick"));
    EXPECT_FALSE(isInVolumeTrash("/media/stick/copy/.Trash-1000/files/a", "/media/stick"));
    EXPECT_FALSE(isInVolumeTrash("/media/stick2/.Trash-1000", "/media/stick"));

    EXPECT_TRUE(isInSandboxTrash("/home/a/.var/app/x/data/Trash/files/b", "/home/a"));
    EXPECT_TRUE(isInSandboxTrash("/home/a/snap/x/current/.local/share/Trash", "/home/a"));
    EXPECT_FALSE(isInSandboxTrash("/home/a/.var/app/x/data/Trash2", "/home/a"));
    EXPECT_FALSE(isInSandboxTrash("/home/a/.var/app/x/data", "/home/a"));
}

} // namespace

} // namespace kestavon
