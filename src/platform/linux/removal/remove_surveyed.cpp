#include "platform/linux/removal/remove_surveyed.h"

#include "platform/linux/removal/folder_listing.h"
#include "platform/linux/removal/remove_tree.h"
#include "platform/linux/removal/tree_cursor.h"

#include <cerrno>
#include <tuple>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestavon {

namespace {

/// Deletes the entries of one surveyed folder; its folders were emptied before.
void removeEntriesOf(const TreeSurvey& survey, const TreeSurvey::Folder& folder, int opened,
    SurveyedRemoval& removal, JournalEntry& journal)
{
    const auto fail = [&removal](int error) {
        if (removal.error == 0)
            removal.error = error;
    };
    const auto listing = listFolder(opened);
    if (!listing) {
        fail(listing.error());
        return;
    }
    const auto& own = survey.entries()[folder.entry].status;
    const bool needsLoan
        = own.owner == ::geteuid() && own.owner != 0 && (own.mode & S_IRWXU) != S_IRWXU;
    if (needsLoan)
        noteLoan(journal, opened, {}, own, own.permissions() | S_IRWXU);
    const bool isMadeWritable = needsLoan && ::fchmod(opened, own.permissions() | S_IRWXU) == 0;
    for (const auto& listed : listing->entries()) {
        const auto* name = listing->nameText(listed);
        const auto* known = survey.find(folder, name);
        const auto now = statusOf(opened, name);
        if (!now && now.error() == ENOENT)
            continue;
        if (!known || !now || !isUnchanged(known->status, *now)) {
            removal.keptSomething = true;
            continue;
        }
        const int error = removeEntry(opened, name, known->status.isFolder() ? AT_REMOVEDIR : 0);
        if (error == 0) {
            removal.removedSomething = true;
            continue;
        }
        if (error != ENOTEMPTY && error != EEXIST) // What lies in it was reported already.
            fail(error);
    }
    if (isMadeWritable) // Emptied or not: the folder above compares it with what was surveyed.
        std::ignore = ::fchmod(opened, own.permissions());
}

} // namespace

SurveyedRemoval removeSurveyed(
    const TreeSurvey& survey, int folder, const std::string& name, JournalEntry& journal)
{
    SurveyedRemoval removal;
    const auto& top = survey.entries().front().status;
    if (top.isFolder()) {
        auto opened = openFolderIn(folder, name.c_str());
        if (!opened) {
            removal.error = opened.error();
            return removal;
        }
        const auto identities = folderIdentities(survey);
        TreeCursor cursor(survey, identities, std::move(*opened));
        for (auto number = survey.folders().size(); number-- > 0;) {
            const int reached = cursor.go(static_cast<std::uint32_t>(number));
            if (reached < 0) {
                if (removal.error == 0)
                    removal.error = errno;
                continue;
            }
            removeEntriesOf(survey, survey.folders()[number], reached, removal, journal);
        }
    }
    const int error = removeEntry(folder, name.c_str(), top.isFolder() ? AT_REMOVEDIR : 0);
    removal.isGone = error == 0;
    if (error != 0 && removal.error == 0 && !removal.keptSomething)
        removal.error = error;
    return removal;
}

} // namespace kestavon
