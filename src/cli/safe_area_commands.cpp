#include "cli/command.h"
#include "cli/json_records.h"
#include "cli/printable.h"
#include "cli/removal_run.h"
#include "cli/report.h"
#include "cli/text_table.h"
#include "core/domain/removal_guard.h"
#include "platform/host_layout.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <system_error>
#include <utility>

namespace kestavon {

namespace {

constexpr std::size_t shortId = 8; // characters of an identifier that lists show
constexpr std::size_t idPrefix = 37; // of a held item's name: its identifier and a hyphen

std::string originalName(const QuarantineItem& item)
{
    if (!item.originalPath.empty())
        return std::string(lastComponent(item.originalPath));
    const auto name = lastComponent(item.quarantinedPath);
    return std::string(name.substr(std::min(idPrefix, name.size())));
}

/// Where restoring would put it, or what is known of it where that is nowhere.
std::string placeText(const QuarantineItem& item)
{
    return item.originalPath.empty() ? originalName(item) + " (from an unknown place)"
                                     : item.originalPath;
}

/// Whether `path`, absolute and in its shortest form, or the identifier as typed means the item.
bool isMeant(const QuarantineItem& item, const std::string& typed, const std::string& path)
{
    if (!path.empty() && item.originalPath == path)
        return true;
    auto id = typed;
    std::ranges::transform(id, id.begin(),
        [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return isIdentifierStart(id) && item.id.text().starts_with(id);
}

/// The place that was typed. Empty for an identifier where no working folder could lead to a place.
std::string placeOf(const std::string& typed)
{
    std::error_code error;
    const auto folder = std::filesystem::current_path(error);
    return error && !typed.starts_with('/') ? std::string() : typedPath(typed);
}

class SafeArea {
public:
    SafeArea(const CommandLine& line, AppModel& model, const Console& console)
        : m_line(line)
        , m_model(model)
        , m_out(console.out)
        , m_removal(line, model, console)
    {
    }

    int run()
    {
        const bool asks = m_line.verb == Verb::safeAreaDelete || m_line.verb == Verb::safeAreaEmpty
            || m_line.all;
        if ((!asks || m_removal.canBeConfirmed()) && lookUp()) {
            switch (m_line.verb) {
            case Verb::safeAreaList: list(); break;
            case Verb::safeAreaRestore: restore(); break;
            case Verb::safeAreaDelete: remove(); break;
            case Verb::safeAreaEmpty: empty(); break;
            default: break;
            }
        }
        return m_removal.exitCode();
    }

private:
    using Items = std::vector<QuarantineItem>;
    using Operation = void (AppModel::*)(const QuarantineItem&, AppModel::Finished);

    bool lookUp()
    {
        return m_removal.run().perform([this](AppModel::Finished finished) {
            m_model.findEarlierHeldItems(std::move(finished));
        });
    }

    void list()
    {
        const auto& items = m_model.earlierQuarantine();
        if (m_removal.wants(OutputForm::json))
            return printDocument(m_model, {DocumentField::quarantine}, m_out);
        if (m_removal.wants(OutputForm::nulls)) {
            for (const auto& item : items)
                printNullEnded(m_out, item.quarantinedPath);
            return;
        }
        TextTable table({TextTable::Align::left, TextTable::Align::left, TextTable::Align::left});
        for (const auto& item : items) {
            const bool isDated = item.date != Timestamp{};
            table.addRow({item.id.text().substr(0, shortId),
                isDated ? m_model.platform().calendar->dateText(item.date) : "—",
                printablePath(placeText(item))});
        }
        table.print(m_out);
    }

    /// The items that were named, each once; says which names mean none or several.
    Items meantItems()
    {
        Items meant;
        for (const auto& typed : m_line.items) {
            Items found;
            const auto place = placeOf(typed);
            std::ranges::copy_if(m_model.earlierQuarantine(), std::back_inserter(found),
                [&](const QuarantineItem& item) { return isMeant(item, typed, place); });
            if (found.empty())
                m_removal.run().fail("No held item is called " + typed
                    + "; its path is, or the first 8 characters of its identifier.");
            else if (found.size() > 1)
                m_removal.run().fail(
                    typed + " means " + std::to_string(found.size()) + " items; give identifiers.");
            else if (std::ranges::find(meant, found.front()) == meant.end())
                meant.push_back(found.front());
        }
        return meant;
    }

    /// Shows the items for a dry run.
    /// What could not be restored, because something has its name there or would have by then.
    void dropWhatHasNoRoom(Items& items)
    {
        std::set<std::string> taken;
        std::erase_if(items, [&](const QuarantineItem& item) {
            std::error_code error;
            const auto there = std::filesystem::symlink_status(item.originalPath, error);
            const bool isFree
                = !std::filesystem::exists(there) && taken.insert(item.originalPath).second;
            if (!isFree)
                m_removal.run().fail(originalName(item)
                    + " could not be restored because a file with the same name already exists.");
            return !isFree;
        });
    }

    void show(const char* intention, const Items& items)
    {
        if (m_removal.wants(OutputForm::json)) {
            JsonWriter json(m_out);
            json.beginObject();
            json.key("quarantine");
            writeJson(json, items);
            json.endObject();
            return json.finish();
        }
        for (const auto& item : items)
            m_out << intention << ' ' << printablePath(placeText(item)) << '\n';
    }

    void workOn(const Items& items, Operation operation)
    {
        for (const auto& item : items) {
            if (m_removal.run().isInterrupted())
                break;
            m_removal.run().perform([&](AppModel::Finished finished) {
                (m_model.*operation)(item, std::move(finished));
            });
        }
        m_removal.printDeeds();
    }

    /// Where the item goes; empty where that is not known.
    std::string destinationOf(const QuarantineItem& item) const
    {
        if (m_line.into.empty())
            return item.originalPath;
        const auto folder = typedPath(m_line.into);
        return (folder == "/" ? folder : folder + '/') + originalName(item);
    }

    void restore()
    {
        auto items = m_line.all ? m_model.earlierQuarantine() : meantItems();
        for (auto& item : items) {
            const auto name = originalName(item);
            item.originalPath = destinationOf(item);
            if (item.originalPath.empty())
                m_removal.run().fail("Where " + name
                    + " came from is not known; --into DIR says "
                      "where it goes.");
        }
        std::erase_if(items, [](const auto& item) { return item.originalPath.empty(); });
        if (m_line.dryRun) {
            dropWhatHasNoRoom(items);
            return show("Would restore", items);
        }
        if (items.empty())
            return m_removal.printNothing("Nothing was restored.");
        auto question = questions::restoreAll(items.size());
        if (!m_line.into.empty())
            question.message = "Files will be moved to " + printablePath(m_line.into) + '.';
        if (m_line.all && !m_removal.confirm(question))
            return;
        if (!m_line.all || !m_line.into.empty())
            return workOn(items, &AppModel::restoreFromSafeArea);
        m_removal.run().perform([this](AppModel::Finished finished) {
            m_model.restoreAllEarlierHeldItems(std::move(finished));
        });
        tellWhatIsHeld(" could not be restored; something may lie at its place.");
        m_removal.printDeeds();
    }

    void remove()
    {
        auto items = meantItems();
        if (m_line.dryRun)
            return show("Would delete", items);
        if (items.empty())
            return m_removal.printNothing("Nothing was deleted.");
        const auto question = items.size() == 1 ? questions::deleteHeld(originalName(items.front()))
                                                : questions::deleteAll(items.size());
        if (!m_removal.confirm(question))
            return;
        for (auto& item : items)
            item.originalPath = originalName(item); // the history tells it by its name
        workOn(items, &AppModel::deleteFromSafeArea);
    }

    void empty()
    {
        const auto& items = m_model.earlierQuarantine();
        if (m_line.dryRun)
            return show("Would delete", items);
        if (items.empty())
            return m_removal.printNothing("The Safe Area is empty.");
        if (!m_removal.confirm(questions::deleteAll(items.size())))
            return;
        m_removal.run().perform([this](AppModel::Finished finished) {
            m_model.deleteAllEarlierHeldItems(std::move(finished));
        });
        tellWhatIsHeld(" could not be deleted.");
        m_removal.printDeeds();
    }

    /// Those whose place is known, when all were to go back.
    void tellWhatIsHeld(const char* fault)
    {
        if (m_removal.run().isInterrupted())
            return;
        for (const auto& item : m_model.earlierQuarantine()) {
            if (m_line.verb != Verb::safeAreaRestore || !item.originalPath.empty())
                m_removal.run().fail(placeText(item) + fault);
        }
    }

    const CommandLine& m_line;
    AppModel& m_model;
    std::ostream& m_out;
    RemovalRun m_removal;
};

} // namespace

int runSafeArea(const CommandLine& line, AppModel& model, const Console& console)
{
    return SafeArea(line, model, console).run();
}

} // namespace kestavon
