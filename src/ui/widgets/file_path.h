#pragma once

#include <QMetaType>
#include <QObject>

#include <string>

namespace kestavon {

/// A path for QML to keep and to hand back: the bytes of the file system, which no text need stand
/// for. What is shown for it is another matter (see `fileNameText`).
struct FilePath {
    Q_GADGET
    /// There is no path, and nothing can be done with it.
    Q_PROPERTY(bool empty READ empty)
public:
    std::string bytes;

    bool empty() const { return bytes.empty(); }
    friend bool operator==(const FilePath&, const FilePath&) = default;
};

} // namespace kestavon

Q_DECLARE_METATYPE(kestavon::FilePath)
