#pragma once

#include "core/model/app_model.h"

#include <QAbstractListModel>

#include <vector>

namespace kestavon {

/// The rows of the sidebar, top to bottom; badges and selection follow the model. Main thread.
class SidebarModel final : public QAbstractListModel {
    Q_OBJECT
public:
    enum Role {
        groupRole = Qt::UserRole + 1, ///< the group's title on its first row, else empty
        titleRole,
        symbolRole,
        badgeRole, ///< text of the capsule; empty for none
        badgeColorRole, ///< a colour's name
        selectedRole,
        nameRole, ///< title and badge, as a screen reader says them
    };

    explicit SidebarModel(AppModel& model);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    AppSection sectionAt(int row) const { return m_rows[static_cast<std::size_t>(row)].section; }
    int rowOf(AppSection section) const;

private:
    struct Row {
        AppSection section;
        std::string_view group;
        std::string badge;
    };

    void follow(AppModel::Field field);
    void refreshBadge(AppSection section);

    AppModel& m_model;
    std::vector<Row> m_rows;
};

} // namespace kestavon
