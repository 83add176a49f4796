#include "core/model/app_model.h"
#include "core/model/background.h"
#include "core/model/removal_actions.h"
#include "platform/byte_count.h"
#include "system/app_uninstaller.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

namespace kestavon {

namespace {

/// Moves the items to the Trash, in order; what was no folder when it was found, only if it is
/// none. The rule by which names are protected elsewhere does not stand before it, only the Trash's
/// own refusals.
RemovalReport trashInOrder(const Platform& platform, const std::vector<RemovalRequest>& items,
    const std::shared_ptr<WorkMeter>& work)
{
    work->begin(items.size());
    RemovalReport report;
    while (report.tried < items.size()) {
        const auto begin = items.begin() + static_cast<std::ptrdiff_t>(report.tried);
        const bool areFolders = begin->isDirectory;
        const auto end
            = std::ranges::find(begin, items.end(), !areFolders, &RemovalRequest::isDirectory);
        std::vector<std::string> paths;
        std::ranges::transform(begin, end, std::back_inserter(paths), &RemovalRequest::path);
        const auto trash = removalFor(platform, ActionKind::trash, {}, !areFolders, watchOf(work));
        const auto results = trash(paths);
        for (std::size_t i = 0; i < results.size(); ++i) {
            if (!results[i]) {
                if (results[i].error().kind == FileError::Kind::cancelled && work->isStopped())
                    return report;
            } else {
                const RemovalTally tally{
                    .count = 1, .bytes = begin[static_cast<std::ptrdiff_t>(i)].bytes};
                report.tally += tally;
                report.trashed.push_back(
                    {.originalPath = paths[i], .trashedPath = *results[i], .tally = tally});
            }
            ++report.tried;
        }
    }
    return report;
}

std::int64_t bytesOf(std::span<const LeftoverFile> leftovers)
{
    std::int64_t bytes = 0;
    for (const auto& leftover : leftovers)
        bytes = saturatingSum(bytes, leftover.size);
    return bytes;
}

} // namespace

void AppModel::loadInstalledApps()
{
    if (m_appListing)
        m_appListing->request_stop();
    m_appListing.emplace();
    ++m_appListingRun;
    publish(Field::isLoadingApps, m_isLoadingApps, true);
    publish(Field::installedApps, m_installedApps, {});
    if (m_appRemovals == 0)
        listInstalledApps();
}

void AppModel::listInstalledApps()
{
    auto list = [uninstaller = m_appUninstaller, stop = m_appListing->get_token()] {
        return uninstaller->scanInstalledApps(stop);
    };
    runInBackground(m_uninstallerQueue, this, std::move(list),
        [this, run = ++m_appListingRun](Outcome<std::vector<InstalledApp>> outcome) {
            if (run != m_appListingRun || m_appRemovals > 0)
                return; // a newer one is on its way, or will be when the removal has ended
            m_appListing.reset();
            // One that failed, for want of memory, found none.
            publish(Field::installedApps, m_installedApps,
                std::move(outcome.value).value_or(std::vector<InstalledApp>()));
            publish(Field::isLoadingApps, m_isLoadingApps, false);
        });
}

void AppModel::uninstallApp(InstalledApp app, bool appOnly, Finished finished)
{
    if (app.canBeMoved)
        trashApp(std::move(app), true, !appOnly, std::move(finished));
    else if (!appOnly)
        removeLeftovers(std::move(app), std::move(finished));
    else
        report(finished, {});
}

void AppModel::removeLeftovers(InstalledApp app, Finished finished)
{
    trashApp(std::move(app), false, true, std::move(finished));
}

void AppModel::trashApp(InstalledApp app, bool withApp, bool withLeftovers, Finished finished)
{
    std::vector<RemovalRequest> items;
    if (withApp)
        items.push_back({.path = app.appURL, .isDirectory = app.isDirectory});
    if (withLeftovers) {
        for (const auto& leftover : app.leftovers)
            items.push_back({.path = leftover.url,
                .bytes = leftover.size,
                .isDirectory = leftover.isDirectory});
    }
    const auto work = m_works.start(deedOf(ActionKind::trash));
    const auto count = items.size();
    ++m_appRemovals;
    runInBackground(
        m_removalQueue, this,
        [platform = m_platform, work, items = std::move(items)] {
            return trashInOrder(platform, items, work);
        },
        [this, work, count, withApp, withLeftovers, app = std::move(app),
            finished = std::move(finished)](Outcome<RemovalReport> outcome) {
            m_works.end(work);
            if (!outcome.value || (outcome.value->tried == 0 && count > 0)) {
                endAppRemoval(); // nothing was done
                return report(finished, outcome.error);
            }
            auto& removed = *outcome.value;
            const auto tried = removed.tried - (withApp ? 1 : 0); // of the leftovers
            const std::span<const LeftoverFile> leftovers(app.leftovers);
            const auto rest = withLeftovers && removed.tried < count
                ? leftovers.subspan(tried)
                : std::span<const LeftoverFile>();
            const auto fate = !withApp ? AppFate::stays
                : !removed.trashed.empty() && removed.trashed.front().originalPath == app.appURL
                ? AppFate::isInTrash
                : AppFate::wasTried;
            const auto cut = dropApp(app.id, fate, {rest.begin(), rest.end()});
            if (withApp) {
                recordEvent(app.name + " uninstalled",
                    "Moved to Trash"
                        + (withLeftovers ? " + " + std::to_string(tried) + " leftover files" : ""));
            } else {
                recordEvent(app.name + " leftovers removed",
                    std::to_string(tried) + " files ("
                        + fileByteCount(bytesOf(leftovers.first(tried))) + ")");
            }
            offerUndo({.action = ActionKind::trash,
                .count = removed.tally.count,
                .trashed = std::move(removed.trashed),
                .describe =
                    [name = app.name](const RemovalTally& back) {
                        return name + " · " + std::to_string(back.count) + " items";
                    },
                .relist =
                    [this, cut](const Missing& missing, Relisted then) {
                        cut ? relistApp(cut, missing, std::move(then)) : then(false);
                    }});
            endAppRemoval();
            report(finished, {});
        });
}

void AppModel::endAppRemoval()
{
    // What is being listed may have seen what has gone since.
    if (--m_appRemovals == 0 && m_isLoadingApps)
        listInstalledApps();
}

std::shared_ptr<const AppModel::AppCut> AppModel::dropApp(
    const Uuid& id, AppFate fate, std::vector<LeftoverFile> rest)
{
    const auto app = std::ranges::find(m_installedApps, id, &InstalledApp::id);
    if (app == m_installedApps.end())
        return nullptr; // another list took its place meanwhile
    auto cut = std::make_shared<const AppCut>(AppCut{.app = *app,
        .position = static_cast<std::size_t>(app - m_installedApps.begin()),
        .listing = m_appListingRun});
    publishChange(Field::installedApps, [&] {
        if (fate != AppFate::stays && rest.empty()) {
            std::erase_if(m_installedApps, [&id](const auto& listed) { return listed.id == id; });
            return;
        }
        app->leftovers = std::move(rest);
        app->canBeMoved = app->canBeMoved && fate != AppFate::isInTrash;
    });
    return cut;
}

void AppModel::relistApp(
    const std::shared_ptr<const AppCut>& cut, const Missing& missing, Relisted then)
{
    struct Present {
        bool app;
        std::unordered_set<Uuid> leftovers;
    };
    auto look = [cut, missing, places = m_platform.places] {
        Present present{.app = isBack(cut->app.appURL, *missing, *places), .leftovers = {}};
        for (const auto& leftover : cut->app.leftovers) {
            if (isBack(leftover.url, *missing, *places))
                present.leftovers.insert(leftover.id);
        }
        return present;
    };
    runInBackground(m_removalQueue, this, std::move(look),
        [this, cut, then = std::move(then)](const Outcome<Present>& outcome) {
            if (!outcome.value || cut->listing != m_appListingRun)
                return then(false);
            const auto& present = *outcome.value;
            auto app = cut->app;
            app.canBeMoved = app.canBeMoved && present.app;
            std::erase_if(app.leftovers,
                [&](const LeftoverFile& file) { return !present.leftovers.contains(file.id); });
            const auto listed = std::ranges::find(m_installedApps, app.id, &InstalledApp::id);
            const bool isListed = listed != m_installedApps.end();
            publishChange(Field::installedApps, [&] {
                if (isListed)
                    *listed = std::move(app);
                else if (present.app || !app.leftovers.empty())
                    m_installedApps.insert(m_installedApps.begin()
                            + static_cast<std::ptrdiff_t>(
                                std::min(cut->position, m_installedApps.size())),
                        std::move(app));
            });
            then(true);
        });
}

} // namespace kestavon
