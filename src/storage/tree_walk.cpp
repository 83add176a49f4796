#include "storage/tree_walk.h"

#include "concurrency/cancelled.h"
#include "core/domain/package_rule.h"
#include "walk/pseudo_file_systems.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

namespace kestavon {

namespace {

// How long after a stop some thread must have met an entry: a walk without any ends as it should.
constexpr auto patienceForAnEntry = std::chrono::seconds(1);

constexpr std::int64_t recordsBetweenPosts = 1000;

RootProblem rootProblemOf(int error)
{
    switch (error) {
    case ENOENT: return RootProblem::missing;
    case ENOTDIR: return RootProblem::notAFolder;
    case EACCES:
    case EPERM: return RootProblem::notPermitted;
    default: return RootProblem::unreadable;
    }
}

bool hasNonAscii(std::string_view name)
{
    unsigned bits = 0;
    for (const char c : name)
        bits |= static_cast<unsigned char>(c);
    return bits > 0x7F;
}

std::uint8_t flagsOf(const EntryFacts& facts, std::string_view name)
{
    int flags = 0;
    if (facts.isDirectory)
        flags |= RecordFlags::directory;
    if (name.starts_with('.'))
        flags |= RecordFlags::hidden;
    if (hasNonAscii(name))
        flags |= RecordFlags::nonAsciiName;
    return static_cast<std::uint8_t>(flags);
}

} // namespace

/// What one thread of the walk records.
class TreeWalk::Recorder final : public Visitor {
public:
    Recorder(TreeWalk& walk, RecordStore& store)
        : m_walk(walk)
        , m_store(store)
    {
    }

    void visit(Folder& folder, int file, std::vector<ListedName>& entries,
        std::vector<Subfolder>& subfolders) override;

private:
    TreeWalk& m_walk;
    RecordStore& m_store;
    std::vector<EntryRow*> m_subfolderRows;
};

void TreeWalk::Recorder::visit(
    Folder& folder, int file, std::vector<ListedName>& entries, std::vector<Subfolder>& subfolders)
{
    sortByBytes(entries);
    std::uint64_t nameBytes = 0;
    for (const auto& name : entries)
        nameBytes += name.length + 1;
    const auto granted = m_walk.m_budget.request(entries.size(), nameBytes);
    if (granted < entries.size()) {
        entries.resize(granted);
        m_walk.close();
    }

    auto* const rows = m_store.rows.reserve(entries.size());
    auto* const names = m_store.names.reserve(nameBytes);
    auto* const run = m_store.runs.reserve(1);
    if (!rows || !names || !run)
        throw std::bad_alloc();
    m_subfolderRows.clear();
    auto* row = rows;
    auto* nameEnd = names;
    for (const auto& name : entries) {
        if (m_walk.isStopped()) {
            subfolders.clear();
            return;
        }
        if (folder.exclusions.excludes(name.view()))
            continue;
        const auto facts = lookAt(file, name.bytes);
        if (!facts) {
            // A folder may be listed by those who may not look at its entries, and a disk may fail;
            // what is gone by now is no fault.
            if (errno != ENOENT)
                m_walk.noteUnreadable(folder);
            continue;
        }
        row->size = facts->size;
        row->modifiedAt = facts->modifiedAt;
        row->subfolder = 0;
        row->nameLength = static_cast<std::uint16_t>(name.length);
        row->flags = flagsOf(*facts, name.view());
        std::memcpy(nameEnd, name.bytes, name.length + 1);
        if (facts->isDirectory && !hasPackageExtension(name.view())) {
            subfolders.push_back({.name = nameThatOutlives(nameEnd), .device = facts->device});
            m_subfolderRows.push_back(row);
        }
        nameEnd += name.length + 1;
        ++row;
    }

    const auto count = static_cast<std::size_t>(row - rows);
    const auto subfolderCount = static_cast<std::uint32_t>(subfolders.size());
    // Numbers are given before the folders are read: a folder's is greater than its parent's.
    const auto firstNumber = m_walk.m_folderCount.fetch_add(subfolderCount);
    for (std::uint32_t i = 0; i < subfolderCount; ++i)
        m_subfolderRows[i]->subfolder = subfolders[i].number = firstNumber + i;
    *run = {.rows = rows,
        .names = names,
        .otherSlices = nullptr,
        .folder = folder.number,
        .count = static_cast<std::uint32_t>(count),
        .nameBytes = static_cast<std::uint32_t>(nameEnd - names),
        .hasSubfolders = subfolderCount > 0};
    m_store.rows.append(count);
    m_store.names.append(run->nameBytes);
    m_store.runs.append(1);
    m_walk.report(count);
}

TreeWalk::TreeWalk(TreeWalkOrder order)
    : FolderWalk(
        {.threads = order.threads, .stop = order.stop, .patienceForAnEntry = patienceForAnEntry})
    , m_order(std::move(order))
    , m_budget(m_order.memoryProbe, m_order.memoryLimitBytes)
    , m_stores(m_order.threads)
{
}

std::unique_ptr<FolderWalk::Visitor> TreeWalk::makeVisitor(unsigned worker)
{
    return std::make_unique<Recorder>(*this, m_stores[worker]);
}

void TreeWalk::begin(Worker& worker)
{
    auto opened = openRootFolder(m_order.root);
    if (!opened.file) {
        m_rootProblem = rootProblemOf(opened.error);
        return;
    }
    const auto file = std::make_shared<const FileDescriptor>(std::move(opened.file));
    if (isOnKernelFileSystem(file->get())) {
        m_rootProblem = RootProblem::notStorage;
        return;
    }
    const auto facts = lookAt(file->get(), "");
    const auto root = std::make_shared<Folder>();
    root->isStart = true;
    root->device = facts ? facts->device : 0;
    root->base = file;
    root->exclusions = Exclusions(m_order.root, m_order.excludedPrefixes);
    worker.read(root, file);
}

void TreeWalk::waitForRecords()
{
    if (wait())
        return;
    const std::lock_guard lock(m_reportMutex);
    m_abandoned = true;
    throw Cancelled{};
}

void TreeWalk::report(std::size_t records)
{
    const std::lock_guard lock(m_reportMutex);
    if (m_abandoned || records == 0)
        return;
    const auto added = static_cast<std::int64_t>(records);
    const auto count = m_order.counter->add(added);
    if (!m_order.postLiveCount)
        return;
    const auto before = count - added;
    for (auto post = (before / recordsBetweenPosts + 1) * recordsBetweenPosts; post <= count;
         post += recordsBetweenPosts)
        m_order.postLiveCount(post);
}

} // namespace kestavon
