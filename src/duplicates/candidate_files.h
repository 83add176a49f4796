#pragma once

#include "core/domain/file_identity.h"
#include "core/domain/record_list.h"

#include <cstdint>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// A file on the disk that may have duplicates, and the records that name it: more than one when it
/// has several hard links.
struct CandidateFile {
    FileIdentity identity; ///< as it was last looked at
    std::uint32_t firstName = 0; ///< in `CandidateFiles::names`
    std::uint32_t nameCount = 0;
    std::uint64_t sample = 0; ///< of the content; equal contents have equal samples
    bool isSettled = false; ///< its digest is known
};

/// What is to be compared.
struct CandidateFiles {
    std::vector<std::uint32_t> names; ///< positions of records, each file's side by side, ascending
    std::vector<CandidateFile> files; ///< by present size, and then in the order of the disk
};

/// Adjacent candidates that may have the same content.
struct CandidateSet {
    std::uint32_t begin = 0; ///< in `CandidateFiles::files`
    std::uint32_t end = 0;
    /// Whether every file that could equal one of these is here. When not, each has to be hashed,
    /// so that the digests tell.
    bool isComplete = true;

    std::uint32_t size() const { return end - begin; }
};

/// The positions, ascending, of the records that share their size, which is not 0, with another.
/// Folders do not count, nor does what lies in those marked in `isLeftOut`, by their numbers.
std::vector<std::uint32_t> sharingTheirSize(
    const RecordList& records, const std::vector<bool>& isLeftOut);

/// Looks at the records at `positions` and gives the files they name, with several threads. What is
/// gone, or no regular file, is left out. Throws `Cancelled`.
CandidateFiles lookAtCandidates(std::shared_ptr<const RecordList> records,
    std::vector<std::uint32_t> positions, unsigned threads, const std::stop_token& stop);

/// The runs of files between `begin` and `end` that `same` holds together, but for those that hold
/// one record only: nothing can equal it. `same` is asked of a run's first file and another.
template <class Same>
std::vector<CandidateSet> setsOf(
    const std::vector<CandidateFile>& files, std::uint32_t begin, std::uint32_t end, Same same)
{
    std::vector<CandidateSet> sets;
    while (begin < end) {
        auto next = begin + 1;
        while (next < end && same(files[begin], files[next]))
            ++next;
        if (next - begin > 1 || files[begin].nameCount > 1)
            sets.push_back({.begin = begin, .end = next});
        begin = next;
    }
    return sets;
}

} // namespace kestavon
