#include "ui/duplicates/duplicate_rows.h"

#include "ui/duplicates/duplicates_rules.h"
#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <algorithm>

namespace kestavon {

namespace {

std::size_t index(int number)
{
    return static_cast<std::size_t>(std::max(number, 0));
}

} // namespace

DuplicateRows::DuplicateRows(AppModel& model)
    : m_model(model)
{
}

double DuplicateRows::lowestGroup()
{
    using L = DuplicateLayout;
    return L::cardGap + L::headingHeight + 2 * (L::panelPadding + L::fileHeight) + L::panelMargin;
}

double DuplicateRows::rowTop(int row) const
{
    return layout().rowTop(index(row));
}

int DuplicateRows::rowAt(double position) const
{
    return static_cast<int>(layout().rowAt(position));
}

double DuplicateRows::groupTop(int group) const
{
    return layout().groupTop(std::min(index(group), list().size()));
}

int DuplicateRows::groupAt(double position) const
{
    return static_cast<int>(layout().groupAt(position));
}

std::optional<DuplicateLayout::Row> DuplicateRows::at(int row) const
{
    if (row < 0 || row >= rowCount())
        return std::nullopt;
    return layout().row(index(row));
}

std::optional<std::size_t> DuplicateRows::headedGroup(int row) const
{
    const auto found = at(row);
    return found && !found->member ? std::optional(found->group) : std::nullopt;
}

std::optional<std::size_t> DuplicateRows::recordPosition(int row) const
{
    const auto found = at(row);
    if (!found || !found->member)
        return std::nullopt;
    return list().members(found->group)[*found->member].position;
}

bool DuplicateRows::isHeading(int row) const
{
    return headedGroup(row).has_value();
}

QString DuplicateRows::nameText(int row) const
{
    const auto found = at(row);
    if (!found)
        return {};
    const auto member = list().members(found->group)[found->member.value_or(0)];
    return fileNameText(list().records()->name(member.position));
}

QString DuplicateRows::copiesText(int row) const
{
    const auto group = headedGroup(row);
    return group ? kestavon::copiesText(list().members(*group).size()) : QString();
}

QString DuplicateRows::savingText(int row) const
{
    const auto group = headedGroup(row);
    return group ? kestavon::savingText(list().reclaimableBytes(*group)) : QString();
}

QString DuplicateRows::pathText(int row) const
{
    return fileNameText(filePath(row).bytes);
}

FilePath DuplicateRows::filePath(int row) const
{
    const auto position = recordPosition(row);
    return {position ? list().records()->path(*position) : std::string()};
}

QString DuplicateRows::dateText(int row) const
{
    const auto position = recordPosition(row);
    return position
        ? momentText(list().records()->modifiedAt(*position), *m_model.platform().calendar)
        : QString();
}

bool DuplicateRows::isKept(int row) const
{
    const auto found = at(row);
    return found && found->member && *found->member == list().keptMember(found->group);
}

void DuplicateRows::reload()
{
    ++m_revision;
    Q_EMIT changed();
}

} // namespace kestavon
