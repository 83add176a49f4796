#include "ui/smartclean/preview_state.h"

#include "core/domain/removal_guard.h"
#include "core/model/background.h"
#include "core/model/questions.h"
#include "smartclean/removal_advice.h"
#include "ui/smartclean/preview_rules.h"
#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <QPointer>

#include <span>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace kestavon {

PreviewState::PreviewState(AppModel& model)
    : m_model(model)
{
}

PreviewState::~PreviewState()
{
    if (m_arranging)
        m_arranging->request_stop();
    // The last job owns the queue too, so it is done before the queue's thread ends.
    m_queue->post([queue = m_queue, group = std::move(m_group), rows = std::move(m_rows)] {});
}

template <class T> void PreviewState::disposeInBackground(T value)
{
    m_queue->post([value = std::make_shared<T>(std::move(value))]() mutable { value.reset(); });
}

void PreviewState::open(const JunkGroup& group)
{
    disposeInBackground(std::exchange(m_group, group));
    ++m_opening;
    m_look = categoryLook(group.category);
    m_sortOrder = PreviewSortOrder::sizeDesc;
    m_selected.assign(items().size(), false);
    m_owners = {};
    show({});
    arrange();
    findOwners();
    announceSelection();
    m_isPresented = true;
    Q_EMIT sortOrderChanged();
    Q_EMIT opened();
    Q_EMIT isPresentedChanged();
}

void PreviewState::close()
{
    if (!std::exchange(m_isPresented, false))
        return;
    Q_EMIT isPresentedChanged();
}

QStringList PreviewState::sortLabels() const
{
    QStringList labels;
    for (const auto& order : allCases<PreviewSortOrder>())
        labels.append(displayText(order.raw));
    return labels;
}

void PreviewState::sortBy(int order)
{
    const auto count = static_cast<int>(allCases<PreviewSortOrder>().size());
    if (order < 0 || order >= count || order == sortOrder())
        return;
    m_sortOrder = static_cast<PreviewSortOrder>(order);
    Q_EMIT sortOrderChanged();
    arrange();
}

void PreviewState::arrange()
{
    if (m_arranging)
        m_arranging->request_stop();
    const std::stop_source stop;
    m_arranging = stop;
    runInBackground(
        *m_queue, this,
        [items = items(), order = m_sortOrder, token = stop.get_token()] {
            return Arrangement{previewOrder(items, order, token), shareTheirName(items)};
        },
        [this, stop](Outcome<Arrangement> arrangement) {
            if (m_arranging != stop)
                return;
            m_arranging.reset();
            if (arrangement.value)
                show(std::move(*arrangement.value));
            else
                m_notice.setErrorMessage(displayText(arrangement.error));
        });
}

/// After the rows, because looking through what runs takes longer than a frame or two.
void PreviewState::findOwners()
{
    if (!belongsToApplications(m_group.category))
        return;
    runInBackground(
        *m_queue, this,
        [items = items(), applications = m_model.platform().runningApplications,
            home = m_model.platform().layout.home] {
            Owners owners{
                .running = std::make_shared<const RunningOwners>(applications->running(), home),
                .names = {}};
            owners.names.reserve(items.size());
            for (const auto& item : items)
                owners.names.push_back(owners.running->ownerOf(item.record.path));
            return owners;
        },
        [this, opening = m_opening](Outcome<Owners> owners) {
            if (opening != m_opening || !owners.value)
                return;
            m_owners = std::move(*owners.value);
            ++m_contentRevision;
            Q_EMIT rowsChanged();
        });
}

void PreviewState::show(Arrangement arrangement)
{
    m_rows = std::move(arrangement.rows);
    m_sharesName = std::move(arrangement.sharesName);
    ++m_contentRevision;
    ++m_selectionRevision;
    Q_EMIT rowsChanged();
    Q_EMIT selectionChanged();
}

std::optional<std::size_t> PreviewState::positionOf(int row) const
{
    if (row < 0 || row >= rowCount())
        return std::nullopt;
    return m_rows[static_cast<std::size_t>(row)];
}

const CleanupCandidate* PreviewState::itemAt(int row) const
{
    const auto position = positionOf(row);
    return position ? &items()[*position] : nullptr;
}

QString PreviewState::nameText(int row) const
{
    const auto* item = itemAt(row);
    return item ? fileNameText(lastComponent(item->record.path)) : QString();
}

QString PreviewState::folderText(int row) const
{
    const auto position = positionOf(row);
    if (!position || !m_sharesName[*position])
        return {};
    const std::string_view path = items()[*position].record.path;
    return fileNameText(path.substr(0, path.size() - lastComponent(path).size() - 1));
}

QString PreviewState::runningText(int row) const
{
    const auto position = positionOf(row);
    if (!position || *position >= m_owners.names.size() || m_owners.names[*position].empty())
        return {};
    return u"%1 is running"_s.arg(displayText(m_owners.names[*position]));
}

QString PreviewState::dateText(int row) const
{
    const auto* item = itemAt(row);
    return item ? momentText(item->record.modifiedAt, *m_model.platform().calendar) : QString();
}

QString PreviewState::sizeText(int row) const
{
    const auto* item = itemAt(row);
    return item ? byteText(item->estimatedBytes) : QString();
}

QString PreviewState::pathText(int row) const
{
    return fileNameText(filePath(row).bytes);
}

FilePath PreviewState::filePath(int row) const
{
    const auto* item = itemAt(row);
    return {item ? item->record.path : std::string()};
}

QString PreviewState::reasonText(int row) const
{
    const auto* item = itemAt(row);
    return item ? displayText(item->reason) : QString();
}

QString PreviewState::adviceText(int row) const
{
    const auto* item = itemAt(row);
    if (!item)
        return {};
    const auto advice = displayText(removalAdvice(*item));
    const auto running = runningText(row);
    return running.isEmpty()
        ? advice
        : advice + u" %1: quit it first, so that it does not miss or rewrite this."_s.arg(running);
}

bool PreviewState::isSelected(int row) const
{
    const auto position = positionOf(row);
    return position && m_selected[*position];
}

void PreviewState::toggle(int row)
{
    const auto position = positionOf(row);
    if (!position)
        return;
    m_selected[*position] = !m_selected[*position];
    announceSelection();
}

void PreviewState::selectAll(bool selected)
{
    m_selected.assign(items().size(), selected);
    announceSelection();
}

/// Counts anew, because a sum that has met its limit cannot be reduced again.
void PreviewState::announceSelection()
{
    m_selectedCount = 0;
    m_selectedBytes = 0;
    for (std::size_t i = 0; i < m_selected.size(); ++i) {
        if (!m_selected[i])
            continue;
        ++m_selectedCount;
        m_selectedBytes = saturatingSum(m_selectedBytes, items()[i].estimatedBytes);
    }
    ++m_selectionRevision;
    Q_EMIT selectionChanged();
}

QString PreviewState::selectionText() const
{
    return previewSelectionText(m_selectedCount, items().size());
}

QString PreviewState::allLabel() const
{
    return allSelected() ? u"Deselect All"_s : u"Select All"_s;
}

QString PreviewState::selectedText() const
{
    return kestavon::selectedText(m_selectedCount);
}

QString PreviewState::selectedSizeText() const
{
    return byteText(m_selectedBytes);
}

void PreviewState::askRemoval(bool forGood)
{
    if (!canRemove())
        return;
    const auto action = forGood ? ActionKind::permanent : ActionKind::trash;
    m_notice.ask(textsOf(questions::removeFiles(action, m_selectedCount)),
        [this, action, opening = m_opening] {
            if (opening == m_opening)
                remove(action);
        });
}

void PreviewState::remove(ActionKind action)
{
    if (!canRemove())
        return;
    m_isBusy = true;
    Q_EMIT selectionChanged();

    std::unordered_set<Uuid> ids;
    ids.reserve(m_selectedCount);
    for (std::size_t i = 0; i < m_selected.size(); ++i) {
        if (m_selected[i])
            ids.insert(items()[i].id);
    }
    const auto problem = std::make_shared<QString>();
    m_model.cleanJunkItems(
        m_group, std::move(ids), action,
        [self = QPointer<PreviewState>(this), opening = m_opening, problem](
            std::size_t moved, std::size_t requested) {
            if (moved == requested)
                return;
            *problem = partialMoveText(requested - moved);
            if (self && opening == self->m_opening)
                self->deselectHeld(moved);
        },
        [self = QPointer<PreviewState>(this), opening = m_opening, problem](
            const std::string& error) {
            if (self)
                self->endRemoval(opening, error.empty() ? *problem : fileNameText(error));
        });
}

/// What is advised for the rest must not be done to what is in the Safe Area by now, nor to what a
/// program has put in its place since.
void PreviewState::deselectHeld(std::size_t count)
{
    std::unordered_set<std::string_view> paths;
    for (const auto& held : std::span(m_model.quarantine()).first(count))
        paths.insert(held.originalPath);
    for (std::size_t i = 0; i < m_selected.size(); ++i) {
        if (m_selected[i] && paths.contains(items()[i].record.path))
            m_selected[i] = false;
    }
    announceSelection();
}

void PreviewState::endRemoval(std::uint64_t opening, const QString& problem)
{
    m_isBusy = false;
    Q_EMIT selectionChanged();
    m_notice.setErrorMessage(problem);
    // The sheet may have been closed meanwhile, and opened for another category.
    if (problem.isEmpty() && opening == m_opening)
        close();
}

} // namespace kestavon
