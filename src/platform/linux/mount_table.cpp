#include "platform/linux/mount_table.h"

#include "core/domain/removal_guard.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <optional>

namespace kestavon {
namespace {

/// The kernel writes space, tab, line feed and backslash as three octal digits.
std::string unescaped(std::string_view text)
{
    const auto isOctal = [](char digit) { return digit >= '0' && digit <= '7'; };
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size() && isOctal(text[i + 1]) && isOctal(text[i + 2])
            && isOctal(text[i + 3])) {
            bytes += static_cast<char>(
                (text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + (text[i + 3] - '0'));
            i += 3;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

std::vector<std::string_view> fieldsOf(std::string_view line)
{
    std::vector<std::string_view> fields;
    while (!line.empty()) {
        const auto end = std::min(line.find(' '), line.size());
        if (end > 0)
            fields.push_back(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return fields;
}

/// "36 35 98:0 /root /mnt/point rw,noatime master:1 - ext3 /dev/root rw": the optional fields after
/// the sixth end at a lone hyphen, which the type follows.
std::optional<Mount> parseLine(std::string_view line)
{
    const auto fields = fieldsOf(line);
    if (fields.size() < 8)
        return std::nullopt;
    const auto hyphen = std::find(fields.begin() + 6, fields.end(), "-");
    if (hyphen == fields.end() || hyphen + 1 == fields.end())
        return std::nullopt;
    return Mount{unescaped(fields[4]), unescaped(*(hyphen + 1))};
}

} // namespace

std::vector<Mount> parseMountInfo(std::string_view text)
{
    std::vector<Mount> mounts;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        if (auto mount = parseLine(text.substr(0, end)))
            mounts.push_back(std::move(*mount));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return mounts;
}

std::vector<Mount> currentMounts()
{
    std::ifstream table("/proc/self/mountinfo", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(table), {}};
    return parseMountInfo(text);
}

bool holdsFiles(const Mount& mount)
{
    static constexpr std::array<std::string_view, 23> madeUp{"autofs", "binfmt_misc", "bpf",
        "cgroup", "cgroup2", "configfs", "cpuset", "debugfs", "devpts", "devtmpfs", "efivarfs",
        "fusectl", "hugetlbfs", "mqueue", "nsfs", "proc", "pstore", "rpc_pipefs", "securityfs",
        "selinuxfs", "squashfs", "sysfs", "tracefs"};
    return std::ranges::find(madeUp, mount.type) == madeUp.end();
}

bool isOnServer(std::string_view path, const std::vector<Mount>& mounts)
{
    static constexpr std::array<std::string_view, 14> served{"9p", "afs", "autofs", "beegfs",
        "ceph", "cifs", "coda", "gfs2", "lustre", "ncpfs", "nfs", "nfs4", "smb3", "smbfs"};
    const Mount* nearest = nullptr; // of several on one folder, the last covers the others
    for (const auto& mount : mounts) {
        if (isAtOrBelow(path, mount.point)
            && (!nearest || mount.point.size() >= nearest->point.size()))
            nearest = &mount;
    }
    return nearest
        && (nearest->type.starts_with("fuse.")
            || std::ranges::find(served, nearest->type) != served.end());
}

} // namespace kestavon
