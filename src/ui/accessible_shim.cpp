#include "ui/accessible_shim.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QtQuick/private/qaccessiblequickitem_p.h>
#include <QtQuick/private/qquickitem_p.h>

namespace kestavon {

namespace {

class AccessibleItem final : public QAccessibleQuickItem {
public:
    using QAccessibleQuickItem::QAccessibleQuickItem;

    QAccessible::State state() const override
    {
        auto state = QAccessibleQuickItem::state();
        if (const auto* shown = quickItem(); shown && !shown->isEnabled())
            state.disabled = true;
        return state;
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
    bool isButton() const { return object() && object()->inherits("QQuickAbstractButton"); }
};

QAccessibleInterface* makeInterface(const QString& className, QObject* object)
{
    // Asked once for each class that the object inherits.
    if (className != QLatin1String("QQuickItem"))
        return nullptr;
    auto* item = qobject_cast<QQuickItem*>(object);
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
