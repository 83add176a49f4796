#include "cli/model_run.h"

#include "cli/exit_code.h"
#include "cli/interrupt_watch.h"
#include "core/domain/removal_guard.h"
#include "platform/byte_count.h"

#include <QEventLoop>

#include <algorithm>
#include <cstdlib>

namespace kestavon {

namespace {

std::string_view wordOf(FileWork::Deed deed)
{
    switch (deed) {
    case FileWork::Deed::hold: return "Moving to the Safe Area";
    case FileWork::Deed::restore: return "Restoring";
    case FileWork::Deed::trash: return "Moving to the Trash";
    case FileWork::Deed::remove: break;
    }
    return "Deleting";
}

std::string workText(const FileWork& work)
{
    if (work.isStopping)
        return "Stopping…";
    auto text = std::string(wordOf(work.deed)) + ": " + std::to_string(work.item) + " of "
        + std::to_string(work.items);
    if (work.bytesToCopy > 0)
        text += " (" + fileByteCount(work.copiedBytes) + " of " + fileByteCount(work.bytesToCopy)
            + ')';
    return text + "  " + std::string(lastComponent(work.path));
}

/// For what cannot be stopped and changes nothing.
void endAtOnce()
{
    std::_Exit(interruptedExitCode);
}

bool isScanningAny(const std::vector<JunkGroup>& groups)
{
    return std::ranges::any_of(groups, &JunkGroup::isScanning);
}

} // namespace

ModelRun::ModelRun(AppModel& model, const Console& console)
    : m_model(model)
    , m_console(console)
{
}

int ModelRun::exitCode() const
{
    if (m_isInterrupted)
        return interruptedExitCode;
    return m_hasFailed ? failedExitCode : doneExitCode;
}

void ModelRun::fail(std::string_view sentence)
{
    m_hasFailed = true;
    m_console.complain(sentence);
}

void ModelRun::run(const std::function<void()>& start, const std::function<bool()>& isDone,
    const std::function<void()>& stop)
{
    QEventLoop loop;
    ProgressLine line(m_console);
    const InterruptWatch interrupts([&] {
        m_isInterrupted = true;
        stop();
    });
    start(); // Not before somebody listens for Ctrl+C.
    QObject::connect(&m_model, &AppModel::fieldChanged, &loop, [&](AppModel::Field field) {
        // Work on files can only be stopped once it is shown.
        if (field == AppModel::Field::fileWork && m_isInterrupted)
            m_model.stopFileWork();
        if (const auto text = progressText(); !text.empty())
            line.show(text);
        if (isDone())
            loop.quit();
    });
    if (!isDone())
        loop.exec();
}

std::string ModelRun::progressText() const
{
    if (m_model.fileWork())
        return workText(*m_model.fileWork());
    if (m_model.scanPhase().isScanning())
        return std::to_string(m_model.liveFileCount()) + " files found so far";
    if (m_model.duplicatePhase().isScanning()) {
        const auto& progress = m_model.duplicateProgress();
        auto text = m_model.duplicatePhase().text();
        if (progress.bytesToDo > 0)
            text += ' ' + fileByteCount(progress.bytesDone) + " of "
                + fileByteCount(progress.bytesToDo);
        return text;
    }
    const auto& groups = m_model.junkGroups();
    const auto scanned = std::ranges::count_if(groups, &JunkGroup::isScanned);
    if (m_model.securityPhase().isScanning())
        return m_model.securityPhase().text();
    if (m_model.isLoadingApps())
        return "Looking for applications…";
    if (isScanningAny(groups))
        return "Looking for junk: " + std::to_string(scanned) + " categories done";
    return {};
}

bool ModelRun::scan()
{
    run([this] { m_model.startStorageScan(); },
        [this] { return !m_model.scanPhase().isScanning(); },
        [this] { m_model.stopStorageScan(); });
    if (m_isInterrupted)
        return false;
    const auto& phase = m_model.scanPhase();
    if (phase.kind() == ScanPhase::Kind::failed)
        fail(phase.text());
    if (phase.kind() == ScanPhase::Kind::partial)
        fail(phase.text() + '.');
    if (!m_model.scanNotice().empty())
        fail(m_model.scanNotice());
    return phase.kind() != ScanPhase::Kind::failed && m_model.scanRootWasOpened();
}

bool ModelRun::findDuplicates()
{
    run([this] { m_model.startDuplicateAnalysis(); },
        [this] { return !m_model.duplicatePhase().isScanning(); },
        [this] { m_model.stopDuplicateAnalysis(); });
    if (m_isInterrupted)
        return false;
    const auto& phase = m_model.duplicatePhase();
    if (phase.kind() == ScanPhase::Kind::failed)
        fail(phase.text());
    return phase.kind() == ScanPhase::Kind::finished;
}

bool ModelRun::findJunk(const std::vector<JunkCategory>& categories)
{
    run(
        [&] {
            if (categories.empty())
                m_model.scanAllJunk();
            for (const auto category : categories)
                m_model.scanJunkCategory(category);
        },
        [this] { return !isScanningAny(m_model.junkGroups()); },
        [this] { m_model.stopJunkScan(); });
    return !m_isInterrupted;
}

bool ModelRun::reviewSecurity()
{
    run([this] { m_model.startSecurityScan(); },
        [this] { return !m_model.securityPhase().isScanning(); }, endAtOnce);
    return !m_isInterrupted;
}

bool ModelRun::findApps()
{
    run([this] { m_model.loadInstalledApps(); }, [this] { return !m_model.isLoadingApps(); },
        endAtOnce);
    return !m_isInterrupted;
}

bool ModelRun::await(AppModel::Field field, const std::function<void()>& start)
{
    bool isPublished = false;
    const auto watch = QObject::connect(&m_model, &AppModel::fieldChanged,
        [&](AppModel::Field changed) { isPublished = isPublished || changed == field; });
    run(
        start, [&] { return isPublished; }, endAtOnce);
    QObject::disconnect(watch);
    return !m_isInterrupted;
}

bool ModelRun::perform(const Operation& operation)
{
    bool isDone = false;
    std::string problem;
    // The end may come after the last field's change, so it wakes the loop itself.
    QEventLoop loop;
    ProgressLine line(m_console);
    const InterruptWatch interrupts([this] {
        m_isInterrupted = true;
        m_model.stopFileWork();
    });
    QObject::connect(&m_model, &AppModel::fieldChanged, &loop, [&](AppModel::Field field) {
        if (field != AppModel::Field::fileWork)
            return;
        if (m_isInterrupted) // work can only be stopped once it is shown
            m_model.stopFileWork();
        if (m_model.fileWork())
            line.show(workText(*m_model.fileWork()));
    });
    operation([&](const std::string& error) {
        problem = error;
        isDone = true;
        loop.quit();
    });
    if (!isDone)
        loop.exec();
    line.clear();
    if (!problem.empty())
        fail(problem);
    return problem.empty() && !m_isInterrupted;
}

} // namespace kestavon
