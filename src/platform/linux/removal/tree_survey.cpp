#include "platform/linux/removal/tree_survey.h"

#include "core/domain/record_list.h"
#include "platform/linux/removal/folder_listing.h"
#include "platform/linux/removal/tree_cursor.h"

#include <algorithm>
#include <cerrno>
#include <set>

#include <fcntl.h>
#include <unistd.h>

namespace kestavon {

namespace {

/// Deeper than any tree that people or programs make: a file system that has no end.
constexpr std::uint32_t deepestFolder = 50'000;

/// Whether entries of this folder could be removed, if need be after making it writable.
int removalObstacle(int folder, const EntryStatus& status)
{
    if (::faccessat(folder, "", W_OK | X_OK, AT_EACCESS | AT_EMPTY_PATH) == 0)
        return 0;
    if (errno == EROFS)
        return EROFS;
    if (errno == EACCES && status.owner != ::geteuid())
        return EACCES;
    return 0; // Its owner can change the mode; and an old kernel may not know the question.
}

bool stickyBitForbids(const EntryStatus& folder, const EntryStatus& entry)
{
    if (!(folder.mode & S_ISVTX))
        return false;
    const auto user = ::geteuid();
    return user != 0 && folder.owner != user && entry.owner != user;
}

} // namespace

const TreeSurvey::Entry* TreeSurvey::find(const Folder& folder, std::string_view name) const
{
    const auto all = entriesOf(folder);
    const auto nameOf = [this](const Entry& entry) { return std::string_view(this->name(entry)); };
    const auto found = std::ranges::lower_bound(all, name, {}, nameOf);
    return found != all.end() && nameOf(*found) == name ? &*found : nullptr;
}

/// Fills a survey in.
class Surveyor {
public:
    Surveyor(int folder, const std::string& name, const std::stop_token& stop)
        : m_parent(folder)
        , m_name(name)
        , m_stop(stop)
    {
    }

    Result<TreeSurvey, TreeFailure> run()
    {
        const auto status = statusOf(m_parent, m_name.c_str());
        if (!status)
            return TreeFailure{status.error(), m_name};
        if (const int error = append(m_name, *status, TreeSurvey::none))
            return TreeFailure{error, m_name};
        if (status->isFolder()) {
            auto top = openFolderIn(m_parent, m_name.c_str());
            if (!top)
                return TreeFailure{top.error(), m_name};
            TreeCursor cursor(m_survey, m_identities, std::move(*top));
            m_pending.push_back(0);
            while (!m_pending.empty()) {
                const auto entry = m_pending.back();
                m_pending.pop_back();
                if (const int error = visit(cursor, entry))
                    return TreeFailure{error, m_failedName};
            }
        }
        return std::move(m_survey);
    }

private:
    using Entry = TreeSurvey::Entry;

    /// Lists one folder and looks at its entries.
    int visit(TreeCursor& cursor, std::uint32_t entryNumber)
    {
        if (m_stop.stop_requested())
            return ECANCELED;
        const auto number = static_cast<std::uint32_t>(m_survey.m_folders.size());
        auto& entry = m_survey.m_entries[entryNumber];
        entry.folder = number;
        m_failedName = m_survey.name(entry);
        const auto status = entry.status;
        const auto depth
            = entry.parent == TreeSurvey::none ? 0 : m_survey.m_folders[entry.parent].depth + 1;
        if (depth > deepestFolder)
            return ELOOP;
        m_survey.m_folders.push_back(
            {.entry = entryNumber, .parent = entry.parent, .depth = depth});
        m_identities.push_back(status.identity);

        const int folder = cursor.go(number);
        if (folder < 0)
            return errno;
        const auto listing = listFolder(folder);
        if (!listing)
            return listing.error();
        if (!listing->entries().empty()) {
            if (const int error = removalObstacle(folder, status))
                return error;
        }
        return appendEntries(folder, number, status, *listing);
    }

    int appendEntries(
        int folder, std::uint32_t number, const EntryStatus& own, const FolderListing& listing)
    {
        const auto first = m_survey.m_entries.size();
        for (const auto& listed : listing.entries()) {
            m_failedName = listing.name(listed);
            const auto status = statusOf(folder, listing.nameText(listed));
            if (!status)
                return status.error() == ENOENT ? ESTALE : status.error();
            if (stickyBitForbids(own, *status))
                return EPERM;
            if (const int error = append(m_failedName, *status, number))
                return error;
        }
        const auto added = std::span(m_survey.m_entries).subspan(first);
        std::ranges::sort(added, {},
            [this](const Entry& entry) { return std::string_view(m_survey.name(entry)); });
        m_survey.m_folders[number].first = static_cast<std::uint32_t>(first);
        m_survey.m_folders[number].count = static_cast<std::uint32_t>(added.size());
        for (auto i = m_survey.m_entries.size(); i-- > first;) {
            if (m_survey.m_entries[i].status.isFolder())
                m_pending.push_back(static_cast<std::uint32_t>(i));
        }
        return 0;
    }

    int append(const std::string& name, const EntryStatus& status, std::uint32_t parent)
    {
        if (status.isMountPoint)
            return EBUSY;
        if (status.isImmutable)
            return EPERM;
        if (status.size < 0)
            return EIO;
        if (m_survey.m_names.size() > UINT32_MAX - 4096)
            return EOVERFLOW;
        m_survey.m_entries.push_back({.status = status,
            .nameOffset = static_cast<std::uint32_t>(m_survey.m_names.size()),
            .parent = parent});
        m_survey.m_names.append(name).push_back('\0');
        if (status.isFile() && (status.links == 1 || m_linked.insert(status.identity).second)) {
            m_survey.m_contentBytes = saturatingSum(m_survey.m_contentBytes, status.size);
            m_survey.m_allocatedBytes
                = saturatingSum(m_survey.m_allocatedBytes, std::min(status.size, status.allocated));
        }
        return 0;
    }

    int m_parent;
    const std::string& m_name;
    const std::stop_token& m_stop;
    TreeSurvey m_survey;
    std::vector<Identity> m_identities;
    std::vector<std::uint32_t> m_pending; ///< entries that are folders, the next one last
    std::set<Identity> m_linked;
    std::string m_failedName;
};

Result<TreeSurvey, TreeFailure> surveyTree(
    int folder, const std::string& name, const std::stop_token& stop)
{
    return Surveyor(folder, name, stop).run();
}

namespace {

Result<Done, TreeFailure> checkFolder(
    const TreeSurvey& survey, TreeCursor& cursor, std::uint32_t number)
{
    const auto& folder = survey.folders()[number];
    const std::string ownName = survey.name(survey.entries()[folder.entry]);
    const int opened = cursor.go(number);
    if (opened < 0)
        return TreeFailure{errno, ownName};
    const auto listing = listFolder(opened);
    if (!listing)
        return TreeFailure{listing.error(), ownName};
    if (listing->entries().size() != folder.count)
        return TreeFailure{ESTALE, ownName};
    for (const auto& listed : listing->entries()) {
        const auto* known = survey.find(folder, listing->name(listed));
        const auto now = statusOf(opened, listing->nameText(listed));
        if (!known || !now || !isUntouched(known->status, *now))
            return TreeFailure{ESTALE, std::string(listing->name(listed))};
    }
    return Done{};
}

} // namespace

Result<Done, TreeFailure> checkUnchanged(
    const TreeSurvey& survey, int folder, const std::string& name, const std::stop_token& stop)
{
    const auto& top = survey.entries().front();
    const auto now = statusOf(folder, name.c_str());
    if (!now || !isUntouched(top.status, *now))
        return TreeFailure{ESTALE, name};
    if (!top.status.isFolder())
        return Done{};
    auto opened = openFolderIn(folder, name.c_str());
    if (!opened)
        return TreeFailure{opened.error(), name};
    const auto identities = folderIdentities(survey);
    TreeCursor cursor(survey, identities, std::move(*opened));
    for (std::uint32_t number = 0; number < survey.folders().size(); ++number) {
        if (stop.stop_requested())
            return TreeFailure{ECANCELED, name};
        if (auto checked = checkFolder(survey, cursor, number); !checked)
            return checked;
    }
    return Done{};
}

bool holdsAllOf(const TreeSurvey& survey, int folder, const std::string& name)
{
    const auto& top = survey.entries().front().status;
    const auto now = statusOf(folder, name.c_str());
    if (!now || now->identity != top.identity)
        return false;
    if (!top.isFolder())
        return true;
    auto opened = openFolderIn(folder, name.c_str());
    if (!opened)
        return false;
    const auto identities = folderIdentities(survey);
    TreeCursor cursor(survey, identities, std::move(*opened));
    for (std::uint32_t number = 0; number < survey.folders().size(); ++number) {
        const int reached = cursor.go(number);
        const auto isThere = [&](const TreeSurvey::Entry& entry) {
            const auto status = statusOf(reached, survey.name(entry));
            return status && status->identity == entry.status.identity;
        };
        if (reached < 0
            || !std::ranges::all_of(survey.entriesOf(survey.folders()[number]), isThere))
            return false;
    }
    return true;
}

} // namespace kestavon
