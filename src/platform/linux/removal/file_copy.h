#pragma once

#include "platform/linux/removal/entry_status.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// Copies the bytes of files, for one move: it remembers what the two file systems can do, and
/// keeps its buffer.
class ContentCopier {
public:
    /// Called with the number of bytes just copied, those of holes too; false stops the copy.
    using Progress = std::function<bool(std::int64_t bytes)>;

    explicit ContentCopier(Progress progress);

    /// Copies all of `source`, an opened regular file of which `status` was taken, into the empty
    /// file `target`. Holes stay holes. 0, or the error number: ESTALE when the file does not hold
    /// just as many bytes as it says, ECANCELED when the progress said so.
    int copy(int source, int target, const EntryStatus& status);

private:
    enum class Bytes { data, zeroExpected };

    int copyRange(int source, int target, std::int64_t from, std::int64_t to, Bytes expected);
    int copyRangeByReading(
        int source, int target, std::int64_t from, std::int64_t to, Bytes expected);

    Progress m_progress;
    std::vector<char> m_buffer;
    bool m_kernelCopies = true; ///< copy_file_range(2) has not failed yet
};

/// Whether two opened files hold the same bytes; false too when that cannot be told.
bool holdSameBytes(int file, int other);

/// Where a link leads to; nothing, and `errno`, when it cannot be read.
std::optional<std::string> linkText(int folder, const char* name);

} // namespace kestavon
