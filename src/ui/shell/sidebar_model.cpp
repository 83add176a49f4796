#include "ui/shell/sidebar_model.h"

#include "ui/shell/shell_rules.h"

#include <algorithm>

namespace kestavon {

namespace {

QString text(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

} // namespace

SidebarModel::SidebarModel(AppModel& model)
    : m_model(model)
{
    for (const auto& group : sidebarGroups()) {
        for (const auto section : group.sections)
            m_rows.push_back({section, section == group.sections.front() ? group.title : "",
                badgeText(sidebarBadge(model, section))});
    }
    connect(&model, &AppModel::fieldChanged, this, &SidebarModel::follow);
}

int SidebarModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant SidebarModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto& row = m_rows[static_cast<std::size_t>(index.row())];
    const auto title = text(rawValue(row.section));
    switch (role) {
    case groupRole: return text(row.group);
    case Qt::DisplayRole:
    case titleRole: return title;
    case symbolRole: return text(lookOf(row.section).symbol);
    case badgeRole: return text(row.badge);
    case badgeColorRole: return text(lookOf(row.section).badgeColor);
    case selectedRole: return row.section == m_model.section();
    case nameRole:
        return row.badge.empty() ? title : title + QStringLiteral(", ") + text(row.badge);
    default: return {};
    }
}

QHash<int, QByteArray> SidebarModel::roleNames() const
{
    return {{groupRole, "group"}, {titleRole, "title"}, {symbolRole, "symbol"},
        {badgeRole, "badge"}, {badgeColorRole, "badgeColor"}, {selectedRole, "selected"},
        {nameRole, "accessibleName"}};
}

int SidebarModel::rowOf(AppSection section) const
{
    return static_cast<int>(std::ranges::find(m_rows, section, &Row::section) - m_rows.begin());
}

void SidebarModel::follow(AppModel::Field field)
{
    using Field = AppModel::Field;
    switch (field) {
    case Field::section: Q_EMIT dataChanged(index(0), index(rowCount() - 1), {selectedRole}); break;
    case Field::junkGroups: refreshBadge(AppSection::smartClean); break;
    case Field::duplicates: refreshBadge(AppSection::duplicates); break;
    case Field::cleanupCandidates: refreshBadge(AppSection::cleaner); break;
    case Field::installedApps: refreshBadge(AppSection::appUninstaller); break;
    case Field::findings: refreshBadge(AppSection::security); break;
    case Field::quarantine: refreshBadge(AppSection::quarantine); break;
    default: break;
    }
}

void SidebarModel::refreshBadge(AppSection section)
{
    const int row = rowOf(section);
    auto& shown = m_rows[static_cast<std::size_t>(row)].badge;
    if (auto badge = badgeText(sidebarBadge(m_model, section)); badge != shown) {
        shown = std::move(badge);
        Q_EMIT dataChanged(index(row), index(row), {badgeRole, nameRole});
    }
}

} // namespace kestavon
