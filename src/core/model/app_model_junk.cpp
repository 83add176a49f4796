#include "core/model/app_model.h"
#include "core/model/background.h"
#include "core/model/removal_actions.h"
#include "platform/byte_count.h"

#include <algorithm>
#include <utility>

namespace kestavon {

namespace {

/// What became of the items of one cleaning.
struct Cleaned {
    RemovalReport removed;
    FileResult<std::vector<QuarantineItem>> held = std::vector<QuarantineItem>();
};

Cleaned clean(QuarantineStore& store, const Platform& platform, ActionKind action,
    const std::vector<CleanupCandidate>& items)
{
    Cleaned cleaned;
    if (action == ActionKind::safeArea) {
        cleaned.held = store.quarantine(items);
        return cleaned;
    }
    std::vector<RemovalRequest> requests;
    requests.reserve(items.size());
    for (const auto& item : items) {
        requests.push_back({.path = item.record.path,
            .bytes = item.estimatedBytes,
            .isDirectory = item.record.isDirectory});
    }
    cleaned.removed = workerFor(platform, action, {}).run(requests);
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

void AppModel::cleanJunkItems(const JunkGroup& group, const std::unordered_set<Uuid>& ids,
    ActionKind action, std::function<void(std::size_t, std::size_t)> moved, Finished finished)
{
    std::vector<CleanupCandidate> selected;
    RemovalTally requested;
    for (const auto& item : group.items) {
        if (!ids.contains(item.id))
            continue;
        selected.push_back(item);
        requested += {.count = 1, .bytes = item.estimatedBytes};
    }

    auto cleanSelected
        = [store = m_quarantineStore, platform = m_platform, action,
              selected = std::move(selected)] { return clean(*store, platform, action, selected); };
    auto& queue = action == ActionKind::safeArea ? m_quarantineQueue : m_removalQueue;
    runInBackground(queue, this, std::move(cleanSelected),
        [this, groupId = group.id, category = group.category, ids, action, requested,
            moved = std::move(moved), finished = std::move(finished)](Outcome<Cleaned> outcome) {
            if (!outcome.value)
                return report(finished, outcome.error);
            auto& [removed, held] = *outcome.value;
            if (!held)
                return report(finished, held.error().message);
            const auto movedCount = held->size();
            UndoableMove move{.action = action, .describe = itemsText};
            if (action == ActionKind::safeArea) {
                move.count = static_cast<std::int64_t>(movedCount);
                move.held = *held;
                addToQuarantine(std::move(*held));
            } else if (action == ActionKind::trash) {
                move.count = removed.tally.count;
                move.trashed = removed.trashed;
            }
            // The whole selection leaves the group, what stayed at its place too.
            const auto before = dropJunk(ids, groupId);

            switch (action) {
            case ActionKind::safeArea:
                recordEvent(std::string(rawValue(category)) + " moved to Safe Area",
                    movedText(movedCount, requested));
                if (moved)
                    moved(movedCount, static_cast<std::size_t>(requested.count));
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
    const auto total = fileByteCount(totalJunkBytes());
    std::vector<CleanupCandidate> items;
    std::unordered_set<Uuid> ids;
    for (const auto& group : m_junkGroups) {
        for (const auto& item : group.items) {
            items.push_back(item);
            ids.insert(item.id);
        }
    }
    runInBackground(
        m_quarantineQueue, this,
        [store = m_quarantineStore, items = std::move(items)] { return store->quarantine(items); },
        [this, ids = std::move(ids), total, finished = std::move(finished)](
            Outcome<FileResult<std::vector<QuarantineItem>>> outcome) {
            if (!outcome.value)
                return report(finished, outcome.error);
            auto& held = *outcome.value;
            if (!held)
                return report(finished, held.error().message);
            UndoableMove move{.action = ActionKind::safeArea,
                .count = static_cast<std::int64_t>(held->size()),
                .held = *held};
            addToQuarantine(std::move(*held));
            // What a scan has found meanwhile stays.
            const auto before = dropJunk(ids);
            recordEvent("Smart Clean complete",
                std::to_string(move.count) + " items (" + total + ") quarantined");
            move.relist = [this, before](const Missing& missing, Relisted then) {
                relistJunk(before, missing, std::move(then));
            };
            offerUndo(std::move(move));
            report(finished, {});
        });
}

AppModel::JunkBefore AppModel::dropJunk(
    const std::unordered_set<Uuid>& ids, const std::optional<Uuid>& group)
{
    const auto isGone = [&ids](const CleanupCandidate& item) { return ids.contains(item.id); };
    const auto concerns = [&](const JunkGroup& shown) {
        return (!group || shown.id == *group) && std::ranges::any_of(shown.items, isGone);
    };
    auto before = std::make_shared<std::vector<JunkGroup>>();
    std::ranges::copy_if(m_junkGroups, std::back_inserter(*before), concerns);
    if (before->empty())
        return before;
    publishChange(Field::junkGroups, [&] {
        for (auto& shown : m_junkGroups) {
            if (concerns(shown))
                std::erase_if(shown.items, isGone);
        }
    });
    return before;
}

void AppModel::relistJunk(const JunkBefore& before, const Missing& missing, Relisted then)
{
    auto look = [before, missing, places = m_platform.places] {
        std::unordered_set<Uuid> present;
        for (const auto& group : *before) {
            for (const auto& item : group.items) {
                if (isBack(item.record.path, *missing, *places))
                    present.insert(item.id);
            }
        }
        return present;
    };
    runInBackground(m_removalQueue, this, std::move(look),
        [this, before, then = std::move(then)](const Outcome<std::unordered_set<Uuid>>& outcome) {
            bool areListed = outcome.value && !before->empty();
            for (const auto& group : *before)
                areListed = outcome.value && relistInGroup(group, *outcome.value) && areListed;
            then(areListed);
        });
}

/// False when the group has been scanned anew meanwhile.
bool AppModel::relistInGroup(const JunkGroup& before, const std::unordered_set<Uuid>& present)
{
    const auto shown = std::ranges::find(m_junkGroups, before.id, &JunkGroup::id);
    if (shown == m_junkGroups.end() || shown->isScanning)
        return false;
    std::unordered_set<Uuid> listed;
    for (const auto& item : shown->items)
        listed.insert(item.id);
    std::vector<CleanupCandidate> items;
    for (const auto& item : before.items) {
        if (listed.erase(item.id) > 0 || present.contains(item.id))
            items.push_back(item);
    }
    if (!listed.empty())
        return false;
    publishChange(Field::junkGroups, [&] { std::swap(shown->items, items); });
    return true;
}

} // namespace kestavon
