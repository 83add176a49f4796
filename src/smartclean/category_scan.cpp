#include "smartclean/category_scan.h"

#include "core/domain/file_name.h"
#include "core/domain/record_list.h"
#include "core/domain/removal_guard.h"
#include "platform/application_bundles.h"
#include "platform/letter_case.h"
#include "smartclean/left_behind.h"
#include "walk/place_folders.h"

#include <algorithm>
#include <array>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestavon {

namespace {

constexpr std::int64_t daysUntilOld = 90;

std::optional<std::string> lowerCasedIfAny(const std::optional<std::string>& text)
{
    return text ? std::optional(lowerCased(*text)) : std::nullopt;
}

OrphanRule ruleFor(const HostLayout& layout, const RunningApplications& applications)
{
    OrphanRule rule;
    for (const auto& folder : layout.applicationFolders) {
        const auto entries = namedEntriesOf(folder);
        if (!entries)
            continue;
        for (const auto& name : entries->names) {
            if (fileExtension(name) != "app")
                continue;
            rule.addInstalled(lowerCased(withoutExtension(name)),
                lowerCasedIfAny(bundleInfo(folder + '/' + name).identifier));
        }
    }
    for (const auto& application : applications.running()) {
        rule.addRunning(lowerCasedIfAny(application.name), lowerCasedIfAny(application.identifier));
        rule.addRunning(lowerCasedIfAny(application.program), {});
    }
    return rule;
}

/// The rules that a stop cuts short; the others are over at once.
bool hearsStop(JunkRule rule)
{
    return rule != JunkRule::oldEntries && rule != JunkRule::orphanedPreferences;
}

bool isOfOrphans(JunkRule rule)
{
    return rule == JunkRule::orphanedEntries || rule == JunkRule::orphanedPreferences
        || rule == JunkRule::abandonedEntries || rule == JunkRule::abandonedContainers;
}

bool mayWriteInto(const FileDescriptor& folder)
{
    return ::faccessat(folder.get(), ".", W_OK, AT_EACCESS) == 0;
}

/// Whether who may write into the folder may also take this entry out of it: out of a sticky one
/// only what is their own.
bool mayTakeOut(int folder, const std::string& name)
{
    struct stat status { };
    if (::fstat(folder, &status) != 0)
        return false;
    const auto user = ::geteuid();
    if (user == 0 || !(status.st_mode & S_ISVTX) || status.st_uid == user)
        return true;
    return ::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0
        && status.st_uid == user;
}

bool isOnTheSameDevice(int folder, const EntryFacts& facts)
{
    const auto itself = lookAt(folder, "");
    return itself && itself->device == facts.device;
}

bool isMeant(EntryKinds kinds, const EntryFacts& facts)
{
    return kinds == EntryKinds::any || facts.isDirectory == (kinds == EntryKinds::folders);
}

bool isNamedBy(const std::vector<std::string>& patterns, const std::string& name)
{
    return patterns.empty() || std::ranges::any_of(patterns, [&name](const std::string& pattern) {
        return namePatternMatches(pattern, name);
    });
}

/// Where the items of a location can lie.
std::vector<PlacePattern> placesOf(const JunkLocation& location)
{
    if (location.names.empty())
        return {{.folder = location.folder, .below = location.below}};
    std::vector<PlacePattern> places;
    for (const auto& name : location.names)
        places.push_back({.folder = location.folder,
            .below = location.below + (location.below.empty() ? "" : "/") + name});
    return places;
}

std::optional<Timestamp> dateOf(const EntryFacts& facts)
{
    if (facts.modifiedAt == RecordColumns::unknownTime)
        return std::nullopt;
    return Timestamp(std::chrono::nanoseconds(facts.modifiedAt));
}

} // namespace

CategoryScan::CategoryScan(std::shared_ptr<const HostLayout> layout, SmartScannerTools tools,
    JunkCategory category, std::stop_token stop)
    : m_layout(std::move(layout))
    , m_tools(std::move(tools))
    , m_category(category)
    , m_stop(std::move(stop))
{
}

std::vector<CleanupCandidate> CategoryScan::run()
{
    for (const auto& location : m_layout->junkLocations) {
        if (location.category == m_category)
            look(location);
    }
    return measured();
}

void CategoryScan::look(const JunkLocation& location)
{
    for (const auto& folder : foldersOf(location))
        lookIn(location, folder);
}

std::vector<std::string> CategoryScan::foldersOf(const JunkLocation& location) const
{
    if (hearsStop(location.rule) && m_stop.stop_requested())
        return {};
    if (location.rule != JunkRule::trashedEntries || !m_tools.trash)
        return foldersNamedBy({.folder = location.folder, .below = location.below});
    std::vector<std::string> folders;
    for (auto& place : m_tools.trash->trashPlaces())
        folders.push_back(std::move(place.items));
    return folders;
}

void CategoryScan::lookIn(const JunkLocation& location, const std::string& folder)
{
    const auto isCutShort = [&] { return hearsStop(location.rule) && m_stop.stop_requested(); };
    if (isCutShort())
        return;
    const auto entries = namedEntriesOf(folder);
    const bool needsToWrite = location.onlyRemovable || location.rule == JunkRule::orphanedEntries;
    if (!entries || (needsToWrite && !mayWriteInto(*entries->folder)))
        return;
    for (const auto& name : entries->names) {
        if (isCutShort())
            return;
        if (isNamedBy(location.names, name) && mayBeJunk(location, name))
            lookAtEntry(location, folder, *entries, name);
    }
}

/// Whether the location's items are left to the other one.
bool CategoryScan::yieldsTo(const JunkLocation& location, const JunkLocation& other) const
{
    if (!location.yields || &location == &other)
        return false;
    if (!other.yields)
        return !isOfOrphans(other.rule);
    if (location.folder == other.folder)
        return &other < &location;
    return isAtOrBelow(other.folder, location.folder);
}

bool CategoryScan::isLeftAlone(const JunkLocation& location, const std::string& path) const
{
    const auto touchesPath
        = [&path](const PlacePattern& place) { return touchesPlace(path, place); };
    if (std::ranges::any_of(m_layout->keptPlaces, touchesPath))
        return true;
    if (!location.yields)
        return false;
    const auto isOfAnother = [&](const JunkLocation& other) {
        return yieldsTo(location, other) && std::ranges::any_of(placesOf(other), touchesPath);
    };
    return std::ranges::any_of(m_layout->junkLocations, isOfAnother)
        || std::ranges::any_of(std::array{m_layout->home, m_layout->configHome, m_layout->dataHome,
                                   m_layout->stateHome},
            [&path](const std::string& base) { return isAtOrBelow(base, path); });
}

void CategoryScan::lookAtEntry(const JunkLocation& location, const std::string& folder,
    const NamedEntries& entries, const std::string& name)
{
    auto path = (folder == "/" ? "" : folder) + '/' + name;
    if (!isSafeToRemove(path) || isLeftAlone(location, path))
        return;
    const int listed = entries.folder->get();
    const auto facts = lookAt(listed, name.c_str());
    if (!facts || !isMeant(location.kinds, *facts) || !isJunk(location.rule, *facts))
        return;
    const bool isAbandonedKind = location.rule == JunkRule::abandonedEntries
        || location.rule == JunkRule::abandonedContainers;
    if (isAbandonedKind
        && !isLeftBehind(
            folder, name, location.rule == JunkRule::abandonedContainers, m_tools.clock->now()))
        return;
    if (location.onlyRemovable) {
        const bool isAllowed = mayTakeOut(listed, name) && isOnTheSameDevice(listed, *facts);
        if (!isAllowed || (m_tools.protectedPlaces && !m_tools.protectedPlaces->mayRemove(path)))
            return;
    }
    Found found{.record = {.id = Uuid::random(),
                    .path = std::move(path),
                    .size = facts->size,
                    .modifiedAt = dateOf(*facts),
                    .isDirectory = facts->isDirectory},
        .label = &location.label,
        .folderToMeasure = {}};
    if (isOfOrphans(location.rule))
        found.record.modifiedAt.reset();
    if (facts->isDirectory) {
        found.folderToMeasure = m_foldersToMeasure.size();
        m_foldersToMeasure.push_back(
            {.parent = entries.folder, .name = name, .device = facts->device});
    }
    m_found.push_back(std::move(found));
}

/// What an entry's name alone says.
bool CategoryScan::mayBeJunk(const JunkLocation& location, const std::string& name)
{
    switch (location.rule) {
    case JunkRule::everyEntry:
    case JunkRule::trashedEntries:
    case JunkRule::oldEntries: return true;
    case JunkRule::orphanedEntries: return isOrphan(name);
    case JunkRule::abandonedEntries:
    case JunkRule::abandonedContainers: return isAbandoned(location, name);
    case JunkRule::orphanedPreferences: break;
    }
    return fileExtension(name) == "plist" && isOrphan(withoutExtension(name));
}

bool CategoryScan::isOrphan(std::string_view name)
{
    if (!OrphanRule::mayBeOrphan(name))
        return false;
    if (!m_orphanRule)
        m_orphanRule = ruleFor(*m_layout, *m_tools.runningApplications);
    return !m_orphanRule->isOwned(lowerCased(name));
}

bool CategoryScan::isAbandoned(const JunkLocation& location, const std::string& name)
{
    if (!m_programEvidence) {
        std::vector<std::string> running;
        for (const auto& application : m_tools.runningApplications->running()) {
            for (const auto& known : {application.name, application.identifier}) {
                if (known)
                    running.push_back(*known);
            }
        }
        m_programEvidence.emplace(*m_layout, running);
    }
    return location.rule == JunkRule::abandonedContainers
        ? m_programEvidence->isAbandonedIdentifier(name)
        : m_programEvidence->isAbandoned(name);
}

/// What else is to be known of it.
bool CategoryScan::isJunk(JunkRule rule, const EntryFacts& facts)
{
    if (rule == JunkRule::orphanedPreferences)
        return !facts.isDirectory;
    if (rule != JunkRule::oldEntries)
        return true;
    if (!m_cutOff)
        m_cutOff = m_tools.calendar->daysBefore(m_tools.clock->now(), daysUntilOld);
    const auto date = dateOf(facts);
    return date && *date < *m_cutOff;
}

std::vector<CleanupCandidate> CategoryScan::measured()
{
    const auto sizes = folderSizes(std::move(m_foldersToMeasure), m_stop);
    std::vector<CleanupCandidate> candidates;
    for (auto& found : m_found) {
        if (found.folderToMeasure)
            found.record.size = sizes[*found.folderToMeasure];
        if (found.record.size < 1)
            continue;
        const auto bytes = found.record.size;
        candidates.push_back({.id = Uuid::random(),
            .record = std::move(found.record),
            .reason = *found.label,
            .estimatedBytes = bytes});
    }
    return candidates;
}

} // namespace kestavon
