#include "cli/command.h"
#include "cli/json_records.h"
#include "cli/printable.h"
#include "cli/removal_run.h"
#include "cli/report.h"
#include "cli/typed_items.h"
#include "platform/byte_count.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <unordered_set>
#include <utility>

namespace kestavon {

namespace {

/// "Would move 3 items (2 MB) to the Trash."
std::string intention(ActionKind action, std::size_t count, std::int64_t bytes)
{
    const auto items = std::to_string(count) + " items (" + fileByteCount(bytes) + ')';
    switch (action) {
    case ActionKind::safeArea: return "Would move " + items + " to the Safe Area.";
    case ActionKind::trash: return "Would move " + items + " to the Trash.";
    case ActionKind::permanent: break;
    }
    return "Would delete " + items + " for good.";
}

Question questionFor(ActionKind action, std::size_t count)
{
    return action == ActionKind::safeArea ? questions::moveToSafeArea(count)
                                          : questions::removeFiles(action, count);
}

/// One command that removes: finds, asks, does, and gives account.
class Removal {
public:
    Removal(const CommandLine& line, AppModel& model, const Console& console)
        : m_line(line)
        , m_model(model)
        , m_out(console.out)
        , m_removal(line, model, console)
    {
    }

    int run()
    {
        if (m_removal.canBeConfirmed()) {
            switch (m_line.verb) {
            case Verb::clean: m_line.cleansJunk ? cleanJunk() : cleanFolder(); break;
            case Verb::remove: removePaths(); break;
            case Verb::merge: merge(); break;
            case Verb::uninstall: uninstall(); break;
            default: break;
            }
        }
        return m_removal.exitCode();
    }

private:
    ActionKind action() const { return m_line.action.value_or(ActionKind::safeArea); }

    /// Removes records, by the operation that belongs to the action.
    void remove(RecordPick pick)
    {
        m_removal.run().perform([&](AppModel::Finished finished) {
            switch (action()) {
            case ActionKind::safeArea:
                return m_model.moveRecordsToSafeArea(pick, std::move(finished));
            case ActionKind::trash: return m_model.trashRecords(pick, std::move(finished));
            case ActionKind::permanent:
                return m_model.deleteRecordsPermanently(pick, std::move(finished));
            }
        });
        m_removal.tellWhatStayed(pick.positions.size(),
            [&](std::size_t i) { return pick.records->path(pick.positions[i]); });
        m_removal.printDeeds();
    }

    void cleanFolder()
    {
        if (!m_removal.run().scan())
            return;
        const auto candidates = m_model.cleanupCandidates();
        const auto count = candidates->size();
        std::int64_t bytes = 0;
        for (std::size_t i = 0; i < count; ++i)
            bytes = saturatingSum(bytes, candidates->estimatedBytes(i));
        const auto pathAt = [&](std::size_t i) {
            return candidates->records()->path(candidates->recordPosition(i));
        };
        if (m_line.dryRun) {
            if (m_removal.wants(OutputForm::json))
                return printDocument(m_model,
                    {DocumentField::selectedRoot, DocumentField::scanPhase,
                        DocumentField::cleanupCandidates},
                    m_out);
            for (std::size_t i = 0; i < count; ++i)
                printFileRow(m_out, candidates->estimatedBytes(i), pathAt(i));
            m_out << intention(action(), count, bytes) << '\n';
            return;
        }
        if (count == 0)
            return m_removal.printNothing(
                "Nothing in " + m_model.selectedRoot() + " is suggested for removal.");
        if (!m_removal.confirm(questionFor(action(), count)))
            return;
        if (action() == ActionKind::safeArea) {
            // The suggestions' own operation, which remembers why they went.
            m_removal.run().perform([&](AppModel::Finished finished) {
                m_model.moveSelectedCleanupToSafeArea(std::move(finished));
            });
            m_removal.tellWhatStayed(count, pathAt);
            return m_removal.printDeeds();
        }
        RecordPick pick{.records = candidates->records(), .positions = {}};
        for (std::size_t i = 0; i < count; ++i)
            pick.positions.push_back(candidates->recordPosition(i));
        remove(std::move(pick));
    }

    void cleanJunk()
    {
        if (!m_removal.run().findJunk(m_line.categories))
            return;
        const auto groups = m_model.junkGroups();
        const auto count = m_model.totalJunkItemCount();
        const auto bytes = m_model.totalJunkBytes();
        if (m_line.dryRun) {
            if (m_removal.wants(OutputForm::json))
                return printDocument(m_model, {DocumentField::junkGroups}, m_out);
            for (const auto& group : groups) {
                for (const auto& item : group.items)
                    printFileRow(m_out, item.estimatedBytes, item.record.path);
            }
            m_out << intention(action(), count, bytes) << '\n';
            return;
        }
        if (count == 0)
            return m_removal.printNothing("There is no junk.");
        const bool isAll = m_line.categories.empty() && action() == ActionKind::safeArea;
        if (!m_removal.confirm(
                isAll ? questions::cleanAllJunk(bytes) : questionFor(action(), count)))
            return;
        if (isAll)
            m_removal.run().perform(
                [&](AppModel::Finished finished) { m_model.cleanAllJunk(std::move(finished)); });
        for (const auto& group : groups) {
            if (!isAll && !group.items.empty() && !m_removal.run().isInterrupted())
                clean(group);
        }
        for (const auto& group : groups)
            m_removal.tellWhatStayed(
                group.items.size(), [&](std::size_t i) { return group.items[i].record.path; });
        m_removal.printDeeds();
    }

    void clean(const JunkGroup& group)
    {
        std::unordered_set<Uuid> ids;
        for (const auto& item : group.items)
            ids.insert(item.id);
        m_removal.run().perform([&](AppModel::Finished finished) {
            m_model.cleanJunkItems(group, std::move(ids), action(), {}, std::move(finished));
        });
    }

    void removePaths()
    {
        auto items = typedItems(m_line.paths, *m_model.platform().protectedPlaces);
        for (const auto& problem : items.problems)
            m_removal.run().fail(problem);
        auto& pick = items.pick;
        const auto& records = *pick.records;
        if (m_line.dryRun) {
            if (m_removal.wants(OutputForm::json)) {
                JsonWriter json(m_out);
                json.beginObject();
                json.key("records");
                writeJson(json, records);
                json.endObject();
                return json.finish();
            }
            for (std::size_t i = 0; i < records.size(); ++i)
                printFileRow(m_out, records.fileSize(i), records.path(i));
            m_out << intention(action(), records.size(), items.bytes) << '\n';
            return;
        }
        if (records.empty()) {
            if (m_removal.wants(OutputForm::json))
                m_removal.printDeeds();
            return;
        }
        if (m_removal.confirm(questionFor(action(), records.size())))
            remove(std::move(pick));
    }

    void merge()
    {
        if (!m_removal.run().scan() || !m_removal.run().findDuplicates())
            return;
        const auto duplicates = m_model.duplicates();
        RecordPick spare{.records = duplicates->records(), .positions = {}};
        forEachSpareCopy(
            *duplicates, [&](std::uint32_t position) { spare.positions.push_back(position); });
        if (m_line.dryRun) {
            if (m_removal.wants(OutputForm::json))
                return printDocument(m_model,
                    {DocumentField::selectedRoot, DocumentField::duplicatePhase,
                        DocumentField::duplicates},
                    m_out);
            for (const auto position : spare.positions)
                printFileRow(
                    m_out, spare.records->fileSize(position), spare.records->path(position));
            m_out << intention(action(), spare.positions.size(), duplicates->reclaimableBytes())
                  << '\n';
            return;
        }
        if (duplicates->empty())
            return m_removal.printNothing("No duplicates found.");
        const bool toTrash = action() == ActionKind::trash;
        if (!m_removal.confirm(questions::mergeDuplicates(toTrash, duplicates->size())))
            return;
        m_removal.run().perform([&](AppModel::Finished finished) {
            m_model.mergeDuplicates(toTrash, std::move(finished));
        });
        m_removal.tellWhatStayed(spare.positions.size(),
            [&](std::size_t i) { return spare.records->path(spare.positions[i]); });
        m_removal.printDeeds();
    }

    /// The application that was named; says so when it is none or several.
    std::optional<InstalledApp> meantApp()
    {
        std::vector<InstalledApp> meant;
        std::ranges::copy_if(
            m_model.installedApps(), std::back_inserter(meant), [this](const InstalledApp& app) {
                return app.name == m_line.name || app.bundleID == m_line.name
                    || app.appURL == m_line.name;
            });
        if (meant.size() == 1)
            return meant.front();
        if (meant.empty())
            m_removal.run().fail(
                "No application is called " + m_line.name + "; kestavon apps lists them.");
        else
            m_removal.run().fail("Several applications are called " + m_line.name
                + "; give an identifier or a path.");
        return std::nullopt;
    }

    void uninstall()
    {
        if (!m_removal.run().findApps())
            return;
        const auto app = meantApp();
        if (!app)
            return;
        if (m_line.appOnly && !app->canBeMoved)
            return m_removal.run().fail(
                app->name + " belongs to the system; only what it left in the home can be moved.");
        std::vector<std::string> paths;
        if (app->canBeMoved)
            paths.push_back(app->appURL);
        if (!m_line.appOnly) {
            for (const auto& leftover : app->leftovers)
                paths.push_back(leftover.url);
        }
        if (m_line.dryRun) {
            if (m_removal.wants(OutputForm::json)) {
                auto going = *app;
                if (m_line.appOnly)
                    going.leftovers.clear();
                JsonWriter json(m_out);
                json.beginObject();
                json.key("installedApps");
                writeJson(json, std::vector{std::move(going)});
                json.endObject();
                return json.finish();
            }
            for (const auto& path : paths)
                m_out << "Would move to the Trash: " << printablePath(path) << '\n';
            return;
        }
        if (paths.empty())
            return m_removal.run().fail(
                app->name + " belongs to the system and left nothing in the home.");
        if (!m_removal.confirm(app->canBeMoved ? questions::uninstall(app->name, m_line.appOnly)
                                               : questions::removeLeftovers(app->name)))
            return;
        m_removal.run().perform([&](AppModel::Finished finished) {
            m_model.uninstallApp(*app, m_line.appOnly, std::move(finished));
        });
        m_removal.tellWhatStayed(paths.size(), [&](std::size_t i) { return paths[i]; });
        m_removal.printDeeds();
    }

    const CommandLine& m_line;
    AppModel& m_model;
    std::ostream& m_out;
    RemovalRun m_removal;
};

} // namespace

int runRemoval(const CommandLine& line, AppModel& model, const Console& console)
{
    return Removal(line, model, console).run();
}

} // namespace kestavon
