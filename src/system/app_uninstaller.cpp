#include "system/app_uninstaller.h"

#include "applications/application_names.h"
#include "applications/known_applications.h"
#include "applications/name_owners.h"
#include "core/domain/file_name.h"
#include "core/domain/removal_guard.h"
#include "platform/application_bundles.h"
#include "platform/letter_case.h"
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
    std::optional<std::size_t> folderToMeasure; ///< whose sum its size is; none for a file
    std::vector<std::size_t> owners; ///< by their places in the list of applications
};

/// Tells whose an entry is, by the rule of its folder.
class Owners {
public:
    void addBundle(std::size_t application, const InstalledApp& app)
    {
        m_bundles.add(application, app.name, app.bundleID);
    }
    void addKnown(std::size_t application, const KnownApplication& known)
    {
        for (const auto& term : known.terms)
            m_known.add(application, term);
    }

    std::vector<std::size_t> of(std::string_view name, const LeftoverLocation& location) const
    {
        auto owners = byRule(name, location.rule);
        if (location.ofOneOnly && owners.size() > 1)
            owners.clear();
        return owners;
    }

private:
    std::vector<std::size_t> byRule(std::string_view name, LeftoverRule rule) const
    {
        constexpr std::string_view entryEnding = ".desktop";
        switch (rule) {
        case LeftoverRule::anyEntry:
        case LeftoverRule::propertyList:
        case LeftoverRule::savedState: break;
        case LeftoverRule::word: return m_known.ownersByWords(lowerCased(name));
        case LeftoverRule::setting: {
            auto owners = m_known.ownersByWords(lowerCased(name));
            return owners.empty() ? m_known.ownersByWords(withoutSettingEnding(name)) : owners;
        }
        case LeftoverRule::wholeName: return m_known.ownersOf(lowerCased(name));
        case LeftoverRule::dottedName:
            return name.starts_with('.') ? m_known.ownersOf(lowerCased(name.substr(1)))
                                         : std::vector<std::size_t>();
        case LeftoverRule::autostartEntry:
            return name.ends_with(entryEnding)
                ? m_known.ownersOf(lowerCased(name.substr(0, name.size() - entryEnding.size())))
                : std::vector<std::size_t>();
        }
        return m_bundles.ownersOf(name, rule);
    }

    LeftoverMatcher m_bundles;
    NameOwners m_known;
};

bool isMeant(EntryKinds kinds, const EntryFacts& facts)
{
    return kinds == EntryKinds::any || facts.isDirectory == (kinds == EntryKinds::folders);
}

/// A folder has no size of its own, and only folders hold an application's saved state.
bool countsByRule(LeftoverRule rule, const EntryFacts& facts)
{
    if (rule == LeftoverRule::propertyList)
        return !facts.isDirectory;
    return rule != LeftoverRule::savedState || facts.isDirectory;
}

/// Collects the leftovers of one scan.
class LeftoverSearch {
public:
    LeftoverSearch(const Owners& owners, const ProtectedPlaces* protectedPlaces)
        : m_owners(owners)
        , m_protectedPlaces(protectedPlaces)
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
            auto owners = m_owners.of(name, location);
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
        if (!facts || !mayRemove(leftover.path) || !isMeant(location.kinds, *facts)
            || !countsByRule(location.rule, *facts))
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

    bool mayRemove(const std::string& path) const
    {
        return m_protectedPlaces ? m_protectedPlaces->mayRemove(path) : isSafeToRemove(path);
    }

    const Owners& m_owners;
    const ProtectedPlaces* m_protectedPlaces;
    std::vector<Leftover> m_leftovers;
    std::vector<FolderToMeasure> m_foldersToMeasure;
};

} // namespace

AppUninstaller::AppUninstaller(
    const HostLayout& layout, std::shared_ptr<const ProtectedPlaces> protectedPlaces)
    : m_layout(layout)
    , m_protectedPlaces(std::move(protectedPlaces))
{
}

std::vector<InstalledApp> AppUninstaller::scanInstalledApps(const std::stop_token& stop) const
{
    auto apps = bundledApps(stop);
    Owners owners;
    for (std::size_t i = 0; i < apps.size(); ++i)
        owners.addBundle(i, apps[i]);
    auto known = knownApplications(m_layout, stop);
    // What no menu shows is no application for a person, and yet what is its own is nobody else's.
    std::ranges::stable_partition(known, &KnownApplication::isShown);
    const auto shown
        = static_cast<std::size_t>(std::ranges::count_if(known, &KnownApplication::isShown));
    const auto bundles = apps.size();
    for (std::size_t i = 0; i < known.size(); ++i) {
        owners.addKnown(bundles + i, known[i]);
        if (i < shown)
            apps.push_back({.id = Uuid::random(),
                .name = known[i].name,
                .bundleID = known[i].identifier,
                .appURL = known[i].path,
                .leftovers = {},
                .canBeMoved = !known[i].isManaged,
                .icon = known[i].icon});
    }

    LeftoverSearch search(owners, m_protectedPlaces.get());
    for (const auto& location : m_layout.leftoverLocations)
        search.look(location, stop);
    for (const auto& leftover : search.measured(stop)) {
        for (const auto owner : leftover.owners) {
            if (owner >= apps.size())
                continue;
            apps[owner].leftovers.push_back({.id = Uuid::random(),
                .url = leftover.path,
                .size = leftover.size,
                .kind = leftover.kind,
                .isDirectory = leftover.folderToMeasure.has_value()});
        }
    }
    std::ranges::stable_sort(apps, std::greater(), &InstalledApp::leftoverBytes);
    return apps;
}

std::vector<InstalledApp> AppUninstaller::bundledApps(const std::stop_token& stop) const
{
    std::vector<InstalledApp> apps;
    for (const auto& folder : m_layout.uninstallFolders) {
        const auto entries = namedEntriesOf(folder);
        if (!entries)
            continue;
        for (const auto& name : entries->names) {
            if (stop.stop_requested())
                return apps;
            if (name.starts_with('.') || fileExtension(name) != "app")
                continue;
            auto path = folder + '/' + name;
            auto info = bundleInfo(path);
            const auto facts = lookAtSize(entries->folder->get(), name.c_str());
            apps.push_back({.id = Uuid::random(),
                .name = std::string(withoutExtension(name)),
                .bundleID = std::move(info.identifier),
                .appURL = std::move(path),
                .leftovers = {},
                .isDirectory = facts && facts->isDirectory,
                .icon = std::move(info.icon)});
        }
    }
    return apps;
}

} // namespace kestavon
