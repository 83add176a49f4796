#pragma once

#include "core/domain/duplicate_group.h"
#include "core/domain/file_identity.h"
#include "core/domain/record_list.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace kestavon {

/// A SHA-256 digest.
using Sha256Digest = std::array<std::uint8_t, 32>;

/// The digest as 64 lower-case hexadecimal characters.
std::string hexText(const Sha256Digest& digest);

/// What removing all but one of so many files of `fileSize` bytes frees, in bytes; at most the
/// largest 64-bit number.
std::int64_t reclaimableBytes(std::int64_t fileSize, std::size_t files);

/// Groups of records with the same content, some 50 bytes a file beside the records they point at.
/// Immutable once it is made: share it between threads freely.
class DuplicateList {
public:
    /// A record of a group.
    struct Member {
        std::uint32_t position = 0; ///< in `records()`
        FileIdentity identity; ///< the file as it was just before its content was read

        friend bool operator==(const Member&, const Member&) = default;
    };

    DuplicateList() = default;
    explicit DuplicateList(std::shared_ptr<const RecordList> records);

    /// Adds a group of two or more; only while the list is being made.
    void append(const Sha256Digest& digest, std::span<const Member> members);

    std::size_t size() const { return m_groups.size(); }
    bool empty() const { return m_groups.empty(); }

    /// The group as a value of its own; this builds its paths.
    DuplicateGroup operator[](std::size_t i) const;
    Uuid id(std::size_t i) const { return m_ids.at(i); }
    const Sha256Digest& digest(std::size_t i) const { return m_groups[i].digest; }
    std::span<const Member> members(std::size_t i) const;
    /// Which of `members(i)` stays when the group is merged: the newest file, and of equally new
    /// ones the first. A file without a date is older than every other.
    std::size_t keptMember(std::size_t i) const { return m_groups[i].keptMember; }
    /// Members of the groups before `i`; of all groups for `size()`.
    std::size_t membersBefore(std::size_t i) const
    {
        return i < size() ? m_groups[i].firstMember : m_members.size();
    }
    /// What removing all but one of the group's files frees, in bytes, by the first file's size.
    std::int64_t reclaimableBytes(std::size_t i) const;
    /// The same of all groups together.
    std::int64_t reclaimableBytes() const { return m_reclaimableBytes; }

    /// The list that was searched; never null.
    const std::shared_ptr<const RecordList>& records() const { return m_records; }

private:
    struct Group {
        Sha256Digest digest{};
        std::size_t firstMember = 0;
        std::size_t memberCount = 0;
        std::size_t keptMember = 0;
    };

    std::shared_ptr<const RecordList> m_records = std::make_shared<const RecordList>();
    IdSpace m_ids;
    std::vector<Group> m_groups;
    std::vector<Member> m_members; ///< group after group
    std::int64_t m_reclaimableBytes = 0;
};

} // namespace kestavon
