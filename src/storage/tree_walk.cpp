#include "storage/tree_walk.h"

#include "concurrency/cancelled.h"
#include "core/domain/package_rule.h"
#include "storage/pseudo_file_systems.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <new>
#include <system_error>
#include <thread>

#include <unistd.h>

namespace kestavon {

namespace {

constexpr std::size_t blockBytes = 64 * 1024;

// Slices that wait for a thread, at most: a huge folder must not be held in memory as listings.
constexpr unsigned waitingSlicesPerThread = 4;

// From this length on a folder's subfolders are opened from it rather than from further above; with
// a name of any length the path stays below PATH_MAX.
constexpr std::size_t longestOpenedPath = 3000;

// How long after a stop some thread must have met an entry (a walk without any ends as it should),
// and how long after that the others may take to leave: who has not is stuck in a read.
constexpr auto patienceForAnEntry = std::chrono::seconds(1);
constexpr auto patienceWithThreads = std::chrono::milliseconds(30);

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

/// Whether a subfolder that could not be opened has gone, rather than being closed to us.
bool hasVanished(int error)
{
    return error == ENOENT || error == ENOTDIR || error == ELOOP || error == EXDEV;
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

// A folder that holds both is an application, packed in one folder.
constexpr const char* appDirStart = "AppRun";
constexpr std::string_view appDirDescriptionSuffix = ".desktop";

bool holdAppDirDescription(const std::vector<ListedName>& names)
{
    return std::ranges::any_of(names,
        [](const ListedName& name) { return name.view().ends_with(appDirDescriptionSuffix); });
}

bool areOfAppDir(const std::vector<ListedName>& names)
{
    return std::ranges::find(names, std::string_view(appDirStart), &ListedName::view) != names.end()
        && holdAppDirDescription(names);
}

} // namespace

/// One thread of the walk, with the buffers that it uses for one folder after the other.
class TreeWalk::Worker {
public:
    Worker(TreeWalk& walk, unsigned number)
        : m_walk(walk)
        , m_number(number)
        , m_store(walk.m_stores[number])
        , m_block(std::make_unique<char[]>(blockBytes))
    {
    }

    void run(const Task& task);

private:
    using FolderPointer = std::shared_ptr<Folder>;
    using FilePointer = std::shared_ptr<const FileDescriptor>;

    void readSlice(const Task& task);
    void readRoot();
    void readSubfolder(const Task& task);
    void readFolder(const FolderPointer& folder, const FilePointer& file);
    void readLargeFolder(const FolderPointer& folder, const FilePointer& file, Listing listing);
    bool isLargeAppDir(int file);
    void handOn(const FolderPointer& folder, const FilePointer& file, std::size_t bytes);
    void recordNames(const FolderPointer& folder, int file);

    std::span<char> block() { return {m_block.get(), blockBytes}; }

    TreeWalk& m_walk;
    const unsigned m_number;
    RecordStore& m_store;
    std::unique_ptr<char[]> m_block;
    std::vector<ListedName> m_names;
    std::vector<Task> m_subfolders;
    std::vector<EntryRow*> m_subfolderRows;
};

void TreeWalk::Worker::run(const Task& task)
{
    if (!task.folder) {
        readRoot();
    } else if (!task.slice) {
        readSubfolder(task);
    } else {
        readSlice(task);
    }
}

void TreeWalk::Worker::readRoot()
{
    const auto& order = m_walk.m_order;
    auto opened = openRootFolder(order.root);
    if (!opened.file.isOpen()) {
        m_walk.m_rootProblem = rootProblemOf(opened.error);
        return;
    }
    const auto file = std::make_shared<const FileDescriptor>(std::move(opened.file));
    if (isOnKernelFileSystem(file->get())) {
        m_walk.m_rootProblem = RootProblem::notStorage;
        return;
    }
    const auto facts = lookAt(file->get(), "");
    const auto folder = std::make_shared<Folder>();
    folder->device = facts ? facts->device : 0;
    folder->base = file;
    folder->exclusions = Exclusions(order.root, order.excludedPrefixes);
    readFolder(folder, file);
}

void TreeWalk::Worker::readSubfolder(const Task& task)
{
    auto& parent = *task.folder;
    const auto folder = std::make_shared<Folder>();
    folder->path.reserve(parent.path.size() + 1 + std::strlen(task.name));
    folder->path = parent.path;
    if (!folder->path.empty())
        folder->path += '/';
    folder->path += task.name;

    const int base = parent.base->get();
    if (task.device != parent.device) {
        const auto mountPoint = m_walk.m_opener.openWithoutMounting(base, folder->path.c_str());
        if (mountPoint.file.isOpen() && isOnPseudoFileSystem(mountPoint.file.get()))
            return;
    }
    auto opened = m_walk.m_opener.open(base, folder->path.c_str());
    if (!opened.file.isOpen()) {
        if (!hasVanished(opened.error))
            m_walk.noteUnreadable(*folder);
        return;
    }
    const auto file = std::make_shared<const FileDescriptor>(std::move(opened.file));
    folder->number = task.number;
    folder->device = task.device;
    folder->base = parent.base;
    if (folder->path.size() > longestOpenedPath) {
        folder->base = file;
        folder->path.clear();
    }
    folder->exclusions = parent.exclusions.below(task.name);
    readFolder(folder, file);
}

void TreeWalk::Worker::readFolder(const FolderPointer& folder, const FilePointer& file)
{
    const auto listing = listFolder(file->get(), block());
    if (!listing.atEnd) {
        readLargeFolder(folder, file, listing);
        return;
    }
    if (listing.error != 0)
        m_walk.noteUnreadable(*folder);
    m_names.clear();
    collectNames({m_block.get(), listing.bytes}, m_names);
    // The folder that the walk starts at is entered whatever it is.
    if (folder->number == 0 || !areOfAppDir(m_names))
        recordNames(folder, file->get());
}

void TreeWalk::Worker::readLargeFolder(
    const FolderPointer& folder, const FilePointer& file, Listing listing)
{
    if (folder->number != 0 && lookAt(file->get(), appDirStart)) {
        // A second reading is dear, but hardly any large folder holds that name.
        if (isLargeAppDir(file->get()))
            return;
        listing = listFolder(file->get(), block());
    }
    while (!m_walk.m_queues.isClosed()) {
        const auto handOnMore = m_walk.m_order.threads > 1
            && m_walk.m_waitingSlices < waitingSlicesPerThread * m_walk.m_order.threads;
        if (handOnMore && !listing.atEnd) {
            handOn(folder, file, listing.bytes);
        } else {
            m_names.clear();
            collectNames({m_block.get(), listing.bytes}, m_names);
            recordNames(folder, file->get());
        }
        if (listing.error != 0)
            m_walk.noteUnreadable(*folder);
        if (listing.atEnd)
            return;
        listing = listFolder(file->get(), block());
    }
}

bool TreeWalk::Worker::isLargeAppDir(int file)
{
    bool hasDescription = false;
    ::lseek(file, 0, SEEK_SET);
    for (Listing listing; !listing.atEnd && !hasDescription;) {
        listing = listFolder(file, block());
        m_names.clear();
        collectNames({m_block.get(), listing.bytes}, m_names);
        hasDescription = holdAppDirDescription(m_names);
    }
    ::lseek(file, 0, SEEK_SET);
    return hasDescription;
}

void TreeWalk::Worker::handOn(
    const FolderPointer& folder, const FilePointer& file, std::size_t bytes)
{
    Task task;
    task.folder = folder;
    task.slice = std::make_unique<Slice>();
    task.slice->file = file;
    task.slice->block = std::make_unique_for_overwrite<char[]>(bytes);
    std::memcpy(task.slice->block.get(), m_block.get(), bytes);
    task.slice->bytes = bytes;
    ++m_walk.m_waitingSlices;
    m_walk.m_queues.offer(m_number, std::move(task));
}

void TreeWalk::Worker::readSlice(const Task& task)
{
    const auto& slice = *task.slice;
    m_names.clear();
    collectNames({slice.block.get(), slice.bytes}, m_names);
    recordNames(task.folder, slice.file->get());
    --m_walk.m_waitingSlices;
}

void TreeWalk::Worker::recordNames(const FolderPointer& folder, int file)
{
    if (m_names.empty())
        return;
    const auto& stop = m_walk.m_order.stop;
    if (stop.stop_requested()) {
        m_walk.stopForGood();
        return;
    }
    sortByBytes(m_names);
    std::uint64_t nameBytes = 0;
    for (const auto& name : m_names)
        nameBytes += name.length + 1;
    const auto granted = m_walk.m_budget.request(m_names.size(), nameBytes);
    if (granted < m_names.size()) {
        m_names.resize(granted);
        m_walk.m_queues.close();
    }

    auto* const rows = m_store.rows.reserve(m_names.size());
    auto* const names = m_store.names.reserve(nameBytes);
    auto* const run = m_store.runs.reserve(1);
    if (!rows || !names || !run)
        throw std::bad_alloc();
    m_subfolders.clear();
    m_subfolderRows.clear();
    auto* row = rows;
    auto* nameEnd = names;
    for (const auto& name : m_names) {
        if (stop.stop_requested()) {
            m_walk.stopForGood();
            return;
        }
        if (folder->exclusions.excludes(name.view()))
            continue;
        const auto facts = lookAt(file, name.bytes);
        if (!facts) {
            // A folder may be listed by those who may not look at its entries.
            if (errno == EACCES)
                m_walk.noteUnreadable(*folder);
            continue;
        }
        row->size = facts->size;
        row->modifiedAt = facts->modifiedAt;
        row->subfolder = 0;
        row->nameLength = static_cast<std::uint16_t>(name.length);
        row->flags = flagsOf(*facts, name.view());
        std::memcpy(nameEnd, name.bytes, name.length + 1);
        if (facts->isDirectory && !hasPackageExtension(name.view())) {
            Task task;
            task.folder = folder;
            task.name = nameEnd;
            task.device = facts->device;
            m_subfolders.push_back(std::move(task));
            m_subfolderRows.push_back(row);
        }
        nameEnd += name.length + 1;
        ++row;
    }

    const auto count = static_cast<std::size_t>(row - rows);
    const auto subfolderCount = static_cast<std::uint32_t>(m_subfolders.size());
    // Numbers are given before the folders are read: a folder's is greater than its parent's.
    const auto firstNumber = m_walk.m_folderCount.fetch_add(subfolderCount);
    for (std::uint32_t i = 0; i < subfolderCount; ++i)
        m_subfolderRows[i]->subfolder = m_subfolders[i].number = firstNumber + i;
    *run = {.rows = rows,
        .names = names,
        .otherSlices = nullptr,
        .folder = folder->number,
        .count = static_cast<std::uint32_t>(count),
        .nameBytes = static_cast<std::uint32_t>(nameEnd - names),
        .hasSubfolders = subfolderCount > 0};
    m_store.rows.append(count);
    m_store.names.append(run->nameBytes);
    m_store.runs.append(1);
    m_walk.report(count);
    // The first is to be the next one read, so that a thread's records stand nearly in order.
    std::ranges::reverse(m_subfolders);
    m_walk.m_queues.add(m_number, m_subfolders);
}

TreeWalk::TreeWalk(TreeWalkOrder order)
    : m_order(std::move(order))
    , m_budget(m_order.memoryProbe, m_order.memoryLimitBytes)
    , m_queues(m_order.threads)
    , m_stores(m_order.threads)
{
}

void TreeWalk::start()
{
    m_queues.offer(0, Task());
    for (unsigned worker = 0; worker < m_order.threads; ++worker) {
        const std::lock_guard lock(m_leaveMutex);
        try {
            std::thread([walk = shared_from_this(), worker] { walk->work(worker); }).detach();
            ++m_working;
        } catch (const std::system_error&) {
            break; // Fewer threads do as well.
        }
    }
    if (std::unique_lock lock(m_leaveMutex); m_working == 0) {
        m_working = 1;
        lock.unlock();
        work(0);
    }
}

void TreeWalk::work(unsigned number)
{
    try {
        Worker worker(*this, number);
        while (const auto task = m_queues.take(number)) {
            worker.run(*task);
            m_queues.done();
        }
    } catch (const std::bad_alloc&) {
        m_budget.exhaust();
        m_queues.close();
    }
    const std::lock_guard lock(m_leaveMutex);
    --m_working;
    m_left.notify_all();
}

void TreeWalk::wait()
{
    const auto allLeft = [this] { return m_working == 0; };
    std::unique_lock lock(m_leaveMutex);
    if (!m_left.wait(lock, m_order.stop, allLeft)) {
        const auto isDecided = [&] { return m_sawStop || allLeft(); };
        m_left.wait_for(lock, patienceForAnEntry, isDecided);
        m_left.wait_for(lock, patienceWithThreads, allLeft);
    }
    if (m_working == 0 && !m_sawStop)
        return;
    lock.unlock();

    m_queues.close();
    const std::lock_guard reportLock(m_reportMutex);
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

void TreeWalk::noteUnreadable(Folder& folder)
{
    if (!folder.isUnreadable.exchange(true))
        ++m_unreadableFolders;
}

void TreeWalk::stopForGood()
{
    m_queues.close();
    const std::lock_guard lock(m_leaveMutex);
    m_sawStop = true;
    m_left.notify_all();
}

} // namespace kestavon
