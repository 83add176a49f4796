#include "ui/accessible_row.h"

#include <QAccessible>

#include <utility>

namespace kestavon {

AccessibleRow::AccessibleRow()
{
    connect(this, &AccessibleRow::changed, this, &AccessibleRow::tellSoon);
}

void AccessibleRow::componentComplete()
{
    m_complete = true;
    tellSoon();
}

void AccessibleRow::tellSoon()
{
    if (!m_complete)
        return;
    if (!QAccessible::isActive()) {
        m_told = {m_row, m_focused, m_selected};
        return;
    }
    if (!std::exchange(m_willTell, true))
        QMetaObject::invokeMethod(this, &AccessibleRow::tell, Qt::QueuedConnection);
}

void AccessibleRow::tell()
{
    m_willTell = false;
    const auto before = std::exchange(m_told, {m_row, m_focused, m_selected});
    const bool isSameRow = before.row == m_row;
    const auto send = [this](QAccessible::Event type) {
        QAccessibleEvent event(parent(), type);
        QAccessible::updateAccessibility(&event);
    };
    if (isSameRow && before.selected != m_selected)
        send(m_selected ? QAccessible::SelectionAdd : QAccessible::SelectionRemove);
    if (m_focused && !(isSameRow && before.focused))
        send(QAccessible::Focus);
}

} // namespace kestavon
