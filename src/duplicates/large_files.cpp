#include "duplicates/large_files.h"

#include "concurrency/thread_crew.h"
#include "duplicates/batch_reader.h"
#include "duplicates/file_reading.h"
#include "duplicates/sha256.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <functional>
#include <future>
#include <span>
#include <string_view>
#include <utility>

namespace kestavon {

namespace {

// Of either end of a file: formats differ at the start, appended data at the end.
constexpr std::size_t sampleBytes = 4096;
// Files that one thread samples at a time.
constexpr std::size_t sampledTogether = 64;

// Read of each file in turn. Two such pieces fit into a core's own cache.
constexpr std::size_t pieceBytes = 256 * 1024;
// The same while another thread hashes: starting it must cost little beside the hashing.
constexpr std::size_t largePieceBytes = 1024 * 1024;

void sampleFiles(DuplicateSearch& search, std::span<const std::uint32_t> files,
    std::vector<char>& buffer, std::size_t openFiles)
{
    std::array<PlannedRead, sampledTogether> reads;
    auto room = std::span(buffer);
    for (std::size_t i = 0; i < files.size(); ++i) {
        reads[i] = {.file = files[i],
            .start = room.first(sampleBytes),
            .end = room.subspan(sampleBytes, sampleBytes)};
        room = room.subspan(2 * sampleBytes);
    }
    const auto planned = std::span(reads).first(files.size());
    readBatch(search, planned, openFiles);
    for (const auto& read : planned) {
        if (read.isRead) // start and end lie side by side
            search.file(read.file).sample = std::hash<std::string_view>{}(
                std::string_view(read.start.data(), 2 * sampleBytes));
    }
}

void takeSamples(const std::shared_ptr<DuplicateSearch>& search,
    const std::vector<CandidateSet>& sets, unsigned threads, const std::stop_token& stop)
{
    struct Work {
        std::vector<std::uint32_t> files;
        std::atomic<std::size_t> next = 0;
    };
    const auto work = std::make_shared<Work>();
    for (const auto& set : sets) {
        for (auto i = set.begin; i < set.end; ++i)
            work->files.push_back(i);
    }
    runOnThreads(
        threads,
        [search, work, openFiles = openFilesPerThread(threads)] {
            std::vector<char> buffer(sampledTogether * 2 * sampleBytes);
            const auto files = std::span<const std::uint32_t>(work->files);
            for (auto begin = work->next.fetch_add(sampledTogether);
                 begin < files.size() && !search->isStopped();
                 begin = work->next.fetch_add(sampledTogether)) {
                const auto count = std::min(sampledTogether, files.size() - begin);
                sampleFiles(*search, files.subspan(begin, count), buffer, openFiles);
            }
        },
        stop);
}

/// The sets of files that are alike by their samples, none larger than `mostFiles`. Reorders the
/// files within `sets`.
std::vector<CandidateSet> alikeBySample(
    DuplicateSearch& search, const std::vector<CandidateSet>& sets, std::size_t mostFiles)
{
    auto& files = search.files();
    std::vector<CandidateSet> alike;
    for (const auto& set : sets) {
        // Those that have left the search go to the end.
        const auto begin = files.begin() + set.begin;
        const auto gone = std::partition(begin, files.begin() + set.end,
            [](const CandidateFile& file) { return file.nameCount > 0; });
        const auto end = static_cast<std::uint32_t>(gone - files.begin());
        std::ranges::sort(begin, gone, {}, &CandidateFile::sample);
        const auto found = setsOf(files, set.begin, end,
            [](const auto& a, const auto& b) { return a.sample == b.sample; });
        std::int64_t filesLeft = 0;
        for (const auto& part : found) {
            filesLeft += part.size();
            const bool isCut = part.size() > mostFiles;
            for (auto first = part.begin; first < part.end;
                 first += static_cast<std::uint32_t>(mostFiles)) {
                const auto next = first + static_cast<std::uint32_t>(mostFiles);
                alike.push_back(
                    {.begin = first, .end = std::min(next, part.end), .isComplete = !isCut});
            }
        }
        search.countDone((set.size() - filesLeft) * files[set.begin].identity.size);
    }
    return alike;
}

/// Open files that have been equal so far.
struct Comparison {
    struct Member {
        FileReadOnwards content;
        std::uint32_t candidate;
    };

    std::vector<Member> members;
    std::int64_t size = 0; ///< of each, in bytes
    std::int64_t offset = 0; ///< how far they have been equal
    bool isComplete = true; ///< see `CandidateSet`
    Sha256 sha256 = {}; ///< of what lies before the offset
};

/// One thread's part of reading files side by side.
class Comparer {
public:
    explicit Comparer(DuplicateSearch& search)
        : m_search(search)
    {
    }

    /// Compares the files of a set to their ends; with `hashesBeside` another thread does the
    /// hashing.
    void compare(const CandidateSet& set, bool hashesBeside)
    {
        m_pieceBytes = hashesBeside ? largePieceBytes : pieceBytes;
        for (auto* buffer : {&m_piece, &m_nextPiece, &m_other})
            buffer->resize(m_pieceBytes);

        m_unfinished.push_back(opened(set));
        while (!m_unfinished.empty()) {
            auto comparison = std::move(m_unfinished.back());
            m_unfinished.pop_back();
            run(comparison, hashesBeside);
        }
    }

private:
    using Member = Comparison::Member;

    Comparison opened(const CandidateSet& set)
    {
        Comparison comparison;
        comparison.size = m_search.file(set.begin).identity.size;
        comparison.isComplete = set.isComplete;
        for (auto i = set.begin; i < set.end; ++i) {
            if (auto file = m_search.open(m_search.file(i)))
                comparison.members.push_back(
                    {.content = {.file = std::move(file)}, .candidate = i});
            else
                m_search.countDone(comparison.size);
        }
        return comparison;
    }

    void run(Comparison& comparison, bool hashesBeside)
    {
        std::future<void> hashing; // of the piece before, into the comparison's digest
        const auto finishHashing = [&hashing] {
            if (hashing.valid())
                hashing.get();
        };
        while (comparison.offset < comparison.size) {
            if (m_search.isStopped())
                return;
            const auto length = std::min<std::int64_t>(
                static_cast<std::int64_t>(m_pieceBytes), comparison.size - comparison.offset);
            const auto piece = std::span(m_piece).first(static_cast<std::size_t>(length));
            auto different = readAll(comparison, piece);
            if (isNeeded(different, comparison.isComplete)) {
                finishHashing();
                m_unfinished.push_back({.members = std::move(different),
                    .size = comparison.size,
                    .offset = comparison.offset,
                    .isComplete = comparison.isComplete,
                    .sha256 = comparison.sha256});
            } else {
                countDone(different.size(), comparison.size - comparison.offset);
            }
            if (!isNeeded(comparison.members, comparison.isComplete))
                return countDone(comparison.members.size(), comparison.size - comparison.offset);

            finishHashing();
            if (hashesBeside)
                hashing = std::async(std::launch::async | std::launch::deferred,
                    [&sha256 = comparison.sha256, piece] { sha256.update(piece); });
            else
                comparison.sha256.update(piece);
            std::swap(m_piece, m_nextPiece);
            comparison.offset += length;
            countDone(comparison.members.size(), length);
        }
        finishHashing();
        const auto digest = comparison.sha256.finish();
        for (const auto& member : comparison.members)
            m_search.settle(m_search.file(member.candidate), digest);
    }

    /// Reads the next piece of every member: that of the first goes into `piece`, and the members
    /// that differ from it are taken out and returned. So are those that cannot be read, for good.
    std::vector<Member> readAll(Comparison& comparison, std::span<char> piece)
    {
        auto& members = comparison.members;
        while (!members.empty() && !isRead(members.front(), comparison, piece))
            members.erase(members.begin());
        std::vector<Member> equal;
        std::vector<Member> different;
        for (auto& member : members) {
            if (!equal.empty()) {
                const auto other = std::span(m_other).first(piece.size());
                if (!isRead(member, comparison, other))
                    continue;
                if (std::memcmp(piece.data(), other.data(), piece.size()) != 0) {
                    different.push_back(std::move(member));
                    continue;
                }
            }
            equal.push_back(std::move(member));
        }
        members = std::move(equal);
        return different;
    }

    /// Reads the member's next piece; when it cannot be, the member has left the search.
    bool isRead(Member& member, const Comparison& comparison, std::span<char> into)
    {
        const auto result = readOnwards(member.content, comparison.offset, into);
        if (result == ReadResult::complete)
            return true;
        if (result == ReadResult::shorter)
            m_search.hashLater(m_search.file(member.candidate));
        countDone(1, comparison.size - comparison.offset);
        return false;
    }

    /// Whether the members can still become part of a group.
    bool isNeeded(const std::vector<Member>& members, bool isComplete)
    {
        std::uint32_t names = 0;
        for (const auto& member : members)
            names += m_search.file(member.candidate).nameCount;
        return names > 1 || (names == 1 && !isComplete);
    }

    void countDone(std::size_t files, std::int64_t bytes)
    {
        m_search.countDone(static_cast<std::int64_t>(files) * bytes);
    }

    DuplicateSearch& m_search;
    std::size_t m_pieceBytes = pieceBytes;
    std::vector<char> m_piece;
    std::vector<char> m_nextPiece;
    std::vector<char> m_other;
    std::vector<Comparison> m_unfinished;
};

/// Sets that wait to be read, the largest first.
struct ReadingOrder {
    std::vector<CandidateSet> sets;
    std::atomic<std::size_t> next = 0;
    std::atomic<std::size_t> unfinished = 0;
};

} // namespace

void compareLargeFiles(const std::shared_ptr<DuplicateSearch>& search,
    const std::vector<CandidateSet>& sets, unsigned threads, const std::stop_token& stop)
{
    if (sets.empty())
        return;
    takeSamples(search, sets, threads, stop);
    const auto order = std::make_shared<ReadingOrder>();
    order->sets = alikeBySample(*search, sets, openFilesPerThread(threads));
    if (order->sets.empty())
        return;
    std::ranges::sort(order->sets, std::greater(), [&search](const CandidateSet& set) {
        return static_cast<double>(search->file(set.begin).identity.size) * set.size();
    });
    order->unfinished = order->sets.size();
    runOnThreads(
        threads,
        [search, order, threads] {
            Comparer comparer(*search);
            for (auto i = order->next++; i < order->sets.size() && !search->isStopped();
                 i = order->next++) {
                // Hashing is the slowest part, and one stream of it cannot be shared out: when
                // there are threads to spare, one does nothing else.
                comparer.compare(order->sets[i], 2 * order->unfinished <= threads);
                --order->unfinished;
            }
        },
        stop);
}

} // namespace kestavon
