#include "duplicates/small_files.h"

#include "concurrency/thread_crew.h"
#include "duplicates/batch_reader.h"
#include "duplicates/file_reading.h"
#include "duplicates/sha256.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <span>
#include <utility>

namespace kestavon {

namespace {

// What one thread reads at a time: about as much as a core's own cache holds.
constexpr std::size_t batchBytes = std::size_t{1} << 20;
constexpr std::size_t batchFiles = 256;

/// The sets that are read together.
struct Batch {
    std::vector<CandidateSet> sets;
    std::size_t bytes = 0;
    std::size_t files = 0;
};

/// Shares the sets out. One that is too large for a batch is cut up; its parts are hashed each by
/// itself, and the digests bring them together.
std::vector<Batch> batchesOf(DuplicateSearch& search, const std::vector<CandidateSet>& sets)
{
    std::vector<Batch> batches;
    for (const auto& set : sets) {
        // One more byte shows that the file ends where it says.
        const auto fileBytes = static_cast<std::size_t>(search.file(set.begin).identity.size) + 1;
        const auto most = static_cast<std::uint32_t>(
            std::clamp(batchBytes / fileBytes, std::size_t{1}, batchFiles));
        const bool isCut = set.size() > most;
        for (auto begin = set.begin; begin < set.end; begin += most) {
            const CandidateSet part{.begin = begin,
                .end = std::min(begin + most, set.end),
                .isComplete = set.isComplete && !isCut};
            const auto bytes = fileBytes * part.size();
            if (batches.empty() || batches.back().bytes + bytes > batchBytes
                || batches.back().files + part.size() > batchFiles)
                batches.emplace_back();
            batches.back().sets.push_back(part);
            batches.back().bytes += bytes;
            batches.back().files += part.size();
        }
    }
    return batches;
}

/// One thread's part of the work.
class Comparer {
public:
    Comparer(DuplicateSearch& search, std::size_t openFiles)
        : m_search(search)
        , m_openFiles(openFiles)
        , m_contents(batchBytes)
    {
    }

    void compare(const Batch& batch)
    {
        ProcessorTurns::Turn turn(m_search.turns());
        m_reads.clear();
        auto room = std::span(m_contents);
        for (const auto& set : batch.sets) {
            for (auto i = set.begin; i < set.end; ++i) {
                const auto size = static_cast<std::size_t>(m_search.file(i).identity.size);
                m_reads.push_back({.file = i, .bytes = room.first(size)});
                room = room.subspan(size + 1);
            }
        }
        readBatch(m_search, m_reads, m_openFiles, turn);
        if (m_search.isStopped())
            return;
        auto reads = std::span(m_reads);
        for (const auto& set : batch.sets) {
            m_search.countDone(m_search.file(set.begin).identity.size, set.size());
            findEqual(set, reads.first(set.size()));
            reads = reads.subspan(set.size());
        }
        settleEqual();
    }

private:
    /// Finds the equal ones among the read files of a set.
    void findEqual(const CandidateSet& set, std::span<PlannedRead> reads)
    {
        const auto unread = std::partition(
            reads.begin(), reads.end(), [](const PlannedRead& read) { return read.isRead; });
        reads = reads.first(static_cast<std::size_t>(unread - reads.begin()));
        const auto compare = [](const PlannedRead& a, const PlannedRead& b) {
            return std::memcmp(a.bytes.data(), b.bytes.data(), a.bytes.size());
        };
        std::ranges::sort(
            reads, [compare](const auto& a, const auto& b) { return compare(a, b) < 0; });
        while (!reads.empty()) {
            std::size_t count = 1;
            auto names = m_search.file(reads.front().file).nameCount;
            while (count < reads.size() && compare(reads.front(), reads[count]) == 0)
                names += m_search.file(reads[count++].file).nameCount;
            if (names > 1 || !set.isComplete)
                m_equal.push_back(reads.first(count));
            reads = reads.subspan(count);
        }
    }

    /// Hashes one of each that are equal, two at a time: neighbours are of about one length.
    void settleEqual()
    {
        for (std::size_t i = 0; i < m_equal.size(); i += 2) {
            const bool isPair = i + 1 < m_equal.size();
            if (isPair)
                Sha256::updateBoth(
                    m_sha256, contentOf(m_equal[i]), m_otherSha256, contentOf(m_equal[i + 1]));
            else
                m_sha256.update(contentOf(m_equal[i]));
            settle(m_equal[i], m_sha256.finish());
            if (isPair)
                settle(m_equal[i + 1], m_otherSha256.finish());
        }
        m_equal.clear();
    }

    static std::span<const char> contentOf(std::span<const PlannedRead> equal)
    {
        return equal.front().bytes;
    }

    void settle(std::span<const PlannedRead> equal, const Sha256Digest& digest)
    {
        for (const auto& read : equal)
            m_search.settle(m_search.file(read.file), digest);
    }

    DuplicateSearch& m_search;
    std::size_t m_openFiles;
    std::vector<char> m_contents;
    std::vector<PlannedRead> m_reads;
    std::vector<std::span<const PlannedRead>> m_equal; // of the batch
    Sha256 m_sha256;
    Sha256 m_otherSha256;
};

} // namespace

void compareSmallFiles(const std::shared_ptr<DuplicateSearch>& search,
    const std::vector<CandidateSet>& sets, unsigned threads, const std::stop_token& stop)
{
    struct Work {
        std::vector<Batch> batches;
        std::atomic<std::size_t> next = 0;
    };
    const auto work = std::make_shared<Work>();
    work->batches = batchesOf(*search, sets);
    if (work->batches.empty())
        return;
    runOnThreads(
        threads,
        [search, work, openFiles = openFilesPerThread(threads)] {
            Comparer comparer(*search, openFiles);
            for (auto i = work->next++; i < work->batches.size() && !search->isStopped();
                 i = work->next++)
                comparer.compare(work->batches[i]);
        },
        stop);
}

} // namespace kestavon
