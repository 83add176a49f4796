#pragma once

#include "core/model/app_model.h"
#include "ui/widgets/file_path.h"

#include <QAbstractListModel>
#include <QTimer>

#include <limits>

namespace kestavon {

/// Milliseconds until the relative text of a moment may read differently: the next full second of
/// its age in the first minute, the next full minute after that.
std::int64_t millisecondsToNextAge(Timestamp moment, Timestamp now);

/// The path that an event's detail is; empty when it is something else.
FilePath pathOf(const ActivityEvent& event);

/// The newest events of the activity history, each with how long ago it was; while `ticking`, that
/// text is kept current. Of events in quick succession the first shows at once and the others
/// together, a moment later: restoring thousands of items must not draw the list thousands of
/// times. Main thread.
class ActivityListModel final : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(bool empty READ empty NOTIFY emptyChanged)
    Q_PROPERTY(int count READ count NOTIFY contentChanged)
    Q_PROPERTY(int revision READ revision NOTIFY contentChanged)
    Q_PROPERTY(bool ticking READ ticking WRITE setTicking NOTIFY tickingChanged)
public:
    enum Role { TitleRole = Qt::UserRole, DetailRole, AgeRole, PathRole };

    /// At most `limit` events of the model's history.
    explicit ActivityListModel(
        AppModel& model, int limit = std::numeric_limits<int>::max(), QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    bool empty() const { return m_count == 0; }

    /// @name The same for a list that asks for each row by its number
    /// A row that does not exist is blank. Ask again whenever the revision has changed.
    /// @{
    int count() const { return m_count; }
    int revision() const { return m_revision; }
    Q_INVOKABLE QString titleText(int row) const { return text(row, TitleRole); }
    Q_INVOKABLE QString detailText(int row) const { return text(row, DetailRole); }
    Q_INVOKABLE QString ageText(int row) const { return text(row, AgeRole); }
    Q_INVOKABLE kestavon::FilePath filePath(int row) const;
    /// @}

    /// Whether a view is showing the events.
    bool ticking() const { return m_ticking; }
    void setTicking(bool ticking);

Q_SIGNALS:
    void emptyChanged();
    void contentChanged();
    void tickingChanged();

private:
    QString text(int row, int role) const { return data(index(row), role).toString(); }
    void reloadSoon();
    void reload();
    void scheduleTick();
    void tick();

    AppModel& m_model;
    int m_limit;
    int m_count = 0; ///< rows announced to the views
    int m_revision = 0;
    bool m_ticking = false;
    QTimer m_timer;
    QTimer m_reloadPause; ///< runs after a reload; what happens meanwhile waits for its end
    bool m_isStale = false;
};

} // namespace kestavon
