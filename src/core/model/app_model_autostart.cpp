#include "core/domain/removal_guard.h"
#include "core/model/app_model.h"
#include "core/model/background.h"
#include "security/security_scanner.h"
#include "system/startup_items.h"

#include <algorithm>
#include <utility>

namespace kestavon {

namespace {

const std::string& fileOf(const StartupItem& item)
{
    return item.plistURL;
}

const std::string& fileOf(const SecurityFinding& finding)
{
    return finding.path;
}

} // namespace

void AppModel::loadStartupItems()
{
    publish(Field::isLoadingStartupItems, m_isLoadingStartupItems, true);
    runInBackground(
        m_startupQueue, this,
        [folders = m_platform.layout.startupFolders] { return listStartupItems(folders); },
        [this, run = ++m_startupRun](Outcome<std::vector<StartupItem>> outcome) {
            if (run != m_startupRun)
                return; // a newer one is on its way
            publish(Field::startupItems, m_startupItems,
                std::move(outcome.value).value_or(std::vector<StartupItem>()));
            publish(Field::isLoadingStartupItems, m_isLoadingStartupItems, false);
        });
}

void AppModel::removeStartupItem(const StartupItem& item, Finished finished)
{
    if (item.isSystem)
        return report(finished, {});
    trashOneFile(item.plistURL, {}, finished, [this, item, finished](const TrashedItem& trashed) {
        const bool wasListed = dropListed(
            Field::startupItems, m_startupItems, m_startupRun, item, trashed, item.label);
        recordEvent("Startup item removed", item.label);
        if (!wasListed || m_isLoadingStartupItems)
            loadStartupItems(); // a newer list, or the next one, may have seen it still
        report(finished, {});
    });
}

void AppModel::startSecurityScan()
{
    publish(Field::securityPhase, m_securityPhase,
        ScanPhase::scanning("Checking persistence locations…"));
    auto review
        = [scanner = m_securityScanner, records = m_records, stop = m_securityStop.get_token()] {
              return scanner->scan(*records, {}, stop);
          };
    runInBackground(m_securityQueue, this, std::move(review),
        [this, root = m_records->root()](Outcome<std::vector<SecurityFinding>> outcome) {
            if (!outcome.value) {
                publish(Field::securityPhase, m_securityPhase, ScanPhase::failed(outcome.error));
                return;
            }
            ++m_securityRun;
            m_reviewedRoot = root;
            const auto count = outcome.value->size();
            publish(Field::findings, m_findings, std::move(*outcome.value));
            publish(Field::securityPhase, m_securityPhase, ScanPhase::finished());
            recordEvent("Security scan complete", std::to_string(count) + " findings");
        });
}

void AppModel::removeFinding(const SecurityFinding& finding, Finished finished)
{
    trashOneFile(finding.path, walkedFolderOf(finding), finished,
        [this, finding, finished](const TrashedItem& trashed) {
            const std::string name(lastComponent(finding.path));
            dropListed(Field::findings, m_findings, m_securityRun, finding, trashed, name);
            recordEvent("Threat removed", name);
            report(finished, {});
        });
}

std::string AppModel::walkedFolderOf(const SecurityFinding& finding) const
{
    // Where an earlier review began is not known any more: not one link is trusted then.
    const auto listed = std::ranges::find(m_findings, finding.id, &SecurityFinding::id);
    return listed != m_findings.end() ? m_reviewedRoot : "/";
}

void AppModel::trashOneFile(const std::string& path, const std::string& noLinksBelow,
    Finished finished, std::function<void(const TrashedItem& item)> moved)
{
    const auto work = m_works.start(deedOf(ActionKind::trash));
    auto move = [trash = m_platform.trash, path, noLinksBelow, work] {
        work->begin(1);
        work->beginItem(path);
        const auto watch = watchOf(work);
        return trash->trashItem(path,
            {.noLinksBelow = noLinksBelow,
                .refusesFolders = true,
                .stop = watch.stop,
                .progress = watch.copied});
    };
    runInBackground(m_removalQueue, this, std::move(move),
        [this, path, work, finished = std::move(finished), moved = std::move(moved)](
            const Outcome<FileResult<std::string>>& outcome) {
            m_works.end(work);
            if (!outcome.value)
                return report(finished, outcome.error);
            const auto& trashed = *outcome.value;
            if (trashed)
                return moved(
                    {.originalPath = path, .trashedPath = *trashed, .tally = {.count = 1}});
            const bool wasStopped
                = trashed.error().kind == FileError::Kind::cancelled && work->isStopped();
            report(finished, wasStopped ? std::string() : trashed.error().message);
        });
}

template <class T>
bool AppModel::dropListed(Field field, std::vector<T>& list, const std::uint64_t& run,
    const T& item, const TrashedItem& trashed, const std::string& name)
{
    const auto listed = std::ranges::find(list, item.id, &T::id);
    const bool wasListed = listed != list.end();
    const auto position = listed - list.begin();
    publishChange(
        field, [&] { std::erase_if(list, [&item](const T& each) { return each.id == item.id; }); });
    auto relist = [this, field, &list, &run, item, position, wasListed, listing = run](
                      const Missing& missing, Relisted then) {
        if (!wasListed)
            return then(false);
        auto look = [path = fileOf(item), missing, places = m_platform.places] {
            return isBack(path, *missing, *places);
        };
        runInBackground(m_removalQueue, this, std::move(look),
            [this, field, &list, &run, item, position, listing, then = std::move(then)](
                const Outcome<bool>& isThere) {
                if (run != listing)
                    return then(false); // another list took its place meanwhile
                if (isThere.value.value_or(false)) {
                    publishChange(field, [&] {
                        const auto end = static_cast<std::ptrdiff_t>(list.size());
                        list.insert(list.begin() + std::min(position, end), item);
                    });
                }
                then(true);
            });
    };
    offerUndo({.action = ActionKind::trash,
        .count = 1,
        .trashed = {trashed},
        .describe = [name](const RemovalTally&) { return name; },
        .relist = std::move(relist)});
    return wasListed;
}

} // namespace kestavon
