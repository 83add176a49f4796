#pragma once

#include "concurrency/processor_turns.h"
#include "duplicates/candidate_files.h"
#include "duplicates/duplicate_finder.h"
#include "duplicates/sha256_hex.h"
#include "platform/linux/file_descriptor.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// What the threads of one search share. Each candidate is worked on by one thread at a time.
class DuplicateSearch {
public:
    DuplicateSearch(std::shared_ptr<const RecordList> records, CandidateFiles candidates,
        std::function<void(const DuplicateProgress&)> progress, std::stop_token stop);

    CandidateFile& file(std::uint32_t i) { return m_candidates.files[i]; }
    std::vector<CandidateFile>& files() { return m_candidates.files; }
    bool isStopped() const { return m_stop.stop_requested(); }
    /// Held by whichever threads are not waiting for a disk.
    ProcessorTurns& turns() { return m_turns; }

    /// Opens the file by the first of its names that still leads to it, and forgets the names
    /// before. Gives no descriptor when none does; then the file has left the search.
    FileDescriptor open(CandidateFile& file);

    /// The same for a file that is read from its start to its end at once, without another look at
    /// it: the bytes say what it holds, and should they be another file's by now, what is known of
    /// it is older than that and shows it.
    FileDescriptor openToReadWhole(CandidateFile& file);

    /// The file's content has this digest.
    void settle(CandidateFile& file, const Sha256Digest& digest);

    /// The file is not what it was when it was looked at: its names are hashed one by one, at the
    /// end, as what they lead to then; until then it does not count as done, whatever `countDone`
    /// is told.
    void hashLater(CandidateFile& file);

    /// Hashes what was left for later. Several threads may call it.
    void hashLateNames();

    /// Leaves for later what may equal a file that was hashed late and was not compared with it;
    /// whether there is any. When every thread is done.
    bool hashPeersLater();

    /// The files of these sets are to be compared; before the threads begin.
    void expect(const std::vector<CandidateSet>& sets);

    /// Bytes of so many files that need no reading any more.
    void countDone(std::int64_t bytes, std::size_t files = 1);

    /// The groups of all that was settled, when every thread is done.
    std::shared_ptr<const DuplicateList> groups();

private:
    struct Settled {
        Sha256Digest digest{};
        DuplicateList::Member member;
    };
    struct LateName {
        std::uint32_t position = 0; ///< of the record
        std::int64_t bytes = 0; ///< that count as done with it
    };
    using Clock = std::chrono::steady_clock;

    std::optional<LateName> takeLateName();
    std::optional<FileDigest> hash(const std::string& path);
    void addDone(std::int64_t bytes);

    // Fixed at construction.
    std::shared_ptr<const RecordList> m_records;
    std::function<void(const DuplicateProgress&)> m_progress;
    std::stop_token m_stop;

    ProcessorTurns m_turns;
    std::int64_t m_bytesToDo = 0; // fixed before the threads begin
    CandidateFiles m_candidates;
    std::atomic<std::int64_t> m_bytesDone = 0;
    std::atomic<std::int64_t> m_mostReported = 0;
    std::atomic<Clock::rep> m_nextReport = 0;
    std::atomic<int> m_waitsLeft = 500; // for descriptors, 10 ms each

    std::mutex m_mutex;
    std::vector<Settled> m_settled; // guarded by m_mutex
    std::vector<LateName> m_lateNames; // guarded by m_mutex
    std::set<std::int64_t> m_lateSizes; // of what was hashed late, in bytes; guarded by m_mutex
};

} // namespace kestavon
