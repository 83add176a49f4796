#include "core/model/work_meter.h"

namespace kestavon {

WorkMeter::WorkMeter(FileWork::Deed deed)
    : m_work{.deed = deed}
{
}

void WorkMeter::begin(std::size_t items)
{
    const std::lock_guard lock(m_mutex);
    if (m_beginning)
        return;
    m_beginning = std::chrono::steady_clock::now();
    m_work.items = static_cast<std::int64_t>(items);
}

void WorkMeter::beginItem(const std::string& path)
{
    const std::lock_guard lock(m_mutex);
    m_work.path = path;
    ++m_work.item;
    m_work.copiedBytes = 0;
    m_work.bytesToCopy = 0;
    m_removedBefore = m_work.removedEntries;
}

void WorkMeter::tellCopied(std::int64_t bytes, std::int64_t ofBytes)
{
    const std::lock_guard lock(m_mutex);
    m_work.copiedBytes = bytes;
    m_work.bytesToCopy = ofBytes;
}

void WorkMeter::tellRemoved(std::int64_t entries)
{
    const std::lock_guard lock(m_mutex);
    m_work.removedEntries = m_removedBefore + entries;
}

void WorkMeter::tellRemovedWhole()
{
    const std::lock_guard lock(m_mutex);
    m_removedBefore = m_work.removedEntries;
}

std::optional<PartlyDeleted> WorkMeter::partlyDeleted() const
{
    const std::lock_guard lock(m_mutex);
    const auto entries = m_work.removedEntries - m_removedBefore;
    if (!isStopped() || m_work.deed != FileWork::Deed::remove || entries <= 0)
        return std::nullopt;
    return PartlyDeleted{.path = m_work.path, .entries = entries};
}

std::optional<FileWork> WorkMeter::reading() const
{
    const std::lock_guard lock(m_mutex);
    if (!m_beginning || std::chrono::steady_clock::now() - *m_beginning < patience)
        return std::nullopt;
    auto work = m_work;
    work.isStopping = isStopped();
    return work;
}

void WorkMeter::requestStop()
{
    m_stop.request_stop();
}

FileWork::Deed deedOf(ActionKind action)
{
    switch (action) {
    case ActionKind::safeArea: return FileWork::Deed::hold;
    case ActionKind::trash: return FileWork::Deed::trash;
    case ActionKind::permanent: break;
    }
    return FileWork::Deed::remove;
}

WorkWatch watchOf(const std::shared_ptr<WorkMeter>& meter)
{
    return {.stop = meter->stopToken(),
        .begins = [meter](const std::string& path) { meter->beginItem(path); },
        .copied
        = [meter](std::int64_t done, std::int64_t total) { meter->tellCopied(done, total); },
        .removed = [meter](std::int64_t entries) { meter->tellRemoved(entries); },
        .removedWhole = [meter] { meter->tellRemovedWhole(); }};
}

} // namespace kestavon
