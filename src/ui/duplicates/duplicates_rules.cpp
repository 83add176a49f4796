#include "ui/duplicates/duplicates_rules.h"

#include "core/model/questions.h"
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
    return textsOf(questions::mergeDuplicates(toTrash, groups));
}

} // namespace kestavon
