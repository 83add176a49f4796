#include "platform/protected_places.h"

#include "core/domain/removal_guard.h"
#include "platform/linux/removal/entry_status.h"
#include "platform/linux/removal/item_place.h"
#include "platform/linux/small_file.h"
#include "platform/linux/user_folders.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include <pwd.h>
#include <unistd.h>

namespace kestavon {

namespace {

/// What the system runs from.
constexpr std::array<std::string_view, 20> systemFolders{
    "/boot",
    "/dev",
    "/efi",
    "/etc",
    "/lib",
    "/lib32",
    "/lib64",
    "/libx32",
    "/proc",
    "/run",
    "/sys",
    "/snap",
    "/nix",
    "/gnu",
    "/opt",
    "/srv",
    "/var/lib",
    "/var/cache",
    "/var/spool",
    "/lost+found",
};

/// Folders that only hold what may well be removed.
constexpr std::array<std::string_view, 10> sharedFolders{
    "/",
    "/home",
    "/root",
    "/mnt",
    "/media",
    "/tmp",
    "/usr/local",
    "/var",
    "/var/log",
    "/var/tmp",
};

/// Keys and passwords below a home: losing them locks a person out.
constexpr std::array<std::string_view, 10> keyPlaces{
    ".ssh",
    ".gnupg",
    ".password-store",
    ".pki",
    ".aws",
    ".azure",
    ".kube",
    ".docker/config.json",
    ".git-credentials",
    ".netrc",
};

/// The user's folders where nothing else is said, of either kind of home.
constexpr std::array<std::string_view, 11> userFolders{
    "Desktop",
    "Documents",
    "Downloads",
    "Library",
    "Movies",
    "Music",
    "Pictures",
    "Public",
    "Templates",
    "Videos",
    ".local",
};

/// The histories of whole projects.
constexpr std::array<std::string_view, 4> versionControlFolders{".git", ".hg", ".svn", ".bzr"};

std::string below(const std::string& folder, std::string_view path)
{
    return (folder == "/" ? std::string() : folder) + '/' + std::string(path);
}

std::string userName()
{
    std::vector<char> buffer(16 * 1024);
    struct passwd entry { };
    struct passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found)
        return {};
    return found->pw_name;
}

/// Repeated slashes and "." say nothing; "..", which can mean anything beyond a link, stays.
std::string tidied(std::string_view path)
{
    std::string tidy;
    while (!path.empty()) {
        path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
        const auto component = path.substr(0, path.find('/'));
        path.remove_prefix(component.size());
        if (!component.empty() && component != ".")
            tidy.append("/").append(component);
    }
    return tidy.empty() ? "/" : tidy;
}

std::string parentOf(const std::string& path)
{
    const auto slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

/// Without links; empty when that cannot be told.
std::string canonicalPath(const std::string& path)
{
    std::error_code error;
    auto real = std::filesystem::canonical(path, error).native();
    return error ? std::string() : real;
}

/// Adds where the paths really lie, beside where they are said to lie.
void addResolved(std::vector<std::string>& paths)
{
    std::vector<std::string> resolved;
    for (const auto& path : paths) {
        auto real = canonicalPath(path);
        if (!real.empty() && real != path)
            resolved.push_back(std::move(real));
    }
    paths.insert(paths.end(), resolved.begin(), resolved.end());
}

bool isVolumeTrash(std::string_view name)
{
    constexpr std::string_view prefix = ".Trash-";
    return name == ".Trash"
        || (name.starts_with(prefix) && name.size() > prefix.size()
            && std::ranges::all_of(
                name.substr(prefix.size()), [](char c) { return c >= '0' && c <= '9'; }));
}

/// A Trash of some volume, or one of the folders that it is made of.
bool isTrashFolder(const std::string& path)
{
    const auto name = lastComponent(path);
    const auto parent = parentOf(path);
    if (isVolumeTrash(name))
        return true;
    const bool isPart = name == "files" || name == "info" || name == "expunged";
    const bool isUsersOwn = lastComponent(parent) == ".Trash" && name == std::to_string(::getuid());
    return isUsersOwn || (isPart && isVolumeTrash(lastComponent(parent)))
        || (isPart && lastComponent(parentOf(parent)) == ".Trash");
}

} // namespace

/// A path in the two ways in which it is looked at.
struct ProtectedPlaces::Forms {
    std::string written;
    std::string resolved; ///< the same when the folder cannot be resolved
    std::optional<EntryStatus> status; ///< nothing when there is no such entry
    bool isTrustworthy = true; ///< false when where it lies cannot be told
};

ProtectedPlaces::ProtectedPlaces(Lists lists)
    : m_lists(std::move(lists))
{
    addResolved(m_lists.withContents);
    addResolved(m_lists.exceptions);
    addResolved(m_lists.foldersOnly);
}

ProtectedPlaces::Lists ProtectedPlaces::listsFor(const HostLayout& layout)
{
    Lists lists;
    lists.systemRoot = layout.systemRoot.empty() ? "/" : layout.systemRoot;
    lists.withContents.assign(systemFolders.begin(), systemFolders.end());
    // Below folders of the system, and yet people's own: memory that anybody may put files in, and
    // where the desktop shows the phones and servers that a person has opened.
    // What a package manager of people's own has downloaded is theirs too.
    lists.exceptions = {
        "/dev/shm", "/run/user/" + std::to_string(::getuid()) + "/gvfs", "/opt/homebrew/var/cache"};
    if (const auto user = userName(); !user.empty())
        lists.exceptions.push_back("/run/media/" + user);
    for (const auto place : keyPlaces)
        lists.withContents.push_back(below(layout.home, place));
    lists.withContents.push_back(below(layout.dataHome, "keyrings"));
    lists.withContents.push_back(below(layout.applicationSupport, "Kestavon"));
    lists.withContents.push_back(below(layout.configHome, "Kestavon"));

    lists.foldersOnly.assign(sharedFolders.begin(), sharedFolders.end());
    for (const auto folder : userFolders)
        lists.foldersOnly.push_back(below(layout.home, folder));
    for (const auto& folder : {layout.cacheHome, layout.configHome, layout.dataHome,
             layout.stateHome, layout.applicationSupport, below(layout.dataHome, "Trash"),
             below(layout.dataHome, "Trash/files"), below(layout.dataHome, "Trash/info")})
        lists.foldersOnly.push_back(folder);
    const auto named = readSmallFile(below(layout.configHome, "user-dirs.dirs"));
    for (auto& folder : userFoldersNamedIn(named.bytes, layout.home))
        lists.foldersOnly.push_back(std::move(folder));
    // And whatever these lie in: removing a home's parent removes the home.
    auto held = lists.withContents;
    for (const auto& place : {layout.home, layout.applicationSupport, layout.configHome})
        held.push_back(place + "/.");
    for (const auto prefix : protectedPathPrefixes)
        held.push_back(below(lists.systemRoot, prefix.substr(1)));
    for (const auto& place : held) {
        for (auto folder = parentOf(place); folder.size() > 1; folder = parentOf(folder))
            lists.foldersOnly.push_back(folder);
    }
    std::ranges::sort(lists.foldersOnly);
    lists.foldersOnly.erase(
        std::unique(lists.foldersOnly.begin(), lists.foldersOnly.end()), lists.foldersOnly.end());
    lists.folderNames.assign(versionControlFolders.begin(), versionControlFolders.end());
    std::erase(lists.withContents, "");
    std::erase(lists.foldersOnly, "");
    return lists;
}

ProtectedPlaces::Forms ProtectedPlaces::formsOf(const std::string& path) const
{
    Forms forms;
    forms.written = tidied(path);
    forms.resolved = forms.written;
    const auto name = lastComponent(forms.written);
    if (!path.starts_with('/') || name == "/" || name == "..") {
        forms.isTrustworthy = false;
        return forms;
    }
    // What the system can resolve at once; of a longer path, no later part may be a link.
    auto folder = parentOf(forms.written);
    std::string rest;
    constexpr std::size_t longestResolved = 3800;
    if (folder.size() > longestResolved) {
        const auto cut = folder.rfind('/', longestResolved);
        if (cut == std::string::npos || cut == 0) {
            forms.isTrustworthy = false;
            return forms;
        }
        rest = folder.substr(cut);
        folder.resize(cut);
    }
    const auto place = openItemPlace(forms.written, rest.empty() ? std::string() : folder);
    if (!place) {
        forms.isTrustworthy = rest.empty();
        return forms;
    }
    const auto opened = rest.empty() ? pathOfFolder(place->folder.get()) : std::nullopt;
    const auto real = opened ? *opened : canonicalPath(folder);
    if (real.empty()) {
        forms.isTrustworthy = false;
        return forms;
    }
    forms.resolved = (real == "/" ? "" : real) + rest + '/' + std::string(name);
    if (auto status = statusOf(place->folder.get(), place->name.c_str()))
        forms.status = *status;
    return forms;
}

bool ProtectedPlaces::isListed(const std::string& path) const
{
    const auto holdsPath = [&path](const std::string& place) { return isAtOrBelow(path, place); };
    const auto liesBelow
        = [&path](const std::string& place) { return path != place && isAtOrBelow(path, place); };
    return (std::ranges::any_of(m_lists.withContents, holdsPath)
               && std::ranges::none_of(m_lists.exceptions, liesBelow))
        || std::ranges::find(m_lists.foldersOnly, path) != m_lists.foldersOnly.end()
        || isTrashFolder(path);
}

std::optional<FileError> ProtectedPlaces::refusal(const std::string& path) const
{
    return refusal(formsOf(path));
}

std::optional<FileError> ProtectedPlaces::refusal(const Forms& forms) const
{
    const auto name = lastComponent(forms.written);
    const auto refused = [name](std::string_view reason) {
        return FileError{FileError::Kind::permission,
            "“" + std::string(name) + "” couldn’t be removed because " + std::string(reason)};
    };
    if (!forms.isTrustworthy)
        return refused("where it really lies can’t be told.");
    if (forms.status && forms.status->isMountPoint)
        return refused("another volume is mounted there.");
    if (isListed(forms.written) || isListed(forms.resolved))
        return refused("the system or your account needs that place.");
    if (forms.status && forms.status->isFolder()
        && std::ranges::find(m_lists.folderNames, name) != m_lists.folderNames.end())
        return refused("it holds the history of the project around it.");
    return std::nullopt;
}

bool ProtectedPlaces::passesRemovalRule(const std::string& path) const
{
    if (!isSafeToRemove(path))
        return false;
    if (m_lists.systemRoot == "/" || !isAtOrBelow(path, m_lists.systemRoot))
        return true;
    return isSafeToRemove(std::string_view(path).substr(m_lists.systemRoot.size()));
}

bool ProtectedPlaces::mayRemove(const std::string& path) const
{
    if (!isSafeToRemove(path))
        return false;
    const auto forms = formsOf(path);
    return passesRemovalRule(forms.written) && passesRemovalRule(forms.resolved) && !refusal(forms);
}

} // namespace kestavon
