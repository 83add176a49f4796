#pragma once

#include <QMetaType>
#include <QObject>
#include <QString>

namespace kestavon {

/// What a category's card shows, and its entry in the breakdown.
struct JunkCard {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString subtitle MEMBER subtitle)
    Q_PROPERTY(QString symbol MEMBER symbol)
    /// The name of the category's colour.
    Q_PROPERTY(QString color MEMBER color)
    Q_PROPERTY(bool isScanning MEMBER isScanning)
    /// The category was scanned, and nothing or something was found; else it can be scanned.
    Q_PROPERTY(bool isClean MEMBER isClean)
    Q_PROPERTY(bool isFound MEMBER isFound)
    /// "12.48 GB" and "128 items"
    Q_PROPERTY(QString total MEMBER total)
    Q_PROPERTY(QString items MEMBER items)
    /// What its symbols say, for screen readers.
    Q_PROPERTY(QString spokenState MEMBER spokenState)
public:
    QString title;
    QString subtitle;
    QString symbol;
    QString color;
    bool isScanning = false;
    bool isClean = false;
    bool isFound = false;
    QString total;
    QString items;
    QString spokenState;
};

} // namespace kestavon

Q_DECLARE_METATYPE(kestavon::JunkCard)
