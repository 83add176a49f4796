#include "duplicates/duplicate_search.h"

#include "duplicates/file_reading.h"
#include "duplicates/sha256_hex.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <span>
#include <tuple>
#include <utility>

namespace kestavon {

namespace {

constexpr auto reportInterval = std::chrono::milliseconds(100);

/// Whether opening failed for want of descriptors, which says nothing of the file.
bool isOutOfDescriptors(int error)
{
    return error == EMFILE || error == ENFILE || error == ENOMEM;
}

} // namespace

DuplicateSearch::DuplicateSearch(std::shared_ptr<const RecordList> records,
    CandidateFiles candidates, std::function<void(const DuplicateProgress&)> progress,
    std::stop_token stop)
    : m_records(std::move(records))
    , m_progress(std::move(progress))
    , m_stop(std::move(stop))
    , m_candidates(std::move(candidates))
{
}

void DuplicateSearch::expect(const std::vector<CandidateSet>& sets)
{
    for (const auto& set : sets) {
        for (auto i = set.begin; i < set.end; ++i)
            m_bytesToDo = saturatingSum(m_bytesToDo, file(i).identity.size);
    }
}

FileDescriptor DuplicateSearch::open(CandidateFile& file)
{
    for (; file.nameCount > 0; ++file.firstName, --file.nameCount) {
        auto opened = openRegularFile(m_records->path(m_candidates.names[file.firstName]));
        if (!opened) {
            if (!isOutOfDescriptors(opened.error()))
                continue;
            hashLater(file);
            break;
        }
        if (!opened->identity.isSameFileAs(file.identity)
            || opened->identity.size != file.identity.size) {
            hashLater(file);
            break;
        }
        file.identity = opened->identity;
        return std::move(opened->file);
    }
    return FileDescriptor();
}

void DuplicateSearch::settle(const CandidateFile& file, const Sha256Digest& digest)
{
    const std::lock_guard lock(m_mutex);
    for (auto i = file.firstName; i < file.firstName + file.nameCount; ++i) {
        m_settled.push_back({.digest = digest,
            .member = {.position = m_candidates.names[i], .identity = file.identity}});
    }
}

void DuplicateSearch::hashLater(CandidateFile& file)
{
    const std::lock_guard lock(m_mutex);
    const auto names = std::span(m_candidates.names).subspan(file.firstName, file.nameCount);
    m_lateNames.insert(m_lateNames.end(), names.begin(), names.end());
    file.nameCount = 0;
}

void DuplicateSearch::hashLateNames()
{
    const auto take = [this]() -> std::optional<std::uint32_t> {
        const std::lock_guard lock(m_mutex);
        if (m_lateNames.empty())
            return std::nullopt;
        const auto position = m_lateNames.back();
        m_lateNames.pop_back();
        return position;
    };
    for (auto position = take(); position && !isStopped(); position = take()) {
        const auto hashed = sha256OfFile(m_records->path(*position), m_stop);
        if (!hashed)
            continue;
        const std::lock_guard lock(m_mutex);
        m_settled.push_back({.digest = hashed->digest,
            .member = {.position = *position, .identity = hashed->identity}});
    }
}

void DuplicateSearch::countDone(std::int64_t bytes)
{
    const auto done = m_bytesDone.fetch_add(bytes) + bytes;
    if (!m_progress || bytes == 0)
        return;
    const auto now = Clock::now().time_since_epoch();
    auto next = m_nextReport.load();
    if (now.count() < next
        || !m_nextReport.compare_exchange_strong(
            next, (now + Clock::duration(reportInterval)).count()))
        return;
    m_progress({.bytesDone = std::min(done, m_bytesToDo), .bytesToDo = m_bytesToDo});
}

std::shared_ptr<const DuplicateList> DuplicateSearch::groups()
{
    struct Group {
        std::size_t begin;
        std::size_t end;
        std::int64_t reclaimable;
        std::uint32_t firstPosition;
    };
    const std::lock_guard lock(m_mutex);
    std::ranges::sort(m_settled, {},
        [](const Settled& settled) { return std::tie(settled.digest, settled.member.position); });
    std::vector<Group> groups;
    for (std::size_t begin = 0, end = 0; begin < m_settled.size(); begin = end) {
        while (end < m_settled.size() && m_settled[end].digest == m_settled[begin].digest)
            ++end;
        if (end - begin < 2)
            continue;
        const auto first = m_settled[begin].member.position;
        groups.push_back({.begin = begin,
            .end = end,
            .reclaimable = reclaimableBytes(m_records->fileSize(first), end - begin),
            .firstPosition = first});
    }
    std::ranges::sort(groups, [](const Group& a, const Group& b) {
        return std::tie(b.reclaimable, a.firstPosition) < std::tie(a.reclaimable, b.firstPosition);
    });

    auto list = std::make_shared<DuplicateList>(m_records);
    std::vector<DuplicateList::Member> members;
    for (const auto& group : groups) {
        members.clear();
        for (auto i = group.begin; i < group.end; ++i)
            members.push_back(m_settled[i].member);
        list->append(m_settled[group.begin].digest, members);
    }
    return list;
}

} // namespace kestavon
