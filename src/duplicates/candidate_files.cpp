#include "duplicates/candidate_files.h"

#include "concurrency/thread_crew.h"
#include "duplicates/file_reading.h"

#include <algorithm>
#include <atomic>
#include <numeric>
#include <optional>
#include <tuple>

#include <fcntl.h>

namespace kestavon {

namespace {

/// What the looking threads share.
struct Survey {
    // Positions that one thread takes at a time; most lie in a few folders.
    static constexpr std::size_t share = 512;

    std::shared_ptr<const RecordList> records;
    std::vector<std::uint32_t> positions;
    std::vector<std::optional<LookedAtFile>> looks; ///< one for each position
    std::stop_token stop;
    std::atomic<std::size_t> next = 0;

    void work()
    {
        for (;;) {
            const auto begin = next.fetch_add(share);
            if (begin >= positions.size() || stop.stop_requested())
                return;
            lookAt(begin, std::min(begin + share, positions.size()));
        }
    }

    void lookAt(std::size_t begin, std::size_t end)
    {
        FileDescriptor folder;
        std::optional<std::uint32_t> opened;
        for (auto i = begin; i < end && !stop.stop_requested(); ++i) {
            const auto position = positions[i];
            if (opened != records->folderOf(position)) {
                opened = records->folderOf(position);
                folder = openFolderToLookAt(records->folderPath(*opened));
            }
            // The name ends with a NUL. Without descriptors to spare, only the path is left.
            looks[i] = folder ? lookAtRegularFile(folder.get(), records->name(position).data())
                              : lookAtRegularFile(AT_FDCWD, records->path(position).c_str());
        }
    }
};

} // namespace

std::vector<std::uint32_t> sharingTheirSize(
    const RecordList& records, const std::vector<bool>& isLeftOut)
{
    struct Sized {
        std::int64_t size;
        std::uint32_t position;
    };
    std::vector<Sized> files;
    for (std::uint32_t i = 0; i < records.size(); ++i) {
        if (!records.isDirectory(i) && records.fileSize(i) > 0 && !isLeftOut[records.folderOf(i)])
            files.push_back({.size = records.fileSize(i), .position = i});
    }
    std::ranges::sort(files, {}, &Sized::size);

    std::vector<std::uint32_t> positions;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const bool likePrevious = i > 0 && files[i - 1].size == files[i].size;
        const bool likeNext = i + 1 < files.size() && files[i + 1].size == files[i].size;
        if (likePrevious || likeNext)
            positions.push_back(files[i].position);
    }
    std::ranges::sort(positions);
    return positions;
}

CandidateFiles lookAtCandidates(std::shared_ptr<const RecordList> records,
    std::vector<std::uint32_t> positions, unsigned threads, const std::stop_token& stop)
{
    const auto survey = std::make_shared<Survey>();
    survey->records = std::move(records);
    survey->positions = std::move(positions);
    survey->looks.resize(survey->positions.size());
    survey->stop = stop;
    runOnThreads(
        threads, [survey] { survey->work(); }, stop);

    // Hard links of one inode come to stand side by side. The order of the inodes is, roughly, that
    // of the contents on the disk.
    const auto& looks = survey->looks;
    std::vector<std::uint32_t> order;
    order.reserve(looks.size());
    for (std::uint32_t i = 0; i < looks.size(); ++i) {
        if (looks[i])
            order.push_back(i);
    }
    const auto keyOf = [&looks](std::uint32_t i) {
        const auto& identity = looks[i]->identity;
        return std::tuple(identity.size, identity.device, identity.inode, i);
    };
    std::ranges::sort(order, {}, keyOf);

    CandidateFiles candidates;
    candidates.names.reserve(order.size());
    for (const auto i : order) {
        // Some file systems give several files one number, and a number is given again when its
        // file is gone: only what says that it has several names is believed to be one file.
        const auto& look = *looks[i];
        if (candidates.files.empty() || !look.hasSeveralNames
            || candidates.files.back().identity != look.identity)
            candidates.files.push_back({.identity = look.identity,
                .firstName = static_cast<std::uint32_t>(candidates.names.size())});
        ++candidates.files.back().nameCount;
        candidates.names.push_back(survey->positions[i]);
    }
    return candidates;
}

} // namespace kestavon
