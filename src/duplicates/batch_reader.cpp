#include "duplicates/batch_reader.h"

#include "duplicates/file_reading.h"

#include <array>
#include <deque>
#include <utility>

namespace kestavon {

namespace {

struct Waiting {
    FileDescriptor file;
    PlannedRead* read;
};

struct Piece {
    std::int64_t offset;
    std::span<char> bytes;
    bool isLast; ///< it reaches the end of the file
};

std::array<Piece, 2> piecesOf(const PlannedRead& read, std::int64_t fileSize)
{
    const auto piece = [fileSize](std::int64_t offset, std::span<char> bytes) {
        return Piece{.offset = offset,
            .bytes = bytes,
            .isLast = offset + static_cast<std::int64_t>(bytes.size()) == fileSize};
    };
    return {piece(read.offset, read.bytes),
        piece(fileSize - static_cast<std::int64_t>(read.end.size()), read.end)};
}

/// The piece, and behind the last one the room for one more byte.
std::span<char> roomOf(const Piece& piece)
{
    return {piece.bytes.data(), piece.bytes.size() + (piece.isLast ? 1 : 0)};
}

ReadResult readFromMemory(int file, const Piece& piece)
{
    const auto count = readWithoutWaiting(file, piece.offset, roomOf(piece));
    if (count == piece.bytes.size())
        return ReadResult::complete;
    return count < piece.bytes.size() ? ReadResult::shorter : ReadResult::longer;
}

ReadResult readFromDisk(int file, const Piece& piece)
{
    return piece.isLast ? readLastPiece(file, piece.offset, roomOf(piece))
                        : readPiece(file, piece.offset, piece.bytes);
}

/// Reads both pieces with `readOne`; the first that is not complete is the result.
template <class ReadOne>
ReadResult readBoth(int file, const std::array<Piece, 2>& pieces, ReadOne readOne)
{
    for (const auto& piece : pieces) {
        if (piece.bytes.empty())
            continue;
        const auto result = readOne(file, piece);
        if (result != ReadResult::complete)
            return result;
    }
    return ReadResult::complete;
}

void note(ReadResult result, PlannedRead& read, DuplicateSearch& search)
{
    auto& candidate = search.file(read.file);
    switch (result) {
    case ReadResult::complete: read.isRead = true; break;
    case ReadResult::shorter:
    case ReadResult::longer: search.hashLater(candidate); break;
    case ReadResult::failed: candidate.nameCount = 0; break;
    }
}

void finish(DuplicateSearch& search, const Waiting& waiting, ProcessorTurns::Turn& turn)
{
    const auto size = search.file(waiting.read->file).identity.size;
    const auto pieces = piecesOf(*waiting.read, size);
    const auto result = turn.whileWaiting(
        [&waiting, &pieces] { return readBoth(waiting.file.get(), pieces, readFromDisk); });
    note(result, *waiting.read, search);
}

} // namespace

void readBatch(DuplicateSearch& search, std::span<PlannedRead> reads, std::size_t openFiles,
    ProcessorTurns::Turn& turn)
{
    std::deque<Waiting> waiting; // the disk works on all of them at once
    const auto finishOldest = [&search, &waiting, &turn] {
        finish(search, waiting.front(), turn);
        waiting.pop_front();
    };
    for (auto& read : reads) {
        if (search.isStopped())
            return;
        auto& candidate = search.file(read.file);
        const bool isWhole
            = static_cast<std::int64_t>(read.bytes.size()) == candidate.identity.size;
        auto file = isWhole ? search.openToReadWhole(candidate) : search.open(candidate);
        if (!file)
            continue;
        const auto pieces = piecesOf(read, candidate.identity.size);
        const auto result = readBoth(file.get(), pieces, readFromMemory);
        if (result != ReadResult::shorter) {
            note(result, read, search);
            continue;
        }
        for (const auto& piece : pieces)
            readAhead(file.get(), piece.offset, static_cast<std::int64_t>(piece.bytes.size()));
        waiting.push_back({.file = std::move(file), .read = &read});
        if (waiting.size() >= openFiles)
            finishOldest();
    }
    while (!waiting.empty() && !search.isStopped())
        finishOldest();
}

} // namespace kestavon
