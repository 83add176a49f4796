#include "core/model/app_model.h"
#include "core/model/background.h"
#include "platform/byte_count.h"

#include <algorithm>
#include <utility>

namespace kestavon {

std::int64_t AppModel::totalJunkBytes() const
{
    std::int64_t bytes = 0;
    for (const auto& group : m_junkGroups)
        bytes = saturatingSum(bytes, group.items.bytes());
    return bytes;
}

std::size_t AppModel::totalJunkItemCount() const
{
    std::size_t count = 0;
    for (const auto& group : m_junkGroups)
        count += group.items.size();
    return count;
}

void AppModel::scanAllJunk()
{
    if (m_junkScanTask)
        m_junkScanTask->request_stop();
    disposeInBackground(publish(Field::junkGroups, m_junkGroups, freshJunkGroups(true)));

    const auto stop = m_junkScanTask.emplace().get_token();
    const auto run = ++m_junkScanRun;
    const auto unfinished = std::make_shared<std::size_t>(allCases<JunkCategory>().size());
    for (const auto& [category, title] : allCases<JunkCategory>()) {
        const auto scan = ++m_junkScans[category];
        scanJunk(
            category, stop, [this, category = category, scan, run, unfinished](JunkItems items) {
                // The groups are another scan's once there is one.
                if (run == m_junkScanRun)
                    deliverJunk(category, scan, std::move(items));
                if (--*unfinished > 0)
                    return;
                if (run == m_junkScanRun)
                    m_junkScanTask.reset();
                recordEvent(
                    "Smart Scan complete", fileByteCount(totalJunkBytes()) + " of junk found");
            });
    }
}

void AppModel::scanJunkCategory(JunkCategory category)
{
    const auto group = std::ranges::find(m_junkGroups, category, &JunkGroup::category);
    if (group == m_junkGroups.end())
        return;
    publishChange(Field::junkGroups, [&] {
        disposeInBackground(std::exchange(group->items, {}));
        group->isScanning = true;
        group->isScanned = false;
    });
    scanJunk(category, m_junkCategoryStop.get_token(),
        [this, category, scan = ++m_junkScans[category]](
            JunkItems items) { deliverJunk(category, scan, std::move(items)); });
}

void AppModel::stopJunkScan()
{
    if (m_junkScanTask)
        m_junkScanTask->request_stop();
    m_junkScanTask.reset();
    if (std::ranges::none_of(m_junkGroups, &JunkGroup::isScanning))
        return;
    publishChange(Field::junkGroups, [this] {
        for (auto& group : m_junkGroups)
            group.isScanning = false;
    });
}

void AppModel::scanJunk(JunkCategory category, const std::stop_token& stop, JunkFound found)
{
    runInBackground(
        m_junkQueue, this,
        [scan = m_scanJunk, category, stop] { return JunkItems(scan(category, stop)); },
        [found = std::move(found)](Outcome<JunkItems> outcome) {
            // A scan that failed, for want of memory, found nothing.
            found(std::move(outcome.value).value_or(JunkItems()));
        });
}

void AppModel::deliverJunk(JunkCategory category, std::uint64_t scan, JunkItems items)
{
    // After a stop the group still gets what was found, but not from a scan before the one that
    // the user waits for now.
    if (scan != m_junkScans[category])
        return;
    const auto group = std::ranges::find(m_junkGroups, category, &JunkGroup::category);
    if (group == m_junkGroups.end())
        return;
    publishChange(Field::junkGroups, [&] {
        disposeInBackground(std::exchange(group->items, std::move(items)));
        group->isScanning = false;
        group->isScanned = true;
    });
}

} // namespace kestavon
