#include "platform/linux/removal/file_copy.h"

#include "platform/linux/removal/retry.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace kestavon {

namespace {

constexpr std::size_t bufferBytes = 512 * 1024;
/// What is copied starts on its way to the disk in pieces of so many bytes, while more is read.
constexpr std::int64_t writtenOutBytes = 8 * 1024 * 1024;
constexpr std::int64_t kernelCopyBytes = 16 * 1024 * 1024; ///< between two looks at the stop token
/// Of one file's holes so many bytes are read to see whether they are holes: file systems have been
/// known to tell of holes where data had not reached the disk yet. What is larger than that is
/// mostly hole, and nobody waits for terabytes of nothing.
constexpr std::int64_t doubtedHoleBytes = std::int64_t{4} * 1024 * 1024 * 1024;

int writeAll(int target, const char* bytes, std::size_t count, std::int64_t at)
{
    while (count > 0) {
        const auto written = retrying([&] { return ::pwrite(target, bytes, count, at); });
        if (written < 0)
            return errno;
        if (written == 0)
            return EIO;
        bytes += written;
        at += written;
        count -= static_cast<std::size_t>(written);
    }
    return 0;
}

bool isZero(const char* bytes, std::size_t count)
{
    return count == 0 || (bytes[0] == 0 && std::memcmp(bytes, bytes + 1, count - 1) == 0);
}

/// Whether the file ends where it says: some claim a size that they do not have.
int checkEnd(int source, std::int64_t size)
{
    char byte = 0;
    const auto got = retrying([&] { return ::pread(source, &byte, 1, size); });
    if (got < 0)
        return errno;
    return got == 0 ? 0 : ESTALE;
}

} // namespace

ContentCopier::ContentCopier(Progress progress)
    : m_progress(std::move(progress))
{
}

int ContentCopier::copy(int source, int target, const EntryStatus& status)
{
    const auto size = status.size;
    const bool isSparse = status.allocated < size;
    if (isSparse && retrying([&] { return ::ftruncate(target, size); }) < 0)
        return errno;
    auto doubted = doubtedHoleBytes;
    for (std::int64_t at = 0; at < size;) {
        auto end = size;
        if (isSparse) {
            auto data = std::min<std::int64_t>(::lseek(source, at, SEEK_DATA), size);
            if (data < 0 && errno == ENXIO)
                data = size; // Nothing but a hole up to the end.
            if (data > at) {
                const auto hole = std::min(data - at, doubted);
                if (const int error = copyRange(source, target, at, at + hole, Bytes::zeroExpected))
                    return error;
                doubted -= hole;
                at += hole;
                if (at < data && !m_progress(data - at))
                    return ECANCELED;
                at = data;
                continue;
            }
            const auto hole = data < 0 ? -1 : ::lseek(source, at, SEEK_HOLE);
            if (hole > at) // Where holes cannot be asked for, all of it is data.
                end = std::min<std::int64_t>(hole, size);
        }
        if (const int error = copyRange(source, target, at, end, Bytes::data))
            return error;
        at = end;
    }
    return checkEnd(source, size);
}

int ContentCopier::copyRange(
    int source, int target, std::int64_t from, std::int64_t to, Bytes expected)
{
    while (expected == Bytes::data && m_kernelCopies && from < to) {
        off_t sourceAt = from;
        off_t targetAt = from;
        const auto wanted = static_cast<std::size_t>(std::min(to - from, kernelCopyBytes));
        const auto copied = retrying(
            [&] { return ::copy_file_range(source, &sourceAt, target, &targetAt, wanted, 0); });
        if (copied <= 0) { // 0 also comes from files whose bytes are made up as they are read.
            m_kernelCopies = false;
            break;
        }
        from += copied;
        if (!m_progress(copied))
            return ECANCELED;
    }
    return from < to ? copyRangeByReading(source, target, from, to, expected) : 0;
}

int ContentCopier::copyRangeByReading(
    int source, int target, std::int64_t from, std::int64_t to, Bytes expected)
{
    m_buffer.resize(bufferBytes);
    auto started = from;
    while (from < to) {
        const auto wanted
            = static_cast<std::size_t>(std::min<std::int64_t>(to - from, bufferBytes));
        const auto got = retrying([&] { return ::pread(source, m_buffer.data(), wanted, from); });
        if (got < 0)
            return errno;
        if (got == 0)
            return ESTALE;
        const auto count = static_cast<std::size_t>(got);
        const bool isHole = expected == Bytes::zeroExpected && isZero(m_buffer.data(), count);
        if (const int error = isHole ? 0 : writeAll(target, m_buffer.data(), count, from))
            return error;
        from += got;
        if (from - started >= writtenOutBytes) {
            ::sync_file_range(target, started, from - started, SYNC_FILE_RANGE_WRITE);
            started = from;
        }
        if (!m_progress(got))
            return ECANCELED;
    }
    return 0;
}

bool holdSameBytes(int file, int other)
{
    std::vector<char> bytes(bufferBytes);
    std::vector<char> otherBytes(bufferBytes);
    const auto fill = [](int from, std::vector<char>& buffer, std::int64_t at) -> ssize_t {
        std::size_t filled = 0;
        while (filled < buffer.size()) {
            const auto got = retrying([&] {
                return ::pread(from, buffer.data() + filled, buffer.size() - filled,
                    at + static_cast<std::int64_t>(filled));
            });
            if (got < 0)
                return -1;
            if (got == 0)
                break;
            filled += static_cast<std::size_t>(got);
        }
        return static_cast<ssize_t>(filled);
    };
    for (std::int64_t at = 0;;) {
        const auto got = fill(file, bytes, at);
        if (got < 0 || fill(other, otherBytes, at) != got
            || std::memcmp(bytes.data(), otherBytes.data(), static_cast<std::size_t>(got)) != 0)
            return false;
        if (static_cast<std::size_t>(got) < bytes.size())
            return true;
        at += got;
    }
}

std::optional<std::string> linkText(int folder, const char* name)
{
    std::string text(256, '\0');
    for (;;) {
        const auto length
            = retrying([&] { return ::readlinkat(folder, name, text.data(), text.size()); });
        if (length < 0)
            return std::nullopt;
        if (static_cast<std::size_t>(length) < text.size()) {
            text.resize(static_cast<std::size_t>(length));
            return text;
        }
        text.resize(2 * text.size());
    }
}

} // namespace kestavon
