#pragma once

#include "platform/folder_picker.h"
#include "ui/widgets/file_path.h"

#include <QObject>
#include <QUrl>

namespace kestavon {

/// Passes the wish for a folder to the window, which shows the dialog, and its answer back. One
/// choice at a time: while one is shown, a second wish is answered with nothing. Main
/// thread. (Not final: QML derives from what it could make.)
class WindowFolderPicker : public QObject, public FolderPicker {
    Q_OBJECT
public:
    void pickFolder(const std::string& folder, Done done) override;

    /// The window's answer.
    Q_INVOKABLE void accept(const QUrl& folder);
    Q_INVOKABLE void acceptPath(const kestavon::FilePath& folder);
    Q_INVOKABLE void cancel();

Q_SIGNALS:
    /// Show the choice, starting at `folder`.
    void pickRequested(const QUrl& folder);

private:
    void answer(std::optional<std::string> folder);

    Done m_done;
};

/// A file URL and back, byte for byte: names need not be UTF-8.
QUrl urlFromPath(const std::string& path);
std::string pathFromUrl(const QUrl& url);

} // namespace kestavon
