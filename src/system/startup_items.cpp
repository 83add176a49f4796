#include "system/startup_items.h"

#include "core/domain/file_name.h"
#include "platform/property_list.h"
#include "walk/folder_names.h"

#include <algorithm>
#include <optional>

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

} // namespace

std::vector<StartupItem> listStartupItems(std::span<const StartupFolder> folders)
{
    std::vector<StartupItem> items;
    for (const auto& [folder, isSystem, form] : folders) {
        const auto entries = namedEntriesOf(folder);
        if (!entries)
            continue;
        for (const auto& name : entries->names) {
            if (fileExtension(name) != "plist")
                continue;
            auto path = folder + '/' + name;
            const auto job = readPropertyList(path);
            if (!job || !job->as<PropertyValue::Dictionary>())
                continue;
            const auto* label = job->textAt("Label");
            items.push_back({.id = Uuid::random(),
                .label = label ? *label : std::string(withoutExtension(name)),
                .programPath = programOf(*job),
                .plistURL = std::move(path),
                .isSystem = isSystem});
        }
    }
    std::ranges::stable_partition(items, [](const StartupItem& item) { return !item.isSystem; });
    return items;
}

} // namespace kestavon
