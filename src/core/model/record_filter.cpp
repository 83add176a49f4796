#include "core/model/record_filter.h"

#include "concurrency/cancelled.h"
#include "core/domain/ascii.h"
#include "core/model/text_folding.h"

#include <algorithm>
#include <cstring>

namespace kestavon {

namespace {

/// How many texts are searched between two looks at the stop token: a fraction of a millisecond.
constexpr std::size_t stretch = 65'536;

/// Below this share of the list, testing the previous matches one by one beats searching the whole.
constexpr std::size_t fewMatches = 16;

void throwIfStopped(const std::stop_token& stop)
{
    if (stop.stop_requested())
        throw Cancelled{};
}

/// The text that holds the byte at `place`: the last one from `text` on that does not start after
/// it. Places come in ascending order and mostly close to each other, so the step grows slowly.
std::size_t textAt(
    std::span<const std::uint32_t> offsets, std::size_t text, std::size_t last, std::size_t place)
{
    std::size_t step = 1;
    while (text + step < last && offsets[text + step] <= place) {
        text += step;
        step *= 2;
    }
    const auto from = offsets.begin() + static_cast<std::ptrdiff_t>(text);
    const auto to = offsets.begin() + static_cast<std::ptrdiff_t>(std::min(text + step, last));
    return static_cast<std::size_t>(std::upper_bound(from, to, place) - offsets.begin() - 1);
}

/// Where the bytes of a text that starts at `offset` end.
std::size_t endOfText(std::span<const char> bytes, std::uint32_t offset)
{
    return offset + std::strlen(bytes.data() + offset);
}

/// Whether the texts that start at `offsets`, which ascend, lie one after the other with no other
/// texts between them.
bool textsTouch(std::span<const char> bytes, std::span<const std::uint32_t> offsets)
{
    if (offsets.empty())
        return true;
    const auto end = endOfText(bytes, offsets.back());
    const auto inside = bytes.subspan(offsets.front(), end - offsets.front());
    return static_cast<std::size_t>(std::ranges::count(inside, '\0')) == offsets.size() - 1;
}

/// Calls `matched` with the number of every text that contains the finder's needle. The texts start
/// at `offsets`, which ascend, and end at a NUL each; unless they `touch`, other texts may lie
/// between them.
template <class Matched>
void findTexts(std::span<const char> bytes, std::span<const std::uint32_t> offsets, bool touch,
    const TextFinder& finder, const std::stop_token& stop, Matched matched)
{
    const auto* const start = bytes.data();
    const auto* const readableEnd = start + bytes.size();
    for (std::size_t first = 0; first < offsets.size(); first += stretch) {
        throwIfStopped(stop);
        const auto last = std::min(first + stretch, offsets.size());
        const auto* const end
            = start + (last < offsets.size() ? offsets[last] : endOfText(bytes, offsets[last - 1]));
        auto text = first;
        const auto* from = start + offsets[first];
        while ((from = finder.find(from, end, readableEnd)) != nullptr) {
            const auto place = static_cast<std::size_t>(from - start);
            text = textAt(offsets, text, last, place);
            // The list's own text ended before `place` when the match is in a foreign one.
            if (touch || std::memchr(start + offsets[text], 0, place - offsets[text]) == nullptr)
                matched(text);
            if (++text == last)
                break;
            from = start + offsets[text];
        }
    }
}

} // namespace

void RecordFilter::Texts::append(std::string_view text)
{
    offsets.push_back(static_cast<std::uint32_t>(bytes.size()));
    bytes.insert(bytes.end(), text.begin(), text.end());
    bytes.push_back('\0');
}

/// What a needle finds in the full paths of folders, by folder.
struct RecordFilter::FolderMatches {
    /// The path contains the needle, so everything in the folder matches.
    std::vector<std::uint8_t> whole;
    /// The path and a "/" end with the needle up to and including its last "/": what follows has to
    /// begin a name in the folder. Empty for a needle without "/".
    std::vector<std::uint8_t> beginning;
};

RecordFilter::RecordFilter(std::shared_ptr<const RecordList> records, const std::stop_token& stop)
    : m_records(std::move(records))
    , m_namesAscend(std::ranges::is_sorted(m_records->nameOffsets()))
    , m_namesTouch(m_namesAscend && textsTouch(m_records->nameBytes(), m_records->nameOffsets()))
    , m_root(foldedText(m_records->root()))
{
    if (m_root.ends_with('/'))
        m_root.pop_back();
    const auto folders = m_records->folderCount();
    m_folderNames.offsets.reserve(folders);
    for (std::size_t folder = 0; folder < folders; ++folder) {
        if (folder % stretch == 0)
            throwIfStopped(stop);
        m_folderNames.append(foldedText(m_records->folderName(static_cast<std::uint32_t>(folder))));
    }
    for (std::size_t i = 0; i < m_records->size(); ++i) {
        if (i % stretch == 0)
            throwIfStopped(stop);
        if (m_records->flags(i) & RecordFlags::nonAsciiName) {
            m_foldedRecords.push_back(static_cast<std::uint32_t>(i));
            m_foldedNames.append(foldedText(m_records->name(i)));
        }
    }
}

FilterMatches RecordFilter::matches(
    std::string_view needle, const FilterMatches* previous, const std::stop_token& stop) const
{
    FilterMatches found{foldedText(needle), RecordSet(m_records->size()), 0};
    const auto& folded = found.needle;
    const auto matchAll = [&] {
        found.records = RecordSet::all(m_records->size());
        found.count = m_records->size();
    };
    if (folded.empty()) {
        matchAll();
        return found;
    }
    if (m_records->empty() || folded.find('\0') != std::string::npos)
        return found; // No name holds a NUL, but the bytes between the names are NULs.
    if (m_root.find(folded) != std::string::npos) {
        matchAll();
        return found;
    }
    const auto folders = matchFolders(folded, stop);
    const auto slash = folded.rfind('/');
    if (slash != std::string::npos)
        matchBeginnings(folders, std::string_view(folded).substr(slash + 1), found.records, stop);
    else if (!m_namesAscend)
        matchAmong(RecordSet::all(m_records->size()), folded, folders, found.records, stop);
    else if (extends(folded, previous) && previous->count < m_records->size() / fewMatches)
        matchAmong(previous->records, folded, folders, found.records, stop);
    else
        matchNames(folded, found.records, stop);
    addContents(folders, found.records);
    found.count = found.records.count();
    return found;
}

bool RecordFilter::extends(const std::string& needle, const FilterMatches* previous) const
{
    return previous != nullptr && previous->records.size() == m_records->size()
        && needle.find(previous->needle) != std::string::npos;
}

// A path contains a needle without "/" exactly when one of its components does, and one with "/" in
// its folder's path or across the "/" before its name. So each folder is looked at once.
RecordFilter::FolderMatches RecordFilter::matchFolders(
    const std::string& needle, const std::stop_token& stop) const
{
    const auto folders = m_folderNames.offsets.size();
    FolderMatches found{std::vector<std::uint8_t>(folders), {}};
    const auto slash = needle.rfind('/');
    if (slash == std::string::npos) {
        const TextFinder finder(needle);
        findTexts(m_folderNames.bytes, m_folderNames.offsets, true, finder, stop,
            [&found](std::size_t folder) { found.whole[folder] = 1; });
        for (std::uint32_t folder = 1; folder < folders; ++folder)
            found.whole[folder] |= found.whole[m_records->folderParent(folder)];
        return found;
    }
    const auto ending = std::string_view(needle).substr(0, slash);
    const auto name = std::string_view(needle).substr(slash + 1);
    found.beginning.resize(folders);
    for (std::uint32_t folder = 0; folder < folders; ++folder) {
        found.beginning[folder] = pathEndsWith(folder, ending);
        if (folder == 0)
            continue;
        const auto parent = m_records->folderParent(folder);
        found.whole[folder] = found.whole[parent]
            | (found.beginning[parent] != 0 && m_folderNames[folder].starts_with(name) ? 1 : 0);
    }
    return found;
}

bool RecordFilter::pathEndsWith(std::uint32_t folder, std::string_view ending) const
{
    for (; folder != 0; folder = m_records->folderParent(folder)) {
        const auto slash = ending.rfind('/');
        if (slash == std::string_view::npos)
            return m_folderNames[folder].ends_with(ending);
        if (m_folderNames[folder] != ending.substr(slash + 1))
            return false;
        ending = ending.substr(0, slash);
    }
    return m_root.ends_with(ending);
}

void RecordFilter::matchNames(
    const std::string& needle, RecordSet& matched, const std::stop_token& stop) const
{
    const TextFinder finder(needle);
    if (isAscii(needle))
        findTexts(m_records->nameBytes(), m_records->nameOffsets(), m_namesTouch, finder, stop,
            [&matched](std::size_t i) { matched.insert(i); });
    // Where a name is not ASCII, its bytes prove nothing: an "e" may be half of an "é".
    for (const auto i : m_foldedRecords)
        matched.erase(i);
    findTexts(m_foldedNames.bytes, m_foldedNames.offsets, true, finder, stop,
        [this, &matched](std::size_t text) { matched.insert(m_foldedRecords[text]); });
}

void RecordFilter::matchBeginnings(const FolderMatches& folders, std::string_view beginning,
    RecordSet& matched, const std::stop_token& stop) const
{
    const auto beginsAsciiName = [beginning](std::string_view name) {
        return name.size() >= beginning.size()
            && std::ranges::equal(beginning, name.substr(0, beginning.size()), {}, {}, asciiLower);
    };
    for (std::size_t i = 0; i < m_records->size(); ++i) {
        if (i % stretch == 0)
            throwIfStopped(stop);
        if (folders.beginning[m_records->folderOf(i)] != 0 && beginsAsciiName(m_records->name(i)))
            matched.insert(i);
    }
    for (std::size_t text = 0; text < m_foldedRecords.size(); ++text) {
        const auto i = m_foldedRecords[text];
        matched.assign(i,
            folders.beginning[m_records->folderOf(i)] != 0
                && m_foldedNames[text].starts_with(beginning));
    }
}

void RecordFilter::addContents(const FolderMatches& folders, RecordSet& matched) const
{
    if (std::ranges::find(folders.whole, 1) == folders.whole.end())
        return;
    const auto folderOf = m_records->folders();
    const auto words = matched.words();
    for (std::size_t w = 0; w < words.size(); ++w) {
        const auto first = w * RecordSet::wordBits;
        const auto last = std::min(first + RecordSet::wordBits, folderOf.size());
        std::uint64_t bits = 0;
        for (auto i = first; i < last; ++i)
            bits |= std::uint64_t{folders.whole[folderOf[i]]} << (i - first);
        words[w] |= bits;
    }
}

void RecordFilter::matchAmong(const RecordSet& candidates, const std::string& needle,
    const FolderMatches& folders, RecordSet& matched, const std::stop_token& stop) const
{
    const TextFinder finder(needle);
    std::size_t tested = 0;
    std::size_t text = 0; // in step with the candidates, which ascend
    candidates.forEach([&](std::size_t i) {
        if (tested++ % stretch == 0)
            throwIfStopped(stop);
        if (folders.whole[m_records->folderOf(i)] != 0)
            return;
        if ((m_records->flags(i) & RecordFlags::nonAsciiName) == 0) {
            matched.assign(i, finder.isIn(m_records->name(i)));
            return;
        }
        while (m_foldedRecords[text] < i)
            ++text;
        matched.assign(i, finder.isIn(m_foldedNames[text]));
    });
}

} // namespace kestavon
