#include "ui/safearea/safe_area_rules.h"

#include "core/domain/removal_guard.h"
#include "core/model/questions.h"
#include "ui/widgets/display_text.h"

#include <algorithm>
#include <optional>

namespace kestavon {

ConfirmationTexts restoreAllQuestion(std::size_t count)
{
    return textsOf(questions::restoreAll(count));
}

ConfirmationTexts deleteAllQuestion(std::size_t count)
{
    return textsOf(questions::deleteAll(count));
}

ConfirmationTexts deleteEarlierQuestion(const QString& name)
{
    return textsOf(questions::deleteHeld(name.toStdString()));
}

QString earlierText(std::size_t count)
{
    return u"%1 items from earlier"_s.arg(count);
}

QString movedText(Timestamp date, const Calendar& calendar)
{
    const auto known = date == Timestamp{} ? std::nullopt : std::optional(date);
    return u"Moved "_s + momentText(known, calendar);
}

std::string originalName(const QuarantineItem& item)
{
    if (!item.originalPath.empty())
        return std::string(lastComponent(item.originalPath));
    // Held items are called by their identifier, a hyphen and what they were called.
    constexpr std::size_t prefix = 37;
    const auto held = lastComponent(item.quarantinedPath);
    return std::string(held.substr(std::min(prefix, held.size())));
}

std::string pathIn(const std::string& folder, const std::string& name)
{
    return folder.ends_with('/') ? folder + name : folder + '/' + name;
}

} // namespace kestavon
