#include "walk/pseudo_file_systems.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>

namespace kestavon {

namespace {

// Numbers that the kernel's public header does not list.
constexpr long configfsMagic = 0x62656570;
constexpr long fusectlMagic = 0x65735543;
constexpr long mqueueMagic = 0x19800202;
constexpr long rpcPipefsMagic = 0x67596969;

constexpr std::array<long, 18> pseudoMagics{
    PROC_SUPER_MAGIC,
    SYSFS_MAGIC,
    CGROUP_SUPER_MAGIC,
    CGROUP2_SUPER_MAGIC,
    DEVPTS_SUPER_MAGIC,
    DEBUGFS_MAGIC,
    TRACEFS_MAGIC,
    SECURITYFS_MAGIC,
    BPF_FS_MAGIC,
    PSTOREFS_MAGIC,
    EFIVARFS_MAGIC,
    BINFMTFS_MAGIC,
    AUTOFS_SUPER_MAGIC,
    SELINUX_MAGIC,
    configfsMagic,
    fusectlMagic,
    mqueueMagic,
    rpcPipefsMagic,
};

// These share their number with file systems that hold files, and only the mount table tells them
// apart.
constexpr std::string_view deviceFileSystem = "devtmpfs";
constexpr std::array<std::string_view, 4> pseudoTypes{
    deviceFileSystem,
    "fuse.gvfsd-fuse",
    "fuse.lxcfs",
    "fuse.portal",
};

std::string_view nextField(std::string_view& line)
{
    const auto end = std::min(line.find(' '), line.size());
    const auto field = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    return field;
}

/// A line of a mount table.
struct Mount {
    std::string_view device;
    std::string_view place;
    std::string_view type;
};

/// Takes the first line off the table; nothing when there is none that says as much.
std::optional<Mount> nextMount(std::string_view& mountTable)
{
    while (!mountTable.empty()) {
        const auto end = std::min(mountTable.find('\n'), mountTable.size());
        auto line = mountTable.substr(0, end);
        mountTable.remove_prefix(std::min(end + 1, mountTable.size()));
        // "36 35 98:0 /mnt1 /mnt2 rw,noatime master:1 - ext3 /dev/root rw": a lone dash ends the
        // optional fields.
        nextField(line);
        nextField(line);
        Mount mount;
        mount.device = nextField(line);
        nextField(line);
        mount.place = nextField(line);
        while (!line.empty() && nextField(line) != "-") { }
        mount.type = nextField(line);
        if (!mount.type.empty())
            return mount;
    }
    return std::nullopt;
}

std::string mountTable()
{
    std::ifstream file("/proc/self/mountinfo");
    return {std::istreambuf_iterator<char>(file), {}};
}

bool isPseudoMagic(long magic)
{
    return std::ranges::find(pseudoMagics, magic) != pseudoMagics.end();
}

/// The number that stands for the file system's type; 0 when that cannot be told.
long magicOf(int folder)
{
    struct statfs fileSystem { };
    return ::fstatfs(folder, &fileSystem) == 0 ? static_cast<long>(fileSystem.f_type) : 0;
}

/// The type that the mount table gives; empty where it gives none, or cannot be asked.
std::string mountedTypeOf(int folder)
{
    struct stat facts { };
    if (::fstat(folder, &facts) != 0)
        return {};
    const auto device
        = std::to_string(major(facts.st_dev)) + ':' + std::to_string(minor(facts.st_dev));
    return std::string(mountedType(mountTable(), device));
}

} // namespace

bool isOnKernelFileSystem(int folder)
{
    const auto magic = magicOf(folder);
    return isPseudoMagic(magic)
        || (magic == TMPFS_MAGIC && mountedTypeOf(folder) == deviceFileSystem);
}

bool isOnPseudoFileSystem(int folder)
{
    const auto magic = magicOf(folder);
    if (isPseudoMagic(magic))
        return true;
    if (magic != TMPFS_MAGIC && magic != FUSE_SUPER_MAGIC)
        return false;
    return std::ranges::find(pseudoTypes, mountedTypeOf(folder)) != pseudoTypes.end();
}

std::string_view mountedType(std::string_view mountTable, std::string_view device)
{
    while (const auto mount = nextMount(mountTable)) {
        if (mount->device == device)
            return mount->type;
    }
    return {};
}

bool tellsOfMountsOnDemand(std::string_view mountTable)
{
    while (const auto mount = nextMount(mountTable)) {
        // Every machine has one among its settings.
        if (mount->type == "autofs" && !mount->place.starts_with("/proc/"))
            return true;
    }
    return false;
}

bool mountsOnDemand()
{
    return tellsOfMountsOnDemand(mountTable());
}

} // namespace kestavon
