#pragma once

#include "core/model/app_model.h"
#include "ui/security/security_rules.h"
#include "ui/widgets/confirmation.h"
#include "ui/widgets/file_path.h"

#include <QObject>
#include <QString>

#include <optional>
#include <unordered_set>

namespace kestavon {

/// The Security screen: the review of the last scan's files and what it found, as rows from 0. A
/// row that does not exist is blank; ask again whenever the revision has changed. Main thread.
class SecurityState final : public QObject {
    Q_OBJECT
    /// There is nothing to review before a storage scan.
    Q_PROPERTY(bool hasRecords READ hasRecords NOTIFY recordsChanged)
    Q_PROPERTY(bool scanning READ scanning NOTIFY summaryChanged)
    /// What is going on, or why the last review failed; else empty.
    Q_PROPERTY(QString phaseText READ phaseText NOTIFY summaryChanged)
    Q_PROPERTY(QString summary READ summary NOTIFY summaryChanged)
    Q_PROPERTY(QString summarySymbol READ summarySymbol NOTIFY summaryChanged)
    /// The names of colours.
    Q_PROPERTY(QString summarySymbolColor READ summarySymbolColor NOTIFY summaryChanged)
    Q_PROPERTY(QString summaryTextColor READ summaryTextColor NOTIFY summaryChanged)
    Q_PROPERTY(int rowCount READ rowCount NOTIFY rowsChanged)
    Q_PROPERTY(int revision READ revision NOTIFY changed)
    Q_PROPERTY(kestavon::Confirmation* confirmation READ confirmation CONSTANT)
public:
    explicit SecurityState(AppModel& model);

    bool hasRecords() const { return !m_model.records()->empty(); }
    bool scanning() const { return m_model.securityPhase().isScanning(); }
    QString phaseText() const;
    const QString& summary() const { return m_summary.text; }
    QString summarySymbol() const;
    QString summarySymbolColor() const;
    QString summaryTextColor() const;

    int rowCount() const { return static_cast<int>(m_model.findings().size()); }
    int revision() const { return m_revision; }
    Q_INVOKABLE QString reasonText(int row) const;
    Q_INVOKABLE QString pathText(int row) const;
    /// Tells the row's finding from every other.
    Q_INVOKABLE QString idText(int row) const;
    Q_INVOKABLE kestavon::FilePath filePath(int row) const;
    /// The level's name, symbol and colour.
    Q_INVOKABLE QString levelText(int row) const;
    Q_INVOKABLE QString levelSymbol(int row) const;
    Q_INVOKABLE QString levelColor(int row) const;
    Q_INVOKABLE bool mayRemove(int row) const;
    Q_INVOKABLE bool isBusy(int row) const;

    Confirmation* confirmation() { return &m_confirmation; }

    Q_INVOKABLE void scan() { m_model.startSecurityScan(); }
    /// Asks whether the row's file goes to the Trash; nothing while it is on its way there. The
    /// question is withdrawn when the finding goes meanwhile.
    Q_INVOKABLE void askRemove(int row);

Q_SIGNALS:
    void recordsChanged();
    void summaryChanged();
    /// Other findings stand in the rows.
    void rowsChanged();
    /// A row may show something else than before.
    void changed();

private:
    const SecurityFinding* at(int row) const;
    void remove(const SecurityFinding& finding);
    void follow(AppModel::Field field);
    void cancelOutdatedQuestion();
    void refreshRows();

    AppModel& m_model;
    SecuritySummary m_summary;
    std::unordered_set<Uuid> m_busy; // findings that are being removed
    Confirmation m_confirmation;
    std::optional<SecurityFinding> m_asked; // what the question is about
    int m_revision = 0;
};

} // namespace kestavon
