#include "core/domain/removal_guard.h"
#include "core/model/app_model.h"
#include "core/model/background.h"

#include <algorithm>

namespace kestavon {

namespace {

/// The error's words; empty for success.
std::string wordsOf(const Outcome<FileResult<Done>>& outcome)
{
    if (!outcome.value)
        return outcome.error;
    return *outcome.value ? std::string() : outcome.value->error().message;
}

} // namespace

void AppModel::addToQuarantine(std::vector<QuarantineItem> items)
{
    items.insert(items.end(), m_quarantine.begin(), m_quarantine.end());
    publish(Field::quarantine, m_quarantine, std::move(items));
}

void AppModel::forgetQuarantined(const std::unordered_set<Uuid>& ids)
{
    auto items = m_quarantine;
    std::erase_if(items, [&ids](const QuarantineItem& item) { return ids.contains(item.id); });
    publish(Field::quarantine, m_quarantine, std::move(items));
}

void AppModel::restoreItem(const QuarantineItem& item, Finished finished)
{
    runInBackground(
        m_quarantineQueue, this, [store = m_quarantineStore, item] { return store->restore(item); },
        [this, item, finished = std::move(finished)](const Outcome<FileResult<Done>>& outcome) {
            const auto error = wordsOf(outcome);
            if (error.empty()) {
                forgetQuarantined({item.id});
                recordEvent("Item restored", item.originalPath);
            }
            finished(error);
        });
}

void AppModel::restoreFromSafeArea(const QuarantineItem& item, Finished finished)
{
    restoreItem(item,
        [finished = std::move(finished)](const std::string& error) { report(finished, error); });
}

void AppModel::restoreAllFromSafeArea(Finished finished)
{
    auto remaining = m_quarantine;
    std::ranges::reverse(remaining); // taken from the back
    restoreNext(std::move(remaining), std::move(finished));
}

void AppModel::restoreNext(std::vector<QuarantineItem> remaining, Finished finished)
{
    if (remaining.empty())
        return report(finished, {});
    const auto item = std::move(remaining.back());
    remaining.pop_back();
    restoreItem(item,
        [this, remaining = std::move(remaining), finished = std::move(finished)](
            const std::string&) mutable {
            restoreNext(std::move(remaining), std::move(finished));
        });
}

void AppModel::deleteFromSafeArea(const QuarantineItem& item, Finished finished)
{
    runInBackground(
        m_removalQueue, this,
        [remover = m_platform.remover, path = item.quarantinedPath] {
            return remover->remove(path);
        },
        [this, item, finished = std::move(finished)](const Outcome<FileResult<Done>>& outcome) {
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
    auto removeAll = [remover = m_platform.remover, items = m_quarantine] {
        std::unordered_set<Uuid> ids;
        for (const auto& item : items) {
            // What cannot be deleted stays in the holding folder, whole, and is not reported.
            static_cast<void>(remover->remove(item.quarantinedPath));
            ids.insert(item.id);
        }
        return ids;
    };
    runInBackground(m_removalQueue, this, std::move(removeAll),
        [this, finished = std::move(finished)](const Outcome<std::unordered_set<Uuid>>& outcome) {
            if (outcome.value) {
                // What was moved in meanwhile stays listed.
                forgetQuarantined(*outcome.value);
                recordEvent("Safe Area emptied",
                    std::to_string(outcome.value->size()) + " items permanently deleted");
            }
            report(finished, outcome.error);
        });
}

} // namespace kestavon
