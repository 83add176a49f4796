#pragma once

#include "core/model/app_model.h"
#include "ui/widgets/notice_state.h"

#include <QObject>
#include <QString>

namespace kestavon {

/// "3 items moved to the Trash"
QString undoOfferText(const UndoOffer& offer);
/// How it went, in a sentence or two: "3 items are back where they were."
QString undoReportText(const UndoReport& report);

/// Offers to take the last move back, in a bar of its own at the foot of the window, for as long as
/// that is shown; how it went is told in the bar for everything else. Main thread.
class UndoState final : public QObject {
    Q_OBJECT
public:
    /// All must outlive this.
    UndoState(AppModel& model, NoticeState& offer, NoticeState& notice);

private:
    void follow();
    void undo();

    AppModel& m_model;
    NoticeState& m_offer; ///< shown as long as the model has an offer
    NoticeState& m_notice;
};

} // namespace kestavon
