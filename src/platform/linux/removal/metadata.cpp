#include "platform/linux/removal/metadata.h"

#include "platform/linux/removal/retry.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <functional>
#include <string_view>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace kestavon {

namespace {

/// How the extended attributes of one entry are reached: through its descriptor or its name.
// See acl(5).
constexpr const char* accessList = "system.posix_acl_access";
constexpr const char* defaultAccessList = "system.posix_acl_default";

struct AttributeAccess {
    std::function<ssize_t(char*, std::size_t)> list;
    std::function<ssize_t(const char*, void*, std::size_t)> get;
    std::function<int(const char*, const void*, std::size_t)> set;
    std::function<int(const char*)> remove;
};

AttributeAccess accessThrough(int descriptor)
{
    return {
        .list = [descriptor](char* names,
                    std::size_t size) { return ::flistxattr(descriptor, names, size); },
        .get = [descriptor](const char* name, void* value,
                   std::size_t size) { return ::fgetxattr(descriptor, name, value, size); },
        .set = [descriptor](const char* name, const void* value,
                   std::size_t size) { return ::fsetxattr(descriptor, name, value, size, 0); },
        .remove = [descriptor](const char* name) { return ::fremovexattr(descriptor, name); },
    };
}

AttributeAccess accessByName(int folder, const char* name)
{
    // There is no call that takes a folder and a name; this names both without looking up a path.
    const auto path = "/proc/self/fd/" + std::to_string(folder) + "/" + name;
    return {
        .list
        = [path](char* names, std::size_t size) { return ::llistxattr(path.c_str(), names, size); },
        .get = [path](const char* attribute, void* value,
                   std::size_t size) { return ::lgetxattr(path.c_str(), attribute, value, size); },
        .set
        = [path](const char* attribute, const void* value,
              std::size_t size) { return ::lsetxattr(path.c_str(), attribute, value, size, 0); },
        .remove = [path](const char* attribute) { return ::lremovexattr(path.c_str(), attribute); },
    };
}

/// What `read` gives, however long; nothing when it fails or keeps growing.
Result<std::string, int> wholeValue(const std::function<ssize_t(char*, std::size_t)>& read)
{
    for (int attempt = 0; attempt < 8; ++attempt) {
        const auto needed = retrying([&] { return read(nullptr, 0); });
        if (needed < 0)
            return errno;
        std::string value(static_cast<std::size_t>(needed), '\0');
        if (needed == 0)
            return value;
        const auto got = retrying([&] { return read(value.data(), value.size()); });
        if (got >= 0) {
            value.resize(static_cast<std::size_t>(got));
            return value;
        }
        if (errno != ERANGE)
            return errno;
    }
    return ERANGE;
}

Result<std::vector<std::string>, int> attributeNames(const AttributeAccess& access)
{
    const auto listed = wholeValue(access.list);
    if (!listed)
        return listed.error();
    std::vector<std::string> names;
    for (std::string_view rest = *listed; !rest.empty();) {
        const auto length = rest.find('\0');
        names.emplace_back(rest.substr(0, length));
        rest.remove_prefix(length == rest.npos ? rest.size() : length + 1);
    }
    return names;
}

Result<std::string, int> attributeValue(const AttributeAccess& access, const std::string& name)
{
    return wholeValue(
        [&](char* value, std::size_t size) { return access.get(name.c_str(), value, size); });
}

bool means(int error, std::initializer_list<int> errors)
{
    return std::ranges::find(errors, error) != errors.end();
}

/// What people and their programs put on a file, as opposed to what a system keeps for itself.
bool belongsToUser(std::string_view attribute)
{
    return attribute.starts_with("user.") || attribute == accessList
        || attribute == defaultAccessList;
}

/// Takes off what a copy got from the folder that it was made in: it would let in whom the original
/// does not. 0, or the error number.
int removeInheritedAccess(
    const AttributeAccess& target, const std::vector<std::string>& ofSource, bool isFolder)
{
    for (const auto* name : {accessList, defaultAccessList}) {
        if ((name == defaultAccessList && !isFolder)
            || std::ranges::find(ofSource, name) != ofSource.end())
            continue;
        if (target.remove(name) != 0 && !means(errno, {ENODATA, ENOTSUP, ENOSYS}))
            return errno;
    }
    return 0;
}

int copyAttributes(const AttributeAccess& source, const AttributeAccess& target,
    const std::string& leaveOut, bool isFolder)
{
    auto names = attributeNames(source);
    if (!names && !means(names.error(), {ENOTSUP, ENOSYS, ENOENT}))
        return names.error();
    const auto listed = names ? std::move(*names) : std::vector<std::string>();
    if (const int error = removeInheritedAccess(target, listed, isFolder))
        return error;
    for (const auto& name : listed) {
        if (!leaveOut.empty() && name.starts_with(leaveOut))
            continue;
        const auto value = attributeValue(source, name);
        const int error = !value ? value.error()
            : retrying([&] { return target.set(name.c_str(), value->data(), value->size()); }) == 0
            ? 0
            : errno;
        // The system's own (labels, capabilities) may be beyond this user or the other disk.
        if (error != 0
            && (belongsToUser(name)
                || !means(error, {EPERM, EACCES, ENOTSUP, EINVAL, ENODATA, ENOSYS})))
            return error;
    }
    return 0;
}

/// Whether the file system keeps no permissions of its own, as those of cameras and sticks.
bool keepsNoPermissions(int descriptor)
{
    constexpr long exfat = 0x2011BAB0;
    struct statfs volume { };
    if (::fstatfs(descriptor, &volume) != 0)
        return false;
    const auto type = static_cast<long>(volume.f_type);
    return type == MSDOS_SUPER_MAGIC || type == exfat || type == FUSE_SUPER_MAGIC
        || type == SMB_SUPER_MAGIC || type == static_cast<long>(CIFS_SUPER_MAGIC)
        || type == static_cast<long>(SMB2_SUPER_MAGIC);
}

/// Gives `change` the owner and group, or failing that the group. Nothing of it is required: an
/// ordinary user may not give files away, and some disks know no owners.
int changeOwner(const std::function<int(uid_t, gid_t)>& change, const EntryStatus& original)
{
    if (retrying([&] { return change(original.owner, original.group); }) == 0)
        return 0;
    if (!means(errno, {EPERM, EINVAL, ENOTSUP, ENOSYS}))
        return errno;
    if (retrying([&] { return change(static_cast<uid_t>(-1), original.group); }) == 0)
        return 0;
    return means(errno, {EPERM, EINVAL, ENOTSUP, ENOSYS}) ? 0 : errno;
}

bool isOf(const struct stat& status, const EntryStatus& original)
{
    return status.st_uid == original.owner && status.st_gid == original.group;
}

/// The permissions for a copy that now belongs to the given user: whoever it belonged to before
/// did not lend this user's name to programs.
mode_t permissionsFor(const struct stat& copy, const EntryStatus& original)
{
    auto permissions = original.permissions();
    if (!isOf(copy, original) && !original.isFolder())
        permissions &= ~static_cast<mode_t>(S_ISUID | S_ISGID);
    return permissions;
}

} // namespace

int copyMetadata(int source, int target, const EntryStatus& original, const std::string& leaveOut)
{
    struct stat copy { };
    if (::fstat(target, &copy) != 0)
        return errno;
    // The owner first: changing it clears permissions and capabilities.
    if (!isOf(copy, original)) {
        const auto change
            = [target](uid_t user, gid_t group) { return ::fchown(target, user, group); };
        if (const int error = changeOwner(change, original))
            return error;
        if (::fstat(target, &copy) != 0)
            return errno;
    }
    if (const int error = copyAttributes(
            accessThrough(source), accessThrough(target), leaveOut, original.isFolder()))
        return error;
    const auto permissions = permissionsFor(copy, original);
    if (retrying([&] { return ::fchmod(target, permissions); }) != 0
        && !(means(errno, {EPERM, ENOTSUP}) && keepsNoPermissions(target)))
        return errno;
    const std::array<struct timespec, 2> times{original.accessed, original.modified};
    if (retrying([&] { return ::futimens(target, times.data()); }) != 0)
        return errno;
    return 0;
}

int copyMetadataOfSpecial(int sourceFolder, const char* sourceName, int targetFolder,
    const char* targetName, const EntryStatus& original)
{
    struct stat copy { };
    if (::fstatat(targetFolder, targetName, &copy, AT_SYMLINK_NOFOLLOW) != 0)
        return errno;
    if (!isOf(copy, original)) {
        const auto change = [&](uid_t user, gid_t group) {
            return ::fchownat(targetFolder, targetName, user, group, AT_SYMLINK_NOFOLLOW);
        };
        if (const int error = changeOwner(change, original))
            return error;
        if (::fstatat(targetFolder, targetName, &copy, AT_SYMLINK_NOFOLLOW) != 0)
            return errno;
    }
    if (!original.isLink()) {
        const int error = copyAttributes(accessByName(sourceFolder, sourceName),
            accessByName(targetFolder, targetName), {}, false);
        if (error != 0)
            return error;
        const auto permissions = permissionsFor(copy, original);
        if (retrying([&] { return ::fchmodat(targetFolder, targetName, permissions, 0); }) != 0)
            return errno;
    }
    const std::array<struct timespec, 2> times{original.accessed, original.modified};
    if (retrying([&] {
            return ::utimensat(targetFolder, targetName, times.data(), AT_SYMLINK_NOFOLLOW);
        })
        != 0)
        return errno;
    return 0;
}

namespace {

/// Opens a file or folder for its attributes; none for what cannot have any, or may block.
FileDescriptor openForMarks(int folder, const char* name, struct stat& status)
{
    if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0
        || !(S_ISREG(status.st_mode) || S_ISDIR(status.st_mode)))
        return FileDescriptor();
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    FileDescriptor opened(retrying([&] { return ::openat(folder, name, flags); }));
    const auto expected = status.st_ino;
    if (opened && (::fstat(opened.get(), &status) != 0 || status.st_ino != expected))
        opened.reset();
    return opened;
}

/// Does `work` on the entry; once more with its owner allowed to write when that was what lacked.
bool workOnMarks(int folder, const char* name, const std::function<bool(int)>& work)
{
    struct stat status { };
    const auto opened = openForMarks(folder, name, status);
    if (!opened)
        return false;
    if (work(opened.get()))
        return true;
    if (errno != EACCES || status.st_uid != ::geteuid() || (status.st_mode & S_IWUSR))
        return false;
    const auto permissions = status.st_mode & 07777;
    if (::fchmod(opened.get(), permissions | S_IWUSR) != 0)
        return false;
    const bool worked = work(opened.get());
    for (int attempt = 0; attempt < 3 && ::fchmod(opened.get(), permissions) != 0; ++attempt) { }
    return worked;
}

} // namespace

bool setMarks(int folder, const char* name, const std::vector<FileMark>& marks)
{
    return marks.empty() || workOnMarks(folder, name, [&marks](int opened) {
        int error = 0;
        for (const auto& mark : marks) { // One that finds no room leaves room for the others.
            if (::fsetxattr(opened, mark.name.c_str(), mark.value.data(), mark.value.size(), 0)
                != 0)
                error = errno;
        }
        errno = error;
        return error == 0;
    });
}

bool removeMarks(int folder, const char* name, const std::string& prefix)
{
    return prefix.empty() || workOnMarks(folder, name, [&prefix](int opened) {
        const auto names = attributeNames(accessThrough(opened));
        return names && std::ranges::all_of(*names, [&](const std::string& attribute) {
            return !attribute.starts_with(prefix) || ::fremovexattr(opened, attribute.c_str()) == 0;
        });
    });
}

std::optional<std::string> readMark(int folder, const char* name, std::string_view mark)
{
    auto value = attributeValue(accessByName(folder, name), std::string(mark));
    if (!value)
        return std::nullopt;
    return std::move(*value);
}

std::vector<FileMark> readMarks(int folder, const char* name, const std::string& prefix)
{
    std::vector<FileMark> marks;
    struct stat status { };
    const auto opened = openForMarks(folder, name, status);
    if (!opened)
        return marks;
    const auto access = accessThrough(opened.get());
    const auto names = attributeNames(access);
    if (!names)
        return marks;
    for (const auto& attribute : *names) {
        if (!attribute.starts_with(prefix))
            continue;
        if (auto value = attributeValue(access, attribute))
            marks.push_back({.name = attribute, .value = std::move(*value)});
    }
    return marks;
}

namespace {

/// Opens an entry only to name it, whatever it is and whatever its permissions are.
FileDescriptor openToName(int folder, const char* name)
{
    return FileDescriptor(
        retrying([&] { return ::openat(folder, name, O_PATH | O_NOFOLLOW | O_CLOEXEC); }));
}

bool changePermissionsOf(int entry, mode_t permissions)
{
    constexpr long fchmodat2 = 452; // Since Linux 6.6, and newer than the headers of Debian 12.
    if (::syscall(fchmodat2, entry, "", permissions, AT_EMPTY_PATH) == 0)
        return true;
    const auto path = "/proc/self/fd/" + std::to_string(entry);
    return retrying([&] { return ::chmod(path.c_str(), permissions); }) == 0;
}

} // namespace

bool changePermissions(int folder, const char* name, mode_t permissions)
{
    const auto entry = openToName(folder, name);
    struct stat status { };
    if (!entry || ::fstat(entry.get(), &status) != 0)
        return false;
    if (S_ISLNK(status.st_mode)) {
        errno = ELOOP;
        return false;
    }
    return changePermissionsOf(entry.get(), permissions);
}

BorrowedPermissions::BorrowedPermissions(int folder, const char* name, mode_t borrowed)
    : m_entry(openToName(folder, name))
{
    struct stat status { };
    if (!m_entry || ::fstat(m_entry.get(), &status) != 0 || S_ISLNK(status.st_mode))
        return;
    m_former = status.st_mode & 07777;
    m_isChanged = changePermissionsOf(m_entry.get(), borrowed);
}

BorrowedPermissions::~BorrowedPermissions()
{
    // A disk that refuses once often does not refuse twice.
    for (int attempt = 0; m_isChanged && attempt < 3; ++attempt)
        m_isChanged = !changePermissionsOf(m_entry.get(), m_former);
}

} // namespace kestavon
