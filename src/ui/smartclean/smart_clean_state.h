#pragma once

#include "core/model/app_model.h"
#include "ui/smartclean/duplicates_card_state.h"
#include "ui/smartclean/junk_card.h"
#include "ui/smartclean/preview_state.h"
#include "ui/smartclean/smart_clean_rules.h"
#include "ui/widgets/confirmation.h"

#include <QList>
#include <QObject>
#include <QString>

#include <cstdint>
#include <vector>

namespace kestavon {

/// The Smart Clean screen: what lies about in the categories of junk, and the ways to remove it.
/// Main thread.
class SmartCleanState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
    /// The name of its colour.
    Q_PROPERTY(QString statusColor READ statusColor NOTIFY changed)
    /// Any category is being scanned.
    Q_PROPERTY(bool scanning READ scanning NOTIFY changed)
    /// Any category was scanned: there is a breakdown to show.
    Q_PROPERTY(bool scanned READ scanned NOTIFY changed)
    /// "Clean All · 34.62 GB"; empty while there is nothing to clean.
    Q_PROPERTY(QString cleanAllLabel READ cleanAllLabel NOTIFY changed)
    /// Everything is being moved.
    Q_PROPERTY(bool cleaning READ cleaning NOTIFY changed)
    Q_PROPERTY(int cardCount READ cardCount CONSTANT)
    Q_PROPERTY(int revision READ revision NOTIFY changed)
    Q_PROPERTY(kestavon::PreviewState* preview READ preview CONSTANT)
    Q_PROPERTY(kestavon::DuplicatesCardState* duplicates READ duplicates CONSTANT)
    Q_PROPERTY(kestavon::Confirmation* confirmation READ confirmation CONSTANT)
public:
    /// `merging` does the merges of the card for duplicates; it must outlive this.
    SmartCleanState(AppModel& model, DuplicatesState& merging);

    const QString& statusText() const { return m_status.text; }
    const QString& statusColor() const { return m_status.color; }
    bool scanning() const { return anyIsScanning(m_model.junkGroups()); }
    bool scanned() const { return anyIsScanned(m_model.junkGroups()); }
    const QString& cleanAllLabel() const { return m_cleanAllLabel; }
    bool cleaning() const { return m_cleaning; }

    /// @name Categories, by number from 0; ask again whenever the revision has changed
    /// @{
    int cardCount() const { return static_cast<int>(m_cards.size()); }
    int revision() const { return m_revision; }
    Q_INVOKABLE kestavon::JunkCard card(int index) const;
    /// How many cards stand side by side, see the rule of that name.
    Q_INVOKABLE int cardColumns(double width, double gap) const
    {
        return kestavon::cardColumns(width, gap);
    }
    /// The share of the breakdown's bar that each category gets, see the rule of that name.
    Q_INVOKABLE QList<double> segmentShares(double least) const;
    Q_INVOKABLE void scanCategory(int index);
    /// Opens the sheet with the category's items.
    Q_INVOKABLE void review(int index);
    /// @}

    PreviewState* preview() { return &m_preview; }
    DuplicatesCardState* duplicates() { return &m_duplicates; }
    Confirmation* confirmation() { return &m_confirmation; }

    Q_INVOKABLE void scanAll() { m_model.scanAllJunk(); }
    Q_INVOKABLE void stopScan() { m_model.stopJunkScan(); }
    /// Asks whether to move everything that was found, and moves it when the answer is yes. What
    /// the question says follows a scan that is still running.
    Q_INVOKABLE void askCleanAll();

Q_SIGNALS:
    void changed();

private:
    const JunkGroup* groupAt(int index) const;
    void follow();
    void cleanAll();
    void setCleaning(bool cleaning);

    AppModel& m_model;
    PreviewState m_preview;
    DuplicatesCardState m_duplicates;
    Confirmation m_confirmation;
    std::vector<JunkCard> m_cards;
    ColoredLine m_status;
    QString m_cleanAllLabel;
    int m_revision = 0;
    bool m_cleaning = false;
};

} // namespace kestavon
