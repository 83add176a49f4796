#pragma once

#include "core/domain/junk_category.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <variant>

namespace kestavon {

/// The desktop's standard colours, as far as categories have them.
enum class NamedColor { blue, gray, red, pink, purple, orange, teal, indigo, cyan, green };

/// A colour by its components, each from 0 to 1.
struct SrgbColor {
    double red = 0;
    double green = 0;
    double blue = 0;
    double opacity = 1;

    friend bool operator==(const SrgbColor&, const SrgbColor&) = default;
};

using JunkColor = std::variant<NamedColor, SrgbColor>;

/// How a category is shown. Where its junk lies is the layout's (`HostLayout::junkLocations`).
struct JunkLook {
    JunkCategory category;
    std::string_view subtitle;
    std::string_view symbol; ///< a name of the symbols in src/ui/style
    JunkColor color;
};

/// Every category, in declared order.
inline constexpr std::array<JunkLook, allCases<JunkCategory>().size()> junkLooks{{
    {JunkCategory::appCaches, "~/Library/Caches", "square.stack.3d.up.fill", NamedColor::blue},
    {JunkCategory::systemLogs, "~/Library/Logs", "scroll.fill", NamedColor::gray},
    {JunkCategory::crashReports, "DiagnosticReports", "exclamationmark.triangle.fill",
        NamedColor::red},
    {JunkCategory::trash, "~/.Trash", "trash.fill", NamedColor::pink},
    {JunkCategory::devTools, "npm · brew · pip · cargo · docker", "terminal.fill",
        NamedColor::purple},
    {JunkCategory::orphanedApps, "Data from uninstalled apps", "app.badge.minus",
        NamedColor::orange},
    {JunkCategory::oldDownloads, "Downloads older than 90 days", "arrow.down.circle.fill",
        NamedColor::teal},
    {JunkCategory::xcodeArtifacts, "DerivedData · Simulators", "hammer.fill", NamedColor::indigo},
    {JunkCategory::iosBackups, "MobileSync Backups", "iphone", NamedColor::cyan},
    {JunkCategory::browserCaches, "Safari · Chrome · Firefox · Edge · Arc", "globe",
        NamedColor::green},
    {JunkCategory::mailAttachments, "Mail.app data & attachments", "envelope.fill",
        SrgbColor{0.9, 0.4, 0.2, 1}},
}};

constexpr const JunkLook& lookOf(JunkCategory category)
{
    return junkLooks[static_cast<std::size_t>(category)];
}

constexpr std::string_view title(JunkCategory category)
{
    return rawValue(category);
}
constexpr std::string_view subtitle(JunkCategory category)
{
    return lookOf(category).subtitle;
}
constexpr std::string_view symbol(JunkCategory category)
{
    return lookOf(category).symbol;
}
constexpr const JunkColor& color(JunkCategory category)
{
    return lookOf(category).color;
}

} // namespace kestavon
