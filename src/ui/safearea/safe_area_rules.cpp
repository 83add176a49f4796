#include "ui/safearea/safe_area_rules.h"

#include "ui/widgets/display_text.h"

namespace kestavon {

ConfirmationTexts restoreAllQuestion(std::size_t count)
{
    return {
        .title = u"Restore all %1 items?"_s.arg(count),
        .message = u"Files will be moved back to their original locations."_s,
        .action = u"Restore All"_s,
    };
}

ConfirmationTexts deleteAllQuestion(std::size_t count)
{
    return {
        .title = u"Permanently delete all %1 items?"_s.arg(count),
        .message = u"This cannot be undone. Files will be permanently removed from your Mac."_s,
        .action = u"Delete All Forever"_s,
        .destructive = true,
    };
}

QString movedText(Timestamp date, const Calendar& calendar)
{
    return u"Moved "_s + displayText(calendar.dateText(date));
}

} // namespace kestavon
