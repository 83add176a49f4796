#pragma once

#include "platform/linux/mount_table.h"
#include "platform/subfolders.h"
#include "ui/widgets/file_path.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kestavon {

class SerialQueue;

/// A path to be read and typed: as it is where it is plain text, else as a file URL, which names
/// every byte of it.
QString typedText(const std::string& path);
/// The path that such a text names, byte for byte; "~" is `home`, and what does not begin at the
/// root is taken from `folder`. Not simplified.
std::string pathOfText(const QString& text, const std::string& folder, const std::string& home);

/// A place to begin at.
struct FolderPlace {
    std::string path;
    QString title;
    const char* symbol;
};
/// The home, the root of the file system, and the volumes that hold files of a user.
std::vector<FolderPlace> folderPlaces(const std::string& home, const std::vector<Mount>& mounts);

/// The choice of one folder: which is shown, what folders are in it, and which of them is marked.
/// Names are bytes. Folders are read on a thread of their own: one that does not answer is given up
/// after a few seconds, and the folder before it stays. Main thread.
class FolderChooser final : public QObject {
    Q_OBJECT
    /// The folder shown, as `typedText`; empty while there has been none yet.
    Q_PROPERTY(QString path READ path NOTIFY folderChanged)
    Q_PROPERTY(bool canGoUp READ canGoUp NOTIFY folderChanged)
    /// The folders in it, in the order of their names.
    Q_PROPERTY(int rowCount READ rowCount NOTIFY rowsChanged)
    Q_PROPERTY(int revision READ revision NOTIFY rowsChanged)
    /// The row that is marked; -1: none.
    Q_PROPERTY(int row READ row WRITE setRow NOTIFY rowChanged)
    /// What `take` takes: the marked folder, else the one that is shown.
    Q_PROPERTY(QString choiceName READ choiceName NOTIFY choiceChanged)
    Q_PROPERTY(QString choicePath READ choicePath NOTIFY choiceChanged)
    Q_PROPERTY(bool canTake READ canTake NOTIFY choiceChanged)
    Q_PROPERTY(bool showsHidden READ showsHidden WRITE setShowsHidden NOTIFY showsHiddenChanged)
    /// A folder is being read.
    Q_PROPERTY(bool busy READ busy NOTIFY stateChanged)
    /// Why the folder asked for last is not shown.
    Q_PROPERTY(QString message READ message NOTIFY stateChanged)
    Q_PROPERTY(QStringList placeTitles READ placeTitles NOTIFY placesChanged)
public:
    using Lister = std::function<FileResult<Subfolders>(const std::string& folder)>;

    /// `lister` may be called on several threads at once.
    explicit FolderChooser(std::string home, Lister lister = subfoldersOf,
        std::chrono::milliseconds patience = std::chrono::seconds(5));
    ~FolderChooser() override;

    QString path() const { return typedText(m_folder); }
    bool canGoUp() const { return m_folder != "/"; }
    int rowCount() const { return static_cast<int>(m_rows.size()); }
    int revision() const { return m_revision; }
    int row() const { return m_row; }
    void setRow(int row);
    QString choiceName() const;
    QString choicePath() const;
    bool canTake() const { return !m_folder.empty(); }
    bool showsHidden() const { return m_showsHidden; }
    void setShowsHidden(bool shows);
    bool busy() const { return m_busy; }
    QString message() const { return m_message; }
    QStringList placeTitles() const;

    /// Begins a new choice in this folder.
    Q_INVOKABLE void begin(const QUrl& folder);
    /// Shows the folder that a text names, see `pathOfText`.
    Q_INVOKABLE void go(const QString& text);
    Q_INVOKABLE void enter(int row);
    Q_INVOKABLE void goUp();
    Q_INVOKABLE void goToPlace(int place);
    /// Ends the choice by `chosen`. A text that names another folder than the shown one counts
    /// most, once that folder has been read.
    Q_INVOKABLE void take(const QString& text);

    Q_INVOKABLE QString nameText(int row) const;
    Q_INVOKABLE kestavon::FilePath folderAt(int row) const;
    Q_INVOKABLE QString placeSymbol(int place) const;
    Q_INVOKABLE bool isAtPlace(int place) const;
    /// The first row from `from` on, and then from the top, whose name begins with `text`, whatever
    /// the case; -1: none.
    Q_INVOKABLE int rowBeginningWith(const QString& text, int from) const;

Q_SIGNALS:
    void folderChanged();
    void rowsChanged();
    void rowChanged();
    void choiceChanged();
    void showsHiddenChanged();
    void stateChanged();
    void placesChanged();
    void chosen(const kestavon::FilePath& folder);

private:
    struct Entry {
        std::string name;
        std::string folded; ///< what names are ordered and found by
    };
    using Entries = std::shared_ptr<const std::vector<Entry>>;
    struct Read;

    static Entry entryOf(std::string name);
    static Entries ordered(std::vector<Entry> entries);
    void show(const std::string& folder, bool takeIt = false);
    void showRead(const Read& read, bool takeIt);
    void lookAtUnknown(std::vector<std::string> names);
    void showEntries(Entries entries);
    void refuse(const QString& message);
    void setBusy(bool busy);
    const std::string& nameAt(int row) const;

    std::string m_home;
    Lister m_lister;
    std::vector<FolderPlace> m_places;
    std::string m_folder;
    Entries m_entries; ///< all of the shown folder
    std::vector<std::size_t> m_rows; ///< those that are rows
    int m_revision = 0;
    int m_row = -1;
    bool m_showsHidden = false;
    bool m_busy = false;
    QString m_message;
    std::string m_asked; ///< the folder that is being read
    QTimer m_patience;
    std::unique_ptr<SerialQueue> m_queue; ///< a new one for each folder: the last may never return
    std::unique_ptr<SerialQueue> m_mountQueue;
    unsigned m_question = 0; ///< of which folder an answer still counts
};

} // namespace kestavon
