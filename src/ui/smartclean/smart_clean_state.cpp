#include "ui/smartclean/smart_clean_state.h"

#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <QPointer>

namespace kestavon {

namespace {

QString spokenState(const JunkCard& card)
{
    if (card.isScanning)
        return u"Scanning"_s;
    if (card.isClean)
        return u"Nothing found"_s;
    return card.isFound ? card.total + u", "_s + card.items : u"Not scanned"_s;
}

JunkCard cardOf(const JunkGroup& group)
{
    const auto face = cardFace(group);
    const auto look = categoryLook(group.category);
    JunkCard card{
        .title = look.title,
        .subtitle = look.subtitle,
        .symbol = look.symbol,
        .color = look.color,
        .isScanning = group.isScanning,
        .isClean = face == CardFace::clean,
        .isFound = face == CardFace::found,
        .total = byteText(group.items.bytes()),
        .items = itemsText(group.items.size()),
        .spokenState = {},
    };
    card.spokenState = spokenState(card);
    return card;
}

} // namespace

SmartCleanState::SmartCleanState(AppModel& model, DuplicatesState& merging)
    : m_model(model)
    , m_preview(model)
    , m_duplicates(model, merging)
{
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        if (field == AppModel::Field::junkGroups)
            follow();
    });
    follow();
}

const JunkGroup* SmartCleanState::groupAt(int index) const
{
    if (index < 0 || index >= cardCount())
        return nullptr;
    return &m_model.junkGroups()[static_cast<std::size_t>(index)];
}

JunkCard SmartCleanState::card(int index) const
{
    return groupAt(index) ? m_cards[static_cast<std::size_t>(index)] : JunkCard();
}

QList<double> SmartCleanState::segmentShares(double least) const
{
    std::vector<std::int64_t> bytes;
    for (const auto& group : m_model.junkGroups())
        bytes.push_back(group.items.bytes());
    const auto shares = kestavon::segmentShares(bytes, least);
    return {shares.begin(), shares.end()};
}

void SmartCleanState::scanCategory(int index)
{
    if (const auto* group = groupAt(index))
        m_model.scanJunkCategory(group->category);
}

void SmartCleanState::review(int index)
{
    if (const auto* group = groupAt(index))
        m_preview.open(*group);
}

void SmartCleanState::askCleanAll()
{
    if (!m_cleaning && m_model.totalJunkBytes() > 0)
        m_confirmation.ask(cleanAllQuestion(m_model.totalJunkBytes()), [this] { cleanAll(); });
}

void SmartCleanState::cleanAll()
{
    setCleaning(true);
    m_model.cleanAllJunk([self = QPointer<SmartCleanState>(this)](const std::string& error) {
        if (!self)
            return;
        self->setCleaning(false);
        self->m_confirmation.setErrorMessage(fileNameText(error));
    });
}

void SmartCleanState::setCleaning(bool cleaning)
{
    m_cleaning = cleaning;
    Q_EMIT changed();
}

void SmartCleanState::follow()
{
    m_cards.clear();
    for (const auto& group : m_model.junkGroups())
        m_cards.push_back(cardOf(group));
    const auto total = m_model.totalJunkBytes();
    m_status = smartCleanStatus(m_model.junkGroups(), total, m_model.totalJunkItemCount());
    m_cleanAllLabel = kestavon::cleanAllLabel(total);
    if (total > 0)
        m_confirmation.reword(cleanAllQuestion(total));
    else
        m_confirmation.cancel();
    ++m_revision;
    Q_EMIT changed();
}

} // namespace kestavon
