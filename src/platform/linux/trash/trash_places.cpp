#include "platform/linux/trash/trash_places.h"

#include "core/domain/removal_guard.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include <dirent.h>

namespace kestavon {

namespace {

/// Where sandboxes keep their programs' data, below the home: '*' stands for one component.
constexpr std::array<std::string_view, 2> sandboxTrashes{
    ".var/app/*/data/Trash",
    "snap/*/*/.local/share/Trash",
};

std::string below(std::string_view folder, std::string_view name)
{
    std::string path(folder == "/" ? "" : folder);
    return path.append("/").append(name);
}

/// The path from `folder` to `path`, which lies below it; nothing when it does not.
std::optional<std::string_view> relativeTo(std::string_view folder, std::string_view path)
{
    if (folder == "/" && path.size() > 1 && path.starts_with('/'))
        return path.substr(1);
    if (path == folder || !isAtOrBelow(path, folder))
        return std::nullopt;
    return path.substr(folder.size() + 1);
}

/// Takes the first component off `path`.
std::string_view nextComponent(std::string_view& path)
{
    const auto component = path.substr(0, path.find('/'));
    path.remove_prefix(std::min(component.size() + 1, path.size()));
    return component;
}

bool startsWithPattern(std::string_view path, std::string_view pattern)
{
    while (!pattern.empty()) {
        const auto wanted = nextComponent(pattern);
        const auto component = nextComponent(path);
        if (component.empty() || (wanted != "*" && wanted != component))
            return false;
    }
    return true;
}

bool isNumber(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// The folders in `folder`, in order; links are left out, such as the one a snap's newest revision
/// has, which would name a Trash twice.
std::vector<std::string> foldersIn(const std::string& folder)
{
    struct Close {
        void operator()(DIR* opened) const { ::closedir(opened); }
    };
    std::vector<std::string> folders;
    const std::unique_ptr<DIR, Close> entries(::opendir(folder.c_str()));
    while (const auto* entry = entries ? ::readdir(entries.get()) : nullptr) {
        const std::string_view name(entry->d_name);
        const bool mayBeFolder = entry->d_type == DT_DIR || entry->d_type == DT_UNKNOWN;
        if (mayBeFolder && name != "." && name != "..")
            folders.push_back(below(folder, name));
    }
    std::ranges::sort(folders);
    return folders;
}

/// The paths below `folder` that `pattern` matches; what follows its last '*' need not exist.
std::vector<std::string> matches(const std::string& folder, std::string_view pattern)
{
    const auto star = pattern.find('*');
    if (star == std::string_view::npos)
        return {below(folder, pattern)};
    const auto parent = star == 0 ? folder : below(folder, pattern.substr(0, star - 1));
    std::vector<std::string> found;
    for (const auto& child : foldersIn(parent)) {
        for (auto& path : matches(child, pattern.substr(star + 2)))
            found.push_back(std::move(path));
    }
    return found;
}

} // namespace

std::string macTrashFolder(const HostLayout& layout)
{
    return below(layout.home, ".Trash");
}

std::string homeTrashFolder(const HostLayout& layout)
{
    return below(layout.dataHome, "Trash");
}

std::vector<TrashPlace> nativeTrashPlaces(
    const HostLayout& layout, const std::vector<Mount>& mounts, uid_t user)
{
    std::vector<TrashPlace> places;
    const auto add = [&places](const std::string& folder, bool isOnVolume) {
        TrashPlace place{.folder = folder, .items = folder + "/files", .isOnVolume = isOnVolume};
        // A folder that several file systems were mounted on is listed as often.
        if (std::ranges::find(places, place) == places.end())
            places.push_back(std::move(place));
    };
    add(homeTrashFolder(layout), false);
    for (const auto pattern : sandboxTrashes) {
        for (const auto& folder : matches(layout.home, pattern))
            add(folder, false);
    }
    const auto userName = std::to_string(user);
    for (const auto& mount : mounts) {
        if (!holdsFiles(mount))
            continue;
        add(below(mount.point, ".Trash/" + userName), true);
        add(below(mount.point, ".Trash-" + userName), true);
    }
    return places;
}

bool isInVolumeTrash(std::string_view path, std::string_view topFolder)
{
    auto rest = relativeTo(topFolder, path);
    if (!rest)
        return false;
    constexpr std::string_view prefix = ".Trash-";
    const auto first = nextComponent(*rest);
    return first == ".Trash"
        || (first.starts_with(prefix) && isNumber(first.substr(prefix.size())));
}

bool isInSandboxTrash(std::string_view path, std::string_view home)
{
    const auto rest = relativeTo(home, path);
    return rest && std::ranges::any_of(sandboxTrashes, [&](std::string_view pattern) {
        return startsWithPattern(*rest, pattern);
    });
}

} // namespace kestavon
