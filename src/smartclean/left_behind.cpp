#include "smartclean/left_behind.h"

#include "core/domain/record_list.h"
#include "platform/letter_case.h"
#include "walk/folder_names.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <span>

#include <fcntl.h>
#include <sys/stat.h>

namespace kestavon {

namespace {

constexpr auto youngestAge = std::chrono::days(30);
/// More entries than this are not looked through.
constexpr int mostEntries = 200'000;

constexpr std::array<std::string_view, 4> versionControlFolders{".git", ".hg", ".svn", ".bzr"};

/// Looks through a tree, until it finds a reason to leave it alone.
class Inspection {
public:
    Inspection(Timestamp now, const std::function<bool()>& goesOn)
        : m_latest(now - youngestAge)
        , m_goesOn(goesOn)
    {
    }

    bool isOld(const std::string& path)
    {
        struct stat status { };
        if (++m_entries > mostEntries || !m_goesOn() || ::lstat(path.c_str(), &status) != 0)
            return false;
        const auto changed = Timestamp(std::chrono::seconds(status.st_mtim.tv_sec)
            + std::chrono::nanoseconds(status.st_mtim.tv_nsec));
        if (changed > m_latest)
            return false;
        return !S_ISDIR(status.st_mode) || allOldIn(path);
    }

private:
    bool allOldIn(const std::string& folder)
    {
        auto entries = namedEntriesOf(folder);
        if (!entries)
            return false;
        entries->folder.reset(); // A tree may be deeper than a program has descriptors.
        return std::ranges::all_of(entries->names, [&](const std::string& name) {
            return !isSavedGame(name)
                && std::ranges::find(versionControlFolders, name) == versionControlFolders.end()
                && isOld(folder + '/' + name);
        });
    }

    static bool isSavedGame(std::string_view name) { return lowerCased(name).starts_with("save"); }

    const Timestamp m_latest;
    const std::function<bool()>& m_goesOn;
    int m_entries = 0;
};

bool isFolderWith(const std::string& path, std::span<const std::string_view> wanted)
{
    const auto entries = namedEntriesOf(path);
    return entries && std::ranges::all_of(wanted, [&entries](std::string_view name) {
        return std::ranges::find(entries->names, name) != entries->names.end();
    });
}

} // namespace

bool isLeftBehind(const std::string& folder, const std::string& name, bool isContainer,
    Timestamp now, const std::function<bool()>& goesOn)
{
    constexpr std::array<std::string_view, 3> partsOfContainers{"cache", "config", "data"};
    const auto path = folder + '/' + name;
    struct stat status { };
    if (::lstat(path.c_str(), &status) != 0 || S_ISLNK(status.st_mode))
        return false;
    if (isContainer && !isFolderWith(path, partsOfContainers))
        return false;
    for (const auto control : versionControlFolders) {
        const auto repository = folder + '/' + std::string(control);
        if (::lstat(repository.c_str(), &status) == 0)
            return false;
    }
    return Inspection(now, goesOn).isOld(path);
}

} // namespace kestavon
