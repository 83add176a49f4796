#include "platform/linux/trash/trash_folder.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace kestavon {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

enum class Others { mayWrite, mustNotWrite };

/// 0, or why the opened folder is not the user's own.
int checkOwn(int folder, uid_t user, Others others)
{
    struct stat status { };
    if (::fstat(folder, &status) != 0)
        return errno;
    if (status.st_uid != user)
        return EPERM;
    if (others == Others::mustNotWrite && (status.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        return EPERM;
    return 0;
}

/// Opens a folder of the user's, which is no link, in an opened one; makes it when it is missing.
Result<FileDescriptor, int> openOwn(
    int parent, const std::string& name, uid_t user, Others others, bool mayMake)
{
    const bool made = mayMake && ::mkdirat(parent, name.c_str(), 0700) == 0;
    if (mayMake && !made && errno != EEXIST)
        return errno;
    FileDescriptor folder(::openat(parent, name.c_str(), folderFlags | O_NOFOLLOW));
    if (!folder)
        return errno;
    if (const int error = checkOwn(folder.get(), user, others)) {
        if (made)
            ::unlinkat(parent, name.c_str(), AT_REMOVEDIR);
        return error;
    }
    // A umask that takes rights from the owner has taken them here.
    if (made)
        ::fchmod(folder.get(), 0700);
    return folder;
}

/// Opens `files` and `info` of the Trash open at `trash.root`.
Result<TrashFolder, int> withContents(TrashFolder trash, uid_t user, Others others, bool mayMake)
{
    auto files = openOwn(trash.root.get(), "files", user, others, mayMake);
    if (!files)
        return files.error();
    auto info = openOwn(trash.root.get(), "info", user, others, mayMake);
    if (!info)
        return info.error();
    trash.files = std::move(*files);
    trash.info = std::move(*info);
    return trash;
}

int makeFolders(const std::string& path)
{
    if (::mkdir(path.c_str(), 0700) == 0 || errno == EEXIST)
        return 0;
    const auto slash = path.rfind('/');
    if (errno != ENOENT || slash == std::string::npos || slash == 0)
        return errno;
    if (const int error = makeFolders(path.substr(0, slash)))
        return error;
    return ::mkdir(path.c_str(), 0700) == 0 || errno == EEXIST ? 0 : errno;
}

/// `.Trash/<user>`, when the volume has a proper `.Trash`.
Result<TrashFolder, int> openSharedTrash(int top, const std::string& topFolder, uid_t user)
{
    FileDescriptor shared(::openat(top, ".Trash", folderFlags | O_NOFOLLOW));
    struct stat status { };
    if (!shared || ::fstat(shared.get(), &status) != 0)
        return errno;
    if ((status.st_mode & S_ISVTX) == 0)
        return EPERM;
    const auto name = std::to_string(user);
    auto root = openOwn(shared.get(), name, user, Others::mustNotWrite, true);
    if (!root)
        return root.error();
    TrashFolder trash;
    trash.path = (topFolder == "/" ? "" : topFolder) + "/.Trash/" + name;
    trash.topFolder = topFolder;
    trash.root = std::move(*root);
    return withContents(std::move(trash), user, Others::mustNotWrite, true);
}

/// `.Trash-<user>`.
Result<TrashFolder, int> openPrivateTrash(int top, const std::string& topFolder, uid_t user)
{
    const auto name = ".Trash-" + std::to_string(user);
    auto root = openOwn(top, name, user, Others::mustNotWrite, true);
    if (!root)
        return root.error();
    TrashFolder trash;
    trash.path = (topFolder == "/" ? "" : topFolder) + '/' + name;
    trash.topFolder = topFolder;
    trash.root = std::move(*root);
    return withContents(std::move(trash), user, Others::mustNotWrite, true);
}

} // namespace

Result<TrashFolder, int> openHomeTrash(const std::string& dataHome, uid_t user)
{
    if (!dataHome.starts_with('/'))
        return ENOENT;
    TrashFolder trash;
    trash.path = dataHome + "/Trash";
    if (const int error = makeFolders(trash.path))
        return error;
    trash.root = FileDescriptor(::open(trash.path.c_str(), folderFlags));
    if (!trash.root)
        return errno;
    if (const int error = checkOwn(trash.root.get(), user, Others::mayWrite))
        return error;
    return withContents(std::move(trash), user, Others::mayWrite, true);
}

Result<TrashFolder, int> openVolumeTrash(const std::string& topFolder, uid_t user)
{
    const FileDescriptor top(::open(topFolder.c_str(), folderFlags));
    if (!top)
        return errno;
    if (auto shared = openSharedTrash(top.get(), topFolder, user))
        return shared;
    return openPrivateTrash(top.get(), topFolder, user);
}

Result<TrashFolder, int> openExistingTrash(const std::string& path, uid_t user)
{
    TrashFolder trash;
    trash.path = path;
    trash.root = FileDescriptor(::open(path.c_str(), folderFlags));
    if (!trash.root)
        return errno;
    if (const int error = checkOwn(trash.root.get(), user, Others::mayWrite))
        return error;
    return withContents(std::move(trash), user, Others::mayWrite, false);
}

} // namespace kestavon
