#pragma once

#include "core/model/app_model.h"
#include "ui/widgets/file_path.h"

#include <QObject>
#include <QString>

namespace kestavon {

/// A path as a text for other programs: as it is where it is text, else as a file URL, which names
/// every byte of it and which most programs take for a path.
QString clipboardText(const std::string& path);

/// What a person can do with a path wherever one is shown. Main thread.
class PathActions final : public QObject {
    Q_OBJECT
public:
    explicit PathActions(AppModel& model);

    /// Opens the file or folder with the desktop's program for it.
    Q_INVOKABLE void open(const kestavon::FilePath& path);
    /// Opens the folder that holds it.
    Q_INVOKABLE void openFolder(const kestavon::FilePath& path);
    /// Puts the path on the clipboard, see `clipboardText`.
    Q_INVOKABLE void copy(const kestavon::FilePath& path);

Q_SIGNALS:
    /// Nothing opened; `reason` is a sentence for a person.
    void failed(const QString& reason);

private:
    void openItem(const std::string& path);

    AppModel& m_model;
};

} // namespace kestavon
