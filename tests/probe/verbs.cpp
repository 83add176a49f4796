#include "probe/verbs.h"

#include "core/model/duplicate_merge.h"
#include "core/model/removal_actions.h"
#include "duplicates/duplicate_finder.h"
#include "duplicates/sha256_hex.h"
#include "platform/clock.h"
#include "platform/file_mover.h"
#include "platform/file_places.h"
#include "platform/host_layout.h"
#include "platform/platform.h"
#include "platform/protected_places.h"
#include "platform/resident_memory.h"
#include "safearea/quarantine_store.h"
#include "smartclean/smart_scanner.h"
#include "storage/file_scanner.h"
#include "system/app_uninstaller.h"
#include "system/startup_items.h"
#include "system/system_monitor.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <stdexcept>

#include <sys/stat.h>

namespace kestavon::probe {

namespace {

/// The machine as the program would see it.
struct Machine {
    HostLayout layout = makeHostLayout(currentHostEnvironment());
    std::shared_ptr<ProtectedPlaces> protectedPlaces
        = std::make_shared<ProtectedPlaces>(ProtectedPlaces::listsFor(layout));
    std::shared_ptr<SystemFilePlaces> places = std::make_shared<SystemFilePlaces>();

    QuarantineStore store() const
    {
        return {layout,
            {.mover = std::make_shared<SystemFileMover>(journalFolder(layout)),
                .places = places,
                .protectedPlaces = protectedPlaces,
                .clock = std::make_shared<SystemClock>(),
                .trash = systemPlatform(currentHostEnvironment()).trash}};
    }
};

void field(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\0', stdout);
}

template <class T> T valueOf(FileResult<T> result)
{
    if (!result)
        throw std::runtime_error(result.error().message);
    return std::move(*result);
}

/// A record of what lies at the path, as a scan would make it.
FileRecord recordOf(const std::string& path)
{
    FileRecord record;
    record.id = Uuid::random();
    record.path = normalisedPath(path);
    struct stat status { };
    if (::lstat(record.path.c_str(), &status) == 0) {
        record.isDirectory = S_ISDIR(status.st_mode);
        record.size = record.isDirectory ? 0 : status.st_size;
    }
    return record;
}

std::vector<FileRecord> recordsOf(const std::vector<std::string>& paths)
{
    std::vector<FileRecord> records;
    std::ranges::transform(paths, std::back_inserter(records), recordOf);
    return records;
}

ScanOutcome scanOf(const std::string& root)
{
    FileScanner scanner({}, std::numeric_limits<std::uint64_t>::max(), residentMemoryBytes);
    ScanProgressCounter counter;
    return scanner.scan(normalisedPath(root), counter, [](std::int64_t) {}, {});
}

void printItems(const std::vector<QuarantineItem>& items)
{
    for (const auto& item : items) {
        field(item.id.text());
        field(item.originalPath);
        field(item.quarantinedPath);
    }
}

void quarantineRecords(const std::vector<FileRecord>& records, const QuarantineOptions& options)
{
    std::vector<CleanupCandidate> candidates;
    for (const auto& record : records)
        candidates.push_back({.id = Uuid::random(),
            .record = record,
            .reason = "Selected",
            .estimatedBytes = record.size});
    const Machine machine;
    auto store = machine.store();
    printItems(valueOf(store.quarantine(candidates, options)));
}

void printTally(const RemovalTally& tally)
{
    std::printf(
        "%lld %lld\n", static_cast<long long>(tally.count), static_cast<long long>(tally.bytes));
}

/// The machine after what the program does when it starts.
Platform startedPlatform()
{
    auto platform = systemPlatform(currentHostEnvironment());
    platform.mover->clearUnfinishedMoves(Machine().store().root());
    platform.trash->clearUnfinishedMoves();
    return platform;
}

/// As the program does it.
void removeRecords(
    const std::vector<FileRecord>& records, ActionKind action, const std::string& walkedFolder)
{
    std::vector<RemovalRequest> requests;
    for (const auto& record : records)
        requests.push_back(
            {.path = record.path, .bytes = record.size, .isDirectory = record.isDirectory});
    const auto platform = startedPlatform();
    printTally(workerFor(platform, action, walkedFolder).run(requests).tally);
}

void runHook(const Arguments& arguments)
{
    if (!arguments.hook.empty() && std::system(arguments.hook.c_str()) == -1)
        throw std::runtime_error("the hook could not be run");
}

/// Scans the first path, picks the records of the others, and runs the hook.
std::vector<FileRecord> pickedRecords(const Arguments& arguments)
{
    if (arguments.paths.empty())
        throw std::runtime_error("a root is needed");
    const auto outcome = scanOf(arguments.paths.front());
    const std::vector<std::string> wanted(arguments.paths.begin() + 1, arguments.paths.end());
    std::vector<FileRecord> picked;
    for (std::size_t i = 0; i < outcome.records->size(); ++i) {
        auto record = (*outcome.records)[i];
        if (std::ranges::find(wanted, record.path) != wanted.end())
            picked.push_back(std::move(record));
    }
    runHook(arguments);
    return picked;
}

void printGuard(const Arguments& arguments)
{
    const Machine machine;
    for (const auto& path : arguments.paths)
        std::puts(machine.protectedPlaces->mayRemove(path) ? "safe" : "protected");
}

void printScan(const Arguments& arguments)
{
    const auto outcome = scanOf(arguments.paths.at(0));
    for (std::size_t i = 0; i < outcome.records->size(); ++i) {
        const auto record = (*outcome.records)[i];
        field(record.isDirectory ? "d" : "f");
        field(std::to_string(record.size));
        field(record.path);
    }
}

void printSummary(const Arguments& arguments)
{
    const auto summary = scanOf(arguments.paths.at(0)).records->summary();
    field(std::to_string(summary.count));
    field(std::to_string(summary.bytes));
    field(std::to_string(summary.hiddenBytes));
}

std::shared_ptr<const DuplicateList> duplicatesBelow(const std::string& root)
{
    return findDuplicates(scanOf(root).records, {}, {});
}

void printDuplicates(const Arguments& arguments)
{
    const auto duplicates = duplicatesBelow(arguments.paths.at(0));
    for (std::size_t i = 0; i < duplicates->size(); ++i) {
        const auto group = (*duplicates)[i];
        for (const auto& file : group.files) {
            field(group.hash);
            field(std::to_string(file.size));
            field(file.path);
        }
    }
}

/// Finds the duplicates below the first path, runs the hook, and merges them.
void merge(const Arguments& arguments, ActionKind action)
{
    const DuplicateMerge merge(duplicatesBelow(arguments.paths.at(0)));
    runHook(arguments);
    const auto report = merge.run(startedPlatform(), action);
    if (!report.error.empty())
        throw std::runtime_error(report.error);
    printTally(report.removed.tally);
}

/// The category with this title, or of this name in the program's text.
JunkCategory categoryNamed(const std::string& name)
{
    constexpr std::array<std::string_view, 11> names{"appCaches", "systemLogs", "crashReports",
        "trash", "devTools", "orphanedApps", "oldDownloads", "xcodeArtifacts", "iosBackups",
        "browserCaches", "mailAttachments"};
    if (const auto category = fromRawValue<JunkCategory>(name))
        return *category;
    const auto* const found = std::ranges::find(names, name);
    if (found == names.end())
        throw std::runtime_error("there is no category " + name);
    return static_cast<JunkCategory>(found - names.begin());
}

void printStartupItems(const Arguments&)
{
    for (const auto& item : listStartupItems(Machine().layout.startupFolders)) {
        for (const auto& text : {item.label, item.programPath, item.plistURL})
            field(text);
        field(item.isSystem ? "1" : "0");
    }
}

void printLeftovers(const Arguments&)
{
    for (const auto& app : AppUninstaller(Machine().layout).scanInstalledApps()) {
        for (const auto& leftover : app.leftovers) {
            field(app.name);
            field(std::string(rawValue(leftover.kind)));
            field(leftover.url);
        }
    }
}

SmartScanner scannerOfThisMachine()
{
    const auto platform = systemPlatform(currentHostEnvironment());
    return {platform.layout,
        {.clock = platform.clock,
            .calendar = platform.calendar,
            .runningApplications = platform.runningApplications,
            .protectedPlaces = platform.protectedPlaces,
            .trash = platform.trash}};
}

/// Moves the junk of every category to the Safe Area.
void cleanAll(const Arguments&)
{
    const auto scanner = scannerOfThisMachine();
    std::vector<CleanupCandidate> candidates;
    for (const auto& category : allCases<JunkCategory>()) {
        for (auto& item : scanner.scanCategory(category.value))
            candidates.push_back(std::move(item));
    }
    const Machine machine;
    auto store = machine.store();
    printItems(valueOf(store.quarantine(candidates, {})));
}

/// Puts everything in the Safe Area back, the outer folders before what they held.
void restoreHeld(const Arguments&)
{
    const Machine machine;
    auto store = machine.store();
    auto items = store.heldItems();
    std::ranges::sort(
        items, {}, [](const QuarantineItem& item) { return item.originalPath.size(); });
    for (const auto& item : items)
        valueOf(store.restore(item));
    printItems(items);
}

void printJunk(const Arguments& arguments)
{
    const auto scanner = scannerOfThisMachine();
    for (const auto& item : scanner.scanCategory(categoryNamed(arguments.paths.at(0)))) {
        field(item.reason);
        field(std::to_string(item.estimatedBytes));
        field(item.record.path);
    }
}

SystemMonitor systemMonitor()
{
    const auto platform = systemPlatform(currentHostEnvironment());
    return {platform.memory, platform.runningApplications, platform.processSignals};
}

void printProcesses(const Arguments&)
{
    for (const auto& process : systemMonitor().runningProcesses()) {
        field(std::to_string(process.processIdentifier));
        field(process.processName);
        field(std::to_string(process.memoryBytes));
    }
}

void quit(const Arguments& arguments)
{
    if (!systemMonitor().quitProcess(std::stoi(arguments.paths.at(0))))
        throw std::runtime_error("The process could not be told to end.");
}

void restore(const Arguments& arguments)
{
    QuarantineItem item;
    item.id = Uuid::random();
    item.quarantinedPath = normalisedPath(arguments.paths.at(0));
    item.originalPath = normalisedPath(arguments.paths.at(1));
    const Machine machine;
    auto store = machine.store();
    valueOf(store.restore(item));
}

} // namespace

const std::map<std::string, Verb>& verbs()
{
    static const std::map<std::string, Verb> all{
        {"holding", [](const Arguments&) { std::puts(Machine().store().root().c_str()); }},
        {"held", [](const Arguments&) { printItems(Machine().store().heldItems()); }},
        {"guard", printGuard},
        {"quarantine",
            [](const Arguments& arguments) { quarantineRecords(recordsOf(arguments.paths), {}); }},
        {"restore", restore},
        {"delete",
            [](const Arguments& arguments) {
                removeRecords(recordsOf(arguments.paths), ActionKind::permanent, {});
            }},
        {"trash",
            [](const Arguments& arguments) {
                removeRecords(recordsOf(arguments.paths), ActionKind::trash, {});
            }},
        {"hash",
            [](const Arguments& arguments) {
                std::puts(valueOf(sha256Hex(normalisedPath(arguments.paths.at(0)))).c_str());
            }},
        {"dups", printDuplicates},
        {"merge-delete",
            [](const Arguments& arguments) { merge(arguments, ActionKind::permanent); }},
        {"merge-trash", [](const Arguments& arguments) { merge(arguments, ActionKind::trash); }},
        {"junk", printJunk},
        {"clean-all", cleanAll},
        {"restore-held", restoreHeld},
        {"startup", printStartupItems},
        {"apps", printLeftovers},
        {"procs", printProcesses},
        {"quit", quit},
        {"optimize", [](const Arguments&) { SystemMemoryRelief().relieve(); }},
        {"scan", printScan},
        {"summary", printSummary},
        {"scan-delete",
            [](const Arguments& arguments) {
                const auto records = pickedRecords(arguments);
                removeRecords(
                    records, ActionKind::permanent, normalisedPath(arguments.paths.front()));
            }},
        {"scan-trash",
            [](const Arguments& arguments) {
                const auto records = pickedRecords(arguments);
                removeRecords(records, ActionKind::trash, normalisedPath(arguments.paths.front()));
            }},
        {"scan-quarantine",
            [](const Arguments& arguments) {
                const auto records = pickedRecords(arguments);
                QuarantineOptions options;
                options.noLinksBelow = normalisedPath(arguments.paths.front());
                quarantineRecords(records, options);
            }},
    };
    return all;
}

} // namespace kestavon::probe
