#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace kestavon {

/// Which dialogs the desktop brings itself, by Qt's plugin for it or by its portal. (Not final: QML
/// derives from it.)
class DesktopDialogs : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool hasFolderDialog READ hasFolderDialog CONSTANT)
public:
    bool hasFolderDialog() const;
};

} // namespace kestavon
