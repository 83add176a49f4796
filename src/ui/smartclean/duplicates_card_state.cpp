#include "ui/smartclean/duplicates_card_state.h"

namespace kestavon {

DuplicatesCardState::DuplicatesCardState(AppModel& model, DuplicatesState& merging)
    : m_model(model)
    , m_merging(merging)
{
    connect(&m_merging, &DuplicatesState::changed, this, &DuplicatesCardState::update);
    update();
}

void DuplicatesCardState::pressButton()
{
    if (analyzing())
        m_model.stopDuplicateAnalysis();
    else if (m_button.enabled)
        m_model.startDuplicateAnalysis();
}

void DuplicatesCardState::askMerge(bool toTrash)
{
    m_merging.askMerge(toTrash, mergeGroupsQuestion(toTrash, m_model.duplicates()->size()));
}

void DuplicatesCardState::update()
{
    const DuplicatesFound found{
        .phase = m_model.duplicatePhase(),
        .groups = m_model.duplicates()->size(),
        .reclaimableBytes = m_model.duplicates()->reclaimableBytes(),
        .storageScanRuns = m_model.scanPhase().isScanning(),
        .hasRecords = !m_model.records()->empty(),
    };
    m_status = duplicatesStatus(found);
    m_button = analysisButton(found);
    Q_EMIT changed();
}

} // namespace kestavon
