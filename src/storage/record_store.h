#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

#include <sys/mman.h>

namespace kestavon {

/// Elements that are appended and never move, in chunks of memory straight from the system: growing
/// copies nothing, only what was written takes memory, and a released chunk is gone at once.
template <class T> class ChunkedStore {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    static constexpr std::size_t chunkBytes = std::size_t{1} << 20;

    ChunkedStore() = default;
    ChunkedStore(ChunkedStore&& other) noexcept
        : m_chunks(std::exchange(other.m_chunks, {}))
        , m_released(std::exchange(other.m_released, 0))
    {
    }
    ChunkedStore& operator=(ChunkedStore&&) = delete;
    ~ChunkedStore() { releaseAll(); }

    /// Room for `count` elements side by side (at most a sixteenth of a chunk), of which `append`
    /// keeps those that were written; null when the system has no memory left.
    T* reserve(std::size_t count)
    {
        if (m_chunks.empty() || capacity - m_chunks.back().used < count) {
            m_chunks.reserve(m_chunks.size() + 1);
            void* memory = ::mmap(nullptr, chunkBytes, PROT_READ | PROT_WRITE,
                MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
            if (memory == MAP_FAILED)
                return nullptr;
            m_chunks.push_back({.elements = static_cast<T*>(memory), .used = 0});
        }
        return m_chunks.back().elements + m_chunks.back().used;
    }

    void append(std::size_t count) { m_chunks.back().used += count; }

    std::size_t chunkCount() const { return m_chunks.size(); }
    std::span<T> chunk(std::size_t i) { return {m_chunks[i].elements, m_chunks[i].used}; }

    /// Gives back the chunks before the one that `element` lies in. Chunks keep their numbers.
    void releaseBefore(const T* element)
    {
        auto count = m_released;
        while (count < m_chunks.size()
            && (element < m_chunks[count].elements
                || element >= m_chunks[count].elements + capacity))
            ++count;
        if (count < m_chunks.size())
            release(count);
    }

    /// Gives everything back.
    void releaseAll()
    {
        release(m_chunks.size());
        m_chunks.clear();
        m_released = 0;
    }

private:
    static constexpr std::size_t capacity = chunkBytes / sizeof(T);

    struct Chunk {
        T* elements;
        std::size_t used;
    };

    void release(std::size_t count)
    {
        for (; m_released < count; ++m_released)
            ::munmap(m_chunks[m_released].elements, chunkBytes);
    }

    std::vector<Chunk> m_chunks;
    std::size_t m_released = 0;
};

/// One entry as the walk met it; its name stands in the store of names.
struct EntryRow {
    std::int64_t size;
    std::int64_t modifiedAt;
    std::uint32_t subfolder; ///< the number of the folder that was entered here; 0 for none
    std::uint16_t nameLength;
    std::uint8_t flags; ///< see `RecordFlags`
};

/// Entries of one folder that stand side by side, in byte order: all of them, or, of a folder too
/// large for one reading, a slice.
struct EntryRun {
    const EntryRow* rows;
    const char* names; ///< one after the other, each ended by a NUL
    EntryRun* otherSlices; ///< for whoever puts the slices together
    std::uint32_t folder;
    std::uint32_t count;
    std::uint32_t nameBytes;
    bool hasSubfolders;

    std::span<const EntryRow> entries() const { return {rows, count}; }
};

/// What one thread of a walk found.
struct RecordStore {
    ChunkedStore<EntryRow> rows;
    ChunkedStore<char> names;
    ChunkedStore<EntryRun> runs;
};

} // namespace kestavon
