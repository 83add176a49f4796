#include "platform/linux/removal/copied_remainder.h"

#include "platform/linux/removal/file_copy.h"
#include "platform/linux/removal/metadata.h"
#include "platform/linux/removal/remove_tree.h"
#include "platform/linux/removal/retry.h"
#include "platform/linux/removal/tree_cursor.h"

#include <cerrno>
#include <tuple>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestavon {

namespace {

FileDescriptor openForReading(int folder, const char* name)
{
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    return FileDescriptor(retrying([&] { return ::openat(folder, name, flags); }));
}

/// Goes through an item beside its copy, the innermost folders first, and deletes what the copy
/// holds too, or only sees whether it holds all.
class RemainderRemover {
public:
    enum class Deed { remove, compare };

    RemainderRemover(const TreeSurvey& survey, int folder, const std::string& name, Deed deed)
        : m_survey(survey)
        , m_deed(deed)
        , m_folder(folder)
        , m_name(name)
        , m_identities(folderIdentities(survey))
        , m_copyIdentities(survey.folders().size())
    {
    }

    void run(int copyFolder, const std::string& copyName)
    {
        const auto& top = m_survey.entries().front();
        if (top.status.isFolder())
            removeTopFolder(copyFolder, copyName.c_str());
        else
            removeIfCopied(m_folder, m_name.c_str(), copyFolder, copyName.c_str(), top.status);
    }

    /// Something could not be deleted or compared.
    bool hasFailed() const { return m_failed; }
    /// The copy held everything.
    bool foundAll() const { return !m_failed && !m_lacksSomething; }

private:
    void removeTopFolder(int copyFolder, const char* copyName)
    {
        auto remainder = openFolderIn(m_folder, m_name.c_str());
        auto copy = openFolderIn(copyFolder, copyName);
        m_failed = !remainder;
        if (!remainder || !copy)
            return;
        if (const auto status = statusOf(copy->get(), ""))
            m_copyIdentities[0] = status->identity;
        TreeCursor cursor(m_survey, m_identities, std::move(*remainder));
        TreeCursor copyCursor(m_survey, m_copyIdentities, std::move(*copy));
        const auto folders = static_cast<std::uint32_t>(m_survey.folders().size());
        for (std::uint32_t number = 0; number < folders; ++number)
            findCopiesOfFolders(copyCursor, number);
        for (auto number = folders; number-- > 0;)
            removeEntries(cursor, copyCursor, number);
        if (isCopied(0))
            remove(m_folder, m_name.c_str(), AT_REMOVEDIR);
    }

    void findCopiesOfFolders(TreeCursor& copyCursor, std::uint32_t number)
    {
        const int copy = isCopied(number) ? copyCursor.go(number) : -1;
        if (copy < 0)
            return;
        for (const auto& entry : m_survey.entriesOf(m_survey.folders()[number])) {
            if (!entry.status.isFolder())
                continue;
            const auto status = statusOf(copy, m_survey.name(entry));
            if (status && status->isFolder())
                m_copyIdentities[entry.folder] = status->identity;
        }
    }

    /// Deletes what lies in one folder; its folders were emptied before.
    void removeEntries(TreeCursor& cursor, TreeCursor& copyCursor, std::uint32_t number)
    {
        const auto& folder = m_survey.folders()[number];
        if (!isCopied(number)) {
            m_lacksSomething = true;
            return;
        }
        if (folder.count == 0)
            return;
        const int opened = cursor.go(number);
        const int copy = opened < 0 ? -1 : copyCursor.go(number);
        if (copy < 0)
            return note(errno);
        const auto& own = m_survey.entries()[folder.entry].status;
        const bool isMadeWritable = m_deed == Deed::remove && own.owner == ::geteuid()
            && own.owner != 0 && (own.mode & S_IRWXU) != S_IRWXU
            && ::fchmod(opened, own.permissions() | S_IRWXU) == 0;
        for (const auto& entry : m_survey.entriesOf(folder)) {
            const auto* name = m_survey.name(entry);
            if (!entry.status.isFolder())
                removeIfCopied(opened, name, copy, name, entry.status);
            else if (isCopied(entry.folder))
                remove(opened, name, AT_REMOVEDIR);
        }
        if (isMadeWritable)
            std::ignore = ::fchmod(opened, own.permissions());
    }

    bool isCopied(std::uint32_t number) const { return m_copyIdentities[number] != Identity(); }

    void remove(int folder, const char* name, int flags)
    {
        if (m_deed == Deed::remove)
            note(removeEntry(folder, name, flags));
    }

    void note(int error)
    {
        if (error != 0 && error != ENOTEMPTY && error != EEXIST)
            m_failed = true;
    }

    void removeIfCopied(
        int folder, const char* name, int copyFolder, const char* copyName, const EntryStatus& seen)
    {
        if (!isSame(folder, name, copyFolder, copyName, seen)) {
            m_lacksSomething = true;
            return;
        }
        const auto now = statusOf(folder, name);
        if (now && isUnchanged(seen, *now))
            remove(folder, name, 0);
    }

    bool isSame(
        int folder, const char* name, int copyFolder, const char* copyName, const EntryStatus& seen)
    {
        const auto copy = statusOf(copyFolder, copyName);
        if (!copy || copy->identity == seen.identity
            || (copy->mode & S_IFMT) != (seen.mode & S_IFMT))
            return false;
        if (seen.isLink()) {
            const auto text = linkText(folder, name);
            const auto copiedText = linkText(copyFolder, copyName);
            return text && copiedText && *text == *copiedText;
        }
        if (!seen.isFile())
            return copy->deviceNumber == seen.deviceNumber;
        if (copy->size != seen.size)
            return false;
        const auto opened = openForReading(folder, name);
        const auto copyOpened = openForReading(copyFolder, copyName);
        if (!opened || !copyOpened) {
            note(errno);
            return false;
        }
        const auto status = statusOf(opened.get(), "");
        return status && isUnchanged(seen, *status)
            && holdSameBytes(opened.get(), copyOpened.get());
    }

    const TreeSurvey& m_survey;
    Deed m_deed;
    int m_folder;
    const std::string& m_name;
    std::vector<Identity> m_identities;
    std::vector<Identity> m_copyIdentities; ///< unset for folders that the copy does not have
    bool m_failed = false;
    bool m_lacksSomething = false;
};

} // namespace

Remainder removeCopiedRemainder(
    int folder, const std::string& name, int copyFolder, const std::string& copyName)
{
    const auto survey = surveyTree(folder, name, {});
    if (!survey)
        return survey.error().error == ENOENT ? Remainder::none : Remainder::notRemovable;
    RemainderRemover remover(*survey, folder, name, RemainderRemover::Deed::remove);
    remover.run(copyFolder, copyName);
    const auto left = statusOf(folder, name.c_str());
    if (!left && left.error() == ENOENT)
        return Remainder::none;
    return remover.hasFailed() ? Remainder::notRemovable : Remainder::notCopied;
}

bool isCopied(int folder, const std::string& name, int copyFolder, const std::string& copyName)
{
    const auto survey = surveyTree(folder, name, {});
    if (!survey)
        return false;
    RemainderRemover comparer(*survey, folder, name, RemainderRemover::Deed::compare);
    comparer.run(copyFolder, copyName);
    return comparer.foundAll();
}

} // namespace kestavon
