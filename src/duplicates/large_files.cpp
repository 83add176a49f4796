#include "duplicates/large_files.h"

#include "concurrency/thread_crew.h"
#include "duplicates/content_samples.h"
#include "duplicates/file_reading.h"
#include "duplicates/hashing_thread.h"
#include "duplicates/sha256.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <exception>
#include <functional>
#include <span>
#include <string_view>
#include <utility>

namespace kestavon {

namespace {

// Read of each file in turn. Two such pieces fit into a core's own cache.
constexpr std::size_t pieceBytes = 256 * 1024;

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
        for (auto* buffer : {&m_piece, &m_nextPiece, &m_other})
            buffer->resize(pieceBytes + 1); // One more byte shows that a file ends.

        m_unfinished.push_back(opened(set));
        askForStarts(m_unfinished.back());
        while (!m_unfinished.empty()) {
            auto comparison = std::move(m_unfinished.back());
            m_unfinished.pop_back();
            run(comparison, hashesBeside);
        }
    }

private:
    using Member = Comparison::Member;

    /// Waits, however a comparison ends, until its digest is no longer worked on.
    class HashingEnds {
    public:
        explicit HashingEnds(HashingThread& hashing)
            : m_hashing(hashing)
        {
        }
        ~HashingEnds()
        {
            try {
                m_hashing.finish();
            } catch (const std::exception&) { // Only what nobody needs any more can have failed.
            }
        }
        HashingEnds(const HashingEnds&) = delete;
        HashingEnds& operator=(const HashingEnds&) = delete;

    private:
        HashingThread& m_hashing;
    };

    /// A member that is not like the first one, and a hash of the piece in which it differs.
    struct Different {
        Member member;
        std::size_t hash;
    };

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
                countRest(comparison, 1);
        }
        return comparison;
    }

    /// Has the disk fetch the starts of all members at once, when the first one's is not in memory.
    static void askForStarts(Comparison& comparison)
    {
        auto& members = comparison.members;
        char byte = 0; // from behind what was sampled
        const auto bytes = std::min(comparison.size, readAheadBytes);
        if (members.empty()
            || readWithoutWaiting(members.front().content.file.get(), bytes / 2, {&byte, 1}) > 0)
            return;
        for (auto& member : members) {
            readAhead(member.content.file.get(), 0, bytes);
            member.content.askedUpTo = bytes;
        }
    }

    void run(Comparison& comparison, bool hashesBeside)
    {
        const HashingEnds hashingEnds(m_hashing);
        while (comparison.offset < comparison.size) {
            if (m_search.isStopped())
                return;
            const auto length = std::min<std::int64_t>(
                static_cast<std::int64_t>(pieceBytes), comparison.size - comparison.offset);
            const auto piece = std::span(m_piece).first(static_cast<std::size_t>(length));
            auto different = readAll(comparison, piece);
            if (!different.empty()) {
                m_hashing.finish();
                keepForLater(comparison, std::move(different));
            }
            if (!isNeeded(comparison.members, comparison.isComplete))
                return countRest(comparison, comparison.members.size());

            m_hashing.finish();
            if (hashesBeside)
                m_hashing.begin(comparison.sha256, piece);
            else
                comparison.sha256.update(piece);
            std::swap(m_piece, m_nextPiece);
            const auto before = countedUpTo(comparison.offset);
            comparison.offset += length;
            m_search.countDone(countedUpTo(comparison.offset) - before, comparison.members.size());
        }
        m_hashing.finish();
        const auto digest = comparison.sha256.finish();
        for (const auto& member : comparison.members)
            m_search.settle(m_search.file(member.candidate), digest);
    }

    /// Reads the next piece of every member: that of the first goes into `piece`, and the members
    /// that differ from it are taken out and returned. So are those that cannot be read, for good.
    std::vector<Different> readAll(Comparison& comparison, std::span<char> piece)
    {
        auto& members = comparison.members;
        while (!members.empty() && !isRead(members.front(), comparison, m_piece, piece.size()))
            members.erase(members.begin());
        std::vector<Member> equal;
        std::vector<Different> different;
        for (auto& member : members) {
            if (!equal.empty()) {
                if (!isRead(member, comparison, m_other, piece.size()))
                    continue;
                if (std::memcmp(piece.data(), m_other.data(), piece.size()) != 0) {
                    const std::string_view other(m_other.data(), piece.size());
                    different.push_back({.member = std::move(member),
                        .hash = std::hash<std::string_view>{}(other)});
                    continue;
                }
            }
            equal.push_back(std::move(member));
        }
        members = std::move(equal);
        return different;
    }

    /// Reads the member's next piece; when it cannot be, the member has left the search.
    bool isRead(
        Member& member, const Comparison& comparison, std::vector<char>& into, std::size_t bytes)
    {
        const bool isLast = comparison.offset + static_cast<std::int64_t>(bytes) == comparison.size;
        const auto result = readOnwards(member.content, comparison.offset,
            std::span(into).first(bytes + (isLast ? 1 : 0)), isLast);
        if (result == ReadResult::complete)
            return true;
        auto& candidate = m_search.file(member.candidate);
        if (result == ReadResult::failed)
            candidate.nameCount = 0;
        else
            m_search.hashLater(candidate);
        countRest(comparison, 1);
        return false;
    }

    /// Splits members that differ from the others by what they hold instead, so that many that all
    /// differ are not compared with each other one by one.
    void keepForLater(const Comparison& comparison, std::vector<Different> different)
    {
        std::ranges::sort(different, {}, &Different::hash);
        for (std::size_t begin = 0, end = 0; begin < different.size(); begin = end) {
            std::vector<Member> alike;
            for (; end < different.size() && different[end].hash == different[begin].hash; ++end)
                alike.push_back(std::move(different[end].member));
            if (!isNeeded(alike, comparison.isComplete)) {
                countRest(comparison, alike.size());
                continue;
            }
            m_unfinished.push_back({.members = std::move(alike),
                .size = comparison.size,
                .offset = comparison.offset,
                .isComplete = comparison.isComplete,
                .sha256 = comparison.sha256});
        }
    }

    /// Whether the members can still become part of a group.
    bool isNeeded(const std::vector<Member>& members, bool isComplete)
    {
        std::uint32_t names = 0;
        for (const auto& member : members)
            names += m_search.file(member.candidate).nameCount;
        return names > 1 || (names == 1 && !isComplete);
    }

    /// The bytes of each member that count as done when it was read up to `offset`.
    static std::int64_t countedUpTo(std::int64_t offset) { return std::max(offset, sampledBytes); }

    /// Counts so many members as done that need not be read any further.
    void countRest(const Comparison& comparison, std::size_t members)
    {
        m_search.countDone(comparison.size - countedUpTo(comparison.offset), members);
    }

    DuplicateSearch& m_search;
    std::vector<char> m_piece;
    std::vector<char> m_nextPiece;
    std::vector<char> m_other;
    std::vector<Comparison> m_unfinished;
    HashingThread m_hashing; // of the piece before, into its comparison's digest
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
    const auto order = std::make_shared<ReadingOrder>();
    order->sets = alikeBySamples(search, sets, openFilesPerThread(threads), threads, stop);
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
