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

/// Offers to take the last move back, in the bar at the foot of the window, for as long as that is
/// shown. Main thread.
class UndoState final : public QObject {
    Q_OBJECT
public:
    /// Both must outlive this.
    UndoState(AppModel& model, NoticeState& notice);

private:
    void follow();
    void undo();

    AppModel& m_model;
    NoticeState& m_notice;
    bool m_offering = false; ///< the bar shows the model's offer
};

} // namespace kestavon
