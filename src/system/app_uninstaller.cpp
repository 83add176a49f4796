#include "system/app_uninstaller.h"

#include "core/domain/file_name.h"
#include "core/domain/removal_guard.h"
#include "platform/application_bundles.h"
#include "system/leftover_matcher.h"
#include "walk/folder_names.h"
#include "walk/folder_reader.h"
#include "walk/folder_sizes.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

namespace kestavon {

namespace {

/// An entry that belongs to applications.
struct Leftover {
    std::string path;
    LeftoverFile::LeftoverKind kind;
    std::int64_t size = 0; ///< bytes
    std::optional<std::size_t> folderToMeasure; ///< whose sum its size is
    std::vector<std::size_t> owners; ///< by their places in the list of applications
};

/// Collects the leftovers of one scan.
class LeftoverSearch {
public:
    explicit LeftoverSearch(const LeftoverMatcher& matcher)
        : m_matcher(matcher)
    {
    }

    void look(const LeftoverLocation& location, const std::stop_token& stop)
    {
        const auto entries = namedEntriesOf(location.folder);
        if (!entries)
            return;
        for (const auto& name : entries->names) {
            if (stop.stop_requested())
                return;
            auto owners = m_matcher.ownersOf(name, location.rule);
            if (!owners.empty())
                add(location, *entries, name, std::move(owners));
        }
    }

    /// The leftovers with their sizes; empty ones count as none.
    std::vector<Leftover> measured(const std::stop_token& stop)
    {
        const auto sizes = folderSizes(std::move(m_foldersToMeasure), stop);
        for (auto& leftover : m_leftovers) {
            if (leftover.folderToMeasure)
                leftover.size = sizes[*leftover.folderToMeasure];
        }
        std::erase_if(m_leftovers, [](const Leftover& leftover) { return leftover.size < 1; });
        return std::move(m_leftovers);
    }

private:
    void add(const LeftoverLocation& location, const NamedEntries& entries, const std::string& name,
        std::vector<std::size_t> owners)
    {
        Leftover leftover{.path = location.folder + '/' + name,
            .kind = location.kind,
            .folderToMeasure = {},
            .owners = std::move(owners)};
        const auto facts = lookAt(entries.folder->get(), name.c_str());
        if (!facts || !isSafeToRemove(leftover.path))
            return;
        // A folder has no size of its own, and only folders hold an application's saved state.
        if (facts->isDirectory == (location.rule == LeftoverRule::propertyList)
            && location.rule != LeftoverRule::anyEntry)
            return;
        if (facts->isDirectory) {
            leftover.folderToMeasure = m_foldersToMeasure.size();
            m_foldersToMeasure.push_back(
                {.parent = entries.folder, .name = name, .device = facts->device});
        } else {
            leftover.size = facts->size;
        }
        m_leftovers.push_back(std::move(leftover));
    }

    const LeftoverMatcher& m_matcher;
    std::vector<Leftover> m_leftovers;
    std::vector<FolderToMeasure> m_foldersToMeasure;
};

} // namespace

AppUninstaller::AppUninstaller(const HostLayout& layout)
    : m_applicationFolders(layout.uninstallFolders)
    , m_leftoverLocations(layout.leftoverLocations)
{
}

std::vector<InstalledApp> AppUninstaller::scanInstalledApps(const std::stop_token& stop) const
{
    auto apps = installedApps(stop);
    findLeftovers(apps, stop);
    std::ranges::stable_sort(apps, std::greater(), &InstalledApp::leftoverBytes);
    return apps;
}

std::vector<InstalledApp> AppUninstaller::installedApps(const std::stop_token& stop) const
{
    std::vector<InstalledApp> apps;
    for (const auto& folder : m_applicationFolders) {
        const auto entries = namedEntriesOf(folder);
        if (!entries)
            continue;
        for (const auto& name : entries->names) {
            if (stop.stop_requested())
                return apps;
            if (name.starts_with('.') || fileExtension(name) != "app")
                continue;
            auto path = folder + '/' + name;
            auto identifier = bundleInfo(path).identifier;
            apps.push_back({.id = Uuid::random(),
                .name = std::string(withoutExtension(name)),
                .bundleID = std::move(identifier),
                .appURL = std::move(path),
                .leftovers = {}});
        }
    }
    return apps;
}

void AppUninstaller::findLeftovers(
    std::vector<InstalledApp>& apps, const std::stop_token& stop) const
{
    LeftoverMatcher matcher;
    for (std::size_t i = 0; i < apps.size(); ++i)
        matcher.add(i, apps[i].name, apps[i].bundleID);
    LeftoverSearch search(matcher);
    for (const auto& location : m_leftoverLocations)
        search.look(location, stop);
    for (const auto& leftover : search.measured(stop)) {
        for (const auto owner : leftover.owners) {
            apps[owner].leftovers.push_back({.id = Uuid::random(),
                .url = leftover.path,
                .size = leftover.size,
                .kind = leftover.kind});
        }
    }
}

} // namespace kestavon
