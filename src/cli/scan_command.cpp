#include "cli/scan_command.h"

#include "cli/interrupt_watch.h"
#include "core/domain/utf8.h"
#include "core/model/record_queries.h"
#include "platform/byte_count.h"

#include <QElapsedTimer>
#include <QEventLoop>

#include <algorithm>
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

void appendEscaped(std::string& text, std::string_view bytes)
{
    static constexpr std::string_view hexDigits = "0123456789ABCDEF";
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n')
            text += "\\n";
        else if (c == '\t')
            text += "\\t";
        else
            text.append("\\x").append({hexDigits[byte >> 4], hexDigits[byte & 0x0F]});
    }
}

/// Tells how far the scan has come.
class LiveCountLine {
public:
    LiveCountLine(std::ostream& out, bool onTerminal)
        : m_out(out)
        , m_onTerminal(onTerminal)
    {
        m_sinceLine.start();
    }

    void show(std::int64_t count)
    {
        if (!m_onTerminal && m_sinceLine.elapsed() < millisecondsBetweenLines)
            return;
        m_sinceLine.start();
        m_out << (m_onTerminal ? "\r" : "") << count << " files found so far"
              << (m_onTerminal ? "" : "\n") << std::flush;
    }

    void end()
    {
        if (m_onTerminal)
            m_out << "\r\x1B[K" << std::flush;
    }

private:
    static constexpr qint64 millisecondsBetweenLines = 2000;

    std::ostream& m_out;
    bool m_onTerminal;
    QElapsedTimer m_sinceLine;
};

} // namespace

std::string printablePath(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        const auto character = utf8CharacterAt(bytes, i);
        const auto length = std::max<std::size_t>(1, character.length);
        if (character.length > 0 && !misleads(character.code))
            text.append(bytes.substr(i, length));
        else
            appendEscaped(text, bytes.substr(i, length));
        i += length;
    }
    return text;
}

int runScanCommand(AppModel& model, std::ostream& out, std::ostream& progress, bool onTerminal)
{
    QEventLoop loop;
    LiveCountLine line(progress, onTerminal);
    bool interrupted = false;
    const InterruptWatch interrupts([&] {
        interrupted = true;
        model.stopStorageScan();
    });
    QObject::connect(&model, &AppModel::fieldChanged, &loop, [&](AppModel::Field field) {
        if (field == AppModel::Field::liveFileCount && model.liveFileCount() > 0)
            line.show(model.liveFileCount());
        // A scan that found something ends with its history event, any other with its phase.
        const auto kind = model.scanPhase().kind();
        const bool foundNothing = kind == ScanPhase::Kind::idle || kind == ScanPhase::Kind::failed;
        if (field == (foundNothing ? AppModel::Field::scanPhase : AppModel::Field::history))
            loop.quit();
    });

    out << "Scanning " << printablePath(model.selectedRoot()) << '\n' << std::flush;
    model.startStorageScan();
    loop.exec();
    line.end();

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
