#include "ui/widgets/record_table_model.h"

#include "core/model/main_queue.h"
#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <utility>

namespace kestavon {

namespace {

RecordSelection::Modifiers modifiersOf(int modifiers)
{
    const Qt::KeyboardModifiers keys(QFlag{modifiers});
    return {
        .extends = keys.testFlag(Qt::ShiftModifier), .keeps = keys.testFlag(Qt::ControlModifier)};
}

} // namespace

RecordTableModel::RecordTableModel(QObject* parent)
    : QObject(parent)
{
    MainQueue::instance(); // its first use must be on the main thread
}

RecordTableModel::~RecordTableModel()
{
    cancelRequest();
    // Freeing millions of rows takes a while. The last job owns the queue too, so it is done before
    // the queue's thread ends.
    m_queue->post([queue = m_queue, selection = std::move(m_selection), views = std::move(m_views),
                      records = std::move(m_records)] {});
}

void RecordTableModel::setRecords(std::shared_ptr<const RecordList> records)
{
    if (!records)
        records = std::make_shared<const RecordList>();
    if (records == m_records)
        return;
    disposeInBackground(std::exchange(m_records, std::move(records)));
    restart();
    Q_EMIT recordsChanged();
}

void RecordTableModel::setLargestFilesOnly(bool only)
{
    if (only == m_largestFilesOnly)
        return;
    m_largestFilesOnly = only;
    restart();
    Q_EMIT largestFilesOnlyChanged();
}

void RecordTableModel::setFilter(const QString& filter)
{
    if (filter == m_filter)
        return;
    m_filter = filter;
    request();
    Q_EMIT filterChanged();
}

void RecordTableModel::restart()
{
    m_selection.clear();
    announceSelection();
    const auto contents = m_largestFilesOnly ? RecordViews::Contents::largestFiles
                                             : RecordViews::Contents::everything;
    disposeInBackground(std::exchange(m_views, std::make_shared<RecordViews>(m_records, contents)));
    request();
}

void RecordTableModel::request()
{
    const auto wasBusy = isBusy();
    cancelRequest();
    if (m_records->empty()) {
        show(std::make_shared<const RecordView>());
        if (wasBusy)
            Q_EMIT busyChanged();
        return;
    }
    std::stop_source stop;
    m_request = stop;
    const auto needle = m_filter.toUtf8();
    runInBackground(
        *m_queue, this,
        [views = m_views, text = needle.toStdString(), token = stop.get_token()] {
            return views->view(text, token);
        },
        [this, stop](Outcome<std::shared_ptr<const RecordView>> rows) {
            if (!m_request || *m_request != stop) {
                disposeInBackground(std::move(rows));
                return;
            }
            m_request.reset();
            if (rows.value)
                show(std::move(*rows.value));
            Q_EMIT busyChanged();
        });
    if (!wasBusy)
        Q_EMIT busyChanged();
}

void RecordTableModel::cancelRequest()
{
    if (m_request)
        m_request->request_stop();
    m_request.reset();
}

void RecordTableModel::show(std::shared_ptr<const RecordView> rows)
{
    auto old = m_selection.view();
    m_selection.setView(std::move(rows));
    disposeInBackground(std::move(old));
    ++m_contentRevision;
    Q_EMIT rowsChanged();
    announceSelection();
}

std::optional<std::uint32_t> RecordTableModel::positionAt(int row) const
{
    if (row < 0 || row >= rowCount())
        return std::nullopt;
    return view().positionAt(static_cast<std::size_t>(row));
}

QString RecordTableModel::text(int row, int column) const
{
    using Text = QString (RecordTableModel::*)(int) const;
    static constexpr std::array<Text, 4> storage{&RecordTableModel::nameText,
        &RecordTableModel::sizeText, &RecordTableModel::dateText, &RecordTableModel::pathText};
    static constexpr std::array<Text, 3> largeFiles{
        &RecordTableModel::nameText, &RecordTableModel::sizeText, &RecordTableModel::pathText};
    const auto columns = m_largestFilesOnly ? std::span<const Text>(largeFiles) : storage;
    if (column < 0 || static_cast<std::size_t>(column) >= columns.size())
        return {};
    return (this->*columns[static_cast<std::size_t>(column)])(row);
}

QString RecordTableModel::nameText(int row) const
{
    const auto position = positionAt(row);
    return position ? fileNameText(shownRecords()->name(*position)) : QString();
}

QString RecordTableModel::sizeText(int row) const
{
    const auto position = positionAt(row);
    return position ? byteText(shownRecords()->fileSize(*position)) : QString();
}

QString RecordTableModel::dateText(int row) const
{
    const auto position = positionAt(row);
    return position ? momentText(shownRecords()->modifiedAt(*position), m_calendar) : QString();
}

QString RecordTableModel::pathText(int row) const
{
    const auto position = positionAt(row);
    return position ? fileNameText(shownRecords()->path(*position)) : QString();
}

double RecordTableModel::sizeShare(int row) const
{
    const auto position = positionAt(row);
    const auto largest = view().largestSize();
    if (!position || largest <= 0)
        return 0;
    const auto share
        = static_cast<double>(shownRecords()->fileSize(*position)) / static_cast<double>(largest);
    return std::clamp(share, 0.0, 1.0);
}

bool RecordTableModel::isFolder(int row) const
{
    const auto position = positionAt(row);
    return position && shownRecords()->isDirectory(*position);
}

FilePath RecordTableModel::filePath(int row) const
{
    const auto position = positionAt(row);
    return {position ? shownRecords()->path(*position) : std::string()};
}

bool RecordTableModel::isSelected(int row) const
{
    return row >= 0 && m_selection.isSelected(static_cast<std::size_t>(row));
}

void RecordTableModel::click(int row, int modifiers)
{
    if (row < 0 || row >= rowCount())
        return;
    m_selection.click(static_cast<std::size_t>(row), modifiersOf(modifiers));
    announceSelection();
}

void RecordTableModel::move(int delta, int modifiers)
{
    m_selection.move(delta, modifiersOf(modifiers));
    announceSelection();
}

void RecordTableModel::toggleCurrent()
{
    m_selection.toggleCurrent();
    announceSelection();
}

void RecordTableModel::selectAll()
{
    m_selection.selectAll();
    announceSelection();
}

void RecordTableModel::clearSelection()
{
    m_selection.clear();
    announceSelection();
}

int RecordTableModel::currentRow() const
{
    const auto row = m_selection.currentRow();
    return row ? static_cast<int>(*row) : -1;
}

QString RecordTableModel::selectedSizeText() const
{
    return byteText(selectedBytes());
}

std::vector<std::uint32_t> RecordTableModel::selectedVisiblePositions() const
{
    return m_selection.selectedPositions();
}

void RecordTableModel::announceSelection()
{
    ++m_selectionRevision;
    Q_EMIT selectionChanged();
}

/// Leaves the last use of a large value to the queue's thread, which frees it.
template <class T> void RecordTableModel::disposeInBackground(T value)
{
    m_queue->post([value = std::move(value)] {});
}

} // namespace kestavon
