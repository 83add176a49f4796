#include "ui/safearea/held_items.h"

#include "ui/safearea/safe_area_rules.h"
#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

namespace kestavon {

HeldItems::HeldItems(Source source, Busy busy, std::shared_ptr<const Calendar> calendar)
    : m_source(std::move(source))
    , m_busy(std::move(busy))
    , m_calendar(std::move(calendar))
{
}

const QuarantineItem* HeldItems::at(int row) const
{
    const auto& items = m_source();
    const auto i = static_cast<std::size_t>(row);
    return row >= 0 && i < items.size() ? &items[i] : nullptr;
}

std::optional<QuarantineItem> HeldItems::itemAt(int row) const
{
    const auto* item = at(row);
    return item ? std::optional(*item) : std::nullopt;
}

QString HeldItems::nameText(int row) const
{
    const auto* item = at(row);
    return item ? fileNameText(originalName(*item)) : QString();
}

QString HeldItems::pathText(int row) const
{
    const auto* item = at(row);
    if (!item)
        return {};
    return item->originalPath.empty() ? u"Where it came from is not known."_s
                                      : fileNameText(item->originalPath);
}

FilePath HeldItems::originalPath(int row) const
{
    const auto* item = at(row);
    return {item ? item->originalPath : std::string()};
}

FilePath HeldItems::heldPath(int row) const
{
    const auto* item = at(row);
    return {item ? item->quarantinedPath : std::string()};
}

QString HeldItems::reasonText(int row) const
{
    const auto* item = at(row);
    return item ? fileNameText(item->reason) : QString();
}

QString HeldItems::movedText(int row) const
{
    const auto* item = at(row);
    return item ? kestavon::movedText(item->date, *m_calendar) : QString();
}

bool HeldItems::isBusy(int row) const
{
    const auto* item = at(row);
    return item && isBusy(item->id);
}

void HeldItems::reload()
{
    Q_EMIT rowsChanged();
    refresh();
}

void HeldItems::refresh()
{
    ++m_revision;
    Q_EMIT changed();
}

} // namespace kestavon
