#include "walk/folder_walk.h"

#include "walk/pseudo_file_systems.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <string_view>
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

// How long after a stop was noticed the threads may take to leave: who has not is stuck in a read.
constexpr auto patienceWithThreads = std::chrono::milliseconds(30);

/// Whether a subfolder that could not be opened has gone, rather than being closed to us.
bool hasVanished(int error)
{
    return error == ENOENT || error == ENOTDIR || error == ELOOP || error == EXDEV;
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

unsigned threadsForWalks()
{
    return std::min(16U, std::max(8U, 2 * std::thread::hardware_concurrency()));
}

FolderWalk::Worker::Worker(FolderWalk& walk, unsigned number)
    : m_walk(walk)
    , m_number(number)
    , m_visitor(walk.makeVisitor(number))
    , m_block(std::make_unique<char[]>(blockBytes))
{
}

std::span<char> FolderWalk::Worker::block()
{
    return {m_block.get(), blockBytes};
}

void FolderWalk::Worker::run(const Task& task)
{
    if (!task.folder) {
        m_walk.begin(*this);
    } else if (!task.slice) {
        readSubfolder(task);
    } else {
        readSlice(task);
    }
}

void FolderWalk::Worker::readSubfolder(const Task& task)
{
    auto& parent = *task.folder;
    const auto* const name = task.subfolder.name.get();
    const auto folder = std::make_shared<Folder>();
    folder->path.reserve(parent.path.size() + 1 + std::strlen(name));
    folder->path = parent.path;
    if (!folder->path.empty())
        folder->path += '/';
    folder->path += name;

    auto opened = open(*folder, parent, task.subfolder.device);
    if (!opened.file) {
        if (!hasVanished(opened.error))
            m_walk.noteUnreadable(*folder);
        return;
    }
    const auto file = std::make_shared<const FileDescriptor>(std::move(opened.file));
    folder->number = task.subfolder.number;
    folder->isStart = task.subfolder.isStart;
    folder->base = parent.base;
    if (folder->path.size() > longestOpenedPath) {
        folder->base = file;
        folder->path.clear();
    }
    folder->exclusions = parent.exclusions.below(name);
    read(folder, file);
}

/// Opens the folder and sets its device; `device` is that when somebody looked.
OpenedFolder FolderWalk::Worker::open(
    Folder& folder, const Folder& parent, std::optional<std::uint64_t> device)
{
    const int base = parent.base->get();
    const auto* const path = folder.path.c_str();
    folder.device = parent.device;
    if (!device) {
        auto opened = m_walk.m_opener.openOnSameDevice(base, path);
        if (opened.error != EXDEV)
            return opened;
        const auto facts = lookAt(base, path);
        device = facts ? facts->device : 0;
    }
    if (*device != parent.device) {
        folder.device = *device;
        const auto mountPoint = m_walk.m_opener.openWithoutMounting(base, path);
        if (mountPoint.file && isOnPseudoFileSystem(mountPoint.file.get()))
            return {.file = FileDescriptor(), .error = EXDEV};
    }
    return m_walk.m_opener.open(base, path);
}

void FolderWalk::Worker::read(const FolderPointer& folder, const FilePointer& file)
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
    if (folder->isStart || !areOfAppDir(m_names))
        visitNames(folder, file->get());
}

void FolderWalk::Worker::readLargeFolder(
    const FolderPointer& folder, const FilePointer& file, Listing listing)
{
    if (!folder->isStart && lookAt(file->get(), appDirStart)) {
        // A second reading is dear, but hardly any large folder holds that name.
        if (isLargeAppDir(file->get()))
            return;
        listing = listFolder(file->get(), block());
    }
    while (!m_walk.m_queues.isClosed()) {
        const auto threads = m_walk.m_options.threads;
        const auto handOnMore
            = threads > 1 && m_walk.m_waitingSlices < waitingSlicesPerThread * threads;
        if (handOnMore && !listing.atEnd) {
            handOn(folder, file, listing.bytes);
        } else {
            m_names.clear();
            collectNames({m_block.get(), listing.bytes}, m_names);
            visitNames(folder, file->get());
        }
        if (listing.error != 0)
            m_walk.noteUnreadable(*folder);
        if (listing.atEnd)
            return;
        listing = listFolder(file->get(), block());
    }
}

bool FolderWalk::Worker::isLargeAppDir(int file)
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

void FolderWalk::Worker::handOn(
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

void FolderWalk::Worker::readSlice(const Task& task)
{
    const auto& slice = *task.slice;
    m_names.clear();
    collectNames({slice.block.get(), slice.bytes}, m_names);
    visitNames(task.folder, slice.file->get());
    --m_walk.m_waitingSlices;
}

void FolderWalk::Worker::visitNames(const FolderPointer& folder, int file)
{
    if (m_names.empty() || m_walk.isStopped())
        return;
    m_subfolders.clear();
    m_visitor->visit(*folder, file, m_names, m_subfolders);
    add(folder, m_subfolders);
}

void FolderWalk::Worker::add(const FolderPointer& parent, std::span<Subfolder> subfolders)
{
    m_tasks.clear();
    m_tasks.resize(subfolders.size());
    auto task = m_tasks.rbegin();
    for (auto& subfolder : subfolders) {
        task->folder = parent;
        task->subfolder = std::move(subfolder);
        ++task;
    }
    m_walk.m_queues.add(m_number, m_tasks);
}

FolderWalk::FolderWalk(Options options)
    : m_options(std::move(options))
    , m_needsFacts(!m_opener.canStayOnDevice() || mountsOnDemand())
    , m_queues(m_options.threads)
{
}

void FolderWalk::start()
{
    m_queues.offer(0, Task());
    for (unsigned worker = 0; worker < m_options.threads; ++worker) {
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

void FolderWalk::work(unsigned number)
{
    try {
        Worker worker(*this, number);
        while (const auto task = m_queues.take(number)) {
            worker.run(*task);
            m_queues.done();
        }
    } catch (const std::bad_alloc&) {
        noteExhaustion();
        close();
    }
    const std::lock_guard lock(m_leaveMutex);
    --m_working;
    m_left.notify_all();
}

bool FolderWalk::wait()
{
    const auto allLeft = [this] { return m_working == 0; };
    std::unique_lock lock(m_leaveMutex);
    if (!m_left.wait(lock, m_options.stop, allLeft)) {
        const auto isDecided = [&] { return m_isCutShort || allLeft(); };
        m_left.wait_for(lock, m_options.patienceForAnEntry, isDecided);
        m_left.wait_for(lock, patienceWithThreads, allLeft);
    }
    if (m_working == 0 && !m_isCutShort)
        return true;
    lock.unlock();
    close();
    return false;
}

bool FolderWalk::isStopped()
{
    if (!m_options.stop.stop_requested())
        return false;
    cutShort();
    return true;
}

void FolderWalk::cutShort()
{
    close();
    const std::lock_guard lock(m_leaveMutex);
    m_isCutShort = true;
    m_left.notify_all();
}

void FolderWalk::noteUnreadable(Folder& folder)
{
    if (!folder.isUnreadable.exchange(true))
        ++m_unreadableFolders;
}

} // namespace kestavon
