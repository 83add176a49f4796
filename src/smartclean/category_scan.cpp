#include "smartclean/category_scan.h"

#include "core/domain/file_name.h"
#include "core/domain/record_list.h"
#include "core/domain/removal_guard.h"
#include "platform/application_bundles.h"
#include "platform/letter_case.h"

#include <fcntl.h>
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
    for (const auto& application : applications.running())
        rule.addRunning(lowerCasedIfAny(application.name), lowerCasedIfAny(application.identifier));
    return rule;
}

/// The rules that a stop cuts short; the others are over at once.
bool hearsStop(JunkRule rule)
{
    return rule == JunkRule::everyEntry || rule == JunkRule::orphanedEntries;
}

bool isOfOrphans(JunkRule rule)
{
    return rule == JunkRule::orphanedEntries || rule == JunkRule::orphanedPreferences;
}

bool mayWriteInto(const FileDescriptor& folder)
{
    return ::faccessat(folder.get(), ".", W_OK, AT_EACCESS) == 0;
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
    const auto isCutShort = [&] { return hearsStop(location.rule) && m_stop.stop_requested(); };
    if (isCutShort())
        return;
    const auto entries = namedEntriesOf(location.folder);
    if (!entries || (location.rule == JunkRule::orphanedEntries && !mayWriteInto(*entries->folder)))
        return;
    for (const auto& name : entries->names) {
        if (isCutShort())
            return;
        if (mayBeJunk(location.rule, name))
            lookAtEntry(location, *entries, name);
    }
}

void CategoryScan::lookAtEntry(
    const JunkLocation& location, const NamedEntries& entries, const std::string& name)
{
    auto path = location.folder + '/' + name;
    if (!isSafeToRemove(path))
        return;
    const auto facts = lookAt(entries.folder->get(), name.c_str());
    if (!facts || !isJunk(location.rule, *facts))
        return;
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
bool CategoryScan::mayBeJunk(JunkRule rule, const std::string& name)
{
    switch (rule) {
    case JunkRule::everyEntry:
    case JunkRule::oldEntries: return true;
    case JunkRule::orphanedEntries: return isOrphan(name);
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
