#include "ui/startup/startup_rows.h"

#include "core/domain/startup_item.h"
#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <algorithm>
#include <utility>

namespace kestavon {

namespace {

constexpr double sectionGap = 18; // above the headings of later sections
constexpr double endMargin = 28; // below the last card

} // namespace

StartupRows::StartupRows(Source source, Busy busy)
    : m_source(std::move(source))
    , m_busy(std::move(busy))
{
    arrange();
}

const StartupRows::Section* StartupRows::sectionOf(int row) const
{
    if (row < 0 || row >= m_rowCount)
        return nullptr;
    const auto after = std::ranges::upper_bound(m_sections, row, {}, &Section::headingRow);
    return &*std::prev(after);
}

const StartupItem* StartupRows::itemAt(int row) const
{
    const auto* section = sectionOf(row);
    if (!section || row == section->headingRow)
        return nullptr;
    return &m_source()[section->firstItem
        + static_cast<std::size_t>(row - section->headingRow - 1)];
}

bool StartupRows::isHeading(int row) const
{
    const auto* section = sectionOf(row);
    return section && row == section->headingRow;
}

QString StartupRows::titleText(int row) const
{
    if (const auto* item = itemAt(row))
        return fileNameText(item->label);
    if (!isHeading(row))
        return {};
    return sectionOf(row)->isSystem ? u"System Launch Agents & Daemons"_s : u"Your Launch Agents"_s;
}

QString StartupRows::detailText(int row) const
{
    if (const auto* item = itemAt(row))
        return fileNameText(item->programPath);
    if (!isHeading(row))
        return {};
    return sectionOf(row)->isSystem ? u"Protected — managed by macOS"_s
                                    : u"Installed by you or third-party apps — safe to remove"_s;
}

QString StartupRows::idText(int row) const
{
    const auto* item = itemAt(row);
    return item ? displayText(item->id.text()) : QString();
}

FilePath StartupRows::filePath(int row) const
{
    const auto* item = itemAt(row);
    return {item ? item->plistURL : std::string()};
}

QString StartupRows::pathText(int row) const
{
    return fileNameText(filePath(row).bytes);
}

bool StartupRows::isProtected(int row) const
{
    const auto* item = itemAt(row);
    return item && item->isSystem;
}

bool StartupRows::isBusy(int row) const
{
    const auto* item = itemAt(row);
    return item && m_busy(item->id);
}

double StartupRows::rowTop(int row) const
{
    const auto* section = sectionOf(row);
    if (!section)
        return row < 0 ? 0 : m_length;
    if (row == section->headingRow)
        return section->top;
    return cardTop(static_cast<int>(section - m_sections.data()))
        + itemHeight() * (row - section->headingRow - 1);
}

int StartupRows::rowAt(double position) const
{
    if (m_sections.empty())
        return 0;
    const auto after = std::ranges::upper_bound(m_sections, position, {}, &Section::top);
    const auto& section = after == m_sections.begin() ? *after : *std::prev(after);
    const auto below = position - cardTop(static_cast<int>(&section - m_sections.data()));
    if (below < 0)
        return section.headingRow;
    return section.headingRow + 1
        + std::min(section.itemCount - 1, static_cast<int>(below / itemHeight()));
}

double StartupRows::cardTop(int section) const
{
    if (section < 0 || section >= sectionCount())
        return m_length;
    return m_sections[static_cast<std::size_t>(section)].top + headingHeight()
        + (section > 0 ? sectionGap : 0);
}

double StartupRows::cardBottom(int section) const
{
    if (section < 0 || section >= sectionCount())
        return m_length;
    return cardTop(section)
        + itemHeight() * m_sections[static_cast<std::size_t>(section)].itemCount;
}

void StartupRows::reload()
{
    arrange();
    Q_EMIT reloaded();
    refresh();
}

void StartupRows::refresh()
{
    ++m_revision;
    Q_EMIT changed();
}

void StartupRows::arrange()
{
    m_sections.clear();
    m_rowCount = 0;
    m_length = 0;
    const auto& items = m_source();
    const auto ownEnd = std::ranges::find(items, true, &StartupItem::isSystem);
    const auto ownCount = static_cast<std::size_t>(ownEnd - items.begin());
    const auto add = [this](bool isSystem, std::size_t first, std::size_t count) {
        if (count == 0)
            return;
        m_sections.push_back({.isSystem = isSystem,
            .firstItem = first,
            .itemCount = static_cast<int>(count),
            .headingRow = m_rowCount,
            .top = m_length});
        m_rowCount += 1 + static_cast<int>(count);
        m_length = cardBottom(sectionCount() - 1);
    };
    add(false, 0, ownCount);
    add(true, ownCount, items.size() - ownCount);
    if (!m_sections.empty())
        m_length += endMargin;
}

} // namespace kestavon
