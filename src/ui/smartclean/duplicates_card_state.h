#pragma once

#include "core/model/app_model.h"
#include "ui/duplicates/duplicates_state.h"
#include "ui/smartclean/smart_clean_rules.h"
#include "ui/widgets/confirmation.h"

#include <QObject>
#include <QString>

namespace kestavon {

/// The card for duplicates on the Smart Clean screen. The search and the merges are those of the
/// Duplicates screen; what the questions say is not. Main thread.
class DuplicatesCardState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
    /// The name of its colour.
    Q_PROPERTY(QString statusColor READ statusColor NOTIFY changed)
    Q_PROPERTY(bool analyzing READ analyzing NOTIFY changed)
    /// The button that starts the search, or stops it.
    Q_PROPERTY(QString buttonLabel READ buttonLabel NOTIFY changed)
    Q_PROPERTY(QString buttonSymbol READ buttonSymbol NOTIFY changed)
    Q_PROPERTY(bool buttonEnabled READ buttonEnabled NOTIFY changed)
    Q_PROPERTY(bool canMerge READ canMerge NOTIFY changed)
    Q_PROPERTY(bool merging READ merging NOTIFY changed)
    Q_PROPERTY(kestavon::Confirmation* confirmation READ confirmation CONSTANT)
public:
    DuplicatesCardState(AppModel& model, DuplicatesState& merging);

    const QString& statusText() const { return m_status.text; }
    const QString& statusColor() const { return m_status.color; }
    bool analyzing() const { return m_button.deed == AnalysisButton::Deed::stop; }
    const QString& buttonLabel() const { return m_button.label; }
    const QString& buttonSymbol() const { return m_button.symbol; }
    bool buttonEnabled() const { return m_button.enabled; }
    /// There are groups to merge.
    bool canMerge() const { return !m_model.duplicates()->empty(); }
    bool merging() const { return m_merging.merging(); }
    Confirmation* confirmation() { return m_merging.confirmation(); }

    Q_INVOKABLE void pressButton();
    Q_INVOKABLE void askMergeToTrash() { askMerge(true); }
    Q_INVOKABLE void askMergeForever() { askMerge(false); }

Q_SIGNALS:
    void changed();

private:
    void askMerge(bool toTrash);
    void update();

    AppModel& m_model;
    DuplicatesState& m_merging;
    ColoredLine m_status;
    AnalysisButton m_button;
};

} // namespace kestavon
