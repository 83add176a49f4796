#include "core/domain/duplicate_list.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace kestavon {

std::string hexText(const Sha256Digest& digest)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(2 * digest.size());
    for (const auto byte : digest) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

std::int64_t reclaimableBytes(std::int64_t fileSize, std::size_t files)
{
    std::int64_t bytes = 0;
    if (files > 0 && __builtin_mul_overflow(fileSize, static_cast<std::int64_t>(files - 1), &bytes))
        return std::numeric_limits<std::int64_t>::max();
    return bytes;
}

DuplicateList::DuplicateList(std::shared_ptr<const RecordList> records)
    : m_records(std::move(records))
    , m_ids(IdSpace::random())
{
}

void DuplicateList::append(const Sha256Digest& digest, std::span<const Member> members)
{
    const auto kept = std::ranges::max_element( // the first of equal ones; no date is the least
        members, {},
        [this](const Member& member) { return m_records->modifiedAt(member.position); });
    m_groups.push_back({.digest = digest,
        .firstMember = m_members.size(),
        .memberCount = members.size(),
        .keptMember = static_cast<std::size_t>(kept - members.begin())});
    m_members.insert(m_members.end(), members.begin(), members.end());
    m_reclaimableBytes = saturatingSum(m_reclaimableBytes, reclaimableBytes(size() - 1));
}

DuplicateGroup DuplicateList::operator[](std::size_t i) const
{
    DuplicateGroup group{.id = id(i), .hash = hexText(digest(i)), .files = {}};
    group.files.reserve(members(i).size());
    for (const auto& member : members(i))
        group.files.push_back((*m_records)[member.position]);
    return group;
}

std::span<const DuplicateList::Member> DuplicateList::members(std::size_t i) const
{
    return std::span(m_members).subspan(m_groups[i].firstMember, m_groups[i].memberCount);
}

std::int64_t DuplicateList::reclaimableBytes(std::size_t i) const
{
    const auto files = members(i);
    return kestavon::reclaimableBytes(m_records->fileSize(files.front().position), files.size());
}

} // namespace kestavon
