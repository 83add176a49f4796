#include "core/domain/record_list.h"

#include "core/domain/cut_list.h"
#include "core/domain/removal_guard.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

namespace kestavon {

namespace {

constexpr auto maxSum = std::numeric_limits<std::int64_t>::max();
constexpr auto minSum = std::numeric_limits<std::int64_t>::min();

StorageSummary summarise(const RecordColumns& columns)
{
    StorageSummary summary;
    summary.count = columns.sizes.size();
    for (std::size_t i = 0; i < summary.count; ++i) {
        summary.bytes = saturatingSum(summary.bytes, columns.sizes[i]);
        if (columns.flags[i] & RecordFlags::hidden)
            summary.hiddenBytes = saturatingSum(summary.hiddenBytes, columns.sizes[i]);
    }
    return summary;
}

bool hasNonAscii(std::string_view name)
{
    return std::ranges::any_of(name, [](char c) { return static_cast<unsigned char>(c) > 0x7F; });
}

/// The folders that a list of paths mentions, numbered as they are met, parents first.
class FolderNumbers {
public:
    explicit FolderNumbers(const std::string& root)
    {
        m_numbers.emplace(root, 0);
        m_parents.push_back(0);
        m_names.emplace_back();
    }

    std::uint32_t numberOf(const std::string& path)
    {
        if (const auto known = m_numbers.find(path); known != m_numbers.end())
            return known->second;
        const auto slash = path.rfind('/');
        if (slash == std::string::npos)
            return 0; // Not below the root: the caller's promise was broken.
        const auto parent = numberOf(slash == 0 ? "/" : path.substr(0, slash));
        const auto number = static_cast<std::uint32_t>(m_parents.size());
        m_parents.push_back(parent);
        m_names.push_back(path.substr(slash + 1));
        m_numbers.emplace(path, number);
        return number;
    }

    const std::vector<std::uint32_t>& parents() const { return m_parents; }
    const std::vector<std::string>& names() const { return m_names; }

private:
    std::unordered_map<std::string, std::uint32_t> m_numbers;
    std::vector<std::uint32_t> m_parents;
    std::vector<std::string> m_names;
};

template <class T> void copyRow(const Column<T>& from, std::size_t i, Column<T>& to, std::size_t j)
{
    to[j] = from[i];
}

} // namespace

std::int64_t saturatingSum(std::int64_t a, std::int64_t b)
{
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum))
        return b > 0 ? maxSum : minSum;
    return sum;
}

RecordList::RecordList(RecordColumns columns)
    : m_columns(std::move(columns))
    , m_ids(IdSpace::random())
    , m_summary(summarise(m_columns))
{
}

std::shared_ptr<const RecordList> RecordList::fromRecords(
    std::string root, std::span<const FileRecord> records)
{
    RecordColumns columns;
    columns.sizes = Column<std::int64_t>(records.size());
    columns.modifiedAt = Column<std::int64_t>(records.size());
    columns.folders = Column<std::uint32_t>(records.size());
    columns.nameOffsets = Column<std::uint32_t>(records.size());
    columns.flags = Column<std::uint8_t>(records.size());

    FolderNumbers folders(root);
    std::string bytes;
    const auto append = [&bytes](std::string_view name) {
        const auto offset = static_cast<std::uint32_t>(bytes.size());
        bytes.append(name).push_back('\0');
        return offset;
    };
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto& record = records[i];
        const auto name = lastComponent(record.path);
        const auto parentLength = record.path.size() - name.size() - 1;
        columns.folders[i]
            = folders.numberOf(parentLength == 0 ? "/" : record.path.substr(0, parentLength));
        columns.nameOffsets[i] = append(name);
        columns.sizes[i] = record.size;
        columns.modifiedAt[i] = record.modifiedAt ? record.modifiedAt->time_since_epoch().count()
                                                  : RecordColumns::unknownTime;
        columns.flags[i]
            = static_cast<std::uint8_t>((record.isDirectory ? RecordFlags::directory : 0)
                | (record.isHidden ? RecordFlags::hidden : 0)
                | (hasNonAscii(name) ? RecordFlags::nonAsciiName : 0));
    }

    auto names = std::make_shared<RecordNames>();
    names->root = std::move(root);
    const auto folderCount = folders.parents().size();
    names->folderParents = Column<std::uint32_t>(folderCount);
    names->folderNames = Column<std::uint32_t>(folderCount);
    for (std::size_t folder = 0; folder < folderCount; ++folder) {
        names->folderParents[folder] = folders.parents()[folder];
        names->folderNames[folder] = append(folders.names()[folder]);
    }
    names->bytes = Column<char>(bytes.size());
    std::ranges::copy(bytes, names->bytes.data());
    columns.names = std::move(names);
    return std::make_shared<const RecordList>(std::move(columns));
}

std::shared_ptr<const RecordList> RecordList::without(
    std::span<const std::uint32_t> positions) const
{
    const auto kept = size() - positions.size();
    RecordColumns columns;
    columns.names = m_columns.names;
    columns.sizes = Column<std::int64_t>(kept);
    columns.modifiedAt = Column<std::int64_t>(kept);
    columns.folders = Column<std::uint32_t>(kept);
    columns.nameOffsets = Column<std::uint32_t>(kept);
    columns.flags = Column<std::uint8_t>(kept);
    std::vector<std::uint32_t> ordinals;
    ordinals.reserve(kept);

    auto nextRemoved = positions.begin();
    for (std::size_t i = 0; i < size(); ++i) {
        if (nextRemoved != positions.end() && *nextRemoved == i) {
            ++nextRemoved;
            continue;
        }
        const auto row = ordinals.size();
        copyRow(m_columns.sizes, i, columns.sizes, row);
        copyRow(m_columns.modifiedAt, i, columns.modifiedAt, row);
        copyRow(m_columns.folders, i, columns.folders, row);
        copyRow(m_columns.nameOffsets, i, columns.nameOffsets, row);
        copyRow(m_columns.flags, i, columns.flags, row);
        ordinals.push_back(static_cast<std::uint32_t>(ordinal(i)));
    }

    auto list = std::make_shared<RecordList>();
    list->m_columns = std::move(columns);
    list->m_ids = m_ids;
    list->m_ordinals = std::move(ordinals);
    list->m_summary = summarise(list->m_columns);
    return list;
}

std::shared_ptr<const RecordList> RecordList::joinedWith(
    const RecordList& earlier, std::span<const std::uint32_t> positions) const
{
    if (earlier.m_ids != m_ids)
        return nullptr;
    const auto leftOut = positionsOutside(earlier, *this, positions);
    return leftOut ? earlier.without(*leftOut) : nullptr;
}

FileRecord RecordList::operator[](std::size_t i) const
{
    return {.id = id(i),
        .path = path(i),
        .size = fileSize(i),
        .modifiedAt = modifiedAt(i),
        .isDirectory = isDirectory(i),
        .isHidden = isHidden(i)};
}

std::optional<std::size_t> RecordList::positionOf(const Uuid& id) const
{
    const auto ordinal = m_ids.ordinalOf(id);
    if (!ordinal)
        return std::nullopt;
    if (m_ordinals.empty())
        return *ordinal < size() ? std::optional<std::size_t>(*ordinal) : std::nullopt;
    const auto found = std::ranges::lower_bound(m_ordinals, *ordinal);
    if (found == m_ordinals.end() || *found != *ordinal)
        return std::nullopt;
    return static_cast<std::size_t>(found - m_ordinals.begin());
}

std::optional<Timestamp> RecordList::modifiedAt(std::size_t i) const
{
    const auto time = m_columns.modifiedAt[i];
    if (time == RecordColumns::unknownTime)
        return std::nullopt;
    return Timestamp(std::chrono::nanoseconds(time));
}

std::string_view RecordList::nameAt(std::uint32_t offset) const
{
    return {m_columns.names->bytes.span().data() + offset};
}

std::string_view RecordList::name(std::size_t i) const
{
    return nameAt(m_columns.nameOffsets[i]);
}

std::span<const char> RecordList::nameBytes() const
{
    return m_columns.names ? m_columns.names->bytes.span() : std::span<const char>();
}

std::string RecordList::path(std::size_t i) const
{
    auto path = folderPath(folderOf(i));
    if (!path.ends_with('/'))
        path += '/';
    return path.append(name(i));
}

const std::string& RecordList::root() const
{
    static const std::string none;
    return m_columns.names ? m_columns.names->root : none;
}

std::size_t RecordList::folderCount() const
{
    return m_columns.names ? m_columns.names->folderParents.size() : 0;
}

std::uint32_t RecordList::folderParent(std::uint32_t folder) const
{
    return m_columns.names->folderParents[folder];
}

std::string_view RecordList::folderName(std::uint32_t folder) const
{
    return folder == 0 ? std::string_view() : nameAt(m_columns.names->folderNames[folder]);
}

std::string RecordList::folderPath(std::uint32_t folder) const
{
    std::vector<std::string_view> components;
    std::size_t length = root().size();
    for (; folder != 0; folder = folderParent(folder)) {
        components.push_back(folderName(folder));
        length += components.back().size() + 1;
    }
    std::string path;
    path.reserve(length);
    path = root();
    for (auto component = components.rbegin(); component != components.rend(); ++component) {
        if (!path.ends_with('/'))
            path += '/';
        path.append(*component);
    }
    return path;
}

} // namespace kestavon
