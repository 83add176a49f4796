#include "system/startup_items.h"

#include "core/domain/file_name.h"
#include "platform/linux/desktop_entries.h"
#include "platform/linux/path_lists.h"
#include "platform/property_list.h"
#include "system/unit_links.h"
#include "walk/folder_names.h"

#include <algorithm>
#include <optional>
#include <set>

namespace kestavon {

namespace {

/// The first text of an array that holds texts only, and at least one.
std::optional<std::string> firstOfTexts(const PropertyValue* value)
{
    const auto* array = value ? value->as<PropertyValue::Array>() : nullptr;
    if (!array || array->empty() || !std::ranges::all_of(*array, [](const PropertyValue& element) {
            return element.as<std::string>() != nullptr;
        }))
        return std::nullopt;
    return *array->front().as<std::string>();
}

/// What a job runs, as launchd.plist(5) has it.
std::string programOf(const PropertyValue& job)
{
    if (const auto* program = job.textAt("Program"))
        return *program;
    return firstOfTexts(job.at("ProgramArguments")).value_or("");
}

void addPropertyLists(const StartupFolder& folder, std::vector<StartupItem>& items)
{
    const auto entries = namedEntriesOf(folder.folder);
    if (!entries)
        return;
    for (const auto& name : entries->names) {
        if (fileExtension(name) != "plist")
            continue;
        auto path = folder.folder + '/' + name;
        const auto job = readPropertyList(path);
        if (!job || !job->as<PropertyValue::Dictionary>())
            continue;
        const auto* label = job->textAt("Label");
        items.push_back({.id = Uuid::random(),
            .label = label ? *label : std::string(withoutExtension(name)),
            .programPath = programOf(*job),
            .plistURL = std::move(path),
            .isSystem = folder.isSystem});
    }
}

std::string joined(const std::vector<std::string>& names)
{
    std::string text;
    for (const auto& name : names)
        text.append(text.empty() ? "" : ", ").append(name);
    return text;
}

/// What it is called, and for whom it is when that is not this session: most of what lies in the
/// system's folder is for one desktop only.
std::string labelOf(const DesktopEntry& entry, std::span<const std::string> desktops)
{
    auto label = entry.name.value_or(entry.identifier);
    if (isShownIn(entry, desktops))
        return label;
    if (!entry.onlyShownIn.empty())
        return label + " (" + joined(entry.onlyShownIn) + " only)";
    return label + " (not in " + joined(entry.notShownIn) + ')';
}

/// As the Autostart specification has it: of files of one name the first counts, and one that is
/// hidden hides the others.
class SessionEntries {
public:
    void add(const StartupFolder& folder, std::vector<StartupItem>& items)
    {
        for (auto& entry : readDesktopEntriesIn(folder.folder, m_languages)) {
            const bool isFirst = m_seen.insert(entry.identifier).second;
            const bool isMissing = entry.tryExec && !isProgramThere(*entry.tryExec);
            if (!isFirst || entry.isHidden || !entry.startsWithSession || !entry.isApplication
                || isMissing)
                continue;
            items.push_back({.id = Uuid::random(),
                .label = labelOf(entry, m_desktops),
                .programPath = entry.command.target,
                .plistURL = entry.path,
                .isSystem = folder.isSystem});
        }
    }

private:
    const std::vector<std::string> m_languages = userLanguages();
    const std::vector<std::string> m_desktops = currentDesktops();
    std::set<std::string> m_seen;
};

} // namespace

std::vector<StartupItem> listStartupItems(std::span<const StartupFolder> folders)
{
    std::vector<StartupItem> items;
    SessionEntries sessionEntries;
    for (const auto& folder : folders) {
        switch (folder.form) {
        case StartupForm::propertyLists: addPropertyLists(folder, items); break;
        case StartupForm::desktopEntries: sessionEntries.add(folder, items); break;
        case StartupForm::unitLinks:
            for (auto& link : unitLinksIn(folder.folder))
                items.push_back({.id = Uuid::random(),
                    .label = std::move(link.unit),
                    .programPath = std::move(link.program),
                    .plistURL = std::move(link.path),
                    .isSystem = folder.isSystem});
            break;
        }
    }
    std::ranges::stable_partition(items, [](const StartupItem& item) { return !item.isSystem; });
    return items;
}

} // namespace kestavon
