#pragma once

#include "core/model/app_model.h"
#include "ui/widgets/confirmation.h"
#include "ui/widgets/file_path.h"

#include <QObject>
#include <QString>

#include <optional>

namespace kestavon {

/// The Cleaner screen: the suggestions of the last scan, each with its tick, and their move to the
/// Safe Area. The ticks are the model's. Main thread.
class CleanerState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(int rowCount READ rowCount NOTIFY rowsChanged)
    Q_PROPERTY(int contentRevision READ contentRevision NOTIFY rowsChanged)
    Q_PROPERTY(int selectionRevision READ selectionRevision NOTIFY selectionChanged)
    Q_PROPERTY(QString selectionText READ selectionText NOTIFY selectionChanged)
    Q_PROPERTY(QString reclaimText READ reclaimText NOTIFY selectionChanged)
    /// "Select All", or "Deselect All" while every suggestion is selected.
    Q_PROPERTY(QString allLabel READ allLabel NOTIFY selectionChanged)
    Q_PROPERTY(bool canMove READ canMove NOTIFY selectionChanged)
    /// A move is under way.
    Q_PROPERTY(bool moving READ moving NOTIFY selectionChanged)
    Q_PROPERTY(kestavon::Confirmation* confirmation READ confirmation CONSTANT)
public:
    explicit CleanerState(AppModel& model);

    /// @name Suggestions, by number from 0
    /// A row that does not exist is blank: ask again whenever a revision has changed.
    /// @{
    int rowCount() const { return static_cast<int>(candidates().size()); }
    int contentRevision() const { return m_contentRevision; }
    int selectionRevision() const { return m_selectionRevision; }
    Q_INVOKABLE QString nameText(int row) const;
    Q_INVOKABLE QString pathText(int row) const;
    Q_INVOKABLE kestavon::FilePath filePath(int row) const;
    Q_INVOKABLE QString reasonText(int row) const;
    Q_INVOKABLE QString modifiedText(int row) const;
    Q_INVOKABLE QString sizeText(int row) const;
    Q_INVOKABLE QString symbol(int row) const;
    Q_INVOKABLE QString symbolColor(int row) const;
    Q_INVOKABLE bool isSelected(int row) const;
    Q_INVOKABLE void toggle(int row);
    /// @}

    const QString& selectionText() const { return m_selectionText; }
    const QString& reclaimText() const { return m_reclaimText; }
    QString allLabel() const;
    bool canMove() const { return !m_moving && !m_model.selectedCleanupIDs().empty(); }
    bool moving() const { return m_moving; }
    Confirmation* confirmation() { return &m_confirmation; }

    /// Ticks every suggestion, or none when every one is ticked.
    Q_INVOKABLE void toggleAll();
    Q_INVOKABLE void selectAll() { m_model.selectAllCleanup(); }
    /// Asks whether to move the ticked suggestions, and moves them when the answer is yes. The
    /// question is withdrawn when the suggestions or the ticks change meanwhile.
    Q_INVOKABLE void askMove();
    Q_INVOKABLE void goToDashboard();

Q_SIGNALS:
    void rowsChanged();
    void selectionChanged();

private:
    const CandidateList& candidates() const { return *m_model.cleanupCandidates(); }
    std::optional<std::size_t> positionOf(int row) const;
    bool allSelected() const;
    void move();
    void updateSelection();

    AppModel& m_model;
    Confirmation m_confirmation;
    int m_contentRevision = 0;
    int m_selectionRevision = 0;
    QString m_selectionText;
    QString m_reclaimText;
    bool m_moving = false;
};

} // namespace kestavon
