#pragma once

#include "core/model/app_model.h"
#include "ui/duplicates/duplicate_rows.h"
#include "ui/widgets/confirmation.h"

#include <QObject>
#include <QString>

namespace kestavon {

/// The Duplicates screen: the search among the scanned files, what it found, and the merge that
/// keeps one copy of each. Main thread.
class DuplicatesState final : public QObject {
    Q_OBJECT
    /// There was a storage scan to search in.
    Q_PROPERTY(bool hasRecords READ hasRecords NOTIFY changed)
    Q_PROPERTY(bool analyzing READ analyzing NOTIFY changed)
    /// What the search does at the moment, or why it failed; empty otherwise.
    Q_PROPERTY(QString phaseText READ phaseText NOTIFY changed)
    Q_PROPERTY(bool failed READ failed NOTIFY changed)
    /// "1.2 GB of 6.84 GB" while the search runs and knows.
    Q_PROPERTY(QString progressText READ progressText NOTIFY progressChanged)
    Q_PROPERTY(bool canAnalyze READ canAnalyze NOTIFY changed)
    /// The search has found nothing.
    Q_PROPERTY(bool foundNone READ foundNone NOTIFY changed)
    Q_PROPERTY(bool foundSome READ foundSome NOTIFY changed)
    /// "38 groups · 6.84 GB reclaimable"
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    /// What a screen reader says when the search begins and when it ends.
    Q_PROPERTY(QString spokenText READ spokenText NOTIFY changed)
    /// A merge is under way.
    Q_PROPERTY(bool merging READ merging NOTIFY changed)
    Q_PROPERTY(kestavon::DuplicateRows* rows READ rows CONSTANT)
    Q_PROPERTY(kestavon::Confirmation* confirmation READ confirmation CONSTANT)
public:
    explicit DuplicatesState(AppModel& model);

    bool hasRecords() const { return !m_model.records()->empty(); }
    bool analyzing() const { return m_model.duplicatePhase().isScanning(); }
    QString phaseText() const;
    bool failed() const { return isPhase(ScanPhase::Kind::failed); }
    QString progressText() const;
    bool canAnalyze() const { return !m_model.scanPhase().isScanning(); }
    bool foundNone() const { return isPhase(ScanPhase::Kind::finished) && !foundSome(); }
    bool foundSome() const { return !m_model.duplicates()->empty(); }
    QString summary() const;
    QString spokenText() const;
    bool merging() const { return m_merging; }
    DuplicateRows* rows() { return &m_rows; }
    Confirmation* confirmation() { return &m_confirmation; }

    /// Nothing while the search runs.
    Q_INVOKABLE void analyze();
    /// Nothing unless the search runs.
    Q_INVOKABLE void stop();
    /// Ask whether to merge all groups, and do so when the answer is yes; nothing while a merge is
    /// under way. The question is withdrawn when the groups change meanwhile: nobody was asked
    /// about the new ones.
    Q_INVOKABLE void askMergeToTrash() { askMerge(true); }
    Q_INVOKABLE void askMergeForever() { askMerge(false); }
    /// The same with the words of another screen, which shows `confirmation` too.
    void askMerge(bool toTrash, ConfirmationTexts question);

Q_SIGNALS:
    void changed();
    void progressChanged();

private:
    bool isPhase(ScanPhase::Kind kind) const { return m_model.duplicatePhase().kind() == kind; }
    void follow(AppModel::Field field);
    void askMerge(bool toTrash);
    void merge(bool toTrash);

    AppModel& m_model;
    DuplicateRows m_rows;
    Confirmation m_confirmation;
    bool m_merging = false;
};

} // namespace kestavon
