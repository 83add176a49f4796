#include "support/event_loop.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "ui/support/window_test.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QTest>
#include <QtGui/private/qguiapplication_p.h>
#include <QtGui/qpa/qplatformaccessibility.h>
#include <QtGui/qpa/qplatformintegration.h>

#include <utility>

namespace kestavon::test {

namespace {

/// What assistive technology hears: kind and name, in order.
class Heard {
public:
    Heard()
    {
        QAccessible::installUpdateHandler(hear);
        setListening(true);
    }
    ~Heard()
    {
        setListening(false);
        QAccessible::installUpdateHandler(nullptr);
    }
    Heard(const Heard&) = delete;
    Heard& operator=(const Heard&) = delete;

    static void forget() { s_heard.clear(); }
    /// Those of one kind.
    static QStringList take(const QString& kind)
    {
        auto heard = std::exchange(s_heard, {});
        heard.removeIf([&](const QString& said) { return !said.startsWith(kind); });
        return heard;
    }
    /// Where the keyboard went and what was selected, in the order of the alphabet.
    static QStringList takeMoves()
    {
        auto heard = std::exchange(s_heard, {});
        heard.removeIf([&](const QString& said) { return said.startsWith("renamed"); });
        heard.sort();
        return heard;
    }

private:
    // QAccessible::setActive only tells those who watch for it.
    static void setListening(bool listening)
    {
        QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(listening);
    }
    static void hear(QAccessibleEvent* event)
    {
        auto* said = event->accessibleInterface();
        const auto name = said ? said->text(QAccessible::Name) : QString();
        switch (event->type()) {
        case QAccessible::Focus: s_heard.append(QStringLiteral("reached ") + name); break;
        case QAccessible::SelectionAdd: s_heard.append(QStringLiteral("selected ") + name); break;
        case QAccessible::SelectionRemove: s_heard.append(QStringLiteral("left ") + name); break;
        case QAccessible::NameChanged: s_heard.append(QStringLiteral("renamed ") + name); break;
        default: break;
        }
    }

    static inline QStringList s_heard;
};

class AccessibleWindow : public WindowTest {
protected:
    void openStorage(int files)
    {
        open();
        model->setSection(AppSection::storage);
        std::vector<FileRecord> records;
        for (int i = 0; i < files; ++i)
            records.push_back(file("/home/alice/file-" + std::to_string(i), (files - i) * 1000));
        scan(records);
        need("tableBody").forceActiveFocus(Qt::TabFocusReason);
        processEvents();
        Heard::forget();
    }
    QAccessibleInterface* accessible(QObject* object) const
    {
        return QAccessible::queryAccessibleInterface(object);
    }
    /// Every open popup and what lies in it, as "role name".
    QStringList popups()
    {
        QStringList found;
        const auto look = [&](auto&& self, QQuickItem* item, bool inside) -> void {
            const bool isPopup = item->inherits("QQuickPopupItem");
            auto* said = item->isVisible() ? accessible(item) : nullptr;
            const auto role = said ? said->role() : QAccessible::NoRole;
            if (isPopup
                || (inside && (role == QAccessible::Dialog || role == QAccessible::PopupMenu)))
                found.append(QStringLiteral("%1 %2").arg(role == QAccessible::Dialog
                        ? QStringLiteral("dialog")
                        : role == QAccessible::PopupMenu ? QStringLiteral("menu")
                                                         : QStringLiteral("other"),
                    said ? said->text(QAccessible::Name) : QString()));
            for (auto* child : item->childItems()) {
                if (child->isVisible())
                    self(self, child, inside || isPopup);
            }
        };
        look(look, window->contentItem(), false);
        return found;
    }

    Heard heard;
};

TEST_F(AccessibleWindow, TellsTheRowThatTheArrowsReachAndWhatTheySelect)
{
    openStorage(100);
    press(Qt::Key_Down);
    EXPECT_EQ(Heard::takeMoves(), (QStringList{"reached file-0", "selected file-0"}));
    press(Qt::Key_Down);
    EXPECT_EQ(
        Heard::takeMoves(), (QStringList{"left file-0", "reached file-1", "selected file-1"}));
    press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(Heard::takeMoves(), (QStringList{"reached file-2", "selected file-2"}));
    press(Qt::Key_Space);
    EXPECT_EQ(Heard::takeMoves(), (QStringList{"left file-2"}));
    // The item that shows the last row has shown another one before.
    press(Qt::Key_End);
    EXPECT_EQ(Heard::take("reached"), (QStringList{"reached file-99"}));
    press(Qt::Key_PageUp);
    EXPECT_EQ(Heard::take("reached").size(), 1);
}

TEST_F(AccessibleWindow, SaysNothingOfRowsThatAreOnlyScrolledOrNotInSight)
{
    openStorage(1000);
    press(Qt::Key_A, Qt::ControlModifier);
    const auto inSight = need("fileTable").property("slots").toInt();
    const auto selected = Heard::take("selected").size();
    EXPECT_GT(selected, 1);
    EXPECT_LE(selected, inSight);

    press(Qt::Key_Escape);
    press(Qt::Key_Home); // one row is selected, and scrolled away and back
    Heard::forget();
    for (const double offset : {3400.0, 0.0}) {
        need("fileTable").setProperty("offset", offset);
        processEvents();
    }
    const auto scrolled = Heard::takeMoves();
    EXPECT_TRUE(scrolled.filter("selected").isEmpty() && scrolled.filter("left").isEmpty())
        << scrolled.join(", ").toStdString();
}

TEST_F(AccessibleWindow, TellsTheSectionThatTheArrowsReach)
{
    open();
    press(Qt::Key_Tab);
    processEvents();
    Heard::forget();
    press(Qt::Key_Down);
    EXPECT_EQ(
        Heard::takeMoves(), (QStringList{"left Dashboard", "reached Storage", "selected Storage"}));
}

TEST_F(AccessibleWindow, NamesEveryPopupOnce)
{
    openStorage(100);
    press(Qt::Key_Down);
    press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(popups(), (QStringList{"menu Path"}));
    press(Qt::Key_Escape);
    press(Qt::Key_F1);
    EXPECT_EQ(popups(), (QStringList{"dialog Keyboard Shortcuts"}));
    press(Qt::Key_Escape);
    press(Qt::Key_Delete);
    EXPECT_EQ(popups(), (QStringList{"dialog " + states->storage()->removal()->title()}));
    QStringList said;
    for (auto* item = window->activeFocusItem(); item; item = item->parentItem()) {
        if (item->inherits("QQuickPopupItem"))
            said.append(accessible(item)->text(QAccessible::Description));
    }
    EXPECT_EQ(said, (QStringList{states->storage()->removal()->message()}));
    press(Qt::Key_Escape);
    clickItem("statusItem");
    EXPECT_EQ(popups(), (QStringList{"dialog Disk and memory"}));
    EXPECT_FALSE(accessible(&need("tableScrollBar"))->text(QAccessible::Name).isEmpty());
}

TEST_F(AccessibleWindow, GivesControlsTheRolesThatTheyDeclare)
{
    open();
    auto* status = accessible(&need("statusItem"));
    EXPECT_EQ(status->role(), QAccessible::ButtonMenu);
    EXPECT_TRUE(status->state().hasPopup);
    clickItem("statusItem");
    EXPECT_EQ(accessible(&need("openKestavon"))->role(), QAccessible::MenuItem);
    press(Qt::Key_Escape);
    model->setSection(AppSection::settings);
    for (const auto* title : {"Privacy", "About"})
        EXPECT_EQ(accessible(waitFor(title))->role(), QAccessible::Heading) << title;
}

TEST_F(AccessibleWindow, KeepsQuietOfTextsThatAreIgnored)
{
    open();
    QQmlComponent component(engine.get());
    component.setData("import QtQuick\nimport Kestavon.Ui\n"
                      "Item { property alias quiet: quiet; property alias loud: loud\n"
                      "AppText { id: quiet; Accessible.ignored: true } AppText { id: loud } }",
        QUrl());
    const std::unique_ptr<QObject> texts(component.create());
    ASSERT_TRUE(texts) << component.errorString().toStdString();
    qobject_cast<QQuickItem*>(texts.get())->setParentItem(window->contentItem());
    Heard::forget();
    for (const auto* name : {"quiet", "loud"})
        texts->property(name).value<QObject*>()->setProperty("text", QString(name));
    EXPECT_EQ(Heard::take("renamed"), (QStringList{"renamed loud"}));
}

TEST_F(AccessibleWindow, ReachesByKeyEveryPathThatOffersSomething)
{
    open();
    scan({file("/home/alice/one", 1000)});
    const auto menuOpensAt = [&](const QString& name) {
        for (int tabs = 0; tabs < 40; ++tabs) {
            press(Qt::Key_Tab);
            if (!focusedName().contains(name))
                continue;
            press(Qt::Key_Menu);
            const bool opened = shown("Copy Path") != nullptr;
            press(Qt::Key_Escape);
            return opened && focusedName().contains(name);
        }
        return false;
    };
    EXPECT_TRUE(menuOpensAt("/home/alice")) << "the scanned folder";
    model->setSection(AppSection::settings);
    processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // the other screen
    EXPECT_TRUE(menuOpensAt("/home/alice"));

    QQmlComponent component(engine.get());
    component.setData("import Kestavon.Ui\nActivityRow { title: 'Item restored'; detail: path.empty"
                      " ? '2 files' : '/home/alice/one'; age: 'now'; width: 400 }",
        QUrl());
    for (const auto* path : {"/home/alice/one", ""}) {
        const std::unique_ptr<QObject> row(
            component.createWithInitialProperties({{"path", QVariant::fromValue(FilePath{path})},
                {"pathActions", QVariant::fromValue(states->pathActions())}}));
        ASSERT_TRUE(row) << component.errorString().toStdString();
        qobject_cast<QQuickItem*>(row.get())->setParentItem(need("sidebar").parentItem());
        EXPECT_EQ(menuOpensAt("Item restored"), *path != '\0')
            << "no stop where nothing is offered";
    }
}

} // namespace

} // namespace kestavon::test
