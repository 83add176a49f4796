#pragma once

#include <QObject>
#include <QQmlParserStatus>
#include <QtQml/qqmlregistration.h>

namespace kestavon {

/// Put into the item of a row whose list keeps the keyboard itself: tells assistive technology that
/// the item was reached or selected, which Qt 6.4 does for no item that only declares it
/// (`Accessible.focused`, `Accessible.selected`). What a key or a click brings about is told once
/// all of it is done, and nothing while nobody listens. Main thread. (Not final: QML derives from
/// it.)
///
///     AccessibleRow { row: line.row; focused: …; selected: … }
class AccessibleRow : public QObject, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    /// What the item shows at the moment: one that comes to show another row has not changed that
    /// row's selection.
    Q_PROPERTY(int row MEMBER m_row NOTIFY changed)
    /// The list has the keyboard, and this is its current row.
    Q_PROPERTY(bool focused MEMBER m_focused NOTIFY changed)
    Q_PROPERTY(bool selected MEMBER m_selected NOTIFY changed)
public:
    AccessibleRow();

Q_SIGNALS:
    void changed();

private:
    struct Told {
        int row = -1;
        bool focused = false;
        bool selected = false;
    };

    void classBegin() override { }
    void componentComplete() override;
    void tellSoon();
    void tell();

    int m_row = 0;
    bool m_focused = false;
    bool m_selected = false;
    bool m_complete = false;
    bool m_willTell = false;
    Told m_told;
};

} // namespace kestavon
