#include "core/domain/removal_guard.h"
#include "core/model/app_model.h"
#include "core/model/background.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <string_view>
#include <unordered_set>

namespace kestavon {

namespace {

/// The error's words; empty for success.
std::string wordsOf(const Outcome<FileResult<Done>>& outcome)
{
    if (!outcome.value)
        return outcome.error;
    return *outcome.value ? std::string() : outcome.value->error().message;
}

/// The items in their order, but what came out of another one of them after that: a folder cannot
/// come back where one was made for something that had lain in it.
std::vector<QuarantineItem> outermostFirst(const std::vector<QuarantineItem>& items)
{
    std::unordered_set<std::string_view> places;
    places.reserve(items.size());
    for (const auto& item : items)
        places.insert(item.originalPath);
    const auto liesInAnother = [&places](const QuarantineItem& item) {
        std::string_view path = item.originalPath;
        for (auto end = path.rfind('/'); end != path.npos && end > 0; end = path.rfind('/')) {
            path = path.substr(0, end);
            if (places.contains(path))
                return true;
        }
        return false;
    };
    std::vector<QuarantineItem> inner;
    std::vector<QuarantineItem> ordered;
    ordered.reserve(items.size());
    for (const auto& item : items)
        (liesInAnother(item) ? inner : ordered).push_back(item);
    std::ranges::stable_sort(
        inner, {}, [](const QuarantineItem& item) { return item.originalPath.size(); });
    ordered.insert(ordered.end(), inner.begin(), inner.end());
    return ordered;
}

/// What removes held items for good.
struct HeldRemoval {
    std::shared_ptr<FileRemover> remover;
    std::shared_ptr<QuarantineStore> store;
    std::shared_ptr<Trash> trash;
    std::shared_ptr<WorkMeter> work;

    FileResult<Done> remove(const QuarantineItem& item) const
    {
        const auto watch = watchOf(work);
        watch.begins(item.originalPath.empty() ? item.quarantinedPath : item.originalPath);
        auto removed = remover->remove(item.quarantinedPath,
            {.hidesFolders = true, .stop = watch.stop, .progress = watch.removed});
        if (removed) {
            watch.removedWhole();
            store->forget(item);
            // What came out of the Trash does not go back there.
            trash->forgetItem(item.originalPath);
        }
        return removed;
    }
};

/// Whether it failed because it was stopped. A file system may say the same of its own accord.
bool wasStopped(const FileResult<Done>& result, const std::shared_ptr<WorkMeter>& work)
{
    return !result && result.error().kind == FileError::Kind::cancelled && work->isStopped();
}

} // namespace

void AppModel::addToQuarantine(std::vector<QuarantineItem> items)
{
    publishChange(Field::quarantine, [&] {
        m_quarantine.insert(m_quarantine.begin(), std::make_move_iterator(items.begin()),
            std::make_move_iterator(items.end()));
    });
}

void AppModel::forgetQuarantined(const std::unordered_set<Uuid>& ids)
{
    const auto isGone = [&ids](const QuarantineItem& item) { return ids.contains(item.id); };
    const auto forgetIn = [&](Field field, std::vector<QuarantineItem>& items) {
        if (std::ranges::any_of(items, isGone))
            publishChange(field, [&] { std::erase_if(items, isGone); });
    };
    forgetIn(Field::quarantine, m_quarantine);
    forgetIn(Field::earlierQuarantine, m_earlierQuarantine);
}

void AppModel::restoreFromSafeArea(const QuarantineItem& item, Finished finished)
{
    auto busy = keepBusy({item});
    const auto work = m_works.start(FileWork::Deed::restore);
    runInBackground(
        m_quarantineQueue, this,
        [store = m_quarantineStore, item, work] {
            work->begin(1);
            work->beginItem(item.originalPath);
            return store->restore(
                item, {.stop = work->stopToken(), .progress = watchOf(work).copied});
        },
        [this, item, busy, work, finished = std::move(finished)](
            const Outcome<FileResult<Done>>& outcome) {
            m_works.end(work);
            release(busy);
            if (outcome.value && wasStopped(*outcome.value, work))
                return report(finished, {});
            const auto error = wordsOf(outcome);
            if (error.empty()) {
                forgetQuarantined({item.id});
                recordEvent("Item restored", item.originalPath);
            }
            report(finished, error);
        });
}

void AppModel::restoreAllFromSafeArea(Finished finished)
{
    restoreHeld({.items = std::make_shared<const std::vector<QuarantineItem>>(m_quarantine)},
        [finished = std::move(finished)](
            const UndoReport&, const PathSet&) { report(finished, {}); });
}

void AppModel::restoreAllEarlierHeldItems(Finished finished)
{
    auto items = m_earlierQuarantine;
    std::erase_if(items, [](const QuarantineItem& item) { return item.originalPath.empty(); });
    restoreHeld({.items = std::make_shared<const std::vector<QuarantineItem>>(std::move(items))},
        [finished = std::move(finished)](
            const UndoReport&, const PathSet&) { report(finished, {}); });
}

/// Restores some of the items and comes back for the others: the lists follow as it goes, but not
/// with every item, because that would take longer than restoring it once there are thousands.
void AppModel::restoreHeld(HeldReturn state, HeldReturned finished)
{
    if (!state.busy) {
        state.busy = keepBusy(*state.items);
        state.work = m_works.start(FileWork::Deed::restore);
        auto inOrder = [items = state.items] { return outermostFirst(*items); };
        return runInBackground(m_quarantineQueue, this, std::move(inOrder),
            [this, state = std::move(state), finished = std::move(finished)](
                Outcome<std::vector<QuarantineItem>> items) mutable {
                if (items.value)
                    state.items = std::make_shared<const std::vector<QuarantineItem>>(
                        std::move(*items.value));
                restoreHeld(std::move(state), std::move(finished));
            });
    }
    const auto end = [this](HeldReturn& ended, const HeldReturned& then) {
        m_works.end(ended.work);
        release(ended.busy);
        for (; ended.next < ended.items->size(); ++ended.next)
            ended.missing.insert((*ended.items)[ended.next].originalPath);
        then(std::move(ended.report), ended.missing);
    };
    if (state.next == state.items->size())
        return end(state, finished);
    struct Restored {
        std::vector<std::size_t> positions;
        std::vector<std::size_t> missing;
        std::string error; ///< the first
        std::size_t next;
        bool isStopped = false; ///< before the next one, or in it
    };
    auto restoreSome = [store = m_quarantineStore, items = state.items, next = state.next,
                           work = state.work] {
        constexpr auto turn = std::chrono::milliseconds(50);
        const auto turnEnd = std::chrono::steady_clock::now() + turn;
        work->begin(items->size());
        const RestoreOptions options{.stop = work->stopToken(), .progress = watchOf(work).copied};
        Restored restored{.positions = {}, .missing = {}, .error = {}, .next = next};
        do {
            const auto position = restored.next;
            work->beginItem((*items)[position].originalPath);
            const auto back = store->restore((*items)[position], options);
            if (!back && wasStopped(back, work))
                break;
            ++restored.next;
            (back ? restored.positions : restored.missing).push_back(position);
            if (!back && restored.error.empty())
                restored.error = back.error().message;
        } while (restored.next < items->size() && !work->isStopped()
            && std::chrono::steady_clock::now() < turnEnd);
        restored.isStopped = work->isStopped();
        return restored;
    };
    runInBackground(m_quarantineQueue, this, std::move(restoreSome),
        [this, end, state = std::move(state), finished = std::move(finished)](
            const Outcome<Restored>& outcome) mutable {
            const auto remaining
                = [&] { return static_cast<std::int64_t>(state.items->size() - state.next); };
            if (!outcome.value) {
                state.report.failed += remaining();
                state.report.error = outcome.error;
                return end(state, finished);
            }
            std::unordered_set<Uuid> ids;
            std::vector<std::string> paths;
            for (const auto position : outcome.value->positions) {
                ids.insert((*state.items)[position].id);
                paths.push_back((*state.items)[position].originalPath);
            }
            forgetQuarantined(ids);
            recordEvents("Item restored", std::move(paths));
            for (const auto position : outcome.value->missing)
                state.missing.insert((*state.items)[position].originalPath);
            state.report.restored += static_cast<std::int64_t>(outcome.value->positions.size());
            state.report.failed += static_cast<std::int64_t>(outcome.value->missing.size());
            if (state.report.error.empty())
                state.report.error = outcome.value->error;
            state.next = outcome.value->next;
            if (outcome.value->isStopped) {
                state.report.left = remaining();
                return end(state, finished);
            }
            restoreHeld(std::move(state), std::move(finished));
        });
}

void AppModel::findEarlierHeldItems(Finished finished)
{
    runInBackground(
        m_quarantineQueue, this, [store = m_quarantineStore] { return store->heldItems(); },
        [this, finished = std::move(finished)](Outcome<std::vector<QuarantineItem>> outcome) {
            if (!outcome.value)
                return report(finished, outcome.error);
            std::unordered_set<Uuid> listed;
            for (const auto& item : m_quarantine)
                listed.insert(item.id);
            auto& items = *outcome.value;
            std::erase_if(
                items, [&](const QuarantineItem& item) { return listed.contains(item.id); });
            if (items != m_earlierQuarantine)
                publish(Field::earlierQuarantine, m_earlierQuarantine, std::move(items));
            report(finished, {});
        });
}

void AppModel::deleteAllEarlierHeldItems(Finished finished)
{
    deleteHeldItems(
        m_earlierQuarantine, Undeleted::stayListed, "Earlier items deleted", std::move(finished));
}

void AppModel::deleteFromSafeArea(const QuarantineItem& item, Finished finished)
{
    narrowUndo({item}); // What is being deleted is not put back any more.
    auto busy = keepBusy({item});
    const auto work = m_works.start(FileWork::Deed::remove);
    runInBackground(
        m_quarantineQueue, this,
        [removal = HeldRemoval{m_platform.remover, m_quarantineStore, m_platform.trash, work},
            item] {
            removal.work->begin(1);
            return removal.remove(item);
        },
        [this, item, busy, work, finished = std::move(finished)](
            const Outcome<FileResult<Done>>& outcome) {
            m_works.end(work);
            release(busy);
            if (outcome.value && wasStopped(*outcome.value, work)) {
                tellOfPart(*work);
                return report(finished, {});
            }
            const auto error = wordsOf(outcome);
            if (error.empty()) {
                forgetQuarantined({item.id});
                recordEvent("Permanently deleted", std::string(lastComponent(item.originalPath)));
            }
            report(finished, error);
        });
}

void AppModel::emptySafeArea(Finished finished)
{
    deleteHeldItems(
        m_quarantine, Undeleted::areForgotten, "Safe Area emptied", std::move(finished));
}

void AppModel::deleteHeldItems(std::vector<QuarantineItem> items, Undeleted undeleted,
    const std::string& title, Finished finished)
{
    narrowUndo(items); // What is being deleted is not put back any more.
    auto busy = keepBusy(items);
    const auto work = m_works.start(FileWork::Deed::remove);
    const auto count = items.size();
    auto removeAll
        = [removal = HeldRemoval{m_platform.remover, m_quarantineStore, m_platform.trash, work},
              items = std::move(items), undeleted, work] {
              work->begin(items.size());
              std::unordered_set<Uuid> ids;
              for (const auto& item : items) {
                  if (work->isStopped())
                      break;
                  const auto deleted = removal.remove(item);
                  const bool wasTried = !wasStopped(deleted, work);
                  if (deleted || (wasTried && undeleted == Undeleted::areForgotten))
                      ids.insert(item.id);
              }
              return ids;
          };
    // Not beside a restore of the same item, which would find it half there.
    runInBackground(m_quarantineQueue, this, std::move(removeAll),
        [this, busy, title, count, work, finished = std::move(finished)](
            const Outcome<std::unordered_set<Uuid>>& outcome) {
            m_works.end(work);
            release(busy);
            if (outcome.value) {
                // What was moved in meanwhile stays listed.
                forgetQuarantined(*outcome.value);
                tellOfPart(*work);
                const bool isPart = work->isStopped() && outcome.value->size() < count;
                recordEvent(isPart ? "Items permanently deleted" : title,
                    std::to_string(outcome.value->size()) + " items permanently deleted");
            }
            report(finished, outcome.error);
        });
}

void AppModel::tellOfPart(const WorkMeter& work)
{
    const auto part = work.partlyDeleted();
    if (!part)
        return;
    recordEvent("Deletion stopped",
        std::string(lastComponent(part->path)) + " · " + std::to_string(part->entries)
            + " of its files and folders permanently deleted");
    publish(Field::partlyDeleted, m_partlyDeleted, part);
}

AppModel::BusyItems AppModel::keepBusy(const std::vector<QuarantineItem>& items)
{
    auto ids = std::make_shared<std::vector<Uuid>>();
    for (const auto& item : items)
        ids->push_back(item.id);
    publishChange(Field::busyHeldItems, [&] {
        for (const auto& id : *ids)
            ++m_busyHeldItems[id];
    });
    return ids;
}

void AppModel::release(const BusyItems& items)
{
    publishChange(Field::busyHeldItems, [&] {
        for (const auto& id : *items) {
            const auto found = m_busyHeldItems.find(id);
            if (found != m_busyHeldItems.end() && --found->second == 0)
                m_busyHeldItems.erase(found);
        }
    });
}

} // namespace kestavon
