#include "support/event_loop.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "ui/support/window_test.h"

#include <QAccessible>
#include <QTest>

#include <algorithm>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::file;
using test::processEvents;

/// The Storage screen with a thousand files, file-0 (the largest) to file-999.
class StorageWindow : public test::WindowTest {
protected:
    StorageWindow()
    {
        open();
        model->setSection(AppSection::storage);
        processEvents();
    }

    void scanThousandFiles()
    {
        std::vector<FileRecord> records;
        for (int i = 0; i < 1000; ++i)
            records.push_back(
                file("/home/alice/file-" + std::to_string(i) + (i % 2 ? ".odd" : ".even"),
                    (1000 - i) * 1000));
        scan(records);
    }

    QPointF rowPoint(int row)
    {
        auto& table = need("fileTable");
        return need("tableBody")
            .mapToScene({150, 34.0 * row + 17 - table.property("offset").toDouble()});
    }
    void clickRow(int row, Qt::KeyboardModifiers modifiers = {})
    {
        clickAt(rowPoint(row), modifiers);
    }
    void filter(const QString& text)
    {
        press(Qt::Key_F, Qt::ControlModifier);
        type(text);
        ASSERT_TRUE(settle());
    }

    /// What a screen reader calls the first rows.
    QStringList spokenRows(int count)
    {
        auto* table = QAccessible::queryAccessibleInterface(&need("tableBody"));
        QStringList names;
        for (int i = 0; i < count; ++i)
            names.append(table->child(i)->text(QAccessible::Name));
        return names;
    }

    RecordTableModel& rows() { return *states->storage()->rows(); }
    std::vector<int> selectedRows()
    {
        std::vector<int> selected;
        for (int row = 0; row < rows().rowCount(); ++row) {
            if (rows().isSelected(row))
                selected.push_back(row);
        }
        return selected;
    }
    /// What the bar says; nothing while it is not shown.
    QString barText()
    {
        auto* summary = item("selectionSummary");
        return summary ? summary->property("text").toString() : QString();
    }
    double offset() { return need("fileTable").property("offset").toDouble(); }
};

using testing::ElementsAre;

TEST_F(StorageWindow, OffersAScanWhileThereIsNothingToList)
{
    EXPECT_EQ(item("fileTable"), nullptr);
    clickItem("startScan");
    EXPECT_TRUE(model->scanPhase().isScanning());
    EXPECT_EQ(item("startScan"), nullptr) << "the running scan stands in its place";
    model->stopStorageScan();
    processEvents();
    EXPECT_NE(item("startScan"), nullptr);

    scanThousandFiles();
    EXPECT_NE(item("fileTable"), nullptr);
    EXPECT_EQ(item("startScan"), nullptr);
}

TEST_F(StorageWindow, SelectsWithTheMouse)
{
    scanThousandFiles();
    EXPECT_EQ(barText(), "");
    clickRow(2);
    EXPECT_THAT(selectedRows(), ElementsAre(2));
    EXPECT_EQ(barText(), "1 selected · 998 KB");
    clickRow(4, Qt::ShiftModifier);
    EXPECT_THAT(selectedRows(), ElementsAre(2, 3, 4));
    clickRow(3, Qt::ControlModifier);
    EXPECT_THAT(selectedRows(), ElementsAre(2, 4));
    EXPECT_EQ(barText(), "2 selected · 2 MB");
    clickItem("clearSelection");
    EXPECT_THAT(selectedRows(), ElementsAre());
    EXPECT_EQ(item("fileActionBar"), nullptr);
}

TEST_F(StorageWindow, SelectsWithTheKeyboardAndKeepsTheCurrentRowInView)
{
    scanThousandFiles();
    need("tableBody").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Down);
    press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_THAT(selectedRows(), ElementsAre(0, 1));
    press(Qt::Key_End);
    EXPECT_THAT(selectedRows(), ElementsAre(999));
    const double bottom = 1000 * 34 - need("tableBody").height();
    EXPECT_DOUBLE_EQ(offset(), bottom);
    press(Qt::Key_PageUp);
    EXPECT_LT(rows().currentRow(), 999);
    press(Qt::Key_Home);
    EXPECT_EQ(offset(), 0);

    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(rows().selectedCount(), 1000);
    EXPECT_EQ(barText(), "1000 selected · 500.5 MB");
    press(Qt::Key_Escape);
    EXPECT_EQ(rows().selectedCount(), 0);

    press(Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(rows().selectedCount(), 0) << "Ctrl moves without selecting";
    press(Qt::Key_Space);
    EXPECT_THAT(selectedRows(), ElementsAre(rows().currentRow()));
}

TEST_F(StorageWindow, FiltersWhileTypingAndCountsOnlyTheSelectedRowsInSight)
{
    scanThousandFiles();
    clickRow(0);
    clickRow(1, Qt::ControlModifier);
    EXPECT_EQ(barText(), "2 selected · 2 MB");

    filter("ODD");
    EXPECT_EQ(rows().rowCount(), 500);
    EXPECT_EQ(states->storage()->subtitle(), "1000 items, sorted by size");
    EXPECT_EQ(spokenRows(2), (QStringList{"file-1.odd", "file-3.odd"}));
    EXPECT_EQ(barText(), "1 selected · 999 KB");

    press(Qt::Key_Escape);
    ASSERT_TRUE(settle());
    EXPECT_EQ(rows().rowCount(), 1000) << "Escape empties the field";
    EXPECT_EQ(barText(), "2 selected · 2 MB");
}

TEST_F(StorageWindow, ScrollsByWheelToEveryRowAndNotBeyond)
{
    scanThousandFiles();
    const auto turnWheel = [&](int notches) {
        QWheelEvent event(QPointF(700, 400), window->mapToGlobal(QPointF(700, 400)), {},
            {0, 120 * notches}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(window, &event);
        processEvents();
    };
    turnWheel(-1);
    EXPECT_EQ(offset(), 3 * 34);
    turnWheel(+2);
    EXPECT_EQ(offset(), 0);
    turnWheel(-1000);
    EXPECT_DOUBLE_EQ(offset(), 1000 * 34 - need("tableBody").height());

    filter("odd");
    EXPECT_EQ(rows().rowCount(), 500);
    EXPECT_EQ(offset(), 0) << "what a filter finds is shown from the top";
}

TEST_F(StorageWindow, KeepsTheChosenRowInViewWhenTheBarTakesItsPlace)
{
    scanThousandFiles();
    const int lastVisible = static_cast<int>(need("tableBody").height() / 34) - 1;
    clickRow(lastVisible);
    const auto& body = need("tableBody");
    EXPECT_GE(offset() + body.height(), 34.0 * (lastVisible + 1));
}

class RemovalWindow : public StorageWindow {
protected:
    RemovalWindow()
    {
        states->storage()->removal()->setRemove(
            [this](RemovalKind kind, RecordPick selected, auto done) {
                m_kinds.push_back(kind);
                m_removed = selected.positions.size();
                done(m_error);
            });
        scanThousandFiles();
        clickRow(0);
        clickRow(1, Qt::ShiftModifier);
    }
    QString focusedLabel()
    {
        auto* item = window->activeFocusItem();
        return item ? item->property("label").toString() : QString();
    }

    std::vector<RemovalKind> m_kinds;
    std::size_t m_removed = 0;
    QString m_error;
};

TEST_F(RemovalWindow, AsksFirstAndTakesNoForAnAnswer)
{
    clickItem("deleteForever");
    EXPECT_EQ(focusedLabel(), "Cancel") << "a careless Return must not delete";
    press(Qt::Key_Return);
    EXPECT_TRUE(m_kinds.empty());
    EXPECT_THAT(selectedRows(), ElementsAre(0, 1));

    clickItem("moveToTrash");
    EXPECT_NE(item("confirm"), nullptr);
    press(Qt::Key_Escape);
    EXPECT_EQ(item("confirm"), nullptr);
    EXPECT_FALSE(states->storage()->removal()->asking());
    EXPECT_TRUE(m_kinds.empty());
}

TEST_F(RemovalWindow, RemovesAfterAYes)
{
    clickItem("moveToTrash");
    EXPECT_EQ(need("confirm").property("label").toString(), "Move to Trash");
    clickItem("confirm");
    EXPECT_THAT(m_kinds, ElementsAre(RemovalKind::trash));
    EXPECT_EQ(m_removed, 2u);
    EXPECT_EQ(rows().selectedCount(), 0);
    EXPECT_EQ(window->activeFocusItem(), &need("tableBody")) << "the bar's button is gone";

    clickRow(5);
    clickItem("deleteForever");
    clickItem("confirm");
    EXPECT_THAT(m_kinds, ElementsAre(RemovalKind::trash, RemovalKind::permanent));
    EXPECT_EQ(m_removed, 1u);
}

TEST_F(RemovalWindow, AsksTheSameForTheKeys)
{
    const auto pressAndConfirm = [&](Qt::KeyboardModifiers modifiers, const QString& label) {
        press(Qt::Key_Delete, modifiers);
        EXPECT_EQ(focusedLabel(), "Cancel");
        EXPECT_EQ(need("confirm").property("label").toString(), label);
        clickItem("confirm");
    };
    pressAndConfirm(Qt::NoModifier, "Move to Trash");
    EXPECT_THAT(m_kinds, ElementsAre(RemovalKind::trash));
    clickRow(3);
    pressAndConfirm(Qt::ShiftModifier, "Delete Forever");
    EXPECT_THAT(m_kinds, ElementsAre(RemovalKind::trash, RemovalKind::permanent));

    press(Qt::Key_Delete);
    EXPECT_EQ(item("confirm"), nullptr) << "nothing is selected";
}

TEST_F(RemovalWindow, TellsWhatWentWrong)
{
    m_error = "The disk is full.";
    clickItem("moveToTrash");
    clickItem("confirm");
    EXPECT_EQ(focusedLabel(), "OK");
    EXPECT_THAT(selectedRows(), ElementsAre(0, 1));
    clickItem("ok");
    EXPECT_EQ(item("ok"), nullptr);
    EXPECT_EQ(states->storage()->removal()->errorMessage(), "");
}

TEST_F(RemovalWindow, TellsLaterWhatWentWrongWhileAnotherScreenWasShown)
{
    RecordRemoval::Done done;
    states->storage()->removal()->setRemove(
        [&done](RemovalKind, RecordPick, auto later) { done = std::move(later); });
    clickItem("moveToTrash");
    clickItem("confirm");
    model->setSection(AppSection::history);
    processEvents();
    done("The disk is full.");
    EXPECT_EQ(item("ok"), nullptr);
    model->setSection(AppSection::storage);
    processEvents();
    clickItem("ok");
    EXPECT_EQ(states->storage()->removal()->errorMessage(), "");
}

TEST_F(StorageWindow, ForgetsFilterAndSelectionWhenAnotherScreenIsShown)
{
    scanThousandFiles();
    clickRow(0);
    filter("odd");
    model->setSection(AppSection::largeFiles);
    processEvents();
    model->setSection(AppSection::storage);
    ASSERT_TRUE(settle());
    EXPECT_EQ(rows().rowCount(), 1000);
    EXPECT_EQ(rows().selectedCount(), 0);
    EXPECT_EQ(need("filterField").property("text").toString(), "");
}

TEST_F(StorageWindow, ShowsTheHundredLargestFilesOnTheirOwnScreen)
{
    model->setSection(AppSection::largeFiles);
    processEvents();
    EXPECT_NE(item("startScan"), nullptr);
    scanThousandFiles();
    auto& largeFiles = *states->largeFiles();
    EXPECT_EQ(largeFiles.rows()->rowCount(), 100);
    clickRow(0);
    EXPECT_EQ(barText(), "1 selected · 1 MB");
    EXPECT_EQ(rows().selectedCount(), 0) << "each screen has a selection of its own";
}

TEST_F(StorageWindow, ReadsItsRowsFromTheTopDownWhereverItIsScrolled)
{
    scanThousandFiles();
    auto* table = QAccessible::queryAccessibleInterface(&need("tableBody"));
    ASSERT_TRUE(table);
    for (const int row : {0, 5, 31, 999}) {
        QMetaObject::invokeMethod(&need("fileTable"), "ensureVisible", Q_ARG(int, row));
        processEvents();
        std::vector<double> tops;
        for (int i = 0; i < table->childCount(); ++i) {
            tops.push_back(qobject_cast<QQuickItem*>(table->child(i)->object())->y());
            EXPECT_EQ(table->indexOfChild(table->child(i)), i);
        }
        EXPECT_GT(tops.size(), 10U);
        EXPECT_TRUE(std::ranges::is_sorted(tops)) << "with row " << row << " in view";
    }
    EXPECT_EQ(table->child(-1), nullptr);
    EXPECT_EQ(table->child(table->childCount()), nullptr);
}

} // namespace
} // namespace kestavon
