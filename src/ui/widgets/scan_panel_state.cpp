#include "ui/widgets/scan_panel_state.h"

#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <utility>

namespace kestavon {

ScanPanelState::ScanPanelState(AppModel& model, LiveCount& liveCount, QObject* parent)
    : QObject(parent)
    , m_model(model)
    , m_liveCount(liveCount)
    , m_notice(fileNameText(model.scanNotice()))
{
    connect(&liveCount, &LiveCount::changed, this, &ScanPanelState::update);
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        if (field == AppModel::Field::scanPhase || field == AppModel::Field::records)
            update();
        if (field == AppModel::Field::scanNotice) {
            m_notice = fileNameText(m_model.scanNotice());
            Q_EMIT noticeChanged();
        }
    });
    update();
}

void ScanPanelState::update()
{
    const auto count = scanning() ? m_liveCount.shown() : m_model.liveFileCount();
    m_texts = scanPanelTexts(m_model.scanPhase(), count, m_model.storageSummary());
    m_foundSoFar = foundSoFarText(count);
    Q_EMIT changed();
    speak();
}

void ScanPanelState::speak()
{
    const bool samePhase = m_spokenTitle == m_texts.title;
    if (samePhase && scanning() && !m_sinceSpoken.hasExpired(5000))
        return;
    auto text = scanning()         ? m_texts.title + u", "_s + m_foundSoFar
        : m_texts.detail.isEmpty() ? m_texts.title
                                   : m_texts.title + u". "_s + m_texts.detail;
    if (text == m_spokenText)
        return;
    m_spokenText = std::move(text);
    m_spokenTitle = m_texts.title;
    m_sinceSpoken.start();
    Q_EMIT spokenTextChanged();
}

} // namespace kestavon
