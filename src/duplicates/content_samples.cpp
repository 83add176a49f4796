#include "duplicates/content_samples.h"

#include "concurrency/thread_crew.h"
#include "duplicates/batch_reader.h"
#include "duplicates/file_reading.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <functional>
#include <span>
#include <string_view>
#include <tuple>
#include <utility>

namespace kestavon {

namespace {

// Of either end of a file: formats differ at the start, appended data at the end.
constexpr std::size_t endBytes = sampledBytes / 2;
// Of the inside, where more files are alike at both ends than can be read side by side.
constexpr std::size_t innerBytes = 16 * 1024;
// Files that one thread samples at a time.
constexpr std::size_t sampledTogether = 64;

/// Which part of each file is sampled: its ends, or what begins after so many quarters of it.
struct SamplePlace {
    int quarters = 0;

    bool isEnds() const { return quarters == 0; }
    std::size_t bytes() const { return isEnds() ? 2 * endBytes : innerBytes; }
    /// The read that puts the sample, in one piece, at the start of `room`.
    PlannedRead readOf(std::uint32_t file, std::int64_t size, std::span<char> room) const
    {
        if (isEnds())
            return {.file = file,
                .bytes = room.first(endBytes),
                .end = room.subspan(endBytes, endBytes)};
        return {.file = file, .offset = size / 4 * quarters, .bytes = room.first(innerBytes)};
    }
};

void sampleFiles(DuplicateSearch& search, std::span<const std::uint32_t> files, SamplePlace place,
    std::vector<char>& buffer, std::size_t openFiles)
{
    ProcessorTurns::Turn turn(search.turns());
    const auto roomBytes = place.bytes() + 1;
    std::array<PlannedRead, sampledTogether> reads;
    const auto planned = std::span(reads).first(files.size());
    for (std::size_t i = 0; i < files.size(); ++i)
        planned[i] = place.readOf(files[i], search.file(files[i]).identity.size,
            std::span(buffer).subspan(i * roomBytes, roomBytes));
    readBatch(search, planned, openFiles, turn);
    for (const auto& read : planned) {
        if (read.isRead)
            search.file(read.file).sample
                = std::hash<std::string_view>{}(std::string_view(read.bytes.data(), place.bytes()));
    }
    if (place.isEnds())
        search.countDone(sampledBytes, files.size());
}

void takeSamples(const std::shared_ptr<DuplicateSearch>& search,
    const std::vector<CandidateSet>& sets, SamplePlace place, unsigned threads,
    const std::stop_token& stop)
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
    if (work->files.empty())
        return;
    runOnThreads(
        threads,
        [search, work, place, openFiles = openFilesPerThread(threads)] {
            std::vector<char> buffer(sampledTogether * (place.bytes() + 1));
            const auto files = std::span<const std::uint32_t>(work->files);
            for (auto begin = work->next.fetch_add(sampledTogether);
                 begin < files.size() && !search->isStopped();
                 begin = work->next.fetch_add(sampledTogether)) {
                const auto count = std::min(sampledTogether, files.size() - begin);
                sampleFiles(*search, files.subspan(begin, count), place, buffer, openFiles);
            }
        },
        stop);
}

/// The parts of a set that have equal samples. Counts what is left alone as done.
std::vector<CandidateSet> splitBySample(DuplicateSearch& search, const CandidateSet& set)
{
    auto& files = search.files();
    // Those that have left the search go to the end.
    const auto begin = files.begin() + set.begin;
    const auto gone = std::partition(begin, files.begin() + set.end,
        [](const CandidateFile& file) { return file.nameCount > 0; });
    std::ranges::sort(begin, gone, {}, [](const CandidateFile& file) {
        return std::tuple(file.sample, file.identity.inode); // in the order of the disk
    });
    auto parts = setsOf(files, set.begin, static_cast<std::uint32_t>(gone - files.begin()),
        [](const auto& a, const auto& b) { return a.sample == b.sample; });
    std::size_t filesLeft = 0;
    for (const auto& part : parts)
        filesLeft += part.size();
    search.countDone(files[set.begin].identity.size - sampledBytes, set.size() - filesLeft);
    return parts;
}

/// The parts of a set that is too large to be read side by side.
void cutUp(const CandidateSet& set, std::size_t mostFiles, std::vector<CandidateSet>& parts)
{
    const auto most = static_cast<std::uint32_t>(mostFiles);
    for (auto begin = set.begin; begin < set.end; begin += most)
        parts.push_back(
            {.begin = begin, .end = std::min(begin + most, set.end), .isComplete = false});
}

} // namespace

std::vector<CandidateSet> alikeBySamples(const std::shared_ptr<DuplicateSearch>& search,
    std::vector<CandidateSet> sets, std::size_t mostFiles, unsigned threads,
    const std::stop_token& stop)
{
    std::vector<CandidateSet> alike;
    for (const auto place : {SamplePlace{0}, SamplePlace{2}, SamplePlace{1}, SamplePlace{3}}) {
        takeSamples(search, sets, place, threads, stop);
        std::vector<CandidateSet> crowds;
        for (const auto& set : sets) {
            for (const auto& part : splitBySample(*search, set))
                (part.size() > mostFiles ? crowds : alike).push_back(part);
        }
        sets = std::move(crowds);
    }
    for (const auto& set : sets)
        cutUp(set, mostFiles, alike);
    return alike;
}

} // namespace kestavon
