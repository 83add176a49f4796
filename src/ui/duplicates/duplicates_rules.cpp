#include "ui/duplicates/duplicates_rules.h"

#include "ui/widgets/display_text.h"

namespace kestavon {

QString duplicatesSummary(std::size_t groups, std::int64_t reclaimableBytes)
{
    return u"%1 groups · %2 reclaimable"_s.arg(QString::number(groups), byteText(reclaimableBytes));
}

QString copiesText(std::size_t files)
{
    return u"%1 copies"_s.arg(files);
}

QString savingText(std::int64_t bytes)
{
    return u"Save "_s + byteText(bytes);
}

QString progressText(const DuplicateProgress& progress)
{
    if (progress.bytesToDo <= 0)
        return {};
    return u"%1 of %2"_s.arg(byteText(progress.bytesDone), byteText(progress.bytesToDo));
}

ConfirmationTexts mergeQuestion(bool toTrash, std::size_t groups)
{
    if (toTrash)
        return {
            .title = u"Merge %1 duplicate groups?"_s.arg(groups),
            .message = u"The newest copy in each group is kept. All other copies move to the "
                       u"Trash."_s,
            .action = u"Merge & Move Copies to Trash"_s,
            .destructive = true,
        };
    return {
        .title = u"Permanently delete duplicate copies?"_s,
        .message = u"This cannot be undone. All duplicate copies except the newest will be "
                   u"permanently deleted."_s,
        .action = u"Merge & Delete Forever"_s,
        .destructive = true,
    };
}

} // namespace kestavon
