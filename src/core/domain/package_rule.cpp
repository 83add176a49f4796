#include "core/domain/package_rule.h"

#include "core/domain/ascii.h"
#include "core/domain/file_name.h"

#include <algorithm>
#include <array>

namespace kestavon {

namespace {

// Frameworks are missing on purpose: their contents are shown as ordinary folders.
constexpr std::array<std::string_view, 30> packageExtensions{
    "action",
    "app",
    "appex",
    "band",
    "bundle",
    "component",
    "download",
    "fcpbundle",
    "imovielibrary",
    "kext",
    "logicx",
    "mdimporter",
    "mpkg",
    "musiclibrary",
    "photoslibrary",
    "pkg",
    "playground",
    "plugin",
    "prefpane",
    "qlgenerator",
    "rtfd",
    "saver",
    "sparsebundle",
    "tvlibrary",
    "wdgt",
    "workflow",
    "xcarchive",
    "xcodeproj",
    "xcworkspace",
    "xpc",
};

bool equalsLowered(std::string_view text, std::string_view lowerCase)
{
    return std::ranges::equal(text, lowerCase, {}, asciiLower);
}

} // namespace

bool hasPackageExtension(std::string_view folderName)
{
    const auto extension = fileExtension(folderName);
    return std::ranges::any_of(packageExtensions,
        [extension](std::string_view package) { return equalsLowered(extension, package); });
}

} // namespace kestavon
