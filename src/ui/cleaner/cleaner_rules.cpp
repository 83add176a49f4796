#include "ui/cleaner/cleaner_rules.h"

#include "core/model/questions.h"
#include "ui/widgets/display_text.h"

namespace kestavon {

SuggestionLook suggestionLook(std::string_view reason)
{
    if (reason.find("cache") != std::string_view::npos)
        return {.symbol = "cylinder.split.1x2", .color = "blue"};
    return {.symbol = "arrow.down.circle", .color = "teal"};
}

QString cleanupSelectionText(std::size_t selected, std::size_t suggested)
{
    return u"%1 of %2 selected"_s.arg(QString::number(selected), QString::number(suggested));
}

QString reclaimText(std::int64_t bytes)
{
    return byteText(bytes) + u" to reclaim"_s;
}

bool allAreSelected(std::size_t selected, std::size_t suggested)
{
    return selected == suggested;
}

QString modifiedText(std::optional<Timestamp> modifiedAt, const Calendar& calendar)
{
    return u"Modified "_s + momentText(modifiedAt, calendar);
}

ConfirmationTexts cleanupQuestion(std::size_t selected)
{
    return textsOf(questions::moveToSafeArea(selected));
}

std::int64_t selectedBytes(const CandidateList& candidates, const CandidateSelection& selection)
{
    std::int64_t bytes = 0;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        if (selection.containsAt(candidates, i))
            bytes = saturatingSum(bytes, candidates.estimatedBytes(i));
    }
    return bytes;
}

} // namespace kestavon
