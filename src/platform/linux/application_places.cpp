#include "platform/linux/application_places.h"

#include <array>
#include <string_view>

namespace kestavon {

namespace {

struct LeftoverRow {
    std::string_view folder; ///< below the home
    LeftoverFile::LeftoverKind kind;
    LeftoverRule rule = LeftoverRule::anyEntry;
};

using enum LeftoverFile::LeftoverKind;

constexpr std::array macLeftovers{
    LeftoverRow{"Library/Application Support", appSupport},
    LeftoverRow{"Library/Caches", cache},
    LeftoverRow{"Library/Logs", logs},
    LeftoverRow{"Library/Containers", container},
    LeftoverRow{"Library/Application Scripts", appSupport},
    LeftoverRow{"Library/HTTPStorages", cache},
    LeftoverRow{"Library/Preferences", preferences, LeftoverRule::propertyList},
    LeftoverRow{"Library/Saved Application State", savedState, LeftoverRule::savedState},
};

std::string belowHome(const HostLayout& layout, std::string_view path)
{
    return (layout.home == "/" ? "" : layout.home) + '/' + std::string(path);
}

} // namespace

void addApplicationPlaces(HostLayout& layout)
{
    if (layout.kind != HomeKind::mac)
        return;
    layout.uninstallFolders
        = {layout.belowSystemRoot("/Applications"), belowHome(layout, "Applications")};
    for (const auto& [folder, kind, rule] : macLeftovers)
        layout.leftoverLocations.push_back(
            {.folder = belowHome(layout, folder), .kind = kind, .rule = rule});
}

void addStartupPlaces(HostLayout& layout)
{
    // Of any Mac's disk, wherever it is attached.
    layout.persistenceMarkers = {"/Library/LaunchAgents/", "/Library/LaunchDaemons/"};
    if (layout.kind != HomeKind::mac)
        return;
    layout.startupFolders = {
        {.folder = belowHome(layout, "Library/LaunchAgents"), .isSystem = false},
        {.folder = layout.belowSystemRoot("/Library/LaunchAgents"), .isSystem = true},
        {.folder = layout.belowSystemRoot("/Library/LaunchDaemons"), .isSystem = true},
    };
}

} // namespace kestavon
