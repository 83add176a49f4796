// Times what the record table asks of the main thread: every call that a click, a key, a filter
// text or a new scan makes, and the hand-over of finished rows. Ends with the longest one.
//
//   record_table_bench [RECORDS]   1000000

#include "made_records.h"
#include "thread_time.h"
#include "ui/widgets/record_table_model.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <vector>

namespace {

using namespace kestavon;

double longest = 0;

void timed(const char* what, const std::function<void()>& call)
{
    const auto time = bench::threadMilliseconds(call);
    longest = std::max(longest, time);
    std::printf("  %-52s %8.3f ms\n", what, time);
}

void timedRequest(
    const char* what, const RecordTableModel& table, const std::function<void()>& call)
{
    timed(what, call);
    double handOver = 0; // the longest single run of the event loop
    while (table.isBusy()) {
        handOver = std::max(handOver, bench::threadMilliseconds([] {
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        }));
    }
    longest = std::max(longest, handOver);
    std::printf("  %-52s %8.3f ms   %d rows, %d selected\n", "  its rows handed over", handOver,
        table.rowCount(), table.selectedCount());
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const auto count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1'000'000UL;
    const auto records = bench::madeRecords(count, 50);
    std::printf("%zu records; processor time of the main thread\n", records->size());

    auto table = std::make_unique<RecordTableModel>();
    const auto last = [&table] { return table->rowCount() - 1; };
    timedRequest("records set", *table, [&] { table->setRecords(records); });
    timed("25 rows' texts", [&] {
        for (int row = 0; row < 25; ++row) {
            for (int column = 0; column < 4; ++column)
                table->text(row, column);
        }
    });
    timed("click", [&] { table->click(5, Qt::NoModifier); });
    timed("click with Ctrl", [&] { table->click(last() / 2, Qt::ControlModifier); });
    timed("click with Shift, half of the rows", [&] { table->click(0, Qt::ShiftModifier); });
    timed("End with Shift, half of the rows", [&] { table->move(last(), Qt::ShiftModifier); });
    timed("Home with Ctrl and Shift, every row",
        [&] { table->move(-last(), Qt::ShiftModifier | Qt::ControlModifier); });
    timed("click with Ctrl, of all selected", [&] { table->click(7, Qt::ControlModifier); });
    timed("select all", [&] { table->selectAll(); });
    timed("positions of all rows, to be removed", [&] { table->selectedVisiblePositions(); });
    for (const auto* const text : {"e", "ep", "-1"}) {
        timedRequest(
            "filter, all selected", *table, [&] { table->setFilter(QString::fromLatin1(text)); });
    }
    timedRequest("filter emptied, all selected", *table, [&] { table->setFilter(QString()); });
    timed("clear", [&] { table->clearSelection(); });
    table->selectAll();
    const auto fewer = records->without(std::vector<std::uint32_t>{3, 4, 5});
    timedRequest("fewer records set, all selected", *table, [&] { table->setRecords(fewer); });
    timed("destroyed", [&] { table.reset(); });
    std::printf("longest call: %.3f ms\n", longest);
}
