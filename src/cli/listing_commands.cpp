#include "cli/command.h"
#include "cli/exit_code.h"
#include "cli/model_run.h"
#include "cli/printable.h"
#include "cli/report.h"
#include "cli/text_table.h"
#include "core/model/record_queries.h"
#include "platform/byte_count.h"

#include <utility>

namespace kestavon {

namespace {

constexpr std::size_t largestShown = 10;

using enum TextTable::Align;

/// One command that looks: finds, then prints in the form that was asked for.
class Listing {
public:
    Listing(const CommandLine& line, AppModel& model, const Console& console)
        : m_line(line)
        , m_model(model)
        , m_out(console.out)
        , m_run(model, console)
    {
    }

    int run()
    {
        switch (m_line.verb) {
        case Verb::scan: scan(); break;
        case Verb::large: large(); break;
        case Verb::suggestions: suggestions(); break;
        case Verb::duplicates: duplicates(); break;
        case Verb::junk: junk(); break;
        case Verb::apps: apps(); break;
        case Verb::startup: startup(); break;
        case Verb::security: security(); break;
        case Verb::processes: processes(); break;
        case Verb::memory: memory(); break;
        case Verb::disk: disk(); break;
        default: break;
        }
        return m_run.exitCode();
    }

private:
    bool wants(OutputForm form) const { return m_line.form == form; }

    void scan()
    {
        const bool isScanned = m_run.scan();
        if (m_run.isInterrupted())
            return;
        const auto& records = *m_model.records();
        if (wants(OutputForm::json))
            return printDocument(m_model,
                {DocumentField::selectedRoot, DocumentField::scanPhase,
                    DocumentField::storageSummary, DocumentField::diskSpace, DocumentField::history,
                    DocumentField::records},
                m_out);
        if (wants(OutputForm::nulls)) {
            for (std::size_t i = 0; i < records.size(); ++i)
                printNullEnded(m_out, records.path(i));
            return;
        }
        if (!isScanned)
            return;
        const auto summary = m_model.storageSummary();
        m_out << "Folder  " << printablePath(m_model.selectedRoot()) << '\n'
              << "Items   " << summary.count << '\n'
              << "Total   " << fileByteCount(summary.bytes) << '\n'
              << "Hidden  " << fileByteCount(summary.hiddenBytes) << '\n';
        const auto largest = largestFiles(records, largestShown);
        if (!largest.empty())
            m_out << "\nLargest files\n";
        printRows(largest);
    }

    void large()
    {
        m_run.scan();
        if (m_run.isInterrupted())
            return;
        if (wants(OutputForm::json))
            return printDocument(m_model,
                {DocumentField::selectedRoot, DocumentField::scanPhase,
                    DocumentField::storageSummary, DocumentField::largestRecords},
                m_out);
        const auto largest = largestRecords(m_model);
        if (!wants(OutputForm::nulls))
            return printRows(largest);
        for (const auto position : largest)
            printNullEnded(m_out, m_model.records()->path(position));
    }

    void suggestions()
    {
        m_run.scan();
        if (m_run.isInterrupted())
            return;
        if (wants(OutputForm::json))
            return printDocument(m_model,
                {DocumentField::selectedRoot, DocumentField::scanPhase,
                    DocumentField::storageSummary, DocumentField::cleanupCandidates},
                m_out);
        const auto& candidates = *m_model.cleanupCandidates();
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            const auto path = candidates.records()->path(candidates.recordPosition(i));
            if (wants(OutputForm::nulls))
                printNullEnded(m_out, path);
            else
                printFileRow(m_out, candidates.estimatedBytes(i), path);
        }
    }

    void duplicates()
    {
        if (m_run.scan())
            m_run.findDuplicates();
        if (m_run.isInterrupted())
            return;
        const auto& groups = *m_model.duplicates();
        const auto& records = *groups.records();
        if (wants(OutputForm::json))
            return printDocument(m_model,
                {DocumentField::selectedRoot, DocumentField::scanPhase,
                    DocumentField::duplicatePhase, DocumentField::storageSummary,
                    DocumentField::history, DocumentField::duplicates},
                m_out);
        if (wants(OutputForm::nulls))
            return forEachSpareCopy(groups,
                [&](std::uint32_t position) { printNullEnded(m_out, records.path(position)); });
        for (std::size_t group = 0; group < groups.size(); ++group) {
            const auto members = groups.members(group);
            m_out << members.size() << " copies · Save "
                  << fileByteCount(groups.reclaimableBytes(group)) << '\n';
            for (std::size_t i = 0; i < members.size(); ++i)
                m_out << (i == groups.keptMember(group) ? "  keep  " : "        ")
                      << printablePath(records.path(members[i].position)) << '\n';
        }
        m_out << groups.size() << " groups · " << fileByteCount(groups.reclaimableBytes())
              << " reclaimable\n";
    }

    void junk()
    {
        if (!m_run.findJunk(m_line.categories))
            return;
        if (wants(OutputForm::json))
            return printDocument(
                m_model, {DocumentField::history, DocumentField::junkGroups}, m_out);
        TextTable table({left, right, right});
        for (const auto& group : m_model.junkGroups()) {
            if (!group.isScanned)
                continue;
            if (wants(OutputForm::nulls)) {
                for (const auto& item : group.items)
                    printNullEnded(m_out, item.record.path);
                continue;
            }
            table.addRow({std::string(rawValue(group.category)),
                std::to_string(group.items.size()) + " items", fileByteCount(group.items.bytes())});
            if (m_line.categories.empty())
                continue;
            m_out << rawValue(group.category) << '\n';
            for (const auto& item : group.items)
                printFileRow(m_out, item.estimatedBytes, item.record.path);
        }
        table.print(m_out);
    }

    void apps()
    {
        if (!m_run.findApps())
            return;
        if (wants(OutputForm::json))
            return printDocument(m_model, {DocumentField::installedApps}, m_out);
        TextTable table({left, right, right, left});
        for (const auto& app : m_model.installedApps()) {
            if (wants(OutputForm::nulls))
                printNullEnded(m_out, app.appURL);
            else
                table.addRow(
                    {printablePath(app.name), std::to_string(app.leftovers.size()) + " files",
                        fileByteCount(app.leftoverBytes()),
                        printablePath(app.bundleID.value_or(app.appURL))});
        }
        table.print(m_out);
    }

    void startup()
    {
        if (!m_run.await(AppModel::Field::startupItems, [this] { m_model.loadStartupItems(); }))
            return;
        if (wants(OutputForm::json))
            return printDocument(m_model, {DocumentField::startupItems}, m_out);
        TextTable table({left, left, left, left});
        for (const auto& item : m_model.startupItems()) {
            if (wants(OutputForm::nulls))
                printNullEnded(m_out, item.plistURL);
            else
                table.addRow({item.isSystem ? "System" : "User", printablePath(item.label),
                    printablePath(item.programPath), printablePath(item.plistURL)});
        }
        table.print(m_out);
    }

    void security()
    {
        if (m_run.scan())
            m_run.reviewSecurity();
        if (m_run.isInterrupted())
            return;
        if (wants(OutputForm::json))
            return printDocument(m_model,
                {DocumentField::selectedRoot, DocumentField::scanPhase,
                    DocumentField::securityPhase, DocumentField::storageSummary,
                    DocumentField::history, DocumentField::findings},
                m_out);
        TextTable table({left, left, left});
        for (const auto& finding : m_model.findings()) {
            if (wants(OutputForm::nulls))
                printNullEnded(m_out, finding.path);
            else
                table.addRow({std::string(rawValue(finding.level)), printablePath(finding.path),
                    printablePath(finding.reason)});
        }
        table.print(m_out);
    }

    void processes()
    {
        if (!m_run.await(AppModel::Field::processes, [this] { m_model.refreshProcesses(); }))
            return;
        if (wants(OutputForm::json))
            return printDocument(m_model, {DocumentField::processes}, m_out);
        TextTable table({right, right, left, left});
        for (const auto& process : m_model.processes()) {
            const auto bytes = static_cast<std::int64_t>(process.memoryBytes);
            table.addRow({std::to_string(process.processIdentifier), memoryByteCount(bytes),
                process.isSystemProcess ? "System" : "User", printablePath(process.processName)});
        }
        table.print(m_out);
    }

    void memory()
    {
        if (!m_run.await(AppModel::Field::memory, [this] { m_model.refreshMemory(); }))
            return;
        const auto& memory = m_model.memory();
        if (!memory)
            m_run.fail("The system does not tell how memory is used.");
        if (wants(OutputForm::json))
            return printDocument(m_model, {DocumentField::memory}, m_out);
        if (!memory)
            return;
        TextTable table({left, right});
        const auto add = [&table](const char* name, std::uint64_t bytes) {
            table.addRow({name, memoryByteCount(static_cast<std::int64_t>(bytes))});
        };
        add("Free", memory->freeBytes);
        add("Active", memory->activeBytes);
        add("Inactive", memory->inactiveBytes);
        add("Wired", memory->wiredBytes);
        table.print(m_out);
    }

    void disk()
    {
        if (!m_model.platform().volumes->capacityOf(m_model.selectedRoot()))
            return m_run.fail(
                "How full the volume of " + m_model.selectedRoot() + " is cannot be told.");
        if (wants(OutputForm::json))
            return printDocument(
                m_model, {DocumentField::selectedRoot, DocumentField::diskSpace}, m_out);
        TextTable table({left, right});
        table.addRow({"Total", fileByteCount(m_model.diskTotal())});
        table.addRow({"Used", fileByteCount(m_model.diskTotal() - m_model.diskFree())});
        table.addRow({"Free", fileByteCount(m_model.diskFree())});
        table.print(m_out);
    }

    void printRows(const std::vector<std::uint32_t>& positions)
    {
        const auto& records = *m_model.records();
        for (const auto position : positions)
            printFileRow(m_out, records.fileSize(position), records.path(position));
    }

    const CommandLine& m_line;
    AppModel& m_model;
    std::ostream& m_out;
    ModelRun m_run;
};

} // namespace

int runListing(const CommandLine& line, AppModel& model, const Console& console)
{
    return Listing(line, model, console).run();
}

} // namespace kestavon
