#include "ui/shell/folder_chooser.h"

#include "core/model/background.h"
#include "core/model/text_folding.h"
#include "platform/host_layout.h"
#include "platform/workspace.h"
#include "ui/shell/window_folder_picker.h"
#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <tuple>
#include <utility>

namespace kestavon {

namespace {

const auto urlBeginning = QStringLiteral("file://");

std::string below(const std::string& folder, const std::string& name)
{
    return folder.ends_with('/') ? folder + name : folder + '/' + name;
}

std::string_view lastName(std::string_view path)
{
    return path.size() > 1 ? path.substr(path.rfind('/') + 1) : path;
}

/// Whether the mount is a disk or a share that a person would look for, not a part of the system.
bool isVolume(const Mount& mount)
{
    static constexpr std::array<std::string_view, 11> systemFolders
        = {"boot", "dev", "etc", "nix", "proc", "run", "snap", "sys", "tmp", "usr", "var"};
    const std::string_view point = mount.point;
    if (!holdsFiles(mount) || point.size() < 2)
        return false;
    if (point.starts_with("/run/media/"))
        return true;
    const auto top = point.substr(1, point.find('/', 1) - 1);
    return std::ranges::find(systemFolders, top) == systemFolders.end();
}

} // namespace

QString typedText(const std::string& path)
{
    const auto text = fileNameText(path);
    return text.toStdString() == path ? text : displayText(fileUrl(path));
}

std::string pathOfText(const QString& text, const std::string& folder, const std::string& home)
{
    const bool isUrl = text.startsWith(urlBeginning);
    const auto path = isUrl
        ? QByteArray::fromPercentEncoding(text.mid(urlBeginning.size()).toUtf8()).toStdString()
        : text.toStdString();
    if (path.empty())
        return folder;
    if (!isUrl && (path == "~" || path.starts_with("~/")))
        return home + path.substr(1);
    return path.starts_with('/') ? path : below(folder, path);
}

std::vector<FolderPlace> folderPlaces(const std::string& home, const std::vector<Mount>& mounts)
{
    std::vector<FolderPlace> places{{home, QStringLiteral("Home"), "house"},
        {"/", QStringLiteral("Computer"), "internaldrive"}};
    for (const auto& mount : mounts) {
        const auto isSame = [&](const FolderPlace& place) { return place.path == mount.point; };
        if (isVolume(mount) && std::ranges::none_of(places, isSame))
            places.push_back({mount.point, fileNameText(lastName(mount.point)), "internaldrive"});
    }
    return places;
}

struct FolderChooser::Read {
    std::string folder; ///< as it is spelt on the disk
    FileError error; ///< counts where there are no entries
    Entries entries;
    std::vector<std::string> unknown;
};

FolderChooser::FolderChooser(std::string home, Lister lister, std::chrono::milliseconds patience)
    : m_home(std::move(home))
    , m_lister(std::move(lister))
    , m_places(folderPlaces(m_home, {}))
    , m_entries(std::make_shared<const std::vector<Entry>>())
{
    MainQueue::instance(); // of this thread, not of the first that has an answer
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this, [this] {
        ++m_question; // an answer after all would come as a surprise
        refuse(QStringLiteral("“%1” doesn’t answer.").arg(fileNameText(lastName(m_asked))));
    });
    connect(this, &FolderChooser::folderChanged, this, &FolderChooser::choiceChanged);
    connect(this, &FolderChooser::rowChanged, this, &FolderChooser::choiceChanged);
}

FolderChooser::~FolderChooser() = default;

void FolderChooser::begin(const QUrl& folder)
{
    m_folder.clear();
    m_showsHidden = false;
    setRow(-1);
    showEntries(std::make_shared<const std::vector<Entry>>());
    Q_EMIT folderChanged();
    Q_EMIT showsHiddenChanged();
    show(pathFromUrl(folder));
    if (!m_mountQueue)
        m_mountQueue = std::make_unique<SerialQueue>(SerialQueue::Urgency::asTheCaller);
    runInBackground(*m_mountQueue, this, currentMounts, [this](const auto& mounts) {
        if (!mounts.value)
            return;
        m_places = folderPlaces(m_home, *mounts.value);
        Q_EMIT placesChanged();
    });
}

void FolderChooser::go(const QString& text)
{
    show(pathOfText(text, m_folder.empty() ? m_home : m_folder, m_home));
}

void FolderChooser::enter(int row)
{
    if (row >= 0 && row < rowCount())
        show(below(m_folder, nameAt(row)));
}

void FolderChooser::goUp()
{
    if (m_folder.size() > 1)
        show(m_folder.substr(0, std::max<std::size_t>(m_folder.rfind('/'), 1)));
}

void FolderChooser::goToPlace(int place)
{
    if (place >= 0 && place < static_cast<int>(m_places.size()))
        show(m_places[static_cast<std::size_t>(place)].path);
}

void FolderChooser::take(const QString& text)
{
    if (text != path())
        show(pathOfText(text, m_folder.empty() ? m_home : m_folder, m_home), true);
    else if (canTake() && m_row >= 0)
        Q_EMIT chosen(folderAt(m_row));
    else if (canTake())
        Q_EMIT chosen({m_folder});
}

void FolderChooser::show(const std::string& folder, bool takeIt)
{
    m_asked = folder;
    m_message.clear();
    if (folder.find('\0') != std::string::npos) {
        refuse(QStringLiteral("No folder can have this name."));
        return;
    }
    setBusy(true);
    m_patience.start();
    m_queue = std::make_unique<SerialQueue>(SerialQueue::Urgency::asTheCaller);
    auto read = [folder, lister = m_lister] {
        Read result;
        result.folder = typedPath(folder);
        auto listed = lister(result.folder);
        if (!listed) {
            result.error = listed.error();
            return result;
        }
        std::vector<Entry> entries;
        entries.reserve(listed->folders.size());
        std::ranges::transform(listed->folders, std::back_inserter(entries), entryOf);
        result.entries = ordered(std::move(entries));
        result.unknown = std::move(listed->unknown);
        return result;
    };
    runInBackground(*m_queue, this, std::move(read),
        [this, question = ++m_question, takeIt](const Outcome<Read>& outcome) {
            if (question != m_question)
                return;
            if (outcome.value)
                showRead(*outcome.value, takeIt);
            else
                refuse(displayText(outcome.error));
        });
}

void FolderChooser::showRead(const Read& read, bool takeIt)
{
    if (!read.entries) {
        refuse(fileNameText(read.error.message));
        return;
    }
    m_patience.stop();
    setBusy(false);
    m_folder = read.folder;
    setRow(-1);
    Q_EMIT folderChanged();
    showEntries(read.entries);
    if (takeIt)
        Q_EMIT chosen({m_folder});
    else if (!read.unknown.empty())
        lookAtUnknown(read.unknown);
}

void FolderChooser::lookAtUnknown(std::vector<std::string> names)
{
    auto look = [folder = m_folder, names = std::move(names), known = m_entries] {
        auto entries = *known;
        for (const auto& name : names) {
            if (leadsToFolder(below(folder, name)))
                entries.push_back(entryOf(name));
        }
        return entries.size() == known->size() ? known : ordered(std::move(entries));
    };
    runInBackground(*m_queue, this, std::move(look),
        [this, question = m_question](const Outcome<Entries>& outcome) {
            if (question == m_question && outcome.value && *outcome.value != m_entries)
                showEntries(*outcome.value);
        });
}

FolderChooser::Entry FolderChooser::entryOf(std::string name)
{
    auto folded = foldedText(name);
    return {std::move(name), std::move(folded)};
}

FolderChooser::Entries FolderChooser::ordered(std::vector<Entry> entries)
{
    std::ranges::sort(entries, [](const Entry& a, const Entry& b) {
        return std::tie(a.folded, a.name) < std::tie(b.folded, b.name);
    });
    return std::make_shared<const std::vector<Entry>>(std::move(entries));
}

void FolderChooser::showEntries(Entries entries)
{
    const auto marked = m_row >= 0 ? nameAt(m_row) : std::string();
    m_entries = std::move(entries);
    m_rows.clear();
    int row = -1;
    for (std::size_t i = 0; i < m_entries->size(); ++i) {
        const auto& name = (*m_entries)[i].name;
        if (!m_showsHidden && name.starts_with('.'))
            continue;
        if (!marked.empty() && name == marked)
            row = rowCount();
        m_rows.push_back(i);
    }
    m_row = -1;
    ++m_revision;
    Q_EMIT rowsChanged();
    m_row = row;
    Q_EMIT rowChanged();
}

void FolderChooser::refuse(const QString& message)
{
    m_patience.stop();
    m_message = message;
    m_busy = false;
    Q_EMIT stateChanged();
}

void FolderChooser::setBusy(bool busy)
{
    m_busy = busy;
    Q_EMIT stateChanged();
}

void FolderChooser::setRow(int row)
{
    row = row < rowCount() ? std::max(row, -1) : -1;
    if (row == m_row)
        return;
    m_row = row;
    if (row >= 0 && !m_message.isEmpty()) {
        m_message.clear();
        Q_EMIT stateChanged();
    }
    Q_EMIT rowChanged();
}

void FolderChooser::setShowsHidden(bool shows)
{
    if (shows == m_showsHidden)
        return;
    m_showsHidden = shows;
    Q_EMIT showsHiddenChanged();
    showEntries(m_entries);
}

const std::string& FolderChooser::nameAt(int row) const
{
    return (*m_entries)[m_rows[static_cast<std::size_t>(row)]].name;
}

QString FolderChooser::nameText(int row) const
{
    return row >= 0 && row < rowCount() ? fileNameText(nameAt(row)) : QString();
}

FilePath FolderChooser::folderAt(int row) const
{
    return row >= 0 && row < rowCount() ? FilePath{below(m_folder, nameAt(row))} : FilePath();
}

QString FolderChooser::choiceName() const
{
    return m_row >= 0 ? nameText(m_row) : fileNameText(lastName(m_folder));
}

QString FolderChooser::choicePath() const
{
    return fileNameText(m_row >= 0 ? folderAt(m_row).bytes : m_folder);
}

QStringList FolderChooser::placeTitles() const
{
    QStringList titles;
    for (const auto& place : m_places)
        titles.append(place.title);
    return titles;
}

QString FolderChooser::placeSymbol(int place) const
{
    return QLatin1String(m_places.at(static_cast<std::size_t>(place)).symbol);
}

bool FolderChooser::isAtPlace(int place) const
{
    return m_places.at(static_cast<std::size_t>(place)).path == m_folder;
}

int FolderChooser::rowBeginningWith(const QString& text, int from) const
{
    const auto wanted = foldedText(text.toStdString());
    for (int i = 0; i < rowCount(); ++i) {
        const int row = (std::max(from, 0) + i) % rowCount();
        if ((*m_entries)[m_rows[static_cast<std::size_t>(row)]].folded.starts_with(wanted))
            return row;
    }
    return -1;
}

} // namespace kestavon
