#include "platform/application_bundles.h"

#include "platform/property_list.h"

namespace kestavon {

namespace {

/// An empty identifier would be one that everything begins with.
std::optional<std::string> textIn(const PropertyValue& list, std::string_view key)
{
    const auto* const text = list.textAt(key);
    return text && !text->empty() ? std::optional(*text) : std::nullopt;
}

/// The file lies in the bundle's Resources; the list may leave its ending out.
/// https://developer.apple.com/documentation/bundleresources/information-property-list/cfbundleiconfile
std::optional<std::string> iconFile(const std::string& bundle, const PropertyValue& list)
{
    auto name = textIn(list, "CFBundleIconFile");
    if (!name || name->find('/') != name->npos)
        return std::nullopt;
    if (!name->ends_with(".icns"))
        *name += ".icns";
    return bundle + "/Contents/Resources/" + *name;
}

} // namespace

BundleInfo bundleInfo(const std::string& path)
{
    auto list = readPropertyList(path + "/Contents/Info.plist");
    auto icon = list ? iconFile(path, *list) : std::nullopt;
    if (!list && list.error() == PropertyListProblem::unreadable)
        list = readPropertyList(path + "/Info.plist");
    if (!list)
        return {};
    auto name = textIn(*list, "CFBundleDisplayName");
    if (!name)
        name = textIn(*list, "CFBundleName");
    return {.identifier = textIn(*list, "CFBundleIdentifier"),
        .name = std::move(name),
        .icon = std::move(icon)};
}

} // namespace kestavon
