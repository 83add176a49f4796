#include "smartclean/location_scan.h"

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

// Folders are summed up by several threads at once, which need many to have enough to do; a stop
// loses what is left of so many at most, since those met before are done with.
constexpr std::size_t foldersMeasuredTogether = 256;

std::optional<std::string> lowerCasedIfAny(const std::optional<std::string>& text)
{
    return text ? std::optional(lowerCased(*text)) : std::nullopt;
}

/// The rules that a stop cuts short; the others are over at once.
bool hearsStop(JunkRule rule)
{
    return rule != JunkRule::oldEntries && rule != JunkRule::orphanedPreferences;
}

bool isOfAbandoned(JunkRule rule)
{
    return rule == JunkRule::abandonedEntries || rule == JunkRule::abandonedContainers;
}

bool isOfOrphans(JunkRule rule)
{
    return rule == JunkRule::orphanedEntries || rule == JunkRule::orphanedPreferences
        || isOfAbandoned(rule);
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

const OrphanRule& ScanKnowledge::orphanRule(const std::function<OrphanRule()>& make)
{
    std::call_once(m_hasOrphanRule, [&] { m_orphanRule = make(); });
    return *m_orphanRule;
}

const ProgramEvidence& ScanKnowledge::programEvidence(const std::function<ProgramEvidence()>& make)
{
    std::call_once(m_hasProgramEvidence, [&] { m_programEvidence.emplace(make()); });
    return *m_programEvidence;
}

LocationScan::LocationScan(std::shared_ptr<const HostLayout> layout, SmartScannerTools tools,
    std::shared_ptr<ScanKnowledge> knowledge, std::stop_token stop, std::function<void()> noteMove)
    : m_layout(std::move(layout))
    , m_tools(std::move(tools))
    , m_knowledge(std::move(knowledge))
    , m_stop(std::move(stop))
    , m_noteMove(std::move(noteMove))
{
}

bool LocationScan::isCutShort(JunkRule rule) const
{
    return hearsStop(rule) && m_stop.stop_requested();
}

std::vector<std::string> LocationScan::foldersOf(const JunkLocation& location) const
{
    if (isCutShort(location.rule))
        return {};
    if (location.rule != JunkRule::trashedEntries || !m_tools.trash)
        return foldersNamedBy({.folder = location.folder, .below = location.below});
    std::vector<std::string> folders;
    for (auto& place : m_tools.trash->trashPlaces())
        folders.push_back(std::move(place.items));
    return folders;
}

void LocationScan::lookIn(
    const JunkLocation& location, const std::string& folder, JunkFindings& findings)
{
    if (isCutShort(location.rule))
        return;
    const auto entries = namedEntriesOf(folder);
    const bool needsToWrite = location.onlyRemovable || location.rule == JunkRule::orphanedEntries;
    if (!entries || (needsToWrite && !mayWriteInto(*entries->folder)))
        return;
    for (const auto& name : entries->names) {
        m_noteMove();
        if (isNamedBy(location.names, name) && mayBeJunk(location, name))
            lookAtEntry(location, folder, *entries, name, findings);
        if (m_notMeasured.folders.size() == foldersMeasuredTogether)
            measure(findings);
    }
    measure(findings);
}

/// Whether the location's items are left to the other one.
bool LocationScan::yieldsTo(const JunkLocation& location, const JunkLocation& other) const
{
    if (!location.yields || &location == &other)
        return false;
    if (!other.yields)
        return !isOfOrphans(other.rule);
    if (location.folder == other.folder)
        return &other < &location;
    return isAtOrBelow(other.folder, location.folder);
}

bool LocationScan::isLeftAlone(const JunkLocation& location, const std::string& path) const
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

void LocationScan::lookAtEntry(const JunkLocation& location, const std::string& folder,
    const NamedEntries& entries, const std::string& name, JunkFindings& findings)
{
    auto path = (folder == "/" ? "" : folder) + '/' + name;
    if (!isSafeToRemove(path) || isLeftAlone(location, path))
        return;
    const int listed = entries.folder->get();
    const auto facts = lookAt(listed, name.c_str());
    if (!facts || !isMeant(location.kinds, *facts) || !isJunk(location.rule, *facts))
        return;
    if (isOfAbandoned(location.rule) && !isLeftBehind(location, folder, name))
        return;
    if (location.onlyRemovable) {
        const bool isAllowed = mayTakeOut(listed, name) && isOnTheSameDevice(listed, *facts);
        if (!isAllowed || (m_tools.protectedPlaces && !m_tools.protectedPlaces->mayRemove(path)))
            return;
    }
    FileRecord record{.id = Uuid::random(),
        .path = std::move(path),
        .size = facts->isDirectory ? 0 : facts->size,
        .modifiedAt = isOfOrphans(location.rule) ? std::nullopt : dateOf(*facts),
        .isDirectory = facts->isDirectory};
    const auto position = findings.add(std::move(record), location.label);
    if (facts->isDirectory) {
        m_notMeasured.positions.push_back(position);
        m_notMeasured.folders.push_back(
            {.parent = entries.folder, .name = name, .device = facts->device});
    }
}

/// What an entry's name alone says.
bool LocationScan::mayBeJunk(const JunkLocation& location, const std::string& name)
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

bool LocationScan::isOrphan(std::string_view name)
{
    if (!OrphanRule::mayBeOrphan(name))
        return false;
    return !m_knowledge->orphanRule([this] { return makeOrphanRule(); }).isOwned(lowerCased(name));
}

OrphanRule LocationScan::makeOrphanRule() const
{
    OrphanRule rule;
    for (const auto& folder : m_layout->applicationFolders) {
        const auto entries = namedEntriesOf(folder);
        if (!entries)
            continue;
        for (const auto& name : entries->names) {
            m_noteMove();
            if (fileExtension(name) != "app")
                continue;
            rule.addInstalled(lowerCased(withoutExtension(name)),
                lowerCasedIfAny(bundleInfo(folder + '/' + name).identifier));
        }
    }
    for (const auto& application : m_tools.runningApplications->running())
        rule.addRunning(lowerCasedIfAny(application.name), lowerCasedIfAny(application.identifier));
    return rule;
}

ProgramEvidence LocationScan::makeProgramEvidence() const
{
    std::vector<std::string> running;
    for (const auto& application : m_tools.runningApplications->running()) {
        for (const auto& known : {application.name, application.identifier}) {
            if (known)
                running.push_back(*known);
        }
    }
    return {*m_layout, running, m_noteMove};
}

bool LocationScan::isAbandoned(const JunkLocation& location, const std::string& name)
{
    const auto& evidence = m_knowledge->programEvidence([this] { return makeProgramEvidence(); });
    return location.rule == JunkRule::abandonedContainers ? evidence.isAbandonedIdentifier(name)
                                                          : evidence.isAbandoned(name);
}

bool LocationScan::isLeftBehind(
    const JunkLocation& location, const std::string& folder, const std::string& name) const
{
    return kestavon::isLeftBehind(
        folder, name, location.rule == JunkRule::abandonedContainers, m_tools.clock->now(), [this] {
            m_noteMove();
            return !m_stop.stop_requested();
        });
}

/// What else is to be known of it.
bool LocationScan::isJunk(JunkRule rule, const EntryFacts& facts)
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

void LocationScan::measure(JunkFindings& findings)
{
    auto [positions, folders] = std::exchange(m_notMeasured, {});
    const auto sizes = folderSizes(std::move(folders), m_stop, {.visited = m_noteMove});
    for (std::size_t i = 0; i < sizes.size(); ++i)
        findings.setSize(positions[i], sizes[i]);
}

} // namespace kestavon
