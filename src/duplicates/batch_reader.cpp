#include "duplicates/batch_reader.h"

#include "duplicates/file_reading.h"

#include <utility>
#include <vector>

namespace kestavon {

namespace {

struct Waiting {
    FileDescriptor file;
    PlannedRead* read;
};

std::int64_t endOffset(const CandidateFile& file, const PlannedRead& read)
{
    return file.identity.size - static_cast<std::int64_t>(read.end.size());
}

void finish(DuplicateSearch& search, const Waiting& waiting)
{
    auto& read = *waiting.read;
    auto& candidate = search.file(read.file);
    auto result = readPiece(waiting.file.get(), 0, read.start);
    if (result == ReadResult::complete && !read.end.empty())
        result = readPiece(waiting.file.get(), endOffset(candidate, read), read.end);
    switch (result) {
    case ReadResult::complete: read.isRead = true; break;
    case ReadResult::shorter: search.hashLater(candidate); break;
    case ReadResult::failed: candidate.nameCount = 0; break;
    }
}

} // namespace

void readBatch(DuplicateSearch& search, std::span<PlannedRead> reads, std::size_t openFiles)
{
    std::vector<Waiting> waiting;
    const auto finishWaiting = [&search, &waiting] {
        for (const auto& file : waiting) {
            if (search.isStopped())
                return;
            finish(search, file);
        }
        waiting.clear();
    };
    for (auto& read : reads) {
        if (search.isStopped())
            return;
        auto& candidate = search.file(read.file);
        auto file = search.open(candidate);
        if (!file)
            continue;
        const auto offset = endOffset(candidate, read);
        if (readWithoutWaiting(file.get(), 0, read.start) == read.start.size()
            && (read.end.empty()
                || readWithoutWaiting(file.get(), offset, read.end) == read.end.size())) {
            read.isRead = true;
            continue;
        }
        readAhead(file.get(), 0, read.start.size());
        if (!read.end.empty())
            readAhead(file.get(), offset, read.end.size());
        waiting.push_back({.file = std::move(file), .read = &read});
        if (waiting.size() >= openFiles)
            finishWaiting();
    }
    finishWaiting();
}

} // namespace kestavon
