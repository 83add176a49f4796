#include "core/model/app_model.h"

#include "core/model/background.h"
#include "core/model/main_queue.h"
#include "security/security_scanner.h"
#include "system/app_uninstaller.h"

#include <QPointer>

#include <algorithm>
#include <chrono>
#include <iterator>

namespace kestavon {

namespace {

AppModel::JunkScanner junkScannerFor(const Platform& platform)
{
    auto scanner = std::make_shared<const SmartScanner>(platform.layout,
        SmartScannerTools{.clock = platform.clock,
            .calendar = platform.calendar,
            .runningApplications = platform.runningApplications,
            .protectedPlaces = platform.protectedPlaces,
            .trash = platform.trash});
    return [scanner = std::move(scanner)](JunkCategory category, const std::stop_token& stop) {
        return scanner->scanCategory(category, stop);
    };
}

} // namespace

AppModel::AppModel(std::shared_ptr<FileScanning> scanner, Platform platform,
    DuplicateFinder duplicateFinder, JunkScanner junkScanner)
    : m_scanner(std::move(scanner))
    , m_platform(std::move(platform))
    , m_findDuplicates(std::move(duplicateFinder))
    , m_scanJunk(junkScanner ? std::move(junkScanner) : junkScannerFor(m_platform))
    , m_monitor(std::make_shared<const SystemMonitor>(
          m_platform.memory, m_platform.runningApplications, m_platform.processSignals))
    , m_appUninstaller(
          std::make_shared<const AppUninstaller>(m_platform.layout, m_platform.protectedPlaces))
    , m_securityScanner(
          std::make_shared<const SecurityScanner>(m_platform.layout.persistenceMarkers))
    , m_selectedRoot(m_platform.layout.home)
    , m_junkGroups(freshJunkGroups())
    , m_quarantineStore(std::make_shared<QuarantineStore>(m_platform.layout,
          QuarantineTools{.mover = m_platform.mover,
              .places = m_platform.places,
              .protectedPlaces = m_platform.protectedPlaces,
              .clock = m_platform.clock,
              .trash = m_platform.trash}))
{
    MainQueue::instance(); // made here, on the main thread, before any worker posts to it
    readMemory();
    refreshDiskSpace();
    refreshFullDiskAccess();
    m_quarantineQueue.post([store = m_quarantineStore] { store->clearUnfinishedMoves(); });
    m_removalQueue.post([trash = m_platform.trash] { trash->clearUnfinishedMoves(); });
}

AppModel::~AppModel()
{
    if (m_scanTask)
        m_scanTask->request_stop();
    if (m_duplicateTask)
        m_duplicateTask->request_stop();
    if (m_junkScanTask)
        m_junkScanTask->request_stop();
    m_junkCategoryStop.request_stop();
    if (m_appListing)
        m_appListing->request_stop();
    m_securityStop.request_stop();
    if (m_works.stopAll()) {
        // A copy that is stopped is cleared away, which a program that is gone cannot do; but a
        // disk that does not answer must not keep it.
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
        m_removalQueue.close(deadline);
        m_quarantineQueue.close(deadline);
    }
}

void AppModel::setSection(AppSection section)
{
    publish(Field::section, m_section, section);
}

void AppModel::refreshDiskSpace()
{
    auto lookAtVolume = [volumes = m_platform.volumes, root = m_selectedRoot] {
        return volumes->capacityOf(root);
    };
    m_volumeAsker.ask(this, m_selectedRoot, std::move(lookAtVolume),
        [this, root = m_selectedRoot](const std::optional<VolumeCapacity>& capacity) {
            if (!capacity || root != m_selectedRoot)
                return;
            const bool complete = capacity->total && capacity->available;
            publish(Field::diskTotal, m_diskTotal, complete ? *capacity->total : 0);
            publish(Field::diskFree, m_diskFree, complete ? *capacity->available : 0);
        });
}

void AppModel::chooseScanFolder(FolderPicker& picker)
{
    picker.pickFolder(m_selectedRoot,
        [self = QPointer<AppModel>(this)](const std::optional<std::string>& folder) {
            if (self && folder)
                self->setSelectedRoot(*folder);
        });
}

void AppModel::setSelectedRoot(const std::string& folder)
{
    publish(Field::selectedRoot, m_selectedRoot, normalisedPath(folder));
    refreshDiskSpace();
}

bool AppModel::probeFullDiskAccess() const
{
    const auto& probes = m_platform.layout.fullDiskAccessProbes;
    return std::ranges::any_of(
        probes, [this](const auto& folder) { return m_platform.files->canListFolder(folder); });
}

void AppModel::refreshFullDiskAccess()
{
    publish(Field::hasFullDiskAccess, m_hasFullDiskAccess, probeFullDiskAccess());
}

void AppModel::openUrl(const std::string& url, Finished finished)
{
    openWith([workspace = m_platform.workspace, url] { return workspace->openUrl(url); },
        std::move(finished));
}

void AppModel::openItem(const std::string& path, Finished finished)
{
    openWith([workspace = m_platform.workspace, path] { return workspace->openItem(path); },
        std::move(finished));
}

void AppModel::openWith(std::function<Workspace::Opened()> open, Finished finished)
{
    runInBackground(m_desktopQueue, this, std::move(open),
        [finished = std::move(finished)](const Outcome<Workspace::Opened>& outcome) {
            if (!outcome.value)
                return report(finished, outcome.error);
            report(finished, *outcome.value ? std::string() : outcome.value->error());
        });
}

void AppModel::openFullDiskAccessSettings()
{
    openUrl(
        "x-apple.systempreferences:com.apple.settings.PrivacySecurity.extension?Privacy_AllFiles");
}

void AppModel::report(const Finished& finished, const std::string& error)
{
    if (finished)
        finished(error);
}

void AppModel::recordEvent(const std::string& title, std::string detail)
{
    std::vector<std::string> details;
    details.push_back(std::move(detail));
    recordEvents(title, std::move(details));
}

void AppModel::recordEvents(const std::string& title, std::vector<std::string> details)
{
    if (details.empty())
        return;
    std::vector<ActivityEvent> events;
    events.reserve(details.size());
    const auto now = m_platform.clock->now();
    for (auto detail = details.rbegin(); detail != details.rend(); ++detail) {
        events.push_back(
            {.id = Uuid::random(), .date = now, .title = title, .detail = std::move(*detail)});
    }
    publishChange(Field::history, [&] {
        m_history.insert(m_history.begin(), std::make_move_iterator(events.begin()),
            std::make_move_iterator(events.end()));
    });
}

} // namespace kestavon
