#pragma once

#include "core/model/app_model.h"
#include "ui/duplicates/duplicate_layout.h"
#include "ui/widgets/file_path.h"

#include <QObject>
#include <QString>

#include <optional>

namespace kestavon {

/// The model's groups of duplicates as rows from 0, each group's heading and then its files, and
/// where they stand (see DuplicateLayout). A row or group that does not exist is blank: ask again
/// whenever the revision has changed. Main thread; every answer is found at once, however many
/// groups there are.
class DuplicateRows final : public QObject {
    Q_OBJECT
    Q_PROPERTY(int rowCount READ rowCount NOTIFY changed)
    Q_PROPERTY(int groupCount READ groupCount NOTIFY changed)
    Q_PROPERTY(int revision READ revision NOTIFY changed)
    Q_PROPERTY(double cardGap READ cardGap CONSTANT)
    Q_PROPERTY(double headingHeight READ headingHeight CONSTANT)
    Q_PROPERTY(double panelMargin READ panelMargin CONSTANT)
    Q_PROPERTY(double fileHeight READ fileHeight CONSTANT)
    /// Of a group of two, with the gap above.
    Q_PROPERTY(double lowestGroup READ lowestGroup CONSTANT)
public:
    explicit DuplicateRows(AppModel& model);

    int rowCount() const { return static_cast<int>(layout().rowCount()); }
    int groupCount() const { return static_cast<int>(list().size()); }
    int revision() const { return m_revision; }

    /// @name Places, in pixels
    /// @{
    static double cardGap() { return DuplicateLayout::cardGap; }
    static double headingHeight() { return DuplicateLayout::headingHeight; }
    static double panelMargin() { return DuplicateLayout::panelMargin; }
    static double fileHeight() { return DuplicateLayout::fileHeight; }
    static double lowestGroup();
    Q_INVOKABLE double rowTop(int row) const;
    Q_INVOKABLE int rowAt(double position) const;
    Q_INVOKABLE double groupTop(int group) const;
    Q_INVOKABLE int groupAt(double position) const;
    /// @}

    /// @name What stands there
    /// @{
    Q_INVOKABLE bool isHeading(int row) const;
    /// The file's last path component; on a heading, that of the group's first file.
    Q_INVOKABLE QString nameText(int row) const;
    Q_INVOKABLE QString copiesText(int row) const; ///< of a heading
    Q_INVOKABLE QString savingText(int row) const; ///< of a heading
    Q_INVOKABLE QString pathText(int row) const; ///< of a file, here and below
    Q_INVOKABLE kestavon::FilePath filePath(int row) const;
    Q_INVOKABLE QString dateText(int row) const; ///< when it was modified
    /// Whether it is the copy that stays when the group is merged.
    Q_INVOKABLE bool isKept(int row) const;
    /// @}

    /// The groups that the model publishes are others now.
    void reload();

Q_SIGNALS:
    void changed();

private:
    const DuplicateList& list() const { return *m_model.duplicates(); }
    DuplicateLayout layout() const { return DuplicateLayout(list()); }
    std::optional<DuplicateLayout::Row> at(int row) const;
    /// The group that this row is the heading of.
    std::optional<std::size_t> headedGroup(int row) const;
    /// Where the file of this row stands in the list's records.
    std::optional<std::size_t> recordPosition(int row) const;

    AppModel& m_model;
    int m_revision = 0;
};

} // namespace kestavon
