#include "platform/linux/removal/copy_verification.h"

#include <cerrno>
#include <cstring>
#include <map>

namespace kestavon {

namespace {

bool isLike(const EntryStatus& original, const EntryStatus& copy)
{
    if ((original.mode & S_IFMT) != (copy.mode & S_IFMT))
        return false;
    if (original.isFile())
        return original.size == copy.size;
    if (original.isLink()) // Some file systems do not tell how long a link's text is.
        return original.size == copy.size || original.size == 0 || copy.size == 0;
    return original.isFolder() || original.deviceNumber == copy.deviceNumber;
}

} // namespace

int verifyCopy(const TreeSurvey& original, int copyFolder, const std::string& copyName,
    const std::stop_token& stop)
{
    const auto survey = surveyTree(copyFolder, copyName, stop);
    if (!survey)
        return survey.error().error == ECANCELED ? ECANCELED : EIO;
    // Surveys of equal trees list equal entries at equal positions.
    if (survey->entries().size() != original.entries().size())
        return EIO;
    std::map<Identity, Identity> copiesOfLinked;
    for (std::size_t i = 0; i < original.entries().size(); ++i) {
        const auto& entry = original.entries()[i];
        const auto& copy = survey->entries()[i];
        const bool hasSameName
            = i == 0 || std::strcmp(original.name(entry), survey->name(copy)) == 0;
        if (!hasSameName || entry.parent != copy.parent || !isLike(entry.status, copy.status))
            return EIO;
        if (entry.status.isFolder() || entry.status.links < 2)
            continue;
        const auto [known, isNew]
            = copiesOfLinked.try_emplace(entry.status.identity, copy.status.identity);
        if (!isNew && known->second != copy.status.identity)
            return EIO;
    }
    return 0;
}

} // namespace kestavon
