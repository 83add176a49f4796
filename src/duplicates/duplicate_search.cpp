#include "duplicates/duplicate_search.h"

#include "duplicates/file_reading.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <span>
#include <thread>
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
    , m_turns(m_stop)
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

FileDescriptor DuplicateSearch::openToReadWhole(CandidateFile& file)
{
    if (file.nameCount != 1)
        return open(file);
    FileDescriptor opened = openToRead(m_records->path(m_candidates.names[file.firstName]));
    if (opened)
        return opened;
    if (isOutOfDescriptors(errno))
        hashLater(file);
    file.nameCount = 0;
    return opened;
}

void DuplicateSearch::settle(CandidateFile& file, const Sha256Digest& digest)
{
    file.isSettled = true;
    const std::lock_guard lock(m_mutex);
    for (auto i = file.firstName; i < file.firstName + file.nameCount; ++i) {
        m_settled.push_back({.digest = digest,
            .member = {.position = m_candidates.names[i], .identity = file.identity}});
    }
}

void DuplicateSearch::hashLater(CandidateFile& file)
{
    auto bytes = file.identity.size;
    addDone(-bytes);
    const std::lock_guard lock(m_mutex);
    const auto names = std::span(m_candidates.names).subspan(file.firstName, file.nameCount);
    for (const auto position : names)
        m_lateNames.push_back({.position = position, .bytes = std::exchange(bytes, 0)});
    file.nameCount = 0;
}

void DuplicateSearch::hashLateNames()
{
    for (auto name = takeLateName(); name && !isStopped(); name = takeLateName()) {
        const auto hashed = hash(m_records->path(name->position));
        countDone(name->bytes);
        if (!hashed)
            continue;
        const std::lock_guard lock(m_mutex);
        m_lateSizes.insert(hashed->bytes);
        m_settled.push_back({.digest = hashed->digest,
            .member = {.position = name->position, .identity = hashed->identity}});
    }
}

std::optional<DuplicateSearch::LateName> DuplicateSearch::takeLateName()
{
    const std::lock_guard lock(m_mutex);
    if (m_lateNames.empty())
        return std::nullopt;
    const auto name = m_lateNames.back();
    m_lateNames.pop_back();
    return name;
}

/// The file's digest; nothing when it cannot be read. Others may soon give descriptors back.
std::optional<FileDigest> DuplicateSearch::hash(const std::string& path)
{
    auto opened = openRegularFile(path);
    while (!opened && isOutOfDescriptors(opened.error()) && !isStopped() && m_waitsLeft-- > 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        opened = openRegularFile(path);
    }
    if (!opened)
        return std::nullopt;
    auto hashed = sha256OfOpenFile(*opened, m_stop);
    return hashed ? std::optional(*hashed) : std::nullopt;
}

bool DuplicateSearch::hashPeersLater()
{
    std::set<std::int64_t> sizes;
    {
        const std::lock_guard lock(m_mutex);
        sizes.swap(m_lateSizes);
    }
    if (sizes.empty())
        return false;
    for (auto& file : m_candidates.files) {
        if (!file.isSettled && file.nameCount > 0 && sizes.contains(file.identity.size))
            hashLater(file);
    }
    const std::lock_guard lock(m_mutex);
    return !m_lateNames.empty();
}

void DuplicateSearch::addDone(std::int64_t bytes)
{
    auto before = m_bytesDone.load();
    while (!m_bytesDone.compare_exchange_weak(before, saturatingSum(before, bytes))) { }
}

void DuplicateSearch::countDone(std::int64_t bytes, std::size_t files)
{
    std::int64_t sum = 0;
    if (__builtin_mul_overflow(bytes, files, &sum))
        sum = std::numeric_limits<std::int64_t>::max();
    addDone(sum);
    if (!m_progress || sum == 0)
        return;
    const auto now = Clock::now().time_since_epoch();
    auto next = m_nextReport.load();
    if (now.count() < next
        || !m_nextReport.compare_exchange_strong(
            next, (now + Clock::duration(reportInterval)).count()))
        return;
    // What turns out to be hashed late must not make it go back.
    auto most = m_mostReported.load();
    const auto done = std::clamp<std::int64_t>(m_bytesDone.load(), most, m_bytesToDo);
    if (done > 0 && m_mostReported.compare_exchange_strong(most, done))
        m_progress({.bytesDone = done, .bytesToDo = m_bytesToDo});
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
