#include "core/model/app_model.h"
#include "core/model/background.h"
#include "core/model/candidate_holding.h"
#include "core/model/removal_actions.h"
#include "platform/byte_count.h"

#include <algorithm>
#include <span>
#include <utility>

namespace kestavon {

namespace {

/// What became of the items of one cleaning.
struct Cleaned {
    RemovalTally requested;
    RemovalReport removed;
    FileResult<std::vector<QuarantineItem>> held = std::vector<QuarantineItem>();
    std::size_t tried = 0; ///< see `Holding` and `RemovalReport`
};

template <class Picks> std::vector<CleanupCandidate> picked(const JunkItems& items, Picks picks)
{
    std::vector<CleanupCandidate> result;
    std::ranges::copy_if(items, std::back_inserter(result), picks);
    return result;
}

JunkItems without(const JunkItems& items, const std::unordered_set<Uuid>& ids)
{
    return picked(items, [&ids](const auto& item) { return !ids.contains(item.id); });
}

/// The ids of the first `count` items.
std::unordered_set<Uuid> idsOf(const std::vector<CleanupCandidate>& items, std::size_t count)
{
    std::unordered_set<Uuid> ids;
    for (const auto& item : std::span(items).first(count))
        ids.insert(item.id);
    return ids;
}

std::unordered_set<Uuid> idsOf(const JunkItems& items)
{
    std::unordered_set<Uuid> ids;
    ids.reserve(items.size());
    for (const auto& item : items)
        ids.insert(item.id);
    return ids;
}

/// Of the first `count` items.
RemovalTally tallyOf(std::span<const CleanupCandidate> items, std::size_t count)
{
    RemovalTally tally;
    for (const auto& item : items.first(count))
        tally += {.count = 1, .bytes = item.estimatedBytes};
    return tally;
}

Cleaned clean(QuarantineStore& store, const Platform& platform, ActionKind action,
    const std::vector<CleanupCandidate>& items, const std::shared_ptr<WorkMeter>& work)
{
    Cleaned cleaned;
    if (action == ActionKind::safeArea) {
        auto holding = holdCandidates(store, items, {}, work);
        cleaned.held = std::move(holding.items);
        cleaned.tried = holding.tried;
        cleaned.requested = tallyOf(items, cleaned.tried);
        return cleaned;
    }
    work->begin(items.size());
    std::vector<RemovalRequest> requests;
    requests.reserve(items.size());
    for (const auto& item : items) {
        requests.push_back({.path = item.record.path,
            .bytes = item.estimatedBytes,
            .isDirectory = item.record.isDirectory});
    }
    cleaned.removed
        = workerFor(platform, action, {}, watchOf(work)).run(requests, work->stopToken());
    cleaned.tried = cleaned.removed.tried;
    return cleaned;
}

std::string itemsText(const RemovalTally& tally)
{
    return std::to_string(tally.count) + " items (" + fileByteCount(tally.bytes) + ")";
}

/// What the history says of items that were moved to the Safe Area.
std::string movedText(std::size_t moved, const RemovalTally& requested)
{
    return std::to_string(moved) + " of " + itemsText(requested);
}

} // namespace

void AppModel::cleanJunkItems(const JunkGroup& group, std::unordered_set<Uuid> ids,
    ActionKind action, std::function<void(std::size_t, std::size_t)> moved, Finished finished)
{
    struct CleanedGroup {
        Cleaned cleaned;
        std::vector<JunkCut> cuts;
    };
    std::vector<JunkGroup> listed; // the group, if it still is
    std::ranges::copy_if(m_junkGroups, std::back_inserter(listed),
        [&group](const JunkGroup& shown) { return shown.id == group.id; });
    const auto work = m_works.start(deedOf(action));
    auto cleanSelected = [store = m_quarantineStore, platform = m_platform, action, work,
                             items = group.items, listed = std::move(listed),
                             ids = std::move(ids)] {
        const auto isSelected = [&ids](const auto& item) { return ids.contains(item.id); };
        const auto selected = picked(items, isSelected);
        CleanedGroup done{.cleaned = clean(*store, platform, action, selected, work), .cuts = {}};
        // The whole selection leaves the group, what stayed at its place too; if it was stopped,
        // what had its turn.
        const auto tried = done.cleaned.tried;
        const auto gone = tried == selected.size() ? ids : idsOf(selected, tried);
        for (const auto& shown : listed)
            done.cuts.push_back({.before = shown, .left = without(shown.items, gone)});
        return done;
    };
    auto& queue = action == ActionKind::safeArea ? m_quarantineQueue : m_removalQueue;
    runInBackground(queue, this, std::move(cleanSelected),
        [this, category = group.category, action, work, moved = std::move(moved),
            finished = std::move(finished)](Outcome<CleanedGroup> outcome) {
            m_works.end(work);
            if (!outcome.value)
                return report(finished, outcome.error);
            auto& [requested, removed, held, tried] = outcome.value->cleaned;
            if (!held)
                return report(finished, held.error().message);
            const auto movedCount = held->size();
            UndoableMove move{.action = action, .describe = itemsText};
            if (action == ActionKind::safeArea) {
                move.count = static_cast<std::int64_t>(movedCount);
                move.held = *held;
                addToQuarantine(std::move(*held));
            } else {
                move.count = removed.tally.count;
                move.trashed = std::move(removed.trashed);
            }
            const auto before = dropJunk(outcome.value->cuts);

            tellOfPart(*work);
            switch (action) {
            case ActionKind::safeArea:
                recordEvent(std::string(rawValue(category)) + " moved to Safe Area",
                    movedText(movedCount, requested));
                if (moved)
                    moved(movedCount, tried);
                break;
            case ActionKind::trash:
                recordEvent("Items moved to Trash", itemsText(removed.tally));
                break;
            case ActionKind::permanent:
                recordEvent("Items permanently deleted", itemsText(removed.tally));
                break;
            }
            move.relist = [this, before](const Missing& missing, Relisted then) {
                relistJunk(before, missing, std::move(then));
            };
            offerUndo(std::move(move));
            report(finished, {});
        });
}

void AppModel::cleanAllJunk(Finished finished)
{
    struct Moved {
        Holding holding;
        RemovalTally tried;
        std::vector<JunkCut> cuts;
    };
    const auto work = m_works.start(FileWork::Deed::hold);
    auto moveAll = [store = m_quarantineStore, groups = m_junkGroups, work] {
        std::vector<CleanupCandidate> items;
        for (const auto& group : groups)
            items.insert(items.end(), group.items.begin(), group.items.end());
        Moved moved{.holding = holdCandidates(*store, items, {}, work), .tried = {}, .cuts = {}};
        const auto tried = moved.holding.tried;
        moved.tried = tallyOf(items, tried);
        const auto gone = tried == items.size() ? std::unordered_set<Uuid>() : idsOf(items, tried);
        for (const auto& group : groups) {
            moved.cuts.push_back({.before = group,
                .left = tried == items.size() ? JunkItems() : without(group.items, gone)});
        }
        return moved;
    };
    runInBackground(m_quarantineQueue, this, std::move(moveAll),
        [this, work, finished = std::move(finished)](Outcome<Moved> outcome) {
            m_works.end(work);
            if (!outcome.value)
                return report(finished, outcome.error);
            auto& held = outcome.value->holding.items;
            if (!held)
                return report(finished, held.error().message);
            UndoableMove move{.action = ActionKind::safeArea,
                .count = static_cast<std::int64_t>(held->size()),
                .held = *held};
            addToQuarantine(std::move(*held));
            // What a scan has found meanwhile stays.
            const auto before = dropJunk(outcome.value->cuts);
            recordEvent("Smart Clean complete",
                std::to_string(move.count) + " items (" + fileByteCount(outcome.value->tried.bytes)
                    + ") quarantined");
            move.relist = [this, before](const Missing& missing, Relisted then) {
                relistJunk(before, missing, std::move(then));
            };
            offerUndo(std::move(move));
            report(finished, {});
        });
}

AppModel::JunkBefore AppModel::dropJunk(const std::vector<JunkCut>& cuts)
{
    auto before = std::make_shared<std::vector<JunkGroup>>();
    auto groups = m_junkGroups;
    for (auto& group : groups) {
        for (const auto& cut : cuts) {
            if (cut.before.id != group.id || cut.before.items.size() == cut.left.size())
                continue;
            // The items of a group that was scanned anew are others, and none of them goes.
            auto left = group.items.isCopyOf(cut.before.items)
                ? cut.left
                : without(group.items, idsOf(without(cut.before.items, idsOf(cut.left))));
            if (left.size() == group.items.size())
                continue;
            before->push_back(group);
            group.items = std::move(left);
        }
    }
    if (!before->empty())
        publish(Field::junkGroups, m_junkGroups, std::move(groups));
    return before;
}

void AppModel::relistJunk(const JunkBefore& before, const Missing& missing, Relisted then)
{
    struct Relisting {
        JunkItems shown;
        std::optional<JunkItems> items; ///< nothing when the category was scanned anew
    };
    auto look = [before, missing, groups = m_junkGroups, places = m_platform.places] {
        std::vector<Relisting> relistings;
        for (const auto& group : *before) {
            auto& relisting = relistings.emplace_back();
            const auto shown = std::ranges::find(groups, group.id, &JunkGroup::id);
            if (shown == groups.end() || shown->isScanning)
                continue;
            relisting.shown = shown->items;
            auto listed = idsOf(shown->items);
            JunkItems items = picked(group.items, [&](const CleanupCandidate& item) {
                return listed.erase(item.id) > 0 || isBack(item.record.path, *missing, *places);
            });
            if (listed.empty())
                relisting.items = std::move(items);
        }
        return relistings;
    };
    runInBackground(m_removalQueue, this, std::move(look),
        [this, before, missing, then = std::move(then)](
            Outcome<std::vector<Relisting>> outcome) mutable {
            if (!outcome.value)
                return then(false);
            bool areListed = !before->empty();
            bool haveChanged = false;
            auto groups = m_junkGroups;
            for (std::size_t i = 0; i < before->size(); ++i) {
                const auto& [shown, items] = (*outcome.value)[i];
                const auto group = std::ranges::find(groups, (*before)[i].id, &JunkGroup::id);
                if (!items || group == groups.end() || group->isScanning)
                    areListed = false;
                else if (!group->items.isCopyOf(shown))
                    haveChanged = true;
                else
                    group->items = *items;
            }
            if (haveChanged) // more was removed meanwhile
                return relistJunk(before, missing, std::move(then));
            publish(Field::junkGroups, m_junkGroups, std::move(groups));
            disposeInBackground(std::move(outcome));
            then(areListed);
        });
}

} // namespace kestavon
