#pragma once

#include "platform/linux/trash/trash_folder.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// The record of one item in a Trash, the file `info/<name>.trashinfo`, which also keeps the name
/// from being taken by anybody else. It is there before the item arrives, and goes again unless the
/// item did arrive. While this object lives the file is locked: that tells other
/// copies of the program that somebody is at work.
class TrashRecord {
public:
    /// Writes the record of an item that will lie at `files/<name>`, not yet to the disk. EEXIST
    /// when the name is taken.
    static Result<TrashRecord, int> write(
        const TrashFolder& trash, const std::string& name, std::string_view text);

    ~TrashRecord();
    TrashRecord(TrashRecord&&) noexcept = default;
    TrashRecord& operator=(TrashRecord&&) = delete;

    /// Waits until the record is on the disk, where it must be before the item arrives: else a
    /// power cut could leave the item without it. False when that failed.
    bool writeOut() const;
    /// The same for many records of one Trash at once, which takes hardly longer than for one. In
    /// their order.
    static std::vector<bool> writeOut(std::span<const TrashRecord* const> records);

    /// Whether the record is where it was written: anybody can remove it.
    bool isInPlace() const;
    /// Writes the record anew, to the disk, after somebody removed it. False when that cannot be.
    bool writeAgain();
    /// The item has arrived: the record stays.
    void keep() { m_kept = true; }
    /// The record's modification time, in seconds since 1970.
    std::int64_t time() const;

private:
    TrashRecord(int info, std::string fileName, FileDescriptor file, std::string_view text);

    int m_info; // the caller's
    std::string m_fileName;
    FileDescriptor m_file; // also says, by being open, that the record is this object's
    std::string m_text;
    bool m_kept = false;
};

/// What a name in `info` says about an item: its name with this ending.
inline constexpr std::string_view trashInfoEnding = ".trashinfo";

/// Removes the record of an item that lies in the Trash no more. False when there is none, or
/// somebody is at work with it.
bool removeRecord(const TrashFolder& trash, const std::string& name);

/// Keeps the record of an item from being cleared away without the item, by making it read-only:
/// the item is about to go where it may come back from.
void keepRecord(const TrashFolder& trash, const std::string& name);

/// Removes the records that a crash of this program left without an item: ours, not locked, not
/// kept, and nothing at `files/<name>`. So are empty ones more than a day old, which a crash of any
/// program left and which say nothing. Records of other programs stay, with or without an item.
void clearAbandonedRecords(const TrashFolder& trash);

} // namespace kestavon
