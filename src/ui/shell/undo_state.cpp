#include "ui/shell/undo_state.h"

#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <QPointer>

namespace kestavon {

namespace {

QString itemsText(std::int64_t count)
{
    return count == 1 ? u"1 item"_s : u"%1 items"_s.arg(count);
}

} // namespace

QString undoOfferText(const UndoOffer& offer)
{
    const auto place = offer.action == ActionKind::trash ? u"Trash"_s : u"Safe Area"_s;
    return u"%1 moved to the %2"_s.arg(itemsText(offer.count), place);
}

QString undoReportText(const UndoReport& report)
{
    QString text;
    const auto all = report.restored + report.failed + report.left;
    if (report.left > 0)
        text = u"Stopped: %1 of %2 put back."_s.arg(
            QString::number(report.restored), itemsText(all));
    else if (report.failed == 0 && report.restored == 1)
        text = u"1 item is back where it was."_s;
    else if (report.failed == 0)
        text = u"%1 are back where they were."_s.arg(itemsText(report.restored));
    else
        text = u"%1 of %2 could not be put back: %3"_s.arg(
            QString::number(report.failed), itemsText(all), fileNameText(report.error));
    if (report.restored > 0 && !report.listed)
        text += u" A new scan will list what is back."_s;
    return text;
}

UndoState::UndoState(AppModel& model, NoticeState& offer, NoticeState& notice)
    : m_model(model)
    , m_offer(offer)
    , m_notice(notice)
{
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        if (field == AppModel::Field::undoOffer)
            follow();
    });
    connect(&offer, &NoticeState::shownChanged, this, [this] {
        if (!m_offer.shown())
            m_model.withdrawUndo();
    });
}

void UndoState::follow()
{
    const auto& offer = m_model.undoOffer();
    if (offer)
        m_offer.show(undoOfferText(*offer), u"Undo"_s, [this] { undo(); });
    else
        m_offer.dismiss();
}

void UndoState::undo()
{
    if (!m_model.undoOffer())
        return;
    m_notice.show(u"Putting %1 back…"_s.arg(itemsText(m_model.undoOffer()->count)));
    m_model.undoLastMove([self = QPointer<UndoState>(this)](const UndoReport& report) {
        if (self)
            self->m_notice.show(undoReportText(report));
    });
}

} // namespace kestavon
