#include "core/domain/package_rule.h"

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

char lowered(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalsLowered(std::string_view text, std::string_view lowerCase)
{
    return std::ranges::equal(text, lowerCase, {}, lowered);
}

} // namespace

bool hasPackageExtension(std::string_view folderName)
{
    const auto dot = folderName.rfind('.');
    if (dot == std::string_view::npos || dot == 0)
        return false;
    const auto extension = folderName.substr(dot + 1);
    return std::ranges::any_of(packageExtensions,
        [extension](std::string_view package) { return equalsLowered(extension, package); });
}

} // namespace kestavon
