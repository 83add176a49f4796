#pragma once

#include "core/domain/column.h"
#include "core/domain/file_record.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// Bits of a record's flags.
struct RecordFlags {
    static constexpr std::uint8_t directory = 1;
    static constexpr std::uint8_t hidden = 2;
    static constexpr std::uint8_t nonAsciiName = 4; ///< the name has a byte above 0x7F
};

/// Names and folders of one scan: shared by every list cut from it.
struct RecordNames {
    std::string root; ///< absolute path of the folder that was walked
    Column<char> bytes; ///< names, each ended by a NUL, in the order of the records
    Column<std::uint32_t> folderParents; ///< folder 0 is the root and its own parent
    Column<std::uint32_t>
        folderNames; ///< where the folder's name starts in `bytes`; unused for the root
};

/// What a scan fills in, one entry a record, to make a `RecordList` of it.
struct RecordColumns {
    /// Stands in `modifiedAt` for a time that the file system did not report.
    static constexpr std::int64_t unknownTime = std::numeric_limits<std::int64_t>::min();

    std::shared_ptr<const RecordNames> names;
    Column<std::int64_t> sizes; ///< bytes
    Column<std::int64_t> modifiedAt; ///< nanoseconds since 1970, or `unknownTime`
    Column<std::uint32_t> folders; ///< the folder that holds the record
    Column<std::uint32_t> nameOffsets; ///< where the record's name starts in the names
    Column<std::uint8_t> flags; ///< see `RecordFlags`
};

/// Number and sizes of a list's records, in bytes; sums stop at the largest 64-bit number.
struct StorageSummary {
    std::size_t count = 0;
    std::int64_t bytes = 0;
    std::int64_t hiddenBytes = 0;

    friend bool operator==(const StorageSummary&, const StorageSummary&) = default;
};

/// `a + b`, held at the limits of 64 bits instead of wrapping.
std::int64_t saturatingSum(std::int64_t a, std::int64_t b);

/// The records of one storage scan, in depth-first order: a table of columns (some 45 bytes a
/// record) that hands out `FileRecord` values and computes paths and identifiers on demand.
/// Immutable: share it between threads freely.
class RecordList {
public:
    RecordList() = default;
    explicit RecordList(RecordColumns columns);

    /// A list of the given records, each below `root`; their own ids are not kept, the list gives
    /// new ones. For results that did not come from a walk.
    static std::shared_ptr<const RecordList> fromRecords(
        std::string root, std::span<const FileRecord> records);

    /// This list less the records at `positions` (ascending). The others keep their ids.
    std::shared_ptr<const RecordList> without(std::span<const std::uint32_t> positions) const;

    /// This list and, at their old places, the records of `earlier` at `positions` (ascending);
    /// `earlier` is a list that this one was cut from. Null when it is not.
    std::shared_ptr<const RecordList> joinedWith(
        const RecordList& earlier, std::span<const std::uint32_t> positions) const;

    std::size_t size() const { return m_columns.sizes.size(); }
    bool empty() const { return size() == 0; }

    /// The record as a value of its own; this builds its path.
    FileRecord operator[](std::size_t i) const;

    Uuid id(std::size_t i) const { return m_ids.at(ordinal(i)); }
    /// The position of the record with this id; nothing when it is not in this list.
    std::optional<std::size_t> positionOf(const Uuid& id) const;

    std::int64_t fileSize(std::size_t i) const { return m_columns.sizes[i]; }
    std::optional<Timestamp> modifiedAt(std::size_t i) const;
    bool isDirectory(std::size_t i) const { return flags(i) & RecordFlags::directory; }
    bool isHidden(std::size_t i) const { return flags(i) & RecordFlags::hidden; }
    std::uint8_t flags(std::size_t i) const { return m_columns.flags[i]; }
    /// The last path component.
    std::string_view name(std::size_t i) const;
    std::string path(std::size_t i) const;

    /// All sizes, in record order, in bytes.
    std::span<const std::int64_t> sizes() const { return m_columns.sizes.span(); }
    /// Every record's folder, in record order.
    std::span<const std::uint32_t> folders() const { return m_columns.folders.span(); }
    /// The bytes that hold every name, each ended by a NUL, in record order; also names of no
    /// record of this list.
    std::span<const char> nameBytes() const;
    /// Where each record's name starts in `nameBytes()`, in record order.
    std::span<const std::uint32_t> nameOffsets() const { return m_columns.nameOffsets.span(); }

    /// The scanned folder's path; empty for a list that was never filled.
    const std::string& root() const;
    /// Folders by number; 0 is the root. A folder's number is greater than its parent's.
    std::size_t folderCount() const;
    std::uint32_t folderOf(std::size_t i) const { return m_columns.folders[i]; }
    std::uint32_t folderParent(std::uint32_t folder) const;
    /// A folder's name; empty for the root.
    std::string_view folderName(std::uint32_t folder) const;
    std::string folderPath(std::uint32_t folder) const;

    const StorageSummary& summary() const { return m_summary; }

    /// Where the record stood in the list as it was before anything was cut from it.
    std::uint64_t ordinal(std::size_t i) const { return m_ordinals.empty() ? i : m_ordinals[i]; }

private:
    std::string_view nameAt(std::uint32_t offset) const;

    RecordColumns m_columns;
    IdSpace m_ids;
    std::vector<std::uint32_t> m_ordinals; ///< empty while nothing was cut from the list
    StorageSummary m_summary;
};

} // namespace kestavon
