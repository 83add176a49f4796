#include "platform/linux/file_descriptor.h"
#include "walk/pseudo_file_systems.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace kestavon {
namespace {

bool isPseudo(const char* path)
{
    return isOnPseudoFileSystem(FileDescriptor(::open(path, O_PATH | O_DIRECTORY)).get());
}

TEST(PseudoFileSystems, AreToldFromThoseThatHoldFiles)
{
    EXPECT_TRUE(isPseudo("/proc/self"));
    EXPECT_TRUE(isPseudo("/sys/kernel"));
    EXPECT_TRUE(isPseudo("/dev/pts"));
    EXPECT_FALSE(isPseudo("/usr"));
    EXPECT_FALSE(isPseudo("/dev/shm")) << "files in memory are files";
    EXPECT_FALSE(isOnPseudoFileSystem(-1));
}

TEST(PseudoFileSystems, AreFoundInTheMountTable)
{
    constexpr auto table = "21 1 8:2 / / rw,relatime shared:1 - ext4 /dev/sda2 rw\n"
                           "22 21 0:5 / /dev rw,nosuid shared:2 master:3 - devtmpfs udev rw\n"
                           "23 21 0:50 / /run/user/1000/doc rw - fuse.portal portal rw\n"
                           "24 21 0:51 / /odd\\040name rw - fuse.sshfs there:/ rw";
    EXPECT_EQ(mountedType(table, "8:2"), "ext4");
    EXPECT_EQ(mountedType(table, "0:5"), "devtmpfs");
    EXPECT_EQ(mountedType(table, "0:50"), "fuse.portal");
    EXPECT_EQ(mountedType(table, "0:51"), "fuse.sshfs");
    EXPECT_EQ(mountedType(table, "0:52"), "");
    EXPECT_EQ(mountedType("", "8:2"), "");
    EXPECT_EQ(mountedType("25 21 0:52", "0:52"), "");
}

TEST(MountsOnDemand, AreFoundInTheMountTableButForTheSystemsOwn)
{
    constexpr auto usual = "21 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
                           "30 21 0:30 / /proc/sys/fs/binfmt_misc rw - autofs systemd-1 rw\n";
    EXPECT_FALSE(tellsOfMountsOnDemand(usual));
    EXPECT_FALSE(tellsOfMountsOnDemand(""));
    EXPECT_TRUE(tellsOfMountsOnDemand(
        usual + std::string("31 21 0:31 / /home/alice/share rw - autofs systemd-1 rw\n")));
}

} // namespace
} // namespace kestavon
