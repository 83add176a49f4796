#include "duplicates/large_files.h"

#include "concurrency/thread_crew.h"
#include "duplicates/content_samples.h"
#include "duplicates/file_reading.h"
#include "duplicates/hashing_thread.h"
#include "duplicates/sha256.h"
#include "duplicates/sha256_pair.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <functional>
#include <optional>
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

/// Sets that wait to be read, the largest first. Shared by the threads.
class ReadingOrder {
public:
    ReadingOrder(std::vector<CandidateSet> sets, unsigned threads)
        : m_sets(std::move(sets))
        , m_threads(threads)
        , m_unfinished(m_sets.size())
    {
    }

    /// The next set; nothing when none is left.
    const CandidateSet* take()
    {
        const auto i = m_next++;
        return i < m_sets.size() ? &m_sets[i] : nullptr;
    }
    /// Whether a thread may take a second set without leaving another thread idle.
    bool isEnoughForAll() const { return m_next + m_threads <= m_sets.size(); }

    void add(std::size_t comparisons) { m_unfinished += comparisons; }
    void finishOne() { --m_unfinished; }
    /// Whether there are threads to spare, so that each that reads can have another to hash.
    bool hasThreadsToSpare() const { return 2 * m_unfinished <= m_threads; }

private:
    std::vector<CandidateSet> m_sets;
    unsigned m_threads;
    std::atomic<std::size_t> m_next = 0;
    std::atomic<std::size_t> m_unfinished;
};

/// One thread's part of reading files side by side. Where the processor hashes two streams at once
/// it works on two sets in turns.
class Comparer {
public:
    Comparer(DuplicateSearch& search, ReadingOrder& order)
        : m_search(search)
        , m_order(order)
        , m_turn(search.turns())
    {
    }

    /// Compares files to their ends until no set is left.
    void compareAll()
    {
        for (refill(); isRunning() && !m_search.isStopped(); refill()) {
            readNextPieces();
            hashPieces();
            for (auto& lane : m_lanes) {
                if (lane.comparison)
                    advance(lane);
            }
        }
    }

private:
    using Member = Comparison::Member;

    /// A comparison that is going on, and what was read for it last.
    struct Lane {
        std::optional<Comparison> comparison;
        std::vector<char> buffer;
        std::span<const char> piece; ///< of the buffer
    };

    /// A member that is not like the first one, and a hash of the piece in which it differs.
    struct Different {
        Member member;
        std::size_t hash;
    };

    bool isRunning() const { return m_lanes[0].comparison || m_lanes[1].comparison; }

    void refill()
    {
        for (auto& lane : m_lanes) {
            const bool isSecond = isRunning();
            if (lane.comparison || (isSecond && !hasSha256Pairs()))
                continue;
            if (!m_unfinished.empty()) {
                lane.comparison = std::move(m_unfinished.back());
                m_unfinished.pop_back();
            } else if (!isSecond || m_order.isEnoughForAll()) {
                if (const auto* set = m_order.take()) {
                    lane.comparison = opened(*set);
                    askForStarts(*lane.comparison);
                }
            }
        }
    }

    void readNextPieces()
    {
        for (auto& lane : m_lanes) {
            if (lane.comparison && !readNext(*lane.comparison, lane))
                end(lane);
        }
    }

    /// Hashing is the slowest part, and one stream of it cannot be shared out: when there are
    /// threads to spare, one does nothing else.
    void hashPieces()
    {
        m_hashing.finish();
        auto& [first, second] = m_lanes;
        if (first.comparison && second.comparison)
            return Sha256::updateBoth(
                first.comparison->sha256, first.piece, second.comparison->sha256, second.piece);
        for (auto& lane : m_lanes) {
            if (!lane.comparison)
                continue;
            if (m_order.hasThreadsToSpare()) {
                m_hashing.begin(lane.comparison->sha256, lane.piece);
                std::swap(lane.buffer, m_hashedBuffer);
            } else {
                lane.comparison->sha256.update(lane.piece);
            }
        }
    }

    void advance(Lane& lane)
    {
        auto& comparison = *lane.comparison;
        const auto before = countedUpTo(comparison.offset);
        comparison.offset += static_cast<std::int64_t>(lane.piece.size());
        m_search.countDone(countedUpTo(comparison.offset) - before, comparison.members.size());
        if (comparison.offset < comparison.size)
            return;
        m_hashing.finish();
        const auto digest = comparison.sha256.finish();
        for (const auto& member : comparison.members)
            m_search.settle(m_search.file(member.candidate), digest);
        end(lane);
    }

    void end(Lane& lane)
    {
        m_hashing.finish();
        lane.comparison.reset();
        m_order.finishOne();
    }

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

    /// Reads the next piece of every member, that of the first into the lane. What differs from it
    /// becomes a comparison of its own. Gives false when the others cannot be part of a group.
    bool readNext(Comparison& comparison, Lane& lane)
    {
        for (auto* buffer : {&lane.buffer, &m_other})
            buffer->resize(pieceBytes + 1); // One more byte shows that a file ends.
        const auto length = std::min<std::int64_t>(
            static_cast<std::int64_t>(pieceBytes), comparison.size - comparison.offset);
        const auto piece = std::span(lane.buffer).first(static_cast<std::size_t>(length));
        if (auto different = readAll(comparison, lane.buffer, piece); !different.empty()) {
            m_hashing.finish(); // It may be at the digest that they share.
            keepForLater(comparison, std::move(different));
        }
        lane.piece = piece;
        if (isNeeded(comparison.members, comparison.isComplete))
            return true;
        countRest(comparison, comparison.members.size());
        return false;
    }

    /// Reads the next piece of every member: that of the first goes into `piece`, at the start of
    /// `buffer`, and the members that differ from it are taken out and returned. So are those that
    /// cannot be read, for good.
    std::vector<Different> readAll(
        Comparison& comparison, std::vector<char>& buffer, std::span<const char> piece)
    {
        auto& members = comparison.members;
        while (!members.empty() && !isRead(members.front(), comparison, buffer, piece.size()))
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
            std::span(into).first(bytes + (isLast ? 1 : 0)), isLast, m_turn);
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
            m_order.add(1);
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
    ReadingOrder& m_order;
    ProcessorTurns::Turn m_turn;
    std::array<Lane, 2> m_lanes;
    std::vector<char> m_other; // the piece that is compared
    std::vector<char> m_hashedBuffer; // holds the piece that the hashing thread is at
    std::vector<Comparison> m_unfinished;
    HashingThread m_hashing; // ends before what it uses
};

} // namespace

void compareLargeFiles(const std::shared_ptr<DuplicateSearch>& search,
    const std::vector<CandidateSet>& sets, unsigned threads, const std::stop_token& stop)
{
    if (sets.empty())
        return;
    const auto openFiles = openFilesPerThread(2 * threads); // each works on up to two sets
    auto alike = alikeBySamples(search, sets, openFiles, threads, stop);
    if (alike.empty())
        return;
    std::ranges::sort(alike, std::greater(), [&search](const CandidateSet& set) {
        return static_cast<double>(search->file(set.begin).identity.size) * set.size();
    });
    const auto order = std::make_shared<ReadingOrder>(std::move(alike), threads);
    runOnThreads(
        threads, [search, order] { Comparer(*search, *order).compareAll(); }, stop);
}

} // namespace kestavon
