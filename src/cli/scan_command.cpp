#include "cli/scan_command.h"

#include "cli/interrupt_watch.h"
#include "core/model/record_queries.h"
#include "platform/byte_count.h"

#include <QEventLoop>

#include <iomanip>

namespace kestavon {

namespace {

constexpr std::size_t largestShown = 10;
constexpr int interruptedExitCode = 130; // 128 + SIGINT, as shells report it

void printResult(const AppModel& model, std::ostream& out)
{
    const auto& records = *model.records();
    const auto summary = model.storageSummary();
    out << "Items   " << summary.count << '\n'
        << "Total   " << fileByteCount(summary.bytes) << '\n'
        << "Hidden  " << fileByteCount(summary.hiddenBytes) << '\n';

    const auto largest = largestFiles(records, largestShown);
    if (largest.empty())
        return;
    out << "\nLargest files\n";
    for (const auto position : largest) {
        out << std::setw(10) << fileByteCount(records.fileSize(position)) << "  "
            << printablePath(records.path(position)) << '\n';
    }
}

} // namespace

std::string printablePath(std::string_view bytes)
{
    static constexpr std::string_view hexDigits = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n')
            text += "\\n";
        else if (c == '\t')
            text += "\\t";
        else if (byte < 0x20 || byte == 0x7F)
            text.append("\\x").append({hexDigits[byte >> 4], hexDigits[byte & 0x0F]});
        else
            text += c;
    }
    return text;
}

int runScanCommand(AppModel& model, std::ostream& out, std::ostream& progress, bool showsProgress)
{
    QEventLoop loop;
    bool interrupted = false;
    const InterruptWatch interrupts([&] {
        interrupted = true;
        model.stopStorageScan();
    });
    QObject::connect(&model, &AppModel::fieldChanged, &loop, [&](AppModel::Field field) {
        if (field == AppModel::Field::liveFileCount && showsProgress)
            progress << '\r' << model.liveFileCount() << " files found so far" << std::flush;
        // A scan that found something ends with its history event, any other with its phase.
        const auto kind = model.scanPhase().kind();
        const bool foundNothing = kind == ScanPhase::Kind::idle || kind == ScanPhase::Kind::failed;
        if (field == (foundNothing ? AppModel::Field::scanPhase : AppModel::Field::history))
            loop.quit();
    });

    out << "Scanning " << printablePath(model.selectedRoot()) << '\n' << std::flush;
    model.startStorageScan();
    loop.exec();
    if (showsProgress)
        progress << "\r\x1B[K" << std::flush;

    if (interrupted)
        return interruptedExitCode;
    if (model.scanPhase().kind() == ScanPhase::Kind::failed) {
        progress << "kestavon: " << model.scanPhase().text() << '\n';
        return 1;
    }
    printResult(model, out);
    if (model.scanPhase().kind() == ScanPhase::Kind::partial)
        progress << "kestavon: " << model.scanPhase().text() << '\n';
    if (!model.scanNotice().empty())
        progress << "kestavon: " << printablePath(model.scanNotice()) << '\n';
    return model.scanRootWasOpened() ? 0 : 1;
}

} // namespace kestavon
