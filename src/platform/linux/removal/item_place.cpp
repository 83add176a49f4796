#include "platform/linux/removal/item_place.h"

#include "core/domain/removal_guard.h"
#include "platform/linux/removal/retry.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace kestavon {

namespace {

constexpr int folderFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;
/// One call takes paths of less than 4096 bytes; longer ones are walked in pieces.
constexpr std::size_t longestPiece = 3800;

Result<FileDescriptor, int> openIn(int folder, const std::string& path, int flags)
{
    FileDescriptor opened(retrying([&] { return ::openat(folder, path.c_str(), flags); }));
    if (!opened)
        return errno;
    return opened;
}

/// Opens the folder at `path`, following links as the system does.
Result<FileDescriptor, int> openFollowingLinks(std::string_view path)
{
    auto folder = openIn(AT_FDCWD, "/", folderFlags);
    while (folder) {
        path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
        if (path.empty())
            break;
        auto length = path.size();
        if (length > longestPiece)
            length = path.rfind('/', longestPiece);
        if (length == std::string_view::npos)
            return ENAMETOOLONG;
        folder = openIn(folder->get(), std::string(path.substr(0, length)), folderFlags);
        path.remove_prefix(length);
    }
    return folder;
}

/// Opens the folder at `path` below `start`; a link on the way is an error.
Result<FileDescriptor, int> openFollowingNothing(FileDescriptor start, std::string_view path)
{
    auto folder = Result<FileDescriptor, int>(std::move(start));
    while (folder) {
        path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
        if (path.empty())
            break;
        const auto component = path.substr(0, path.find('/'));
        if (component == "..")
            return ELOOP;
        folder = openIn(folder->get(), std::string(component), folderFlags | O_NOFOLLOW);
        path.remove_prefix(component.size());
    }
    return folder;
}

} // namespace

Result<FileDescriptor, int> openFolder(const std::string& path)
{
    if (!path.starts_with('/'))
        return EINVAL;
    return openFollowingLinks(path);
}

Result<ItemPlace, int> openItemPlace(const std::string& path, const std::string& noLinksBelow)
{
    if (!path.starts_with('/') || path.find('\0') != std::string::npos)
        return EINVAL;
    std::string_view rest = path;
    while (rest.size() > 1 && rest.ends_with('/'))
        rest.remove_suffix(1);
    const auto name = lastComponent(rest);
    if (name == "/")
        return EBUSY;
    if (name == "." || name == "..")
        return EINVAL;
    rest.remove_suffix(name.size());

    const bool isWalked = !noLinksBelow.empty() && isAtOrBelow(rest, noLinksBelow);
    auto folder = openFollowingLinks(isWalked ? std::string_view(noLinksBelow) : rest);
    if (folder && isWalked)
        folder = openFollowingNothing(std::move(*folder), rest.substr(noLinksBelow.size()));
    if (!folder)
        return folder.error();
    return ItemPlace{std::move(*folder), std::string(name), std::string(lastComponent(rest))};
}

std::size_t longestNameIn(int folder)
{
    struct statvfs status { };
    if (::fstatvfs(folder, &status) != 0 || status.f_namemax < 32)
        return NAME_MAX;
    return std::min<std::size_t>(status.f_namemax, NAME_MAX);
}

std::optional<std::string> pathOfFolder(int folder)
{
    const auto link = "/proc/self/fd/" + std::to_string(folder);
    std::array<char, PATH_MAX> path{};
    const auto length = ::readlink(link.c_str(), path.data(), path.size());
    if (length <= 0 || static_cast<std::size_t>(length) == path.size() || path[0] != '/')
        return std::nullopt;
    std::string text(path.data(), static_cast<std::size_t>(length));
    // A removed folder still has a text here; only one that leads back to it is its path.
    struct stat opened {
    }, named{};
    if (::fstat(folder, &opened) != 0 || ::stat(text.c_str(), &named) != 0
        || opened.st_dev != named.st_dev || opened.st_ino != named.st_ino)
        return std::nullopt;
    return text;
}

} // namespace kestavon
