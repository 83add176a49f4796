#include "ui/accessible_shim.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QtQuick/private/qaccessiblequickitem_p.h>
#include <QtQuick/private/qquickitem_p.h>

#include <algorithm>
#include <functional>

namespace kestavon {

namespace {

class AccessibleItem final : public QAccessibleQuickItem {
public:
    using QAccessibleQuickItem::QAccessibleQuickItem;

    QAccessible::Role role() const override
    {
        const auto named = declared("accessibleRole");
        return named.isValid() ? static_cast<QAccessible::Role>(named.toInt())
                               : QAccessibleQuickItem::role();
    }

    QString text(QAccessible::Text kind) const override
    {
        if (popup() && (kind == QAccessible::Name || kind == QAccessible::Description)) {
            const auto said = declared(kind == QAccessible::Name ? "title" : "message").toString();
            if (!said.isEmpty())
                return said;
        }
        return QAccessibleQuickItem::text(kind);
    }

    QAccessible::State state() const override
    {
        auto state = QAccessibleQuickItem::state();
        if (const auto* shown = quickItem(); shown && !shown->isEnabled())
            state.disabled = true;
        if (role() == QAccessible::ButtonMenu)
            state.hasPopup = true;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        // Quick leaves bars out, although it knows where their value is: in the item's properties.
        const bool isBar = role() == QAccessible::ProgressBar && hasValue();
        if (type == QAccessible::ValueInterface && isBar)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleQuickItem::interface_cast(type);
    }

    QAccessibleInterface* child(int index) const override
    {
        if (!holdsRows())
            return QAccessibleQuickItem::child(index);
        const auto rows = rowsFromTheTop();
        return index >= 0 && index < rows.size() ? rows[index] : nullptr;
    }

    int indexOfChild(const QAccessibleInterface* row) const override
    {
        if (!holdsRows())
            return QAccessibleQuickItem::indexOfChild(row);
        return static_cast<int>(rowsFromTheTop().indexOf(const_cast<QAccessibleInterface*>(row)));
    }

    QStringList actionNames() const override
    {
        auto names = QAccessibleQuickItem::actionNames();
        if (isButton() && !names.contains(pressAction()))
            names.prepend(pressAction());
        names.removeDuplicates();
        return names;
    }

    void doAction(const QString& name) override
    {
        if (!isButton() || (name != pressAction() && name != toggleAction())) {
            QAccessibleQuickItem::doAction(name);
            return;
        }
        auto* pressed = quickItem();
        if (!pressed->isEnabled())
            return;
        // The keyboard's way through the button emits everything that a click does.
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent space(type, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
            QCoreApplication::sendEvent(pressed, &space);
        }
    }

private:
    QQuickItem* quickItem() const { return qobject_cast<QQuickItem*>(object()); }
    /// The popup that the item is shown for, which knows what it is about; the item does not.
    QObject* popup() const
    {
        return object() && object()->inherits("QQuickPopupItem") ? object()->parent() : nullptr;
    }
    QVariant declared(const char* property) const
    {
        const auto* of = popup() ? popup() : object();
        return of ? of->property(property) : QVariant();
    }
    bool hasValue() const { return object() && object()->property("value").isValid(); }
    bool holdsRows() const { return role() == QAccessible::Table || role() == QAccessible::List; }
    /// The items that show rows are used again for others as the rows are scrolled: their own order
    /// says nothing.
    QList<QAccessibleInterface*> rowsFromTheTop() const
    {
        QList<QAccessibleInterface*> rows;
        for (int i = 0; i < childCount(); ++i)
            rows.append(QAccessibleQuickItem::child(i));
        std::ranges::stable_sort(rows, std::ranges::less(), [](const QAccessibleInterface* row) {
            const auto* item = qobject_cast<QQuickItem*>(row->object());
            return item ? item->mapToScene({}).y() : 0.0; // rows may lie in groups
        });
        return rows;
    }
    bool isButton() const { return object() && object()->inherits("QQuickAbstractButton"); }
};

QAccessibleInterface* makeInterface(const QString& className, QObject* object)
{
    // Asked once for each class that the object inherits, the narrowest first. For pages, which the
    // items of popups are, Quick has an interface of its own.
    auto* item = qobject_cast<QQuickItem*>(object);
    if (className == QLatin1String("QQuickPopupItem"))
        return new AccessibleItem(item);
    if (className != QLatin1String("QQuickItem"))
        return nullptr;
    return item && QQuickItemPrivate::get(item)->isAccessible ? new AccessibleItem(item) : nullptr;
}

} // namespace

void installAccessibleShim(QQmlEngine& engine)
{
    // Quick installs its own factory when it is first imported; the one installed last is asked
    // first.
    QQmlComponent quick(&engine);
    quick.setData("import QtQuick\nQtObject {}", QUrl());
    delete quick.create();
    QAccessible::installFactory(makeInterface);
}

} // namespace kestavon
