#include "storage/depth_first_stitch.h"

#include "concurrency/cancelled.h"
#include "walk/folder_reader.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

namespace kestavon {

namespace {

/// A place in the finished table, or a distance between two.
struct Place {
    std::uint32_t record = 0;
    std::uint32_t nameByte = 0;
    std::uint32_t folder = 0;

    Place& operator+=(const Place& distance)
    {
        record += distance.record;
        nameByte += distance.nameByte;
        folder += distance.folder;
        return *this;
    }
};

class DepthFirstStitch {
public:
    DepthFirstStitch(const std::string& root, std::vector<RecordStore>& stores,
        std::uint32_t folderCount, const std::stop_token& stop)
        : m_stores(stores)
        , m_stop(stop)
        , m_folders(folderCount)
        , m_names(std::make_shared<RecordNames>())
    {
        m_names->root = root;
    }

    RecordColumns stitch(unsigned threads)
    {
        gatherRuns();
        sumSubtrees();
        allocateColumns();
        placeFolders();
        // The names first, on their own: their store is gone before the other columns take memory.
        copySlicedNames();
        inEveryStore(threads, &DepthFirstStitch::copyNamesOf);
        copySlicedFacts();
        inEveryStore(threads, &DepthFirstStitch::copyFactsOf);
        m_columns.names = std::move(m_names);
        return std::move(m_columns);
    }

private:
    struct WalkedFolder {
        EntryRun* run = nullptr;
        std::uint32_t parent = 0;
        Place extent{.record = 0, .nameByte = 0, .folder = 1}; ///< of all that lies below
        Place start; ///< where its entries begin; the folder's new number
    };

    struct SlicedEntry {
        std::uint64_t key;
        const char* name;
        const EntryRow* row;
    };

    struct SlicedFolder {
        std::uint32_t folder;
        std::vector<SlicedEntry> entries; ///< in byte order
    };

    void gatherRuns();
    void sumSubtrees();
    void allocateColumns();
    void placeFolders();
    void placeSlicedFolder(std::uint32_t number);
    void copySlicedNames() const;
    void copySlicedFacts();
    std::vector<SlicedEntry> mergedSlices(const EntryRun* slices) const;
    void inEveryStore(unsigned threads, void (DepthFirstStitch::*copy)(RecordStore&));
    void copyNamesOf(RecordStore& store);
    void copyFactsOf(RecordStore& store);
    void copyName(const EntryRow& row, const char* name, const Place& at) const;
    void copyFacts(const EntryRow& row, const Place& at, std::uint32_t folder);
    Place firstEntryOf(const WalkedFolder& folder) const;
    void placeSubfolder(const EntryRow& row, const Place& at, std::uint32_t parent);
    void pass(const EntryRow& row, Place& at) const;
    void throwIfStopped() const;

    std::vector<RecordStore>& m_stores;
    const std::stop_token& m_stop;
    std::vector<WalkedFolder> m_folders; // by the numbers that the walk gave
    std::vector<SlicedFolder> m_slicedFolders;
    std::shared_ptr<RecordNames> m_names;
    RecordColumns m_columns;
};

/// Finds each folder's entries and parent.
void DepthFirstStitch::gatherRuns()
{
    for (auto& store : m_stores) {
        for (std::size_t i = 0; i < store.runs.chunkCount(); ++i) {
            throwIfStopped();
            for (auto& run : store.runs.chunk(i)) {
                auto& folder = m_folders[run.folder];
                folder.extent += {.record = run.count, .nameByte = run.nameBytes, .folder = 0};
                run.otherSlices = std::exchange(folder.run, &run);
                if (!run.hasSubfolders)
                    continue;
                for (const auto& row : run.entries()) {
                    if (row.subfolder != 0)
                        m_folders[row.subfolder].parent = run.folder;
                }
            }
        }
    }
}

/// Adds each folder's extent to its parent's: a parent's number is the smaller one.
void DepthFirstStitch::sumSubtrees()
{
    for (auto number = m_folders.size() - 1; number > 0; --number)
        m_folders[m_folders[number].parent].extent += m_folders[number].extent;
}

void DepthFirstStitch::allocateColumns()
{
    const auto& all = m_folders[0].extent;
    m_columns.sizes = Column<std::int64_t>(all.record);
    m_columns.modifiedAt = Column<std::int64_t>(all.record);
    m_columns.folders = Column<std::uint32_t>(all.record);
    m_columns.nameOffsets = Column<std::uint32_t>(all.record);
    m_columns.flags = Column<std::uint8_t>(all.record);
    m_names->bytes = Column<char>(all.nameByte);
    m_names->folderParents = Column<std::uint32_t>(all.folder);
    m_names->folderNames = Column<std::uint32_t>(all.folder);
    m_names->folderParents[0] = 0;
    m_names->folderNames[0] = 0;
}

/// Gives every folder its start, parents first.
void DepthFirstStitch::placeFolders()
{
    for (std::uint32_t number = 0; number < m_folders.size(); ++number) {
        const auto& folder = m_folders[number];
        if (number % 4096 == 0)
            throwIfStopped();
        if (!folder.run)
            continue;
        if (folder.run->otherSlices) {
            placeSlicedFolder(number);
            continue;
        }
        if (!folder.run->hasSubfolders)
            continue;
        auto at = firstEntryOf(folder);
        for (const auto& row : folder.run->entries()) {
            if (row.subfolder != 0)
                placeSubfolder(row, at, folder.start.folder);
            pass(row, at);
        }
    }
}

/// Where a folder's first entry goes, and the number for the first folder among its entries.
Place DepthFirstStitch::firstEntryOf(const WalkedFolder& folder) const
{
    auto first = folder.start;
    ++first.folder;
    return first;
}

/// Moves `at` behind an entry and all that lies below it.
void DepthFirstStitch::pass(const EntryRow& row, Place& at) const
{
    at += {.record = 1, .nameByte = row.nameLength + 1u, .folder = 0};
    if (row.subfolder != 0)
        at += m_folders[row.subfolder].extent;
}

/// Gives the folder entered at the entry `at` its start.
void DepthFirstStitch::placeSubfolder(const EntryRow& row, const Place& at, std::uint32_t parent)
{
    m_folders[row.subfolder].start = {.record = at.record + 1,
        .nameByte = at.nameByte + row.nameLength + 1u,
        .folder = at.folder};
    m_names->folderParents[at.folder] = parent;
    m_names->folderNames[at.folder] = at.nameByte;
}

/// Puts the slices of a folder in order and gives the folders among its entries their starts.
void DepthFirstStitch::placeSlicedFolder(std::uint32_t number)
{
    const auto& folder = m_folders[number];
    m_slicedFolders.push_back({.folder = number, .entries = mergedSlices(folder.run)});
    auto at = firstEntryOf(folder);
    for (const auto& entry : m_slicedFolders.back().entries) {
        if (entry.row->subfolder != 0)
            placeSubfolder(*entry.row, at, folder.start.folder);
        pass(*entry.row, at);
    }
    // Whoever copies run by run is to pass over them.
    for (auto* slice = folder.run; slice; slice = slice->otherSlices)
        slice->count = 0;
}

void DepthFirstStitch::copySlicedNames() const
{
    for (const auto& sliced : m_slicedFolders) {
        auto at = firstEntryOf(m_folders[sliced.folder]);
        for (const auto& entry : sliced.entries) {
            copyName(*entry.row, entry.name, at);
            pass(*entry.row, at);
        }
    }
}

void DepthFirstStitch::copySlicedFacts()
{
    for (const auto& sliced : m_slicedFolders) {
        const auto& folder = m_folders[sliced.folder];
        auto at = firstEntryOf(folder);
        for (const auto& entry : sliced.entries) {
            copyFacts(*entry.row, at, folder.start.folder);
            pass(*entry.row, at);
        }
    }
    m_slicedFolders.clear();
}

std::vector<DepthFirstStitch::SlicedEntry> DepthFirstStitch::mergedSlices(
    const EntryRun* slices) const
{
    std::size_t count = 0;
    for (auto* slice = slices; slice; slice = slice->otherSlices)
        count += slice->count;
    std::vector<SlicedEntry> entries;
    entries.reserve(count);
    // Names in huge folders mostly begin alike: only what follows tells them apart.
    const char* pattern = slices->names;
    std::size_t alike = std::strlen(pattern);
    for (auto* slice = slices; slice; slice = slice->otherSlices) {
        const char* name = slice->names;
        for (const auto& row : slice->entries()) {
            entries.push_back({.key = 0, .name = name, .row = &row});
            const auto differing = std::mismatch(pattern, pattern + alike, name).first;
            alike = static_cast<std::size_t>(differing - pattern);
            name += row.nameLength + 1;
        }
    }
    for (auto& entry : entries)
        entry.key = orderKey(entry.name + alike, entry.row->nameLength - alike);
    std::ranges::sort(entries, [](const SlicedEntry& a, const SlicedEntry& b) {
        return a.key != b.key ? a.key < b.key : std::strcmp(a.name, b.name) < 0;
    });
    return entries;
}

/// Each store takes one thread at a time; the places in the table do not overlap.
void DepthFirstStitch::inEveryStore(unsigned threads, void (DepthFirstStitch::*copy)(RecordStore&))
{
    std::atomic<std::size_t> next = 0;
    const auto copyNext = [&] {
        for (auto i = next++; i < m_stores.size(); i = next++)
            (this->*copy)(m_stores[i]);
    };
    std::vector<std::jthread> helpers;
    try {
        while (helpers.size() + 1 < threads)
            helpers.emplace_back(copyNext);
    } catch (const std::system_error&) {
        // Fewer threads do as well.
    }
    copyNext();
    helpers.clear();
    throwIfStopped();
}

void DepthFirstStitch::copyNamesOf(RecordStore& store)
{
    for (std::size_t i = 0; i < store.runs.chunkCount() && !m_stop.stop_requested(); ++i) {
        for (const auto& run : store.runs.chunk(i)) {
            store.names.releaseBefore(run.names);
            auto at = firstEntryOf(m_folders[run.folder]);
            const char* name = run.names;
            for (const auto& row : run.entries()) {
                copyName(row, name, at);
                name += row.nameLength + 1;
                pass(row, at);
            }
        }
    }
    store.names.releaseAll();
}

void DepthFirstStitch::copyFactsOf(RecordStore& store)
{
    for (std::size_t i = 0; i < store.runs.chunkCount() && !m_stop.stop_requested(); ++i) {
        for (const auto& run : store.runs.chunk(i)) {
            store.rows.releaseBefore(run.rows);
            const auto& folder = m_folders[run.folder];
            auto at = firstEntryOf(folder);
            for (const auto& row : run.entries()) {
                copyFacts(row, at, folder.start.folder);
                pass(row, at);
            }
        }
    }
    store.rows.releaseAll();
}

void DepthFirstStitch::copyName(const EntryRow& row, const char* name, const Place& at) const
{
    std::memcpy(m_names->bytes.data() + at.nameByte, name, row.nameLength + 1u);
}

void DepthFirstStitch::copyFacts(const EntryRow& row, const Place& at, std::uint32_t folder)
{
    m_columns.sizes[at.record] = row.size;
    m_columns.modifiedAt[at.record] = row.modifiedAt;
    m_columns.folders[at.record] = folder;
    m_columns.nameOffsets[at.record] = at.nameByte;
    m_columns.flags[at.record] = row.flags;
}

void DepthFirstStitch::throwIfStopped() const
{
    // A tree without entries is walked to its end all the same.
    const bool isEmpty = m_folders[0].extent.record == 0;
    if (!isEmpty && m_stop.stop_requested())
        throw Cancelled{};
}

} // namespace

RecordColumns stitchDepthFirst(const std::string& root, std::vector<RecordStore>& stores,
    std::uint32_t folderCount, unsigned threads, const std::stop_token& stop)
{
    return DepthFirstStitch(root, stores, folderCount, stop).stitch(threads);
}

} // namespace kestavon
